#pragma once
// The scene's calls into the star list's own drawing and lookups: the spanning tree,
// constellations, distance error bars, star labels, extrasolar planets and the printed star
// description. Gathered here so that the drawing code reads as the list of its layers.

#include <cstdio>

#include "catalogue/star_list.h"

// Label modes of star labels: none, by common name, by catalogue (HD) name.
constexpr int kLabelNone = 0;
constexpr int kLabelCommonName = 1;
constexpr int kLabelCatalogueName = 2;

// The spanning tree of every star, not saved.
void buildStarSpanningTree(StarList& stars);
void drawSpanningTree(StarList& stars, double currLogScale, int starDrawingFlags);

// Constellation lines, names and boundaries: of all constellations, or (one != null) of the
// constellation of that star only.
void drawConstellationLayer(StarList& stars, const StarObj* one, bool lines, bool names,
                            bool bounds, double currLogScale);
// The star a constellation is found by (its brightest member), by full name or by code.
bool findConstellationStar(const StarList& stars, const char* text, bool byCode, StarObj* star);

void drawDistanceErrorBars(StarList& stars, double currLogScale);

// A star's label (mark and text); text null: the label the mode gives.
void drawStarLabel(StarList& stars, const StarObj& star, const char* text, int labelMode,
                   bool showError, double currLogScale);

void drawPlanetsOfStar(StarList& stars, const StarObj& star, int labelMode, double currLogScale);
void drawAllExtrasolarPlanets(StarList& stars, int labelMode, double currLogScale);

// The full description of a star (and its planets).
void printStarInformation(const StarList& stars, const StarObj& star, std::FILE* out);
