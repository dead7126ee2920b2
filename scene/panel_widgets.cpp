#include "scene/panel_widgets.h"

#include <imgui.h>

#include <algorithm>
#include <cfloat>
#include <cstdio>
#include <string>

#include "scene/control_panel.h"
#include "scene/panel_trace.h"

namespace panelui {

namespace {

void report(bool changed, int number) {
    if (changed && number != kNoCallback) panelCallback(number);
}

// The label in the left column, the control filling the rest of the line.
void labelColumn(const char* label) {
    ImGui::AlignTextToFramePadding();
    ImGui::TextUnformatted(label);
    ImGui::SameLine(kLabelWidth);
    ImGui::SetNextItemWidth(-FLT_MIN);
}

std::string hidden(const char* label) {
    return std::string("##") + label;
}

float dragRate(float min, float max, float speed) {
    const float range = max - min;
    return std::max(speed * range / 500.0f, range / 1000.0f);
}

void centreNext(float width) {
    const float avail = ImGui::GetContentRegionAvail().x;
    if (avail > width) ImGui::SetCursorPosX(ImGui::GetCursorPosX() + (avail - width) * 0.5f);
}

}  // namespace

bool checkBox(const char* label, bool* value, int number, bool centred) {
    if (centred) {
        const ImGuiStyle& style = ImGui::GetStyle();
        centreNext(ImGui::GetFrameHeight() + style.ItemInnerSpacing.x +
                   ImGui::CalcTextSize(label).x);
    }
    const bool changed = ImGui::Checkbox(label, value);
    traceControl(label, *value ? "on" : "off");
    report(changed, number);
    return changed;
}

bool floatSpinner(const char* label, float* value, float min, float max, float speed, int number,
                  const char* format) {
    labelColumn(label);
    const bool changed = ImGui::DragFloat(hidden(label).c_str(), value, dragRate(min, max, speed),
                                          min, max, format, ImGuiSliderFlags_AlwaysClamp);
    char shown[64];
    std::snprintf(shown, sizeof shown, format, static_cast<double>(*value));
    traceControl(label, shown);
    report(changed, number);
    return changed;
}

bool intSpinner(const char* label, int* value, int min, int max, float speed, int number) {
    labelColumn(label);
    const float rate = dragRate(static_cast<float>(min), static_cast<float>(max), speed);
    const bool changed = ImGui::DragInt(hidden(label).c_str(), value, std::max(rate, 0.05f), min,
                                        max, "%d", ImGuiSliderFlags_AlwaysClamp);
    traceControl(label, std::to_string(*value));
    report(changed, number);
    return changed;
}

bool textField(const char* label, PanelText& text, int number, bool readOnly) {
    labelColumn(label);
    ImGuiInputTextFlags flags = ImGuiInputTextFlags_EnterReturnsTrue;
    if (readOnly) flags |= ImGuiInputTextFlags_ReadOnly;
    const bool entered = ImGui::InputText(hidden(label).c_str(), text.text, kPanelTextSize, flags);
    traceControl(label, text.c_str());
    report(entered && !readOnly, number);
    return entered;
}

bool button(const char* label, int number, float width) {
    const bool pressed = ImGui::Button(label, ImVec2(width, 0.0f));
    traceControl(label, "");
    report(pressed, number);
    return pressed;
}

void staticText(const char* text, bool centred) {
    if (centred) centreNext(ImGui::CalcTextSize(text).x);
    ImGui::TextUnformatted(text);
}

bool rangeSlider(const char* id, bool* on, const char* label, float range[2], float min, float max,
                 int number) {
    // The slider's label is shown beside its check box; the two values fill the next line.
    ImGui::PushID(id);
    const std::string boxLabel = std::string(label) + "###on";
    bool changed = ImGui::Checkbox(boxLabel.c_str(), on);
    traceControl(std::string(id) + " box", *on ? "on" : "off");
    ImGui::SetNextItemWidth(-FLT_MIN);
    const float rate = dragRate(min, max, 0.5f);
    changed |= ImGui::DragFloatRange2("##range", &range[0], &range[1], rate, min, max, "%.1f",
                                      "%.1f", ImGuiSliderFlags_AlwaysClamp);
    char value[64];
    std::snprintf(value, sizeof value, "%.1f %.1f", static_cast<double>(range[0]),
                  static_cast<double>(range[1]));
    traceControl(id, value);
    ImGui::PopID();
    report(changed, number);
    return changed;
}

bool beginRollout(const char* title) {
    const bool open = ImGui::TreeNodeEx(title, ImGuiTreeNodeFlags_Framed);
    traceControl(title, open ? "open" : "closed");
    if (open) tracePushSection(title);
    return open;
}

void endRollout() {
    tracePopSection();
    ImGui::TreePop();
}

}  // namespace panelui
