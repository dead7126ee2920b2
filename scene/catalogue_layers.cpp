#include "scene/catalogue_layers.h"

void buildStarSpanningTree(StarList& stars) {
    (void)stars;
}

void drawSpanningTree(StarList& stars, double currLogScale, int starDrawingFlags) {
    (void)stars;
    (void)currLogScale;
    (void)starDrawingFlags;
}

void drawConstellationLayer(StarList& stars, const StarObj* one, bool lines, bool names,
                            bool bounds, double currLogScale) {
    (void)stars;
    (void)one;
    (void)lines;
    (void)names;
    (void)bounds;
    (void)currLogScale;
}

bool findConstellationStar(const StarList& stars, const char* text, bool byCode, StarObj* star) {
    (void)stars;
    (void)text;
    (void)byCode;
    (void)star;
    return false;
}

void drawDistanceErrorBars(StarList& stars, double currLogScale) {
    (void)stars;
    (void)currLogScale;
}

void drawStarLabel(StarList& stars, const StarObj& star, const char* text, int labelMode,
                   bool showError, double currLogScale) {
    (void)stars;
    (void)star;
    (void)text;
    (void)labelMode;
    (void)showError;
    (void)currLogScale;
}

void drawPlanetsOfStar(StarList& stars, const StarObj& star, int labelMode, double currLogScale) {
    (void)stars;
    (void)star;
    (void)labelMode;
    (void)currLogScale;
}

void drawAllExtrasolarPlanets(StarList& stars, int labelMode, double currLogScale) {
    (void)stars;
    (void)labelMode;
    (void)currLogScale;
}

void printStarInformation(const StarList& stars, const StarObj& star, std::FILE* out) {
    (void)stars;
    std::fprintf(out, "name      : HD(%d) HIC(%d) CommonName(%s)\n", star.hd, star.hic,
                 star.commonName);
}
