#include "common_package/math/src/phc.h"

#include <cmath>

bool phcIsZero(const Phc& p) { return length(p.xyz()) < kPhcZero; }

bool phcNormalize(Phc& p) {
    double r = length(p.xyz());
    if (r < kPhcZero) return false;
    p.w += std::log10(r);
    p.x /= r;
    p.y /= r;
    p.z /= r;
    return true;
}

Phc phcNormalized(Phc p) {
    phcNormalize(p);
    return p;
}

Phc phcScale(const Phc& p, double k) { return {k * p.x, k * p.y, k * p.z, p.w}; }

Phc phcRescale(const Phc& p, double e) {
    double r = length(p.xyz());
    if (r < kPhcZero) return {p.x, p.y, p.z, e};
    if (std::fabs(p.w - e) < kPhcZero) return p;
    double f = std::pow(10.0, p.w - e);
    return {p.x * f, p.y * f, p.z * f, e};
}

Phc phcAdd(const Phc& a, const Phc& b) {
    Phc na = a, nb = b;
    bool aNonZero = phcNormalize(na);
    bool bNonZero = phcNormalize(nb);
    if (!aNonZero) return nb;
    if (!bNonZero) return na;
    if (na.w > nb.w + kPhcDecadesKept) return na;
    if (nb.w > na.w + kPhcDecadesKept) return nb;
    if (na.w > nb.w) {
        na = phcRescale(na, nb.w);
    } else {
        nb = phcRescale(nb, na.w);
    }
    return {na.x + nb.x, na.y + nb.y, na.z + nb.z, na.w};
}

Phc phcSub(const Phc& a, const Phc& b) { return phcAdd(a, phcScale(b, -1.0)); }

bool phcEqual(const Phc& a, const Phc& b) { return phcIsZero(phcSub(a, b)); }

double phcLengthMeters(const Phc& p) {
    Phc n = p;
    if (!phcNormalize(n)) return 0.0;
    return std::pow(10.0, n.w);
}

Vec3 phcToDrawing(const Phc& p, double logScale) {
    Phc n = p;
    if (!phcNormalize(n)) return {0.0, 0.0, 0.0};
    return n.xyz() * std::pow(10.0, n.w - logScale);
}
