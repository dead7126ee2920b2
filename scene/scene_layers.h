#pragma once
// The layers of a scene frame, each drawn at the current log scale with the current
// matrices, in the order drawScene calls them.

#include "catalogue/star_list.h"

struct FrameContext {
    double currFrame = 0.0;
    int renderFlags = 0;
    double currLogScale = 0.0;
    int starFlags = 0;       // the star drawing flags
    int viewportWidth = -1;  // the 3-D area handed to the star drawing (-1: whole window)
    int viewportHeight = -1;
};

void serviceMeasurementRequests(const FrameContext& frame);
void drawMilkyWay();
void drawRegistrationLayer();
void drawConstellations(StarList& stars, double currLogScale);
void drawTrails(const StarList& stars, double currLogScale);
void drawSkyGrids();
void drawPickedStarLayer(StarList& stars, double currLogScale);
void drawExtrasolarPlanetsLayer(StarList& stars, double currLogScale);
void drawAnchorLayer(StarList& stars, double currLogScale);
void drawCubesAtPickedStar(double currLogScale);
void drawSolarSystem(const FrameContext& frame);
void drawSunParticles(double currLogScale);
void drawScreenOverlays();

// The label mode the settings ask for: common name or catalogue name.
int sceneLabelMode();
