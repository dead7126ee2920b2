// Julian dates from calendar dates and GMT times, and the UTC date text of the clock.

#include <gtest/gtest.h>

#include "solar/julian_date.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(JulianDate, FromGregorianCalendarDates) {
    EXPECT_EQ(julianDateFromCalendar(2000, 1, 1, 12, 0, 0.0), 2451545.0);
    EXPECT_EQ(julianDateFromCalendar(CalendarDate{2000, 1, 1, 12, 0, 0.0}), 2451545.0);
    EXPECT_EQ(julianDateFromCalendar(1970, 1, 1, 0, 0, 0.0), 2440587.5);
    // Dates worked in Meeus's Astronomical Algorithms (January and February count as
    // months of the year before; leap and century years).
    EXPECT_EQ(julianDateFromCalendar(1987, 1, 27, 0, 0, 0.0), 2446822.5);
    EXPECT_EQ(julianDateFromCalendar(1988, 6, 19, 12, 0, 0.0), 2447332.0);
    EXPECT_EQ(julianDateFromCalendar(1600, 12, 31, 0, 0, 0.0), 2305812.5);
    EXPECT_EQ(julianDateFromCalendar(2000, 2, 29, 0, 0, 0.0), 2451603.5);
    EXPECT_EQ(julianDateFromCalendar(1900, 3, 1, 0, 0, 0.0), 2415079.5);
    EXPECT_NEAR(julianDateFromCalendar(1957, 10, 4, 19, 26, 24.0), 2436116.31, 1e-9);
}

TEST(JulianDate, FromGmtSeconds) {
    EXPECT_EQ(julianDateFromGmt(0), 2440587.5);
    EXPECT_EQ(julianDateFromGmt(946728000), 2451545.0);  // 2000-01-01 12:00
    EXPECT_EQ(julianDateFromGmt(946728000 + 21600), 2451545.25);
    EXPECT_NEAR(julianDateFromGmt(951782400 + 1), 2451603.5 + 1.0 / 86400, 1e-9);  // 2000-02-29

    CaptureStderr();
    EXPECT_EQ(julianDateFromGmt(-1), 0.0);
    EXPECT_EQ(GetCapturedStderr(), "Err: gmtTime should not be negative!\n\n");
}

TEST(JulianDate, UtcDatesAndTheirText) {
    UtcDate date;
    ASSERT_TRUE(utcDateFromGmt(0, date));
    EXPECT_EQ(dateTimeText(date), "Thu Jan  1 00:00:00 1970");
    ASSERT_TRUE(utcDateFromGmt(946728000 + 3723, date));
    EXPECT_EQ(dateTimeText(date), "Sat Jan  1 13:02:03 2000");
    ASSERT_TRUE(utcDateFromGmt(1700000000, date));
    EXPECT_EQ(dateTimeText(date), "Tue Nov 14 22:13:20 2023");
    EXPECT_FALSE(utcDateFromGmt(-1, date));
    EXPECT_FALSE(utcDateFromGmt(-86400LL * 365 * 3, date));
}
