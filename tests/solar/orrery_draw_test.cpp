// The orrery on the screen: the fallback orbits, planets where their positions project, the
// Earth's grid and axes, and the clock. Pictures are checked by what they must show at the
// window positions gluProject gives, not by golden images.

#include <gtest/gtest.h>

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "solar/earth.h"
#include "solar/orrery.h"
#include "solar/orrery_clock.h"
#include "solar/orrery_layout.h"
#include "solar/planet_table.h"
#include "tests/solar/ephemeris_test_file.h"
#include "tests/support/gl_test_window.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using testsupport::pixelAt;
using testsupport::readBackRGB;

namespace {

constexpr int kSize = 256;
constexpr double kPi = 3.14159265358979323846;
constexpr long long kJ2000Gmt = 946728000;

// Clears the window and sets an orthographic camera at +z (or +x) looking at the origin,
// showing halfWidth units either side.
void beginFrame(double halfWidth, bool fromSide = false) {
    glViewport(0, 0, kSize, kSize);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-halfWidth, halfWidth, -halfWidth, halfWidth, -1e4, 1e4);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    if (fromSide)
        gluLookAt(10, 0, 0, 0, 0, 0, 0, 0, 1);
    else
        gluLookAt(0, 0, 10, 0, 0, 0, 0, 1, 0);
}

// The three turns of the orrery, so that expected points are projected as it draws them.
void applyGalacticFrame() {
    glRotated(kEquatorialToGalacticZ1, 0.0, 0.0, 1.0);
    glRotated(kEquatorialToGalacticX, 1.0, 0.0, 0.0);
    glRotated(kEquatorialToGalacticZ2, 0.0, 0.0, 1.0);
}

struct WindowPoint {
    int x, y;
    bool inside;
};

// Window position of a point under the current modelview and projection.
WindowPoint project(double x, double y, double z) {
    double modelview[16], projection[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    double wx, wy, wz;
    gluProject(x, y, z, modelview, projection, viewport, &wx, &wy, &wz);
    int ix = static_cast<int>(std::lround(wx)), iy = static_cast<int>(std::lround(wy));
    return {ix, iy, ix >= 1 && iy >= 1 && ix < kSize - 1 && iy < kSize - 1};
}

// The brightest pixel in the 3 x 3 block around p (lines of width 1.5 fall between pixels).
testsupport::Rgb brightestNear(const std::vector<unsigned char>& rgb, WindowPoint p) {
    testsupport::Rgb best{0, 0, 0};
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            testsupport::Rgb c = pixelAt(rgb, kSize, p.x + dx, p.y + dy);
            if (c.r + c.g + c.b > best.r + best.g + best.b) best = c;
        }
    return best;
}

bool lit(const testsupport::Rgb& c) {
    return c.r + c.g + c.b > 6;
}

int countLit(const std::vector<unsigned char>& rgb) {
    int n = 0;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x)
            n += lit(pixelAt(rgb, kSize, x, y)) ? 1 : 0;
    return n;
}

// A point on planet i's fallback orbit at angle a, where the orrery draws it at log scale s
// (the galactic turn is on the current matrix).
WindowPoint fallbackOrbitPoint(int i, double a, double s) {
    glPushMatrix();
    double scale = std::pow(10.0, planetOrbitLog10Radius(i) - s);
    glScaled(scale, scale, scale);
    glRotated(kPlanets[i].inclinationDegrees, 1.0, 0.0, 0.0);
    WindowPoint p = project(std::cos(a), std::sin(a), 0.0);
    glPopMatrix();
    return p;
}

// The data tree's ephemeris (under TOPDIR, else in the source tree), or "" when absent.
std::string realEphemerisPath() {
    const char* top = std::getenv("TOPDIR");
    for (std::string root :
         {std::string(top != nullptr ? top : ""), std::string(SKYRAMA_SOURCE_DIR)}) {
        if (root.empty()) continue;
        std::string candidate = root + "/data/ephemerisdata/binp_all.405";
        if (std::FILE* f = std::fopen(candidate.c_str(), "rb")) {
            std::fclose(f);
            return candidate;
        }
    }
    return "";
}

}  // namespace

TEST(OrreryDrawing, WithoutEphemerisNineTiltedCirclesAreDrawn) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    for (int i = 0; i < kPlanetCount; ++i) {
        // Each orbit in turn at 0.8 of the half width: its neighbours lie 1.3 times farther
        // or nearer, well apart on the screen.
        const double s = planetOrbitLog10Radius(i);
        beginFrame(1.25);
        drawOrreryAt(nullptr, OrrerySettings(), EarthModels(), s, kJ2000Gmt);
        std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);

        applyGalacticFrame();
        int litPoints = 0;
        for (int k = 0; k < 12; ++k) {
            WindowPoint p = fallbackOrbitPoint(i, (k + 0.5) * kPi / 6, s);
            if (!p.inside) continue;
            testsupport::Rgb c = brightestNear(rgb, p);
            if (!lit(c)) continue;
            ++litPoints;
            // The orbit's colour: 0.6 of the planet's, 0.4 opaque, on black.
            const float* want = kPlanets[i].color;
            EXPECT_NEAR(c.r, 255 * 0.6 * 0.4 * want[0], 6) << kPlanets[i].name;
            EXPECT_NEAR(c.g, 255 * 0.6 * 0.4 * want[1], 6) << kPlanets[i].name;
            EXPECT_NEAR(c.b, 255 * 0.6 * 0.4 * want[2], 6) << kPlanets[i].name;
        }
        EXPECT_GE(litPoints, 10) << kPlanets[i].name;
    }
}

