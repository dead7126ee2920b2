// The orrery on the screen: the fallback orbits, planets where their positions project, the
// Earth's grid and axes, and the clock. Pictures are checked by what they must show at the
// window positions gluProject gives, not by golden images.

#include <gtest/gtest.h>

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
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
    testsupport::clearTo(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    testsupport::orthoCamera(-halfWidth, halfWidth, -halfWidth, halfWidth, -1e4, 1e4);
    if (fromSide)
        gluLookAt(10, 0, 0, 0, 0, 0, 0, 0, 1);
    else
        gluLookAt(0, 0, 10, 0, 0, 0, 0, 1, 0);
}

// The three turns of the orrery, so that expected points are projected as it draws them.
void applyGalacticFrame() {
    glRotated(kEphemerisToGalacticZ1Degrees, 0.0, 0.0, 1.0);
    glRotated(kEphemerisToGalacticXDegrees, 1.0, 0.0, 0.0);
    glRotated(kEphemerisToGalacticZ2Degrees, 0.0, 0.0, 1.0);
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

// The planets' positions at J2000 drawn by the orrery at log scale s, checked for lit pixels
// where they project and, when asked, dark ones on the far side of the Sun.
void expectPlanetsWhereTheyProject(Ephemeris& ephemeris, double s, double halfWidth,
                                   bool farSideDark) {
    OrrerySettings settings;
    settings.showPlanetLabels = false;
    beginFrame(halfWidth);
    CaptureStderr();
    drawOrreryAt(&ephemeris, settings, EarthModels(), s, kJ2000Gmt);
    EXPECT_EQ(GetCapturedStderr(), "");
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
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
        if (farSideDark) {
            EXPECT_FALSE(lit(brightestNear(rgb, far))) << kPlanets[i].name;
        }
    }
    EXPECT_GE(seen, 4);
}

}  // namespace

TEST(OrreryDrawing, WithoutEphemerisNineTiltedCirclesAreDrawn) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    for (int i = 0; i < kPlanetCount; ++i) {
        // Each orbit in turn at 0.8 of the half width; its neighbours lie 1.3 times farther
        // or nearer, well apart on the screen.
        const double s = planetOrbitLog10Radius(i);
        beginFrame(1.25);
        drawOrreryAt(nullptr, OrrerySettings(), EarthModels(), s, kJ2000Gmt);
        std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
        applyGalacticFrame();
        int litPoints = 0;
        for (int k = 0; k < 12; ++k) {
            testsupport::Rgb c = brightestNear(rgb, fallbackOrbitPoint(i, (k + 0.5) * kPi / 6, s));
            if (!lit(c)) continue;
            ++litPoints;
            // 0.6 of the planet's colour, 0.4 opaque, on black.
            EXPECT_NEAR(c.r, 255 * 0.24 * kPlanets[i].color[0], 6) << kPlanets[i].name;
            EXPECT_NEAR(c.b, 255 * 0.24 * kPlanets[i].color[2], 6) << kPlanets[i].name;
        }
        EXPECT_GE(litPoints, 10) << kPlanets[i].name;
    }

    // Pluto's orbit seen along x is a segment 17.1 degrees from the y axis.
    const double s = planetOrbitLog10Radius(kPluto);
    beginFrame(1.25, true);
    drawFallbackOrbits(s);
    std::vector<unsigned char> side = readBackRGB(kSize, kSize);
    const double tilt = 17.1 * kPi / 180.0, steeper = 21.1 * kPi / 180.0;
    for (double r : {0.85, -0.95}) {
        EXPECT_TRUE(lit(brightestNear(side, project(0, r * std::cos(tilt), r * std::sin(tilt)))));
        EXPECT_FALSE(lit(brightestNear(side, project(0, r, 0.0))));
        EXPECT_FALSE(
            lit(brightestNear(side, project(0, r * std::cos(steeper), r * std::sin(steeper)))));
    }
}

