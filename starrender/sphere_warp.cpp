// The sphere warp: an optional remapping of star directions by their angle from an axis.

#include <cmath>
#include <cstdio>

#include "catalogue/star_list.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kWarpEpsilon = 1e-5;   // smaller changes of axis or angles keep the warp
constexpr double kMinWarpAngle = 1e-7;  // stars this close to the axis stay where they are

}  // namespace

int StarList::setSphWarp(const double direction[3], double angleFrom, double angleTo) {
    if (!(angleFrom >= 0.0 && angleFrom <= kPi)) {
        std::fprintf(stderr,
                     "Err (StarList::setSphWarp): inSphwarpAngleFrm is out of range [0,pi].\n");
        return -1;
    }
    if (!(angleTo >= 0.0 && angleTo <= kPi)) {
        std::fprintf(stderr,
                     "Err (StarList::setSphWarp): inSphwarpAngleTo is out of range [0,pi].\n");
        return -1;
    }
    const double len = direction == nullptr
                           ? 0.0
                           : std::sqrt(direction[0] * direction[0] + direction[1] * direction[1] +
                                       direction[2] * direction[2]);
    if (!(len > 0.0) || !std::isfinite(len)) {
        std::fprintf(stderr,
                     "Err (StarList::setSphWarp): inSphwarpDir is not a valid direction.\n");
        return -1;
    }
    const double dir[3] = {direction[0] / len, direction[1] / len, direction[2] / len};
    bool changed = std::fabs(angleFrom - sphWarpAngleFrom) > kWarpEpsilon ||
                   std::fabs(angleTo - sphWarpAngleTo) > kWarpEpsilon;
    for (int c = 0; c < 3; ++c)
        changed = changed || std::fabs(dir[c] - sphWarpDir[c]) > kWarpEpsilon;
    if (!changed) return 1;
    for (int c = 0; c < 3; ++c)
        sphWarpDir[c] = dir[c];
    sphWarpAngleFrom = angleFrom;
    sphWarpAngleTo = angleTo;
    if (sphWarpOn) placeStarsAtYear();
    return 1;
}

int StarList::setSphWarpFunc(SphWarpFn warpFn) {
    if (warpFn == nullptr) return -1;
    sphWarpFn = warpFn;
    return 1;
}

int StarList::setSphWarpOn() {
    sphWarpOn = true;
    placeStarsAtYear();
    return 1;
}

int StarList::setSphWarpOff() {
    sphWarpOn = false;
    placeStarsAtYear();
    return 1;
}

// After a star has been moved to the displayed epoch: its angle a from the axis becomes
// warp(a), in the plane of the axis and the star.
void StarList::applySphereWarp(StarObj& star) const {
    if (sphWarpFn == nullptr) return;
    const Vec3 axis{sphWarpDir[0], sphWarpDir[1], sphWarpDir[2]};
    const Vec3 p = star.pos.xyz();
    const double len = length(p);
    if (len < kPhcZero) return;
    const Vec3 unit = p * (1.0 / len);
    double c = dot(unit, axis);
    c = c > 1.0 ? 1.0 : (c < -1.0 ? -1.0 : c);
    const double a = std::acos(c);
    if (a <= kMinWarpAngle) return;
    const double warped = sphWarpFn(a, sphWarpAngleFrom, sphWarpAngleTo);
    Vec3 perp = unit - axis * c;
    const double perpLen = length(perp);
    if (perpLen < kPhcZero) return;  // opposite the axis: no plane to turn in
    perp = perp * (1.0 / perpLen);
    const Vec3 moved = perp * std::sin(warped) + axis * std::cos(warped);
    star.pos.x = moved.x;
    star.pos.y = moved.y;
    star.pos.z = moved.z;
}
