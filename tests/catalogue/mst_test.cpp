// The spanning tree of the stars: Prim's choices on small cases, the fast builder against
// Prim edge for edge (ties, repeated points, the real catalogue), and MST files.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/mst.h"
#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace {

using cattest::ScratchDir;
using cattest::stderrOf;
using Edges = std::vector<std::int32_t>;

struct TreeDeleter {
    void operator()(std::int32_t* p) const { releaseMSTArray(p); }
};
using Tree = std::unique_ptr<std::int32_t, TreeDeleter>;

Edges edgesOf(const std::int32_t* tree, int n) {
    if (tree == nullptr) return {};
    return Edges(tree, tree + 2 * (n > 1 ? n - 1 : 0));
}

Edges prim(const std::vector<double>& points, int k) {
    const int n = static_cast<int>(points.size()) / k;
    Tree tree(primMST(points.data(), n, k));
    EXPECT_NE(tree, nullptr);
    return edgesOf(tree.get(), n);
}

Edges fast(const std::vector<double>& points, int k) {
    const int n = static_cast<int>(points.size()) / k;
    Tree tree(fastMST(points.data(), n, k));
    EXPECT_NE(tree, nullptr);
    return edgesOf(tree.get(), n);
}

void expectSameTree(const std::vector<double>& points, int k, const std::string& what) {
    const Edges reference = prim(points, k), quick = fast(points, k);
    ASSERT_EQ(reference.size(), quick.size()) << what;
    for (std::size_t i = 0; i < reference.size(); i += 2)
        ASSERT_TRUE(reference[i] == quick[i] && reference[i + 1] == quick[i + 1])
            << what << ": edge " << i / 2 << " (" << reference[i] << "," << reference[i + 1]
            << ") vs (" << quick[i] << "," << quick[i + 1] << ")";
}

TEST(PrimMST, CollinearStarsJoinInAChain) {
    // Stars 1, 2, 3 at distances 1, 2 and 4 from star 0 along one line.
    const std::vector<double> points = {0, 0, 0, 1, 0, 0, 2, 0, 0, 4, 0, 0};
    EXPECT_EQ(prim(points, 3), (Edges{1, 0, 2, 1, 3, 2}));
    EXPECT_EQ(fast(points, 3), (Edges{1, 0, 2, 1, 3, 2}));
}

TEST(PrimMST, SmallAndDegenerateSets) {
    // Fewer than two points: an empty tree, not a failure.
    for (int n : {0, 1}) {
        std::vector<double> points(3 * n, 1.0);
        Tree a(primMST(points.data(), n, 3)), b(fastMST(points.data(), n, 3));
        EXPECT_NE(a, nullptr);
        EXPECT_NE(b, nullptr);
    }
    // All points where point 0 is: the first remaining point, then the rest in order.
    const std::vector<double> same(3 * 5, 2.5);
    EXPECT_EQ(prim(same, 3), (Edges{1, 0, 2, 0, 3, 0, 4, 0}));
    EXPECT_EQ(fast(same, 3), (Edges{1, 0, 2, 0, 3, 0, 4, 0}));
    // Points at point 0 wait until the first point away from it has been added.
    const std::vector<double> twins = {0, 0, 0, 5, 0, 0, 0, 0, 0, 5, 0, 0, 9, 0, 0};
    EXPECT_EQ(prim(twins, 3), (Edges{1, 0, 2, 0, 3, 1, 4, 1}));
    expectSameTree(twins, 3, "twins");
    // A tie keeps the earlier-added parent, not the lower index: point 3 is as far from 1 as
    // from 2, and 2 joined the tree before 1.
    const std::vector<double> parentTie = {0, 0, 0, 0, 2, 0, 0, 1, 0, 1, 1.5, 0};
    EXPECT_EQ(prim(parentTie, 3), (Edges{2, 0, 1, 2, 3, 2}));
    expectSameTree(parentTie, 3, "parent tie");
}

// Random sets, small integer grids (many equal distances and repeated points), a full grid
// with point 0 inside, a lattice sphere, underflowing distances and infinite coordinates.
TEST(FastMST, EqualsPrimOnPointSetsWithAndWithoutTies) {
    std::mt19937 rng(12345);
    std::uniform_real_distribution<double> uniform(-100.0, 100.0);
    std::normal_distribution<double> clustered(0.0, 1.0);
    auto points = [](int n, const std::function<double()>& coordinate) {
        std::vector<double> out(n);
        for (double& c : out)
            c = coordinate();
        return out;
    };
    for (int trial = 0; trial < 4; ++trial)
        expectSameTree(points(3 * (300 + 600 * trial),
                              [&] {
                                  return trial % 2 ? uniform(rng)
                                                   : clustered(rng) * std::exp(clustered(rng));
                              }),
                       3, "random set " + std::to_string(trial));
    for (int k : {1, 2, 4})
        expectSameTree(points(k * 500, [&] { return uniform(rng); }), k,
                       "dimension " + std::to_string(k));
    for (int side = 3; side < 9; ++side) {
        std::uniform_int_distribution<int> cell(0, side - 1);
        expectSameTree(points(3 * (150 * side - 400), [&] { return double(cell(rng)); }), 3,
                       "grid " + std::to_string(side));
    }
    std::vector<double> grid = {4, 4, 4}, sphere = {0, 0, 0, 0.5, 0, 0}, tiny;
    for (int x = -5; x < 9; ++x)
        for (int y = -5; y < 9; ++y)
            for (int z = -5; z < 9; ++z) {
                if (x >= 0 && y >= 0 && z >= 0)
                    grid.insert(grid.end(), {double(x), double(y), double(z)});
                if (x * x + y * y + z * z == 25)
                    sphere.insert(sphere.end(), {double(x), double(y), double(z)});
            }
    for (int i = 0; i < 40; ++i)
        tiny.insert(tiny.end(), {i * 1e-170, (i % 7) * 1e-170, 1.0});
    expectSameTree(grid, 3, "full grid");
    expectSameTree(sphere, 3, "lattice sphere");
    expectSameTree(tiny, 3, "underflowing distances");
    expectSameTree({0, 0, 0, 1, 2, 3, HUGE_VAL, 0, 0, 4, 4, 4, -HUGE_VAL, 1, 1}, 3, "infinite");
}

