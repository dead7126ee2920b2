// The ephemeris reader on the real DE405 file of the data tree, checked against published
// positions. Skipped when the data tree has not been built.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "solar/ephemeris.h"
#include "tests/solar/ephemeris_test_file.h"

namespace {

constexpr double kJ2000 = 2451545.0;
constexpr long long kRealFileBytes = 9324880;

class RealEphemeris : public testing::Test {
  protected:
    void SetUp() override {
        path = solartest::realEphemerisPath();
        if (path.empty()) GTEST_SKIP() << "no data/ephemerisdata/binp_all.405 in the data tree";
        ASSERT_EQ(ephemeris.open(path.c_str(), false), 0);
        au = ephemeris.header().kilometresPerAu * 1000.0;
    }

    // Heliocentric position in AU (the file's positions are barycentric).
    void heliocentric(int item, double julianDate, double out[3]) {
        double body[3], sun[3];
        ASSERT_EQ(ephemeris.positionAt(item, julianDate, body), 0);
        ASSERT_EQ(ephemeris.positionAt(kSun, julianDate, sun), 0);
        for (int c = 0; c < 3; ++c)
            out[c] = (body[c] - sun[c]) / au;
    }

    std::string path;
    Ephemeris ephemeris;
    double au = 0.0;
};

}  // namespace

TEST_F(RealEphemeris, EarthMoonBarycentreMarsAndMoonAtJ2000) {
    EXPECT_EQ(ephemeris.header().kilometresPerAu, 149597870.691);
    EXPECT_EQ(ephemeris.recordSpan(), 32.0);
    struct stat info;
    if (stat(path.c_str(), &info) == 0 && info.st_size == kRealFileBytes) {  // not packed
        EXPECT_EQ(ephemeris.dataSize(), 1143 * 8152);
    }

    double emb[3];
    heliocentric(kEarthMoonBarycentre, kJ2000, emb);
    EXPECT_NEAR(std::sqrt(emb[0] * emb[0] + emb[1] * emb[1] + emb[2] * emb[2]), 0.983309977, 1e-8);
    EXPECT_NEAR(emb[0], -0.177158788, 1e-8);
    EXPECT_NEAR(emb[1], 0.887406861, 1e-8);
    EXPECT_NEAR(emb[2], 0.384736711, 1e-8);

    // Mars within 10 km of the published value.
    const double mars[3] = {1.390715922, 0.001401222, -0.036960168};
    double p[3];
    heliocentric(kMars, kJ2000, p);
    double dx = (p[0] - mars[0]) * au, dy = (p[1] - mars[1]) * au, dz = (p[2] - mars[2]) * au;
    EXPECT_LT(std::sqrt(dx * dx + dy * dy + dz * dz), 10000.0);

    // The Moon from the Earth.
    double moon[3];
    ASSERT_EQ(ephemeris.positionAt(kMoon, kJ2000, moon), 0);
    EXPECT_NEAR(std::sqrt(moon[0] * moon[0] + moon[1] * moon[1] + moon[2] * moon[2]) / 1000.0,
                402448.6, 0.1);
}

// Across every record boundary each body moves on without a jump: the step over 2 h days
// around the boundary matches its velocity to the millimetre scale.
TEST_F(RealEphemeris, PositionsAreContinuousAcrossEveryRecordBoundary) {
    const double h = std::ldexp(1.0, -20);  // days; exact around Julian dates of 2.4 million
    double worst = 0.0;
    for (int k = 0; k + 1 < ephemeris.numRecords(); ++k) {
        double boundary = ephemeris.firstRecordEnd() + k * ephemeris.recordSpan();
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double before[3], after[3], v0[3], v1[3];
            ASSERT_EQ(ephemeris.stateAt(item, boundary - h, before, v0), 0);
            ASSERT_EQ(ephemeris.stateAt(item, boundary + h, after, v1), 0);
            for (int c = 0; c < 3; ++c) {
                double jump = after[c] - before[c] - (v0[c] + v1[c]) / 2 * (2 * h * 86400.0);
                worst = std::max(worst, std::fabs(jump));
            }
        }
    }
    EXPECT_LT(worst, 0.01);  // metres
}
