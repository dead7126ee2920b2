#include "tests/datatree/datatree_test_support.h"

#include <cstdio>
#include <cstring>

#include "image/data_file.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/text_input.h"

std::string readFile(const std::string& path) {
    return readWholeFile(path);
}

std::string readDataText(const std::string& path) {
    FILE* f = openDataFile(path.c_str(), "rb");
    if (!f) return "";
    std::string text;
    char buffer[65536];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        text.append(buffer, n);
    std::fclose(f);
    return text;
}

RunResult runCommand(const std::vector<std::string>& words) {
    testsupport::RunOptions options;
    options.withDisplay = false;
    return testsupport::runProgram(words, options);
}

void putU32le(std::string& b, unsigned v) {
    for (int i = 0; i < 4; ++i)
        b += char((v >> (8 * i)) & 0xFF);
}
void putU32be(std::string& b, unsigned v) {
    for (int i = 3; i >= 0; --i)
        b += char((v >> (8 * i)) & 0xFF);
}
void putI32be(std::string& b, int v) {
    putU32be(b, unsigned(v));
}
void putF64be(std::string& b, double v) {
    unsigned char raw[8];
    std::memcpy(raw, &v, 8);
    for (int i = 7; i >= 0; --i)
        b += char(raw[i]);
}
void putF64le(std::string& b, double v) {
    unsigned char raw[8];
    std::memcpy(raw, &v, 8);
    for (int i = 0; i < 8; ++i)
        b += char(raw[i]);
}
