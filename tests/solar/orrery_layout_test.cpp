// Where the orrery puts its bodies, labels and trails: sampling steps and counts, the pull-in
// of far bodies, the chosen moment, the Earth's spin and size, and the clock's texts.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>

#include "solar/orrery_clock.h"
#include "solar/orrery_layout.h"
#include "tests/solar/ephemeris_test_file.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

constexpr long long kJ2000Gmt = 946728000;  // 2000-01-01 12:00 UTC

class OrreryLayoutTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        path = solartest::testFilePath("layout.405");
        ASSERT_TRUE(solartest::writeTestEphemeris(path));
    }
    static void TearDownTestSuite() { std::remove(path.c_str()); }
    void SetUp() override { ASSERT_EQ(ephemeris.open(path.c_str(), true), 0); }

    static std::string path;
    Ephemeris ephemeris;
};
std::string OrreryLayoutTest::path;

double lengthOf(const Vec3& v) {
    return std::sqrt(dot(v, v));
}

}  // namespace

TEST(OrreryTrails, StepsAndSampleCountsFollowThePlanetLimits) {
    // Below 50 days every planet is sampled daily.
    for (int i = 0; i < kPlanetCount; ++i) {
        EXPECT_EQ(trailStepDays(i, 30.0), 1.0);
        EXPECT_EQ(trailSampleCount(30.0, trailStepDays(i, 30.0)), 30);
    }
    // The default 150 days: Mercury every 2 days (75 samples), the others every 3 (50).
    EXPECT_EQ(trailStepDays(kMercury, 150.0), 2.0);
    EXPECT_EQ(trailSampleCount(150.0, 2.0), 75);
    EXPECT_EQ(trailSampleSeconds(150.0, 75), 172800);
    for (int i = 1; i < kPlanetCount; ++i) {
        EXPECT_EQ(trailStepDays(i, 150.0), 3.0);
        EXPECT_EQ(trailSampleCount(150.0, trailStepDays(i, 150.0)), 50);
    }
    // Long trails reach each planet's limit.
    const double limits[kPlanetCount] = {2, 8, 8, 8, 32, 128, 128, 512, 512};
    for (int i = 0; i < kPlanetCount; ++i)
        EXPECT_EQ(trailStepDays(i, 36500.0), limits[i]);
    EXPECT_EQ(trailSampleCount(7300.0, trailStepDays(kNeptune, 7300.0)), 50);
    EXPECT_EQ(trailSampleCount(7300.0, trailStepDays(kMercury, 7300.0)), 3650);
    // Whole seconds between samples: 100 days in 3 samples.
    EXPECT_EQ(trailSampleSeconds(100.0, 3), 2880000);
    EXPECT_EQ(trailSampleSeconds(100.5, 3), 2894400);

    // No trail, or a nonsensical one, gives no samples; an absurd one is cut to two centuries.
    EXPECT_EQ(trailSampleCount(0.0, trailStepDays(kMars, 0.0)), 0);
    EXPECT_EQ(trailSampleCount(-20.0, trailStepDays(kMars, -20.0)), 0);
    EXPECT_EQ(trailSampleCount(NAN, trailStepDays(kMars, NAN)), 0);
    EXPECT_EQ(trailSampleSeconds(0.0, 0), 0);
    EXPECT_EQ(trailSampleCount(1e30, trailStepDays(kMercury, 1e30)), 36500);
}

