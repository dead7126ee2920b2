#include "scene/catalogue_layers.h"

void buildStarSpanningTree(StarList& stars) {
    stars.buildMST(nullptr);
}

void drawSpanningTree(StarList& stars, double currLogScale, int starDrawingFlags) {
    stars.drawMST(currLogScale, starDrawingFlags);
}

void drawConstellationLayer(StarList& stars, const StarObj* one, bool lines, bool names,
                            bool bounds, double currLogScale) {
    if (one == nullptr) {
        stars.drawConstellations(currLogScale, lines, names, bounds);
        return;
    }
    const int id = stars.findConstellationOfStar(*one);
    if (id >= 0) stars.drawConstellation(id, currLogScale, lines, names, bounds);
}

bool findConstellationStar(const StarList& stars, const char* text, bool byCode, StarObj* star) {
    const int found = byCode ? stars.findConstellationByCode(star, text)
                             : stars.findConstellationByName(star, text);
    return found == 1;
}

void drawDistanceErrorBars(StarList& stars, double currLogScale) {
    stars.drawDistanceErrors(currLogScale);
}

void drawStarLabel(StarList& stars, const StarObj& star, const char* text, int labelMode,
                   bool showError, double currLogScale) {
    if (text != nullptr) {
        stars.drawLabelOfStar(&star, currLogScale, text, showError);
    } else {
        stars.drawLabelOfStar(&star, currLogScale, labelMode, showError);
    }
}

void drawPlanetsOfStar(StarList& stars, const StarObj& star, int labelMode, double currLogScale) {
    stars.drawPlanetOfStar(&star, currLogScale, labelMode);
}

void drawAllExtrasolarPlanets(StarList& stars, int labelMode, double currLogScale) {
    stars.drawAllPlanets(currLogScale, labelMode);
}

void printStarInformation(const StarList& stars, const StarObj& star, std::FILE* out) {
    stars.printStarInfo(&star, out);
}
