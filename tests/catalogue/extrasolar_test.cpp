// The extrasolar planet catalogue: fixed columns, hosts by HD or name, the checks and their
// messages, repeatable random orbits, printed planet information and orbit geometry.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "catalogue/extrasolar_planet_orbit.h"
#include "catalogue/star_list.h"
#include "common_package/math/src/random.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace {

using cattest::ScratchDir;
using cattest::stderrOf;

// A planet line in the catalogue's columns: number 0-7, HD 8-23, host 24-39, mass 40-52,
// period 53-64, semimajor axis 65-77, eccentricity 78-89, K from 90.
std::string planetLine(int number, const std::string& hd, const std::string& host,
                       const std::string& mass, const std::string& period, const std::string& axis,
                       const std::string& e, const std::string& k) {
    char buf[256];
    std::snprintf(buf, sizeof buf, "%8d%16s %-15s%13s%12s%13s%12s%s\n", number, hd.c_str(),
                  host.c_str(), mass.c_str(), period.c_str(), axis.c_str(), e.c_str(), k.c_str());
    return buf;
}

std::string planet(int number, int hd, const std::string& e = "0.100000") {
    return planetLine(number, std::to_string(hd), "HD " + std::to_string(hd), "0.500000",
                      "10.000000", "0.100000", e, " 30.5");
}

class Planets : public ::testing::Test {
  protected:
    void SetUp() override {
        cattest::loadStars(list, dir, 3,
                           cattest::fullLine(1, 0, 0, "G 2 V 1397 11 Alpha Host") +
                               cattest::fullLine(2, 0, 0, "K 3 V 2685 12 Upsilon And") +
                               cattest::fullLine(3, 0, 0, "M 1 V 0 13 Gliese 876"),
                           1);
    }

    std::string load(const std::string& text, int expected) {
        path = dir.write("planets.txt", text);
        return stderrOf([&] { EXPECT_EQ(list.loadExtrasolarPlanets(path.c_str()), expected); });
    }

    const StarObj& byHD(int hd) const { return cattest::byHD(list, hd); }

    int planetsOfAllStars() const {
        int total = 0;
        for (int i = 0; i < list.getNumRecords(); ++i)
            total += list.getStarArray()[i].numPlanets;
        return total;
    }

    ScratchDir dir;
    StarList list;
    std::string path;
};

TEST_F(Planets, ColumnsHostsAndSkippedLines) {
    const std::string text =
        "#number HD host mass period axis e K\n"
        "\n" +
        planet(1, 1397) + planet(2, 2685) +
        planetLine(3, "2685", "Upsilon And", "Not a Planet", "1.0", "1.0", "0.0", "1.0") +
        planetLine(4, "2685", "Upsilon And", "-2.000000", "1.0", "1.0", "0.0", "1.0") +
        planetLine(0, "2685", "Upsilon And", "2.000000", "1.0", "1.0", "0.0", "1.0") +
        planetLine(5, "-1", "Gliese 876", "2.276000", "61.1166", "0.208317", "0.0324", " 214.0") +
        planetLine(6, "", "Nowhere", "1.000000", "5.0", "0.05", "0.5", " 0") + planet(7, 424242) +
        planet(8, 2685, "0.900000");
    EXPECT_EQ(load(text, 1), "");
    EXPECT_STREQ(list.getStarParameter().extrasolarPlanetFile, path.c_str());
    ASSERT_EQ(list.getNumPlanets(), 6);  // 3, 4 and 0 are not planets

    const ExtrasolarPlanet* p = list.getPlanet(0);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->hd, 1397);
    EXPECT_STREQ(p->starName, "HD 1397");
    EXPECT_FLOAT_EQ(p->mass, 0.5f);
    EXPECT_FLOAT_EQ(p->eccentricity, 0.1f);
    EXPECT_FLOAT_EQ(p->k, 30.5f);
    EXPECT_FLOAT_EQ(p->axisRatio, std::sqrt(1.0f - 0.01f));
    EXPECT_NEAR(p->logOrbitSize, std::log10(0.1 * 1.49e11), 1e-6);
    ASSERT_NE(p->hostStar, nullptr);
    EXPECT_EQ(p->hostStar->hd, 1397);

    // By name when the line gives no HD; unknown hosts are counted but have no star.
    const ExtrasolarPlanet* gliese = list.getPlanet(2);
    EXPECT_EQ(gliese->hd, -1);
    ASSERT_NE(gliese->hostStar, nullptr);
    EXPECT_STREQ(gliese->hostStar->commonName, "Gliese 876");
    EXPECT_EQ(list.getPlanet(3)->hostStar, nullptr);  // no HD, no such name
    EXPECT_EQ(list.getPlanet(4)->hostStar, nullptr);  // HD 424242 is not in the list
    EXPECT_EQ(list.getPlanet(6), nullptr);

    const StarObj& ups = byHD(2685);
    ASSERT_EQ(ups.numPlanets, 2);
    EXPECT_EQ(ups.planets[0]->number, 2);
    EXPECT_EQ(ups.planets[1]->number, 8);
    EXPECT_EQ(planetsOfAllStars(), 4);

    for (int i = 0; i < list.getNumPlanets(); ++i) {
        const ExtrasolarPlanet* q = list.getPlanet(i);
        EXPECT_GE(q->phase, 0.0);
        EXPECT_LT(q->phase, 360.0);
        EXPECT_NEAR(std::hypot(std::hypot(q->orbitNormal[0], q->orbitNormal[1]), q->orbitNormal[2]),
                    1.0, 1e-12);
    }
}

