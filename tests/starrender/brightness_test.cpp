// The brightness model: magnitudes, angular sizes, point-size buckets and coverage, colours,
// and the setters of the brightness settings with their messages.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "catalogue/star_list.h"
#include "starrender/brightness_model.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::stderrOf;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// radiansPerPixel that makes a star of angular diameter `degrees` s pixels wide.
double rppFor(double degrees, double s) {
    return degrees * kDegree / s;
}

double halve(double angle, double, double) {
    return angle / 2;
}

}  // namespace

TEST(SizeFromMagnitude, ShiftedMagnitudesFollowTheTablesAndTheirBlend) {
    EXPECT_EQ(sizeFromMagnitude(10.01f, 1.0f), 0.0f);
    EXPECT_EQ(sizeFromMagnitude(NAN, 1.0f), 0.0f);
    // Table rows: A_9 = 4.6918 and B_9 = 5.6336 at 0.25 degrees.
    EXPECT_NEAR(sizeFromMagnitude(4.6918f, 1.0f), 0.25 * kDegree, 1e-7);
    EXPECT_NEAR(sizeFromMagnitude(5.6336f, 0.0f), 0.25 * kDegree, 1e-7);
    // Halfway between rows 1 and 2 of table A.
    EXPECT_NEAR(sizeFromMagnitude((10.7583f + 8.8445f) / 2, 1.0f), (0.0278 + 0.0556) / 2 * kDegree,
                1e-7);
    // Brighter than the last row: extrapolated on the last segment.
    const double slope = (1.5 - 1.4722) / (-0.2551 - -0.2035);
    EXPECT_NEAR(sizeFromMagnitude(-1.2551f, 1.0f), (1.5 + slope * -1.0) * kDegree, 1e-6);
    // A blend of one half averages the two tables.
    const float m = 3.0f;
    EXPECT_NEAR(sizeFromMagnitude(m, 0.5f),
                (sizeFromMagnitude(m, 1.0f) + sizeFromMagnitude(m, 0.0f)) / 2, 1e-7);

    // The shifted scale puts the faint limit at ten.
    StarList list;
    const double tenParsecs = 16.4894 + 1.0;
    EXPECT_NEAR(list.apparentMagnitude(0.0f, tenParsecs), 0.0f, 1e-6);
    EXPECT_NEAR(list.apparentMagnitude(1.5f, tenParsecs + 1.0), 6.5f, 1e-6);
    list.setVMagMin(6.0f);
    EXPECT_NEAR(list.apparentMagnitude(6.0f, tenParsecs), 10.0f, 1e-6);
}

TEST(ClassifyStarSize, BucketsAndCoverage) {
    struct Case {
        float mag;
        double degrees, pixels, texScale;
        int largeLimit;
        bool visible;
        int bucket, coverage;  // coverage -1: below 255
    };
    const int k16 = 16 * 1024 * 16;
    const Case cases[] = {
        {10.5f, 0.25, 1.0, 1.0, k16, false, 0, 0},   // shifted magnitude above 10
        {4.6918f, 0.25, 0.6, 1.0, k16, true, 1, 0},  // t = 1.2 < sqrt 2
        // s = 1.3 px, t = 2.6, k = trunc(6.76 - 1) = 5, bucket ceil(sqrt 6) = 3,
        // coverage trunc(5 x 256 / 9) = 142; texScale 2: t = 5.2, k = 26, bucket 6.
        {4.6918f, 0.25, 1.3, 1.0, k16, true, 3, 142},
        {4.6918f, 0.25, 1.3, 2.0, k16, true, 6, 184},
        {-1.0f, 1.0, 40.0, 1.0, k16, true, 32, 255},                // very bright
        {4.6918f, 0.25, 15.9, 1.0, k16, true, 32, -1},              // just below t = 32
        {4.6918f, 0.25, 60.0, 1.0, 64 * 1024 * 64, true, 63, 255},  // buckets end at 63
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pixels);
        const StarSizeClass k =
            classifyStarSize(c.mag, 1.0f, rppFor(c.degrees, c.pixels), c.texScale, c.largeLimit);
        EXPECT_EQ(k.visible, c.visible);
        EXPECT_EQ(k.bucket, c.bucket);
        if (c.coverage >= 0) {
            EXPECT_EQ(k.coverage, c.coverage);
        } else {
            EXPECT_LT(k.coverage, 255);
        }
    }
    // Alpha: gamma of the coverage with the low bits cleared (142 -> 202 -> 200).
    EXPECT_EQ(coverageAlpha(0), 0.0f);
    EXPECT_FLOAT_EQ(coverageAlpha(142), 200.0f / 255.0f);
}

