#pragma once
// Where the orrery's bodies, labels and trails go at a log scale: the model side of the
// orrery, computed without OpenGL so that it is tested and timed on its own.

#include <array>
#include <vector>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"
#include "solar/ephemeris.h"
#include "solar/julian_date.h"
#include "solar/orrery_settings.h"
#include "solar/planet_table.h"

// Bodies farther than 10^3.5 drawing units are pulled in to that distance.
constexpr double kMaxBodyExponent = 3.5;
// Trails longer than this many days (two centuries, twice the span of the ephemeris) are
// cut to it, which bounds the samples per frame.
constexpr double kMaxOrbitLengthDays = 73000.0;

// A body drawn at a log scale: its drawing position and the limited exponent e of its
// distance in drawing units.
struct PlacedBody {
    Vec3 position;
    double exponent = 0.0;
};
// A position in metres as power homogeneous coordinates: a vector shorter than 10^-7
// keeps its components and exponent 0.
Phc phcFromMetres(const double metres[3]);
// The body at direction x 10^e with e = its exponent - currLogScale, at most 3.5.
PlacedBody placeBody(const Phc& position, double currLogScale);
PlacedBody placeBody(const double metres[3], double currLogScale);

// Trail sampling for a planet: the step in days (orbitLengthDays / 50, at least 1 and at
// most the planet's limit), the number of samples n = ceiling(length / step) and the
// whole seconds between samples.
double trailStepDays(int planet, double orbitLengthDays);
int trailSampleCount(double orbitLengthDays, double stepDays);
long long trailSampleSeconds(double orbitLengthDays, int samples);
// The trail length actually drawn: not a number or negative gives 0, longer than
// kMaxOrbitLengthDays is cut.
double limitedOrbitLength(double orbitLengthDays);

// The Julian date of a GMT time for the orrery's lookups. Times from 1970 on take the
// ephemeris's GMT route; earlier ones (a trail reaching back before 1970) are counted back
// from 1970 directly, so they land on their own dates without a message per sample.
double orreryJulianDate(long long gmtSeconds);

struct TrailVertex {
    Vec3 position;
    float alpha = 1.0f;
};

struct PlanetLayout {
    bool placed = false;  // the ephemeris gave the position at the moment
    Vec3 position;        // at the moment
    double labelSize = 0.0;
    std::vector<TrailVertex> trail;  // the moment first, then older samples
};

struct OrreryLayout {
    std::array<PlanetLayout, kPlanetCount> planets;
    bool bodiesPlaced = false;  // the Earth-Moon barycentre and the Sun below
    Phc earth;
    Phc sun;
};

// Fills layout for the moment (GMT seconds). The layout's vectors are reused between frames.
void layOutOrrery(Ephemeris& ephemeris, const OrrerySettings& settings, long long moment,
                  double currLogScale, OrreryLayout& layout);

// The Earth's spin angle in degrees for a UTC time of day and the direction of the Sun
// from the Earth (x, y of the equatorial frame).
double earthSpinAngle(const UtcDate& date, const Vec3& sunDirection);
// log10 of the globe's scale in drawing units: the Earth's diameter, 1.2756 x 10^7 metres,
// at the log scale (a thousand times larger when asked).
double earthGlobeLog10Scale(double currLogScale, bool thousandfold);
