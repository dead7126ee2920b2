#pragma once
// Directions on the sky in the scene's galactic frame (+x to the galactic centre, +z to the
// north galactic pole): galactic longitude and latitude, and equatorial right ascension and
// declination.

#include "common_package/math/src/vec3.h"

struct SkyAngles {
    double longitude;  // degrees, 0 .. 360 (galactic l, or right ascension in degrees)
    double latitude;   // degrees, -90 .. 90 (galactic b, or declination)
};

// Longitude atan2(y, x) (plus 360 when negative) and latitude asin(z / |v|), in degrees.
// A zero vector gives (0, 0).
SkyAngles skyAnglesOf(const Vec3& v);

// The unit vector of a longitude and latitude in degrees: (cos b cos l, cos b sin l, sin b).
Vec3 unitVectorOf(double longitudeDegrees, double latitudeDegrees);

// A galactic direction turned into the equatorial frame: -32.931 degrees about z, then
// 62.882 about x, then -77.142 about z.
Vec3 equatorialFromGalactic(const Vec3& galactic);

// Hours, minutes and seconds of an angle given in hours (or degrees, minutes and seconds of
// one in degrees), of its magnitude.
struct Sexagesimal {
    int whole;
    int minutes;
    double seconds;
};
Sexagesimal sexagesimalOf(double value);