TEST_F(Planets, TheSameFileGivesTheSameOrbits) {
    const std::string text = planet(1, 1397) + planet(2, 2685) + planet(3, 2685);
    auto orbits = [&] {
        load(text, 1);
        std::vector<double> out;
        for (int i = 0; i < 3; ++i) {
            const ExtrasolarPlanet* p = list.getPlanet(i);
            out.insert(out.end(),
                       {p->phase, p->orbitNormal[0], p->orbitNormal[1], p->orbitNormal[2]});
        }
        return out;
    };
    const std::vector<double> first = orbits();
    seedRandom(99);
    nextRandom();
    EXPECT_EQ(orbits(), first);
    // The first phase is the first value of the generator seeded with 2002.
    seedRandom(2002);
    EXPECT_DOUBLE_EQ(first[0], nextRandom() / 32768.0 * 360.0);
    EXPECT_EQ(planetsOfAllStars(), 3);  // the second load replaced the first
}

TEST_F(Planets, EveryCheckHasItsMessage) {
    struct Case {
        std::string mass, period, axis, e, k, message;
    };
    const std::vector<Case> cases = {
        {"1e8", "1", "1", "0", " 1", "mass of planet is exceptionally large."},
        {"nan", "1", "1", "0", " 1", "mass of planet should be positive."},
        {"1", "0", "1", "0", " 1", "orbiting period of planet should be positive."},
        {"1", "abc", "1", "0", " 1", "orbiting period of planet should be positive."},
        {"1", "2e7", "1", "0", " 1", "orbiting period is exceptionally large."},
        {"1", "1", "-1", "0", " 1", "orbiting radius of planet should be positive."},
        {"1", "1", "1e7", "0", " 1", "orbiting radius is exceptionally large."},
        {"1", "1", "1", "1.000000", " 1", "eccentricity of planet should be within [0,1)."},
        {"1", "1", "1", "-0.1", " 1", "eccentricity of planet should be within [0,1)."},
        {"1", "1", "1", "0", " -1", "K (m/s) of planet should be positive."},
        {"1", "1", "1", "0", " unknown", "K (m/s) of planet should be positive."},
    };
    for (const Case& c : cases) {
        load(planet(1, 1397), 1);
        const std::string text =
            "# header\n" + planet(1, 1397) +
            planetLine(2, "2685", "Ups And", c.mass, c.period, c.axis, c.e, c.k);
        EXPECT_EQ(load(text, -1),
                  "Err(StarList::loadExtrasolarPlanets): (line 3)\n\t" + c.message + "\n")
            << c.message;
        EXPECT_EQ(list.getNumPlanets(), 0);
        EXPECT_EQ(planetsOfAllStars(), 0);
        EXPECT_EQ(byHD(1397).planets, nullptr);
    }
}

