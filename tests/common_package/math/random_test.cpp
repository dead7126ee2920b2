#include "common_package/math/src/random.h"

#include <gtest/gtest.h>

TEST(Random, RecurrenceIsExact) {
    // state = state * 214013 + 2531011 (mod 2^32); value = (state >> 16) & 32767
    seedRandom(1);
    EXPECT_EQ(nextRandom(), 41);
    EXPECT_EQ(nextRandom(), 18467);
    EXPECT_EQ(nextRandom(), 6334);
    seedRandom(2002);
    int first = nextRandom();
    seedRandom(2002);
    EXPECT_EQ(nextRandom(), first);
    for (int i = 0; i < 1000; ++i) {
        int v = nextRandom();
        ASSERT_GE(v, 0);
        ASSERT_LE(v, kRandomMax);
    }
}
