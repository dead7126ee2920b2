// The extrasolar planet table: release, orbit scale and lookups.

#include <cstdio>

#include "catalogue/star_list.h"

void StarList::releaseExtrasolarPlanets() {
    for (int i = 0; i < count; ++i) {
        if (stars[i].planets != nullptr) release(stars[i].planets);
        stars[i].planets = nullptr;
        stars[i].numPlanets = 0;
    }
    if (planets != nullptr) release(planets);
    planets = nullptr;
    numPlanets = 0;
}

int StarList::setExtrasolarPlanetOrbitScale(float orbitScale) {
    if (!(orbitScale >= 0.0f)) {
        std::fprintf(stderr,
                     "Err (setExtrasolarPlanetOrbitScale): inExtrasolarPlanetOrbitScale should be "
                     "non-negative\n");
        return -1;
    }
    param.extrasolarPlanetOrbitScale = orbitScale;
    return 1;
}

const ExtrasolarPlanet* StarList::getPlanet(int index) const {
    if (index < 0 || index >= numPlanets) return nullptr;
    return &planets[index];
}
