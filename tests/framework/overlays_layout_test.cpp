// Layout of the reference overlays without a window: cube fades, power-label runs, sky-grid
// weights and labels, wire-sphere limits and tables, the label size setting.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

namespace {

// A modelview that looks from eye towards the origin along -z (identity rotation).
void eyeOnZ(double distance, double m[16]) {
    for (int i = 0; i < 16; ++i)
        m[i] = i % 5 == 0 ? 1.0 : 0.0;
    m[14] = -distance;
}

std::optional<GridLabel> labelAt(const std::vector<GridLabel>& labels, double lon, double lat) {
    for (const GridLabel& l : labels) {
        if (l.longitude == lon && l.latitude == lat) return l;
    }
    return std::nullopt;
}

bool hasText(const std::vector<GridLabel>& labels, const std::string& text) {
    for (const GridLabel& l : labels) {
        if (l.text == text) return true;
    }
    return false;
}

}  // namespace

TEST(PowerCubes, EyeThreeUnitsAwayShowsTheMetreAndTenMetreCubes) {
    double m[16];
    eyeOnZ(3.0, m);
    double e = eyeDistanceExponent(m, 0.0);
    EXPECT_NEAR(e, std::log10(3.0), 1e-12);
    EXPECT_NEAR(powerCubeWeight(0, e), 0.99, 0.005);
    EXPECT_NEAR(powerCubeWeight(1, e), 0.49, 0.005);
    EXPECT_LT(powerCubeWeight(2, e), 0.0);

    std::vector<PowerCubeFade> cubes = powerCubeFades(e);
    ASSERT_EQ(cubes.size(), 2u);
    EXPECT_EQ(cubes[0].n, 0);
    EXPECT_NEAR(cubes[0].fade, std::sqrt(powerCubeWeight(0, e)), 1e-12);
    EXPECT_EQ(cubes[1].n, 1);
    EXPECT_NEAR(cubes[1].fade, std::sqrt(powerCubeWeight(1, e)), 1e-12);
}

TEST(PowerCubes, ParsecCubesAreTheMetreCubesShiftedByOneParsec) {
    double m[16];
    eyeOnZ(3.0, m);
    double e = eyeDistanceExponent(m, kParsecLog10) - kParsecLog10;
    EXPECT_NEAR(e, std::log10(3.0), 1e-9);
    std::vector<PowerCubeFade> cubes = powerCubeFades(e);
    ASSERT_EQ(cubes.size(), 2u);
    EXPECT_EQ(cubes[0].n, 0);
    EXPECT_EQ(cubes[1].n, 1);
}

TEST(PowerCubes, EyeExponentFollowsARotatedCamera) {
    // Rotation of 90 degrees about x, eye at (0, 30, 40) in world units: t = -R eye.
    double m[16] = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    double eye[3] = {0.0, 30.0, 40.0};
    for (int row = 0; row < 3; ++row) {
        m[12 + row] = -(m[row] * eye[0] + m[4 + row] * eye[1] + m[8 + row] * eye[2]);
    }
    EXPECT_NEAR(eyeDistanceExponent(m, 2.0), 2.0 + std::log10(50.0), 1e-12);
    // An eye at the origin keeps the drawing scale.
    double origin[16];
    eyeOnZ(0.0, origin);
    EXPECT_DOUBLE_EQ(eyeDistanceExponent(origin, 7.5), 7.5);
}

TEST(PowerCubes, StartAtTheTruncatedExponentAndRefuseNonsense) {
    // Below one unit the start is truncated towards zero: at e = -2.5 the cube of 10^-3
    // (weight 1) is not tried, 10^-2 is drawn at weight 0.5, 10^-1 has weight 0.
    std::vector<PowerCubeFade> cubes = powerCubeFades(-2.5);
    ASSERT_EQ(cubes.size(), 1u);
    EXPECT_EQ(cubes[0].n, -2);
    EXPECT_NEAR(cubes[0].fade, std::sqrt(0.5), 1e-12);

    EXPECT_TRUE(powerCubeFades(std::numeric_limits<double>::quiet_NaN()).empty());
    EXPECT_TRUE(powerCubeFades(std::numeric_limits<double>::infinity()).empty());
    EXPECT_TRUE(powerCubeFades(1e300).empty());
    EXPECT_TRUE(powerCubeFades(-1e300).empty());
}

