#pragma once
// The picked star and the anchor: a copy of the record of the star the user picked (or of
// the anchor, a marker placed on the empty sky), described by the panel and the information
// box.

#include <string>

#include "catalogue/star_obj.h"
#include "scene/picked_star_texts.h"

// The anchor starts one parsec along the galactic x axis.
constexpr double kAnchorStartExponent = 16.4894;
// A click on the empty sky puts the anchor this many decades beyond the drawing unit.
constexpr double kAnchorDepthDecades = 3.5;

struct PickState {
    bool starPicked = false;
    StarObj pickedStar;  // the anchor's copy (HD -2) when the anchor is picked
    StarObj anchor;
    std::string anchorLabel = " (0,0)";
    PickedStarTexts texts;  // the panel's "Star [P]icked or To Pick" fields
};

extern PickState pickState;

// Unpicked, the anchor back at its start, every field empty.
void resetPickState();

// A star or the anchor is being described (the information box is shown).
bool somethingPicked();
bool anchorPicked();
// The picked star has extrasolar planets.
bool pickedStarHasPlanets();

// The anchor record at a position: HD -2, named "anchor".
StarObj makeAnchorRecord(const Phc& position);
