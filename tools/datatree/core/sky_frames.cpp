#include "tools/datatree/core/sky_frames.h"

#include <cmath>

Vec3 equatorialUnit(double raDeg, double decDeg) {
    double a = raDeg * kDegree, d = decDeg * kDegree;
    return {std::cos(d) * std::cos(a), std::cos(d) * std::sin(a), std::sin(d)};
}

const Mat3& equatorialToGalactic() {
    // Rows are the galactic axes in equatorial (ICRS) coordinates: the galactic centre, the
    // direction l = 90 deg, and the north galactic pole (RA 192.85948, Dec 27.12825).
    static const Mat3 rotation = Mat3::fromRows({-0.0548755604, -0.8734370902, -0.4838350155},
                                                {0.4941094279, -0.4448296300, 0.7469822445},
                                                {-0.8676661490, -0.1980763734, 0.4559837762});
    return rotation;
}

Vec3 toGalactic(const Vec3& equatorial) {
    return equatorialToGalactic() * equatorial;
}

Vec3 toEquatorial(const Vec3& galactic) {
    return transpose(equatorialToGalactic()) * galactic;
}

void galacticAngles(const Vec3& g, double* lDeg, double* bDeg) {
    double l = std::atan2(g.y, g.x) / kDegree;
    if (l < 0) l += 360.0;
    double r = length(g);
    *lDeg = l;
    *bDeg = r > 0 ? std::asin(g.z / r) / kDegree : 0.0;
}

void equatorialAngles(const Vec3& e, double* raDeg, double* decDeg) {
    double a = std::atan2(e.y, e.x) / kDegree;
    if (a < 0) a += 360.0;
    double r = length(e);
    *raDeg = a;
    *decDeg = r > 0 ? std::asin(e.z / r) / kDegree : 0.0;
}

double separationArcsec(double ra1, double dec1, double ra2, double dec2) {
    return angleBetween(equatorialUnit(ra1, dec1), equatorialUnit(ra2, dec2)) / kDegree * 3600.0;
}

SpaceMotion spaceMotion(double raDeg, double decDeg, double parallaxMas, double parallaxSigmaMas,
                        double pmRaCosDec, double pmDec, double radialVelocity,
                        double radialSigma) {
    double a = raDeg * kDegree, d = decDeg * kDegree;
    // Local frame on the sky: towards the star, towards increasing RA, towards north.
    Vec3 radial = equatorialUnit(raDeg, decDeg);
    Vec3 east = {-std::sin(a), std::cos(a), 0.0};
    Vec3 north = {-std::sin(d) * std::cos(a), -std::sin(d) * std::sin(a), std::cos(d)};

    double vEast = kAuPerYearKmS * pmRaCosDec / parallaxMas;
    double vNorth = kAuPerYearKmS * pmDec / parallaxMas;
    double fractionalParallax = parallaxSigmaMas / parallaxMas;

    SpaceMotion motion;
    motion.velocity = toGalactic(radial * radialVelocity + east * vEast + north * vNorth);

    // The three local errors are independent; each galactic component collects them through
    // the squares of the rotation's entries.
    Vec3 g[3] = {toGalactic(radial), toGalactic(east), toGalactic(north)};
    double s[3] = {radialSigma, std::fabs(vEast) * fractionalParallax,
                   std::fabs(vNorth) * fractionalParallax};
    for (int i = 0; i < 3; ++i) {
        double sum = 0.0;
        for (int k = 0; k < 3; ++k)
            sum += g[k][i] * g[k][i] * s[k] * s[k];
        motion.sigma[i] = std::sqrt(sum);
    }
    return motion;
}
