#pragma once
// Sky directions and space motion: equatorial (ICRS/J2000) unit vectors, the rotation into
// the galactic frame of the star files (+x to the galactic centre, +z to the north galactic
// pole) and the heliocentric space velocity of a star.

#include "common_package/math/src/mat3.h"
#include "common_package/math/src/vec3.h"

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180.0;

// km/s of a transverse motion of 1 AU per Julian year (1 mas/yr at 1 mas parallax).
constexpr double kAuPerYearKmS = 4.740470446;

// Unit vector of right ascension and declination, both in degrees.
Vec3 equatorialUnit(double raDeg, double decDeg);

// Rotation from equatorial (ICRS) to galactic coordinates (the Hipparcos definition).
const Mat3& equatorialToGalactic();
Vec3 toGalactic(const Vec3& equatorial);
Vec3 toEquatorial(const Vec3& galactic);

// Galactic longitude and latitude in degrees of a galactic direction (l in [0, 360)).
void galacticAngles(const Vec3& galactic, double* lDeg, double* bDeg);

// Right ascension [0, 360) and declination, degrees, of an equatorial direction.
void equatorialAngles(const Vec3& equatorial, double* raDeg, double* decDeg);

// Angular separation in arcseconds of two directions given in degrees.
double separationArcsec(double ra1, double dec1, double ra2, double dec2);

// Heliocentric space velocity of a star and its 1-sigma error per galactic component.
struct SpaceMotion {
    Vec3 velocity;  // km/s, galactic frame
    Vec3 sigma;     // km/s, galactic frame
};

// ra, dec in degrees; parallax and its error in mas; proper motion in mas/yr (the RA part
// multiplied by cos dec); radial velocity and its error in km/s. The tangential parts carry
// the parallax error; the radial part carries radialSigma; proper-motion errors are not
// known to the sources and are left out.
SpaceMotion spaceMotion(double raDeg, double decDeg, double parallaxMas, double parallaxSigmaMas,
                        double pmRaCosDec, double pmDec, double radialVelocity, double radialSigma);
