#pragma once
// Three-vectors of doubles: directions, up vectors, velocities.

#include <cmath>

struct Vec3 {
    double x = 0.0, y = 0.0, z = 0.0;

    double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }
    double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator-(const Vec3& a) { return {-a.x, -a.y, -a.z}; }
inline Vec3 operator*(const Vec3& a, double k) { return {a.x * k, a.y * k, a.z * k}; }
inline Vec3 operator*(double k, const Vec3& a) { return a * k; }
inline bool operator==(const Vec3& a, const Vec3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

inline double dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec3& a) { return std::sqrt(dot(a, a)); }

// Divides by the length; a zero vector is left unchanged.
inline Vec3 normalized(const Vec3& a) {
    double r = length(a);
    return r == 0.0 ? a : a * (1.0 / r);
}

// Angle between two directions in radians (0 when either is zero).
inline double angleBetween(const Vec3& a, const Vec3& b) {
    double la = length(a), lb = length(b);
    if (la == 0.0 || lb == 0.0) return 0.0;
    double c = dot(a, b) / (la * lb);
    return std::acos(c > 1.0 ? 1.0 : (c < -1.0 ? -1.0 : c));
}
