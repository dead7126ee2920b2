#pragma once
// The orrery clock: the chosen moment in GMT and in local time, and the local time zone,
// as screen-fixed text.

#include <string>

#include "solar/orrery_settings.h"

struct OrreryClockText {
    std::string gmt;       // "GMT: Sat Jan  1 12:00:00 2000"
    std::string local;     // "Local: ..." in the process's time zone
    std::string timeZone;  // "TimeZone: CET (+1)", "TimeZone: EST (-5)", "TimeZone: UTC (0)"
};

// The clock's three texts for a moment in GMT seconds. The zone is the standard (not
// summer) zone with its offset from UTC in whole hours, east positive.
OrreryClockText orreryClockText(long long moment);

// Draws the clock for the moment chosen by the settings from the system clock.
void drawOrreryClock(const OrrerySettings& settings);
void drawOrreryClockAt(const OrrerySettings& settings, long long moment);
