// The reader on the data tree's real DE405 file against published positions (skipped when
// the tree has not been built).

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "solar/ephemeris.h"
#include "tests/solar/ephemeris_test_file.h"

namespace {

class RealEphemeris : public testing::Test {
  protected:
    void SetUp() override {
        const std::string path = solartest::realEphemerisPath();
        if (path.empty()) GTEST_SKIP() << "no data/ephemerisdata/binp_all.405 in the data tree";
        ASSERT_EQ(ephemeris.open(path.c_str(), false), 0);
    }
    // Heliocentric position in AU at J2000.
    void heliocentric(int item, double out[3]) {
        double body[3], sun[3];
        ASSERT_EQ(ephemeris.positionAt(item, 2451545.0, body), 0);
        ASSERT_EQ(ephemeris.positionAt(kSun, 2451545.0, sun), 0);
        for (int c = 0; c < 3; ++c)
            out[c] = (body[c] - sun[c]) / (ephemeris.header().kilometresPerAu * 1000.0);
    }
    Ephemeris ephemeris;
};

}  // namespace

TEST_F(RealEphemeris, EarthMoonBarycentreMarsAndMoonAtJ2000) {
    EXPECT_EQ(ephemeris.header().kilometresPerAu, 149597870.691);
    const double emb[3] = {-0.177158788, 0.887406861, 0.384736711};
    const double mars[3] = {1.390715922, 0.001401222, -0.036960168};
    double p[3], error = 0.0;
    heliocentric(kEarthMoonBarycentre, p);
    EXPECT_NEAR(std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]), 0.983309977, 1e-8);
    for (int c = 0; c < 3; ++c)
        EXPECT_NEAR(p[c], emb[c], 1e-8);
    heliocentric(kMars, p);
    for (int c = 0; c < 3; ++c)
        error += std::pow((p[c] - mars[c]) * 149597870.691, 2);
    EXPECT_LT(std::sqrt(error), 10.0);                        // km
    ASSERT_EQ(ephemeris.positionAt(kMoon, 2451545.0, p), 0);  // from the Earth
    EXPECT_NEAR(std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]) / 1000.0, 402448.6, 0.1);
}

// Across every record boundary each body moves on without a jump: the step over 2h days
// matches its mean velocity to the centimetre.
TEST_F(RealEphemeris, PositionsAreContinuousAcrossEveryRecordBoundary) {
    const double h = std::ldexp(1.0, -20);  // days; exact around Julian dates of 2.4 million
    double worst = 0.0;
    for (int k = 0; k + 1 < ephemeris.numRecords(); ++k) {
        double boundary = ephemeris.firstRecordEnd() + k * ephemeris.recordSpan();
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double before[3], after[3], v0[3], v1[3];
            ASSERT_EQ(ephemeris.stateAt(item, boundary - h, before, v0), 0);
            ASSERT_EQ(ephemeris.stateAt(item, boundary + h, after, v1), 0);
            for (int c = 0; c < 3; ++c)
                worst = std::max(worst, std::fabs(after[c] - before[c] -
                                                  (v0[c] + v1[c]) / 2 * (2 * h * 86400.0)));
        }
    }
    EXPECT_LT(worst, 0.01);  // metres
}
