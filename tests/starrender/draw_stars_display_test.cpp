// Star drawing in a real window on the software renderer: where a star lands, how large and
// how bright it is, picking through the selection buffer, and textured stars.

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <cmath>

#include "catalogue/star_list.h"
#include "starrender/point_size_program.h"
#include "tests/starrender/starrender_test_util.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kSize = 200;
// A field of view that makes one degree 7.75 pixels: row 36 of table A puts a star of
// shifted magnitude 0.8643 at exactly one degree.
const double kFovy = 2 * std::atan(100 * (M_PI / 180) / 7.75) * 180 / M_PI;
constexpr float kOneDegreeMag = 0.8643f;

// Black window; camera at the origin looking down -z; one drawing unit is one parsec.
void setUpView() {
    glViewport(0, 0, kSize, kSize);
    testsupport::perspectiveCamera(kFovy, 1.0, 0.01, 10000.0);
    testsupport::clearTo(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
}

using srtest::kParsecLog;
using srtest::starAt;

using cattest::loadStars;

struct Blob {
    int count = 0;
    double cx = 0, cy = 0;
    int minX = kSize, maxX = -1, maxValue = 0, minValue = 256;
};

Blob findBlob(const std::vector<unsigned char>& rgb) {
    Blob b;
    for (int y = 0; y < kSize; ++y) {
        for (int x = 0; x < kSize; ++x) {
            const int v = testsupport::pixelAt(rgb, kSize, x, y).r;
            if (v == 0) continue;
            ++b.count;
            b.cx += x;
            b.cy += y;
            b.minX = std::min(b.minX, x);
            b.maxX = std::max(b.maxX, x);
            b.maxValue = std::max(b.maxValue, v);
            b.minValue = std::min(b.minValue, v);
        }
    }
    if (b.count > 0) {
        b.cx /= b.count;
        b.cy /= b.count;
    }
    return b;
}

}  // namespace

TEST(DrawStarsInWindow, AStarStraightAheadIsAtTheCentreWithItsSizeAndAlpha) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    cattest::ScratchDir dir;
    StarList list;
    // s = 7.75 pixels: t = 15.5, k = 239, bucket 16 (an 8-pixel point), coverage 239,
    // alpha = gamma 249 with the low bits cleared = 248.
    const float m = kOneDegreeMag;
    loadStars(list, dir, 1, starAt(0, 0, -10, m, 1));
    setUpView();
    list.drawStars(kParsecLog, kStarColorFile | kStarDepthWrite, -1, -1);
    const Blob b = findBlob(testsupport::readBackRGB(kSize, kSize));
    ASSERT_GT(b.count, 0);
    EXPECT_NEAR(b.cx, kSize / 2.0 - 0.5, 0.6);
    EXPECT_NEAR(b.cy, kSize / 2.0 - 0.5, 0.6);
    EXPECT_NEAR(b.maxX - b.minX + 1, 8, 1);
    EXPECT_NEAR(b.count, M_PI * 16, 12);
    // This renderer lays smooth points down in overlapping pieces, so only the rim of the
    // disc shows a single blend of the star's alpha over the black sky.
    EXPECT_NEAR(b.minValue, 248, 2);
    // The drawing leaves the matrices as it found them.
    double mv[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, mv);
    EXPECT_EQ(mv[0], 1.0);
    EXPECT_EQ(mv[14], 0.0);
}

TEST(PickStarInWindow, TheNearerOfTwoStarsInLineIsPicked) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    cattest::ScratchDir dir;
    StarList list;
    loadStars(
        list, dir, 3,
        starAt(0, 0, -50, 3.0f, 50) + starAt(0, 0, -5, 3.0f, 5) + starAt(3, 3, -10, 3.0f, 99));
    setUpView();
    StarObj picked = makeEmptyStarObj();
    int hits = list.pickStar(kSize / 2, kSize / 2, kParsecLog, &picked, 1.0f);
    EXPECT_EQ(hits, 2);
    EXPECT_EQ(picked.hd, 5);
    EXPECT_EQ(list.getPickMode(), 0);
    // An empty part of the sky picks nothing and leaves the record alone.
    StarObj none = makeEmptyStarObj();
    EXPECT_EQ(list.pickStar(10, 10, kParsecLog, &none, 1.0f), 0);
    EXPECT_EQ(none.hd, 0);
    // The projection is restored after picking.
    double proj[16];
    glGetDoublev(GL_PROJECTION_MATRIX, proj);
    EXPECT_NEAR(proj[5], 1.0 / std::tan(kFovy / 2 * M_PI / 180), 1e-6);
}