TEST(OrreryDrawing, PlutosFallbackOrbitIsTilted17Point1Degrees) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    const double s = planetOrbitLog10Radius(kPluto);
    beginFrame(1.25);
    drawFallbackOrbits(s);  // without the galactic turn: the orbit's own frame
    std::vector<unsigned char> top = readBackRGB(kSize, kSize);
    beginFrame(1.25, true);
    drawFallbackOrbits(s);
    std::vector<unsigned char> side = readBackRGB(kSize, kSize);

    // Seen along x the orbit is a segment at 17.1 degrees from the y axis.
    const double tilt = 17.1 * kPi / 180.0;
    beginFrame(1.25, true);
    for (double r : {0.85, 0.95}) {
        EXPECT_TRUE(lit(brightestNear(side, project(0, r * std::cos(tilt), r * std::sin(tilt)))));
        EXPECT_TRUE(lit(brightestNear(side, project(0, -r * std::cos(tilt), -r * std::sin(tilt)))));
        EXPECT_FALSE(lit(brightestNear(side, project(0, r, 0.0))));  // not flat ...
        double other = (17.1 + 4.0) * kPi / 180.0;                   // ... nor steeper
        EXPECT_FALSE(
            lit(brightestNear(side, project(0, r * std::cos(other), r * std::sin(other)))));
    }
    // Seen from above it is an ellipse whose y half-axis is cos 17.1 degrees.
    beginFrame(1.25);
    EXPECT_TRUE(lit(brightestNear(top, project(1.0, 0.0, 0.0))));
    EXPECT_TRUE(lit(brightestNear(top, project(0.0, std::cos(tilt), 0.0))));
}

TEST(OrreryDrawing, PlanetsAppearWhereTheirPositionsProject) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    std::string path = solartest::testFilePath("draw.405");
    ASSERT_TRUE(solartest::writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);

    // The test file's bodies lie 10^10 to 10^11 metres out: at log scale 11 the farthest is
    // 1.5 units away, its trail 0.1 units long.
    const double s = 11.0;
    OrrerySettings settings;
    settings.showPlanetLabels = false;
    beginFrame(1.6);
    CaptureStderr();
    drawOrreryAt(&ephemeris, settings, EarthModels(), s, kJ2000Gmt);
    EXPECT_EQ(GetCapturedStderr(), "");
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);

    applyGalacticFrame();
    for (int i = 0; i < kPlanetCount; ++i) {
        double metres[3];
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0, metres), 0);
        PlacedBody body = placeBody(metres, s);
        WindowPoint p = project(body.position.x, body.position.y, body.position.z);
        ASSERT_TRUE(p.inside) << kPlanets[i].name;
        EXPECT_TRUE(lit(brightestNear(rgb, p))) << kPlanets[i].name << " at " << p.x << "," << p.y;
        // Nothing where the planet would be on the other side of the Sun.
        WindowPoint opposite = project(-body.position.x, -body.position.y, -body.position.z);
        EXPECT_FALSE(lit(brightestNear(rgb, opposite))) << kPlanets[i].name;
    }

    // Labels add a wire cube and the name around every planet.
    int without = countLit(rgb);
    settings.showPlanetLabels = true;
    beginFrame(1.6);
    drawOrreryAt(&ephemeris, settings, EarthModels(), s, kJ2000Gmt);
    EXPECT_GT(countLit(readBackRGB(kSize, kSize)), without + 50);
    std::remove(path.c_str());
}

TEST(OrreryDrawing, RealEphemerisPlanetsAppearWhereTheyProject) {
    std::string path = realEphemerisPath();
    if (path.empty()) GTEST_SKIP() << "no data/ephemerisdata/binp_all.405 in the data tree";
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);

    // Inner planets at log scale 11.5 (Mars 0.7 units out), outer ones at 12.9.
    for (double s : {11.5, 12.9}) {
        OrrerySettings settings;
        beginFrame(2.0);
        drawOrreryAt(&ephemeris, settings, EarthModels(), s, kJ2000Gmt);
        std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
        applyGalacticFrame();
        for (int i = 0; i < kPlanetCount; ++i) {
            double metres[3];
            ASSERT_EQ(ephemeris.positionAt(i, 2451545.0, metres), 0);
            PlacedBody body = placeBody(metres, s);
            WindowPoint p = project(body.position.x, body.position.y, body.position.z);
            if (!p.inside) continue;
            EXPECT_TRUE(lit(brightestNear(rgb, p))) << kPlanets[i].name << " at log scale " << s;
        }
    }
}

