// Particle sets without a window: the repeatable random set, the BSP tree over any positions,
// accessors and their messages, and reading before OpenGL exists.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <set>
#include <string>

#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"
#include "tests/common_package/glm/model_test_util.h"

using namespace modeltest;

namespace {

// Checks the tree below node (leaves hold no children, inner nodes no particle, offsets are
// not negative); collects the leaves and returns the depth.
int walk(const BSPNode* node, std::multiset<int>* leaves) {
    if (node == nullptr) return 0;
    if (node->leaf) {
        leaves->insert(node->index);
        EXPECT_EQ(node->front, nullptr);
        return 0;
    }
    EXPECT_EQ(node->index, -1);
    EXPECT_GE(node->plane[3], 0.0);
    return 1 + std::max(walk(node->front, leaves), walk(node->back, leaves));
}

// Builds a tree over every particle of the list, checks that each is a leaf exactly once
// and returns the depth; the tree is left in root.
int buildTree(ParticleList* list, BSPNode** root) {
    std::vector<int> indices(list->getNumParticles());
    for (int i = 0; i < list->getNumParticles(); i++)
        indices[i] = i;
    *root = list->BSPBuild(indices.data(), static_cast<int>(indices.size()));
    std::multiset<int> leaves;
    int depth = walk(*root, &leaves);
    EXPECT_EQ(leaves, std::multiset<int>(indices.begin(), indices.end()));
    return depth;
}

// Fills a list with particles at the given positions (metres, exponent 0).
void placeParticles(ParticleList* list, const std::vector<std::array<double, 3>>& positions) {
    stderrOf([&] { ASSERT_EQ(list->createRandomParticles(int(positions.size())), 1); });
    for (std::size_t i = 0; i < positions.size(); i++) {
        Particle p;
        ASSERT_EQ(list->getParticle(int(i), &p), 1);
        for (int k = 0; k < 3; k++)
            p.pos[k] = p.currPos[k] = positions[i][k];
        ASSERT_EQ(list->setParticle(int(i), &p), 1);
    }
}

}  // namespace

TEST(RandomParticles, TheSameSetOnEveryRun) {
    ParticleList list;
    EXPECT_EQ(stderrOf([&] { ASSERT_EQ(list.createRandomParticles(10), 1); }),
              "- build the BSP tree\n  done!\n");
    EXPECT_EQ(list.getName(), "Generic-Particles");
    ASSERT_EQ(list.getNumParticles(), 10);
    // The generator by hand: state = state * 214013 + 2531011, value = (state >> 16) & 32767.
    std::uint32_t state = 9999;
    auto next = [&state] {
        state = state * 214013u + 2531011u;
        return static_cast<double>((state >> 16) & 32767) / 32767.0;
    };
    for (int i = 0; i < 10; i++) {
        Particle p;
        ASSERT_EQ(list.getParticle(i, &p), 1);
        for (int k = 0; k < 3; k++)
            EXPECT_DOUBLE_EQ(p.pos[k], 2.0 * next() - 1.0);
        for (int k = 0; k < 4; k++)
            EXPECT_FLOAT_EQ(p.color[k], static_cast<float>(next()));
        EXPECT_DOUBLE_EQ(p.size[0], next() * 0.02 + 0.03);
        // At exponent 0, where they are drawn; invalid: the list has no texture.
        EXPECT_TRUE(p.pos[3] == 0.0 && p.currPos[0] == p.pos[0] && p.valid == 0);
    }

    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.createRandomParticles(0), -1); }),
              "Err (ParticleList::createRandomParticles): input N should be positive.\n");
    EXPECT_EQ(list.getNumParticles(), 10);
}

