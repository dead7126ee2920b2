#pragma once
// Power homogeneous coordinates: (x, y, z) x 10^w metres. One scene spans metres to the
// galaxy because every position keeps its own power of ten.

#include "common_package/math/src/vec3.h"

// Below this length a PHC triple counts as zero and is never normalised.
constexpr double kPhcZero = 1e-7;
// Sums whose exponents differ by more than this many decades keep only the larger term.
constexpr double kPhcDecadesKept = 15.0;
constexpr double kParsecLog10 = 16.4894;  // log10 of one parsec in metres

struct Phc {
    double x = 0.0, y = 0.0, z = 0.0, w = 0.0;

    Vec3 xyz() const { return {x, y, z}; }
    static Phc from(const Vec3& v, double w) { return {v.x, v.y, v.z, w}; }
};

inline bool operator==(const Phc& a, const Phc& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}

// True when the triple is too short to normalise (the position is the origin).
bool phcIsZero(const Phc& p);
// Makes (x, y, z) unit length, moving the length into w. A zero triple is left unchanged
// and false is returned.
bool phcNormalize(Phc& p);
Phc phcNormalized(Phc p);
Phc phcScale(const Phc& p, double k);
// Expresses p with the exponent e (a zero triple only takes the exponent).
Phc phcRescale(const Phc& p, double e);
// A + B with exponents aligned to the smaller one; a term more than 15 decades smaller
// than the other is dropped.
Phc phcAdd(const Phc& a, const Phc& b);
Phc phcSub(const Phc& a, const Phc& b);
bool phcEqual(const Phc& a, const Phc& b);
// Distance from the origin in metres (0 for the origin).
double phcLengthMeters(const Phc& p);
// Where p is drawn at log scale s: its unit direction times 10^(w - s).
Vec3 phcToDrawing(const Phc& p, double logScale);
