#pragma once
// 3 x 3 matrices of doubles, row-major: m[row][column].

#include "common_package/math/src/vec3.h"

struct Mat3 {
    double m[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

    static Mat3 fromColumns(const Vec3& c0, const Vec3& c1, const Vec3& c2);
    static Mat3 fromRows(const Vec3& r0, const Vec3& r1, const Vec3& r2);
    Vec3 row(int i) const { return {m[i][0], m[i][1], m[i][2]}; }
    Vec3 column(int j) const { return {m[0][j], m[1][j], m[2][j]}; }
};

Mat3 transpose(const Mat3& a);
Mat3 operator*(const Mat3& a, const Mat3& b);
Vec3 operator*(const Mat3& a, const Vec3& v);
double determinant(const Mat3& a);
// Writes the inverse and returns true; a singular matrix returns false and leaves out alone.
bool inverse(const Mat3& a, Mat3& out);
// Rotation by angleDegrees about a (not necessarily unit) axis, right-handed, as glRotate.
Mat3 rotationMatrix(double angleDegrees, const Vec3& axis);
