// Star labels drawn in a window: the wire cube and text of a star, the axis cross of a marker
// record, and the distance-error bars of one star and of all. The eye sits at the Sun looking
// down -z with a 90-degree field of view and one drawing unit per parsec.

#include <GL/freeglut.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kSize = 200;
constexpr double kParsec = 16.4894;

using testsupport::Rgb;

const auto lit = [](const Rgb& p) { return p.r + p.g + p.b > 90; };
const auto grey = [](const Rgb& p) {
    return p.r > 100 && std::abs(p.r - p.g) < 30 && std::abs(p.r - p.b) < 30;
};
const auto red = [](const Rgb& p) { return p.r > 120 && p.g < 80 && p.b < 80; };

struct Shot {
    std::vector<unsigned char> rgb = testsupport::readBackRGB(kSize, kSize);
    Rgb at(int x, int y) const { return testsupport::pixelAt(rgb, kSize, x, y); }
    // Pixels in [x0, x1] x [y0, y1] that pass the test.
    int count(int x0, int y0, int x1, int y1, bool (*test)(const Rgb&)) const {
        int n = 0;
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                n += test(at(x, y));
        return n;
    }
};

class DrawnLabels : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!testsupport::openTestWindow(kSize, kSize)) GTEST_SKIP() << "no display";
        cattest::loadStars(list, dir, 3,
                           "0 0 -1 0.05 0 0 0 0 0 0 0.65 1 1 1 1 1 G 2 V 401 0 Near\n"
                           "0 0 -10000 0.05 0 0 0 0 0 0 0.65 1 1 1 1 1 G 2 V 402 0 Far\n"
                           "0 0 -1 0.3 0 0 0 0 0 0 0.65 1 1 1 1 1 G 2 V 403 0 Wide\n",
                           1);
        ASSERT_EQ(list.setLabelScale(10.0f), 1);
        glViewport(0, 0, kSize, kSize);
        testsupport::perspectiveCamera(90.0, 1.0, 0.001, 1e6);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_BLEND);
        testsupport::clearTo(0, 0, 0, 1);
        glColor3f(0.8f, 0.8f, 0.8f);
    }

    StarObj byHD(int hd) { return cattest::byHD(list, hd); }

    cattest::ScratchDir dir;
    StarList list;
};

TEST_F(DrawnLabels, CubeAndTextOfAStarAndTheAxisCrossOfAMarker) {
    const StarObj near = byHD(401);
    list.drawLabelOfStar(&near, kParsec, 2, 0);
    Shot shot;
    // A cube of 10/75 units at 1 unit: its faces project 6 to 7 pixels around the centre.
    EXPECT_GT(shot.count(91, 93, 94, 107, grey), 5);  // left edges
    EXPECT_GT(shot.count(93, 91, 107, 94, grey), 5);  // bottom edges
    EXPECT_EQ(shot.count(95, 95, 105, 99, lit), 0);   // inside, below the text
    // " HD401" (a blank, then 5 characters of 11 pixels) runs to the right from the star.
    EXPECT_GT(shot.count(111, 99, 168, 114, grey), 40);
    EXPECT_EQ(shot.count(0, 0, 89, kSize - 1, lit), 0);
    EXPECT_EQ(shot.count(0, 0, 199, 89, lit), 0);
    // The colour set by the caller is left as it was.
    float colour[4];
    glGetFloatv(GL_CURRENT_COLOR, colour);
    EXPECT_FLOAT_EQ(colour[1], 0.8f);

    // Mode 0 (empty text) draws neither cube nor text; an unknown mode draws nothing; a star
    // 10^4 units away gets no error bar.
    glClear(GL_COLOR_BUFFER_BIT);
    const StarObj far = byHD(402);
    list.drawLabelOfStar(&near, kParsec, 0, 0);
    list.drawLabelOfStar(&near, kParsec, 7, 1);
    list.drawLabelOfStar(&far, kParsec, 0, 1);
    EXPECT_EQ(Shot().count(0, 0, 199, 199, lit), 0);
    // Seen from the eye a bar lies along the line of sight: its red end points sit on the star.
    list.drawLabelOfStar(&near, kParsec, 0, 1);
    Shot bar;
    EXPECT_GT(bar.count(97, 97, 103, 103, red), 4);
    EXPECT_EQ(bar.count(0, 0, 199, 90, lit), 0);

    // A marker record gets an axis cross instead of a cube.
    glClear(GL_COLOR_BUFFER_BIT);
    StarObj anchor = byHD(401);
    anchor.hd = -2;
    list.drawLabelOfStar(&anchor, kParsec, " (0,0)", 0);
    Shot cross;
    EXPECT_GT(cross.count(93, 99, 98, 101, grey), 3);     // along x, left of the centre
    EXPECT_GT(cross.count(99, 93, 101, 98, grey), 3);     // along y, below it
    EXPECT_EQ(cross.count(90, 90, 96, 96, lit), 0);       // no cube corner
    EXPECT_GT(cross.count(111, 95, 166, 114, grey), 20);  // the text

    EXPECT_EQ(cattest::stderrOf([&] { list.drawLabelOfStar(&anchor, kParsec, nullptr, 0); }),
              "Err (drawLabelOfStar): NULL input parameter\n");
    EXPECT_EQ(cattest::stderrOf([&] { list.drawLabelOfStar(nullptr, kParsec, " x", 0); }),
              "Err (drawLabelOfStar): NULL input parameter\n");
    EXPECT_EQ(cattest::stderrOf([&] { list.drawLabelOfStar(99, kParsec, 1, 0); }),
              "Err (drawLabelOfStar): starID out of range\n");
}

TEST_F(DrawnLabels, ErrorBarsOfAllStarsFromTheSun) {
    // Seen from 0.5 units to the side, the bars run along each star's direction from the
    // Sun: HD 403 (error 0.3) from 0.7 to 1.3 units, HD 401 (0.05) from 0.95 to 1.05.
    glTranslated(0.5, 0.0, 0.0);
    list.drawDistanceErrors(kParsec);
    Shot shot;
    auto column = [](double z) {
        return static_cast<int>(std::lround((0.5 / -z + 1.0) / 2.0 * kSize));
    };
    EXPECT_GT(shot.count(column(-0.72), 99, column(-0.72) + 1, 101, red), 0);
    EXPECT_GT(shot.count(column(-1.28) - 1, 99, column(-1.28), 101, red), 0);
    EXPECT_EQ(shot.count(column(-0.6), 95, 199, 105, lit), 0);  // nearer than 0.7: nothing
    EXPECT_EQ(shot.count(0, 0, 199, 95, lit), 0);
    EXPECT_EQ(shot.count(0, 105, 199, 199, lit), 0);

    // A spectral selection that excludes class G hides them all.
    glClear(GL_COLOR_BUFFER_BIT);
    ASSERT_EQ(list.setSptypeRangeOn(4, 5.0f, 9.0f), 1);
    list.drawDistanceErrors(kParsec);
    EXPECT_EQ(Shot().count(0, 0, 199, 199, lit), 0);
}

}  // namespace