TEST(OrreryBodies, FarBodiesArePulledInTo10To3Point5Units) {
    const double mars[3] = {2.0e11, -1.0e11, 0.5e11};  // metres
    const double r = std::sqrt(4.0e22 + 1.0e22 + 0.25e22);
    PlacedBody near = placeBody(mars, 10.0);
    EXPECT_NEAR(near.exponent, std::log10(r) - 10.0, 1e-12);
    EXPECT_NEAR(near.position.x, 2.0e11 / 1e10, 1e-9);
    EXPECT_NEAR(near.position.z, 0.5e11 / 1e10, 1e-9);

    PlacedBody far = placeBody(mars, 8.0);  // 10^3.37 units: not pulled yet
    EXPECT_NEAR(lengthOf(far.position), r / 1e8, 1e-6);
    PlacedBody farther = placeBody(mars, 6.0);
    EXPECT_EQ(farther.exponent, 3.5);
    EXPECT_NEAR(lengthOf(farther.position), std::pow(10.0, 3.5), 1e-9);
    EXPECT_NEAR(farther.position.y / lengthOf(farther.position), -1.0e11 / r, 1e-12);

    const double origin[3] = {0.0, 0.0, 0.0};
    PlacedBody centre = placeBody(origin, 8.0);
    EXPECT_EQ(centre.position, (Vec3{0.0, 0.0, 0.0}));
    const double tiny[3] = {1e-8, 0.0, 0.0};  // too short to normalise: kept as it is
    EXPECT_EQ(phcFromMetres(tiny), (Phc{1e-8, 0.0, 0.0, 0.0}));
}

TEST(OrreryMoment, NowPlusTheTruncatedOffset) {
    OrrerySettings s;
    EXPECT_EQ(orreryMoment(s, 1000), 1000);
    s.daysFromToday = 1;
    s.hoursFromNow = 12.0;
    EXPECT_EQ(orreryMoment(s, 1000), 1000 + 129600);
    s.daysFromToday = -1;
    s.hoursFromNow = 0.5;
    EXPECT_EQ(orreryMoment(s, 0), -84600);
    s.daysFromToday = 0;
    s.hoursFromNow = 1.0 / 7200.0;  // half a second is dropped
    EXPECT_EQ(orreryMoment(s, 50), 50);
    s.hoursFromNow = NAN;
    EXPECT_EQ(orreryMoment(s, 50), 50);
    s.hoursFromNow = 1e300;
    EXPECT_EQ(orreryMoment(s, 0), 31557600000000LL);

    long long before = std::time(nullptr);
    s = OrrerySettings();
    long long now = orreryMomentNow(s);
    EXPECT_GE(now, before);
    EXPECT_LE(now, before + 2);
}

TEST_F(OrreryLayoutTest, TrailsStartAtTheMomentAndFadeToHalf) {
    OrrerySettings settings;  // 150 days
    OrreryLayout layout;
    CaptureStderr();
    layOutOrrery(ephemeris, settings, kJ2000Gmt, 9.0, layout);
    EXPECT_EQ(GetCapturedStderr(), "");

    const int expectedVertices[kPlanetCount] = {76, 51, 51, 51, 51, 51, 51, 51, 51};
    for (int i = 0; i < kPlanetCount; ++i) {
        const PlanetLayout& planet = layout.planets[i];
        ASSERT_TRUE(planet.placed);
        ASSERT_EQ(static_cast<int>(planet.trail.size()), expectedVertices[i]) << i;
        EXPECT_EQ(planet.trail.front().alpha, 1.0f);
        EXPECT_NEAR(planet.trail.back().alpha, 0.5f, 1e-6);

        double now[3];
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0, now), 0);
        PlacedBody body = placeBody(now, 9.0);
        EXPECT_EQ(planet.position, body.position);
        EXPECT_EQ(planet.trail.front().position, body.position);
        // Label size: 10^e units x (fovy / 60) / 40 x labelSize.
        EXPECT_NEAR(planet.labelSize, std::pow(10.0, body.exponent) / 40.0, 1e-12);

        // The oldest sample is the trail's length before the moment.
        double then[3];
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0 - 150.0, then), 0);
        Vec3 oldest = placeBody(then, 9.0).position;
        EXPECT_NEAR(lengthOf(planet.trail.back().position - oldest), 0.0, 1e-9);
    }
    ASSERT_TRUE(layout.bodiesPlaced);
    double sun[3];
    ASSERT_EQ(ephemeris.positionAt(kSun, 2451545.0, sun), 0);
    EXPECT_TRUE(phcEqual(layout.sun, phcFromMetres(sun)));

    // A second frame reuses the layout; the short trail now has 21 vertices per planet.
    settings.orbitLengthDays = 20.0;
    layOutOrrery(ephemeris, settings, kJ2000Gmt, 9.0, layout);
    for (const PlanetLayout& planet : layout.planets)
        EXPECT_EQ(planet.trail.size(), 21u);
}

