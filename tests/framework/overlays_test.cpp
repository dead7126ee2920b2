// The reference overlays: their layout, and, drawn in a small window, their colours where their
// geometry projects and the GL state the frame loop expects back.

#include <GL/freeglut.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "common_package/math/src/phc.h"
#include "framework/overlays.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kSize = 200;
constexpr double kDegree = M_PI / 180.0;

using testsupport::Rgb;
using PixelTest = std::function<bool(const Rgb&)>;

bool lit(const Rgb& p) {
    return p.r + p.g + p.b > 30;
}
bool reddish(const Rgb& p) {
    return p.r > 60 && p.r > 2 * p.g && p.r > 2 * p.b;
}

struct Box {
    int minX = kSize, minY = kSize, maxX = -1, maxY = -1;
    double midX() const { return (minX + maxX) / 2.0; }
};

// The back buffer just drawn, y from the bottom.
struct Shot {
    std::vector<unsigned char> rgb = testsupport::readBackRGB(kSize, kSize);
    Rgb at(int x, int y) const { return testsupport::pixelAt(rgb, kSize, x, y); }
    bool near(std::array<int, 2> p, int radius, const PixelTest& test) const {
        for (int j = std::max(0, p[1] - radius); j <= std::min(kSize - 1, p[1] + radius); ++j)
            for (int i = std::max(0, p[0] - radius); i <= std::min(kSize - 1, p[0] + radius); ++i)
                if (test(at(i, j))) return true;
        return false;
    }
    int count(const PixelTest& test) const {
        int n = 0;
        for (int j = 0; j < kSize; ++j)
            for (int i = 0; i < kSize; ++i)
                n += test(at(i, j));
        return n;
    }
    Box bounds(const PixelTest& test = lit) const {
        Box b;
        for (int j = 0; j < kSize; ++j)
            for (int i = 0; i < kSize; ++i)
                if (test(at(i, j)))
                    b = {std::min(b.minX, i), std::min(b.minY, j), std::max(b.maxX, i),
                         std::max(b.maxY, j)};
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
    static void frameLoopState() {  // blended, smooth lines
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
        return glGetIntegerv(GL_DEPTH_FUNC, &f), f;
    }
};

// A point of the sky grid sphere (radius 1000 around the eye).
std::array<double, 3> skyPoint(std::array<double, 3> eye, double lon, double lat) {
    return {eye[0] + 1000.0 * std::cos(lat * kDegree) * std::cos(lon * kDegree),
            eye[1] + 1000.0 * std::cos(lat * kDegree) * std::sin(lon * kDegree),
            eye[2] + 1000.0 * std::sin(lat * kDegree)};
}

}  // namespace

TEST(OverlayLayout, PowerCubesAndTheirLabels) {
    // Rotated 90 degrees about x, eye at (0, 30, 40) at scale 2: t = -R eye.
    double r[16] = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 40, -30, 1};
    EXPECT_NEAR(eyeDistanceExponent(r, 2.0), 2.0 + std::log10(50.0), 1e-12);
    std::vector<PowerCubeFade> cubes = powerCubeFades(-2.5);  // 10^-2 at weight 0.5, 10^-1 at 0
    ASSERT_EQ(cubes.size(), 1u);
    EXPECT_EQ(cubes[0].n, -2);
    for (double e : {std::nan(""), HUGE_VAL, 1e300, -1e300})
        EXPECT_TRUE(powerCubeFades(e).empty()) << e;

    StrokeWidthFn width = [](const std::string& s) { return 100.0 * s.size(); };
    std::vector<StrokePiece> one = powerLabelLayout(0, "m", width),
                             kilo = powerLabelLayout(3, "m", width);
    ASSERT_TRUE(one.size() == 2u && kilo.size() == 3u);
    EXPECT_EQ(one[0].text + one[1].text, "1m");
    EXPECT_EQ(kilo[0].text + "^" + kilo[1].text + kilo[2].text, "10^3m");
    EXPECT_EQ(powerLabelLayout(-12, "parsec", width)[1].text, "-12");
}

