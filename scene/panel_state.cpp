#include "scene/panel_state.h"

#include <cstdio>

PanelState panelState;

RolloutOrder makeSceneRollouts() {
    return RolloutOrder({
        {"Basic [A]djustment", 'a'},
        {"[C]heckboxes", 'c'},
        {"Star [S]election", 's'},
        {"Star [P]icked or To Pick", 'p'},
        {"Star [T]exture", 't'},
        {"[I]mage Registration", 'i'},
        {"[M]ovie Control", 'm'},
        {"[O]rrery", 'o'},
        {"Star [V]elocity", 'v'},
        {"[E]xtrasolar Planet", 'e'},
        {"Scalable [W]IM", 'w'},
    });
}

std::string rangeSliderLabel(const char* name, const float range[2]) {
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, "%s [%.1f,%.1f]", name, static_cast<double>(range[0]),
                  static_cast<double>(range[1]));
    return buffer;
}
