#pragma once
// What the control panel holds besides the scene settings it is bound to: its copies of the
// view values, the star selection sliders, the text fields of the movie and registration
// rollouts, the rollout order and the "next key selects a rollout" flag.

#include <string>

#include "catalogue/star_parameter.h"
#include "scene/panel_text.h"
#include "scene/rollout_order.h"

// Limits of the star selection sliders.
constexpr float kVMagSliderMin = -2.0f, kVMagSliderMax = 10.0f;
constexpr float kLogDistSliderMin = 10.0f, kLogDistSliderMax = 25.0f;
constexpr float kSptypeSliderMin = -1.0f, kSptypeSliderMax = 10.0f;

struct RangeSlider {
    bool on = false;  // its check box
    float range[2] = {0.0f, 0.0f};
    std::string label;  // "VMag [%.1f,%.1f]" filled in
};

struct RegistrationStarControls {
    std::string buttonLabel = "take picked star [ --- ]";
    float texcoord[2] = {0.0f, 0.0f};  // "texcoord. x:", "texcoord. y:"
};

struct PanelState {
    // Copies of the view, synchronised with the framework every frame.
    float logScale = 0.0f;         // "Log10(m) space:"
    float fovy = 60.0f;            // "Fovy:"
    float aspect = 1.0f;           // "Aspect Ratio:"
    bool fixAspect = false;        // "Fix as width/height"
    bool showFrameNumber = false;  // "show frame num. (n)"

    // "Galactic l:"/"Galactic b:", or "Eqn. RA:"/"Eqn. DEC:" while Ra/Dec is shown.
    bool raDecLabels = false;

    RangeSlider vmag;
    RangeSlider logDist;
    RangeSlider sptype[kNumSpectralClasses];

    RegistrationStarControls registration[3];
    PanelText alignFile;  // "Align File:", "imagereg/"
    PanelText imageFile;  // "Image File:"

    PanelText script;   // "Script:" (the framework's script name)
    PanelText header;   // "header:", "Movie/skyrama"
    PanelText ppmFile;  // "ppm file:", "skyrama.ppm"

    RolloutOrder rollouts{{}};
    bool selectRolloutNext = false;  // "m" was pressed: the next key selects a rollout
    bool built = false;              // createPanel has run
};

extern PanelState panelState;

// The eleven rollouts in their first order, with their shortcut letters.
RolloutOrder makeSceneRollouts();

// The label of a range slider, "<name> [%.1f,%.1f]".
std::string rangeSliderLabel(const char* name, const float range[2]);
