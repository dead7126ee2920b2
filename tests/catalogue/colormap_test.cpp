// B-V and spectral colormaps: the files, lookups, the nearest-B-V fallback and bad files.

#include <gtest/gtest.h>

#include <array>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;
using cattest::stderrOf;

namespace {

// Stars at increasing distance with the given B-V and spectral class.
const char* const kStars =
    "1 0 0 0 0 0 0 0 0 0 -0.5 1 1 1 1 1 B 2 V 1\n"
    "2 0 0 0 0 0 0 0 0 0 0.25 1 1 1 1 1 A 0 V 2\n"
    "3 0 0 0 0 0 0 0 0 0 0.65 1 1 1 1 1 G 2 V 3\n"
    "4 0 0 0 0 0 0 0 0 0 2.5 1 1 1 1 1 M 5 III 4\n"
    "5 0 0 0 0 0 0 0 0 0 0.3 1 1 1 1 1 DA 3 V 5\n";

class ColorMaps : public ::testing::Test {
  protected:
    void SetUp() override { cattest::loadStars(list, dir, 5, kStars); }
    // True when the colormap colour of star HD `hd` is (r, g, b, a).
    bool colour(int hd, float r, float g, float b, float a = 1) const {
        const float* c = cattest::byHD(list, hd).colormapColor;
        const std::array<float, 4> want = {r, g, b, a};
        for (int i = 0; i < 4; ++i)
            if (std::fabs(c[i] - want[i]) > 1e-6f) return false;
        return true;
    }
    ScratchDir dir;
    StarList list;
};

}  // namespace

TEST_F(ColorMaps, BVRampInterpolatesAndClampsAndAnEmptyIntervalGivesTheFirstColour) {
    const std::string map = dir.write("bv.txt", "# three\n3\n1 0 0 1\n\n0 1 0 1\n0 0 1 0.5\n");
    ASSERT_EQ(list.loadColorMapBV(map.c_str(), 0.0, 1.0), 1);
    EXPECT_EQ(list.getWhichColorMap(), _USE_BV_COLOR_MAP);
    EXPECT_TRUE(colour(1, 1, 0, 0));       // below start: first
    EXPECT_TRUE(colour(2, 0.5, 0.5, 0));   // halfway to the middle
    EXPECT_TRUE(colour(4, 0, 0, 1, 0.5));  // above end: last
    EXPECT_STREQ(list.getStarParameter().bvColorMapFile, map.c_str());
    ASSERT_EQ(list.loadColorMapBV(dir.write("two.txt", "2\n1 1 1 1\n0 0 0 1\n").c_str(), 0.5, 0.5),
              1);
    for (int hd = 1; hd <= 5; ++hd)
        EXPECT_TRUE(colour(hd, 1, 1, 1)) << hd;
}

TEST_F(ColorMaps, BadBVFilesFailWithTheirMessagesAndKeepTheStarColours) {
    ASSERT_EQ(list.loadColorMapBV(dir.write("good.txt", "1\n0.2 0.4 0.6 1\n").c_str(), 0, 1), 1);
    const std::string f = dir.file("bad.txt"), missing = dir.file("none.txt");
    const std::string unreasonable = "] = 200000\n      it is quite unreasonable!\n\n";
    const std::pair<std::string, std::string> cases[] = {
        {"200000\n1 1 1 1\n", "Err : number of color entry in [" + f + unreasonable},
        {"3\n1 1 1 1\n0 0 0 0\n", "Err : not enough color entries in file [" + f + "]\n"},
        {"2\n1 1 1 1\n0 0 nan 0\n", "Err : invalid color entry (line 3) in [" + f + "]\n"},
        {"2\n1 1 1 1\n0 0 0\n", "Err : invalid color entry (line 3) in [" + f + "]\n"},
        {"lots\n",
         "Err : number of color entry in [" + f + "] = 0\n      it is quite unreasonable!\n\n"},
    };
    for (const auto& c : cases) {
        dir.write("bad.txt", c.first);
        EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadColorMapBV(f.c_str(), 0, 1), -1); }),
                  c.second + "Err: (loadColorMapBV) failed to load colormap [" + f + "]\n");
        EXPECT_TRUE(colour(3, 0.2f, 0.4f, 0.6f));
    }
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadColorMapBV(missing.c_str(), 0, 1), -1); }),
              "Err : opening colormap [" + missing +
                  "]\nErr: (loadColorMapBV) failed to load colormap [" + missing + "]\n");
    // The failed load leaves no B-V colormap to switch to.
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setWhichColorMap(_USE_BV_COLOR_MAP), -1); }),
              "Err: please call loadColorMapBV to setup the BV colormap first.\n");
}

