// The logarithm star drawing takes its depths with: it must agree with the library's log10
// everywhere a squared distance can land, so that magnitudes and placements do not move.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

#include "starrender/depth_log.h"

TEST(DepthLog, AgreesWithTheLibraryOverTheWholeRangeOfDoubles) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> exponent(-307.0, 308.0), near(0.5, 2.0);
    double worst = 0.0;
    for (int n = 0; n < 2000000; ++n) {
        // Half of them around 1, where the result is near zero and the pieces change.
        const double x = n % 2 ? std::pow(10.0, exponent(random)) : near(random);
        const double want = std::log10(x);
        const double err = std::fabs(fastLog10(x) - want);
        // Absolute error near zero, one unit in the last place elsewhere.
        const double allowed = std::max(1.2e-16, 1.01 * std::fabs(want) * DBL_EPSILON);
        ASSERT_LE(err, allowed) << "x = " << x;
        worst = std::max(worst, err / allowed);
    }
    EXPECT_LT(worst, 1.0);
    // Exact powers of ten and two, and the ends of the normal range.
    for (int e = -300; e <= 300; ++e)
        ASSERT_NEAR(fastLog10(std::pow(10.0, e)), e, 1e-13 * std::max(1, std::abs(e)));
    EXPECT_EQ(fastLog10(1.0), 0.0);
    EXPECT_NEAR(fastLog10(DBL_MIN), std::log10(DBL_MIN), 1e-13);
    EXPECT_NEAR(fastLog10(DBL_MAX), std::log10(DBL_MAX), 1e-13);
}

TEST(DepthLog, ArgumentsOutsideThePositiveNormalsGiveTheLibrarysAnswer) {
    EXPECT_EQ(fastLog10(0.0), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(fastLog10(std::numeric_limits<double>::infinity()),
              std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(fastLog10(-1.0)));
    EXPECT_TRUE(std::isnan(fastLog10(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_EQ(fastLog10(DBL_TRUE_MIN), std::log10(DBL_TRUE_MIN));
}
