// Moving the stars through time with their space velocities, relative to a local standard
// of rest.

#include <cstdio>

#include "catalogue/star_list.h"

namespace {

constexpr double kJulianYearSeconds = 31557600.0;
constexpr double kMetresPerKm = 1000.0;

// catalogue + motion x years, normalised; a zero term leaves the other one as it is.
Phc moveByYears(const Phc& catalog, const Phc& motion, double years) {
    Phc delta = phcScale(motion, years);
    if (phcIsZero(delta)) return phcNormalized(catalog);
    if (phcIsZero(catalog)) return phcNormalized(delta);
    return phcNormalized(phcAdd(catalog, delta));
}

}  // namespace

void StarList::computeMotion() {
    const double k = kMetresPerKm * kJulianYearSeconds;
    for (int i = 0; i < count; ++i) {
        StarObj& s = stars[i];
        s.motion = Phc{(s.vel.x + param.lsr[0]) * k, (s.vel.y + param.lsr[1]) * k,
                       (s.vel.z + param.lsr[2]) * k, 0.0};
    }
}

void StarList::placeStarsAtYear() {
    touchPositions();
    const double years = static_cast<double>(param.starAtYear) - param.datasetAtYear;
    bool sorted = true;
    for (int i = 0; i < count; ++i) {
        StarObj& s = stars[i];
        if (!isSunRecord(i)) {
            s.pos = moveByYears(s.catalogPos, s.motion, years);
            if (sphWarpOn) applySphereWarp(s);
        }
        if (i > 0 && s.pos.w < stars[i - 1].pos.w) sorted = false;
    }
    sortedByW = sorted;
    if (param.zRangeOn) updateZRangeIndex();
}

int StarList::setStarAtYear(int year) {
    param.starAtYear = year;
    placeStarsAtYear();
    return 1;
}

int StarList::setDatasetAtYear(int year) {
    param.datasetAtYear = year;
    placeStarsAtYear();
    return 1;
}

int StarList::setLSR(const double* lsr) {
    if (lsr == nullptr) {
        std::fprintf(stderr, "Err (setLSR)  : inLSR input is NULL.\n\n");
        return -1;
    }
    param.lsr[0] = lsr[0];
    param.lsr[1] = lsr[1];
    param.lsr[2] = lsr[2];
    computeMotion();
    placeStarsAtYear();
    return 1;
}

int StarList::getAverageVelocity(int useVMag, int useZRange, int useSptype, double mean[3]) const {
    if (mean == nullptr) return 0;
    mean[0] = mean[1] = mean[2] = 0.0;
    int first = 0, last = count - 1;
    if (useZRange && param.zRangeOn) getStarRange(&first, &last);
    if (includeSun && first == 0) first = 1;
    if (useVMag) settleMagnitudes();
    double sum[3] = {0.0, 0.0, 0.0};
    int counted = 0;
    for (int i = last; i >= first; --i) {
        const StarObj& s = stars[i];
        if (useSptype && !passesSptypeSelection(s)) continue;
        if (useVMag && !passesVMagSelection(s.appMag)) continue;
        sum[0] += s.vel.x;
        sum[1] += s.vel.y;
        sum[2] += s.vel.z;
        ++counted;
    }
    if (counted == 0) return 0;
    for (int c = 0; c < 3; ++c)
        mean[c] = sum[c] / static_cast<double>(counted);
    return counted;
}