TEST_F(OrreryLayoutTest, LabelsKeepTheirSizeWhenBodiesArePulledIn) {
    OrrerySettings settings;
    settings.fovy = 30.0;
    settings.labelSize = 2.0f;
    OrreryLayout layout;
    layOutOrrery(ephemeris, settings, kJ2000Gmt, 6.0, layout);  // every body beyond 10^3.5
    for (const PlanetLayout& planet : layout.planets) {
        EXPECT_NEAR(lengthOf(planet.position), std::pow(10.0, 3.5), 1e-6);
        EXPECT_NEAR(planet.labelSize, std::pow(10.0, 3.5) * (30.0 / 60.0) / 40.0 * 2.0, 1e-9);
        for (const TrailVertex& v : planet.trail)
            EXPECT_LE(lengthOf(v.position), 3162.2777);
    }
}

TEST_F(OrreryLayoutTest, MomentsBefore1970AreLaidOutWithoutMessages) {
    OrrerySettings settings;
    OrreryLayout layout;
    CaptureStderr();
    layOutOrrery(ephemeris, settings, -86400LL * 365, 9.0, layout);
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_TRUE(layout.bodiesPlaced);
    EXPECT_TRUE(layout.planets[kPluto].placed);
    EXPECT_EQ(orreryJulianDate(-43200), 2440587.0);
    EXPECT_EQ(orreryJulianDate(kJ2000Gmt), 2451545.0);
}

TEST(EarthPlacement, SpinFollowsTheTimeOfDayAndTheSun) {
    UtcDate noon;
    ASSERT_TRUE(utcDateFromGmt(kJ2000Gmt, noon));
    EXPECT_NEAR(earthSpinAngle(noon, Vec3{1.0, 0.0, 0.0}), 180.0, 1e-12);
    EXPECT_NEAR(earthSpinAngle(noon, Vec3{0.0, 1.0, 0.0}), 270.0, 1e-12);
    UtcDate evening;
    ASSERT_TRUE(utcDateFromGmt(kJ2000Gmt + 6 * 3600 + 30 * 60 + 36, evening));
    EXPECT_NEAR(earthSpinAngle(evening, Vec3{1.0, 0.0, 0.0}), 277.65, 1e-9);

    EXPECT_NEAR(earthGlobeLog10Scale(7.0, false), std::log10(1.2756), 1e-12);
    EXPECT_NEAR(earthGlobeLog10Scale(10.0, true), std::log10(1.2756), 1e-12);
}

TEST(OrreryClock, TextsInGmtLocalTimeAndTheZone) {
    const char* old = std::getenv("TZ");
    std::string saved = old != nullptr ? old : "";

    setenv("TZ", "JST-9", 1);
    OrreryClockText text = orreryClockText(kJ2000Gmt);
    EXPECT_EQ(text.gmt, "GMT: Sat Jan  1 12:00:00 2000");
    EXPECT_EQ(text.local, "Local: Sat Jan  1 21:00:00 2000");
    EXPECT_EQ(text.timeZone, "TimeZone: JST (+9)");

    setenv("TZ", "EST5EDT", 1);
    text = orreryClockText(kJ2000Gmt + 86400 * 182);  // July: summer time, standard zone named
    EXPECT_EQ(text.gmt, "GMT: Sat Jul  1 12:00:00 2000");
    EXPECT_EQ(text.local, "Local: Sat Jul  1 08:00:00 2000");
    EXPECT_EQ(text.timeZone, "TimeZone: EST (-5)");

    setenv("TZ", "UTC0", 1);
    EXPECT_EQ(orreryClockText(0).timeZone, "TimeZone: UTC (0)");
    EXPECT_EQ(orreryClockText(-86400).gmt, "GMT: Wed Dec 31 00:00:00 1969");

    if (old != nullptr)
        setenv("TZ", saved.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}
