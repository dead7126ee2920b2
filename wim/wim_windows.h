#pragma once
// The scene's door to the world-in-miniature windows: showing and hiding the overview map,
// and the history of views offered in its menu.
//
// This build has no world-in-miniature windows yet: the toggle says so and changes nothing,
// and the history keeps nothing.

#include "common_package/math/src/view.h"

enum class WimState {
    None,    // no overview window exists
    Shown,   // it is open
    Hidden,  // it exists but is hidden
};

// The overview window opened from the main view.
WimState mainWimState();

// Tab and "Show/Hide WIM (Tab)": by the state, create the overview window at logScale, hide
// it, or show it again.
void toggleMainWim(double logScale);

// Adds a view to the history of the overview map's menu.
void addHistoryView(const View& view);
