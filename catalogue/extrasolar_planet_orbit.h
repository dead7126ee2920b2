#pragma once
// Reading one line of the extrasolar planet catalogue, and the ellipse a planet's orbit is
// drawn as. Plain computations; the reader and the drawing are in the files beside this one.

#include <array>
#include <string>
#include <string_view>

#include "catalogue/extrasolar_planet.h"
#include "common_package/math/src/vec3.h"

// Fixed columns of a planet line (0-based first column and width; the K field runs to the end).
struct PlanetColumn {
    std::size_t first, width;
};
constexpr PlanetColumn kPlanetNumberColumn{0, 8};
constexpr PlanetColumn kPlanetHDColumn{8, 16};
constexpr PlanetColumn kPlanetNameColumn{24, 16};
constexpr PlanetColumn kPlanetMassColumn{40, 13};
constexpr PlanetColumn kPlanetPeriodColumn{53, 12};
constexpr PlanetColumn kPlanetAxisColumn{65, 13};
constexpr PlanetColumn kPlanetEccentricityColumn{78, 12};
constexpr std::size_t kPlanetKFirstColumn = 90;
constexpr std::size_t kPlanetLineMinLength = 89;
constexpr int kPlanetLineMinWords = 7;

enum class PlanetLineKind {
    Ignored,   // no positive planet number, "Not a Planet", or a mass that is not positive
    TooShort,  // fewer than seven words or 89 characters
    Planet,
};

// The fields of a planet line. Numbers that do not convert are NaN (and fail their checks);
// hd is -1 when the line gives none.
struct PlanetLine {
    int number = 0;
    int hd = -1;
    std::string starName;  // trimmed, at most 15 characters
    float mass = 0.0f, period = 0.0f, semimajorAxis = 0.0f, eccentricity = 0.0f, k = 0.0f;
};

PlanetLineKind parsePlanetLine(std::string_view line, PlanetLine& planet);

// The message of the first failed check of a planet's values ("mass of planet should be
// positive.", ...), or nullptr when they are all valid.
const char* planetValueError(const PlanetLine& planet);

constexpr double kAstronomicalUnitMetres = 1.49e11;
constexpr double kOrbitSizeFactor = 0.8;
constexpr int kOrbitVertices = 72;  // one every 5 degrees

// The orbit ellipse around a star drawn at `center` in drawing units. radius is the drawn
// semimajor axis: the star sits at a focus, the ellipse lies in the plane of the second and
// third axes turned by the phase about the orbit normal.
std::array<Vec3, kOrbitVertices> planetOrbitVertices(const ExtrasolarPlanet& planet,
                                                     const Vec3& center, double radius);

// The drawn semimajor axis: 0.8 x the orbit in drawing units (10^(log orbit size - scale))
// times the orbit scale, times drawnDistance / trueDistance of the host star, so that an
// orbit keeps its apparent size when its star is drawn nearer than it is.
double planetOrbitRadius(const ExtrasolarPlanet& planet, double currLogScale, double orbitScale,
                         double hostDepth, double drawnDepth);
