#include "scene/pick_state.h"

#include <cstring>

PickState pickState;

StarObj makeAnchorRecord(const Phc& position) {
    StarObj a = makeEmptyStarObj();
    a.catalogPos = position;
    a.pos = position;
    a.hd = kAnchorHD;
    a.hic = 0;
    std::strncpy(a.commonName, "anchor", kStarNameSize - 1);
    a.commonName[kStarNameSize - 1] = '\0';
    a.constellationName[0] = '\0';
    a.constellationCode[0] = '\0';
    return a;
}

void resetPickState() {
    pickState.starPicked = false;
    pickState.pickedStar = makeEmptyStarObj();
    pickState.anchor = makeAnchorRecord(Phc{1.0, 0.0, 0.0, kAnchorStartExponent});
    pickState.anchorLabel = " (0,0)";
    pickState.texts = PickedStarTexts{};
}

bool anchorPicked() {
    return !pickState.starPicked && pickState.pickedStar.hd == kAnchorHD;
}

bool somethingPicked() {
    return pickState.starPicked || anchorPicked();
}

bool pickedStarHasPlanets() {
    return pickState.starPicked && pickState.pickedStar.numPlanets > 0 &&
           pickState.pickedStar.planets != nullptr;
}