TEST_F(ColorMaps, SpectralMapTakesTheNearestNumberOfTheClassThenTheNearestBV) {
    const std::string map = dir.write("sp.txt",
                                      "# type  x y  r g b\n"
                                      "B0(V) 0 0 100 110 255\n"
                                      "A0(V) 0 0 200 210 255\n"
                                      "A5(V) 0 0 210 220 255\n"
                                      "G2(V) 0 0 255 240 230\n"
                                      "M4(III) 0 0 300 -5 80\n");
    ASSERT_EQ(list.loadColorMapSpType(map.c_str()), 1);
    EXPECT_EQ(list.getWhichColorMap(), _USE_SPECTRAL_COLOR_MAP);
    EXPECT_TRUE(colour(1, 100 / 255.f, 110 / 255.f, 1));  // B2: nearest B0
    EXPECT_TRUE(colour(2, 200 / 255.f, 210 / 255.f, 1));  // A0 exactly
    EXPECT_TRUE(colour(4, 1, 0, 80 / 255.f));             // clamped to bytes
    // The white dwarf's class is not in the table: the star nearest in B-V (A0) lends its colour.
    EXPECT_TRUE(colour(5, 200 / 255.f, 210 / 255.f, 1));

    // With no star of a listed class the fallback has nothing to lend: the green stays.
    StarList alone;
    cattest::loadStars(alone, dir, 1, "1 0 0 0 0 0 0 0 0 0 0.3 1 1 1 1 1 DA 3 V 5\n");
    ASSERT_EQ(alone.loadColorMapSpType(dir.write("o.txt", "O5(V) 0 0 1 2 3\n").c_str()), 1);
    const float* green = alone.getStarArray()[0].colormapColor;
    EXPECT_TRUE(green[0] == 0 && green[1] == 1 && green[2] == 0);

    SpColorEntry e;
    ASSERT_TRUE(parseSpectralWord("K3.5(III)", &e));
    EXPECT_STREQ(e.spectralClass, "K");
    EXPECT_FLOAT_EQ(e.spectralNumber, 3.5f);
    EXPECT_STREQ(e.luminosityType, "III");
    ASSERT_TRUE(parseSpectralWord("DA3", &e));
    EXPECT_STREQ(e.spectralClass, "DA");
    EXPECT_TRUE(parseSpectralWord("C", &e));
    for (const char* bad : {"M", "M2(III", ""})
        EXPECT_FALSE(parseSpectralWord(bad, &e)) << bad;
}

TEST_F(ColorMaps, BadSpectralFilesAndModes) {
    StarList empty;
    const std::string f = dir.file("sp.txt");
    const std::string hint =
        "      (lines follow the star colour table by spectral type: <type> <number> <number> "
        "<red> <green> <blue>)\n";
    const std::pair<std::string, std::string> cases[] = {
        {"# only comments\n\n", "Err: no spectral color entry found in [" + f + "].\n"},
        {"# a\nG2(V) 0 0 1 2 3\nG5(V) 0 0 1 2\n",
         "Err (line 3 in [" + f + "]) - not enough argument.\n" + hint},
        {"G2(V) 0 0 1 2 3\nM 0 0 1 2 3\n",
         "Err (line 2 in [" + f + "]) - format of spectral type incorrect.\n" + hint},
    };
    for (const auto& c : cases) {
        dir.write("sp.txt", c.first);
        EXPECT_EQ(stderrOf([&] { EXPECT_EQ(empty.loadColorMapSpType(f.c_str()), -1); }),
                  c.second + "Err: (loadColorMapSpType) failed to load colormap [" + f + "]\n");
    }
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(empty.setWhichColorMap(_USE_SPECTRAL_COLOR_MAP), -1); }),
              "Err: please call loadColorMapSpType to setup the SpType colormap first.\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(empty.setWhichColorMap(3), -1); }),
              "Err: unknown parameter for setWhichColorMap\n     input should be _NO_COLOR_MAP, "
              "_USE_BV_COLOR_MAP, or _USE_SPECTRAL_COLOR_MAP)\n");

    // Switching keeps the colours until the next load, which uses the active map.
    ASSERT_EQ(list.loadColorMapSpType(dir.write("s.txt", "G2(V) 0 0 255 0 0\n").c_str()), 1);
    ASSERT_EQ(list.loadColorMapBV(dir.write("bv.txt", "1\n0.1 0.2 0.3 1\n").c_str(), 0, 1), 1);
    ASSERT_EQ(list.setWhichColorMap(_USE_SPECTRAL_COLOR_MAP), 1);
    EXPECT_TRUE(colour(3, 0.1f, 0.2f, 0.3f));
    cattest::loadStars(list, dir, 5, kStars);
    EXPECT_TRUE(colour(3, 1, 0, 0));
    ASSERT_EQ(list.setWhichColorMap(_NO_COLOR_MAP), 1);
    EXPECT_TRUE(colour(3, 1, 0, 0));
}
