// Damaged star, parameter and colormap files load or fail with a message, never crash, hang
// or allocate without bound (the sanitizer build runs these too).

#include <gtest/gtest.h>

#include <string>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;

namespace {

const char* const kStarFile =
    "NUM_STARS 4\n"
    "SIZE 1 16.4894\n"
    "# comment\n"
    "1.3 0.2 -0.1 0.002 -12.8 -13.4 14.8 1.6 1.5 0.02 0.90 0.0052 1 0.9 0.8 1 K 1.0 V 128621 71681 "
    "Toliman\n"
    "2.5 1.0 0.4 0.01 10 20 30 0.1 0.1 0.1 0.65 1.0 1 1 1 1 G 2 V 1234 5678 Alpha Centauri A\n"
    "\n"
    "-3 4 0 0.1 5 5 5\n"
    "7 -2 1\n";

const char* const kParameterFile =
    "Star Parameters\n"
    "---------------\n"
    "zRange_selection     = on 15.0 20.0\n"
    "Sptype_selection     = on G 0 4\n"
    "color_map = no_colormap\n"
    "pxsizeTex = 4\n"
    "texture_source = Gauss\n"
    "filterSize    = 0.2\n"
    "exposure      = 0.9\n"
    "starAtYear    = 2002\n"
    "LSR_LB_SPEED = 90 10 20\n";

const char* const kBVColorMap = "# ramp\n3\n1 0 0 1\n0 1 0 1\n0 0 1 1\n";
const char* const kSpColorMap =
    "O5(V) 0 0 158 184 255\nG2(V) 0 0 255 240 230\nDA3 0 0 200 200 255\n";

constexpr int kRounds = 400;

}  // namespace

TEST(DamagedFiles, StarFilesLoadOrFailCleanly) {
    ScratchDir dir;
    for (int i = 0; i < kRounds; ++i) {
        const std::string path = dir.write("s.star", cattest::damaged(kStarFile, i));
        StarList list;
        int status = 0;
        cattest::stderrOf(
            [&] { cattest::stdoutOf([&] { status = list.readStarFiles(path.c_str(), 1, 0); }); });
        ASSERT_TRUE(status == 1 || status == -1);
        ASSERT_GE(list.getNumRecords(), 1);  // the Sun at least
        ASSERT_LE(list.getNumRecords(), 100);
    }
}

TEST(DamagedFiles, ParameterFilesApplyWhollyOrNotAtAll) {
    ScratchDir dir;
    for (int i = 0; i < kRounds; ++i) {
        const std::string path = dir.write("p.txt", cattest::damaged(kParameterFile, i));
        StarList list;
        int status = 0;
        const std::string before = cattest::stdoutOf([&] { list.writeStarParameter(stdout); });
        cattest::stderrOf([&] { status = list.readStarParameter(path.c_str(), nullptr, 0); });
        ASSERT_TRUE(status == 1 || status == -1);
        if (status == -1) {
            ASSERT_EQ(cattest::stdoutOf([&] { list.writeStarParameter(stdout); }), before);
        }
    }
}

TEST(DamagedFiles, ColormapsLoadOrFailCleanly) {
    ScratchDir dir;
    const std::string stars = dir.write("s.star", kStarFile);
    StarList list;
    cattest::stdoutOf([&] { ASSERT_EQ(list.readStarFiles(stars.c_str(), 1, 0), 1); });
    for (int i = 0; i < kRounds; ++i) {
        const std::string bv = dir.write("bv.txt", cattest::damaged(kBVColorMap, i));
        const std::string sp = dir.write("sp.txt", cattest::damaged(kSpColorMap, i + kRounds));
        cattest::stderrOf([&] {
            const int a = list.loadColorMapBV(bv.c_str(), -0.4, 2.0);
            const int b = list.loadColorMapSpType(sp.c_str());
            ASSERT_TRUE(a == 1 || a == -1);
            ASSERT_TRUE(b == 1 || b == -1);
        });
    }
}
