// The front pass, one star at a time or four at a time. Built without fused multiply-adds
// (see CMakeLists.txt): the four-at-a-time pass must round every product and sum as the
// one-star tests of the other passes do, or a star in the plane of the eye could be in front
// for one pass and behind for another.

#include "starrender/star_front_pass.h"

#include <cstring>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define SKYRAMA_FRONT_PASS_AVX2 1
#include <immintrin.h>
#endif

namespace {

constexpr auto everyStar = [](int) { return true; };

#if SKYRAMA_FRONT_PASS_AVX2

// For each set of four lanes (bit j: lane j), a mask of the lanes' 16-bit marks.
constexpr std::uint64_t laneMask16(unsigned lanes) {
    std::uint64_t mask = 0;
    for (unsigned j = 0; j < 4; ++j) {
        if (lanes & (1u << j)) mask |= std::uint64_t{0xffff} << (16 * j);
    }
    return mask;
}
constexpr std::uint64_t kLaneMask16[16] = {
    laneMask16(0),  laneMask16(1),  laneMask16(2),  laneMask16(3), laneMask16(4),  laneMask16(5),
    laneMask16(6),  laneMask16(7),  laneMask16(8),  laneMask16(9), laneMask16(10), laneMask16(11),
    laneMask16(12), laneMask16(13), laneMask16(14), laneMask16(15)};

__attribute__((target("avx2"))) int frontPassAvx2Body(const StarFrontPass& pass, int blockStart,
                                                      int blockEnd, std::int32_t* out) {
    // The stars above the last whole group of four one at a time, then the groups downwards,
    // so that stars go on highest index first and no load reaches outside the block.
    const int groups = (blockEnd - blockStart + 1) / 4;
    const int top = blockStart + groups * 4 - 1;
    int n = frontPassEach(pass, top + 1, blockEnd, out, everyStar);

    const __m256d k = _mm256_set1_pd(pass.k);
    const __m256d ex = _mm256_set1_pd(pass.eye.x), ey = _mm256_set1_pd(pass.eye.y),
                  ez = _mm256_set1_pd(pass.eye.z);
    const __m256d dx = _mm256_set1_pd(pass.dir.x), dy = _mm256_set1_pd(pass.dir.y),
                  dz = _mm256_set1_pd(pass.dir.z);
    const __m256d zero = _mm256_setzero_pd();
    const PointViewportTest* vp = pass.viewport;
    const bool cull = vp != nullptr && !vp->keepAll();
    __m256d r[3][4];
    for (int a = 0; a < 3; ++a) {
        for (int c = 0; c < 4; ++c)
            r[a][c] = _mm256_set1_pd(cull ? vp->row(a, c) : 0.0);
    }
    const __m256d widenX = _mm256_set1_pd(cull ? vp->widenX(kNumPointBuckets - 1) : 0.0);
    const __m256d widenY = _mm256_set1_pd(cull ? vp->widenY(kNumPointBuckets - 1) : 0.0);
    const __m256d signBit = _mm256_set1_pd(-0.0);
    const std::uint64_t marks = std::uint64_t{pass.mark} * 0x0001000100010001ull;
    const double* const px = pass.positions.x;
    const double* const py = pass.positions.y;
    const double* const pz = pass.positions.z;
    std::uint16_t* const seenBy = pass.seenBy;

    for (int g = top - 3; g >= blockStart; g -= 4) {
        const __m256d x = _mm256_sub_pd(_mm256_mul_pd(_mm256_loadu_pd(px + g), k), ex);
        const __m256d y = _mm256_sub_pd(_mm256_mul_pd(_mm256_loadu_pd(py + g), k), ey);
        const __m256d z = _mm256_sub_pd(_mm256_mul_pd(_mm256_loadu_pd(pz + g), k), ez);
        const __m256d along = _mm256_add_pd(
            _mm256_add_pd(_mm256_mul_pd(x, dx), _mm256_mul_pd(y, dy)), _mm256_mul_pd(z, dz));
        const unsigned front =
            static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(along, zero, _CMP_GE_OQ)));

        std::uint64_t seen;
        std::memcpy(&seen, seenBy + g, sizeof seen);
        seen = (seen & ~kLaneMask16[front]) | (marks & kLaneMask16[front]);
        std::memcpy(seenBy + g, &seen, sizeof seen);

        unsigned keep = front;
        if (cull) {
            __m256d clip[3];
            for (int a = 0; a < 3; ++a) {
                clip[a] = _mm256_add_pd(_mm256_add_pd(_mm256_add_pd(_mm256_mul_pd(r[a][0], x),
                                                                    _mm256_mul_pd(r[a][1], y)),
                                                      _mm256_mul_pd(r[a][2], z)),
                                        r[a][3]);
            }
            const __m256d inX = _mm256_cmp_pd(_mm256_andnot_pd(signBit, clip[0]),
                                              _mm256_mul_pd(clip[2], widenX), _CMP_LE_OQ);
            const __m256d inY = _mm256_cmp_pd(_mm256_andnot_pd(signBit, clip[1]),
                                              _mm256_mul_pd(clip[2], widenY), _CMP_LE_OQ);
            keep &= static_cast<unsigned>(_mm256_movemask_pd(_mm256_and_pd(inX, inY)));
        }
        for (int j = 3; j >= 0; --j) {
            out[n] = g + j;
            n += static_cast<int>((keep >> j) & 1u);
        }
    }
    return n;
}

#endif

}  // namespace

int frontPassAvx2(const StarFrontPass& pass, int blockStart, int blockEnd, std::int32_t* out) {
#if SKYRAMA_FRONT_PASS_AVX2
    static const bool available = __builtin_cpu_supports("avx2");
    if (available) return frontPassAvx2Body(pass, blockStart, blockEnd, out);
#else
    (void)pass, (void)blockStart, (void)blockEnd, (void)out;
#endif
    return -1;
}

int frontPass(const StarFrontPass& pass, int blockStart, int blockEnd, std::int32_t* out) {
    const int n = frontPassAvx2(pass, blockStart, blockEnd, out);
    return n >= 0 ? n : frontPassEach(pass, blockStart, blockEnd, out, everyStar);
}
