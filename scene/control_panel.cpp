#include "scene/control_panel.h"

#include <GL/freeglut.h>
#include <imgui.h>

#include <cmath>
#include <vector>

#include "framework/framework_state.h"
#include "platform/panel_host.h"
#include "scene/examine_windows.h"
#include "scene/panel_rollouts.h"
#include "scene/panel_state.h"
#include "scene/panel_trace.h"
#include "scene/panel_widgets.h"
#include "scene/pick_state.h"
#include "scene/scene_layout.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/star_velocity.h"

namespace {

// The panel's two colours: rollout headers and buttons, and text.
const ImVec4 kPanelColour(120 / 255.0f, 100 / 255.0f, 150 / 255.0f, 1.0f);
const ImVec4 kPanelTextColour(250 / 255.0f, 250 / 255.0f, 250 / 255.0f, 1.0f);

ImVec4 lighter(const ImVec4& c, float amount) {
    return ImVec4(c.x + amount, c.y + amount, c.z + amount, c.w);
}

int pushPanelColours() {
    ImGui::PushStyleColor(ImGuiCol_Text, kPanelTextColour);
    ImGui::PushStyleColor(ImGuiCol_Header, kPanelColour);
    ImGui::PushStyleColor(ImGuiCol_HeaderHovered, lighter(kPanelColour, 0.08f));
    ImGui::PushStyleColor(ImGuiCol_HeaderActive, lighter(kPanelColour, 0.16f));
    ImGui::PushStyleColor(ImGuiCol_Button,
                          ImVec4(kPanelColour.x, kPanelColour.y, kPanelColour.z, 0.75f));
    ImGui::PushStyleColor(ImGuiCol_ButtonHovered, lighter(kPanelColour, 0.08f));
    ImGui::PushStyleColor(ImGuiCol_ButtonActive, lighter(kPanelColour, 0.16f));
    ImGui::PushStyleColor(ImGuiCol_CheckMark, kPanelTextColour);
    ImGui::PushStyleColor(ImGuiCol_WindowBg, ImVec4(0.09f, 0.08f, 0.12f, 1.0f));
    return 9;
}

void buildHeader() {
    ImGui::Dummy(ImVec2(0.0f, 2.0f));
    ImGui::Separator();
    panelui::staticText("SKYRAMA PANEL", true);
    ImGui::Separator();
    panelui::button("Quit", 40, 42.0f);
    ImGui::SameLine();
    panelui::button("Help", 41, 42.0f);
    ImGui::SameLine();
    panelui::button("About", 42, 42.0f);
    ImGui::SameLine();
    panelui::button("-", 43, 12.0f);
    ImGui::SameLine();
    panelui::button("m", 44, 12.0f);
}

using RolloutBuilder = void (*)();
const RolloutBuilder kRolloutBuilders[] = {
    buildBasicAdjustmentRollout,  buildCheckboxesRollout,  buildStarSelectionRollout,
    buildStarPickedRollout,       buildStarTextureRollout, buildImageRegistrationRollout,
    buildMovieControlRollout,     buildOrreryRollout,      buildStarVelocityRollout,
    buildExtrasolarPlanetRollout, buildScalableWimRollout,
};

void buildRollouts() {
    RolloutOrder& rollouts = panelState.rollouts;
    // A control inside may reorder the rollouts; this frame keeps the order it started with.
    const std::vector<int> order = rollouts.order();
    for (int index : order) {
        const RolloutEntry& entry = rollouts.rollout(index);
        const std::string title = entry.title + "###" + entry.letter;
        ImGui::SetNextItemOpen(entry.open, ImGuiCond_Always);
        const bool open = ImGui::CollapsingHeader(title.c_str());
        rollouts.setOpen(index, open);
        if (!open) continue;
        ImGui::PushID(index);
        tracePushSection(entry.title);
        ImGui::Indent(4.0f);
        kRolloutBuilders[index]();
        ImGui::Unindent(4.0f);
        tracePopSection();
        ImGui::PopID();
    }
    traceRollouts(rollouts.describe());
}

}  // namespace

void buildScenePanel() {
    if (sceneStars() == nullptr) return;
    const int colours = pushPanelColours();
    buildHeader();
    buildRollouts();
    ImGui::PopStyleColor(colours);
    traceEndFrame();
}

void createScenePanel() {
    PanelState& p = panelState;
    pickState.texts = PickedStarTexts{};
    measurementSettings.hdFile.set("Sizes/");
    measurementSettings.exportTo.set("texture/startex");
    p.alignFile.set("imagereg/");
    p.imageFile.clear();
    p.script.set(scriptFileName);
    p.header.set("Movie/skyrama");
    p.ppmFile.set("skyrama.ppm");
    p.logScale = static_cast<float>(currLogScale);
    p.fovy = static_cast<float>(fovy);
    p.aspect = static_cast<float>(aspect);
    p.fixAspect = aspectFollowsWindow;
    p.showFrameNumber = showFrameInfo;
    p.raDecLabels = sceneSettings.showRaDec;
    p.rollouts = makeSceneRollouts();
    p.selectRolloutNext = false;
    for (RegistrationStarControls& r : p.registration)
        r = RegistrationStarControls{};
    initStarSelectionControls();
    if (StarList* stars = sceneStars()) initStarVelocityPanel(*stars);

    platform::setPanelColumnWidth(kPanelColumnWidth);
    platform::createPanel(buildScenePanel, panelEmbedded ? platform::PanelPlacement::RightColumn
                                                         : platform::PanelPlacement::OwnWindow);
    p.built = true;
    resizeMainWindowForPanel();
}

void refreshPanel() {
    if (mainWindow != 0) glutPostWindowRedisplay(mainWindow);
    platform::redisplayPanel();
}

void synchronisePanelWithView() {
    PanelState& p = panelState;
    SceneSettings& s = sceneSettings;
    bool changed = false;
    auto follow = [&changed](float& copy, double value) {
        if (std::fabs(copy - value) > 0.00001 && copy != static_cast<float>(value)) {
            copy = static_cast<float>(value);
            changed = true;
        }
    };
    auto mirror = [&changed](bool& copy, bool value) {
        if (copy != value) {
            copy = value;
            changed = true;
        }
    };
    follow(p.logScale, currLogScale);
    mirror(s.showGalacticAxes, axesShown);
    mirror(s.showMeterCubes, meterCubesShown);
    mirror(s.showParsecCubes, parsecCubesShown);
    mirror(p.showFrameNumber, showFrameInfo);
    follow(p.fovy, fovy);
    if (p.fixAspect) follow(p.aspect, aspect);
    if (changed) refreshPanel();
}
