#pragma once
// Shared pieces of the image tests: byte buffers, files, captured messages, test data.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/scratch_files.h"

namespace imagetest {

using Bytes = std::vector<unsigned char>;
using testsupport::fileExists;
using testsupport::ScratchDir;

inline Bytes bytesOf(const std::string& text) {
    return Bytes(text.begin(), text.end());
}
inline Bytes readFile(const std::string& name) {
    return bytesOf(testsupport::readFile(name));
}
inline Bytes concat(const std::string& text, const Bytes& data) {
    Bytes bytes = bytesOf(text);
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

// What a reader of the read_pnm / read_sgi kind returns for a file.
struct Image {
    Bytes data;
    int width = -1, height = -1, components = -1;
};
template <class Reader>
Image readImage(Reader reader, const std::string& name) {
    Image r;
    r.data = reader(name.c_str(), &r.width, &r.height, &r.components);
    return r;
}

// An uncompressed TGA file: the 18-byte header and pixelBytes bytes counting up from 0.
inline Bytes tga(int type, int width, int height, int bits, std::size_t pixelBytes, int map = 0) {
    Bytes b = {0, static_cast<unsigned char>(map), static_cast<unsigned char>(type)};
    b.resize(18, 0);
    const int fields[] = {width, height};
    for (int i = 0; i < 2; ++i) {
        b[12 + 2 * i] = static_cast<unsigned char>(fields[i]);
        b[13 + 2 * i] = static_cast<unsigned char>(fields[i] >> 8);
    }
    b[16] = static_cast<unsigned char>(bits);
    for (std::size_t i = 0; i < pixelBytes; ++i)
        b.push_back(static_cast<unsigned char>(i % 251));
    return b;
}

inline Bytes readAll(FILE* f) {
    Bytes bytes;
    unsigned char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, f)) > 0;)
        bytes.insert(bytes.end(), buffer, buffer + n);
    return bytes;
}

template <class Call>
std::string stderrOf(Call call) {
    testing::internal::CaptureStderr();
    call();
    return testing::internal::GetCapturedStderr();
}

// Star-catalogue-like lines of text, the same every time.
inline std::string catalogueText(std::size_t length) {
    std::string text;
    char line[64];
    for (unsigned hip = 1; text.size() < length; ++hip) {
        std::snprintf(line, sizeof line, "%6u %10.6f %+10.6f %6.2f\n", hip,
                      hip * 7919 % 360000 / 1e3, hip * 104729 % 180000 / 1e3 - 90,
                      hip * 31 % 1500 / 100.0 - 1.5);
        text += line;
    }
    return text.substr(0, length);
}

}  // namespace imagetest