// The positions buildMST uses: current positions in units of 10^15 metres.
std::vector<double> treePoints(const StarList& list, int n) {
    std::vector<double> points;
    for (int i = 0; i < n; ++i) {
        StarObj star;
        list.getStar(&star, i);
        const double f = std::pow(10.0, star.pos.w - 15.0);
        points.insert(points.end(), {star.pos.x * f, star.pos.y * f, star.pos.z * f});
    }
    return points;
}

TEST(FastMST, EqualsPrimOnTheCatalogue) {
    const std::string path = std::string(SKYRAMA_SOURCE_DIR) + "/data/stardata/hipparcos.star";
    if (std::FILE* f = std::fopen(path.c_str(), "rb")) {
        std::fclose(f);
    } else {
        GTEST_SKIP() << "no catalogue at " << path << " (built by the data tree)";
    }
    StarList list;
    cattest::stdoutOf([&] { ASSERT_EQ(list.readStarFiles(path.c_str(), 1, 1), 1); });
    ASSERT_GE(list.getNumRecords(), 5000);
    expectSameTree(treePoints(list, 5000), 3, "first 5000 catalogue stars");
}

std::string treeFile(int n, int edgeLines, int badVertexAt = -1, int badVertex = 0) {
    std::string text = "MST-FILE " + std::to_string(n) + " points\n";
    for (int i = 0; i < edgeLines; ++i) {
        const int child = i + 1;
        text += (i == badVertexAt ? std::to_string(child) + " " + std::to_string(badVertex)
                                  : std::to_string(child) + " " + std::to_string(i)) +
                "\n";
    }
    return text;
}

TEST(StarListMST, BuildSaveLoadAndThePointCount) {
    ScratchDir dir;
    std::string lines;
    for (int i = 0; i < 100; ++i)
        lines += cattest::fullLine(1 + i % 4, 2 + i / 4 % 5, 0.5 * i, "G 2 V 0 0 S");
    StarList list, other;
    cattest::loadStars(list, dir, 100, lines, 1);
    cattest::loadStars(other, dir, 100, lines, 1);
    ASSERT_EQ(list.getNumRecords(), 101);

    const std::string saved = dir.file("tree.mst");
    list.buildMST(saved.c_str());
    int numEdges = 0;
    const std::int32_t* built = list.getMSTEdges(&numEdges);
    ASSERT_EQ(numEdges, 100);
    const Edges builtEdges(built, built + 2 * numEdges);
    EXPECT_EQ(builtEdges, prim(treePoints(list, 101), 3));
    const std::string text = cattest::readFile(saved);
    EXPECT_EQ(text.substr(0, text.find('\n') + 1), "MST-FILE 101 points\n");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 101);
    ASSERT_EQ(other.loadMST(saved.c_str()), 1);
    const std::int32_t* loaded = other.getMSTEdges(&numEdges);
    EXPECT_EQ(Edges(loaded, loaded + 2 * numEdges), builtEdges);

    // A tree of 100 points for 101 stars is refused and the old tree is gone too.
    const std::string tree100 = dir.write("t100.mst", treeFile(100, 99));
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(other.loadMST(tree100.c_str()), -1); }),
              "Err (loadMST): number of points in [" + tree100 +
                  "] does not match the number points I have.\n");
    EXPECT_EQ(other.getMSTEdges(nullptr), nullptr);
    const std::string unwritable = dir.file("no/such/folder/tree.mst");
    EXPECT_EQ(stderrOf([&] { list.buildMST(unwritable.c_str()); }),
              "Err (save_MST): opening file [" + unwritable + "]\n");
}

TEST(MSTFile, BadFilesAreReportedAndLeaveNoTree) {
    ScratchDir dir;
    const std::string f = dir.file("t.mst"), missing = dir.file("missing.mst");
    const std::pair<std::string, std::string> cases[] = {
        {treeFile(10, 8), "not enough edges in [" + f + "] (8/9 edges read).\n"},
        {treeFile(10, 9, 2, 12),
         "there is a vertex [12] in [" + f + "], which out of range [0,9]\n"},
        // A huge count in a short file reads what is there and reports it.
        {"MST-FILE 2000000000 points\n1 0\n2 1\n",
         "not enough edges in [" + f + "] (2/1999999999 edges read).\n"},
        {"", ""},
        {"MST-FILE lots points\n", ""},
        {"MST-FILE 0 points\n", ""},
    };
    int n = -1;
    for (const auto& c : cases) {
        dir.write("t.mst", c.first);
        const std::string message = stderrOf([&] { EXPECT_EQ(load_MST(f.c_str(), &n), nullptr); });
        EXPECT_EQ(message.rfind("Err (load_MST): " + c.second, 0), 0u) << message;
    }
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(load_MST(missing.c_str(), &n), nullptr); }),
              "Err (load_MST): opening file [" + missing + "].\n");
    // The identifier is not checked.
    const std::string other = dir.write("other.mst", "TREE 3 points\n1 0\n2 0\n");
    Tree tree(load_MST(other.c_str(), &n));
    EXPECT_NE(tree, nullptr);
    EXPECT_EQ(n, 3);
}

}  // namespace
