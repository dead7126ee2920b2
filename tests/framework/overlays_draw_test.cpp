// The reference overlays drawn in a small window: each must put its colours where its
// geometry projects and leave the GL state as the frame loop expects. Set
// SKYRAMA_OVERLAY_SHOTS to a folder to keep a PPM picture of every check.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"
#include "tests/support/gl_test_window.h"

#include <GL/freeglut.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kSize = 200;
constexpr double kDegree = 3.14159265358979323846 / 180.0;

using testsupport::Rgb;
using PixelTest = std::function<bool(const Rgb&)>;

bool lit(const Rgb& p) {
    return p.r + p.g + p.b > 30;
}
bool reddish(const Rgb& p) {
    return p.r > 60 && p.r > 2 * p.g && p.r > 2 * p.b;
}
bool greenish(const Rgb& p) {
    return p.g > 60 && p.g > 2 * p.r && p.g > 2 * p.b;
}
bool bluish(const Rgb& p) {
    return p.b > 60 && 2 * p.b > 3 * p.r && 2 * p.b > 3 * p.g;
}

struct Box {
    int minX = kSize, minY = kSize, maxX = -1, maxY = -1;
    double midX() const { return (minX + maxX) / 2.0; }
};

// The back buffer just drawn, y from the bottom.
struct Shot {
    std::vector<unsigned char> rgb;

    explicit Shot(const std::string& name) : rgb(testsupport::readBackRGB(kSize, kSize)) {
        const char* folder = std::getenv("SKYRAMA_OVERLAY_SHOTS");
        FILE* f = folder ? std::fopen((std::string(folder) + "/" + name + ".ppm").c_str(), "wb")
                         : nullptr;
        if (f == nullptr) return;
        std::fprintf(f, "P6\n%d %d\n255\n", kSize, kSize);
        for (int row = kSize - 1; row >= 0; --row)
            std::fwrite(&rgb[row * kSize * 3], 3, kSize, f);
        std::fclose(f);
    }
    Rgb at(int x, int y) const { return testsupport::pixelAt(rgb, kSize, x, y); }
    // A pixel within radius (a square) of (x, y) passes the test.
    bool near(int x, int y, int radius, const PixelTest& test) const {
        for (int j = std::max(0, y - radius); j <= std::min(kSize - 1, y + radius); ++j) {
            for (int i = std::max(0, x - radius); i <= std::min(kSize - 1, x + radius); ++i) {
                if (test(at(i, j))) return true;
            }
        }
        return false;
    }
    int count(const PixelTest& test) const {
        int n = 0;
        for (int j = 0; j < kSize; ++j) {
            for (int i = 0; i < kSize; ++i)
                n += test(at(i, j));
        }
        return n;
    }
    Box bounds(const PixelTest& test = lit) const {
        Box b;
        for (int j = 0; j < kSize; ++j) {
            for (int i = 0; i < kSize; ++i) {
                if (!test(at(i, j))) continue;
                b = {std::min(b.minX, i), std::min(b.minY, j), std::max(b.maxX, i),
                     std::max(b.maxY, j)};
            }
        }
        return b;
    }
};

class OverlayDrawing : public testing::Test {
  protected:
    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        clear();
        glDisable(GL_BLEND);
        glDisable(GL_LINE_SMOOTH);
        glEnable(GL_DEPTH_TEST);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        lookAt(60.0, {0, 0, 3}, {0, 0, 0}, {0, 1, 0});
    }
    static void clear() {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDisable(GL_LIGHTING);  // the sky grid turns these back on
        glDisable(GL_TEXTURE_2D);
        glColor3f(1.0f, 1.0f, 1.0f);
    }
    // The frame loop's drawing state: blended, smooth lines.
    static void frameLoopState() {
        glEnable(GL_BLEND);
        glEnable(GL_LINE_SMOOTH);
    }
    static void lookAt(double fovy, std::array<double, 3> eye, std::array<double, 3> centre,
                       std::array<double, 3> up) {
        testsupport::perspectiveCamera(fovy, 1.0, 0.01, 10000.0);
        gluLookAt(eye[0], eye[1], eye[2], centre[0], centre[1], centre[2], up[0], up[1], up[2]);
    }
    // Window position of a point under the current matrices (y from the bottom).
    static std::array<int, 2> project(std::array<double, 3> p) {
        double mv[16], pr[16], wx, wy, wz;
        int viewport[4];
        glGetDoublev(GL_MODELVIEW_MATRIX, mv);
        glGetDoublev(GL_PROJECTION_MATRIX, pr);
        glGetIntegerv(GL_VIEWPORT, viewport);
        gluProject(p[0], p[1], p[2], mv, pr, viewport, &wx, &wy, &wz);
        return {static_cast<int>(std::lround(wx)), static_cast<int>(std::lround(wy))};
    }
    static GLint depthFunc() {
        GLint f;
        glGetIntegerv(GL_DEPTH_FUNC, &f);
        return f;
    }
};

