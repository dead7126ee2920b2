#pragma once
// The control panel's controls, drawn with Dear ImGui: check boxes, spinners (drag widgets
// with limits), text fields, buttons, static texts, range sliders and nested rollouts. A
// control with a number reports every change to panelCallback(number); kNoCallback means it
// only changes the value it is bound to.

#include <climits>

#include "scene/panel_text.h"

constexpr int kNoCallback = INT_MIN;

namespace panelui {

// Width of the label column in front of spinners and fields.
constexpr float kLabelWidth = 152.0f;

bool checkBox(const char* label, bool* value, int number = kNoCallback, bool centred = false);
// Spinner speeds are per-pixel rates relative to the limits: speed x (max - min) / 500, at
// least (max - min) / 1000 per pixel. Typed values (Ctrl + click) are clamped to the limits.
bool floatSpinner(const char* label, float* value, float min, float max, float speed,
                  int number = kNoCallback, const char* format = "%.3f");
bool intSpinner(const char* label, int* value, int min, int max, float speed,
                int number = kNoCallback);
// A text field; its callback runs when Enter is pressed in it.
bool textField(const char* label, PanelText& text, int number = kNoCallback, bool readOnly = false);
bool button(const char* label, int number, float width = 0.0f);
void staticText(const char* text, bool centred = false);
// A check box and a two-value range slider labelled label (the slider's text), both reporting
// number. id keeps the slider the same control when its label changes.
bool rangeSlider(const char* id, bool* on, const char* label, float range[2], float min, float max,
                 int number);
// A nested rollout; when it returns true, call endRollout after its contents.
bool beginRollout(const char* title);
void endRollout();

}  // namespace panelui
