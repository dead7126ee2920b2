#pragma once
// What the scene draws at which scale, and the flags it draws the stars with: the decisions of
// a frame, kept apart from the GL calls so that they can be checked on their own.

#include "scene/scene_settings.h"

// The solar system is drawn below this log scale (log10 metres per drawing unit).
constexpr double kOrreryLogScaleLimit = 18.0;
// The Sun's particle image is drawn between these log scales, both included.
constexpr double kSunParticlesLogScaleMin = 5.0;
constexpr double kSunParticlesLogScaleMax = 15.0;
// The Sun's particles are drawn at a log scale 0.2 below the frame's, and below their
// reference scale they keep the size they have there: the Sun looks the same from 5 to 15.
constexpr double kSunParticlesScaleShift = -0.2;
constexpr double kSunParticlesReferenceScale = 15.0;
// Cubes around the picked star are drawn while it lies nearer than this many units.
constexpr double kPickedCubeDistanceLimit = 10.0;

bool orreryVisible(const SceneSettings& s, double currLogScale);
bool sunParticlesVisible(const SceneSettings& s, double currLogScale);

// Distance in drawing units of a position whose exponent is p, at log scale s: 10^(p - s).
double drawingDistance(double p, double currLogScale);
// Whether the cubes are drawn around a picked star at exponent p.
bool cubesAtPickedStarVisible(const SceneSettings& s, bool starPicked, double p,
                              double currLogScale);

// The star drawing flags: 2 with the colour map, else 4; 0x20 always; 0x10 for textured stars.
int starDrawingFlags(const SceneSettings& s);

// Constellation layer: whether anything is drawn, and whether only the picked star's.
enum class ConstellationScope { None, All, PickedOnly };
ConstellationScope constellationScope(const SceneSettings& s, bool starPicked);

// The "s" key: (lines, names) steps (off, off) -> (on, off) -> (on, on) -> (off, on) ->
// (off, off).
void stepConstellationDisplay(bool& lines, bool& names);
