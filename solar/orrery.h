#pragma once
// The orrery: the nine planets with labels and fading trails, and the Earth, at their
// positions for the chosen moment, in the scene's galactic frame; without an ephemeris,
// fixed circular orbits instead.

#include "solar/ephemeris.h"
#include "solar/orrery_settings.h"

// Rotations (degrees, applied in this order) from the ephemeris's equatorial frame to the
// scene's galactic frame.
constexpr double kEphemerisToGalacticZ1Degrees = 32.9314;
constexpr double kEphemerisToGalacticXDegrees = -62.8822;
constexpr double kEphemerisToGalacticZ2Degrees = 77.1417;

// Draws the orrery at the moment chosen by the settings from the system clock. With no
// ephemeris (null or not open) draws the fallback orbits. renderMode and frame are the
// scene's render-mode word and movie frame; the orrery draws the same for every value.
void drawOrrery(Ephemeris* ephemeris, const OrrerySettings& settings, const EarthModels& models,
                double currLogScale, int renderMode, double frame);
// The same at a given moment in GMT seconds.
void drawOrreryAt(Ephemeris* ephemeris, const OrrerySettings& settings, const EarthModels& models,
                  double currLogScale, long long moment);

// The nine circles of mean orbit radius, each tilted by its inclination about x, in the
// current frame (drawOrrery applies the galactic rotation around them).
void drawFallbackOrbits(double currLogScale);