TEST(PowerLabel, ReadsOneMetreOrTenWithARaisedExponent) {
    // Every character 100 units wide.
    StrokeWidthFn width = [](const std::string& s) { return 100.0 * s.size(); };

    std::vector<StrokePiece> one = powerLabelLayout(0, "m", width);
    ASSERT_EQ(one.size(), 2u);
    EXPECT_EQ(one[0].text, "1");
    EXPECT_EQ(one[1].text, "m");
    EXPECT_DOUBLE_EQ(one[0].x, -100.0);  // "1m" centred
    EXPECT_DOUBLE_EQ(one[1].x, 0.0);
    EXPECT_DOUBLE_EQ(one[1].y, 0.0);

    std::vector<StrokePiece> kilo = powerLabelLayout(3, "m", width);
    ASSERT_EQ(kilo.size(), 3u);
    EXPECT_EQ(kilo[0].text, "10");
    EXPECT_EQ(kilo[1].text, "3");
    EXPECT_EQ(kilo[2].text, "m");
    // "10" + half-size "3" + "m" = 350 units, centred.
    EXPECT_DOUBLE_EQ(kilo[0].x, -175.0);
    EXPECT_DOUBLE_EQ(kilo[1].x, 25.0);
    EXPECT_DOUBLE_EQ(kilo[1].y, 75.0);  // raised by 0.75 width of "-"
    EXPECT_DOUBLE_EQ(kilo[1].scale, 0.5);
    EXPECT_DOUBLE_EQ(kilo[2].x, 75.0);
    EXPECT_DOUBLE_EQ(kilo[2].y, 0.0);
    EXPECT_DOUBLE_EQ(kilo[2].scale, 1.0);

    std::vector<StrokePiece> small = powerLabelLayout(-12, "parsec", width);
    ASSERT_EQ(small.size(), 3u);
    EXPECT_EQ(small[1].text, "-12");
    EXPECT_DOUBLE_EQ(small[0].x, -(small[2].x + 600.0));  // centred: ends where it starts, mirrored
}

TEST(SkyGrid, SphereWeightsFollowTheFieldOfView) {
    struct Case {
        double fovy;
        std::array<double, 3> weights;
    };
    const Case cases[] = {
        {10.0, {0.0, 0.0, 1.0}}, {17.5, {0.0, 0.5, 0.5}},
        {25.0, {0.0, 1.0, 0.0}}, {30.0, {1.0 / 3.0, 2.0 / 3.0, 0.0}},
        {40.0, {1.0, 0.0, 0.0}}, {60.0, {1.0, 0.0, 0.0}},
        {1e-7, {0.0, 0.0, 1.0}}, {179.9, {1.0, 0.0, 0.0}},
    };
    for (const Case& c : cases) {
        std::array<double, 3> w = skyGridSphereWeights(c.fovy);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(w[i], c.weights[i], 1e-12) << "fovy " << c.fovy << " sphere " << i;
        }
    }
}

TEST(SkyGrid, MainLabelsNameLatitudesAndLongitudes) {
    std::vector<GridLabel> equatorial = skyGridMainLabels(1);
    ASSERT_EQ(equatorial.size(), 13u + 23u);
    EXPECT_EQ(labelAt(equatorial, 0, -90)->text, "-90");
    EXPECT_EQ(labelAt(equatorial, 0, 0)->text, "0");
    EXPECT_EQ(labelAt(equatorial, 15, 0)->text, "1h");
    EXPECT_EQ(labelAt(equatorial, 345, 0)->text, "23h");
    std::vector<GridLabel> galactic = skyGridMainLabels(2);
    EXPECT_EQ(labelAt(galactic, 15, 0)->text, "15");
    EXPECT_EQ(labelAt(galactic, 345, 0)->text, "345");
    EXPECT_EQ(labelAt(galactic, 0, 75)->text, "75");
}

