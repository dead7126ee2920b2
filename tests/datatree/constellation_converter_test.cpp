// The constellation file from small synthetic sources.
#include <gtest/gtest.h>

#include "tests/datatree/datatree_test_support.h"
#include "tools/datatree/core/constellation_catalogue.h"
#include "tools/datatree/core/data_error.h"

namespace {

// Two square constellations side by side sharing one edge, and a star drawn in both figures.
ConstellationSources twoSquares(const ScratchDir& dir) {
    ConstellationSources s;
    s.names = readConstellationNames(dir.write(
        "names.fab", "Aaa\t\"Alpha Land\"\t_(\"x\")\nBbb\t\"Bo\xC3\xB6tes\"\t_(\"y\")\n"));
    s.figures = readFigures(dir.write("figures.fab", "Aaa 2 1 2 2 3\nBbb 1 3 4\n"));
    s.boundaries = readBoundaryEdges(
        dir.write("bounds.dat",
                  "2 1.0 0.0 1.0 10.0 2 AAA BBB\n"
                  "3 1.0 10.0 0.0 10.0\n 0.0 0.0 2 AAA AAA\n"  // an outer edge split over lines
                  "2 0.0 0.0 1.0 0.0 2 AAA AAA\n"
                  "2 1.0 10.0 2.0 10.0 2 BBB BBB\n2 2.0 10.0 2.0 0.0 2 BBB BBB\n"
                  "2 2.0 0.0 1.0 0.0 2 BBB BBB\n"));
    return s;
}

}  // namespace

TEST(ConstellationFile, TheStarListReadsBoundariesFiguresAndMembers) {
    ScratchDir dir;
    ConstellationSources s = twoSquares(dir);
    std::string text = formatConstellationFile(
        s, makeFigureStarTable(s, {{1, 101}, {2, 102}, {3, 103}, {4, 104}}, {{3, "Bbb"}}));
    // Sections in full-name order; shared edges name the neighbour; star 3 belongs to Bbb.
    EXPECT_LT(text.find("\nCONSTELLATION Aaa Alpha Land\n"), text.find("\nCONSTELLATION Bbb "));
    EXPECT_TRUE(text.find(" Bbb\n") != std::string::npos &&
                text.find(" Aaa\n") != std::string::npos);
    EXPECT_NE(text.find("LINE BEGIN\nHD101\nHD102\nHD103 SHARED\nLINE END\n"), std::string::npos)
        << text;

    std::string stars = "NUM_STARS 4\nSIZE 1 16.4894\n";
    for (int i = 1; i <= 4; ++i)
        stars += std::to_string(i) + " 1 1 0 0 0 0 0 0 0 0.5 1 1 1 1 1 G 2 V " +
                 std::to_string(100 + i) + " " + std::to_string(i) + "\n";
    StarList list;
    ASSERT_TRUE(readStars(list, dir.write("four.star", stars)));
    ASSERT_EQ(list.loadConstellations(dir.write("c.txt", text).c_str()), 1);
    ASSERT_EQ(list.getNumConstellations(), 2);
    EXPECT_EQ(std::string(list.getConstellationCode(0)) + " " + list.getConstellationName(1),
              "Aaa Bootes");  // in ASCII
    // Aaa: one closed boundary, 4 corners and the closing vertex.
    const Constellation* a = list.getConstellation(0);
    ASSERT_EQ(a->numBoundaries, 1);
    ASSERT_EQ(a->boundaryVertexCounts[0], 5);
    EXPECT_TRUE(phcEqual(a->boundaries[0][0], a->boundaries[0][4]));
    auto strokes = [&](int id) {
        std::string joined;
        const Constellation* c = list.getConstellation(id);
        for (int k = 0; k < c->numLines; ++k)
            joined += std::to_string(c->lines[k].from->hd) + "-" +
                      std::to_string(c->lines[k].to->hd) + " ";
        return joined;
    };
    EXPECT_EQ(strokes(0) + "/ " + strokes(1), "101-102 102-103 / 103-104 ");
    EXPECT_EQ(
        std::string(starByHd(list, 102).constellationCode) + starByHd(list, 103).constellationCode,
        "AaaBbb");
}

TEST(ConstellationFile, StarsWithoutHdBreakTheStroke) {
    ScratchDir dir;
    ConstellationSources s = twoSquares(dir);
    s.figures = readFigures(dir.write("f.fab", "Aaa 3 1 2 2 3 3 4\nBbb 1 3 4\n"));
    std::string text =
        formatConstellationFile(s, makeFigureStarTable(s, {{1, 101}, {3, 103}, {4, 104}}, {}));
    EXPECT_EQ(text.find("HD0"), std::string::npos);
    EXPECT_NE(text.find("LINE BEGIN\nHD103\nHD104\nLINE END\n"), std::string::npos) << text;
}

TEST(ConstellationFile, MissingPartsAreErrors) {
    ScratchDir dir;
    ConstellationSources s = twoSquares(dir);
    FigureStarTable stars = makeFigureStarTable(s, {{1, 1}, {2, 2}, {3, 3}, {4, 4}}, {});
    ConstellationSources noFigure = s;
    noFigure.figures.erase("Bbb");
    EXPECT_THROW(formatConstellationFile(noFigure, stars), DataError);
    ConstellationSources unknown = s;
    unknown.boundaries[0].second = "ZZZ";
    EXPECT_THROW(formatConstellationFile(unknown, stars), DataError);
}

TEST(ConstellationSources, MalformedFilesNameTheLine) {
    ScratchDir dir;
    struct Case {
        std::string what;
        std::function<void()> read;
        const char* message;
    };
    std::vector<Case> cases = {
        {"odd figure", [&] { readFigures(dir.write("a", "Ori 2 1 2 3\n")); },
         "a: line 1: 3 HIP numbers for 2 segments"},
        {"figure text", [&] { readFigures(dir.write("b", "Ori 1 1 x\n")); },
         "b: line 1: HIP number is not an integer"},
        {"cut record", [&] { readBoundaryEdges(dir.write("c", "3 1 2 3 4 5 6 2 AAA\n")); },
         "ends inside a boundary record"},
        {"bad count", [&] { readBoundaryEdges(dir.write("d", "2 1 2 3 4 3 AAA BBB CCC\n")); },
         "expected 2 constellation codes"},
        {"out of range", [&] { readBoundaryEdges(dir.write("e", "2 25 2 3 4 2 AAA BBB\n")); },
         "vertex out of range"},
        {"no quotes", [&] { readConstellationNames(dir.write("f", "Ori Orion\n")); },
         "f: line 1: expected a code"},
        {"empty", [&] { readFigures(dir.write("g", "\n")); }, "no constellation figures"},
    };
    for (const Case& c : cases) {
        try {
            c.read();
            ADD_FAILURE() << c.what << " accepted";
        } catch (const DataError& e) {
            EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos)
                << c.what << ": " << e.what();
        }
    }
}

TEST(ChainSegments, OpenFiguresAndClosedLoops) {
    // A "Y": three strokes meet at point 2, in two paths; a triangle is one closed loop.
    auto paths = chainSegments({{1, 2}, {2, 3}, {2, 4}});
    EXPECT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[0].size() + paths[1].size(), 3u);
    auto loop = chainSegments({{5, 6}, {7, 5}, {6, 7}});
    ASSERT_EQ(loop.size(), 1u);
    EXPECT_EQ(loop[0].size(), 3u);
    EXPECT_TRUE(chainSegments({}).empty());
}
