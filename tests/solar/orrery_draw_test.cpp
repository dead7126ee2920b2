// The orrery on the screen, checked at the window positions gluProject gives: the fallback
// orbits, planets, the Earth's grid and axes, the globe's cut-off, and the clock.

#include <gtest/gtest.h>

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "common_package/glm/src/glm.h"
#include "solar/earth.h"
#include "solar/orrery.h"
#include "solar/orrery_clock.h"
#include "solar/orrery_layout.h"
#include "solar/planet_table.h"
#include "tests/solar/ephemeris_test_file.h"
#include "tests/support/gl_test_window.h"
#include "tests/support/scratch_files.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using testsupport::Rgb;

namespace {

constexpr int kSize = 256;
constexpr long long kJ2000Gmt = 946728000;
const Phc kEarthAt{0.0, 0.0, 0.0, 0.0}, kSunAt{1.0, 0.0, 0.0, 11.0};

// A black window under an orthographic camera at +z (or +x) looking at the origin.
void beginFrame(double halfWidth, bool fromSide = false) {
    glViewport(0, 0, kSize, kSize);
    testsupport::clearTo(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    testsupport::orthoCamera(-halfWidth, halfWidth, -halfWidth, halfWidth, -1e4, 1e4);
    gluLookAt(fromSide ? 10 : 0, 0, fromSide ? 0 : 10, 0, 0, 0, 0, fromSide ? 0 : 1, fromSide);
}

// The orrery's three turns from the ephemeris frame to the galactic frame.
void applyGalacticFrame() {
    glRotated(kEphemerisToGalacticZ1Degrees, 0.0, 0.0, 1.0);
    glRotated(kEphemerisToGalacticXDegrees, 1.0, 0.0, 0.0);
    glRotated(kEphemerisToGalacticZ2Degrees, 0.0, 0.0, 1.0);
}

struct WindowPoint {
    int x, y;
    bool inside;
};

WindowPoint project(double x, double y, double z) {
    double modelview[16], projection[16], wx, wy, wz;
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    gluProject(x, y, z, modelview, projection, viewport, &wx, &wy, &wz);
    int ix = static_cast<int>(std::lround(wx)), iy = static_cast<int>(std::lround(wy));
    return {ix, iy, ix >= 1 && iy >= 1 && ix < kSize - 1 && iy < kSize - 1};
}

// The brightest pixel in the 3 x 3 block around p.
Rgb brightestNear(const std::vector<unsigned char>& rgb, WindowPoint p) {
    Rgb best{0, 0, 0};
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            Rgb c = testsupport::pixelAt(rgb, kSize, p.x + dx, p.y + dy);
            if (c.r + c.g + c.b > best.r + best.g + best.b) best = c;
        }
    return best;
}

bool lit(const Rgb& c) {
    return c.r + c.g + c.b > 6;
}

// Lit pixels in columns x0 .. x1 and rows y0 .. y1 (all of the window by default).
int countLit(const std::vector<unsigned char>& rgb, int x0 = 0, int x1 = kSize, int y0 = 0,
             int y1 = kSize) {
    int n = 0;
    for (int y = std::max(0, y0); y < std::min(kSize, y1); ++y)
        for (int x = x0; x < x1; ++x)
            n += lit(testsupport::pixelAt(rgb, kSize, x, y)) ? 1 : 0;
    return n;
}

std::vector<unsigned char> shot() {
    return testsupport::readBackRGB(kSize, kSize);
}

// The planets at J2000 drawn at log scale s are lit where they project and, when asked, dark
// on the far side of the Sun.
void expectPlanetsWhereTheyProject(Ephemeris& ephemeris, double s, double halfWidth,
                                   bool farSideDark) {
    OrrerySettings settings;
    settings.showPlanetLabels = false;
    beginFrame(halfWidth);
    drawOrreryAt(&ephemeris, settings, EarthModels(), s, kJ2000Gmt);
    std::vector<unsigned char> rgb = shot();
    applyGalacticFrame();
    int seen = 0;
    for (int i = 0; i < kPlanetCount; ++i) {
        double metres[3];
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0, metres), 0);
        Vec3 at = placeBody(metres, s).position;
        WindowPoint p = project(at.x, at.y, at.z), far = project(-at.x, -at.y, -at.z);
        if (!p.inside || std::abs(p.x - far.x) + std::abs(p.y - far.y) < 8) continue;
        ++seen;
        EXPECT_TRUE(lit(brightestNear(rgb, p))) << kPlanets[i].name << " at log scale " << s;
        EXPECT_TRUE(!farSideDark || !lit(brightestNear(rgb, far))) << kPlanets[i].name;
    }
    EXPECT_GE(seen, 4);
}

}  // namespace

