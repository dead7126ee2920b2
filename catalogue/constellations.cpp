// Constellations: a minimal version that keeps the settings; the constellation file
// reader, lookups and table come with the full constellation support.

#include <cstring>

#include "catalogue/star_list.h"

void StarList::releaseConstellations() {
    constellations = nullptr;
    numConstellations = 0;
}

int StarList::loadConstellations(const char* fileName) {
    if (fileName != nullptr) {
        std::strncpy(param.constellationFile, fileName, kStarParameterPathSize - 1);
        param.constellationFile[kStarParameterPathSize - 1] = '\0';
    }
    return 1;
}

int StarList::setConstellationColors(const float lineColor[4], const float boundColor[4]) {
    param.constellationColorsGiven = true;
    if (lineColor == nullptr || boundColor == nullptr) return -1;
    std::memcpy(param.constellationLineColor, lineColor, 4 * sizeof(float));
    std::memcpy(param.constellationBoundColor, boundColor, 4 * sizeof(float));
    return 1;
}

int StarList::setConstellationLineWidth(float lineWidth, float boundWidth) {
    param.constellationWidthsGiven = true;
    param.constellationLineWidth = lineWidth;
    param.constellationBoundWidth = boundWidth;
    return 1;
}

int StarList::setConstellationStipple(int lineStipple, int boundStipple) {
    param.constellationLineStipple = lineStipple;
    param.constellationBoundStipple = boundStipple;
    return 1;
}

int StarList::setLabelScale(float labelScale) {
    param.labelScale = labelScale;
    return 1;
}
