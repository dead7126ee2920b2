// Constellations, planet orbits and the spanning tree drawn in a window: each where its stars
// project. The eye sits at the Sun looking down -z with a 90-degree field of view and one
// drawing unit per parsec, so a point (x, y, z) in parsecs lands on pixel
// ((x / -z + 1) / 2, (y / -z + 1) / 2) x 200.

#include <GL/freeglut.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "catalogue/constellation_sky.h"
#include "catalogue/extrasolar_planet_orbit.h"
#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kSize = 200;
constexpr double kParsec = 16.4894;

using cattest::ScratchDir;
using testsupport::Rgb;

struct Pixel {
    int x, y;
};

Pixel project(const Vec3& p) {
    return {static_cast<int>(std::lround((p.x / -p.z + 1.0) / 2.0 * kSize)),
            static_cast<int>(std::lround((p.y / -p.z + 1.0) / 2.0 * kSize))};
}

struct Shot {
    std::vector<unsigned char> rgb = testsupport::readBackRGB(kSize, kSize);
    Rgb at(int x, int y) const { return testsupport::pixelAt(rgb, kSize, x, y); }
    // The brightest pixel within one pixel of (x, y) satisfies the test.
    template <typename Test>
    bool near(Pixel p, Test test) const {
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
                const int x = p.x + dx, y = p.y + dy;
                if (x >= 0 && y >= 0 && x < kSize && y < kSize && test(at(x, y))) return true;
            }
        return false;
    }
    int count(bool (*test)(const Rgb&)) const {
        int n = 0;
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x)
                n += test(at(x, y));
        return n;
    }
};

const auto dark = [](const Rgb& p) { return p.r + p.g + p.b < 20; };
const auto red = [](const Rgb& p) { return p.r > 150 && p.g < 60 && p.b < 60; };
const auto green = [](const Rgb& p) { return p.g > 150 && p.r < 60 && p.b < 60; };
const auto lit = [](const Rgb& p) { return p.r + p.g + p.b > 90; };

// Stars in parsecs with the Sun: A and B of the figure, C with a planet.
class DrawnLayers : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!testsupport::openTestWindow(kSize, kSize)) GTEST_SKIP() << "no display";
        // Bright (luminosity 1e4) and without motion.
        const char* const lines =
            "-0.3 0.1 -1 0.05 0 0 0 0 0 0 0.65 10000 1 1 1 1 G 2 V 201 0 A\n"
            "0.3 -0.1 -1 0.05 0 0 0 0 0 0 0.65 10000 1 1 1 1 G 2 V 202 0 B\n"
            "0 0.3 -2 0.05 0 0 0 0 0 0 0.65 10000 1 1 1 1 G 2 V 301 0 C\n";
        cattest::loadStars(list, dir, 3, lines, 1);

        glViewport(0, 0, kSize, kSize);
        testsupport::perspectiveCamera(90.0, 1.0, 0.001, 1e5);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_BLEND);
        testsupport::clearTo(0, 0, 0, 1);
    }

    // The direction (x, y, z) as right ascension and declination for a boundary vertex line.
    static std::string skyLine(double x, double y, double z) {
        const Vec3 eq = galacticToEquatorial(normalized(Vec3{x, y, z}));
        char buf[100];
        std::snprintf(buf, sizeof buf, "%.9f %.9f Xx\n", longitudeDegrees(eq) / 15.0,
                      latitudeDegrees(eq));
        return buf;
    }

    ScratchDir dir;
    StarList list;
};

TEST_F(DrawnLayers, FigureLinesBoundariesAndNamesWhereTheStarsAre) {
    const std::string file = dir.write(
        "c.txt", "CONSTELLATION Tst Test\nBOUNDARY BEGIN\n" + skyLine(-0.2, 0.4, -1) +
                     skyLine(0.2, 0.4, -1) + "BOUNDARY END\nLINE BEGIN\nHD201\nHD202\nLINE END\n");
    ASSERT_EQ(list.loadConstellations(file.c_str()), 1);
    const float red4[4] = {1, 0, 0, 1}, green4[4] = {0, 1, 0, 1};
    ASSERT_EQ(list.setConstellationColors(red4, green4), 1);

    list.drawConstellations(kParsec, 1, 0, 1);
    Shot lines;
    const Pixel a = project({-0.3, 0.1, -1}), b = project({0.3, -0.1, -1});
    for (double t : {0.1, 0.3, 0.5, 0.7, 0.9}) {
        const Pixel p{static_cast<int>(std::lround(a.x + t * (b.x - a.x))),
                      static_cast<int>(std::lround(a.y + t * (b.y - a.y)))};
        EXPECT_TRUE(lines.near(p, red)) << "figure line at t = " << t;
    }
    for (double x : {-0.15, 0.0, 0.15})
        EXPECT_TRUE(lines.near(project({x, 0.4, -1}), green)) << "boundary at x = " << x;
    EXPECT_TRUE(dark(lines.at(100, 40)));
    EXPECT_TRUE(dark(lines.at(40, 100)));
    EXPECT_EQ(lines.count(lit), lines.count(red) + lines.count(green));  // nothing else drawn

    // The name, in the line colour, begins at the brightest member and runs right.
    glClear(GL_COLOR_BUFFER_BIT);
    ASSERT_EQ(list.setLabelScale(20.0f), 1);
    list.drawConstellations(kParsec, 0, 1, 0);
    Shot name;
    int leftOfA = 0, rightOfA = 0;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            if (!red(name.at(x, y))) continue;
            (x < a.x - 2 ? leftOfA : rightOfA)++;
        }
    EXPECT_GT(rightOfA, 30);
    EXPECT_EQ(leftOfA, 0);

    // Nothing asked, nothing drawn; an index out of range draws nothing either.
    glClear(GL_COLOR_BUFFER_BIT);
    list.drawConstellations(kParsec, 0, 0, 0);
    list.drawConstellation(5, kParsec, 1, 1, 1);
    EXPECT_EQ(Shot().count(lit), 0);
}

