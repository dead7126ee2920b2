// The printed description of a star and of its planets.

#include <cmath>
#include <cstdio>

#include "catalogue/constellation_sky.h"
#include "catalogue/star_list.h"

namespace {

constexpr double kParsecMetres = 3.086e16;
constexpr double kLightYearMetres = 9.461e15;

}  // namespace

void StarList::printStarInfo(const StarObj* record, std::FILE* out) const {
    if (record == nullptr || out == nullptr) return;
    const StarObj& s = *record;
    std::fprintf(out, "name      : HD(%d) HIC(%d) CommonName(%s)\n", s.hd, s.hic, s.commonName);
    if (s.constellationName[0] == '\0') {
        std::fprintf(out, "constell. : none\n");
    } else {
        std::fprintf(out, "constell. : %s (%s)\n", s.constellationName, s.constellationCode);
    }
    const Phc& p = s.pos;
    std::fprintf(out, "position  : %8.4f %8.4f %8.4f x 10e(%8.4f) meters\n", p.x, p.y, p.z, p.w);

    const Vec3 galactic = p.xyz();
    const Vec3 equatorial = galacticToEquatorial(galactic);
    std::fprintf(out, "RA,DEC    : %8.4fH %8.4f\n", longitudeDegrees(equatorial) / 15.0,
                 latitudeDegrees(equatorial));
    std::fprintf(out, "l,b       : %8.4f %8.4f\n", longitudeDegrees(galactic),
                 latitudeDegrees(galactic));

    const double e = s.distErr;
    const double metres = std::pow(10.0, p.w);
    const double km = metres / 1000.0;
    const double parsecs = metres / kParsecMetres;
    const double lightYears = parsecs * kParsecMetres / kLightYearMetres;
    std::fprintf(out, "distance  : %8.4e +- %8.4e meters\n", metres, e * metres);
    std::fprintf(out, "distance  : %8.4e +- %8.4e kilometers\n", km, e * km);
    std::fprintf(out, "distance  : %8.4f +- %8.4f parsecs\n", parsecs, e * parsecs);
    std::fprintf(out, "distance  : %8.4f +- %8.4f lightyears\n", lightYears, e * lightYears);
    std::fprintf(out, "%%err dist : %8.4f%% (percentage error in distance)\n", e * 100.0);

    static const char* const kVelocity[3] = {"velX     : %8.4f +- %8.4f km/s\n",
                                             "velY     : %8.4f +- %8.4f km/s\n",
                                             "velZ     : %8.4f +- %8.4f km/s\n"};
    static const char* const kPeculiar[3] = {"velX-LSRX: %8.4f +- %8.4f km/s\n",
                                             "velY-LSRY: %8.4f +- %8.4f km/s\n",
                                             "velZ-LSRZ: %8.4f +- %8.4f km/s\n"};
    for (int c = 0; c < 3; ++c)
        std::fprintf(out, kVelocity[c], s.vel[c], s.vel[c] * s.velErr[c]);
    for (int c = 0; c < 3; ++c)
        std::fprintf(out, kPeculiar[c], s.vel[c] - param.lsr[c], s.vel[c] * s.velErr[c]);
    std::fprintf(out, "%%err vel  : %8.4f%% %8.4f%% %8.4f%% (percentage errors in velocity)\n",
                 s.velErr[0] * 100.0, s.velErr[1] * 100.0, s.velErr[2] * 100.0);

    std::fprintf(out, "b-v       : %8.4f\n", s.bv);
    std::fprintf(out, "lum       : %8.4f\n", s.lum);
    std::fprintf(out, "abs.VMag  : %8.4f\n", s.homeMag);
    const float* c = s.colormapColor;
    if (param.colorMapMode == _USE_BV_COLOR_MAP && bvColorMap != nullptr) {
        std::fprintf(out, "bv-rgba   : %8.4f %8.4f %8.4f %8.4f\n", c[0], c[1], c[2], c[3]);
    } else if (param.colorMapMode == _USE_SPECTRAL_COLOR_MAP && spColorMap != nullptr) {
        std::fprintf(out, "sp-rgba   : %8.4f %8.4f %8.4f %8.4f\n", c[0], c[1], c[2], c[3]);
    }
    std::fprintf(out, "spectral  : class(%s) num(%f) type(%s)\n", s.spectralClass, s.spectralNumber,
                 s.spectralType);

    if (s.numPlanets > 0 && s.planets != nullptr) {
        std::fprintf(out, "#. planet : %d\n", s.numPlanets);
        for (int i = 0; i < s.numPlanets; ++i)
            printPlanetInfo(s.planets[i], out);
    }
}

int StarList::printStarsInfo(const StarObj* records, int n, std::FILE* out) const {
    if (records == nullptr || n <= 0) return 0;
    for (int i = 0; i < n; ++i)
        printStarInfo(&records[i], out);
    return n;
}

void StarList::printPlanetInfo(const ExtrasolarPlanet* planet, std::FILE* out) {
    if (planet == nullptr || out == nullptr) return;
    std::fprintf(out, "Planet %d", planet->number);
    if (planet->hostStar != nullptr) {
        std::fprintf(out, " (star: HD%d)\n", planet->hostStar->hd);
    } else {
        std::fprintf(out, "\n");
    }
    std::fprintf(out, "mass:         %.2f of Jupiter\n", planet->mass);
    std::fprintf(out, "semimajor R:  %.2f A.U.\n", planet->semimajorAxis);
    std::fprintf(out, "period:       %.2f days\n", planet->period);
    std::fprintf(out, "eccentricity: %.2f\n", planet->eccentricity);
    std::fprintf(out, "K:            %.2f m/s\n", planet->k);
}
