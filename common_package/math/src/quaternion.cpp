#include "common_package/math/src/quaternion.h"

#include <cmath>

double quatDot(const Quat& a, const Quat& b) { return a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z; }

Quat quatNegate(const Quat& q) { return {-q.w, -q.x, -q.y, -q.z}; }

Quat quatConjugate(const Quat& q) { return {q.w, -q.x, -q.y, -q.z}; }

Quat quatNormalized(const Quat& q) {
    double r = std::sqrt(quatDot(q, q));
    if (r == 0.0) return q;
    return {q.w / r, q.x / r, q.y / r, q.z / r};
}

Quat quatMultiply(const Quat& p, const Quat& q) {
    Vec3 pv{p.x, p.y, p.z}, qv{q.x, q.y, q.z};
    Vec3 v = cross(pv, qv) + q.w * pv + p.w * qv;
    return quatNormalized({p.w * q.w - dot(pv, qv), v.x, v.y, v.z});
}

Quat quatPower(const Quat& q, double e) {
    double w = q.w > 1.0 ? 1.0 : (q.w < -1.0 ? -1.0 : q.w);
    double th = std::acos(w);
    double s = std::sin(th);
    if (s == 0.0) return q;
    double k = std::sin(e * th) / s;
    return quatNormalized({std::cos(e * th), q.x * k, q.y * k, q.z * k});
}

Quat quatSlerp(const Quat& q1, const Quat& q2, double u) {
    double c = quatDot(q1, q2);
    double sign = 1.0;
    if (c < 0.0) {
        c = -c;
        sign = -1.0;
    }
    double a, b;
    if (1.0 - c >= 1e-7) {
        double th = std::acos(c);
        double s = std::sin(th);
        a = std::sin(th - u * th) / s;
        b = std::sin(u * th) / s;
    } else {
        a = 1.0 - u;
        b = u;
    }
    b *= sign;
    return quatNormalized(
        {a * q1.w + b * q2.w, a * q1.x + b * q2.x, a * q1.y + b * q2.y, a * q1.z + b * q2.z});
}

Quat quatFromView(const Vec3& dir, const Vec3& up) {
    Vec3 f = normalized(dir);
    Vec3 side = normalized(cross(f, up));
    Vec3 u = normalized(cross(side, f));
    // Rotation matrix with columns side, u, -f; m[row][column].
    const double m00 = side.x, m10 = side.y, m20 = side.z;
    const double m01 = u.x, m11 = u.y, m21 = u.z;
    const double m02 = -f.x, m12 = -f.y, m22 = -f.z;
    const double sq[4] = {(1.0 + m00 + m11 + m22) / 4.0, (1.0 + m00 - m11 - m22) / 4.0,
                          (1.0 - m00 + m11 - m22) / 4.0, (1.0 - m00 - m11 + m22) / 4.0};
    int big = 0;
    for (int i = 1; i < 4; ++i)
        if (sq[i] > sq[big]) big = i;
    const double r = std::sqrt(sq[big]);
    const double d = 4.0 * r;
    Quat q;
    switch (big) {
        case 0:
            q = {r, (m21 - m12) / d, (m02 - m20) / d, (m10 - m01) / d};
            break;
        case 1:
            q = {(m21 - m12) / d, r, (m01 + m10) / d, (m02 + m20) / d};
            break;
        case 2:
            q = {(m02 - m20) / d, (m01 + m10) / d, r, (m12 + m21) / d};
            break;
        default:
            q = {(m10 - m01) / d, (m02 + m20) / d, (m12 + m21) / d, r};
            break;
    }
    return quatNormalized(q);
}

void quatToView(const Quat& q, Vec3& dir, Vec3& up) {
    const double w = q.w, x = q.x, y = q.y, z = q.z;
    up = normalized({2.0 * (x * y - w * z), w * w - x * x + y * y - z * z, 2.0 * (w * x + y * z)});
    dir = normalized(-Vec3{2.0 * (w * y + x * z), 2.0 * (y * z - w * x), w * w - x * x - y * y + z * z});
}
