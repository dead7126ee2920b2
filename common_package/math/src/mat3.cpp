#include "common_package/math/src/mat3.h"

#include <cmath>

Mat3 Mat3::fromColumns(const Vec3& c0, const Vec3& c1, const Vec3& c2) {
    Mat3 r;
    for (int i = 0; i < 3; ++i) {
        r.m[i][0] = c0[i];
        r.m[i][1] = c1[i];
        r.m[i][2] = c2[i];
    }
    return r;
}

Mat3 Mat3::fromRows(const Vec3& r0, const Vec3& r1, const Vec3& r2) {
    return transpose(fromColumns(r0, r1, r2));
}

Mat3 transpose(const Mat3& a) {
    Mat3 r;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) r.m[i][j] = a.m[j][i];
    return r;
}

Mat3 operator*(const Mat3& a, const Mat3& b) {
    Mat3 r;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            r.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j];
    return r;
}

Vec3 operator*(const Mat3& a, const Vec3& v) { return {dot(a.row(0), v), dot(a.row(1), v), dot(a.row(2), v)}; }

double determinant(const Mat3& a) { return dot(a.row(0), cross(a.row(1), a.row(2))); }

bool inverse(const Mat3& a, Mat3& out) {
    double det = determinant(a);
    if (det == 0.0 || !std::isfinite(det)) return false;
    // The inverse is the transposed cofactor matrix over the determinant; the cofactor
    // rows are cross products of the matrix's rows.
    Vec3 c0 = cross(a.row(1), a.row(2));
    Vec3 c1 = cross(a.row(2), a.row(0));
    Vec3 c2 = cross(a.row(0), a.row(1));
    out = Mat3::fromColumns(c0 * (1.0 / det), c1 * (1.0 / det), c2 * (1.0 / det));
    return true;
}

Mat3 rotationMatrix(double angleDegrees, const Vec3& axis) {
    Vec3 u = normalized(axis);
    double a = angleDegrees * M_PI / 180.0;
    double c = std::cos(a), s = std::sin(a), t = 1.0 - c;
    Mat3 r;
    r.m[0][0] = t * u.x * u.x + c;
    r.m[0][1] = t * u.x * u.y - s * u.z;
    r.m[0][2] = t * u.x * u.z + s * u.y;
    r.m[1][0] = t * u.x * u.y + s * u.z;
    r.m[1][1] = t * u.y * u.y + c;
    r.m[1][2] = t * u.y * u.z - s * u.x;
    r.m[2][0] = t * u.x * u.z - s * u.y;
    r.m[2][1] = t * u.y * u.z + s * u.x;
    r.m[2][2] = t * u.z * u.z + c;
    return r;
}
