// The rollouts about stars: the star selection, the picked star and the star velocities.

#include <imgui.h>

#include <algorithm>
#include <string>

#include "scene/panel_rollouts.h"
#include "scene/panel_state.h"
#include "scene/panel_trace.h"
#include "scene/panel_widgets.h"
#include "scene/pick_state.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/star_velocity.h"

using namespace panelui;

namespace {

const char* const kSpectralClassLabels[kNumSpectralClasses] = {"O", "B", "A", "F",
                                                               "G", "K", "M", "Other"};

void initSlider(RangeSlider& slider, const char* name, bool on, double lo, double hi,
                float limitMin, float limitMax) {
    slider.on = on;
    if (on) {
        slider.range[0] = std::clamp(static_cast<float>(lo), limitMin, limitMax);
        slider.range[1] = std::clamp(static_cast<float>(hi), limitMin, limitMax);
    } else {
        slider.range[0] = limitMin;
        slider.range[1] = limitMax;
    }
    slider.label = rangeSliderLabel(name, slider.range);
}

// A text shown as it is, without the line break that ends it.
void textLine(const char* name, const std::string& text) {
    std::string shown = text;
    while (!shown.empty() && shown.back() == '\n')
        shown.pop_back();
    staticText(shown.c_str());
    traceControl(name, shown);
}

}  // namespace

void initStarSelectionControls() {
    PanelState& p = panelState;
    const StarList* stars = sceneStars();
    const StarParameter param = stars != nullptr ? stars->getStarParameter() : StarParameter{};
    initSlider(p.vmag, "VMag", param.vmagRangeOn != 0, param.vmagRangeMin, param.vmagRangeMax,
               kVMagSliderMin, kVMagSliderMax);
    initSlider(p.logDist, "Log(Dist)", param.zRangeOn != 0, param.zRangeMin, param.zRangeMax,
               kLogDistSliderMin, kLogDistSliderMax);
    for (int k = 0; k < kNumSpectralClasses; ++k) {
        initSlider(p.sptype[k], kSpectralClassLabels[k], param.sptypeRangeOn[k] != 0,
                   param.sptypeRange[k][0], param.sptypeRange[k][1], kSptypeSliderMin,
                   kSptypeSliderMax);
    }
}

void buildStarSelectionRollout() {
    PanelState& p = panelState;
    staticText("[boxes to activate sliders]");
    rangeSlider("VMag", &p.vmag.on, p.vmag.label.c_str(), p.vmag.range, kVMagSliderMin,
                kVMagSliderMax, 15);
    rangeSlider("Log(Dist)", &p.logDist.on, p.logDist.label.c_str(), p.logDist.range,
                kLogDistSliderMin, kLogDistSliderMax, 16);
    if (beginRollout("Sptype Selection")) {
        for (int k = 0; k < kNumSpectralClasses; ++k) {
            rangeSlider(kSpectralClassLabels[k], &p.sptype[k].on, p.sptype[k].label.c_str(),
                        p.sptype[k].range, kSptypeSliderMin, kSptypeSliderMax, 100 + k);
        }
        endRollout();
    }
    button("range all", 108);
    ImGui::SameLine();
    button("range none", 109);
}

void buildStarPickedRollout() {
    SceneSettings& s = sceneSettings;
    PickedStarTexts& t = pickState.texts;
    checkBox("show star info.(p)", &s.showStarInfo);
    checkBox("planet info. (if any)", &s.showPlanetInfo);
    button("print (console)", 90);
    ImGui::SameLine();
    button("look at star", 91);
    textField("HD number:", t.hdNumber, 92);
    textField("HIC number:", t.hicNumber, 93);
    textField("Common name:", t.commonName, 94);
    textField("Constellation:", t.constellation, 95);
    textField("Constellation Code:", t.constellationCode, 96);
    if (beginRollout("1.Color Info.")) {
        textField("BV:", t.bv, kNoCallback, true);
        textField("Abs.VMag:", t.absVMag, kNoCallback, true);
        textField("SpType:", t.spType, kNoCallback, true);
        textField("Luminosity:", t.luminosity, kNoCallback, true);
        endRollout();
    }
    if (beginRollout("2.Position Info.")) {
        textField("Position X:", t.position[0], kNoCallback, true);
        textField("Position Y:", t.position[1], kNoCallback, true);
        textField("Position Z:", t.position[2], kNoCallback, true);
        textField("Dist % Err:", t.distError, kNoCallback, true);
        const bool raDec = panelState.raDecLabels;
        textField(raDec ? "Eqn. RA:" : "Galactic l:", t.galacticL, kNoCallback, true);
        textField(raDec ? "Eqn. DEC:" : "Galactic b:", t.galacticB, kNoCallback, true);
        textField("log10 scale (m):", t.log10Scale, kNoCallback, true);
        textField("dist(parsec):", t.distParsec, kNoCallback, true);
        textField("dist(lightyear):", t.distLightyear, kNoCallback, true);
        endRollout();
    }
    if (beginRollout("3.Velocity Info.")) {
        staticText("[Space Velocity w.r.t. Sun]");
        textField("vel. X:", t.velocity[0], kNoCallback, true);
        textField("vel. Y:", t.velocity[1], kNoCallback, true);
        textField("vel. Z:", t.velocity[2], kNoCallback, true);
        staticText("[Peculiar Velocity w.r.t. LSR]");
        ImGui::PushID("peculiar");
        textField("vel. X:", t.peculiar[0], kNoCallback, true);
        textField("vel. Y:", t.peculiar[1], kNoCallback, true);
        textField("vel. Z:", t.peculiar[2], kNoCallback, true);
        ImGui::PopID();
        endRollout();
    }
    staticText("[pick by right mouse click]");
}

void buildStarVelocityRollout() {
    StarVelocityPanel& v = velocityPanel;
    staticText("Based on star selection panel");
    checkBox("consider VMag", &v.considerVMag);
    checkBox("consider LogDist", &v.considerLogDist);
    checkBox("consider Sptype", &v.considerSptype);
    button("compute average vel.", 110);
    textLine("average", v.summary);
    textField("Ave velX:", v.averageVelocity[0], kNoCallback, true);
    textField("Ave velY:", v.averageVelocity[1], kNoCallback, true);
    textField("Ave velZ:", v.averageVelocity[2], kNoCallback, true);
    textLine("involved", v.involved);
    button("copy above to below", 111);
    textField("LSR l:", v.lsrL, 112);
    textField("LSR b:", v.lsrB, 112);
    textField("speed:", v.lsrSpeed, 112);
    button("apply entered LSR", 113);
    button("restore default LSR", 114);
    button("set default LSR", 115);
}
