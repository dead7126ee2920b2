#pragma once
// Pieces shared by the passes of star drawing (internal to starrender).

#include <cmath>

#include "catalogue/star_list.h"
#include "common_package/math/src/vec3.h"
#include "starrender/brightness_model.h"
#include "starrender/depth_log.h"
#include "starrender/star_frame.h"

// Star i relative to the eye in drawing units (k: drawing units per cached unit), as every
// pass works it out, so that they all agree on which stars are in front.
inline void eyeRelative(const StarDrawPositions& c, int i, double k, const Vec3& eye, double p[3]) {
    p[0] = c.x[i] * k - eye.x;
    p[1] = c.y[i] * k - eye.y;
    p[2] = c.z[i] * k - eye.z;
}
// In front of the eye: on the viewing direction's side of the plane through the eye.
inline bool inFrontOf(const double p[3], const Vec3& dir) {
    return p[0] * dir.x + p[1] * dir.y + p[2] * dir.z >= 0.0;
}

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

// A vertex's distance from the eye, and its direction (zero for one at the eye), as sprites
// and the records of textured frames take them.
inline double lengthOf(const double v[3]) {
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}
inline Vec3 unitOf(const double v[3], double dist) {
    const double inv = dist > 0.0 ? 1.0 / dist : 0.0;
    return Vec3{v[0] * inv, v[1] * inv, v[2] * inv};
}

// The size classifier of the frame's settings. Making one fills its tables, so the last one
// is kept for as long as the settings stay.
const StarSizeClassifier& classifierFor(float starScale, double radiansPerPixel, double texScale,
                                        int largeLimit);

// Turns an eye-relative position p (drawing units, len2 its squared length) into the drawn
// vertex, in place: beyond 10^3.5 units from the eye the distance is compressed. Returns
// log10 of the distance (minus infinity for a star at the eye).
double placeVertex(double p[3], double len2);
// Scales p, at depth beyond 10^3.5 units, to its compressed distance.
void compressVertex(double p[3], double len2, double depth);
// placeVertex with the depth, 0.5 log10(len2), already worked out.
inline void placeVertexAtDepth(double p[3], double len2, double depth) {
    if (depth > kDepthCompressStart) compressVertex(p, len2, depth);
}

// placeVertex for a point whose depth is not wanted: within 10^3.5 units (squared length
// below 10^7, kept clear of the edge by far more than log10 can be off) nothing changes and
// no logarithm is taken.
inline void placePoint(double p[3], double len2) {
    if (len2 < 9.99e6) return;
    placeVertex(p, len2);
}
