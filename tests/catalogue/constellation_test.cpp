// The constellation file: sections, boundaries turned to galactic directions, figure lines,
// members and brightest stars, lookups by name and code, settings, and damaged files.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/constellation_sky.h"
#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace {

using cattest::ScratchDir;
using cattest::stderrOf;

// Eight stars with HD 101..108, named S101..S108, nearer (so brighter) with a smaller HD,
// except HD 105, the nearest of all.
std::string starLines() {
    std::string lines;
    const double distance[8] = {2, 3, 4, 5, 1, 6, 7, 8};
    for (int i = 0; i < 8; ++i) {
        const int hd = 101 + i;
        lines += cattest::fullLine(distance[i], 0.1 * i, 0.2,
                                   "G 2 V " + std::to_string(hd) + " " + std::to_string(hd + 1000) +
                                       " S" + std::to_string(hd));
    }
    return lines;
}

class Constellations : public ::testing::Test {
  protected:
    void SetUp() override { cattest::loadStars(list, dir, 8, starLines(), 1); }

    // Loads the text as a constellation file; returns what was printed.
    std::string load(const std::string& text, int expected) {
        path = dir.write("c.txt", text);
        return stderrOf([&] { EXPECT_EQ(list.loadConstellations(path.c_str()), expected); });
    }

    const StarObj& byHD(int hd) const { return cattest::byHD(list, hd); }

    // The figure segments of a constellation as HD pairs.
    std::vector<std::pair<int, int>> segments(int id) const {
        int n = -1;
        std::int32_t* set = list.getConstellationLineSet(id, &n);
        std::vector<std::pair<int, int>> out;
        for (int i = 0; set != nullptr && i < n; ++i) {
            StarObj a, b;
            list.getStar(&a, set[2 * i]);
            list.getStar(&b, set[2 * i + 1]);
            out.emplace_back(a.hd, b.hd);
        }
        list.releaseArray(set);
        return out;
    }

    ScratchDir dir;
    StarList list;
    std::string path;
};

const char* const kTwoSections =
    "# two sections\n"
    "\n"
    "CONSTELLATION Ori Orion   \n"
    "BOUNDARY BEGIN\n"
    "17.7606 -28.9387 Sgr\n"
    "21.1996 48.3360 Cyg\n"
    "BOUNDARY END\n"
    "BOUNDARY BEGIN\n"
    "  # a comment inside a block\n"
    "0.0 90.0 Cep\n"
    "BOUNDARY END\n"
    "LINE BEGIN\n"
    "HD101\n"
    "HD102\n"
    "HD103 SHARED\n"
    "HD999\n"
    "HD104\n"
    "HD105\n"
    "LINE END\n"
    "LINE BEGIN\n"
    "HD101\n"
    "HD104\n"
    "LINE END\n"
    "CONSTELLATION CMa Canis Major (Great Dog)\n"
    "LINE BEGIN\n"
    "HD103\n"
    "HD106\n"
    "LINE END\n"
    "CONSTELLATION Lyn Lynx\n"
    "BOUNDARY BEGIN\n"
    "8.0 45.0 UMa\n"
    "BOUNDARY END\n";

TEST_F(Constellations, SectionsLinesMembersAndBrightestStars) {
    EXPECT_EQ(load(kTwoSections, 1), "");
    ASSERT_EQ(list.getNumConstellations(), 3);
    EXPECT_STREQ(list.getConstellationName(0), "Orion");
    EXPECT_STREQ(list.getConstellationCode(0), "Ori");
    EXPECT_STREQ(list.getConstellationName(1), "Canis Major (Great Dog)");
    EXPECT_STREQ(list.getConstellationCode(2), "Lyn");
    EXPECT_STREQ(list.getStarParameter().constellationFile, path.c_str());

    // A missing HD breaks the figure; a new block starts a new polyline.
    using Pairs = std::vector<std::pair<int, int>>;
    EXPECT_EQ(segments(0), (Pairs{{101, 102}, {102, 103}, {104, 105}, {101, 104}}));
    EXPECT_EQ(segments(1), (Pairs{{103, 106}}));
    EXPECT_TRUE(segments(2).empty());

    // A SHARED star is drawn but belongs to the constellation that names it plainly.
    EXPECT_STREQ(byHD(101).constellationName, "Orion");
    EXPECT_STREQ(byHD(101).constellationCode, "Ori");
    EXPECT_STREQ(byHD(103).constellationName, "Canis Major (Great Dog)");
    EXPECT_STREQ(byHD(103).constellationCode, "CMa");
    EXPECT_STREQ(byHD(107).constellationName, "---");

    // Brightest members (smallest home magnitude): HD 105 is the nearest star.
    StarObj found;
    ASSERT_EQ(list.findConstellationByName(&found, "Orion"), 1);
    EXPECT_EQ(found.hd, 105);
    EXPECT_STREQ(found.constellationName, "Orion");
    ASSERT_EQ(list.findConstellationByCode(&found, "CMa"), 1);
    EXPECT_EQ(found.hd, 103);
    EXPECT_EQ(list.findConstellationOfStar(byHD(106)), 1);
    EXPECT_EQ(list.findConstellationOfStar(byHD(108)), -1);

    // Without a figure there is no brightest star: not found by name or code.
    found.hd = -7;
    EXPECT_EQ(list.findConstellationByName(&found, "Lynx"), -1);
    EXPECT_EQ(list.findConstellationByCode(&found, "Lyn"), -1);
    EXPECT_EQ(found.hd, -7);

    // Long names are cut at 31 characters; reloading forgets the old members.
    load("CONSTELLATION Xyz " + std::string(40, 'N') + "\nLINE BEGIN\nHD107\nLINE END\n", 1);
    EXPECT_EQ(std::string(list.getConstellationName(0)), std::string(31, 'N'));
    EXPECT_STREQ(byHD(107).constellationCode, "Xyz");
    load(kTwoSections, 1);
    EXPECT_STREQ(byHD(107).constellationCode, "---");
}

