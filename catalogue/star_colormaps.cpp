// The star list's colormaps: loading them, choosing the active one, and writing each star's
// colormap colour.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "catalogue/star_list.h"

namespace {

bool isNotFoundColour(const float rgba[4]) {
    for (int c = 0; c < 4; ++c) {
        if (std::fabs(rgba[c] - kColorNotFound[c]) > 1e-7f) return false;
    }
    return true;
}

void copyPath(char* dst, const char* src) {
    std::strncpy(dst, src, kStarParameterPathSize - 1);
    dst[kStarParameterPathSize - 1] = '\0';
}

}  // namespace

void StarList::releaseColorMaps() {
    ColorMapAllocator alloc{allocate, release};
    releaseBVColorMap(bvColorMap, alloc);
    releaseSpColorMap(spColorMap, alloc);
    bvColorMap = nullptr;
    spColorMap = nullptr;
}

int StarList::loadColorMapBV(const char* fileName, double bvStart, double bvEnd) {
    touchColours();  // even a failed load changes which maps are there
    if (fileName == nullptr) fileName = "";
    ColorMapAllocator alloc{allocate, release};
    BVColorMap* map = readBVColorMap(fileName, bvStart, bvEnd, alloc);
    releaseBVColorMap(bvColorMap, alloc);
    bvColorMap = map;
    if (map == nullptr) {
        std::fprintf(stderr, "Err: (loadColorMapBV) failed to load colormap [%s]\n", fileName);
        return -1;
    }
    param.colorMapMode = _USE_BV_COLOR_MAP;
    param.bvStart = bvStart;
    param.bvEnd = bvEnd;
    copyPath(param.bvColorMapFile, fileName);
    applyColorMap();
    return 1;
}

int StarList::loadColorMapSpType(const char* fileName) {
    touchColours();
    if (fileName == nullptr) fileName = "";
    ColorMapAllocator alloc{allocate, release};
    SpColorMap* map = readSpColorMap(fileName, alloc);
    releaseSpColorMap(spColorMap, alloc);
    spColorMap = map;
    if (map == nullptr) {
        std::fprintf(stderr, "Err: (loadColorMapSpType) failed to load colormap [%s]\n", fileName);
        return -1;
    }
    param.colorMapMode = _USE_SPECTRAL_COLOR_MAP;
    copyPath(param.spColorMapFile, fileName);
    applyColorMap();
    return 1;
}

int StarList::setWhichColorMap(int mode) {
    switch (mode) {
        case _NO_COLOR_MAP:
            break;
        case _USE_BV_COLOR_MAP:
            if (bvColorMap == nullptr) {
                std::fprintf(stderr,
                             "Err: please call loadColorMapBV to setup the BV colormap first.\n");
                return -1;
            }
            break;
        case _USE_SPECTRAL_COLOR_MAP:
            if (spColorMap == nullptr) {
                std::fprintf(
                    stderr,
                    "Err: please call loadColorMapSpType to setup the SpType colormap first.\n");
                return -1;
            }
            break;
        default:
            std::fprintf(stderr, "Err: unknown parameter for setWhichColorMap\n");
            std::fprintf(stderr,
                         "     input should be _NO_COLOR_MAP, _USE_BV_COLOR_MAP, or "
                         "_USE_SPECTRAL_COLOR_MAP)\n");
            return -1;
    }
    param.colorMapMode = mode;
    return 1;
}

void StarList::applyColorMap() {
    touchColours();
    if (param.colorMapMode == _USE_BV_COLOR_MAP && bvColorMap != nullptr) {
        for (int i = 0; i < count; ++i)
            lookupBV(*bvColorMap, stars[i].bv, stars[i].colormapColor);
        return;
    }
    if (param.colorMapMode != _USE_SPECTRAL_COLOR_MAP || spColorMap == nullptr) return;

    for (int i = 0; i < count; ++i) {
        StarObj& s = stars[i];
        lookupSpectral(*spColorMap, s.spectralClass, s.spectralNumber, s.spectralType,
                       s.colormapColor);
    }
    // Stars of a class the table does not know take the colour of the star nearest in B-V
    // among those the table coloured (the first in list order on equal distances). The
    // candidates are the stars the lookup coloured, so the result does not depend on the
    // order in which the uncoloured stars are visited.
    struct Candidate {
        float bv;
        int index;
    };
    std::vector<Candidate> found;
    std::vector<int> missing;
    for (int i = 0; i < count; ++i) {
        if (isNotFoundColour(stars[i].colormapColor)) {
            missing.push_back(i);
        } else {
            found.push_back({stars[i].bv, i});
        }
    }
    if (missing.empty() || found.empty()) return;
    std::sort(found.begin(), found.end(), [](const Candidate& a, const Candidate& b) {
        return a.bv < b.bv || (a.bv == b.bv && a.index < b.index);
    });
    for (int i : missing) {
        const float bv = stars[i].bv;
        auto it = std::lower_bound(found.begin(), found.end(), bv,
                                   [](const Candidate& c, float v) { return c.bv < v; });
        // Nearest from above: the first candidate at or above bv (lowest index on ties,
        // since equal B-V values are sorted by index).
        int best = -1;
        float bestDistance = 0.0f;
        if (it != found.end()) {
            best = it->index;
            bestDistance = it->bv - bv;
        }
        if (it != found.begin()) {
            // Nearest from below: the lowest index among the candidates with the largest
            // B-V below bv.
            auto below = it - 1;
            float belowBV = below->bv;
            while (below != found.begin() && (below - 1)->bv == belowBV)
                --below;
            float d = bv - belowBV;
            if (best < 0 || d < bestDistance || (d == bestDistance && below->index < best)) {
                best = below->index;
            }
        }
        std::memcpy(stars[i].colormapColor, stars[best].colormapColor, 4 * sizeof(float));
    }
}