TEST(DistanceColour, WhiteNearbyRedAtTheFarEnd) {
    float c[4];
    distanceColour(5.0, c);
    EXPECT_EQ(std::vector<float>(c, c + 3), std::vector<float>(3, 1.0f));
    distanceColour(30.0, c);
    EXPECT_EQ(std::vector<float>(c, c + 4), (std::vector<float>{1, 0, 0, 1}));
    // d = 80: red at its lowest, green and blue full.
    const double farW = std::log10(4.2723) + 26.0;
    distanceColour(8.0 + (farW - 8.0) * 80.0 / 255.0, c);
    EXPECT_NEAR(c[0], 15.0f / 255.0f, 1e-5);
    EXPECT_NEAR(c[1], 1.0f, 1e-6);
}

TEST(BrightnessSetters, RejectedValuesPrintTheirMessageAndKeepTheOldValue) {
    StarList list;
    const double axis[3] = {0, 0, 1}, none[3] = {0, 0, 0};
    const std::pair<std::function<int()>, std::string> cases[] = {
        {[&] { return list.setExposure(0.0f); },
         "Err (setExposure) : inExposure should be positive.\n\n"},
        {[&] { return list.setTuneIntensity(-1.0f); },
         "Err (setTuneIntensity)  : inTuneIntensity should be positive.\n\n"},
        {[&] { return list.setStarScale(-10.0f); },
         "Err (setStarScale) : inStarScale should be greater than -10.0f.\n\n"},
        {[&] { return list.setSphWarp(axis, -0.1, 1.0); },
         "Err (StarList::setSphWarp): inSphwarpAngleFrm is out of range [0,pi].\n"},
        {[&] { return list.setSphWarp(axis, 1.0, 4.0); },
         "Err (StarList::setSphWarp): inSphwarpAngleTo is out of range [0,pi].\n"},
        {[&] { return list.setSphWarp(none, 1.0, 1.0); },
         "Err (StarList::setSphWarp): inSphwarpDir is not a valid direction.\n"},
        {[&] { return list.setPtFaint(1.5f); },
         "Err (setPtFaint) : inPtFaint out of range [0,1]\n\n"},
        {[&] { return list.setPtLarge(0); },
         "Err (setPtLarge) : inPtLarge should be positive.\n\n"},
        {[&] { return list.setPXsizeTex(-1); },
         "Err (setPXsizeTex) : inPtsizeTex should be non-negative.\n\n"},
        {[&] { return list.setStarTextureScale(-0.5); },
         "Err (setStarTextureScale) : inTexScale should be non-negative.\n\n"},
        {[&] { return list.ptSizeRescaleHint(3, 1.0f); },
         "Err : ptSizeRescaleHint() : unknown flag!\n\n"},
        {[&] { return list.ptSizeRescaleHint(2, 0.0f); },
         "Err : ptSizeRescaleHint() : fixedLum should be positive!\n\n"},
    };
    const std::string before = cattest::stdoutOf([&] { list.writeStarParameter(stdout); });
    for (const auto& c : cases) {
        int result = 0;
        EXPECT_EQ(stderrOf([&] { result = c.first(); }), c.second);
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(cattest::stdoutOf([&] { list.writeStarParameter(stdout); }), before);
    EXPECT_FLOAT_EQ(list.getPtFaint(), 0.05f);
    EXPECT_EQ(list.getPtLarge(), 16);

    // Limits beyond their ends are stored at the ends; vmagMin also says so.
    int result = 0;
    EXPECT_EQ(stderrOf([&] { result = list.setVMagMin(30.0f); }),
              "Err (setVMagMin) : inVMagMin should be reasonable range [-10,20].\n\n");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(list.getStarParameter().vmagMin, 20.0f);
    stderrOf([&] { list.setVMagMin(-30.0f); });
    EXPECT_EQ(list.getStarParameter().vmagMin, -10.0f);
    EXPECT_EQ(list.setPtLarge(100), 1);
    EXPECT_EQ(list.getPtLarge(), 64);
    EXPECT_EQ(list.setPXsizeTex(100), 1);
    EXPECT_EQ(list.getStarParameter().pxsizeTex, 64);
}

TEST(ResetPtSize, NormalisesByTheBrightestOrAFixedLuminosity) {
    cattest::ScratchDir dir;
    std::string path = dir.write(
        "s.star", cattest::starFile(2, "1 0 0 0 0 0 0 0 0 0 0 4\n2 0 0 0 0 0 0 0 0 0 0 1\n"));
    StarList list;
    cattest::stdoutOf([&] { ASSERT_EQ(list.readStarFiles(path.c_str()), 1); });
    EXPECT_FLOAT_EQ(list.getStarArray()[0].relLum, 4.0f / 200000.0f);
    ASSERT_EQ(list.ptSizeRescaleHint(1, 0.0f), 1);
    list.resetPtSize();
    EXPECT_FLOAT_EQ(list.getStarArray()[0].relLum, 1.0f);
    EXPECT_FLOAT_EQ(list.getStarArray()[1].relLum, 0.25f);
    ASSERT_EQ(list.ptSizeRescaleHint(2, 2.0f), 1);
    list.resetPtSize();
    EXPECT_FLOAT_EQ(list.getStarArray()[0].relLum, 2.0f);
}

TEST(StarSizeClassifier, TheFrameTablesClassifyAsTheFullComputation) {
    // The per-frame curve and class table must give classifyStarSize's answer; the last-bit
    // rounding of the blended curve may move a boundary by a hair, nothing more.
    struct Settings {
        float starScale;
        double rpp;
        double texScale;
        int largeLimit;
    };
    const Settings settings[] = {{1.0f, 1.8e-3, 1.0, 16 * 1024 * 16},
                                 {0.0f, 4e-4, 1.0, 16 * 1024 * 16},
                                 {0.6f, 1e-2, 2.5, 8 * 1024 * 8},
                                 {3.0f, 2e-3, 0.3, 64 * 1024 * 64}};
    for (const Settings& s : settings) {
        StarSizeClassifier classifier(s.starScale, s.rpp, s.texScale, s.largeLimit);
        int differ = 0, total = 0;
        for (float m = -35.0f; m <= 10.5f; m += 0.00173f, ++total) {
            const StarSizeClass a = classifier.classify(m);
            const StarSizeClass b =
                classifyStarSize(m, s.starScale, s.rpp, s.texScale, s.largeLimit);
            if (a.visible != b.visible || a.bucket != b.bucket || a.coverage != b.coverage) {
                ++differ;
                EXPECT_LE(std::abs(a.bucket - b.bucket), 1) << m;
            }
        }
        EXPECT_LT(differ, total / 10000) << s.starScale;
    }
}

TEST(SphereWarp, StarsTurnTowardsTheAxisByTheWarpFunction) {
    cattest::ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 2, "3 0 0\n0 0 -2\n", 1);
    const double axis[3] = {0, 0, 5};
    EXPECT_EQ(list.setSphWarpFunc(nullptr), -1);
    ASSERT_EQ(list.setSphWarp(axis, 0.0, M_PI), 1);
    ASSERT_EQ(list.setSphWarpFunc(halve), 1);
    ASSERT_EQ(list.setSphWarpOn(), 1);
    // The star 90 degrees from the axis now lies at 45 degrees at its own distance; the star
    // opposite the axis has no plane to turn in; the Sun stays.
    const StarObj& onX = list.getStarArray()[2];
    EXPECT_NEAR(onX.pos.x, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(onX.pos.z, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(onX.pos.w, 16.4894f + std::log10(3.0), 1e-12);
    EXPECT_NEAR(list.getStarArray()[1].pos.z, -1.0, 1e-12);
    EXPECT_EQ(list.getStarArray()[0].pos.w, 11.0);
    ASSERT_EQ(list.setSphWarpOff(), 1);
    EXPECT_NEAR(list.getStarArray()[2].pos.x, 1.0, 1e-12);
}
