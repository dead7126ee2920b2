#pragma once
// Julian dates from calendar dates and from GMT clock times, and the breaking of a GMT time
// into a UTC calendar date. Plain computations; no file or window.

#include <string>

// A calendar date and time of day (Gregorian calendar, UTC).
struct CalendarDate {
    int year = 2000;
    int month = 1;  // 1 .. 12
    int day = 1;    // day of the month
    int hour = 0;
    int minute = 0;
    double second = 0.0;
};

// Whole seconds since 1970-01-01 00:00 UTC, wrapped so that a GMT time never passes for a
// Julian date in an overloaded call.
struct GmtTime {
    long long seconds = 0;
};

constexpr double kJulianDateOfGmtZero = 2440587.5;  // 1970-01-01 00:00 UTC
constexpr double kSecondsPerDay = 86400.0;

// The Julian date of a Gregorian calendar date (the formula of Meeus, Astronomical
// Algorithms): months 1 and 2 count as months 13 and 14 of the year before.
double julianDateFromCalendar(int year, int month, int day, int hour, int minute, double second);
double julianDateFromCalendar(const CalendarDate& date);

// The Julian date of a GMT time, through its UTC calendar date. A negative time prints
// "Err: gmtTime should not be negative!\n\n" on standard error and gives 0.0.
double julianDateFromGmt(long long gmtSeconds);

// A UTC calendar date broken out of a GMT time.
struct UtcDate {
    int year = 1970;
    int month = 1;  // 1 .. 12
    int day = 1;    // 1 .. 31
    int hour = 0;
    int minute = 0;
    int second = 0;
    int weekday = 4;  // 0 = Sunday
};

// Breaks a GMT time into its UTC date. Times before 1970 (negative) and times too far
// ahead for a four-byte year cannot be broken and give false; the drawing code treats such
// a moment as having no date.
bool utcDateFromGmt(long long gmtSeconds, UtcDate& date);

// The standard date-and-time text of a broken-down time, "Sat Jan  1 12:00:00 2000", in
// English whatever the locale. The line break that the C library's form ends with is left
// out: the text is drawn on the screen, where it would only show as a stray glyph.
std::string dateTimeText(const UtcDate& date);