TEST(ParticleTree, EqualPositionsTakeTheAlternatingSplitAndPlanesSeparateOthers) {
    ParticleList list;
    BSPNode* root = nullptr;
    placeParticles(&list, {{1, 2, 3}, {1, 2, 3}});
    EXPECT_EQ(buildTree(&list, &root), 1);
    list.BSPDelete(root);
    placeParticles(&list, {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}});
    EXPECT_EQ(buildTree(&list, &root), 2);
    std::multiset<int> front, back;  // even positions to the front, odd to the back
    walk(root->front, &front);
    walk(root->back, &back);
    EXPECT_TRUE(front == std::multiset<int>({0, 2}) && back == std::multiset<int>({1, 3}));
    list.BSPDelete(root);
    // A thousand particles at one place: halved at every level.
    placeParticles(&list, std::vector<std::array<double, 3>>(1000, {5, 5, 5}));
    EXPECT_LE(buildTree(&list, &root), 10);
    list.BSPDelete(root);

    placeParticles(&list, {{-1, 0, 0}, {1, 0, 0}});
    buildTree(&list, &root);
    EXPECT_TRUE(std::fabs(root->plane[0]) == 1.0 && root->plane[3] == 0.0);
    Particle p;  // the front child lies on the positive side of the plane
    list.getParticle(root->front->index, &p);
    EXPECT_GT(p.pos[0] * root->plane[0], 0.0);
    list.BSPDelete(root);
}

TEST(ParticleTree, DepthStaysBoundedForAwkwardPositions) {
    ParticleList list;
    BSPNode* root = nullptr;
    // Positions that double along a line: every geometric split is one-sided in size.
    std::vector<std::array<double, 3>> line;
    for (int i = 0; i < 100; i++)
        line.push_back({std::ldexp(1.0, i), 0, 0});
    placeParticles(&list, line);
    EXPECT_LE(buildTree(&list, &root), 48 + 7);
    list.BSPDelete(root);
    // Nearly equal positions (one unit in the last place apart), with huge exponents and NaN.
    std::vector<std::array<double, 3>> close;
    for (int i = 0; i < 300; i++)
        close.push_back({1.0 + i * 2.220446049250313e-16, 1, 1});
    placeParticles(&list, close);
    for (int i = 0; i < list.getNumParticles(); i++) {
        Particle p;
        list.getParticle(i, &p);
        p.pos[3] = p.currPos[3] = (i % 2) ? 400.0 : -400.0;  // beyond the range of doubles
        if (i % 3 == 0) p.pos[0] = p.currPos[0] = std::nan("");
        list.setParticle(i, &p);
    }
    stderrOf([&] { EXPECT_LE(buildTree(&list, &root), 48 + 10); });
    list.BSPDelete(root);
}

TEST(ParticleAccessors, RangeChecksSettersAndDump) {
    ParticleList list;
    stderrOf([&] { list.createRandomParticles(3); });
    Particle p;
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(list.getParticle(3, &p), -1);
                  EXPECT_EQ(list.getParticle(0, nullptr), -1);
                  EXPECT_EQ(list.setParticle(-1, &p), -1);
                  EXPECT_EQ(list.setParticle(0, nullptr), -1);
                  list.getParticle(0, &p);
                  p.size[0] = 0.0;
                  EXPECT_EQ(list.setParticle(0, &p), -1);
                  p.size[0] = 1.0;
                  p.texName = 77;
                  EXPECT_EQ(list.setParticle(0, &p), -1);
                  EXPECT_EQ(list.setParticleScale(0.0), -1);
                  EXPECT_EQ(list.setZRange(2.0, 1.0), -1);
              }),
              "Err (ParticleList::getParticle): input i out of range [0,2]\n"
              "Err (ParticleList::getParticle): input particle is NULL\n"
              "Err (ParticleList::setParticle): input i out of range [0,2]\n"
              "Err (ParticleList::setParticle): input particle is NULL\n"
              "Err (ParticleList::setParticle): input particle size should be positive\n"
              "Err (ParticleList::setParticle): input particle texName is invalid\n"
              "Err (setParticleScale): inParticleScale should be positive.\n\n"
              "Err (ParticleList::setZRange): inLogScaleNear should be smaller than "
              "inLogScaleFar\n\n");
    Particle q;
    q.pos[0] = q.pos[3] = q.currPos[3] = 2.0;
    q.currPos[0] = 0.25;
    q.size[0] = 3.0;
    ASSERT_EQ(list.setParticle(1, &q), 1);
    EXPECT_EQ(stderrOf([&] { list.dumpParticle(1); }),
              "- pos     : 2.000000 0.000000 0.000000 (2.000000)\n"
              "- currPos : 0.250000 0.000000 0.000000 (2.000000)\n"
              "- color   : 1.000000 1.000000 1.000000 (1.000000)\n"
              "- size    : 3.000000 (0.000000)\n- texName : 0\n- valid   : false\n");
}

