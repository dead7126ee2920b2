// Star drawing while the eye stands still. Turning the view changes which stars are in front
// of the eye and which reach the viewport, but not where a star lies from the eye, nor its
// magnitude or size class. So these are worked out once per eye (the still view), and a
// frame only compares every star's direction, kept in short integers, with the viewing
// direction and the sides of the view; the few stars too close to a boundary for that to
// tell are measured in doubles as drawStarsInto measures them. The points drawn, their
// order, sizes and colours are those of drawStarsInto.

#include <algorithm>
#include <cmath>

#include "catalogue/star_list.h"
#include "starrender/point_batcher.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"
#include "starrender/star_pass.h"

namespace {

constexpr float kDirectionUnit = 32767.0f;  // a unit direction component in the still view
// How far from a boundary a comparison of still-view directions is trusted, as a share of the
// vectors' size: a stored component is off by at most 1.5 parts in 10^5.
constexpr float kMargin = 1e-4f;

// The sides of the view as float rows over a stored direction, with a margin within which the
// double test decides.
struct FloatViewport {
    float rows[3][3];
    float widenX[64], widenY[64];
    float marginX, marginY;
};

}  // namespace

bool StarList::makeStillView(const StarFrame& frame, std::uint32_t generation) {
    if (stillView == nullptr) {
        stillView = allocateRecords<StarStillView>(static_cast<std::size_t>(count));
        if (stillView == nullptr) return false;  // frames are drawn the ordinary way
    }
    const StarSizeClassifier& classifier =
        classifierFor(param.starScale, frame.radiansPerPixel, param.texScale, largeLimit);
    const double shift = magnitudeShift(frame.currLogScale, param.vmagMin);
    const double k = frame.cacheToDrawing;
    const bool vmagOn = param.vmagRangeOn != 0;
    const float vmagLow = static_cast<float>(param.vmagRangeMin);
    const float vmagHigh = static_cast<float>(param.vmagRangeMax);
    for (int i = 0; i < count; ++i) {
        double p[3];
        eyeRelative(drawPositions, i, k, frame.eyeDrawing, p);
        const double len2 = p[0] * p[0] + p[1] * p[1] + p[2] * p[2];
        StarStillView& v = stillView[i];
        const StarEyeMagnitude& seen = eyeMagnitudes[i];
        float m;
        std::uint32_t cls;
        bool written = seen.generation == generation;
        if (written) {
            m = seen.appMag;
            cls = seen.packedClass;
        } else {
            // As drawStarsInto measures a star; it is marked as seen when it comes in front.
            m = magnitudeAtDepth(drawLights[i].absMag, depthOf(len2), shift);
            cls = classifier.classifyPacked(m);
        }
        const bool inRange = !vmagOn || (vmagLow <= m && m <= vmagHigh);
        const std::uint32_t bucket = (cls >> 8) & kStillBucketMask;
        const std::uint32_t coverage = cls & 0xff;
        v.draw = static_cast<std::uint16_t>(
            (inRange && cls != 0u ? bucket | coverage << kStillCoverageShift : 0u) |
            (written ? kStillWritten : 0u));
        const double len = std::sqrt(len2);
        for (int a = 0; a < 3; ++a) {
            v.dir[a] = len > 0.0 ? static_cast<std::int16_t>(std::lround(p[a] / len * 32767.0))
                                 : std::int16_t{0};
        }
    }
    stillViewGeneration = generation;
    return true;
}

