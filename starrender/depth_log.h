#pragma once
// log10 for the depths of star drawing, taken for every star in front of the eye every frame.
// The library's log10 is a call that cannot be interleaved with the neighbouring stars' work;
// this one is inline and branch-free for every positive finite argument. It agrees with the
// library's log10 to within about 1e-16 (absolute) over the whole range of doubles, far below
// what a magnitude kept as a float or a vertex handed on as floats can show. Every pass of
// star drawing takes its depths through it, so that the passes agree with each other exactly.

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace depthlog {

constexpr int kTableBits = 7;
constexpr int kTableSize = 1 << kTableBits;
// The mantissa range [sqrt(1/2), sqrt 2) is cut into kTableSize pieces by the bits below the
// exponent of (bits of x) - kOffset.
constexpr std::uint64_t kOffset = 0x3fe6a09e667f3bcdULL;

struct Entry {
    double invC;    // about 1 / (the middle of the piece)
    double log10C;  // -log10(invC), to full double precision
};
extern const Entry* const kTable;

}  // namespace depthlog

inline double fastLog10(double x) {
    using namespace depthlog;
    if (!(x >= DBL_MIN && x <= DBL_MAX)) return std::log10(x);  // 0, subnormal, inf, NaN, < 0
    std::uint64_t ix;
    std::memcpy(&ix, &x, sizeof ix);
    const std::uint64_t tmp = ix - kOffset;
    const int i = static_cast<int>((tmp >> (52 - kTableBits)) % kTableSize);
    const double k = static_cast<double>(static_cast<std::int64_t>(tmp) >> 52);
    const std::uint64_t iz = ix - (tmp & (0xfffULL << 52));
    double z;
    std::memcpy(&z, &iz, sizeof z);
    // x = 2^k z, z = c (1 + r) with |r| < 1/256.
    const double r = z * kTable[i].invC - 1.0;
    const double r2 = r * r;
    // log(1 + r) - r, to r^6 (the next term is below 1e-19).
    const double p = r2 * (-0.5 + r * (1.0 / 3.0) + r2 * (-0.25 + r * 0.2 + r2 * (-1.0 / 6.0)));
    constexpr double kInvLn10 = 0.43429448190325182765;
    // log10(2) split so that k times the high part is exact.
    constexpr double kLog2Hi = 0.30102999566383914;  // 0x3fd34413509f7000: 12 low bits clear
    constexpr double kLog2Lo = 1.42050232272661e-13;
    return k * kLog2Hi + kTable[i].log10C + (k * kLog2Lo + (r + p) * kInvLn10);
}
