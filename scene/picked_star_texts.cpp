#include "scene/picked_star_texts.h"

#include <cmath>
#include <cstdio>

#include "common_package/math/src/phc.h"
#include "scene/sky_angles.h"

namespace {

const double kParsecMetresLog10 = std::log10(3.086e16);
const double kLightyearMetresLog10 = std::log10(9.461e15);

std::string format(const char* f, double a) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, f, a);
    return buffer;
}

}  // namespace

double parsecsOf(double p) {
    return std::pow(10.0, p - kParsecMetresLog10);
}

double lightyearsOf(double p) {
    return std::pow(10.0, p - kLightyearMetresLog10);
}

void fillPickedStarTexts(PickedStarTexts& t, const StarObj& star, const double lsr[3], bool raDec) {
    if (star.hd == kAnchorHD) {
        t.hdNumber.clear();
        t.hicNumber.clear();
        t.constellation.clear();
        t.constellationCode.clear();
        t.bv.clear();
        t.absVMag.clear();
        t.spType.clear();
        t.luminosity.clear();
        t.commonName.set("anchor");
    } else {
        formatPanelText(t.hdNumber, "%d", star.hd);
        formatPanelText(t.hicNumber, "%d", star.hic);
        t.commonName.set(
            std::string_view(star.commonName, strnlen(star.commonName, kStarNameSize)));
        t.constellation.set(std::string_view(star.constellationName,
                                             strnlen(star.constellationName, kStarNameSize)));
        t.constellationCode.set(std::string_view(
            star.constellationCode, strnlen(star.constellationCode, kConstellationCodeSize)));
        formatPanelText(t.bv, "%f", static_cast<double>(star.bv));
        formatPanelText(t.absVMag, "%f", static_cast<double>(star.homeMag));
        formatPanelText(t.luminosity, "%f", static_cast<double>(star.lum));
        char spClass[kSpectralClassSize + 1] = {};
        char spLum[kSpectralTypeSize + 1] = {};
        std::memcpy(spClass, star.spectralClass, kSpectralClassSize);
        std::memcpy(spLum, star.spectralType, kSpectralTypeSize);
        formatPanelText(t.spType, "%s%.1f(%s)", spClass, static_cast<double>(star.spectralNumber),
                        spLum);
    }

    Phc p = star.pos;
    phcNormalize(p);
    const double dir[3] = {p.x, p.y, p.z};
    for (int i = 0; i < 3; ++i)
        formatPanelText(t.position[i], "%f", dir[i]);
    formatPanelText(t.distError, "%.2f%%", static_cast<double>(star.distErr) * 100.0);
    formatPanelText(t.log10Scale, "%f", p.w);
    formatPanelText(t.distParsec, "%f", parsecsOf(p.w));
    formatPanelText(t.distLightyear, "%f", lightyearsOf(p.w));

    const double vel[3] = {star.vel.x, star.vel.y, star.vel.z};
    const double err[3] = {star.velErr.x, star.velErr.y, star.velErr.z};
    for (int i = 0; i < 3; ++i) {
        formatPanelText(t.velocity[i], "%.2f +- %.2f%% km/s", vel[i], err[i] * 100.0);
        formatPanelText(t.peculiar[i], "%.2f +- %.2f%% km/s", vel[i] + lsr[i], err[i] * 100.0);
    }

    const Vec3 direction{p.x, p.y, p.z};
    if (raDec) {
        const SkyAngles eq = skyAnglesOf(equatorialFromGalactic(direction));
        formatPanelText(t.galacticL, "%.2fh", eq.longitude / 15.0);
        formatPanelText(t.galacticB, "%.2f", eq.latitude);
    } else {
        const SkyAngles gal = skyAnglesOf(direction);
        formatPanelText(t.galacticL, "%.2f", gal.longitude);
        formatPanelText(t.galacticB, "%.2f", gal.latitude);
    }
}

std::vector<std::string> starInfoLines(const PickedStarTexts& t, const Vec3& dirGalactic,
                                       double exponent, bool raDec) {
    std::vector<std::string> lines;
    lines.push_back(std::string("BV: ") + t.bv.c_str());
    lines.push_back(std::string("Sp: ") + t.spType.c_str());
    char buffer[400];
    if (raDec) {
        const SkyAngles eq = skyAnglesOf(equatorialFromGalactic(dirGalactic));
        const Sexagesimal ra = sexagesimalOf(eq.longitude / 15.0);
        const Sexagesimal dec = sexagesimalOf(eq.latitude);
        std::snprintf(buffer, sizeof buffer, "RA: %s (%d %d %.1f)", t.galacticL.c_str(), ra.whole,
                      ra.minutes, ra.seconds);
        lines.push_back(buffer);
        std::snprintf(buffer, sizeof buffer,
                      eq.latitude < 0.0 ? "Dec: %s (-%d %d %.1f)" : "Dec: %s (+%d %d %.1f)",
                      t.galacticB.c_str(), dec.whole, dec.minutes, dec.seconds);
        lines.push_back(buffer);
    } else {
        lines.push_back(std::string("Gal L: ") + t.galacticL.c_str());
        lines.push_back(std::string("Gal B: ") + t.galacticB.c_str());
    }
    lines.push_back(format("Dist: %.2f parsec", parsecsOf(exponent)));
    lines.push_back(format("Dist: %.2f ly", lightyearsOf(exponent)));
    return lines;
}
