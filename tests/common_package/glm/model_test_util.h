#pragma once
// Scratch files and small fixtures for the model and particle tests.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/scratch_files.h"

namespace modeltest {

// A fresh folder below the system's temporary folder, removed with its files at the end.
using testsupport::ScratchDir;

inline void writeText(const std::string& name, const std::string& text) {
    FILE* f = std::fopen(name.c_str(), "wb");
    ASSERT_NE(f, nullptr) << name;
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
}

inline std::string readText(const std::string& name) {
    return testsupport::readFile(name);
}

// A binary PNM: "P5" for one component, "P6" for three.
inline void writePnm(const std::string& name, int width, int height, int components,
                     const std::vector<unsigned char>& pixels) {
    std::string text = (components == 1 ? "P5\n" : "P6\n") + std::to_string(width) + " " +
                       std::to_string(height) + "\n255\n";
    text.append(pixels.begin(), pixels.end());
    writeText(name, text);
}

// An image of one colour.
inline std::vector<unsigned char> filled(int width, int height, std::vector<unsigned char> color) {
    std::vector<unsigned char> pixels;
    for (int i = 0; i < width * height; i++)
        pixels.insert(pixels.end(), color.begin(), color.end());
    return pixels;
}

// An allocate/release pair for the libraries' replaceable allocators that counts its calls.
inline int allocations = 0, releases = 0;
inline void* countingAllocate(std::size_t bytes) {
    allocations++;
    return std::malloc(bytes);
}
inline void countedRelease(void* p) {
    if (p != nullptr) releases++;
    std::free(p);
}

// The number of times text occurs in haystack.
inline int countOf(const std::string& haystack, const std::string& text) {
    int n = 0;
    for (std::size_t p = haystack.find(text); p != std::string::npos;
         p = haystack.find(text, p + text.size()))
        n++;
    return n;
}

}  // namespace modeltest
