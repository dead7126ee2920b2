#pragma once
// Scratch files for the image tests: a private folder per test, whole-file reads and writes.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/scratch_files.h"

namespace imagetest {

using Bytes = std::vector<unsigned char>;

// A fresh folder below the system's temporary folder, removed with its files at the end.
using testsupport::fileExists;
using testsupport::ScratchDir;

inline void writeFile(const std::string& name, const Bytes& bytes) {
    FILE* f = std::fopen(name.c_str(), "wb");
    ASSERT_NE(f, nullptr) << name;
    if (!bytes.empty()) std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
}

inline void writeFile(const std::string& name, const std::string& text) {
    writeFile(name, Bytes(text.begin(), text.end()));
}

// Every byte from the stream's position to its end.
inline Bytes readAll(FILE* f) {
    Bytes bytes;
    unsigned char buffer[4096];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        bytes.insert(bytes.end(), buffer, buffer + n);
    return bytes;
}

inline Bytes readFile(const std::string& name) {
    FILE* f = std::fopen(name.c_str(), "rb");
    if (f == nullptr) return {};
    Bytes bytes = readAll(f);
    std::fclose(f);
    return bytes;
}

inline Bytes concat(const std::string& text, const Bytes& data) {
    Bytes bytes(text.begin(), text.end());
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

// Star-catalogue-like text lines, repeatable.
inline std::string catalogueText(std::size_t bytes) {
    std::string text = "# HIP  RA(deg)  Dec(deg)  plx(mas)  Vmag  B-V\n";
    unsigned state = 12345;
    char line[160];
    for (int hip = 1; text.size() < bytes; ++hip) {
        auto next = [&] {
            state = state * 214013u + 2531011u;
            return (state >> 16) & 32767;
        };
        std::snprintf(line, sizeof line, "%6d %10.6f %+10.6f %8.2f %6.2f %6.3f\n", hip,
                      next() * 360.0 / 32768, next() * 180.0 / 32768 - 90, next() / 100.0,
                      next() / 3000.0 - 1.5, next() / 16384.0 - 0.3);
        text += line;
    }
    text.resize(bytes);
    return text;
}

}  // namespace imagetest
