#pragma once
// Unit quaternions (w, x, y, z) for camera orientation.

#include "common_package/math/src/vec3.h"

struct Quat {
    double w = 1.0, x = 0.0, y = 0.0, z = 0.0;
};

double quatDot(const Quat& a, const Quat& b);
Quat quatNegate(const Quat& q);
Quat quatConjugate(const Quat& q);
Quat quatNormalized(const Quat& q);
// Hamilton product p q, normalised.
Quat quatMultiply(const Quat& p, const Quat& q);
// q^e: the rotation angle multiplied by e about the same axis.
Quat quatPower(const Quat& q, double e);
// Spherical interpolation along the shorter arc.
Quat quatSlerp(const Quat& q1, const Quat& q2, double u);
// Orientation of a camera looking along dir with the given up vector: the rotation whose
// columns are side, up' and -dir.
Quat quatFromView(const Vec3& dir, const Vec3& up);
// The inverse of quatFromView: up is the second column, dir minus the third.
void quatToView(const Quat& q, Vec3& dir, Vec3& up);