// A point of the sky grid sphere (radius 1000 around the eye) at a longitude and latitude.
std::array<double, 3> skyPoint(std::array<double, 3> eye, double lon, double lat) {
    return {eye[0] + 1000.0 * std::cos(lat * kDegree) * std::cos(lon * kDegree),
            eye[1] + 1000.0 * std::cos(lat * kDegree) * std::sin(lon * kDegree),
            eye[2] + 1000.0 * std::sin(lat * kDegree)};
}

}  // namespace

TEST_F(OverlayDrawing, AxesShowRedGreenAndBlueWhereTheyProjectWithTheirLabels) {
    frameLoopState();
    lookAt(50.0, {2.2, 1.6, 3.0}, {0.35, 0.35, 0.35}, {0, 1, 0});
    drawAxes(true, "G", 2.0f);
    Shot shot("axes");
    auto [xx, xy] = project({0.6, 0, 0});
    EXPECT_TRUE(shot.near(xx, xy, 1, reddish)) << xx << "," << xy;
    auto [yx, yy] = project({0, 0.6, 0});
    EXPECT_TRUE(shot.near(yx, yy, 1, greenish)) << yx << "," << yy;
    auto [zx, zy] = project({0, 0, 0.6});
    EXPECT_TRUE(shot.near(zx, zy, 1, bluish)) << zx << "," << zy;

    // The label "Gx" stands above the end of the x axis, and only when asked for.
    clear();
    drawAxes(false, "G", 2.0f);
    Shot bare("axes_bare");
    auto [lx, ly] = project({1.1, 0, 0});
    EXPECT_TRUE(shot.near(lx, ly + 6, 5, reddish));
    EXPECT_FALSE(bare.near(lx, ly + 8, 3, lit));
    EXPECT_GT(shot.count(reddish) + shot.count(bluish),
              bare.count(reddish) + bare.count(bluish) + 40);
}

TEST_F(OverlayDrawing, PowerCubesFadeWithTheirDistanceFromTheEye) {
    // Eye 3 units away: the unit cube at sqrt(0.99), the 10 unit cube at sqrt(0.49), no more.
    auto yellow = [](double weight) {
        int level = static_cast<int>(0.8 * std::sqrt(weight) * 255);
        return [level](const Rgb& p) {
            return std::abs(p.r - level) <= 3 && std::abs(p.g - level) <= 3 && p.b == 0;
        };
    };
    const double e = std::log10(3.0);
    struct Case {
        const char* name;
        double logScale;
        void (*draw)(double);
    };
    for (const Case& c : {Case{"metre_cubes", 0.0, drawMeterCubes},
                          Case{"parsec_cubes", kParsecLog10, drawParsecCubes}}) {
        SCOPED_TRACE(c.name);
        clear();
        lookAt(120.0, {0, 0, 3}, {0, 0, 0}, {0, 1, 0});
        c.draw(c.logScale);
        Shot shot(c.name);
        auto [x1, y1] = project({0.5, 0.25, 0.5});
        EXPECT_TRUE(shot.near(x1, y1, 1, yellow(powerCubeWeight(0, e))));
        auto [x10, y10] = project({5.0, 2.5, -5.0});
        EXPECT_TRUE(shot.near(x10, y10, 1, yellow(powerCubeWeight(1, e))));
        auto [x100, y100] = project({50.0, 25.0, -50.0});
        EXPECT_FALSE(shot.near(x100, y100, 2, lit));
        GLfloat width;
        glGetFloatv(GL_LINE_WIDTH, &width);
        EXPECT_EQ(width, 1.0f);
        EXPECT_EQ(depthFunc(), GL_LESS);
    }
}

TEST_F(OverlayDrawing, PowerLabelIsCentredAndRaisesItsExponent) {
    testsupport::orthoCamera(-200.0, 200.0, -200.0, 200.0, -1, 1);  // two font units per pixel
    glDepthFunc(GL_ALWAYS);
    drawPowerLabel(0, 0.8f, "m");
    EXPECT_EQ(depthFunc(), GL_LESS);
    Box one = Shot("power_label_0").bounds();
    clear();
    drawPowerLabel(3, 0.8f, "m");
    Box kilo = Shot("power_label_3").bounds();
    EXPECT_NEAR(one.midX(), 100.0, 6.0);
    EXPECT_NEAR(kilo.midX(), 100.0, 6.0);
    EXPECT_GT(kilo.maxX - kilo.minX, one.maxX - one.minX + 20);  // "10" and "3" are wider
    EXPECT_NEAR(kilo.minY, one.minY, 1);                         // same baseline
    EXPECT_GT(kilo.maxY, one.maxY + 5);                          // the 3 rises above
}

