#include "movie/timing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr double kTiny = 1e-7;
constexpr double kSearchTolerance = 1e-5;  // frames
// Bisection halves the interval each step; after this many steps the double u no longer
// changes, so a target the curve cannot reach within the tolerance (a curve that is not
// monotonic, or one with huge control values) still ends.
constexpr int kMaxBisections = 200;
}  // namespace

double bezier1D(double p0, double p1, double p2, double p3, double u) {
    double v = 1.0 - u;
    return v * v * v * p0 + 3.0 * u * v * v * p1 + 3.0 * u * u * v * p2 + u * u * u * p3;
}

double controlValueAfter(double p0, double p1, double p2, double level, double factor) {
    double d = p2 - p0;
    double a = std::fabs(p0 - p1);
    double c = std::fabs(p2 - p1);
    if (a < kTiny) return p1 + factor * d / 6.0;
    if (c < kTiny) return p1;
    double m = std::min(a, c);
    double sigma = p2 > p1 ? 1.0 : -1.0;
    return p1 + factor * ((1.0 - level) / 2.0 * m * sigma + level * d / 6.0);
}

double controlValueBefore(double p0, double p1, double p2, double level, double factor) {
    double d = p2 - p0;
    double a = std::fabs(p0 - p1);
    double c = std::fabs(p2 - p1);
    if (a < kTiny) return p1;
    if (c < kTiny) return p1 - factor * d / 6.0;
    double m = std::min(a, c);
    double sigma = p0 > p1 ? 1.0 : -1.0;
    return p1 + factor * ((1.0 - level) / 2.0 * m * sigma - level * d / 6.0);
}

double searchLocalT(double p0, double p1, double p2, double p3, double target) {
    if (target == p0) return 0.0;
    if (target == p3) return 1.0;
    if (target < p0 || target > p3) {
        std::fprintf(stderr, "ERR in searchLocalT\n");
        return target < p0 ? 0.0 : 1.0;
    }
    double lo = 0.0, hi = 1.0, u = 0.5;
    for (int i = 0; i < kMaxBisections; ++i) {
        u = (lo + hi) / 2.0;
        double v = bezier1D(p0, p1, p2, p3, u);
        if (v <= target)
            lo = u;
        else
            hi = u;
        if (std::fabs(v - target) <= kSearchTolerance) break;
    }
    return u;
}

double timingCurve(const KeyFrame* before, const KeyFrame& a, const KeyFrame& b,
                   const KeyFrame* after, double t) {
    double len = b.nFrames + 1.0;
    double pBefore = (before && !a.isBreak) ? -(a.nFrames + 1.0) : 0.0;
    double pAfter = (after && !b.isBreak) ? len + after->nFrames + 1.0 : len;
    // The control after a takes a's position in factor and the control before b takes b's
    // position out factor.
    double c1 = controlValueAfter(pBefore, 0.0, len, a.posFactors.level, a.posFactors.in);
    double c2 = controlValueBefore(0.0, len, pAfter, b.posFactors.level, b.posFactors.out);
    return searchLocalT(0.0, c1, c2, len, t * len);
}
