#pragma once
// Measurement against a registered photograph: image differences in the examine windows, the
// random search of texture coordinates that lowers them, and star sizes and star textures
// measured in the photograph. The scene requests these from its panel and runs them inside
// the next frame.
//
// This build has no measurement yet: every request says so once and changes nothing.

// Compares the rendered stars with the photograph in every examine window.
void computeImageDifference(double frame, int starDrawingFlags, int viewportWidth,
                            int viewportHeight, float noiseCutoff);
// Writes the model, photo and difference images of every examine window.
void exportImageDifference();
// One trial of the texture-coordinate jitter search: 1 to go on, 0 when finished or refused.
int jitterStep();
// Measures (or, with extract, cuts out textures of) the picked star or the stars listed in
// starListFile (null for the picked star).
void measureStars(bool extract, const char* starListFile);