TEST_F(OverlayDrawing, BillboardTextFacesTheViewerWhateverTheRotation) {
    const double pixelsPerUnit = kSize / (6.0 * std::tan(30.0 * kDegree));
    const double letter = strokeTextWidth(GLUT_STROKE_MONO_ROMAN, "H") * 0.005 * pixelsPerUnit;
    for (auto [alignment, offset] : {std::pair{2, 0.0f}, {1, 0.0f}, {3, 0.0f}, {1, 1.0f}}) {
        SCOPED_TRACE(testing::Message() << "alignment " << alignment << " offset " << offset);
        clear();
        lookAt(60.0, {0, 0, 3}, {0, 0, 0}, {0, 1, 0});
        glRotated(90.0, 0.0, 1.0, 0.0);  // plain text would be seen edge-on
        drawBillboardText("HH", 0.005f, alignment, offset);
        Box b = Shot("billboard_" + std::to_string(alignment) + "_" +
                     std::to_string(static_cast<int>(offset)))
                    .bounds();
        // Two upright letters on a baseline through the origin.
        EXPECT_GT(b.maxX - b.minX, letter);
        EXPECT_GE(b.minY, 99);
        EXPECT_GT(b.maxY, 110);
        if (alignment == 2) {
            EXPECT_NEAR(b.midX(), 100.0, 3.0);
        } else if (alignment == 1) {  // starts at the origin, moved by the offset
            EXPECT_GE(b.minX, 100 + offset * letter - 1);
        } else {  // ends at the origin
            EXPECT_LE(b.maxX, 101);
        }
    }
    EXPECT_EQ(depthFunc(), GL_LESS);
}

TEST_F(OverlayDrawing, ScreenBoxFillsItsRectangleCountedFromTheTop) {
    double before[16], after[16];
    glGetDoublev(GL_PROJECTION_MATRIX, before);
    const float fill[4] = {0.2f, 0.4f, 0.6f, 1.0f}, red[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, false, red);
    Shot shot("screen_box");
    // Columns 20 .. 119, rows 40 .. 99 from the top = 100 .. 159 from the bottom.
    auto isFill = [](const Rgb& p) { return p.r == 51 && p.g == 102 && p.b == 153; };
    Box b = shot.bounds(isFill);
    EXPECT_NEAR(b.minX, 20, 1);
    EXPECT_NEAR(b.maxX, 119, 1);
    EXPECT_NEAR(b.minY, 100, 1);
    EXPECT_NEAR(b.maxY, 159, 1);
    EXPECT_EQ(shot.count(isFill), shot.count(lit));
    EXPECT_GT(shot.count(isFill), 98 * 58);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    glGetDoublev(GL_PROJECTION_MATRIX, after);
    EXPECT_TRUE(std::equal(before, before + 16, after));

    clear();
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, true, red);
    Shot outlined("screen_box_outline");
    auto isRed = [](const Rgb& p) { return p.r == 255 && p.g == 0 && p.b == 0; };
    EXPECT_TRUE(outlined.near(20, 130, 1, isRed));
    EXPECT_TRUE(outlined.near(119, 130, 1, isRed));
    EXPECT_TRUE(outlined.near(70, 159, 1, isRed));
    EXPECT_TRUE(isFill(outlined.at(70, 130)));
    GLint modes[2];
    glGetIntegerv(GL_POLYGON_MODE, modes);
    EXPECT_EQ(modes[0], GL_FILL);
}

TEST_F(OverlayDrawing, ScreenTextIsAnchoredByItsAlignment) {
    const double dash = strokeTextWidth(GLUT_STROKE_ROMAN, "-") * 0.001 * kSize;
    for (auto [alignment, dashes] : {std::pair{1, 0}, {2, 0}, {0, 0}, {1, 2}}) {
        SCOPED_TRACE(testing::Message() << "alignment " << alignment << " dashes " << dashes);
        clear();
        drawScreenText("HH", 0.5f, 0.25f, 0.001f, alignment, dashes);
        Box b = Shot("screen_text_" + std::to_string(alignment) + "_" + std::to_string(dashes))
                    .bounds();
        // Baseline a quarter of the way down: row 150 from the bottom.
        EXPECT_GE(b.minY, 149);
        EXPECT_LE(b.maxY, 175);
        EXPECT_GT(b.maxX - b.minX, 30);
        if (alignment == 1) {  // starts at the anchor, moved by the dashes
            EXPECT_GE(b.minX, 100 + dashes * dash - 1);
            EXPECT_LE(b.minX, 100 + dashes * dash + 6);
        } else if (alignment == 2) {
            EXPECT_NEAR(b.midX(), 100.0, 3.0);
        } else {  // ends at the anchor
            EXPECT_LE(b.maxX, 101);
            EXPECT_GE(b.maxX, 94);
        }
    }
    EXPECT_EQ(depthFunc(), GL_LESS);
}

