// Layout of the reference overlays without a window: cube fades, power-label runs, sky-grid
// weights and labels, wire-sphere limits and tables, the label size setting.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

const GridLabel* labelAt(const std::vector<GridLabel>& labels, double lon, double lat) {
    for (const GridLabel& l : labels) {
        if (l.longitude == lon && l.latitude == lat) return &l;
    }
    return nullptr;
}

}  // namespace

TEST(PowerCubes, EyeThreeUnitsAwayShowsTheMetreAndTenMetreCubes) {
    // Identity rotation, eye 3 units up the z axis.
    double m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -3, 1};
    for (double unit : {0.0, kParsecLog10}) {  // metres, then parsecs at the parsec scale
        double e = eyeDistanceExponent(m, unit) - unit;
        EXPECT_NEAR(e, std::log10(3.0), 1e-9);
        EXPECT_NEAR(powerCubeWeight(0, e), 0.99, 0.005);
        EXPECT_NEAR(powerCubeWeight(1, e), 0.49, 0.005);
        std::vector<PowerCubeFade> cubes = powerCubeFades(e);
        ASSERT_EQ(cubes.size(), 2u);  // 100 and more not drawn
        EXPECT_EQ(cubes[0].n, 0);
        EXPECT_NEAR(cubes[0].fade, std::sqrt(powerCubeWeight(0, e)), 1e-12);
        EXPECT_EQ(cubes[1].n, 1);
    }
    // Rotated 90 degrees about x, eye at (0, 30, 40) at scale 2: t = -R eye.
    double r[16] = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 40, -30, 1};
    EXPECT_NEAR(eyeDistanceExponent(r, 2.0), 2.0 + std::log10(50.0), 1e-12);
    double origin[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    EXPECT_DOUBLE_EQ(eyeDistanceExponent(origin, 7.5), 7.5);
}

TEST(PowerCubes, StartAtTheTruncatedExponentAndRefuseNonsense) {
    // At e = -2.5 the first cube tried is 10^-2 (weight 0.5); 10^-1 has weight 0.
    std::vector<PowerCubeFade> cubes = powerCubeFades(-2.5);
    ASSERT_EQ(cubes.size(), 1u);
    EXPECT_EQ(cubes[0].n, -2);
    for (double e : {std::nan(""), HUGE_VAL, 1e300, -1e300}) {
        EXPECT_TRUE(powerCubeFades(e).empty()) << e;
    }
}

TEST(PowerLabel, ReadsOneMetreOrTenWithARaisedExponent) {
    StrokeWidthFn width = [](const std::string& s) { return 100.0 * s.size(); };
    std::vector<StrokePiece> one = powerLabelLayout(0, "m", width);
    ASSERT_EQ(one.size(), 2u);
    EXPECT_EQ(one[0].text + one[1].text, "1m");
    EXPECT_DOUBLE_EQ(one[0].x, -100.0);  // centred

    std::vector<StrokePiece> kilo = powerLabelLayout(3, "m", width);
    ASSERT_EQ(kilo.size(), 3u);
    EXPECT_EQ(kilo[0].text, "10");
    EXPECT_EQ(kilo[1].text, "3");
    EXPECT_EQ(kilo[2].text, "m");
    // "10", a half-size "3" raised by 0.75 width of "-", "m": 350 units, centred.
    EXPECT_DOUBLE_EQ(kilo[0].x, -175.0);
    EXPECT_DOUBLE_EQ(kilo[1].x, 25.0);
    EXPECT_DOUBLE_EQ(kilo[1].y, 75.0);
    EXPECT_DOUBLE_EQ(kilo[1].scale, 0.5);
    EXPECT_DOUBLE_EQ(kilo[2].x, 75.0);
    EXPECT_DOUBLE_EQ(kilo[2].y, 0.0);
    EXPECT_EQ(powerLabelLayout(-12, "parsec", width)[1].text, "-12");
}

TEST(SkyGrid, SphereWeightsFollowTheFieldOfView) {
    const double third = 1.0 / 3.0;
    const std::pair<double, std::array<double, 3>> cases[] = {
        {10.0, {0, 0, 1}}, {17.5, {0, 0.5, 0.5}}, {25.0, {0, 1, 0}}, {30.0, {third, 2 * third, 0}},
        {40.0, {1, 0, 0}}, {60.0, {1, 0, 0}}};
    for (const auto& [fovy, expected] : cases) {
        std::array<double, 3> w = skyGridSphereWeights(fovy);
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(w[i], expected[i], 1e-12) << fovy << " " << i;
    }
}