TEST_F(Constellations, NameMatchingAfterSeparators) {
    load(kTwoSections, 1);
    StarObj found;
    struct Case {
        const char* query;
        int hd;  // -1: no match
    };
    const Case cases[] = {
        {"Ori", 105},        {"Orion", 105}, {"Orions", -1}, {"rion", -1},
        {"Canis", 103},      {"Major", 103}, {"Great", 103}, {"Dog)", 103},
        {"Great Dog)", 103}, {"ajor", -1},   {"", -1},       {"CMa", -1},
    };
    for (const Case& c : cases) {
        found.hd = 0;
        const int result = list.findConstellationByName(&found, c.query);
        EXPECT_EQ(result, c.hd < 0 ? -1 : 1) << c.query;
        if (c.hd > 0) {
            EXPECT_EQ(found.hd, c.hd) << c.query;
        }
    }
    // The code is matched on its first three characters.
    EXPECT_EQ(list.findConstellationByCode(&found, "Orion"), 1);
    EXPECT_EQ(found.hd, 105);
    EXPECT_EQ(list.findConstellationByCode(&found, "Or"), -1);

    EXPECT_TRUE(constellationNameMatches("Ursa Major//Big Dipper", "Big"));
    EXPECT_TRUE(constellationNameMatches("Coma-Berenices", "Bere"));
    EXPECT_TRUE(constellationNameMatches("St.Elmo", "Elmo"));
    EXPECT_FALSE(constellationNameMatches("Ursa Major/Big", "Big"));
}

TEST_F(Constellations, BoundariesAreGalacticDirectionsAtTheBoundaryRadius) {
    load(kTwoSections, 1);
    const Constellation* ori = list.getConstellation(0);
    ASSERT_NE(ori, nullptr);
    ASSERT_EQ(ori->numBoundaries, 2);
    EXPECT_EQ(ori->boundaryVertexCounts[0], 2);
    EXPECT_EQ(ori->boundaryVertexCounts[1], 1);
    // The galactic centre, then a direction along +y, then the celestial pole.
    const Phc& centre = ori->boundaries[0][0];
    EXPECT_NEAR(centre.x, 1.0, 1e-4);
    EXPECT_NEAR(centre.y, 0.0, 1e-4);
    EXPECT_NEAR(centre.z, 0.0, 1e-4);
    EXPECT_NEAR(ori->boundaries[0][1].y, 1.0, 1e-4);
    const Phc& pole = ori->boundaries[1][0];
    EXPECT_NEAR(pole.z, std::cos(1.097501), 1e-9);
    // log10 of the light travel distance since 1950: about 76 light years in 2026.
    EXPECT_DOUBLE_EQ(centre.w, list.getBoundaryRadius());
    EXPECT_GT(centre.w, std::log10(70 * 9.461e15));
    EXPECT_LT(centre.w, std::log10(200 * 9.461e15));
}

