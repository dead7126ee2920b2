// B-V and spectral colormaps: the files, lookups, the nearest-B-V fallback and bad files.

#include <gtest/gtest.h>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;
using cattest::stderrOf;

namespace {

void expectColour(const float* rgba, float r, float g, float b, float a) {
    EXPECT_NEAR(rgba[0], r, 1e-6);
    EXPECT_NEAR(rgba[1], g, 1e-6);
    EXPECT_NEAR(rgba[2], b, 1e-6);
    EXPECT_NEAR(rgba[3], a, 1e-6);
}

using cattest::byHD;

// Stars at increasing distance with the given B-V and spectral class.
const char* const kStars =
    "1 0 0 0 0 0 0 0 0 0 -0.5 1 1 1 1 1 B 2 V 1\n"
    "2 0 0 0 0 0 0 0 0 0 0.25 1 1 1 1 1 A 0 V 2\n"
    "3 0 0 0 0 0 0 0 0 0 0.65 1 1 1 1 1 G 2 V 3\n"
    "4 0 0 0 0 0 0 0 0 0 2.5 1 1 1 1 1 M 5 III 4\n"
    "5 0 0 0 0 0 0 0 0 0 0.3 1 1 1 1 1 DA 3 V 5\n";

}  // namespace

TEST(BVColorMap, RampInterpolatesAndClampsAtBothEnds) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5, kStars);
    std::string map = dir.write("bv.txt", "# three colours\n3\n1 0 0 1\n\n0 1 0 1\n0 0 1 0.5\n");
    ASSERT_EQ(list.loadColorMapBV(map.c_str(), 0.0, 1.0), 1);
    EXPECT_EQ(list.getWhichColorMap(), _USE_BV_COLOR_MAP);
    expectColour(byHD(list, 1).colormapColor, 1, 0, 0, 1);      // below start: first
    expectColour(byHD(list, 2).colormapColor, 0.5, 0.5, 0, 1);  // halfway to the middle
    expectColour(byHD(list, 4).colormapColor, 0, 0, 1, 0.5);    // above end: last
    const StarParameter& p = list.getStarParameter();
    EXPECT_STREQ(p.bvColorMapFile, map.c_str());
    EXPECT_EQ(p.bvEnd, 1.0);
}

TEST(BVColorMap, OneColourOrAnEmptyIntervalGivesTheFirstColour) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5, kStars);
    std::string one = dir.write("one.txt", "1\n0.2 0.4 0.6 1\n");
    ASSERT_EQ(list.loadColorMapBV(one.c_str(), -1.0, 3.0), 1);
    for (int i = 0; i < list.getNumRecords(); ++i)
        expectColour(list.getStarArray()[i].colormapColor, 0.2f, 0.4f, 0.6f, 1);
    std::string two = dir.write("two.txt", "2\n1 1 1 1\n0 0 0 1\n");
    ASSERT_EQ(list.loadColorMapBV(two.c_str(), 0.5, 0.5), 1);
    for (int i = 0; i < list.getNumRecords(); ++i)
        expectColour(list.getStarArray()[i].colormapColor, 1, 1, 1, 1);
}

TEST(BVColorMap, BadFilesFailWithTheirMessagesAndKeepTheStarColours) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5, kStars);
    std::string good = dir.write("good.txt", "1\n0.2 0.4 0.6 1\n");
    ASSERT_EQ(list.loadColorMapBV(good.c_str(), 0, 1), 1);
    struct Case {
        std::string content;
        std::string message;
    };
    const std::string f = dir.file("bad.txt");
    const std::vector<Case> cases = {
        {"200000\n1 1 1 1\n", "Err : number of color entry in [" + f +
                                  "] = 200000\n      it is quite unreasonable!\n\n"},
        {"3\n1 1 1 1\n0 0 0 0\n", "Err : not enough color entries in file [" + f + "]\n"},
        {"2\n1 1 1 1\n0 0 nan 0\n", "Err : invalid color entry (line 3) in [" + f + "]\n"},
        {"2\n1 1 1 1\n0 0 0\n", "Err : invalid color entry (line 3) in [" + f + "]\n"},
        {"lots\n",
         "Err : number of color entry in [" + f + "] = 0\n      it is quite unreasonable!\n\n"},
    };
    for (const Case& c : cases) {
        dir.write("bad.txt", c.content);
        std::string err = stderrOf([&] { EXPECT_EQ(list.loadColorMapBV(f.c_str(), 0, 1), -1); });
        EXPECT_EQ(err, c.message + "Err: (loadColorMapBV) failed to load colormap [" + f + "]\n");
        expectColour(byHD(list, 3).colormapColor, 0.2f, 0.4f, 0.6f, 1);
    }
    std::string missing = dir.file("none.txt");
    std::string err = stderrOf([&] { EXPECT_EQ(list.loadColorMapBV(missing.c_str(), 0, 1), -1); });
    EXPECT_EQ(err, "Err : opening colormap [" + missing +
                       "]\nErr: (loadColorMapBV) failed to load colormap [" + missing + "]\n");
    // The failed load leaves no B-V colormap to switch to.
    err = stderrOf([&] { EXPECT_EQ(list.setWhichColorMap(_USE_BV_COLOR_MAP), -1); });
    EXPECT_EQ(err, "Err: please call loadColorMapBV to setup the BV colormap first.\n");
}