TEST(EarthDrawing, GridEquatorTropicsAndAxesAtTheEarth) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // The Earth at the origin, the Sun along +x, at noon: the globe's scale at log scale 7
    // is 1.2756 units, and the axes (twice the globe) turn by the spin angle of 180 degrees.
    const Phc earth{0.0, 0.0, 0.0, 0.0};
    const Phc sun{1.0, 0.0, 0.0, 11.0};
    const double g = 1.2756;
    OrrerySettings settings;
    beginFrame(2.2);
    CaptureStderr();
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 7.0);
    EXPECT_EQ(GetCapturedStderr(), "");
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);

    // Seen from the pole: the red equator at 1.02 g, the blue tropics at 1.01 cos 23.5 g.
    const double tropic = 1.01 * std::cos(23.5 * kPi / 180.0) * g;
    for (double a : {0.3, 1.9, 4.4}) {
        testsupport::Rgb equator =
            brightestNear(rgb, project(1.02 * g * std::cos(a), 1.02 * g * std::sin(a), 0));
        EXPECT_GT(equator.r, equator.b + 20) << a;
        testsupport::Rgb tropics =
            brightestNear(rgb, project(tropic * std::cos(a), tropic * std::sin(a), 0));
        EXPECT_GT(tropics.b, tropics.r + 10) << a;
    }
    // The red x axis points away from the Sun at noon (spin 180), to 2 g.
    testsupport::Rgb axis = brightestNear(rgb, project(-1.5 * g, 0.0, 0.0));
    EXPECT_GT(axis.r, axis.g + 40);
    EXPECT_FALSE(lit(brightestNear(rgb, project(1.5 * g, 0.0, 0.0))));
    // Six hours later it has turned a quarter, to -y.
    beginFrame(2.2);
    drawEarth(earth, sun, kJ2000Gmt + 6 * 3600, EarthModels(), settings, 7.0);
    rgb = readBackRGB(kSize, kSize);
    axis = brightestNear(rgb, project(0.0, -1.5 * g, 0.0));
    EXPECT_GT(axis.r, axis.g + 40);
}

TEST(EarthDrawing, ThousandfoldEarthAndMomentsBefore1970) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    const Phc earth{0.0, 0.0, 0.0, 0.0};
    const Phc sun{1.0, 0.0, 0.0, 11.0};
    OrrerySettings settings;
    beginFrame(3.0);
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 10.0);
    int small = countLit(readBackRGB(kSize, kSize));
    EXPECT_LT(small, 20);  // a globe of a thousandth of a unit

    settings.showEarthThousandfold = true;
    beginFrame(3.0);
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 10.0);
    EXPECT_GT(countLit(readBackRGB(kSize, kSize)), 1000);

    beginFrame(3.0);
    CaptureStderr();
    drawEarth(earth, sun, -86400, EarthModels(), settings, 10.0);
    EXPECT_EQ(GetCapturedStderr(), "The time given to drawEarth is too old...\n");
    EXPECT_EQ(countLit(readBackRGB(kSize, kSize)), 0);
}

TEST(OrreryDrawing, BeforeIn1970ThePlanetsStillAppearWithoutTheEarth) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    std::string path = solartest::testFilePath("old.405");
    ASSERT_TRUE(solartest::writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    beginFrame(2.0);
    CaptureStderr();
    drawOrreryAt(&ephemeris, OrrerySettings(), EarthModels(), 11.0, -86400LL * 3650);
    EXPECT_EQ(GetCapturedStderr(), "The time given to drawEarth is too old...\n");
    EXPECT_GT(countLit(readBackRGB(kSize, kSize)), 100);
    std::remove(path.c_str());
}

TEST(OrreryClockDrawing, DatesAtTheBottomLeftAndTheZoneAtTheRight) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    auto litRowsBetween = [](const std::vector<unsigned char>& rgb, int x0, int x1, double top0,
                             double top1) {
        // Rows between top0 and top1, fractions of the height counted from the top.
        int n = 0;
        int yLow = std::max(0, static_cast<int>((1 - top1) * kSize));
        int yHigh = std::min(kSize - 1, static_cast<int>((1 - top0) * kSize));
        for (int y = yLow; y <= yHigh; ++y)
            for (int x = x0; x < x1; ++x)
                n += lit(pixelAt(rgb, kSize, x, y)) ? 1 : 0;
        return n;
    };
    OrrerySettings settings;
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
    EXPECT_GT(litRowsBetween(rgb, 0, kSize / 2, 0.88, 1.0), 50);  // GMT and local
    EXPECT_EQ(litRowsBetween(rgb, 0, kSize / 2, 0.0, 0.8), 0);
    EXPECT_GT(litRowsBetween(rgb, kSize * 3 / 4, kSize, 0.9, 0.97), 10);  // the zone

    // Above the frame-number overlay when it is shown.
    settings.showFrameInfo = true;
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    rgb = readBackRGB(kSize, kSize);
    EXPECT_GT(litRowsBetween(rgb, 0, kSize / 2, 0.78, 0.87), 50);
    EXPECT_EQ(litRowsBetween(rgb, 0, kSize / 2, 0.9, 1.0), 0);
}