TEST_F(Constellations, DamagedFilesKeepTheSectionsReadBefore) {
    const std::string good = "CONSTELLATION Ori Orion\nLINE BEGIN\nHD101\nHD102\nLINE END\n";
    const std::string lyn = good + "CONSTELLATION Lyn Lynx\n", figure = lyn + "LINE BEGIN\n";
    auto invalid = [](int line, const std::string& what) {
        return "Err (line " + std::to_string(line) + "): invalid data\n[" + what + "]\n";
    };
    struct Case {
        std::string text, message;
        int kept;
    };
    const std::vector<Case> cases = {
        {"# only a comment\nLINE BEGIN\n", "Err (line 2): missing identifier [CONSTELLATION]\n", 0},
        {lyn + "BOUNDARY BEGIN\n8.0 45.0\nBOUNDARY END\n", invalid(8, "8.0 45.0"), 1},
        {lyn + "BOUNDARY BEGIN\nnan 45.0 UMa\nBOUNDARY END\n", invalid(8, "nan 45.0 UMa"), 1},
        {lyn + "BOUNDARY BEGIN\n8.0 45.0 UMa\n\n# end\n", "Err (line 10): not enough data\n", 1},
        {figure + "HD101\nXY102\nLINE END\n", invalid(9, "XY102"), 1},
        {figure + "HD101 SHARED twice\nLINE END\n", invalid(8, "HD101 SHARED twice"), 1},
        {figure + "HD101 EXTRA\nLINE END\n", invalid(8, "HD101 EXTRA"), 1},
        {figure + "HD\nLINE END\n", invalid(8, "HD"), 1},
        {figure + "HD99999999999\nLINE END\n", invalid(8, "HD99999999999"), 1},
        // Boundaries after figures, and a block opener with a third word.
        {good + "BOUNDARY BEGIN\n1 2 X\nBOUNDARY END\n", invalid(6, "BOUNDARY BEGIN"), 0},
        {lyn + "LINE BEGIN now\nHD101\nLINE END\n", invalid(7, "LINE BEGIN now"), 1},
        {"CONSTELLATION\nLINE BEGIN\nHD101\nLINE END\n", invalid(1, "CONSTELLATION"), 0},
    };
    for (const Case& c : cases) {
        list.loadConstellations(dir.write("ok.txt", kTwoSections).c_str());
        EXPECT_EQ(load(c.text, -1), c.message) << c.text;
        EXPECT_EQ(list.getNumConstellations(), c.kept) << c.text;
        if (c.kept == 1) {
            EXPECT_STREQ(list.getConstellationName(0), "Orion");
            EXPECT_EQ(segments(0).size(), 1u);
        }
    }
}

TEST_F(Constellations, OutOfRangeLookupsUnreadableEmptyAndHeaderOnlyFiles) {
    const std::string missing = dir.file("nope.txt");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadConstellations(missing.c_str()), -1); }),
              "ERR : reading [" + missing + "]\n");
    EXPECT_STREQ(list.getStarParameter().constellationFile, "");

    // A file of nothing but headers: one empty constellation each.
    std::string headers;
    for (int i = 0; i < 2000; ++i)
        headers += "CONSTELLATION C" + std::to_string(i % 10) + "x Name\n";
    EXPECT_EQ(load(headers, 1), "");
    EXPECT_EQ(list.getNumConstellations(), 2000);
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.getConstellationName(2000), nullptr); }),
              "Err (StarList::getConstellationName): constellationID out of range.\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.getConstellationCode(-1), nullptr); }),
              "Err (StarList::getConstellationCode): constellationID out of range.\n");
    int n = 5;
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.getConstellationLineSet(2007, &n), nullptr); }),
              "Err (StarList::getConstellationLineSet): constellationID out of range.\n");
    EXPECT_EQ(n, 0);
    EXPECT_EQ(load("", 1), "");
    EXPECT_EQ(list.getNumConstellations(), 0);
}

TEST_F(Constellations, RejectedSettingsPrintTheirMessageAndKeepTheOldValues) {
    const float good[4] = {0.1f, 0.2f, 0.7f, 0.4f}, over[4] = {0.5f, 0.6f, 1.5f, 0.8f},
                under[4] = {-0.1f, 0, 0, 0};
    ASSERT_EQ(list.setConstellationColors(good, good), 1);
    ASSERT_EQ(list.setConstellationLineWidth(2.0f, 3.0f), 1);
    ASSERT_EQ(list.setConstellationStipple(0xF0F0, 0), 1);
    ASSERT_EQ(list.setLabelScale(0.0f), 1);
    const std::string before = cattest::stdoutOf([&] { list.writeStarParameter(stdout); });
    // Without a GL context the widths are checked against 1 .. 10 pixels.
    const std::string width = " out of range [1.000000,10.000000]\n";
    const std::pair<std::function<int()>, std::string> cases[] = {
        {[&] { return list.setConstellationColors(good, over); },
         "Err (setConstellationColors): the (2)th component of inBoundColor out of range [0,1]\n"},
        {[&] { return list.setConstellationColors(under, good); },
         "Err (setConstellationColors): the (0)th component of inLineColor out of range [0,1]\n"},
        {[&] { return list.setConstellationLineWidth(0.0f, 1.0f); },
         "Err (setConstellationLineWidth): inLineWidth" + width},
        {[&] { return list.setConstellationLineWidth(1.0f, 11.0f); },
         "Err (setConstellationLineWidth): inBoundWidth" + width},
        {[&] { return list.setConstellationStipple(0x10000, 0); },
         "Err (setConstellationStipple): inLineStipple out of range [0,0xFFFF]\n"},
        {[&] { return list.setConstellationStipple(0, -1); },
         "Err (setConstellationStipple): inBoundStipple out of range [0,0xFFFF]\n"},
        {[&] { return list.setLabelScale(NAN); },
         "Err (setLabelScale): inLabelScale should be non-negative\n"},
    };
    for (const auto& c : cases) {
        int result = 0;
        EXPECT_EQ(stderrOf([&] { result = c.first(); }), c.second);
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(cattest::stdoutOf([&] { list.writeStarParameter(stdout); }), before);
}

}  // namespace
