// Reading one or more dataset files into the list: the Sun record, sorting by distance,
// merging, and the derived values computed after loading.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "catalogue/star_list.h"

namespace {

constexpr double kSunLogDistance = 11.0;  // log10 metres: the Sun record sits 10^11 m out
constexpr float kSunApparentMag = -26.75f;

}  // namespace

StarObj StarList::makeSunRecord() const {
    StarObj sun = makeEmptyStarObj();
    sun.pos = Phc{0.0, 0.0, 0.0, kSunLogDistance};
    sun.catalogPos = sun.pos;
    sun.bv = 0.63f;
    // Chosen so that the Sun seen from its own record's distance has magnitude -26.75 on
    // the vmagMin-shifted scale of apparentMagnitude.
    double dParsec = std::pow(10.0, kSunLogDistance - kParsecLog10);
    double m = kSunApparentMag - (10.0 - param.vmagMin);
    sun.lum = static_cast<float>(dParsec * dParsec * 0.01 * std::pow(100.0, -m / 5.0));
    std::strcpy(sun.spectralClass, "G");
    sun.spectralNumber = 2.0f;
    std::strcpy(sun.spectralType, "V");
    std::strcpy(sun.constellationName, "---");
    sun.constellationCode[0] = '\0';
    std::strcpy(sun.commonName, "Sun");
    sun.hd = 0;
    sun.hic = 0;
    sun.homeMag = apparentMagnitude(-2.5f * std::log10(sun.lum), sun.pos.w);
    return sun;
}

int StarList::readStarFiles(int numFiles, const char* const* fileNames, int inIncludeSun,
                            int quiet) {
    releaseConstellations();
    releaseExtrasolarPlanets();
    releaseStars();
    includeSun = inIncludeSun ? 1 : 0;
    if (includeSun) {
        stars = allocateArray<StarObj>(1);
        if (stars == nullptr) {
            std::fprintf(stderr, "Err: StarList::readStarFiles : Can't allocate memory.\n");
            return -1;
        }
        stars[0] = makeSunRecord();
        count = 1;
    }

    for (int f = 0; f < numFiles; ++f) {
        const char* name = fileNames != nullptr && fileNames[f] != nullptr ? fileNames[f] : "";
        int newCount = 0;
        StarObj* newStars = readStarObj(name, &newCount, quiet);
        if (newStars == nullptr) return -1;
        std::printf("%5d star objects from [%s]\n", newCount, name);
        sortStarObj(&newStars, newCount);
        if (count == 0) {
            if (stars != nullptr) release(stars);
            stars = newStars;
            count = newCount;
        } else {
            mergeStarObj(&stars, &count, newStars, newCount);
            release(newStars);
        }
    }

    if (hasColorMap()) applyColorMap();
    computeMotion();
    resetPtSize();
    placeStarsAtYear();
    updateZRangeIndex();
    largeLimit = ptLarge * 1024 * ptLarge;
    rebuildBuckets();
    for (int i = 0; i < count; ++i)
        stars[i].absMag = -2.5f * std::log10(stars[i].lum);
    return 1;
}

int StarList::readStarFiles(int numFiles, const char* const* fileNames) {
    return readStarFiles(numFiles, fileNames, 0, 0);
}

int StarList::readStarFiles(const char* fileName) {
    return readStarFiles(1, &fileName, 0, 0);
}

int StarList::readStarFiles(const char* fileName, int inIncludeSun, int quiet) {
    return readStarFiles(1, &fileName, inIncludeSun, quiet);
}

void StarList::sortStarObj(StarObj** array, int n) {
    if (array == nullptr || *array == nullptr || n < 0) return;
    const StarObj* in = *array;
    // Sort (distance, index) keys rather than the records themselves: a stable order that
    // touches each record once. (A pivot-first quicksort would go quadratic, and recurse as
    // deep as the list is long, on catalogues that are already sorted.)
    std::vector<std::pair<double, int>> keys(static_cast<std::size_t>(n));
    bool sorted = true;
    for (int i = 0; i < n; ++i) {
        keys[i] = {in[i].pos.w, i};
        if (i > 0 && in[i].pos.w < in[i - 1].pos.w) sorted = false;
    }
    if (sorted) return;  // already in order: the array stands as it is
    std::sort(keys.begin(), keys.end());
    StarObj* out = allocateRecords<StarObj>(static_cast<std::size_t>(n));
    if (out == nullptr) {
        std::fprintf(stderr, "Error allocating memory to outObj (sortStarObj)\n");
        std::exit(1);
    }
    for (int i = 0; i < n; ++i)
        out[i] = in[keys[i].second];
    release(*array);
    *array = out;
}

void StarList::mergeStarObj(StarObj** array, int* n, StarObj* newArray, int newCount) {
    if (array == nullptr || n == nullptr) return;
    int oldCount = *n;
    if (newArray == nullptr) newCount = 0;
    StarObj* out = allocateRecords<StarObj>(static_cast<std::size_t>(oldCount) + newCount);
    if (out == nullptr) {
        std::fprintf(stderr, "Error allocating memory to outObj (mergeStarObj)\n");
        std::exit(1);
    }
    const StarObj* old = *array;
    int i = 0, j = 0, k = 0;
    while (i < oldCount && j < newCount) {
        if (newArray[j].pos.w <= old[i].pos.w) {
            out[k++] = newArray[j++];
        } else {
            out[k++] = old[i++];
        }
    }
    while (i < oldCount)
        out[k++] = old[i++];
    while (j < newCount)
        out[k++] = newArray[j++];
    if (*array != nullptr) release(*array);
    *array = out;
    *n = k;
}