TEST(OrreryDrawing, WithoutEphemerisNineTiltedCirclesAreDrawn) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    for (int i = 0; i < kPlanetCount; ++i) {
        // Each orbit in turn at 0.8 of the half width, its neighbours well apart.
        const double s = planetOrbitLog10Radius(i);
        beginFrame(1.25);
        drawOrreryAt(nullptr, OrrerySettings(), EarthModels(), s, kJ2000Gmt);
        std::vector<unsigned char> rgb = shot();
        applyGalacticFrame();
        glRotated(kPlanets[i].inclinationDegrees, 1.0, 0.0, 0.0);
        int litPoints = 0;
        for (int k = 0; k < 12; ++k) {
            const double a = (k + 0.5) * M_PI / 6;
            Rgb c = brightestNear(rgb, project(std::cos(a), std::sin(a), 0.0));
            if (!lit(c)) continue;
            ++litPoints;
            EXPECT_NEAR(c.r, 255 * 0.24 * kPlanets[i].color[0], 6) << kPlanets[i].name;
            EXPECT_NEAR(c.b, 255 * 0.24 * kPlanets[i].color[2], 6) << kPlanets[i].name;
        }
        EXPECT_GE(litPoints, 10) << kPlanets[i].name;
    }
    // Pluto's orbit seen along x is a segment 17.1 degrees from the y axis.
    beginFrame(1.25, true);
    drawFallbackOrbits(planetOrbitLog10Radius(kPluto));
    std::vector<unsigned char> side = shot();
    for (double r : {0.85, -0.95}) {
        for (double degrees : {0.0, 17.1, 21.1}) {
            const double a = degrees * M_PI / 180.0;
            EXPECT_EQ(lit(brightestNear(side, project(0, r * std::cos(a), r * std::sin(a)))),
                      degrees == 17.1)
                << r << " " << degrees;
        }
    }
}

TEST(OrreryDrawing, PlanetsAppearWhereTheirPositionsProject) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // The test file's bodies lie 10^10 to 10^11 metres out.
    const testsupport::ScratchDir dir;
    const std::string path = dir.file("draw.405");
    ASSERT_TRUE(solartest::writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    expectPlanetsWhereTheyProject(ephemeris, 11.0, 1.6, true);

    // Labels add a wire cube and the name around every planet.
    auto litPixels = [&](bool labels) {
        OrrerySettings settings;
        settings.showPlanetLabels = labels;
        beginFrame(1.6);
        drawOrreryAt(&ephemeris, settings, EarthModels(), 11.0, kJ2000Gmt);
        return countLit(shot());
    };
    EXPECT_GT(litPixels(true), litPixels(false) + 50);

    // Before 1970 the Earth cannot be placed, but the planets still are.
    beginFrame(20.0);
    CaptureStderr();
    drawOrreryAt(&ephemeris, OrrerySettings(), EarthModels(), 11.0, -86400LL * 3650);
    EXPECT_EQ(GetCapturedStderr(), std::string(kEarthTooOldMessage));
    EXPECT_GT(countLit(shot()), 100);

    std::string real = solartest::realEphemerisPath();
    if (real.empty()) return;
    ASSERT_EQ(ephemeris.open(real.c_str(), true), 0);
    expectPlanetsWhereTheyProject(ephemeris, 11.5, 2.0, false);  // the inner planets
    expectPlanetsWhereTheyProject(ephemeris, 12.9, 2.0, false);  // the outer ones
}