TEST(OrreryDrawing, PlanetsAppearWhereTheirPositionsProject) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // The test file's bodies lie 10^10 to 10^11 metres out, their trails 10^10 metres long.
    std::string path = solartest::testFilePath("draw.405");
    ASSERT_TRUE(solartest::writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    expectPlanetsWhereTheyProject(ephemeris, 11.0, 1.6, true);

    // Labels add a wire cube and the name around every planet.
    OrrerySettings settings;
    beginFrame(1.6);
    drawOrreryAt(&ephemeris, settings, EarthModels(), 11.0, kJ2000Gmt);
    int withLabels = countLit(readBackRGB(kSize, kSize));
    settings.showPlanetLabels = false;
    beginFrame(1.6);
    drawOrreryAt(&ephemeris, settings, EarthModels(), 11.0, kJ2000Gmt);
    EXPECT_GT(withLabels, countLit(readBackRGB(kSize, kSize)) + 50);

    // Before 1970 the Earth cannot be placed, but the planets still are (the test file's
    // polynomials put them some 10 units out by then).
    beginFrame(20.0);
    CaptureStderr();
    drawOrreryAt(&ephemeris, OrrerySettings(), EarthModels(), 11.0, -86400LL * 3650);
    EXPECT_EQ(GetCapturedStderr(), std::string(kEarthTooOldMessage));
    EXPECT_GT(countLit(readBackRGB(kSize, kSize)), 100);
    std::remove(path.c_str());

    // The real ephemeris when the data tree has it: the inner planets at log scale 11.5,
    // the outer ones at 12.9.
    std::string real = solartest::realEphemerisPath();
    if (real.empty()) return;
    ASSERT_EQ(ephemeris.open(real.c_str(), true), 0);
    expectPlanetsWhereTheyProject(ephemeris, 11.5, 2.0, false);
    expectPlanetsWhereTheyProject(ephemeris, 12.9, 2.0, false);
}

TEST(EarthDrawing, GridEquatorTropicsAxesAndSize) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // The Earth at the origin, the Sun along +x, at noon: at log scale 7 the globe's scale is
    // 1.2756 units, and the axes (twice the globe) turn by the spin angle of 180 degrees.
    const Phc earth{0.0, 0.0, 0.0, 0.0}, sun{1.0, 0.0, 0.0, 11.0};
    const double g = 1.2756;
    OrrerySettings settings;
    beginFrame(2.2);
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 7.0);
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
    testsupport::Rgb axis = brightestNear(rgb, project(-1.5 * g, 0.0, 0.0));
    EXPECT_GT(axis.r, axis.g + 40);  // the red x axis points away from the Sun
    EXPECT_FALSE(lit(brightestNear(rgb, project(1.5 * g, 0.0, 0.0))));
    beginFrame(2.2);  // six hours later it has turned a quarter, to -y
    drawEarth(earth, sun, kJ2000Gmt + 6 * 3600, EarthModels(), settings, 7.0);
    axis = brightestNear(readBackRGB(kSize, kSize), project(0.0, -1.5 * g, 0.0));
    EXPECT_GT(axis.r, axis.g + 40);

    // At log scale 10 the globe is a thousandth of a unit, unless it is drawn 1000-fold.
    beginFrame(2.2);
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 10.0);
    EXPECT_LT(countLit(readBackRGB(kSize, kSize)), 20);
    settings.showEarthThousandfold = true;
    beginFrame(2.2);
    drawEarth(earth, sun, kJ2000Gmt, EarthModels(), settings, 10.0);
    EXPECT_GT(countLit(readBackRGB(kSize, kSize)), 1000);
    // A moment before 1970 draws nothing and says why.
    beginFrame(2.2);
    CaptureStderr();
    drawEarth(earth, sun, -86400, EarthModels(), settings, 10.0);
    EXPECT_EQ(GetCapturedStderr(), "The time given to drawEarth is too old...\n");
    EXPECT_EQ(countLit(readBackRGB(kSize, kSize)), 0);
}

