#include "scene/draw_rules.h"

#include <cmath>

#include "catalogue/star_list.h"

bool orreryVisible(const SceneSettings& s, double currLogScale) {
    return s.showSolarSystem && currLogScale < kOrreryLogScaleLimit;
}

bool sunParticlesVisible(const SceneSettings& s, double currLogScale) {
    return s.showSun && currLogScale >= kSunParticlesLogScaleMin &&
           currLogScale <= kSunParticlesLogScaleMax;
}

double drawingDistance(double p, double currLogScale) {
    return std::pow(10.0, p - currLogScale);
}

bool cubesAtPickedStarVisible(const SceneSettings& s, bool starPicked, double p,
                              double currLogScale) {
    return s.cubeAtPickedStar && starPicked &&
           drawingDistance(p, currLogScale) < kPickedCubeDistanceLimit;
}

int starDrawingFlags(const SceneSettings& s) {
    int flags = s.showColorMap ? kStarColorMap : kStarColorWhite;
    flags |= kStarDepthWrite;
    if (s.showTexturedStars) flags |= kStarTextured;
    return flags;
}

ConstellationScope constellationScope(const SceneSettings& s, bool starPicked) {
    if (!s.showConstellationLines && !s.showConstellationNames && !s.showConstellationBounds)
        return ConstellationScope::None;
    if (!s.constellationOfPickedOnly) return ConstellationScope::All;
    return starPicked ? ConstellationScope::PickedOnly : ConstellationScope::None;
}

void stepConstellationDisplay(bool& lines, bool& names) {
    if (!lines && !names) {
        lines = true;
    } else if (lines && !names) {
        names = true;
    } else if (lines && names) {
        lines = false;
    } else {
        names = false;
    }
}
