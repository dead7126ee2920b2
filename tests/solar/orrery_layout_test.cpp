// Where the orrery puts its bodies, labels and trails, the chosen moment, the Earth's spin,
// the sky frame, and the clock's texts.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "catalogue/constellation_sky.h"
#include "solar/orrery.h"
#include "solar/orrery_clock.h"
#include "solar/orrery_layout.h"
#include "tests/solar/ephemeris_test_file.h"
#include "tests/support/scratch_files.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

constexpr long long kJ2000Gmt = 946728000;  // 2000-01-01 12:00 UTC

double lengthOf(const Vec3& v) {
    return std::sqrt(dot(v, v));
}

}  // namespace

TEST(OrreryLayout, TrailStepsSampleCountsAndTheChosenMoment) {
    const double limits[kPlanetCount] = {2, 8, 8, 8, 32, 128, 128, 512, 512};
    for (int i = 0; i < kPlanetCount; ++i)
        EXPECT_TRUE(trailStepDays(i, 30.0) == 1.0 && trailStepDays(i, 36500.0) == limits[i]) << i;
    EXPECT_EQ(trailSampleSeconds(100.5, 3), 2894400);  // whole seconds
    EXPECT_EQ(trailSampleCount(0.0, 1.0), 0);
    EXPECT_EQ(trailSampleCount(NAN, trailStepDays(kMars, NAN)), 0);
    EXPECT_EQ(trailSampleCount(1e30, trailStepDays(kMercury, 1e30)), 36500);  // two centuries

    OrrerySettings s;
    s.daysFromToday = -1;
    s.hoursFromNow = 0.5;
    EXPECT_EQ(orreryMoment(s, 0), -84600);  // truncated
    s.hoursFromNow = NAN;
    EXPECT_EQ(orreryMoment(s, 50), 50);
    s.hoursFromNow = 1e300;  // held at a million years
    EXPECT_EQ(orreryMoment(s, 0), 31557600000000LL);
}

TEST(OrreryLayout, TrailsStartAtTheMomentFadeToHalfAndFarBodiesArePulledIn) {
    const testsupport::ScratchDir dir;
    const std::string path = dir.file("layout.405");
    ASSERT_TRUE(solartest::writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    OrrerySettings settings;
    OrreryLayout layout;
    layOutOrrery(ephemeris, settings, kJ2000Gmt, 9.0, layout);
    for (int i = 0; i < kPlanetCount; ++i) {
        const PlanetLayout& planet = layout.planets[i];
        ASSERT_EQ(planet.trail.size(), i == kMercury ? 76u : 51u);  // 2-day and 3-day steps
        EXPECT_EQ(planet.trail.front().alpha, 1.0f);
        EXPECT_NEAR(planet.trail.back().alpha, 0.5f, 1e-6);
        double now[3], then[3];
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0, now), 0);
        ASSERT_EQ(ephemeris.positionAt(i, 2451545.0 - 150.0, then), 0);
        EXPECT_EQ(planet.trail.front().position, placeBody(now, 9.0).position);
        EXPECT_NEAR(lengthOf(planet.trail.back().position - placeBody(then, 9.0).position), 0,
                    1e-9);
        EXPECT_NEAR(planet.labelSize, lengthOf(planet.position) / 40.0, 1e-9);
    }
    // At log scale 6 every body is pulled in to 10^3.5 units; labels match that distance.
    settings.fovy = 30.0;
    settings.labelSize = 2.0f;
    layOutOrrery(ephemeris, settings, kJ2000Gmt, 6.0, layout);
    for (const PlanetLayout& planet : layout.planets) {
        EXPECT_NEAR(lengthOf(planet.position), std::pow(10.0, 3.5), 1e-6);
        EXPECT_NEAR(planet.labelSize, std::pow(10.0, 3.5) * (30.0 / 60.0) / 40.0 * 2.0, 1e-9);
    }
    // Trails reaching back before 1970 are laid out without a message per sample.
    CaptureStderr();
    layOutOrrery(ephemeris, settings, -86400LL * 365, 9.0, layout);
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_TRUE(layout.planets[kPluto].placed);
}

TEST(OrreryLayout, EarthSpinAndTheSkyTurnedAsTheConstellationsAre) {
    UtcDate noon, evening;
    ASSERT_TRUE(utcDateFromGmt(kJ2000Gmt, noon));
    ASSERT_TRUE(utcDateFromGmt(kJ2000Gmt + 6 * 3600 + 30 * 60 + 36, evening));
    EXPECT_NEAR(earthSpinAngle(noon, Vec3{0.0, 1.0, 0.0}), 270.0, 1e-12);
    EXPECT_NEAR(earthSpinAngle(evening, Vec3{1.0, 0.0, 0.0}), 277.65, 1e-9);

    // glRotated(Z1), glRotated(X), glRotated(Z2) turn a vertex by Z2 first.
    auto turn = [](const Vec3& v, double degrees, bool aboutX) {
        const double c = std::cos(degrees * M_PI / 180.0), s = std::sin(degrees * M_PI / 180.0);
        return aboutX ? Vec3{v.x, v.y * c - v.z * s, v.y * s + v.z * c}
                      : Vec3{v.x * c - v.y * s, v.x * s + v.y * c, v.z};
    };
    auto orrery = [&](const Vec3& v) {
        return turn(
            turn(turn(v, kEphemerisToGalacticZ2Degrees, false), kEphemerisToGalacticXDegrees, true),
            kEphemerisToGalacticZ1Degrees, false);
    };
    for (const Vec3& v : {Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}, Vec3{0.6, -0.48, 0.64}})
        EXPECT_NEAR(lengthOf(orrery(v) - equatorialToGalactic(v)), 0.0, 2e-5);
    EXPECT_NEAR(latitudeDegrees(orrery(Vec3{0, 0, 1})), 27.1, 0.05);  // north celestial pole
}

TEST(OrreryClock, TextsInGmtLocalTimeAndTheZone) {
    const char* old = std::getenv("TZ");
    const std::string saved = old != nullptr ? old : "";
    setenv("TZ", "JST-9", 1);
    OrreryClockText text = orreryClockText(kJ2000Gmt);
    EXPECT_EQ(text.gmt, "GMT: Sat Jan  1 12:00:00 2000");
    EXPECT_EQ(text.local, "Local: Sat Jan  1 21:00:00 2000");
    EXPECT_EQ(text.timeZone, "TimeZone: JST (+9)");
    setenv("TZ", "EST5EDT", 1);
    text = orreryClockText(kJ2000Gmt + 86400 * 182);  // July: summer time, standard zone named
    EXPECT_EQ(text.local, "Local: Sat Jul  1 08:00:00 2000");
    EXPECT_EQ(text.timeZone, "TimeZone: EST (-5)");
    setenv("TZ", "UTC0", 1);
    EXPECT_EQ(orreryClockText(0).timeZone, "TimeZone: UTC (0)");
    if (old != nullptr)
        setenv("TZ", saved.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}
