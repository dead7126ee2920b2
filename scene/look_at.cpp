#include "scene/look_at.h"

#include <cmath>

namespace {

constexpr double kDegrees = 180.0 / 3.14159265358979323846;

double degreesBetween(const Vec3& a, const Vec3& b) {
    return angleBetween(a, b) * kDegrees;
}

}  // namespace

Mat3 modelviewRotation(const double modelview[16]) {
    Mat3 r;
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            r.m[row][col] = modelview[col * 4 + row];
    return r;
}

LookAtTurn lookAtTurn(const View& view, const Mat3& rotation, const Phc& star) {
    LookAtTurn turn;
    const Vec3 viewDir = normalized(view.viewDir);
    Vec3 target;
    Phc fromEye = phcSub(star, view.viewPos);
    if (phcNormalize(fromEye)) target = fromEye.xyz();
    if (length(target) == 0.0 || degreesBetween(viewDir, target) >= 180.0 - view.fovy / 2.0) {
        Phc fromOrigin = star;
        if (!phcNormalize(fromOrigin)) return turn;
        target = fromOrigin.xyz();
    }
    const double angle = degreesBetween(viewDir, target);
    if (!(angle >= kLookAtMinimumAngle)) return turn;
    Vec3 axis = cross(target, viewDir);
    if (length(axis) < 1e-12) {
        // Straight behind: any axis across the view turns it round; take the view's up.
        axis = normalized(view.viewUp);
    }
    turn.start = true;
    turn.axisEye = normalized(rotation * normalized(axis));
    turn.angle = angle;
    turn.speed = angle / kLookAtSeconds;
    return turn;
}
