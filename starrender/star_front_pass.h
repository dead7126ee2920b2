#pragma once
// The first pass of star drawing with a moving eye (internal to starrender): which stars of a
// block are in front of the eye, and which of those can reach the viewport at all. It is the
// one pass that reads every star, so it looks at several stars at a time where the processor
// can.

#include <cstdint>

#include "catalogue/star_list.h"
#include "common_package/math/src/vec3.h"
#include "starrender/star_frame.h"
#include "starrender/star_pass.h"

struct StarFrontPass {
    StarDrawPositions positions;
    double k = 1.0;  // drawing units per cached unit
    Vec3 eye;        // drawing units
    Vec3 dir;        // unit viewing direction
    // Stars in front go on only when their point may touch this viewport at the largest
    // size; with none, every star in front goes on.
    const PointViewportTest* viewport = nullptr;
    std::uint16_t* seenBy = nullptr;  // marked with mark for every star in front
    std::uint16_t mark = 0;
};

// Marks each star of blockEnd down to blockStart that is in front of the eye, and writes
// into out, highest index first, those of them that go on. Returns their number. Every star
// is tested as eyeRelative, inFrontOf and mayShow test it, to the last bit.
int frontPass(const StarFrontPass& pass, int blockStart, int blockEnd, std::int32_t* out);

// frontPass one star at a time, leaving out (neither marked nor written) the stars that
// selected(i) refuses.
template <class Selected>
int frontPassEach(const StarFrontPass& pass, int blockStart, int blockEnd, std::int32_t* out,
                  Selected selected) {
    int n = 0;
    for (int i = blockEnd; i >= blockStart; --i) {
        if (!selected(i)) continue;
        double p[3];
        eyeRelative(pass.positions, i, pass.k, pass.eye, p);
        const bool front = inFrontOf(p, pass.dir);
        pass.seenBy[i] = front ? pass.mark : pass.seenBy[i];
        const bool mayShow =
            pass.viewport == nullptr || pass.viewport->mayShow(p, kNumPointBuckets - 1);
        out[n] = i;
        n += static_cast<int>(front & mayShow);
    }
    return n;
}

// frontPass four stars at a time with AVX2. Returns -1, having done nothing, on a processor
// without it.
int frontPassAvx2(const StarFrontPass& pass, int blockStart, int blockEnd, std::int32_t* out);
