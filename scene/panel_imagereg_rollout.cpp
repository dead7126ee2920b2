// The "[I]mage Registration" rollout: the photograph laid over the stars, its three
// registration stars, the examine windows and the measurements.

#include <imgui.h>

#include <algorithm>
#include <string>

#include "framework/framework_state.h"
#include "scene/examine_windows.h"
#include "scene/panel_rollouts.h"
#include "scene/panel_state.h"
#include "scene/panel_widgets.h"
#include "scene/scene_settings.h"

using namespace panelui;

namespace {

void buildAlignmentFile() {
    PanelState& p = panelState;
    button("Load", 53, 60.0f);
    ImGui::SameLine();
    button("Export", 54, 60.0f);
    textField("Align File:", p.alignFile);
    textField("Image File:", p.imageFile, 55);
}

void buildCorrespondence() {
    SceneSettings& s = sceneSettings;
    checkBox("show labels", &s.showImageLabels);
    checkBox("show image overlay (o)", &s.showImageOverlay);
    for (int j = 0; j < 3; ++j) {
        RegistrationStarControls& r = panelState.registration[j];
        ImGui::PushID(j);
        const std::string label = r.buttonLabel + "###take";
        button(label.c_str(), 56 + j);
        floatSpinner("texcoord. x:", &r.texcoord[0], 0.0f, 1.0f, 0.01f, 52);
        floatSpinner("texcoord. y:", &r.texcoord[1], 0.0f, 1.0f, 0.01f, 52);
        ImGui::PopID();
    }
}

void buildExamineWindows() {
    ExamineWindowSet& e = examineWindows;
    const int maxX = std::max(1, winWidth), maxY = std::max(1, winHeight);
    checkBox("show windows", &sceneSettings.showExamineWindows);
    intSpinner("current window", &e.current, 0, std::max(0, e.windowCount - 1), 1.0f, 60);
    button("add a window", 61);
    ImGui::SameLine();
    button("delete current window", 62);
    intSpinner("x-coord", &e.shownX, 0, maxX, 1.0f, 63);
    intSpinner("y-coord", &e.shownY, 0, maxY, 1.0f, 63);
    intSpinner("width", &e.shownWidth, 1, maxX, 1.0f, 63);
    intSpinner("height", &e.shownHeight, 1, maxY, 1.0f, 63);
}

void buildMeasurement() {
    MeasurementSettings& m = measurementSettings;
    button("Compute image diff.", 65);
    floatSpinner("noise cutoff", &m.noiseCutoff, 0.0f, 1.0f, 1.0f);
    const char* rmsLabels[3] = {"rms error R:", "rms error G:", "rms error B:"};
    const char* snrLabels[3] = {"snr error R:", "snr error G:", "snr error B:"};
    for (int c = 0; c < 3; ++c)
        textField(rmsLabels[c], m.rms[c], kNoCallback, true);
    for (int c = 0; c < 3; ++c)
        textField(snrLabels[c], m.snr[c], kNoCallback, true);
    button("Jitter texture Coord.", 67);
    floatSpinner("Jitter size", &m.jitterSize, 0.0f, 1.0f, 0.01f, kNoCallback, "%.4f");
    intSpinner("Number of Trial", &m.numberOfTrials, 0, 100000, 0.01f);
    button("Export image diff.", 66);
    textField("Path:", m.differencePath);
}

void buildDataMeasurement() {
    MeasurementSettings& m = measurementSettings;
    textField("HD File:", m.hdFile);
    if (beginRollout("Star sizes")) {
        button("Measure picked star", 70);
        button("Measure stars in HD file", 71);
        endRollout();
    }
    if (beginRollout("Star textures")) {
        button("Extract picked star", 72);
        button("Extract stars in HD file", 73);
        textField("export to:", m.exportTo);
        intSpinner("texture border", &m.textureBorder, 0, 10, 1.0f);
        checkBox("export individual files", &m.exportIndividualFiles);
        intSpinner("texture tile size", &m.textureTileSize, 15, 50, 1.0f);
        endRollout();
    }
}

}  // namespace

void buildImageRegistrationRollout() {
    button("toggle image/stars (|)", 50);
    checkBox("show image (\\)", &sceneSettings.showImage);
    floatSpinner("image opacity", &sceneSettings.imageOpacity, 0.0f, 1.0f, 1.0f);
    if (beginRollout("1. Open Alignment File")) {
        buildAlignmentFile();
        endRollout();
    }
    if (beginRollout("2. Set Correspondence")) {
        buildCorrespondence();
        endRollout();
    }
    if (beginRollout("3. Error Measurement")) {
        if (beginRollout("Examine Windows")) {
            buildExamineWindows();
            endRollout();
        }
        if (beginRollout("Measurement")) {
            buildMeasurement();
            endRollout();
        }
        endRollout();
    }
    if (beginRollout("4. Data Measurement")) {
        buildDataMeasurement();
        endRollout();
    }
}
