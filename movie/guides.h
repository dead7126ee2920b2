#pragma once
// Guide (control) views of keyframes that the script does not give, computed from the
// neighbouring keyframes after loading.

#include "movie/keyframe.h"

// Fills the guide views of k that the script did not give, from its previous and next
// keyframes as they stand now (null when missing).
void computeGuides(KeyFrame& k, const KeyFrame* prev, const KeyFrame* next);

// The guide-in (wantIn) or guide-out view of k for the neighbours p and n, with k's factors.
// The one-sided cases pass k itself as p or n.
View guideView(const KeyFrame& p, const KeyFrame& k, const KeyFrame& n, bool wantIn);
