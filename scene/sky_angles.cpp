#include "scene/sky_angles.h"

#include <cmath>

#include "common_package/math/src/mat3.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegrees = 180.0 / kPi;

}  // namespace

SkyAngles skyAnglesOf(const Vec3& v) {
    const double r = length(v);
    if (r == 0.0) return {0.0, 0.0};
    double l = std::atan2(v.y, v.x) * kDegrees;
    if (l < 0.0) l += 360.0;
    double s = v.z / r;
    s = s > 1.0 ? 1.0 : (s < -1.0 ? -1.0 : s);
    return {l, std::asin(s) * kDegrees};
}

Vec3 unitVectorOf(double longitudeDegrees, double latitudeDegrees) {
    const double l = longitudeDegrees / kDegrees;
    const double b = latitudeDegrees / kDegrees;
    return {std::cos(b) * std::cos(l), std::cos(b) * std::sin(l), std::sin(b)};
}

Vec3 equatorialFromGalactic(const Vec3& galactic) {
    const Mat3 first = rotationMatrix(-32.931, {0.0, 0.0, 1.0});
    const Mat3 second = rotationMatrix(62.882, {1.0, 0.0, 0.0});
    const Mat3 third = rotationMatrix(-77.142, {0.0, 0.0, 1.0});
    return third * (second * (first * galactic));
}

Sexagesimal sexagesimalOf(double value) {
    double v = std::fabs(value);
    if (!std::isfinite(v) || v > 1e9) v = 0.0;
    int whole = static_cast<int>(v);
    const double restMinutes = (v - whole) * 60.0;
    int minutes = static_cast<int>(restMinutes);
    double seconds = (restMinutes - minutes) * 60.0;
    // "%.1f" of 59.96 would read 60.0: carry it into the minutes.
    if (seconds >= 59.95) {
        seconds = 0.0;
        if (++minutes == 60) {
            minutes = 0;
            ++whole;
        }
    }
    return {whole, minutes, seconds};
}
