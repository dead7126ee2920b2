#include "scene/scene_layers.h"

#include <GL/freeglut.h>

#include "framework/framework_state.h"
#include "framework/overlays.h"
#include "imagereg/image_registration.h"
#include "imagereg/measurement.h"
#include "scene/catalogue_layers.h"
#include "scene/draw_rules.h"
#include "scene/examine_windows.h"
#include "scene/pick_state.h"
#include "scene/picking.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/velocity_trails.h"
#include "solar/orrery.h"
#include "solar/orrery_clock.h"

namespace {

OrrerySettings orrerySettings() {
    const SceneSettings& s = sceneSettings;
    OrrerySettings o;
    o.daysFromToday = s.daysFromToday;
    o.hoursFromNow = s.hoursFromNow;
    o.orbitLengthDays = s.orbitLengthDays;
    o.showPlanetLabels = s.showPlanetLabels;
    o.labelSize = s.labelSize;
    o.showEarthThousandfold = s.showEarthThousandfold;
    o.fovy = fovy;
    o.showFrameInfo = showFrameInfo;
    return o;
}

// The picked star's label is drawn here, except while the registration image's labels are
// shown and the picked star is one of the three registration stars: the registration labels
// those itself (registered or not), so no star is labelled twice.
bool labelPickedStar() {
    if (!sceneSettings.showImageLabels) return true;
    const int hd = pickState.pickedStar.hd;
    for (int j = 1; j <= 3; ++j) {
        if (hd > 0 && registrationStarHD(j) == hd) return false;
    }
    return true;
}

}  // namespace

int sceneLabelMode() {
    return sceneSettings.showCommonName ? kLabelCommonName : kLabelCatalogueName;
}

void serviceMeasurementRequests(const FrameContext& frame) {
    MeasurementRequests& r = measurementRequests;
    if (r.anyMeasurement()) {
        const bool extract = r.extractPickedStar || r.extractStarsInFile;
        const bool fromFile = r.measureStarsInFile || r.extractStarsInFile;
        measureStars(extract, fromFile ? measurementSettings.hdFile.c_str() : nullptr);
        r.measurePickedStar = r.measureStarsInFile = false;
        r.extractPickedStar = r.extractStarsInFile = false;
    }
    if (r.computeDifference) {
        r.computeDifference = false;
        computeImageDifference(frame.currFrame, frame.starFlags, frame.viewportWidth,
                               frame.viewportHeight, measurementSettings.noiseCutoff);
    }
    if (r.exportDifference) {
        r.exportDifference = false;
        exportImageDifference();
    }
    if (r.jitterSearch != 0) {
        if (jitterStep() == 0) {
            r.jitterSearch = 0;
        } else {
            r.jitterSearch = 2;
            r.computeDifference = true;
        }
    }
}

