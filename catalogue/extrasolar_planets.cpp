// Extrasolar planets: a minimal version that keeps the settings; the planet catalogue
// reader and drawing come with the full planet support.

#include <cstring>

#include "catalogue/star_list.h"

void StarList::releaseExtrasolarPlanets() {
    planets = nullptr;
    numPlanets = 0;
}

int StarList::loadExtrasolarPlanets(const char* fileName) {
    if (fileName != nullptr) {
        std::strncpy(param.extrasolarPlanetFile, fileName, kStarParameterPathSize - 1);
        param.extrasolarPlanetFile[kStarParameterPathSize - 1] = '\0';
    }
    return 1;
}

int StarList::setExtrasolarPlanetOrbitScale(float orbitScale) {
    param.extrasolarPlanetOrbitScale = orbitScale;
    return 1;
}