TEST(SkyGrid, CrossingsEveryFifteenDegreesAboveFortyDegrees) {
    std::vector<GridLabel> eq = skyGridCrossingLabels(1, 60.0);
    EXPECT_EQ(eq.size(), 23u * 10u);
    EXPECT_EQ(labelAt(eq, 15, 15)->text, "(1h,15)");
    EXPECT_EQ(labelAt(eq, 345, -75)->text, "(23h,-75)");
    EXPECT_FALSE(labelAt(eq, 15, 0));  // carries the main label
    EXPECT_FALSE(labelAt(eq, 0, 15));
    for (const GridLabel& l : eq)
        EXPECT_TRUE(l.major);
    std::vector<GridLabel> gal = skyGridCrossingLabels(2, 41.0);
    EXPECT_EQ(labelAt(gal, 15, 15)->text, "(15,15)");
    EXPECT_EQ(labelAt(gal, 345, 75)->text, "(345,75)");
}

TEST(SkyGrid, CrossingsEveryFiveDegreesFromTwentyFiveToForty) {
    std::vector<GridLabel> eq = skyGridCrossingLabels(1, 30.0);
    // 72 x 35 crossings less 24 on the equator and 11 on the zero meridian (one shared).
    EXPECT_EQ(eq.size(), 72u * 35u - 34u);
    auto fifteen = labelAt(eq, 15, 15);
    ASSERT_TRUE(fifteen);
    EXPECT_EQ(fifteen->text, "(1h,15)");
    EXPECT_TRUE(fifteen->major);
    auto five = labelAt(eq, 5, 0);
    ASSERT_TRUE(five);
    EXPECT_EQ(five->text, "(0.33h,0)");
    EXPECT_FALSE(five->major);
    EXPECT_NEAR(five->weight, 10.0 / 15.0, 1e-12);
    EXPECT_EQ(labelAt(eq, 0, 5)->text, "(0h,5)");
    EXPECT_EQ(labelAt(eq, 15, 5)->text, "(1h,5)");
    EXPECT_FALSE(labelAt(eq, 15, 5)->major);
    EXPECT_FALSE(labelAt(eq, 30, 0));
    EXPECT_FALSE(labelAt(eq, 0, -15));
    EXPECT_TRUE(labelAt(eq, 355, 85));
    EXPECT_TRUE(labelAt(skyGridCrossingLabels(1, 40.0), 5, 0));  // 40 is in this band

    std::vector<GridLabel> gal = skyGridCrossingLabels(3, 30.0);
    EXPECT_EQ(labelAt(gal, 5, 0)->text, "(5,0)");
    EXPECT_EQ(labelAt(gal, 355, -85)->text, "(355,-85)");
}