void drawMilkyWay() {
    GLMmodel* model = sceneObjects.milkyWay.get();
    if (!sceneSettings.showMilkyWay || model == nullptr) return;
    glDepthMask(GL_FALSE);
    glPushMatrix();
    double m[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    m[12] = m[13] = m[14] = 0.0;  // the surround turns with the view but never moves
    glLoadMatrixd(m);
    glDisable(GL_LIGHTING);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glmDrawOpacity(model, GLM_TEXTURE | GLM_COLOR, sceneSettings.milkyWayAlpha);
    glEnable(GL_LIGHTING);
    glPopMatrix();
    glDepthMask(GL_TRUE);
}

void drawRegistrationLayer() {
    if (sceneSettings.showImage || sceneSettings.showImageLabels)
        drawRegistration(sceneSettings.imageOpacity);
}

void drawConstellations(StarList& stars, double currLogScale) {
    const SceneSettings& s = sceneSettings;
    const ConstellationScope scope = constellationScope(s, pickState.starPicked);
    if (scope == ConstellationScope::None) return;
    glLineWidth(1.5f);
    glColor4f(0.7f, 0.7f, 0.3f, 0.6f);
    drawConstellationLayer(
        stars, scope == ConstellationScope::PickedOnly ? &pickState.pickedStar : nullptr,
        s.showConstellationLines, s.showConstellationNames, s.showConstellationBounds,
        currLogScale);
    glLineWidth(1.0f);
}

void drawTrails(const StarList& stars, double currLogScale) {
    const SceneSettings& s = sceneSettings;
    if (!s.showVelocityTrails) return;
    glLineWidth(1.5f);
    drawVelocityTrails(stars, currLogScale, s.trailLengthYears, s.showVelocityErrors,
                       s.velocityErrorScale);
    glLineWidth(1.0f);
}

void drawSkyGrids() {
    const SceneSettings& s = sceneSettings;
    if (s.showEquatorialGrid) drawSkyGrid(1, s.showGridDetail, fovy);
    if (s.showGalacticGrid) drawSkyGrid(2, s.showGridDetail, fovy);
}

void drawPickedStarLayer(StarList& stars, double currLogScale) {
    if (!pickState.starPicked) return;
    if (labelPickedStar()) {
        glColor4f(0.8f, 0.8f, 0.8f, 1.0f);
        drawStarLabel(stars, pickState.pickedStar, nullptr, sceneLabelMode(),
                      sceneSettings.errorBarOfPickedStars, currLogScale);
    }
    if (pickedStarHasPlanets()) {
        glColor4f(0.4f, 0.4f, 0.6f, 0.7f);
        drawPlanetsOfStar(stars, pickState.pickedStar, sceneLabelMode(), currLogScale);
    }
}

void drawExtrasolarPlanetsLayer(StarList& stars, double currLogScale) {
    const SceneSettings& s = sceneSettings;
    if (!s.showExtrasolarPlanets) return;
    glColor4f(0.4f, 0.4f, 0.6f, 0.7f);
    drawAllExtrasolarPlanets(stars, s.showPlanetHostNames ? sceneLabelMode() : kLabelNone,
                             currLogScale);
}

void drawAnchorLayer(StarList& stars, double currLogScale) {
    if (!sceneSettings.showAnchor) return;
    glColor4f(0.8f, 0.8f, 0.2f, 1.0f);
    drawStarLabel(stars, pickState.anchor, pickState.anchorLabel.c_str(), kLabelCommonName, false,
                  currLogScale);
}

void drawCubesAtPickedStar(double currLogScale) {
    const double p = pickState.pickedStar.pos.w;
    if (!cubesAtPickedStarVisible(sceneSettings, pickState.starPicked, p, currLogScale)) return;
    const Vec3 at = phcToDrawing(pickState.pickedStar.pos, currLogScale);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glPushMatrix();
    glTranslated(at.x, at.y, at.z);
    if (meterCubesShown) drawMeterCubes(currLogScale);
    if (parsecCubesShown) drawParsecCubes(currLogScale);
    glPopMatrix();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_LIGHTING);
}

void drawSolarSystem(const FrameContext& frame) {
    if (!orreryVisible(sceneSettings, frame.currLogScale)) return;
    glDepthMask(GL_TRUE);
    drawOrrery(sceneObjects.ephemeris.get(), orrerySettings(), sceneObjects.earthModels(),
               frame.currLogScale, frame.renderFlags, frame.currFrame);
}

void drawSunParticles(double currLogScale) {
    ParticleList* sun = sceneObjects.sunParticles.get();
    if (sun == nullptr || !sunParticlesVisible(sceneSettings, currLogScale)) return;
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    sun->setTuneColor(1.0f, 1.0f, 1.0f, 0.4f);
    sun->render(PARTICLE_SPRITES_SORTED | PARTICLE_DEPTH_TEST | PARTICLE_NO_DEPTH_WRITE,
                currLogScale + kSunParticlesScaleShift, kSunParticlesReferenceScale);
}

void drawScreenOverlays() {
    const SceneSettings& s = sceneSettings;
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    if (s.showOrreryClock) drawOrreryClock(orrerySettings());
    if (s.showStarInfo) drawStarInfo(s.showPlanetInfo);
    if (s.lockView) {
        glLineWidth(1.5f);
        glColor4f(0.8f, 0.8f, 0.7f, 0.8f);
        drawScreenText("[View Locked]", 0.03f, 0.06f, 0.0003f, 1, 0);
    }
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_2D);
    glLineWidth(1.0f);
}
