#pragma once
// Shared helpers of the star rendering tests: stars of a chosen magnitude and camera frames.

#include <cmath>
#include <cstdio>
#include <string>

#include "starrender/star_frame.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace srtest {

// The SIZE line of a file in parsecs gives the unit as a float.
constexpr double kParsecLog = static_cast<double>(16.4894f);
constexpr double kDegree = 3.14159265358979323846 / 180.0;

// A data line of a star at (x, y, z) pc whose magnitude seen from the origin is m (shifted
// scale), with file colour rgb.
inline std::string starAt(double x, double y, double z, double m, int hd,
                          const char* rgb = "1 1 1") {
    const double absMag = m - 5.0 * std::log10(std::sqrt(x * x + y * y + z * z) / 10.0);
    char buf[200];
    std::snprintf(buf, sizeof buf, "%.9g %.9g %.9g 0 1 2 3 0 0 0 0.6 %.9g %s 1 G 2 V %d\n", x, y, z,
                  std::pow(10.0, -absMag / 2.5), rgb, hd);
    return buf;
}

// A camera at `eye` (parsecs) turned `turn` degrees about y, projection scale f (1 / tan of
// half the vertical field), on an 800 x 600 viewport, one drawing unit per parsec.
inline StarFrame frameOf(const Vec3& eye, double turn, double f) {
    const double c = std::cos(turn * kDegree), s = std::sin(turn * kDegree);
    double mv[16] = {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1};
    for (int r = 0; r < 3; ++r)
        mv[12 + r] = -(mv[r] * eye.x + mv[4 + r] * eye.y + mv[8 + r] * eye.z);
    double proj[16] = {f * 600.0 / 800.0, 0, 0, 0, 0, f, 0, 0, 0, 0, -1, -1, 0, 0, -0.02, 0};
    const int viewport[4] = {0, 0, 800, 600};
    return makeStarFrame(mv, proj, viewport, kParsecLog);
}

// Looking down -z from eye with pixels of rpp radians.
inline StarFrame frameAt(const Vec3& eye, double rpp) {
    return frameOf(eye, 0.0, 1.0 / (300.0 * rpp));
}

}  // namespace srtest