void StarList::drawStillEye(const StarFrame& frame, std::uint32_t generation, std::uint16_t seenEye,
                            int first, int last, StarDrawSink& sink) {
    const StarSizeClassifier& classifier =
        classifierFor(param.starScale, frame.radiansPerPixel, param.texScale, largeLimit);
    const PointViewportTest viewport(frame);
    const float* alphaOf = coverageAlphaTable();
    const double shift = magnitudeShift(frame.currLogScale, param.vmagMin);
    const double k = frame.cacheToDrawing;
    const Vec3 eye = frame.eyeDrawing, dir = frame.viewDir;
    // The viewing direction over stored directions.
    const float dx = static_cast<float>(dir.x) / kDirectionUnit,
                dy = static_cast<float>(dir.y) / kDirectionUnit,
                dz = static_cast<float>(dir.z) / kDirectionUnit;

    FloatViewport fv;
    double size[3];
    for (int r = 0; r < 3; ++r) {
        size[r] = 0.0;
        for (int c = 0; c < 3; ++c) {
            fv.rows[r][c] = static_cast<float>(frame.clipRows[r][c]) / kDirectionUnit;
            size[r] += std::fabs(frame.clipRows[r][c]);
        }
    }
    const double width = frame.viewport[2], height = frame.viewport[3];
    double widest = 1.0;
    for (int b = 0; b < 64; ++b) {
        const double reach = b * 0.25 + 1.0;
        fv.widenX[b] = static_cast<float>(1.0 + reach * 2.0 / width);
        fv.widenY[b] = static_cast<float>(1.0 + reach * 2.0 / height);
        widest = std::max({widest, 1.0 + reach * 2.0 / width, 1.0 + reach * 2.0 / height});
    }
    fv.marginX = static_cast<float>(kMargin * (size[0] + size[2] * widest));
    fv.marginY = static_cast<float>(kMargin * (size[1] + size[2] * widest));

    auto eyeRelativeOf = [&](int i, double p[3]) { eyeRelative(drawPositions, i, k, eye, p); };
    // The double test of drawStarsInto, for stars the floats cannot decide.
    auto inFrontExactly = [&](int i) {
        double p[3];
        eyeRelativeOf(i, p);
        return inFrontOf(p, dir);
    };
    // A star that comes in front for the first time with this eye is marked as seen by it.
    auto markSeen = [&](int i) {
        double p[3];
        eyeRelativeOf(i, p);
        const double len2 = p[0] * p[0] + p[1] * p[1] + p[2] * p[2];
        const float m = magnitudeAtDepth(drawLights[i].absMag, depthOf(len2), shift);
        magnitudeEye[i] = seenEye;
        eyeMagnitudes[i] = StarEyeMagnitude{m, classifier.classifyPacked(m), generation};
        stillView[i].draw |= kStillWritten;
    };
    // 1: the point can touch the viewport, 0: it cannot, -1: too close to a side to tell.
    auto onScreen = [&](const std::int16_t* sd, int b) {
        const float d[3] = {static_cast<float>(sd[0]), static_cast<float>(sd[1]),
                            static_cast<float>(sd[2])};
        const float x = fv.rows[0][0] * d[0] + fv.rows[0][1] * d[1] + fv.rows[0][2] * d[2];
        const float y = fv.rows[1][0] * d[0] + fv.rows[1][1] * d[1] + fv.rows[1][2] * d[2];
        const float w = fv.rows[2][0] * d[0] + fv.rows[2][1] * d[1] + fv.rows[2][2] * d[2];
        const float ox = std::fabs(x) - w * fv.widenX[b];
        const float oy = std::fabs(y) - w * fv.widenY[b];
        // Without a branch: stars come in no order of direction.
        const int out = (ox > fv.marginX) | (oy > fv.marginY);
        const int in = (ox < -fv.marginX) & (oy < -fv.marginY);
        return (1 - out) * (2 * in - 1);
    };

    // A block's stars in front of the eye, then those of them whose points can touch the
    // viewport, with their buckets and coverages. The positions and lights of these are
    // fetched while the rest of the block is looked at.
    int inFront[kDrawSlotBlock];
    struct Mark {
        int index;
        std::uint16_t draw;
    };
    Mark marks[kDrawSlotBlock];
    PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
    float rgba[4];
    for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
        const int blockStart = std::max(first, blockEnd - kDrawSlotBlock + 1);
        int n = 0;
        for (int i = blockEnd; i >= blockStart; --i) {
            const std::int16_t* d = stillView[i].dir;
            const float s = static_cast<float>(d[0]) * dx + static_cast<float>(d[1]) * dy +
                            static_cast<float>(d[2]) * dz;
            int front = s > kMargin;
            if (std::fabs(s) <= kMargin) front = inFrontExactly(i);
            inFront[n] = i;
            n += front;
        }
        int kept = 0;
        for (int j = 0; j < n; ++j) {
            const int i = inFront[j];
            const StarStillView& v = stillView[i];
            if (!(v.draw & kStillWritten)) markSeen(i);
            const int b = v.draw & kStillBucketMask;
            if (b == 0) continue;
            int show = onScreen(v.dir, b);
            if (show < 0) {
                double p[3];
                eyeRelativeOf(i, p);
                show = viewport.mayShow(p, b) ? 1 : 0;
            }
            // Fetched whether drawn or not (a branch would cost more than the fetch).
            const int fetch = show ? i : first;
            __builtin_prefetch(&drawPositions.x[fetch]);
            __builtin_prefetch(&drawPositions.y[fetch]);
            __builtin_prefetch(&drawPositions.z[fetch]);
            __builtin_prefetch(&drawLights[fetch]);
            marks[kept] = Mark{i, v.draw};
            kept += show;
        }
        for (int j = 0; j < kept; ++j) {
            const Mark& mark = marks[j];
            const int b = mark.draw & kStillBucketMask;
            double p[3];
            eyeRelativeOf(mark.index, p);
            placePoint(p, p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
            const float* rgb = drawLights[mark.index].rgb;
            rgba[0] = rgb[0];
            rgba[1] = rgb[1];
            rgba[2] = rgb[2];
            rgba[3] = alphaOf[(mark.draw >> kStillCoverageShift) & 0xff];
            batcher.add(b, p, rgba);
        }
    }
    batcher.finish();
}
