// The front pass of star drawing tests four stars at a time where the processor can; it must
// mark and keep exactly the stars that testing them one at a time does, in the same order.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "starrender/star_front_pass.h"

namespace {

// A camera at eye turned yaw radians about y and pitch about x, on a width x height viewport.
StarFrame frameOf(const Vec3& eye, double yaw, double pitch, int width, int height) {
    const double cy = std::cos(yaw), sy = std::sin(yaw), cp = std::cos(pitch), sp = std::sin(pitch);
    // Rows of the rotation: pitch after yaw.
    const double r[3][3] = {{cy, 0, -sy}, {sy * sp, cp, cy * sp}, {sy * cp, -sp, cy * cp}};
    double mv[16] = {0};
    for (int row = 0; row < 3; ++row) {
        for (int c = 0; c < 3; ++c)
            mv[4 * c + row] = r[row][c];
        mv[12 + row] = -(r[row][0] * eye.x + r[row][1] * eye.y + r[row][2] * eye.z);
    }
    mv[15] = 1.0;
    const double f = 2.0;
    double proj[16] = {f * height / width, 0, 0, 0, 0, f, 0, 0, 0, 0, -1, -1, 0, 0, -0.02, 0};
    const int viewport[4] = {0, 0, width, height};
    return makeStarFrame(mv, proj, viewport, 16.0);
}

}  // namespace

TEST(FrontPass, FourAtATimeMarksAndKeepsWhatOneAtATimeDoes) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> u(-50.0, 50.0);
    std::uniform_int_distribution<int> mark(0, 9);
    const int n = 4099;
    std::vector<double> x(n), y(n), z(n);
    for (int i = 0; i < n; ++i) {
        x[i] = u(random), y[i] = u(random), z[i] = u(random);
        // Some stars in the plane through the eye, which are in front, and some at the eye.
        if (i % 17 == 0) z[i] = 0.0;
        if (i % 101 == 0) x[i] = y[i] = z[i] = 0.0;
    }
    struct Case {
        Vec3 eye;
        double yaw, pitch;
        int width, height;
        bool cull;
    };
    const Case cases[] = {{{0, 0, 0}, 0.0, 0.0, 800, 600, true},
                          {{0, 0, 0}, 0.0, 0.0, 800, 600, false},
                          {{3.5, -1.25, 7}, 0.7, -0.3, 640, 480, true},
                          {{-20, 4, 1e-3}, 2.9, 1.1, 1920, 1080, true},
                          {{1, 1, 1}, -1.3, 0.2, 0, 0, true}};  // no viewport: all kept
    for (const Case& c : cases) {
        const StarFrame frame = frameOf(c.eye, c.yaw, c.pitch, c.width, c.height);
        const PointViewportTest viewport(frame);
        StarFrontPass pass;
        pass.positions = StarDrawPositions{x.data(), y.data(), z.data()};
        pass.k = 1.0 + 1.0 / 3.0;
        pass.eye = frame.eyeDrawing;
        pass.dir = frame.viewDir;
        pass.viewport = c.cull ? &viewport : nullptr;
        pass.mark = 12;
        // Blocks of every length from 0 to 9 at every offset mod 4, and all the stars.
        std::vector<std::pair<int, int>> blocks = {{0, n - 1}, {5, n - 1}, {0, n - 4}};
        for (int start = 0; start < 8; ++start) {
            for (int len = 0; len <= 9; ++len)
                blocks.push_back({start, start + len - 1});
        }
        for (const auto& block : blocks) {
            SCOPED_TRACE(testing::Message() << "stars " << block.first << " to " << block.second
                                            << ", eye " << c.eye.x << " " << c.eye.y);
            std::vector<std::uint16_t> seenOne(n), seenFour(n);
            for (int i = 0; i < n; ++i)
                seenOne[i] = seenFour[i] = static_cast<std::uint16_t>(mark(random));
            std::vector<std::int32_t> one(n), four(n);
            pass.seenBy = seenOne.data();
            const int kept = frontPassEach(pass, block.first, block.second, one.data(),
                                           [](int) { return true; });
            pass.seenBy = seenFour.data();
            const int keptFour = frontPassAvx2(pass, block.first, block.second, four.data());
            if (keptFour < 0) GTEST_SKIP() << "no AVX2 on this processor";
            ASSERT_EQ(keptFour, kept);
            one.resize(kept);
            four.resize(kept);
            EXPECT_EQ(four, one);
            EXPECT_EQ(seenFour, seenOne);
        }
    }
}

TEST(FrontPass, KeepsTheStarsInFrontThatCanReachTheViewportFarthestFirst) {
    // Looking down -z from the origin: a star behind, one in the plane of the eye (in front,
    // but off the viewport), one straight ahead and one far off to the side.
    std::vector<double> x = {0, 5, 0, 100}, y = {0, 0, 0, 0}, z = {3, 0, -2, -1};
    const StarFrame frame = frameOf({0, 0, 0}, 0.0, 0.0, 800, 600);
    const PointViewportTest viewport(frame);
    std::vector<std::uint16_t> seen(4, 0);
    StarFrontPass pass;
    pass.positions = StarDrawPositions{x.data(), y.data(), z.data()};
    pass.eye = frame.eyeDrawing;
    pass.dir = frame.viewDir;
    pass.seenBy = seen.data();
    pass.mark = 7;
    std::int32_t out[4];
    EXPECT_EQ(frontPass(pass, 0, 3, out), 3);
    EXPECT_EQ(std::vector<std::int32_t>(out, out + 3), (std::vector<std::int32_t>{3, 2, 1}));
    EXPECT_EQ(seen, (std::vector<std::uint16_t>{0, 7, 7, 7}));
    pass.viewport = &viewport;
    EXPECT_EQ(frontPass(pass, 0, 3, out), 1);
    EXPECT_EQ(out[0], 2);
}