TEST(OverlayLayout, SkyGridSphereWeightsAndLabels) {
    const std::pair<double, std::array<double, 3>> weights[] = {
        {10.0, {0, 0, 1}}, {17.5, {0, 0.5, 0.5}}, {30.0, {1. / 3, 2. / 3, 0}}, {40.0, {1, 0, 0}}};
    for (const auto& [fovy, expected] : weights)
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(skyGridSphereWeights(fovy)[i], expected[i], 1e-12) << fovy << " " << i;

    auto labelAt = [](const std::vector<GridLabel>& labels, double lon, double lat) {
        auto l = std::find_if(labels.begin(), labels.end(), [&](const GridLabel& l) {
            return l.longitude == lon && l.latitude == lat;
        });
        return l == labels.end() ? nullptr : &*l;
    };
    std::vector<GridLabel> main = skyGridMainLabels(1);
    EXPECT_EQ(main.size(), 13u + 23u);
    EXPECT_EQ(labelAt(main, 0, -90)->text, "-90");
    EXPECT_EQ(labelAt(main, 345, 0)->text, "23h");
    EXPECT_EQ(labelAt(skyGridMainLabels(2), 345, 0)->text, "345");
    struct Case {  // text nullptr: no crossing label there
        int kind;
        double fovy, lon, lat;
        const char* text;
        bool major;
        double weight;
    };
    const Case cases[] = {
        {1, 60, 15, 15, "(1h,15)", true, 1},
        {2, 41, 345, 75, "(345,75)", true, 1},
        {1, 60, 15, 0, nullptr, true, 1},
        {1, 60, 5, 5, nullptr, true, 1},
        {1, 30, 5, 0, "(0.33h,0)", false, 10. / 15},
        {1, 40, 0, 5, "(0h,5)", false, 0},
        {3, 30, 355, -85, "(355,-85)", false, 10. / 15},
        {1, 20, 357.5, 87.5, "(23.83h,87.5)", false, 1. / 3},
        {2, 25, 7.5, -5, "(7.5,-5)", false, 0},
        {2, 8, 5, 2.5, "(5,2.5)", false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.kind << " " << c.fovy << " (" << c.lon << "," << c.lat << ")");
        const std::vector<GridLabel> labels = skyGridCrossingLabels(c.kind, c.fovy);
        const GridLabel* l = labelAt(labels, c.lon, c.lat);
        ASSERT_EQ(l == nullptr, c.text == nullptr);
        if (l == nullptr) continue;
        EXPECT_TRUE(l->text == c.text && l->major == c.major) << l->text;
        EXPECT_NEAR(l->weight, c.weight, 1e-12);
    }
    // All crossings less those on the equator and the zero meridian.
    EXPECT_EQ(skyGridCrossingLabels(1, 60).size(), 23u * 10u);
    EXPECT_EQ(skyGridCrossingLabels(2, 30).size(), 72u * 35u - 34u);
    EXPECT_EQ(skyGridCrossingLabels(1, 20).size(), 144u * 71u - 34u);
}

