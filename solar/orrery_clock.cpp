#include "solar/orrery_clock.h"

#include <GL/gl.h>

#include <cstdio>
#include <ctime>

#include "framework/overlays.h"
#include "solar/julian_date.h"

namespace {

constexpr float kClockTextSize = 0.0002f;
constexpr float kZoneTextSize = 0.00015f;
// With the frame-number overlay in the bottom-left corner the two date lines move up out
// of its way by this fraction of the window.
constexpr float kFrameInfoLift = 0.1f;

// The date text of a broken-down time, or a note when the C library cannot break it.
std::string brokenTimeText(const std::tm* broken) {
    if (broken == nullptr) return "(no date)";
    UtcDate date;
    date.year = broken->tm_year + 1900;
    date.month = broken->tm_mon + 1;
    date.day = broken->tm_mday;
    date.hour = broken->tm_hour;
    date.minute = broken->tm_min;
    date.second = broken->tm_sec;
    date.weekday = broken->tm_wday;
    return dateTimeText(date);
}

}  // namespace

OrreryClockText orreryClockText(long long moment) {
    tzset();  // localtime_r need not look at a changed TZ by itself
    std::time_t t = static_cast<std::time_t>(moment);
    std::tm utc{}, local{};
    OrreryClockText text;
    text.gmt = "GMT: " + brokenTimeText(gmtime_r(&t, &utc));
    text.local = "Local: " + brokenTimeText(localtime_r(&t, &local));

    long eastSeconds = -timezone;
    int hours = static_cast<int>(eastSeconds / 3600);
    char zone[300];
    if (eastSeconds > 0)
        snprintf(zone, sizeof zone, "TimeZone: %.255s (+%d)", tzname[0], hours);
    else
        snprintf(zone, sizeof zone, "TimeZone: %.255s (%d)", tzname[0], hours);
    text.timeZone = zone;
    return text;
}

void drawOrreryClock(const OrrerySettings& settings) {
    drawOrreryClockAt(settings, orreryMomentNow(settings));
}

void drawOrreryClockAt(const OrrerySettings& settings, long long moment) {
    OrreryClockText text = orreryClockText(moment);
    float lift = settings.showFrameInfo ? kFrameInfoLift : 0.0f;
    glLineWidth(1.5f);
    glColor4f(0.8f, 0.4f, 0.8f, 0.8f);
    drawScreenText(text.gmt.c_str(), 0.03f, 0.92f - lift, kClockTextSize, 1, 0);
    drawScreenText(text.local.c_str(), 0.03f, 0.96f - lift, kClockTextSize, 1, 0);
    drawScreenText(text.timeZone.c_str(), 0.95f, 0.95f, kZoneTextSize, 3, 0);
    glLineWidth(1.0f);
}
