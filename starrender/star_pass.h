#pragma once
// Pieces shared by the passes of star drawing (internal to starrender).

#include "starrender/brightness_model.h"
#include "starrender/depth_log.h"

// A star's magnitude as every pass works it out, so that the passes, and the records brought
// up to date later, agree exactly: apparentMagnitude at the eye-relative w = currLogScale +
// depth, the depth being log10 of the star's distance from the eye in drawing units.
inline double magnitudeShift(double currLogScale, float vmagMin) {
    return 5.0 * ((currLogScale - 16.4894) - 1.0) + (10.0 - vmagMin);
}
inline double depthOf(double len2) {
    return 0.5 * fastLog10(len2);
}
inline float magnitudeAtDepth(float absMag, double depth, double shift) {
    return static_cast<float>(absMag + 5.0 * depth + shift);
}

// The size classifier of the frame's settings. Making one fills its tables, so the last one
// is kept for as long as the settings stay.
const StarSizeClassifier& classifierFor(float starScale, double radiansPerPixel, double texScale,
                                        int largeLimit);

// Turns an eye-relative position p (drawing units, len2 its squared length) into the drawn
// vertex, in place: beyond 10^3.5 units from the eye the distance is compressed. Returns
// log10 of the distance (minus infinity for a star at the eye).
double placeVertex(double p[3], double len2);
// placeVertex with the depth, 0.5 log10(len2), already worked out.
void placeVertexAtDepth(double p[3], double len2, double depth);

// placeVertex for a point whose depth is not wanted: within 10^3.5 units (squared length
// below 10^7, kept clear of the edge by far more than log10 can be off) nothing changes and
// no logarithm is taken.
inline void placePoint(double p[3], double len2) {
    if (len2 < 9.99e6) return;
    placeVertex(p, len2);
}