TEST(OverlayLayout, WireSphereTablesFollowTheSphereAndTheLabelSizeRefusesNonsense) {
    WireSphereTable t;
    EXPECT_TRUE(t.update(1000.0, 24, 12));
    EXPECT_NEAR(t.stackSin[12], -1000.0, 1e-9);  // south pole
    EXPECT_FALSE(t.update(1000.0, 24, 12));
    EXPECT_TRUE(t.update(1.01, 24, 12));
    EXPECT_NEAR(t.stackCos[6], 1.01, 1e-12);
    EXPECT_TRUE(t.update(1.01, 5000, 5000));  // never beyond the limit
    EXPECT_EQ(t.sliceSin.size(), 513u);

    EXPECT_FLOAT_EQ(getLabelSize(), 1.0f);
    EXPECT_EQ(setLabelSize(2.5f), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(setLabelSize(-1.0f), -1);
    EXPECT_EQ(setLabelSize(std::numeric_limits<float>::quiet_NaN()), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (setLabelSize) : inSize should not be negative.\n\n"
              "Err (setLabelSize) : inSize should not be negative.\n\n");
    EXPECT_FLOAT_EQ(getLabelSize(), 2.5f);
    EXPECT_EQ(setLabelSize(1.0f), 1);
}

TEST_F(OverlayDrawing, AxesShowRedGreenAndBlueWhereTheyProjectWithTheirLabels) {
    frameLoopState();
    lookAt(50.0, {2.2, 1.6, 3.0}, {0.35, 0.35, 0.35}, {0, 1, 0});
    drawAxes(true, "G", 2.0f);
    Shot shot;
    EXPECT_TRUE(shot.near(project({0.6, 0, 0}), 1, reddish));
    EXPECT_TRUE(shot.near(project({0, 0.6, 0}), 1,
                          [](const Rgb& p) { return p.g > 60 && p.g > 2 * p.r && p.g > 2 * p.b; }));
    EXPECT_TRUE(shot.near(project({0, 0, 0.6}), 1, [](const Rgb& p) {
        return p.b > 60 && 2 * p.b > 3 * p.r && 2 * p.b > 3 * p.g;
    }));
    clear();  // the label "Gx" stands above the end of the x axis, only when asked for
    drawAxes(false, "G", 2.0f);
    Shot bare;
    auto [lx, ly] = project({1.1, 0, 0});
    EXPECT_TRUE(shot.near({lx, ly + 6}, 5, reddish));
    EXPECT_FALSE(bare.near({lx, ly + 8}, 3, lit));
    EXPECT_GT(shot.count(lit), bare.count(lit) + 40);
}

TEST_F(OverlayDrawing, PowerCubesFadeWithTheirDistanceFromTheEye) {
    // Eye 3 units away: the unit cube at sqrt(0.99), the 10 unit cube at sqrt(0.49), no more.
    auto yellow = [](double weight) {
        const int level = static_cast<int>(0.8 * std::sqrt(weight) * 255);
        return [level](const Rgb& p) {
            return std::abs(p.r - level) <= 3 && std::abs(p.g - level) <= 3 && p.b == 0;
        };
    };
    for (double unit : {0.0, kParsecLog10}) {
        SCOPED_TRACE(unit);
        clear();
        lookAt(120.0, {0, 0, 3}, {0, 0, 0}, {0, 1, 0});
        unit == 0.0 ? drawMeterCubes(unit) : drawParsecCubes(unit);
        Shot shot;
        EXPECT_TRUE(shot.near(project({0.5, 0.25, 0.5}), 1, yellow(0.99)));
        EXPECT_TRUE(shot.near(project({5.0, 2.5, -5.0}), 1, yellow(0.49)));
        EXPECT_FALSE(shot.near(project({50.0, 25.0, -50.0}), 2, lit));
        GLfloat width;
        glGetFloatv(GL_LINE_WIDTH, &width);
        EXPECT_EQ(width, 1.0f);
        EXPECT_EQ(depthFunc(), GL_LESS);
    }
}

TEST_F(OverlayDrawing, PowerLabelIsCentredAndRaisesItsExponent) {
    testsupport::orthoCamera(-200.0, 200.0, -200.0, 200.0, -1, 1);  // two font units a pixel
    glDepthFunc(GL_ALWAYS);
    drawPowerLabel(0, 0.8f, "m");
    EXPECT_EQ(depthFunc(), GL_LESS);
    Box one = Shot().bounds();
    clear();
    drawPowerLabel(3, 0.8f, "m");
    Box kilo = Shot().bounds();
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
        Box b = Shot().bounds();
        EXPECT_GT(b.maxX - b.minX, letter);  // two upright letters on a line through the origin
        EXPECT_GE(b.minY, 99);
        EXPECT_GT(b.maxY, 110);
        EXPECT_TRUE(alignment != 2 || std::abs(b.midX() - 100.0) <= 3.0) << b.midX();
        EXPECT_TRUE(alignment != 1 || b.minX >= 100 + offset * letter - 1) << b.minX;
        EXPECT_TRUE(alignment != 3 || b.maxX <= 101) << b.maxX;
    }
    EXPECT_EQ(depthFunc(), GL_LESS);
}

TEST_F(OverlayDrawing, ScreenTextIsAnchoredByItsAlignment) {
    const double dash = strokeTextWidth(GLUT_STROKE_ROMAN, "-") * 0.001 * kSize;
    for (auto [alignment, dashes] : {std::pair{1, 0}, {2, 0}, {0, 0}, {1, 2}}) {
        SCOPED_TRACE(testing::Message() << "alignment " << alignment << " dashes " << dashes);
        clear();
        drawScreenText("HH", 0.5f, 0.25f, 0.001f, alignment, dashes);
        Box b = Shot().bounds();
        EXPECT_GE(b.minY, 149);  // baseline a quarter of the way down: row 150 from the bottom
        EXPECT_LE(b.maxY, 175);
        EXPECT_GT(b.maxX - b.minX, 30);
        // Left aligned, moved by the dashes; centred; right aligned.
        EXPECT_TRUE(alignment != 1 || std::abs(b.minX - 100 - dashes * dash - 2.5) <= 3.5)
            << b.minX;
        EXPECT_TRUE(alignment != 2 || std::abs(b.midX() - 100.0) <= 3.0) << b.midX();
        EXPECT_TRUE(alignment != 0 || std::abs(b.maxX - 97.5) <= 3.5) << b.maxX;
    }
    EXPECT_EQ(depthFunc(), GL_LESS);
}

