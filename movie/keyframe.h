#pragma once
// One keyframe of a movie script: the camera, its timing, its per-channel shape factors,
// its guide (control) views and the methods and constraints of the segment that follows it.

#include "common_package/math/src/view.h"

// Interpolation methods of the four camera channels (bit values, one per channel word).
constexpr int INTERP_LINEAR = 1;
constexpr int INTERP_SPLINE = 2;
constexpr int INTERP_LINEAR_QUAT = 4;
constexpr int INTERP_SPLINE_QUAT = 8;
constexpr int INTERP_LINEAR_FOVY = 16;
constexpr int INTERP_SPLINE_FOVY = 32;
constexpr int INTERP_LINEAR_ASPECT = 64;
constexpr int INTERP_SPLINE_ASPECT = 128;

// Shape of a channel's curve at a keyframe: level blends the tangent between "towards the
// neighbour" (0) and "along the chord of the neighbours" (1); in and out stretch the
// incoming and outgoing tangents.
struct ChannelFactors {
    double level = 0.0;
    double in = 1.0;
    double out = 1.0;
};

struct KeyFrame {
    int index = 0;  // place in the list, 0-based
    View view;
    // Frames strictly between the previous keyframe and this one; for the first keyframe its
    // own frame number (not used for timing).
    int nFrames = 0;
    ChannelFactors posFactors;
    ChannelFactors quatFactors;
    ChannelFactors fovyFactors;
    ChannelFactors aspectFactors;
    int isBreak = 0;  // the path may bend sharply here
    View guideIn;     // control view before the keyframe
    View guideOut;    // control view after the keyframe
    unsigned char guideInGiven = 0;
    unsigned char guideOutGiven = 0;
    // Methods of the segment that starts here: the script's, changed by sessions.
    int interpMethod = INTERP_LINEAR;
    int interpMethodQuat = INTERP_LINEAR_QUAT;
    int interpMethodFovy = INTERP_LINEAR_FOVY;
    int interpMethodAspect = INTERP_LINEAR_ASPECT;
    int fixedLookAtSession = -1;  // FixAtPt session covering the following segment, or -1
    int fixedUpSession = -1;      // FixHeadUp session covering the following segment, or -1
    double frameNumber = 0.0;     // as written on the KeyFrame line
};
