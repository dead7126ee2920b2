#pragma once
// "look at star": the animated turn of the view that brings the picked star to the centre.

#include "common_package/math/src/mat3.h"
#include "common_package/math/src/phc.h"
#include "common_package/math/src/view.h"

// Turns through less than this angle (degrees) are not started.
constexpr double kLookAtMinimumAngle = 0.00001;
// The turn takes this long, whatever its angle (seconds).
constexpr double kLookAtSeconds = 1.5;

struct LookAtTurn {
    bool start = false;
    Vec3 axisEye;        // turn axis in eye coordinates
    double angle = 0.0;  // degrees
    double speed = 0.0;  // degrees per second
};

// The turn from the view towards a star at position star (PHC). The direction to the star
// is taken from the viewpoint while it lies within 180 - fovy / 2 degrees of the viewing
// direction, else from the origin. rotation: the modelview's upper 3 x 3 (world to eye).
LookAtTurn lookAtTurn(const View& view, const Mat3& rotation, const Phc& star);

// The modelview's upper 3 x 3 of a column-major 4 x 4 matrix.
Mat3 modelviewRotation(const double modelview[16]);