TEST_F(Planets, ShortLinesUnreadableFilesOrbitScaleAndPrintedPlanets) {
    // 85 characters with seven words: the columns are not all there.
    std::string shortLine = planet(2, 2685).substr(0, 85);
    EXPECT_EQ(
        load(planet(1, 1397) + shortLine + "\n", -1),
        "Err(StarList::loadExtrasolarPlanets): (line 2)\n\tnot enough input argument in line [" +
            shortLine + "]\n");
    EXPECT_EQ(planetsOfAllStars(), 0);
    // Long enough but six words.
    EXPECT_NE(load(planetLine(3, "2685", "Ups", "1.0", "2.0", "3.0", "", "   ") + "\n", -1)
                  .find("not enough input argument"),
              std::string::npos);
    const std::string missing = dir.file("none.txt");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.loadExtrasolarPlanets(missing.c_str()), -1); }),
              "ERR : reading [" + missing + "]\n");
    std::string many;  // many planets of one star
    for (int i = 1; i <= 3000; ++i)
        many += planet(i, 1397);
    EXPECT_EQ(load(many, 1), "");
    EXPECT_EQ(byHD(1397).numPlanets, 3000);

    EXPECT_EQ(list.setExtrasolarPlanetOrbitScale(0.0f), 1);
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setExtrasolarPlanetOrbitScale(-1.0f), -1); }),
              "Err (setExtrasolarPlanetOrbitScale): inExtrasolarPlanetOrbitScale should be "
              "non-negative\n");
    EXPECT_FLOAT_EQ(list.getStarParameter().extrasolarPlanetOrbitScale, 0.0f);
    // A planet whose host is not in the list is printed without one.
    load(planetLine(4, "77", "Far Away", "12.345", "1234.567", "2.5", "0.125", " 99.999"), 1);
    EXPECT_EQ(cattest::stdoutOf([&] { list.printPlanetInfo(list.getPlanet(0), stdout); }),
              "Planet 4\n"
              "mass:         12.35 of Jupiter\n"
              "semimajor R:  2.50 A.U.\n"
              "period:       1234.57 days\n"
              "eccentricity: 0.12\n"
              "K:            100.00 m/s\n");
}

TEST(PlanetOrbit, TheStarSitsAtAFocus) {
    ExtrasolarPlanet p{};
    p.eccentricity = 0.6f;
    p.axisRatio = std::sqrt(1.0f - p.eccentricity * p.eccentricity);  // as the reader sets it
    const double e = p.eccentricity, b = p.axisRatio;
    p.phase = 37.0;
    p.orbitNormal[0] = 0.6;
    p.orbitNormal[2] = 0.8;
    const Vec3 star{1.0, -2.0, 3.0};
    const double r = 0.5;
    const auto v = planetOrbitVertices(p, star, r);
    // Distances to the star and to the other focus (2 e r away along the major axis) add up
    // to the major axis 2 r at every vertex; periapsis and apoapsis are r(1 -+ e) away.
    const Vec3 centre = (v[0] + v[36]) * 0.5;
    const Vec3 otherFocus = centre * 2.0 - star;
    EXPECT_NEAR(length(otherFocus - star), 2 * e * r, 1e-12);
    for (const Vec3& x : v)
        EXPECT_NEAR(length(x - star) + length(x - otherFocus), 2 * r, 1e-6);
    EXPECT_NEAR(length(v[0] - star), r * (1 + e), 1e-12);
    EXPECT_NEAR(length(v[36] - star), r * (1 - e), 1e-12);
    // A quarter turn on: the minor semi-axis.
    EXPECT_NEAR(length(v[18] - centre), r * b, 1e-12);
}

}  // namespace