TEST_F(OverlayDrawing, SkyGridDrawsLinesAroundTheEyeAndNotBetweenThem) {
    frameLoopState();
    // Looking, from far off the origin, at the middle of a 15-degree cell of the galactic grid.
    const std::array<double, 3> eye{300, -200, 400};
    lookAt(60.0, eye, skyPoint(eye, 7.5, 7.5), {0, 0, 1});
    drawSkyGrid(2, false, 60.0);
    Shot shot("sky_grid_galactic");
    auto cyan = [](const Rgb& p) { return p.g > 60 && p.g > p.r + 20 && p.b > p.r + 20; };
    EXPECT_FALSE(shot.near(kSize / 2, kSize / 2, 2, lit));
    for (auto [lon, lat] : {std::pair{7.5, 0.0}, {0.0, 7.5}, {15.0, 3.0}, {4.0, 15.0}}) {
        auto [x, y] = project(skyPoint(eye, lon, lat));
        EXPECT_TRUE(shot.near(x, y, 1, cyan)) << lon << "," << lat << " at " << x << "," << y;
    }
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    GLboolean depthWrites;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    EXPECT_TRUE(depthWrites);

    // The crossing labels add text; the other kinds have their own colours.
    clear();
    drawSkyGrid(2, true, 60.0);
    EXPECT_GT(Shot("sky_grid_galactic_detail").count(lit), shot.count(lit) + 20);
    clear();
    drawSkyGrid(1, true, 60.0);
    Shot equatorial("sky_grid_equatorial");
    EXPECT_GT(equatorial.count([](const Rgb& p) { return p.r > 40 && p.r > p.g + 10; }), 500);
    EXPECT_EQ(equatorial.count(cyan), 0);
    clear();
    drawSkyGrid(3, false, 60.0);
    EXPECT_GT(Shot("sky_grid_third").count([](const Rgb& p) {
        return p.b > 60 && p.b > p.r + 15 && std::abs(p.r - p.g) <= 2;
    }),
              500);
}

TEST_F(OverlayDrawing, SkyGridGetsDenserAsTheViewNarrows) {
    frameLoopState();
    // The view centre lies on the 7.5-degree lines of the finest sphere only; the 10-degree
    // meridian belongs to the middle sphere.
    const std::array<double, 3> eye{0, 0, 0};
    int centreLevel[3] = {0, 0, 0};
    const double fovys[3] = {60.0, 20.0, 5.0};
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(testing::Message() << "fovy " << fovys[i]);
        clear();
        lookAt(fovys[i], eye, skyPoint(eye, 7.5, 7.5), {0, 0, 1});
        drawSkyGrid(2, false, fovys[i]);
        Shot shot("sky_grid_galactic_" + std::to_string(static_cast<int>(fovys[i])));
        if (i < 2) {  // at 5 degrees the 10-degree meridian is at the window's edge
            auto [x, y] = project(skyPoint(eye, 10.0, 7.0));
            EXPECT_EQ(shot.near(x, y, 1, lit), i == 1) << x << "," << y;
        }
        for (int j = -1; j <= 1; ++j) {
            for (int k = -1; k <= 1; ++k) {
                centreLevel[i] = std::max(centreLevel[i], shot.at(100 + j, 100 + k).g);
            }
        }
    }
    EXPECT_LT(centreLevel[0], 10);
    EXPECT_GT(centreLevel[1], 10);
    EXPECT_GT(centreLevel[2], centreLevel[1]);  // the finest lines fade in
}

TEST_F(OverlayDrawing, WireSphereWarnsAboutTooManyStacksAndSlicesAndStillDraws) {
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 513, 513);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning (myGlutWireSphere): too many stacks.\n"
              "warning (myGlutWireSphere): too many slices.\n");
    // Radius 1 seen from 3 units in a 60-degree view.
    Box b = Shot("wire_sphere").bounds();
    EXPECT_NEAR(b.maxX - b.minX, std::tan(std::asin(1.0 / 3.0)) / std::tan(30 * kDegree) * kSize,
                4);
    clear();
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 0, 12);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(Shot("wire_sphere_none").count(lit), 0);
}