TEST_F(OverlayDrawing, ScreenBoxFillsItsRectangleCountedFromTheTop) {
    double before[16], after[16];
    glGetDoublev(GL_PROJECTION_MATRIX, before);
    const float fill[4] = {0.2f, 0.4f, 0.6f, 1.0f}, red[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, false, red);
    Shot shot;
    // Columns 20 .. 119, rows 40 .. 99 from the top = 100 .. 159 from the bottom.
    auto isFill = [](const Rgb& p) { return p.r == 51 && p.g == 102 && p.b == 153; };
    Box b = shot.bounds(isFill);
    EXPECT_EQ((std::array{20, 119, 100, 159}), (std::array{b.minX, b.maxX, b.minY, b.maxY}));
    EXPECT_EQ(shot.count(isFill), shot.count(lit));
    glGetDoublev(GL_PROJECTION_MATRIX, after);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST) && std::equal(before, before + 16, after));
    clear();
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, true, red);
    Shot outlined;
    auto isRed = [](const Rgb& p) { return p.r == 255 && p.g == 0 && p.b == 0; };
    for (std::array<int, 2> edge : {std::array{20, 130}, {119, 130}, {70, 159}})
        EXPECT_TRUE(outlined.near(edge, 1, isRed)) << edge[0] << "," << edge[1];
    EXPECT_TRUE(isFill(outlined.at(70, 130)));
    GLint modes[2];
    glGetIntegerv(GL_POLYGON_MODE, modes);
    EXPECT_EQ(modes[0], GL_FILL);
}

TEST_F(OverlayDrawing, SkyGridDrawsLinesAroundTheEyeInTheColourOfItsKind) {
    frameLoopState();
    // Looking, from far off the origin, at the middle of a 15-degree cell of the galactic grid.
    const std::array<double, 3> eye{300, -200, 400};
    lookAt(60.0, eye, skyPoint(eye, 7.5, 7.5), {0, 0, 1});
    drawSkyGrid(2, false, 60.0);
    Shot shot;
    auto cyan = [](const Rgb& p) { return p.g > 60 && p.g > p.r + 20 && p.b > p.r + 20; };
    EXPECT_FALSE(shot.near({kSize / 2, kSize / 2}, 2, lit));
    for (auto [lon, lat] : {std::pair{7.5, 0.0}, {0.0, 7.5}, {15.0, 3.0}, {4.0, 15.0}})
        EXPECT_TRUE(shot.near(project(skyPoint(eye, lon, lat)), 1, cyan)) << lon << "," << lat;
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    GLboolean depthWrites;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    EXPECT_TRUE(depthWrites);

    clear();  // the crossing labels add text; the other kinds have their own colours
    drawSkyGrid(2, true, 60.0);
    EXPECT_GT(Shot().count(lit), shot.count(lit) + 20);
    clear();
    drawSkyGrid(1, true, 60.0);
    Shot equatorial;
    EXPECT_GT(equatorial.count([](const Rgb& p) { return p.r > 40 && p.r > p.g + 10; }), 500);
    EXPECT_EQ(equatorial.count(cyan), 0);
    clear();
    drawSkyGrid(3, false, 60.0);
    EXPECT_GT(Shot().count([](const Rgb& p) {
        return p.b > 60 && p.b > p.r + 15 && std::abs(p.r - p.g) <= 2;
    }),
              500);
}

TEST_F(OverlayDrawing, WireSphereWarnsAboutTooManyStacksAndSlicesAndStillDraws) {
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 513, 513);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning (myGlutWireSphere): too many stacks.\n"
              "warning (myGlutWireSphere): too many slices.\n");
    Box b = Shot().bounds();  // radius 1 seen from 3 units in a 60-degree view
    EXPECT_NEAR(b.maxX - b.minX, std::tan(std::asin(1.0 / 3.0)) / std::tan(30 * kDegree) * kSize,
                4);
    clear();
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 0, 12);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(Shot().count(lit), 0);
}