TEST_F(DrawnLayers, LineWidthsFollowTheGLRange) {
    float range[2];
    glGetFloatv(GL_LINE_WIDTH_RANGE, range);
    const std::string message = cattest::stderrOf(
        [&] { EXPECT_EQ(list.setConstellationLineWidth(0.0f, 1.0f), range[0] == 0.0f ? 1 : -1); });
    if (range[0] > 0.0f) {
        char expected[128];
        std::snprintf(expected, sizeof expected,
                      "Err (setConstellationLineWidth): inLineWidth out of range [%f,%f]\n",
                      range[0], range[1]);
        EXPECT_EQ(message, expected);
    }
    EXPECT_EQ(list.setConstellationLineWidth(range[1], range[0]), 1);
}

TEST_F(DrawnLayers, PlanetOrbitAroundItsStar) {
    char line[160];
    std::snprintf(line, sizeof line, "%8d%16d %-15s%13.6f%12.6f%13.6f%12.6f %s\n", 1, 301, "C", 1.0,
                  365.0, 1.0, 0.3, "10.0");
    const std::string file = dir.write("p.txt", line);
    ASSERT_EQ(list.loadExtrasolarPlanets(file.c_str()), 1);
    const ExtrasolarPlanet* planet = list.getPlanet(0);
    ASSERT_NE(planet, nullptr);
    ASSERT_NE(planet->hostStar, nullptr);
    // An orbit of 0.5 units (parsecs) drawn around C, about 2 units away.
    const double scale = 0.5 / (0.8 * std::pow(10.0, planet->logOrbitSize - kParsec));
    ASSERT_EQ(list.setExtrasolarPlanetOrbitScale(static_cast<float>(scale)), 1);
    ASSERT_EQ(list.setLabelScale(0.0f), 1);

    glColor3f(1, 0, 0);
    list.drawAllPlanets(kParsec, 1);
    Shot orbit;
    const auto vertices = planetOrbitVertices(*planet, Vec3{0, 0.3, -2}, 0.5);
    int found = 0;
    for (const Vec3& v : vertices)
        found += orbit.near(project(v), red);
    EXPECT_GE(found, 68) << "of 72 orbit vertices";
    EXPECT_GT(orbit.count(red), 100);

    // The picked star's planets (a copy of its record) are the same orbit.
    glClear(GL_COLOR_BUFFER_BIT);
    StarObj host;
    ASSERT_EQ(list.getStarByHD(&host, 301), 1);
    list.drawPlanetOfStar(&host, kParsec, 0);
    Shot picked;
    EXPECT_EQ(picked.rgb, orbit.rgb);

    EXPECT_EQ(cattest::stderrOf([&] { list.drawPlanet(1, kParsec, 0); }),
              "Err (drawPlanet): planetID out of range\n");
    EXPECT_EQ(cattest::stderrOf([&] { list.drawPlanetOfStar(9, kParsec, 0); }),
              "Err (drawPlanetOfStar): starID out of range\n");
    EXPECT_EQ(cattest::stderrOf([&] { list.drawPlanetOfStar(nullptr, kParsec, 0); }),
              "Err (drawPlanetOfStar): input parameter starobj is NULL\n");
    EXPECT_EQ(cattest::stderrOf([&] { list.drawPlanet(nullptr, kParsec, 0); }),
              "Err (drawPlanet): input parameter planet is NULL\n");
}

TEST_F(DrawnLayers, SpanningTreeSegments) {
    list.buildMST();
    int numEdges = 0;
    const std::int32_t* edges = list.getMSTEdges(&numEdges);
    ASSERT_EQ(numEdges, 3);
    list.drawMST(kParsec, kStarColorWhite);
    Shot tree;
    // Each edge between two stars in front of the eye (the Sun is at the eye) is drawn.
    auto parsecs = [&](int i) {
        StarObj star;
        list.getStar(&star, i);
        return star.pos.xyz() * std::pow(10.0, star.pos.w - kParsec);
    };
    int drawn = 0;
    for (int e = 0; e < numEdges; ++e) {
        if (edges[2 * e] == 0 || edges[2 * e + 1] == 0) continue;
        const Vec3 mid = (parsecs(edges[2 * e]) + parsecs(edges[2 * e + 1])) * 0.5;
        EXPECT_TRUE(tree.near(project(mid), lit)) << "edge " << e;
        ++drawn;
    }
    EXPECT_EQ(drawn, 2);
    EXPECT_TRUE(dark(tree.at(100, 170)));
}

}  // namespace
