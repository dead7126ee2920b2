#pragma once
// One extrasolar planet with its host star and orbital elements.

#include <cstdint>

#include "catalogue/star_obj.h"

constexpr int kPlanetStarNameSize = 16;

struct ExtrasolarPlanet {
    std::int32_t number;  // planet number from the file, > 0
    std::int32_t hd;      // host star HD, -1 when the file gives none
    char starName[kPlanetStarNameSize];
    float mass;             // Jupiter masses
    float period;           // days
    float semimajorAxis;    // astronomical units
    float eccentricity;     // [0, 1)
    float k;                // radial-velocity semi-amplitude, m/s
    float axisRatio;        // sqrt(1 - e^2)
    double logOrbitSize;    // log10 of the semimajor axis in metres
    double phase;           // degrees, [0, 360)
    double orbitNormal[3];  // unit vector
    StarObj* hostStar;      // null when no star matched
};
