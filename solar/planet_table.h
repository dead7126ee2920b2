#pragma once
// The nine planets of the orrery, indexed by their ephemeris item numbers 0 .. 8.

#include <array>

constexpr int kPlanetCount = 9;

struct PlanetInfo {
    const char* name;
    float color[3];
    double orbitRadiusMetres;   // mean, for the fallback orbits
    double inclinationDegrees;  // of the fallback orbit
    double maxTrailStepDays;    // longest sampling step of the trail
};

extern const std::array<PlanetInfo, kPlanetCount> kPlanets;

// log10 of each planet's mean orbit radius in metres, computed once.
double planetOrbitLog10Radius(int planet);