TEST(PickStarInWindow, StarsTooFaintToSeeCanStillBePicked) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    cattest::ScratchDir dir;
    StarList list;
    // Up and to the right of the centre: window (130, 70) with y from the top.
    const double t = std::tan(kFovy / 2 * M_PI / 180);
    const double x = 30.0 / 100 * t * 10, y = 30.0 / 100 * t * 10;
    loadStars(list, dir, 1, starAt(x, y, -10, 12.5f, 77));
    setUpView();
    list.drawStars(kParsecLog, kStarColorFile, -1, -1);
    EXPECT_EQ(findBlob(testsupport::readBackRGB(kSize, kSize)).count, 0);
    StarObj picked = makeEmptyStarObj();
    EXPECT_EQ(list.pickStar(130, 70, kParsecLog, &picked, 1.0f), 1);
    EXPECT_EQ(picked.hd, 77);
}

TEST(DrawStarsInWindow, TexturedBrightStarsAreSpritesWiderThanTheirPoint) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    cattest::ScratchDir dir;
    StarList list;
    loadStars(list, dir, 1, starAt(0, 0, -10, kOneDegreeMag, 1));
    ASSERT_EQ(list.setStarTextureGauss(0.2f, 1.0f), 1);
    setUpView();
    list.drawStars(kParsecLog, kStarColorFile | kStarDepthWrite | kStarTextured, -1, -1);
    ASSERT_NE(list.getStarTextureName(), 0u);
    EXPECT_GT(list.getHalfLightRadius(), 0.05);
    EXPECT_LT(list.getHalfLightRadius(), 0.3);
    const Blob b = findBlob(testsupport::readBackRGB(kSize, kSize));
    EXPECT_NEAR(b.cx, kSize / 2.0 - 0.5, 1.0);
    EXPECT_NEAR(b.cy, kSize / 2.0 - 0.5, 1.0);
    // The sprite spans 8 pixels / (2 x half-light radius) across; its bright core is lit.
    EXPECT_GT(b.maxX - b.minX + 1, 10);
    EXPECT_GT(b.maxValue, 100);
    // Changing the source deletes the texture; the next draw makes a new one.
    const float rgb[3] = {1, 1, 1};
    ASSERT_EQ(list.setStarTextureFFT(0.3f, 1.0f, 1.0f, 1.0f, rgb, _STAR_FILTER_CIRCULAR), 1);
    EXPECT_EQ(list.getStarTextureName(), 0u);
    setUpView();
    cattest::stdoutOf([&] { list.drawStars(kParsecLog, kStarColorFile | kStarTextured, -1, -1); });
    EXPECT_NE(list.getStarTextureName(), 0u);
}

// Where the renderer draws points with their own sizes, the picture is the one of point
// batches of one size each: every size, overlapping points, depth and blending alike.
TEST(DrawStarsInWindow, PointsWithTheirOwnSizesDrawAsBatchesOfOneSize) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    cattest::ScratchDir dir;
    StarList list;
    std::string lines;
    int n = 0;
    // A grid of stars 1.3 pixels apart across the view, magnitudes from -1 (large points) to
    // 10 (transparent ones), at two depths so that points overlap in depth as well.
    const double t = std::tan(kFovy / 2 * M_PI / 180);
    for (int row = 0; row < 24; ++row) {
        for (int col = 0; col < 24; ++col) {
            const double z = (row + col) % 2 == 0 ? -10.0 : -14.0;
            const double x = (col - 12) * 7.3 / 100 * t * -z, y = (row - 12) * 7.3 / 100 * t * -z;
            lines += starAt(x, y, z, -1.0f + 11.0f * ((row * 24 + col) % 37) / 36.0f, ++n);
        }
    }
    loadStars(list, dir, n, lines);
    auto draw = [&](bool ownSizes) {
        allowPointSizeProgram(ownSizes);
        setUpView();
        list.drawStars(kParsecLog, kStarColorFile | kStarDepthWrite, -1, -1);
        std::vector<float> depth(kSize * kSize);
        glReadPixels(0, 0, kSize, kSize, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
        return std::make_pair(testsupport::readBackRGB(kSize, kSize), depth);
    };
    const auto batches = draw(false);
    const auto ownSizes = draw(true);
    allowPointSizeProgram(true);
    EXPECT_GT(findBlob(batches.first).count, kSize * kSize / 4);
    EXPECT_TRUE(batches.first == ownSizes.first);
    EXPECT_TRUE(batches.second == ownSizes.second);
}
