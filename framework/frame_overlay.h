#pragma once
// The frame-number overlay in the lower left corner of the drawing area.

#include <string>

// "Frame %d/%d" (integer part of the frame, last frame), or with doubleRate
// "Frame %.1f/%d" (the frame, 2 x the last frame); " (*)" is added on a keyframe.
std::string frameInfoText(double frame, int totalNumFrame, bool doubleRate, bool onKeyFrame);

// Draws frameInfoText for currFrame in the Roman stroke font, depth test off; both matrices
// are restored.
void drawFrameInfo();
