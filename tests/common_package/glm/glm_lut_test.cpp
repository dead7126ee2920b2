// Lookup tables: reading, the identity table, applying to images, printing.

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "common_package/glm/src/glm_lut.h"
#include "tests/common_package/glm/model_test_util.h"

using namespace modeltest;

namespace {

// n lines "i 255-i i/2 200" with replacements for some lines.
std::string lutText(int lines, const std::map<int, std::string>& replaced = {}) {
    std::string text;
    for (int i = 0; i < lines; i++) {
        auto r = replaced.find(i);
        text += (r != replaced.end() ? r->second
                                     : std::to_string(i) + " " + std::to_string(255 - i) + " " +
                                           std::to_string(i / 2) + " 200") +
                "\n";
    }
    return text;
}

}  // namespace

TEST(LookupTables, FourAndThreeNumberLinesAppliedByTheirLowByte) {
    ScratchDir dir;
    writeText(dir.file("a.lut"), lutText(256, {{7, "10 20 30"}, {9, "  300\t-1 7 1000 extra"}}));
    std::unique_ptr<LUT> lut = readLUT(dir.file("a.lut").c_str(), false);
    ASSERT_TRUE(lut);
    EXPECT_TRUE(lut->green[0] == 255 && lut->alpha[0] == 200 && lut->green[9] == -1);
    // Three numbers: alpha maps i to itself; values are applied by their low byte.
    std::vector<unsigned char> rgba{9, 9, 9, 9, 7, 7, 7, 7};
    EXPECT_EQ(applyLUT(lut.get(), rgba.data(), 2, 1, 4, false), 1);
    EXPECT_EQ(rgba, (std::vector<unsigned char>{300 & 0xFF, 255, 7, 1000 & 0xFF, 10, 20, 30, 7}));
}

TEST(LookupTables, ShortEmptyAndMissingFilesAreRefused) {
    ScratchDir dir;
    struct Case {
        std::string text, message;
    } cases[] = {
        {lutText(255), "No data read in line 256 []\n"},
        {lutText(256, {{4, ""}}), "No data read in line 5 []\n"},
        {lutText(256, {{0, "1 2"}}), "No enough data (R G B) in line 1 [1 2]\n"},
        {lutText(256, {{99, "red green blue"}}),
         "No enough data (R G B) in line 100 [red green blue]\n"},
    };
    for (const Case& c : cases) {
        writeText(dir.file("bad.lut"), c.text);
        EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(readLUT(dir.file("bad.lut").c_str(), true)); }),
                  c.message);
    }
    // A line longer than the buffer is cut, and the next line is still line 2.
    writeText(dir.file("long.lut"), lutText(256, {{0, "1 2 3 4" + std::string(2000, ' ')}}));
    EXPECT_TRUE(readLUT(dir.file("long.lut").c_str(), true));

    EXPECT_EQ(stderrOf([] {
                  EXPECT_FALSE(readLUTVerbose("/nonexistent/x.lut"));
                  EXPECT_FALSE(readLUT("/nonexistent/x.lut", true));
                  EXPECT_FALSE(readLUT(nullptr, false));
                  EXPECT_FALSE(readLUT(nullptr, true));
              }),
              "Err (readLUT): cannot open [/nonexistent/x.lut] for reading.\n"
              "Err (readLUT): invalid input.\n");
}

TEST(LookupTables, IdentityApplyAndPrint) {
    std::unique_ptr<LUT> lut = initLUT();
    ASSERT_TRUE(lut);
    for (int i = 0; i < 256; i++)
        lut->alpha[i] = 255 - i;
    lut->red[5] = 50;
    std::vector<unsigned char> la{5, 5, 6, 0};  // luminance through red, alpha through alpha
    EXPECT_EQ(applyLUT(lut.get(), la.data(), 2, 1, 2, false), 1);
    EXPECT_EQ(la, (std::vector<unsigned char>{50, 250, 6, 255}));
    unsigned char grey[3] = {5, 5, 1};
    EXPECT_EQ(applyLUT(lut.get(), grey, 3, 1, 1, false), 1);
    EXPECT_TRUE(grey[1] == 50 && grey[2] == 1);
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(applyLUT(lut.get(), grey, 0, 1, 1, false), -1);
                  EXPECT_EQ(applyLUT(nullptr, grey, 1, 1, 1, false), -1);
                  EXPECT_EQ(applyLUT(lut.get(), nullptr, 1, 1, 1, true), -1);
                  EXPECT_EQ(applyLUT(lut.get(), grey, 1, 1, 0, true), -1);
              }),
              "Err (applyLUT): invalid input.\nErr (applyLUT): invalid input.\n");

    std::string printed = stderrOf([&] { printLUT(lut.get()); });
    EXPECT_EQ(printed.rfind("   0   0   0 255\n   1   1   1 254\n", 0), 0u);
    EXPECT_NE(printed.find("\n  50   5   5 250\n"), std::string::npos);
    EXPECT_EQ(testsupport::linesStartingWith(printed, " ").size(), 256u);
}
