// The four filters that restrict the stars drawn and picked: distance, V magnitude,
// home magnitude, spectral class and number.

#include <algorithm>
#include <cstdio>

#include "catalogue/star_list.h"

int StarList::spectralClassIndex(const char* spectralClass) {
    switch (spectralClass != nullptr ? spectralClass[0] : '\0') {
        case 'O':
            return 0;
        case 'B':
            return 1;
        case 'A':
            return 2;
        case 'F':
            return 3;
        case 'G':
            return 4;
        case 'K':
            return 5;
        case 'M':
            return 6;
        default:
            return 7;
    }
}

bool StarList::passesSptypeSelection(const StarObj& star) const {
    if (!param.sptypeOn) return true;
    int c = spectralClassIndex(star.spectralClass);
    if (!param.sptypeRangeOn[c]) return true;
    return param.sptypeRange[c][0] <= star.spectralNumber &&
           star.spectralNumber <= param.sptypeRange[c][1];
}

bool StarList::passesAbsMagSelection(const StarObj& star) const {
    if (!param.absmagRangeOn) return true;
    return static_cast<float>(param.absmagRangeMin) <= star.homeMag &&
           star.homeMag <= static_cast<float>(param.absmagRangeMax);
}

bool StarList::passesVMagSelection(float apparentMag) const {
    if (!param.vmagRangeOn) return true;
    return static_cast<float>(param.vmagRangeMin) <= apparentMag &&
           apparentMag <= static_cast<float>(param.vmagRangeMax);
}

int StarList::setZRangeOn(double nearW, double farW) {
    if (!(nearW <= farW)) {
        std::fprintf(stderr, "Err(setZRangeOn) : inMinZ > inMaxZ\n\n");
        return -1;
    }
    param.zRangeMin = nearW;
    param.zRangeMax = farW;
    param.zRangeOn = 1;
    updateZRangeIndex();
    return 1;
}

int StarList::setZRangeOff() {
    param.zRangeOn = 0;
    return 1;
}

int StarList::setVMagRangeOn(double minVMag, double maxVMag) {
    if (!(minVMag <= maxVMag)) {
        std::fprintf(stderr, "Err(setVMagRangeOn) : inMinVMag > inMaxVMag\n\n");
        return -1;
    }
    param.vmagRangeMin = minVMag;
    param.vmagRangeMax = maxVMag;
    param.vmagRangeOn = 1;
    return 1;
}

int StarList::setVMagRangeOff() {
    param.vmagRangeOn = 0;
    return 1;
}

int StarList::setAbsMagRangeOn(double minAbsMag, double maxAbsMag) {
    if (!(minAbsMag <= maxAbsMag)) {
        std::fprintf(stderr, "Err(setAbsMagRangeOn) : inMinAbsMag > inMaxAbsMag\n\n");
        return -1;
    }
    param.absmagRangeMin = minAbsMag;
    param.absmagRangeMax = maxAbsMag;
    param.absmagRangeOn = 1;
    return 1;
}

int StarList::setAbsMagRangeOff() {
    param.absmagRangeOn = 0;
    return 1;
}

int StarList::setSptypeRangeOn(int classIndex, float rangeMin, float rangeMax) {
    if (classIndex < 0 || classIndex >= kNumSpectralClasses) {
        std::fprintf(stderr, "Err(setSptypeRangeOn) : sptype out of range\n\n");
        return -1;
    }
    if (!(rangeMin <= rangeMax)) {
        std::fprintf(stderr, "Err(setSptypeRangeOn) : rangeMin should be <= rangeMax\n\n");
        return -1;
    }
    param.sptypeRange[classIndex][0] = rangeMin;
    param.sptypeRange[classIndex][1] = rangeMax;
    param.sptypeRangeOn[classIndex] = 1;
    param.sptypeOn = 1;
    return 1;
}

int StarList::setSptypeRangeOff(int classIndex) {
    if (classIndex < 0 || classIndex >= kNumSpectralClasses) {
        std::fprintf(stderr, "Err(setSptypeRangeOn) : sptype out of range\n\n");
        return -1;
    }
    param.sptypeRangeOn[classIndex] = 0;
    param.sptypeOn = 0;
    for (int c = 0; c < kNumSpectralClasses; ++c) {
        if (param.sptypeRangeOn[c]) param.sptypeOn = 1;
    }
    return 1;
}

// The first index whose current w is at least w, searching the stars in their sorted order;
// count when every star is nearer.
long StarList::findZRangeIndex(double w) const {
    if (count <= 0) {
        std::fprintf(stderr, "Error index found %li\n", 0L);
        return 0;
    }
    const StarObj* found = std::lower_bound(
        stars, stars + count, w, [](const StarObj& s, double value) { return s.pos.w < value; });
    return static_cast<long>(found - stars);
}

// first..last bound the stars whose w lies in [near, far). While the stars are sorted by w
// that is an exact index range; once star motion has put them out of order the range runs
// from the first to the last star inside the shell (stars between them may lie outside).
void StarList::updateZRangeIndex() {
    if (count <= 0) {
        zRangeFirst = 0;
        zRangeLast = -1;
        return;
    }
    const double nearW = param.zRangeMin, farW = param.zRangeMax;
    if (sortedByW) {
        zRangeFirst = static_cast<std::int32_t>(findZRangeIndex(nearW));
        zRangeLast = static_cast<std::int32_t>(findZRangeIndex(farW)) - 1;
        return;
    }
    zRangeFirst = 0;
    zRangeLast = -1;
    int first = -1;
    for (int i = 0; i < count; ++i) {
        double w = stars[i].pos.w;
        if (nearW <= w && w < farW) {
            if (first < 0) first = i;
            zRangeLast = i;
        }
    }
    if (first >= 0) zRangeFirst = first;
}

void StarList::getStarRange(int* first, int* last) const {
    int f = 0, l = count - 1;
    if (param.zRangeOn) {
        f = std::max(0, static_cast<int>(zRangeFirst));
        l = std::min(count - 1, static_cast<int>(zRangeLast));
    }
    if (first != nullptr) *first = f;
    if (last != nullptr) *last = l;
}