TEST(SpectralColorMap, NearestNumberOfTheClassAndTheFallbackByBV) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5, kStars);
    std::string map = dir.write("sp.txt",
                                "# type  x y  r g b\n"
                                "B0(V) 0 0 100 110 255\n"
                                "A0(V) 0 0 200 210 255\n"
                                "A5(V) 0 0 210 220 255\n"
                                "G2(V) 0 0 255 240 230\n"
                                "G8(V) 0 0 255 230 200\n"
                                "M4(III) 0 0 300 -5 80\n");
    ASSERT_EQ(list.loadColorMapSpType(map.c_str()), 1);
    EXPECT_EQ(list.getWhichColorMap(), _USE_SPECTRAL_COLOR_MAP);
    expectColour(byHD(list, 1).colormapColor, 100 / 255.f, 110 / 255.f, 1, 1);  // B2: nearest B0
    expectColour(byHD(list, 2).colormapColor, 200 / 255.f, 210 / 255.f, 1, 1);  // A0 exactly
    expectColour(byHD(list, 3).colormapColor, 1, 240 / 255.f, 230 / 255.f, 1);  // G2
    expectColour(byHD(list, 4).colormapColor, 1, 0, 80 / 255.f, 1);             // clamped to bytes
    // The white dwarf's class is not in the table: it takes the colour of the star nearest
    // in B-V (0.3 is nearest the A0 star's 0.25).
    expectColour(byHD(list, 5).colormapColor, 200 / 255.f, 210 / 255.f, 1, 1);
}

TEST(SpectralColorMap, WithNothingColouredTheGreenStays) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 1, "1 0 0 0 0 0 0 0 0 0 0.3 1 1 1 1 1 DA 3 V 5\n");
    std::string map = dir.write("sp.txt", "O5(V) 0 0 1 2 3\n");
    ASSERT_EQ(list.loadColorMapSpType(map.c_str()), 1);
    expectColour(list.getStarArray()[0].colormapColor, 0, 1, 0, 1);
}

TEST(SpectralColorMap, SpectralWords) {
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

TEST(SpectralColorMap, BadFilesFailWithTheirMessages) {
    ScratchDir dir;
    StarList list;
    const std::string f = dir.file("sp.txt");
    const std::string hint =
        "      (lines follow the star colour table by spectral type: <type> <number> <number> "
        "<red> "
        "<green> <blue>)\n";
    const std::string tail = "Err: (loadColorMapSpType) failed to load colormap [" + f + "]\n";
    dir.write("sp.txt", "# only comments\n\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadColorMapSpType(f.c_str()), -1); }),
              "Err: no spectral color entry found in [" + f + "].\n" + tail);
    dir.write("sp.txt", "# a\nG2(V) 0 0 1 2 3\nG5(V) 0 0 1 2\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadColorMapSpType(f.c_str()), -1); }),
              "Err (line 3 in [" + f + "]) - not enough argument.\n" + hint + tail);
    dir.write("sp.txt", "G2(V) 0 0 1 2 3\nM 0 0 1 2 3\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadColorMapSpType(f.c_str()), -1); }),
              "Err (line 2 in [" + f + "]) - format of spectral type incorrect.\n" + hint + tail);
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setWhichColorMap(_USE_SPECTRAL_COLOR_MAP), -1); }),
              "Err: please call loadColorMapSpType to setup the SpType colormap first.\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setWhichColorMap(3), -1); }),
              "Err: unknown parameter for setWhichColorMap\n     input should be _NO_COLOR_MAP, "
              "_USE_BV_COLOR_MAP, or _USE_SPECTRAL_COLOR_MAP)\n");
}

TEST(ColorMapMode, SwitchingKeepsTheColoursUntilTheNextLoad) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5, kStars);
    std::string bv = dir.write("bv.txt", "1\n0.1 0.2 0.3 1\n");
    std::string sp = dir.write("sp.txt", "G2(V) 0 0 255 0 0\n");
    ASSERT_EQ(list.loadColorMapSpType(sp.c_str()), 1);
    ASSERT_EQ(list.loadColorMapBV(bv.c_str(), 0, 1), 1);
    ASSERT_EQ(list.setWhichColorMap(_USE_SPECTRAL_COLOR_MAP), 1);
    expectColour(byHD(list, 3).colormapColor, 0.1f, 0.2f, 0.3f, 1);
    // A new star file is coloured with the active map.
    cattest::loadStars(list, dir, 5, kStars);
    expectColour(byHD(list, 3).colormapColor, 1, 0, 0, 1);
    ASSERT_EQ(list.setWhichColorMap(_NO_COLOR_MAP), 1);
    expectColour(byHD(list, 3).colormapColor, 1, 0, 0, 1);
}