TEST(SkyGrid, CrossingsEveryTwoAndAHalfDegreesAtTwentyFiveAndBelow) {
    std::vector<GridLabel> eq = skyGridCrossingLabels(1, 20.0);
    EXPECT_EQ(eq.size(), 144u * 71u - 34u);
    auto quarter = labelAt(eq, 2.5, 2.5);
    ASSERT_TRUE(quarter);
    EXPECT_EQ(quarter->text, "(0.17h,2.5)");
    EXPECT_FALSE(quarter->major);
    EXPECT_NEAR(quarter->weight, 5.0 / 15.0, 1e-12);
    EXPECT_EQ(labelAt(eq, 15, 5)->text, "(1h,5)");
    EXPECT_TRUE(labelAt(eq, 15, 5)->major);
    EXPECT_EQ(labelAt(eq, 5, -87.5)->text, "(0.33h,-87.5)");
    EXPECT_TRUE(labelAt(eq, 5, 10)->major);
    EXPECT_TRUE(hasText(eq, "(23.83h,87.5)"));
    EXPECT_FALSE(labelAt(eq, 0, 15));
    EXPECT_FALSE(labelAt(eq, 45, 0));
    EXPECT_TRUE(labelAt(eq, 2.5, 0));

    std::vector<GridLabel> gal = skyGridCrossingLabels(2, 25.0);
    EXPECT_EQ(labelAt(gal, 2.5, 2.5)->text, "(2.5,2.5)");
    EXPECT_EQ(labelAt(gal, 5, 2.5)->text, "(5,2.5)");
    EXPECT_EQ(labelAt(gal, 7.5, -5)->text, "(7.5,-5)");
    EXPECT_EQ(labelAt(gal, 10, 10)->text, "(10,10)");
    EXPECT_NEAR(labelAt(gal, 2.5, 2.5)->weight, 0.0, 1e-12);
    // At 10 degrees and below the minor crossings are at full strength.
    EXPECT_DOUBLE_EQ(labelAt(skyGridCrossingLabels(2, 8.0), 2.5, 2.5)->weight, 1.0);
}

TEST(WireSphere, TooManyStacksOrSlicesAreWarnedAndCut) {
    int slices = 513, stacks = 513;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(limitWireSphereCounts(slices, stacks));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning (myGlutWireSphere): too many stacks.\n"
              "warning (myGlutWireSphere): too many slices.\n");
    EXPECT_EQ(slices, 512);
    EXPECT_EQ(stacks, 512);

    slices = 512;
    stacks = 1;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(limitWireSphereCounts(slices, stacks));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    slices = 0;
    stacks = -3;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(limitWireSphereCounts(slices, stacks));
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
}

TEST(WireSphere, TablesAreRebuiltOnlyWhenTheSphereChanges) {
    WireSphereTable t;
    EXPECT_TRUE(t.update(1000.0, 24, 12));
    ASSERT_EQ(t.sliceSin.size(), 25u);
    ASSERT_EQ(t.stackSin.size(), 13u);
    EXPECT_NEAR(t.stackSin[0], 1000.0, 1e-9);    // north pole
    EXPECT_NEAR(t.stackSin[12], -1000.0, 1e-9);  // south pole
    EXPECT_NEAR(t.stackCos[6], 1000.0, 1e-9);    // equator
    EXPECT_NEAR(t.sliceCos[6], 0.0, 1e-12);      // a quarter turn
    EXPECT_NEAR(t.sliceSin[6], 1.0, 1e-12);

    EXPECT_FALSE(t.update(1000.0, 24, 12));
    EXPECT_TRUE(t.update(1000.0, 72, 36));
    EXPECT_TRUE(t.update(1.01, 72, 36));
    EXPECT_NEAR(t.stackCos[18], 1.01, 1e-12);
    EXPECT_FALSE(t.update(1.01, 72, 36));
    EXPECT_TRUE(t.update(1.01, 5000, 5000));  // never beyond the limit
    EXPECT_EQ(t.sliceSin.size(), 513u);
    EXPECT_FALSE(t.update(1.01, 5000, 5000));
}

TEST(LabelSize, StartsAtOneAndRefusesNegativeOrNonFiniteSizes) {
    EXPECT_FLOAT_EQ(getLabelSize(), 1.0f);
    EXPECT_EQ(setLabelSize(2.5f), 1);
    EXPECT_FLOAT_EQ(getLabelSize(), 2.5f);
    testing::internal::CaptureStderr();
    EXPECT_EQ(setLabelSize(-1.0f), -1);
    EXPECT_EQ(setLabelSize(std::numeric_limits<float>::quiet_NaN()), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (setLabelSize) : inSize should not be negative.\n\n"
              "Err (setLabelSize) : inSize should not be negative.\n\n");
    EXPECT_FLOAT_EQ(getLabelSize(), 2.5f);
    EXPECT_EQ(setLabelSize(1.0f), 1);
}
