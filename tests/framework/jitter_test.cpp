// The jitter tables and the integer accumulation of jittered passes.

#include <gtest/gtest.h>

#include <vector>

#include "framework/jitter_accumulation.h"
#include "framework/jitter_tables.h"

TEST(JitterTables, EverySupportedSizeHasItsOffsetsWithinAPixel) {
    for (int size : supportedJitterSizes()) {
        const JitterOffset* table = jitterTableFor(size);
        ASSERT_NE(nullptr, table) << size;
        for (int i = 0; i < size; ++i) {
            EXPECT_GE(table[i].jx, 0.0);
            EXPECT_LE(table[i].jx, 1.0);
            EXPECT_GE(table[i].jy, 0.0);
            EXPECT_LE(table[i].jy, 1.0);
        }
    }
    for (int size : {-1, 0, 1, 7, 10, 11, 13, 15, 17, 32})
        EXPECT_EQ(nullptr, jitterTableFor(size));
    EXPECT_DOUBLE_EQ(0.583333333, jitterTableFor(12)[11].jx);
    EXPECT_DOUBLE_EQ(0.8125, jitterTableFor(16)[15].jy);
}

namespace {

void addPass(JitterAccumulator& a, const std::vector<unsigned char>& pass) {
    std::copy(pass.begin(), pass.end(), a.passBuffer());
    a.addPass();
}

}  // namespace

TEST(JitterAccumulation, RoundedMeanRowsTopFirst) {
    JitterAccumulator a;
    ASSERT_TRUE(a.prepare(1, 2));  // one column, two rows: bottom row first as GL reads
    addPass(a, {0, 10, 255, /* top row */ 1, 2, 3});
    addPass(a, {1, 11, 255, /* top row */ 2, 2, 4});
    a.average();
    EXPECT_EQ(2, a.count());
    // Means 1.5 -> 2, 2 -> 2, 3.5 -> 4 (top row now first); 0.5 -> 1, 10.5 -> 11, 255.
    EXPECT_EQ((std::vector<unsigned char>{2, 2, 4, 1, 11, 255}), a.image());
}

TEST(JitterAccumulation, SixteenWhitePassesDoNotOverflow) {
    JitterAccumulator a;
    ASSERT_TRUE(a.prepare(2, 1));
    for (int i = 0; i < 16; ++i)
        addPass(a, std::vector<unsigned char>(6, 255));
    a.average();
    EXPECT_EQ(std::vector<unsigned char>(6, 255), a.image());
}

TEST(JitterAccumulation, QuarterSumsRoundHalfUp) {
    JitterAccumulator a;
    ASSERT_TRUE(a.prepare(1, 1));
    addPass(a, {0, 1, 2});
    addPass(a, {1, 1, 2});
    addPass(a, {1, 1, 3});
    addPass(a, {1, 0, 3});  // sums 3, 3, 10: 0.75 -> 1, 0.75 -> 1, 2.5 -> 3
    a.average();
    EXPECT_EQ((std::vector<unsigned char>{1, 1, 3}), a.image());
}

TEST(JitterAccumulation, ANewFrameStartsTheSumsAgain) {
    JitterAccumulator a;
    ASSERT_TRUE(a.prepare(1, 1));
    addPass(a, {200, 200, 200});
    a.average();
    ASSERT_TRUE(a.prepare(1, 1));  // same size: buffers kept, count back to 0
    EXPECT_EQ(0, a.count());
    addPass(a, {10, 20, 30});
    a.average();
    EXPECT_EQ((std::vector<unsigned char>{10, 20, 30}), a.image());
    ASSERT_TRUE(a.prepare(3, 2));
    EXPECT_EQ(18u, a.image().size());
    EXPECT_FALSE(a.prepare(-1, 2));
}
