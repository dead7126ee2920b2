// The rollouts of the view and its layers: basic adjustment, check boxes, star texture, movie
// control, orrery, extrasolar planets and the world in miniature.

#include <imgui.h>

#include "scene/panel_rollouts.h"
#include "scene/panel_state.h"
#include "scene/panel_widgets.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"

using namespace panelui;

namespace {

// The orbit length may run to 20 years only with an ephemeris that covers them.
constexpr int kLongEphemerisBytes = 10000000;

}  // namespace

void buildBasicAdjustmentRollout() {
    PanelState& p = panelState;
    SceneSettings& s = sceneSettings;
    floatSpinner("Log10(m) space:", &p.logScale, 0.0f, 27.0f, 0.5f, 17);
    floatSpinner("Fovy:", &p.fovy, 0.0f, 179.9f, 1.0f, 10);
    checkBox("Fix as width/height", &p.fixAspect, 11);
    floatSpinner("Aspect Ratio:", &p.aspect, 0.1f, 3.0f, 1.0f, 11);
    intSpinner("star at year:", &s.starAtYear, -200000, 200000, 0.001f, 18);
    intSpinner("trail length (yr):", &s.trailLengthYears, 0, 100000, 0.01f);
    floatSpinner("scale velocity err.:", &s.velocityErrorScale, 1.0f, 100.0f, 0.1f);
    floatSpinner("text label size:", &s.labelSize, 0.0f, 2.0f, 0.01f, 19);
    staticText("[Fine control: up/down arrows]", true);
}

void buildCheckboxesRollout() {
    SceneSettings& s = sceneSettings;
    checkBox("show stars", &s.showStars);
    checkBox("show Milkyway (M)", &s.showMilkyWay);
    checkBox("show galactic axes (a)", &s.showGalacticAxes, 20);
    checkBox("show meters cubes (b)", &s.showMeterCubes, 210);
    checkBox("show parsec cubes (B)", &s.showParsecCubes, 212);
    checkBox("(cube at picked star)", &s.cubeAtPickedStar, kNoCallback, true);
    checkBox("show galactic grid (G)", &s.showGalacticGrid);
    checkBox("show equatorial grid (E)", &s.showEquatorialGrid);
    checkBox("show grid detail (D)", &s.showGridDetail);
    checkBox("show constellat.lines (s)", &s.showConstellationLines);
    checkBox("show constellat.names (s)", &s.showConstellationNames);
    checkBox("show constellat.bound (S)", &s.showConstellationBounds);
    checkBox("(show picked only)", &s.constellationOfPickedOnly, kNoCallback, true);
    checkBox("show extrasolar planets (e)", &s.showExtrasolarPlanets);
    checkBox("(show star name)", &s.showPlanetHostNames, kNoCallback, true);
    checkBox("show the Sun (u)", &s.showSun);
    checkBox("show solar system (U)", &s.showSolarSystem);
    checkBox("show planet labels", &s.showPlanetLabels);
    checkBox("show dark sky", &s.showDarkSky, 27);
    checkBox("show color map (m)", &s.showColorMap);
    checkBox("show textured stars (t)", &s.showTexturedStars);
    checkBox("show Ra/Dec", &s.showRaDec, 28);
    checkBox("show common name", &s.showCommonName);
    checkBox("Lock view (l/L)", &s.lockView, 64);
    checkBox("show error bar (dist.)", &s.showDistanceErrorBars);
    checkBox("error bar (picked stars)", &s.errorBarOfPickedStars);
    checkBox("show star velocity trail (y)", &s.showVelocityTrails);
    checkBox("show star velocity Err. (Y)", &s.showVelocityErrors);
    checkBox("show anchor (A)", &s.showAnchor);
    floatSpinner("milkyway alpha", &s.milkyWayAlpha, 0.0f, 1.0f, 1.0f);
}

void buildStarTextureRollout() {
    floatSpinner("Star Size:", &sceneSettings.starSize, 0.01f, 15.0f, 0.5f, 31);
}

void buildMovieControlRollout() {
    PanelState& p = panelState;
    checkBox("show frame num. (n)", &p.showFrameNumber, 80);
    button("Play/stop (loop) (z/Z)", 81);
    button("Rewind & Play (x/X)", 82);
    button("<-", 83, 40.0f);
    ImGui::SameLine();
    button("->", 84, 40.0f);
    staticText("[F1-F10 - goto frame]");
    button("Reload script", 85);
    textField("Script:", p.script);
    button("Dump the movie to", 87);
    textField("header:", p.header);
    button("Dump the screen (INS) to", 86);
    textField("ppm file:", p.ppmFile);
}

void buildOrreryRollout() {
    SceneSettings& s = sceneSettings;
    checkBox("show the Sun (u)", &s.showSun, -4);
    checkBox("show solar system (U)", &s.showSolarSystem, -4);
    checkBox("show planet labels", &s.showPlanetLabels, -4);
    checkBox("show orrery clock", &s.showOrreryClock);
    checkBox("show 1000 times Earth", &s.showEarthThousandfold);
    intSpinner("Days From today:", &s.daysFromToday, -3650, 3650, 0.1f);
    floatSpinner("Hours From now:", &s.hoursFromNow, -480.0f, 480.0f, 0.1f);
    const Ephemeris* ephemeris = sceneObjects.ephemeris.get();
    const bool longEphemeris = ephemeris != nullptr && ephemeris->isInitialized() &&
                               ephemeris->dataSize() > kLongEphemerisBytes;
    floatSpinner("Orbit length", &s.orbitLengthDays, 0.0f, longEphemeris ? 7300.0f : 3650.0f, 1.0f,
                 kNoCallback, "%.1f");
    staticText("- measured in days -", true);
}

void buildExtrasolarPlanetRollout() {
    SceneSettings& s = sceneSettings;
    floatSpinner("orbit scale", &s.orbitScale, 0.0f, 200000.0f, 1.0f, 97, "%.1f");
    checkBox("show extrasolar planets (e)", &s.showExtrasolarPlanets, 98);
    checkBox("(show star name)", &s.showPlanetHostNames, 99);
}

void buildScalableWimRollout() {
    button("Show/Hide WIM (Tab)", 990);
}
