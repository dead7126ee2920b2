// The frame clock and the wall clock.

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "platform/clock.h"

TEST(Clocks, FrameClockRunsForwardAtItsFrequency) {
    const std::int64_t f = platform::frameClockFrequency();
    ASSERT_GT(f, 999);
    const std::int64_t a = platform::frameClockTicks();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const std::int64_t b = platform::frameClockTicks();
    EXPECT_NE(0, a);
    const double seconds = static_cast<double>(b - a) / static_cast<double>(f);
    EXPECT_GE(seconds, 0.019);
    EXPECT_LT(seconds, 5.0);
}

TEST(Clocks, WallClockIsCalendarTimeInMilliseconds) {
    const double now = platform::wallClockSeconds();
    const double calendar = static_cast<double>(std::time(nullptr));
    EXPECT_NEAR(calendar, now, 2.0);
    const double thousandths = (now - static_cast<double>(static_cast<long long>(now))) * 1000.0;
    EXPECT_NEAR(thousandths, static_cast<double>(static_cast<long long>(thousandths + 0.5)), 1e-3);
}
