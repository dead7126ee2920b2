#include "tests/datatree/datatree_test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdint>
#include <cstring>

#include "image/data_file.h"
#include "tools/datatree/core/sky_frames.h"

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

void putBytes(std::string& b, double v, int size, bool bigEndian, bool isDouble) {
    std::uint64_t bits = std::uint64_t(v);
    if (isDouble) std::memcpy(&bits, &v, 8);
    for (int i = 0; i < size; ++i)
        b += char(bits >> (8 * (bigEndian ? size - 1 - i : i)) & 0xFF);
}

bool readStars(StarList& list, const std::string& path) {
    testing::internal::CaptureStdout();  // the reader's count line
    int result = list.readStarFiles(path.c_str(), 0, 0);
    testing::internal::GetCapturedStdout();
    return result == 1;
}

StarObj starByHd(const StarList& list, int hd) {
    StarObj s = makeEmptyStarObj();
    EXPECT_EQ(list.getStarByHD(&s, hd), 1) << "HD " << hd << " missing";
    return s;
}

// "SIZE 1 16.4894" keeps positions in parsecs (10^(w - 16.4894) would stray by 2e-6).
double parsecs(const StarObj& s) {
    return length(Vec3{s.catalogPos.x, s.catalogPos.y, s.catalogPos.z});
}

void galacticLB(const StarObj& s, double* l, double* b) {
    galacticAngles(normalized(Vec3{s.catalogPos.x, s.catalogPos.y, s.catalogPos.z}), l, b);
}

double absoluteMagnitude(const StarObj& s) {
    return -2.5 * std::log10(s.lum);
}
