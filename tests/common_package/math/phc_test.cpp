#include "common_package/math/src/phc.h"

#include <cmath>

#include <gtest/gtest.h>

TEST(Phc, NormalizeMovesLengthIntoExponent) {
    Phc p{3, 0, 4, 2};
    EXPECT_TRUE(phcNormalize(p));
    EXPECT_DOUBLE_EQ(p.x, 0.6);
    EXPECT_DOUBLE_EQ(p.z, 0.8);
    EXPECT_DOUBLE_EQ(p.w, 2 + std::log10(5.0));

    Phc zero{1e-8, 0, 0, 5};
    EXPECT_FALSE(phcNormalize(zero));
    EXPECT_EQ(zero, (Phc{1e-8, 0, 0, 5}));  // unchanged, counts as zero
}

TEST(Phc, RescaleKeepsTheValue) {
    Phc p{1, 2, 3, 4};
    Phc r = phcRescale(p, 2);
    EXPECT_DOUBLE_EQ(r.w, 2);
    EXPECT_DOUBLE_EQ(r.x, 100);
    EXPECT_DOUBLE_EQ(r.z, 300);
    // A zero triple only takes the new exponent.
    EXPECT_EQ(phcRescale(Phc{0, 0, 0, 9}, 3), (Phc{0, 0, 0, 3}));
}

TEST(Phc, AddAlignsToTheSmallerExponent) {
    Phc sum = phcAdd({1, 0, 0, 0}, {0, 1, 0, 1});  // 1 m along x plus 10 m along y
    EXPECT_DOUBLE_EQ(sum.w, 0);
    EXPECT_DOUBLE_EQ(sum.x, 1);
    EXPECT_NEAR(sum.y, 10, 1e-12);
    EXPECT_NEAR(phcLengthMeters(sum), std::sqrt(101.0), 1e-9);
}

TEST(Phc, FifteenDecadeRuleDropsTheSmallTerm) {
    Phc big{1, 0, 0, 20}, small{0, 1, 0, 0};
    EXPECT_EQ(phcAdd(big, small), big);
    EXPECT_EQ(phcAdd(small, big), big);
    // Fifteen decades exactly are still added.
    Phc sum = phcAdd({1, 0, 0, 15}, {0, 1, 0, 0});
    EXPECT_DOUBLE_EQ(sum.w, 0);
    EXPECT_DOUBLE_EQ(sum.y, 1);
}

TEST(Phc, ZeroOperandYieldsTheOther) {
    Phc a{2, 0, 0, 3};
    Phc s = phcAdd(a, Phc{0, 0, 0, 7});
    EXPECT_DOUBLE_EQ(s.x, 1);
    EXPECT_DOUBLE_EQ(s.w, 3 + std::log10(2.0));
}

TEST(Phc, SubtractEqualAndLength) {
    Phc a{1, 1, 0, 16.4894}, b{10, 10, 0, 15.4894};
    EXPECT_TRUE(phcEqual(a, b));
    EXPECT_FALSE(phcEqual(a, Phc{1, 1.001, 0, 16.4894}));
    EXPECT_TRUE(phcIsZero(phcSub(a, b)));
    EXPECT_DOUBLE_EQ(phcLengthMeters(Phc{0, 0, 0, 4}), 0.0);
    EXPECT_NEAR(phcLengthMeters(Phc{0, 0, 2, 3}), 2000.0, 1e-9);
}

TEST(Phc, DrawingRuleUsesTheLogScale) {
    Vec3 d = phcToDrawing(Phc{3, 0, 0, 2}, 2 + std::log10(3.0));
    EXPECT_NEAR(d.x, 1.0, 1e-12);
    EXPECT_EQ(phcToDrawing(Phc{0, 0, 0, 5}, 0).x, 0.0);
}