TEST(ParticleAccessors, ArraysAndTreeGoThroughTheListsAllocator) {
    {
        ParticleList list;
        ASSERT_EQ(list.setAllocator(countingAllocate, countedRelease), 1);
        stderrOf([&] { list.createRandomParticles(50); });
        EXPECT_EQ(list.setAllocator(nullptr, nullptr), -1);  // not while it holds particles
        EXPECT_GE(allocations, 50);  // the array and one node per particle at least
    }
    EXPECT_EQ(releases, allocations);
}

TEST(ParticleTextures, GaussianBlobValues) {
    std::vector<unsigned char> blob = particledetail::gaussTextureImage(255, 8.0f);
    ASSERT_EQ(blob.size(), 64u * 64 * 4);
    // Texel (31, 31): x = y = -0.5, v = 255 exp(-0.5 / 64) = 253.0; texel (31, 39): x = 7.5,
    // 255 exp(-56.5 / 64) = 105.3.
    const int centre = 4 * (31 * 64 + 31);
    EXPECT_EQ((std::vector<int>{blob[centre], blob[centre + 3], blob[centre + 4 * 8], blob[0]}),
              (std::vector<int>{253, 253, 105, 0}));
    EXPECT_EQ(particledetail::gaussTextureImage(255 * 4, 8.0f)[4 * (31 * 64 + 31)], 255);
}

TEST(ParticleFiles, BadHeadersAndReadingBeforeOpenGL) {
    ScratchDir dir;
    const std::string name = dir.file("h.prt");
    struct Case {
        const char* text;
        std::string message;
    } cases[] = {
        {"PARTICLES 1 1\n", "Err : not enough argument (line 1)\n"},
        {"PARTICLE 0 1 1.0\n", "Err : no particles to read in [" + name + "]\n"},
        {"PARTICLE 1 -3 1.0\n", "Err : no textures defined in [" + name + "]\n"},
        {"PARTICLE 1 1 nan\n", "Err : invalid exponent (line 1)\n"},
        {"PARTICLE 2000000000 1 1.0\ntexture g gaussian 1 1\n",
         "Err : [" + name + "] is too short for 2000000000 particles and 1 textures\n"},
        {"\nPARTICLE 1 1 1.0\n", "Err : wrong identifier (line 1)\n      [" + name +
                                     "] may not be particle file\n      Particle file must start "
                                     "with [PARTICLE]\n"},
    };
    for (const Case& c : cases) {
        writeText(name, c.text);
        ParticleList list;
        EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.read(name.c_str()), -1); }), c.message) << c.text;
        EXPECT_EQ(list.getNumParticles(), 0);
    }
    ParticleList list;
    const std::string none = dir.file("none.prt");
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(list.read(name.c_str(), true), -1);  // quiet: no identifier message
                  EXPECT_EQ(list.read(none.c_str(), true), -1);
              }),
              "");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.read(none.c_str()), -1); }),
              "Err : can't open [" + none + "] for reading\n");

    writeText(name, "PARTICLE 1 1 0.0\ntexture g gaussian 255 8\n0 0 0 1 1 1 1 1 g\n");
    EXPECT_EXIT(list.read(name.c_str()), testing::ExitedWithCode(1),
                "Err \\(read\\) : cannot generate texture before OpenGL initializes!\n"
                "             please call particleList::read after OpenGL initialized.\n\n");
}
