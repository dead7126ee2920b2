// drawScene: one frame of the star scene, layer by layer.

#include <GL/freeglut.h>

#include "framework/framework_state.h"
#include "imagereg/image_registration.h"
#include "platform/panel_host.h"
#include "scene/catalogue_layers.h"
#include "scene/control_panel.h"
#include "scene/draw_rules.h"
#include "scene/examine_windows.h"
#include "scene/picking.h"
#include "scene/scene.h"
#include "scene/scene_layers.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"

void drawScene(double currFrame, int totalNumFrame, int renderFlags, double currLogScale,
               int pickMode) {
    (void)totalNumFrame;
    StarList* stars = sceneStars();
    if (stars == nullptr) return;
    if (pickMode != 0) {
        pickAt(pickX, pickY);
        return;
    }
    const SceneSettings& s = sceneSettings;

    FrameContext frame;
    frame.currFrame = currFrame;
    frame.renderFlags = renderFlags;
    frame.currLogScale = currLogScale;
    if (panelEmbedded && platform::panelExists()) {
        int x = 0, y = 0;
        platform::freeViewportArea(x, y, frame.viewportWidth, frame.viewportHeight);
    }
    frame.starFlags = starDrawingFlags(s);

    serviceMeasurementRequests(frame);
    drawMilkyWay();
    drawRegistrationLayer();
    if (s.showExamineWindows) drawExamineWindows(winWidth, winHeight);
    if (s.showSpanningTree) drawSpanningTree(*stars, currLogScale, frame.starFlags);
    if (s.showStars)
        stars->drawStars(currLogScale, frame.starFlags, frame.viewportWidth, frame.viewportHeight);
    if (s.showDistanceErrorBars) drawDistanceErrorBars(*stars, currLogScale);
    drawConstellations(*stars, currLogScale);
    drawTrails(*stars, currLogScale);
    drawSkyGrids();
    drawPickedStarLayer(*stars, currLogScale);
    drawExtrasolarPlanetsLayer(*stars, currLogScale);
    drawAnchorLayer(*stars, currLogScale);
    drawCubesAtPickedStar(currLogScale);
    drawSolarSystem(frame);
    drawSunParticles(currLogScale);
    if (s.showImageOverlay) drawRegistrationOverlay();
    drawScreenOverlays();
    synchronisePanelWithView();
}
