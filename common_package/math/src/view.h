#pragma once
// The view record: the camera of a keyframe, of an interpolated frame, or of the live view.
// Twelve doubles in this order.

#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"

struct View {
    Phc viewPos;                    // position in power homogeneous coordinates
    Vec3 viewDir{0.0, 0.0, -1.0};   // unit viewing direction
    Vec3 viewUp{0.0, 1.0, 0.0};     // unit up vector
    double fovy = 60.0;             // vertical field of view in degrees
    double aspect = 1.0;            // width / height
};
