#include "solar/julian_date.h"

#include <cmath>
#include <cstdio>
#include <ctime>

namespace {

// The calendar formula with the day of the month and its fraction in one number.
double julianDateFromDay(int year, int month, double day) {
    double y = year;
    double m = month;
    if (month < 3) {
        m += 12.0;
        y -= 1.0;
    }
    double a = std::floor(y / 100.0);
    double b = 2.0 - a + std::floor(a / 4.0);
    return std::floor(365.25 * (y + 4716.0)) + std::floor(30.6001 * (m + 1.0)) + day + b - 1524.5;
}

}  // namespace

double julianDateFromCalendar(int year, int month, int day, int hour, int minute, double second) {
    return julianDateFromDay(year, month, day + hour / 24.0 + minute / 1440.0 + second / 86400.0);
}

double julianDateFromCalendar(const CalendarDate& date) {
    return julianDateFromCalendar(date.year, date.month, date.day, date.hour, date.minute,
                                  date.second);
}

double julianDateFromGmt(long long gmtSeconds) {
    if (gmtSeconds < 0) {
        fprintf(stderr, "Err: gmtTime should not be negative!\n\n");
        return 0.0;
    }
    UtcDate date;
    if (!utcDateFromGmt(gmtSeconds, date)) {
        // Beyond the year 2^31: no calendar to speak of, but the day count still holds.
        return kJulianDateOfGmtZero + static_cast<double>(gmtSeconds) / kSecondsPerDay;
    }
    double day = date.day + static_cast<double>(gmtSeconds % 86400) / kSecondsPerDay;
    return julianDateFromDay(date.year, date.month, day);
}

bool utcDateFromGmt(long long gmtSeconds, UtcDate& date) {
    if (gmtSeconds < 0) return false;
    std::time_t t = static_cast<std::time_t>(gmtSeconds);
    if (static_cast<long long>(t) != gmtSeconds) return false;
    std::tm broken{};
    if (gmtime_r(&t, &broken) == nullptr) return false;
    date.year = broken.tm_year + 1900;
    date.month = broken.tm_mon + 1;
    date.day = broken.tm_mday;
    date.hour = broken.tm_hour;
    date.minute = broken.tm_min;
    date.second = broken.tm_sec;
    date.weekday = broken.tm_wday;
    return true;
}

std::string dateTimeText(const UtcDate& date) {
    static const char* const kDayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static const char* const kMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    int weekday = date.weekday >= 0 && date.weekday < 7 ? date.weekday : 0;
    int month = date.month >= 1 && date.month <= 12 ? date.month - 1 : 0;
    char text[64];
    snprintf(text, sizeof text, "%.3s %.3s%3d %.2d:%.2d:%.2d %d", kDayNames[weekday],
             kMonthNames[month], date.day, date.hour, date.minute, date.second, date.year);
    return text;
}