TEST(EarthDrawing, GridEquatorTropicsAxesAndSize) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // Sun along +x at noon: at log scale 7 the globe's scale is 1.2756 units, and the axes
    // (twice the globe) turn by the spin angle of 180 degrees.
    const double g = 1.2756, tropic = 1.01 * std::cos(23.5 * M_PI / 180.0) * g;
    OrrerySettings settings;
    beginFrame(2.2);
    drawEarth(kEarthAt, kSunAt, kJ2000Gmt, EarthModels(), settings, 7.0);
    std::vector<unsigned char> rgb = shot();
    for (double a : {0.3, 1.9, 4.4}) {  // seen from the pole
        Rgb equator =
            brightestNear(rgb, project(1.02 * g * std::cos(a), 1.02 * g * std::sin(a), 0));
        EXPECT_GT(equator.r, equator.b + 20) << a;
        Rgb tropics = brightestNear(rgb, project(tropic * std::cos(a), tropic * std::sin(a), 0));
        EXPECT_GT(tropics.b, tropics.r + 10) << a;
    }
    Rgb axis = brightestNear(rgb, project(-1.5 * g, 0.0, 0.0));
    EXPECT_GT(axis.r, axis.g + 40);  // the red x axis points away from the Sun
    EXPECT_FALSE(lit(brightestNear(rgb, project(1.5 * g, 0.0, 0.0))));

    // At log scale 10 the globe is a thousandth of a unit, unless it is drawn 1000-fold.
    auto litPixels = [&](bool thousandfold, long long gmt) {
        settings.showEarthThousandfold = thousandfold;
        beginFrame(2.2);
        drawEarth(kEarthAt, kSunAt, gmt, EarthModels(), settings, 10.0);
        return countLit(shot());
    };
    EXPECT_LT(litPixels(false, kJ2000Gmt), 20);
    EXPECT_GT(litPixels(true, kJ2000Gmt), 1000);
    CaptureStderr();
    EXPECT_EQ(litPixels(true, -86400), 0);
    EXPECT_EQ(GetCapturedStderr(), "The time given to drawEarth is too old...\n");
}

TEST(EarthDrawing, TheGlobeIsLeftOutWhenUnderTwoPixelsAcross) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    testsupport::ScratchDir dir;  // an octahedron of unit radius for each of the three layers
    GLMmodel* globe =
        glmReadOBJQuiet(dir.write("globe.obj",
                                  "v 1 0 0\nv -1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv 0 0 -1\n"
                                  "f 1 3 5\nf 3 2 5\nf 2 4 5\nf 4 1 5\nf 3 1 6\nf 2 3 6\nf 4 2 6\n"
                                  "f 1 4 6\n")
                            .c_str());
    ASSERT_NE(globe, nullptr);
    // Polygons and lines handed to GL, counted in feedback mode.
    auto drawn = [globe](double currLogScale) {
        std::vector<GLfloat> buffer(1 << 20);
        glFeedbackBuffer(static_cast<GLsizei>(buffer.size()), GL_3D, buffer.data());
        glRenderMode(GL_FEEDBACK);
        drawEarth(kEarthAt, kSunAt, kJ2000Gmt, EarthModels{globe, globe, globe}, OrrerySettings(),
                  currLogScale);
        const int n = glRenderMode(GL_RENDER);
        // Window coordinates stay far below the token values, so tokens can simply be counted.
        auto count = [&](GLenum token) {
            return std::count(&buffer[0], &buffer[n], GLfloat(token));
        };
        return std::pair<int, int>(count(GL_POLYGON_TOKEN),
                                   count(GL_LINE_TOKEN) + count(GL_LINE_RESET_TOKEN));
    };
    // 4.4 units across 256 pixels: the globe's radius is 74 pixels at log scale 7, 7.4 at 8
    // and 0.74 at 9.
    beginFrame(2.2);
    const auto near = drawn(7.0), small = drawn(8.0), tiny = drawn(9.0);
    glmDelete(globe);
    EXPECT_TRUE(near.first >= 3 * 8 && small.first >= 3 * 8) << near.first << " " << small.first;
    EXPECT_EQ(tiny.first, 0);
    EXPECT_GT(tiny.second, 100);  // the axes and the grid still mark where it is
    EXPECT_EQ(tiny.second, near.second);
}

TEST(OrreryClockDrawing, DatesAtTheBottomLeftAndTheZoneAtTheRight) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    OrrerySettings settings;  // rows below are counted from the bottom
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    std::vector<unsigned char> rgb = shot();
    EXPECT_GT(countLit(rgb, 0, kSize / 2, 0, 31), 50);  // GMT and local time
    EXPECT_EQ(countLit(rgb, 0, kSize / 2, 51, kSize), 0);
    EXPECT_GT(countLit(rgb, kSize * 3 / 4, kSize, 7, 26), 10);  // the zone
    settings.showFrameInfo = true;  // the dates move up out of the frame number's way
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    rgb = shot();
    EXPECT_GT(countLit(rgb, 0, kSize / 2, 33, 57), 50);
    EXPECT_EQ(countLit(rgb, 0, kSize / 2, 0, 26), 0);
}
