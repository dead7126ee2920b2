#pragma once
// Sky directions of the constellation boundaries and of printed star positions: conversions
// between the equatorial frame (right ascension, declination) and the galactic frame of the
// star positions (+x towards the galactic centre, +z towards the north galactic pole).

#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"

// Rotations of the equatorial frame into the galactic one, applied in this order: about z,
// about x, about z (radians; counter-clockwise rotations of the vector).
constexpr double kEquatorialToGalacticZ1Radians = 1.346376;
constexpr double kEquatorialToGalacticXRadians = -1.097501;
constexpr double kEquatorialToGalacticZ2Radians = 0.574761;

Vec3 equatorialToGalactic(const Vec3& v);
Vec3 galacticToEquatorial(const Vec3& v);

// The unit vector of right ascension raHours and declination decDegrees, in the galactic
// frame, at exponent w (a boundary vertex).
Phc skyDirection(double raHours, double decDegrees, double w);

// Longitude (degrees in [0, 360)) and latitude (degrees) of a unit vector.
double longitudeDegrees(const Vec3& v);
double latitudeDegrees(const Vec3& v);

// The name matching of findConstellationByName: the query matches when it is the start of the
// name, or the start of the rest of the name after any of " ", "(", "-", "." and "//".
bool constellationNameMatches(const char* name, const char* query);