TEST(SkyGrid, LabelTextsAndWhichCrossingsCarryThem) {
    std::vector<GridLabel> main = skyGridMainLabels(1);
    EXPECT_EQ(main.size(), 13u + 23u);
    EXPECT_EQ(labelAt(main, 0, -90)->text, "-90");
    EXPECT_EQ(labelAt(main, 345, 0)->text, "23h");
    EXPECT_EQ(labelAt(skyGridMainLabels(2), 345, 0)->text, "345");

    struct Case {
        int kind;
        double fovy, lon, lat;
        const char* text;  // nullptr: no crossing label there
        bool major;
        double weight;
    };
    const Case cases[] = {
        {1, 60, 15, 15, "(1h,15)", true, 1},
        {1, 60, 345, -75, "(23h,-75)", true, 1},
        {2, 41, 345, 75, "(345,75)", true, 1},
        {1, 60, 15, 0, nullptr, true, 1},
        {1, 60, 5, 5, nullptr, true, 1},
        {1, 30, 15, 15, "(1h,15)", true, 1},
        {1, 30, 5, 0, "(0.33h,0)", false, 10. / 15},
        {1, 40, 0, 5, "(0h,5)", false, 0},
        {1, 30, 15, 5, "(1h,5)", false, 10. / 15},
        {3, 30, 355, -85, "(355,-85)", false, 10. / 15},
        {1, 30, 30, 0, nullptr, true, 1},
        {1, 30, 0, -15, nullptr, true, 1},
        {1, 20, 2.5, 2.5, "(0.17h,2.5)", false, 1. / 3},
        {1, 20, 15, 5, "(1h,5)", true, 1},
        {1, 20, 357.5, 87.5, "(23.83h,87.5)", false, 1. / 3},
        {1, 20, 5, -87.5, "(0.33h,-87.5)", false, 1. / 3},
        {2, 25, 7.5, -5, "(7.5,-5)", false, 0},
        {2, 25, 10, 10, "(10,10)", true, 1},
        {2, 8, 5, 2.5, "(5,2.5)", false, 1},
        {2, 20, 45, 0, nullptr, true, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "kind " << c.kind << " fovy " << c.fovy << " at ("
                                        << c.lon << "," << c.lat << ")");
        std::vector<GridLabel> labels = skyGridCrossingLabels(c.kind, c.fovy);
        const GridLabel* l = labelAt(labels, c.lon, c.lat);
        if (c.text == nullptr) {
            EXPECT_EQ(l, nullptr);
            continue;
        }
        ASSERT_NE(l, nullptr);
        EXPECT_EQ(l->text, c.text);
        EXPECT_EQ(l->major, c.major);
        EXPECT_NEAR(l->weight, c.weight, 1e-12);
    }
    // All crossings less 24 on the equator and 11 on the zero meridian (one shared).
    EXPECT_EQ(skyGridCrossingLabels(1, 60).size(), 23u * 10u);
    EXPECT_EQ(skyGridCrossingLabels(2, 30).size(), 72u * 35u - 34u);
    EXPECT_EQ(skyGridCrossingLabels(1, 20).size(), 144u * 71u - 34u);
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
    testing::internal::CaptureStderr();
    EXPECT_TRUE(limitWireSphereCounts(slices, stacks));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WireSphere, TablesAreRebuiltOnlyWhenTheSphereChanges) {
    WireSphereTable t;
    EXPECT_TRUE(t.update(1000.0, 24, 12));
    EXPECT_NEAR(t.stackSin[0], 1000.0, 1e-9);    // north pole
    EXPECT_NEAR(t.stackSin[12], -1000.0, 1e-9);  // south pole
    EXPECT_NEAR(t.sliceSin[6], 1.0, 1e-12);      // a quarter turn
    EXPECT_FALSE(t.update(1000.0, 24, 12));
    EXPECT_TRUE(t.update(1000.0, 72, 36));
    EXPECT_TRUE(t.update(1.01, 72, 36));
    EXPECT_NEAR(t.stackCos[18], 1.01, 1e-12);
    EXPECT_TRUE(t.update(1.01, 5000, 5000));  // never beyond the limit
    EXPECT_EQ(t.sliceSin.size(), 513u);
    EXPECT_FALSE(t.update(1.01, 5000, 5000));
}

TEST(LabelSize, StartsAtOneAndRefusesNegativeOrNonFiniteSizes) {
    EXPECT_FLOAT_EQ(getLabelSize(), 1.0f);
    EXPECT_EQ(setLabelSize(2.5f), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(setLabelSize(-1.0f), -1);
    EXPECT_EQ(setLabelSize(std::numeric_limits<float>::quiet_NaN()), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (setLabelSize) : inSize should not be negative.\n\n"
              "Err (setLabelSize) : inSize should not be negative.\n\n");
    EXPECT_FLOAT_EQ(getLabelSize(), 2.5f);
    EXPECT_EQ(setLabelSize(1.0f), 1);
}
