#include "wim/bright_stars.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "common_package/math/src/phc.h"

namespace {

std::vector<StarObj> brightStars;
std::vector<StarObj> nearbyStars;

bool isSun(const StarList& stars, int index) {
    return index == 0 && stars.includesSun() &&
           std::strncmp(stars.getStarArray()[0].commonName, "Sun", kStarNameSize) == 0;
}

}  // namespace

float magnitudeSeenFromSun(const StarObj& star) {
    if (!(star.lum > 0.0f)) return HUGE_VALF;  // no light: never bright
    const double absMag = -2.5 * std::log10(static_cast<double>(star.lum));
    const double m = absMag + 5.0 * ((star.pos.w - kParsecLog10) - 1.0);
    return static_cast<float>(m);
}

int build_bright_starlist(const StarList& stars) {
    const StarObj* all = stars.getStarArray();
    const int count = all != nullptr ? stars.getNumRecords() : 0;
    int bright = 0;
    for (int i = 1; i < count; ++i) {
        if (magnitudeSeenFromSun(all[i]) < kBrightStarMagnitude) ++bright;
    }
    std::fprintf(stderr, "num_bright_stars = %d\n", bright);
    try {
        std::vector<StarObj> list;
        list.reserve(static_cast<std::size_t>(bright));
        for (int i = 1; i < count; ++i) {
            if (magnitudeSeenFromSun(all[i]) < kBrightStarMagnitude) list.push_back(all[i]);
        }
        brightStars.swap(list);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err (build_bright_starlist): failed to allocate memory.\n");
        std::exit(1);
    }
    return bright;
}

const std::vector<StarObj>& brightStarList() {
    return brightStars;
}

int build_nearby_starlist(const StarList& stars) {
    const StarObj* all = stars.getStarArray();
    const int count = all != nullptr ? stars.getNumRecords() : 0;
    std::vector<StarObj> list;
    for (int i = 0; i < count && static_cast<int>(list.size()) < kNumNearbyStars; ++i) {
        if (!isSun(stars, i)) list.push_back(all[i]);
    }
    nearbyStars.swap(list);
    return static_cast<int>(nearbyStars.size());
}

const std::vector<StarObj>& nearbyStarList() {
    return nearbyStars;
}