// Polygons and lines the Earth hands to GL, counted in feedback mode.
struct DrawnPrimitives {
    int polygons = 0, lines = 0;
};
DrawnPrimitives feedbackOfEarth(double currLogScale, const EarthModels& models) {
    std::vector<GLfloat> buffer(1 << 20);
    glFeedbackBuffer(static_cast<GLsizei>(buffer.size()), GL_3D, buffer.data());
    glRenderMode(GL_FEEDBACK);
    const Phc earth{0.0, 0.0, 0.0, 0.0}, sun{1.0, 0.0, 0.0, 11.0};
    drawEarth(earth, sun, kJ2000Gmt, models, OrrerySettings(), currLogScale);
    const int n = glRenderMode(GL_RENDER);
    DrawnPrimitives drawn;
    for (int i = 0; i < n;) {
        const int token = static_cast<int>(buffer[i]);
        if (token == GL_POLYGON_TOKEN) {
            const int vertices = static_cast<int>(buffer[i + 1]);
            ++drawn.polygons;
            i += 2 + 3 * vertices;
        } else if (token == GL_LINE_TOKEN || token == GL_LINE_RESET_TOKEN) {
            ++drawn.lines;
            i += 1 + 2 * 3;
        } else if (token == GL_POINT_TOKEN || token == GL_BITMAP_TOKEN ||
                   token == GL_DRAW_PIXEL_TOKEN || token == GL_COPY_PIXEL_TOKEN) {
            i += 1 + 3;
        } else {
            i += 2;  // pass-through
        }
    }
    return drawn;
}

TEST(EarthDrawing, TheGlobeIsLeftOutWhenUnderTwoPixelsAcross) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // An octahedron of unit radius for each of the three layers.
    testsupport::ScratchDir dir;
    const std::string obj =
        dir.write("globe.obj",
                  "v 1 0 0\nv -1 0 0\nv 0 1 0\nv 0 -1 0\nv 0 0 1\nv 0 0 -1\n"
                  "f 1 3 5\nf 3 2 5\nf 2 4 5\nf 4 1 5\nf 3 1 6\nf 2 3 6\nf 4 2 6\nf 1 4 6\n");
    GLMmodel* globe = glmReadOBJQuiet(obj.c_str());
    ASSERT_NE(globe, nullptr);
    const EarthModels models{globe, globe, globe};
    // 4.4 units across 256 pixels: at log scale 7 the globe's radius is 1.2756 units (74
    // pixels), at 8 a tenth of that (7.4 pixels), at 9 a hundredth (0.74 pixels).
    beginFrame(2.2);
    const DrawnPrimitives near = feedbackOfEarth(7.0, models);
    const DrawnPrimitives small = feedbackOfEarth(8.0, models);
    const DrawnPrimitives tiny = feedbackOfEarth(9.0, models);
    glmDelete(globe);
    EXPECT_GE(near.polygons, 3 * 8);
    EXPECT_GE(small.polygons, 3 * 8);
    EXPECT_EQ(tiny.polygons, 0);
    // The axes and the grid still mark where it is.
    EXPECT_GT(tiny.lines, 100);
    EXPECT_EQ(tiny.lines, near.lines);
}

TEST(OrreryClockDrawing, DatesAtTheBottomLeftAndTheZoneAtTheRight) {
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    // Lit pixels in columns x0 .. x1 between top0 and top1, fractions counted from the top.
    auto litBetween = [](const std::vector<unsigned char>& rgb, int x0, int x1, double top0,
                         double top1) {
        int n = 0;
        for (int y = std::max(0, int((1 - top1) * kSize));
             y <= std::min(kSize - 1, int((1 - top0) * kSize)); ++y)
            for (int x = x0; x < x1; ++x)
                n += lit(pixelAt(rgb, kSize, x, y)) ? 1 : 0;
        return n;
    };
    OrrerySettings settings;
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
    EXPECT_GT(litBetween(rgb, 0, kSize / 2, 0.88, 1.0), 50);  // GMT and local time
    EXPECT_EQ(litBetween(rgb, 0, kSize / 2, 0.0, 0.8), 0);
    EXPECT_GT(litBetween(rgb, kSize * 3 / 4, kSize, 0.9, 0.97), 10);  // the zone
    // With the frame-number overlay shown, the dates move up out of its way.
    settings.showFrameInfo = true;
    beginFrame(1.0);
    drawOrreryClockAt(settings, kJ2000Gmt);
    rgb = readBackRGB(kSize, kSize);
    EXPECT_GT(litBetween(rgb, 0, kSize / 2, 0.78, 0.87), 50);
    EXPECT_EQ(litBetween(rgb, 0, kSize / 2, 0.9, 1.0), 0);
}
