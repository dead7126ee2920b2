#pragma once
// The Earth as a lit globe: day side, night lights and clouds, turned to the Sun for the
// time of day, with its latitude grid, equator and tropics.

#include "common_package/math/src/phc.h"
#include "solar/orrery_settings.h"

// The message of a moment that cannot be broken into a UTC date (before 1970).
constexpr const char* kEarthTooOldMessage = "The time given to drawEarth is too old...\n";

// Draws the Earth at its position (power homogeneous coordinates, in the ephemeris's
// equatorial frame, inside the orrery's rotation), lit from the Sun's position, turned for
// gmtSeconds. Uses lights 0 and 3 and leaves light 0 on; the line width is left at 3.
void drawEarth(const Phc& earth, const Phc& sun, long long gmtSeconds, const EarthModels& models,
               const OrrerySettings& settings, double currLogScale);
