// The CPU side of star drawing: every star of the range visited farthest first, filtered,
// placed relative to the eye, classified into a point-size bucket, coloured, and handed to
// a sink in batches of one point size.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "catalogue/star_list.h"
#include "starrender/brightness_model.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"

namespace {

constexpr int kFirstBucket = 2;  // the batch that is open at the start: 1-pixel points
constexpr double kMinTexScale = 1e-7;
constexpr int kPlacementBlock = 512;  // stars placed before their points are handed on

// Points of one size are drawn together. A star of the open batch's size is drawn at once;
// others wait in their bucket; a full bucket is drawn in place and its size becomes the
// open batch.
class PointBatcher {
  public:
    PointBatcher(StarBucketEntry* const* buckets, std::int32_t* counts, int capacity,
                 StarDrawSink& sink)
        : buckets_(buckets), counts_(counts), capacity_(capacity), sink_(sink) {
        sink_.beginPoints(kFirstBucket * 0.5f);
    }

    void add(int b, const double vertex[3], const float rgba[4]) {
        if (b == current_) {
            sink_.point(vertex, rgba);
        } else if (buckets_[b] != nullptr && counts_[b] < capacity_) {
            StarBucketEntry& e = buckets_[b][counts_[b]++];
            std::memcpy(e.pos, vertex, sizeof e.pos);
            std::memcpy(e.rgba, rgba, sizeof e.rgba);
        } else {
            switchTo(b, vertex, rgba);
        }
    }

    void finish() {
        for (int b = 0; b < kNumPointBuckets; ++b) {
            if (counts_[b] == 0) continue;
            sink_.endPoints();
            sink_.beginPoints(b * 0.5f);
            drain(b);
        }
        sink_.endPoints();
    }

  private:
    // A full bucket: drawn in place, and its size becomes the open batch.
    __attribute__((noinline)) void switchTo(int b, const double vertex[3], const float rgba[4]) {
        sink_.endPoints();
        sink_.beginPoints(b * 0.5f);
        drain(b);
        sink_.point(vertex, rgba);
        current_ = b;
    }

    void drain(int b) {
        for (int i = 0; i < counts_[b]; ++i)
            sink_.point(buckets_[b][i].pos, buckets_[b][i].rgba);
        counts_[b] = 0;
    }

    StarBucketEntry* const* buckets_;
    std::int32_t* counts_;
    int capacity_;
    StarDrawSink& sink_;
    int current_ = kFirstBucket;
};

// The drawn vertex of a star from its eye-relative position.
void vertexFromRel(const Phc& rel, double currLogScale, double vertex[3]) {
    double depth = rel.w - currLogScale;
    if (depth > kDepthCompressStart) {
        depth = (depth - kDepthCompressStart) / kDepthCompressFactor + kDepthCompressStart;
    }
    const double r = std::pow(10.0, depth);
    vertex[0] = rel.x * r;
    vertex[1] = rel.y * r;
    vertex[2] = rel.z * r;
}

}  // namespace

void StarList::drawStarsInto(const StarFrame& frame, int renderFlags, StarDrawSink& sink) {
    if (param.texScale < kMinTexScale) return;
    for (std::int32_t& c : bucketCounts)
        c = 0;
    if (!refreshDrawCaches(pickMode ? 0 : renderFlags)) return;
    int first = 0, last = -1;
    getStarRange(&first, &last);
    const StarSizeClassifier classifier(param.starScale, frame.radiansPerPixel, param.texScale,
                                        largeLimit);
    const StarDrawCache* cache = drawCache;
    const float* alphaOf = coverageAlphaTable();
    // apparentMagnitude with the eye-relative w = currLogScale + depth, folded per frame.
    const double magnitudeShift =
        5.0 * ((frame.currLogScale - 16.4894) - 1.0) + (10.0 - param.vmagMin);

    // Everything a star must pass before it is classified: the spectral and home-magnitude
    // selections, being in front of the eye, and the V-magnitude selection on the magnitude
    // seen from the eye (kept in the record).
    auto place = [&](int i, EyePlacement& pl) {
        StarObj& s = stars[i];
        if (!passesSptypeSelection(s) || !passesAbsMagSelection(s)) return false;
        if (!placeStarCartesian(frame, cache[i].pos, pl)) return false;
        s.appMag = static_cast<float>(cache[i].absMag + 5.0 * (pl.rel.w - frame.currLogScale) +
                                      magnitudeShift);
        return passesVMagSelection(s.appMag);
    };
    auto colourOf = [&](int i, int coverage, float rgba[4]) {
        const float* rgb = cache[i].rgb;
        rgba[0] = rgb[0];
        rgba[1] = rgb[1];
        rgba[2] = rgb[2];
        rgba[3] = alphaOf[coverage];
    };

    // The point passes need only the drawn vertex and the depth.
    auto placePoint = [&](int i, double vertex[3]) {
        StarObj& s = stars[i];
        if (!passesSptypeSelection(s) || !passesAbsMagSelection(s)) return false;
        double depth;
        if (!placeStarPoint(frame, cache[i].pos, vertex, &depth)) return false;
        s.appMag = static_cast<float>(cache[i].absMag + 5.0 * depth + magnitudeShift);
        return passesVMagSelection(s.appMag);
    };

    if (pickMode) {
        for (int i = last; i >= first; --i) {
            double vertex[3];
            if (!placePoint(i, vertex)) continue;
            const StarSizeClass cls = classifier.classify(stars[i].appMag);
            const int b = cls.visible ? cls.bucket : 1;
            sink.namedPoint(i, b * 0.5f, vertex);
        }
        return;
    }

    if (first <= last && isSunRecord(first)) ++first;
    float rgba[4];

    if (!(renderFlags & kStarTextured)) {
        // First every star is placed and classified with as few branches as can be (stars
        // come in no order of direction or brightness, so branches on them are mostly guessed
        // wrong); the visible ones are kept in order in drawSlots. Then they are coloured and
        // batched, farthest first as always.
        const bool selections = param.sptypeOn || param.absmagRangeOn;
        const bool vmagOn = param.vmagRangeOn != 0;
        const float vmagLow = static_cast<float>(param.vmagRangeMin);
        const float vmagHigh = static_cast<float>(param.vmagRangeMax);
        const double k = frame.cacheToDrawing;
        const Vec3 eye = frame.eyeDrawing, dir = frame.viewDir;
        StarDrawSlot* slots = drawSlots;
        PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
        // A block of stars at a time, so that the points of one block are on their way to
        // the renderer while the next block is worked out.
        for (int blockEnd = last; blockEnd >= first; blockEnd -= kPlacementBlock) {
            const int blockStart = std::max(first, blockEnd - kPlacementBlock + 1);
            // Stars in front of the eye first (most views leave half the sky behind), then
            // their magnitudes and classes; each pass keeps its survivors in order.
            int inFront = 0;
            for (int i = blockEnd; i >= blockStart; --i) {
                if (selections &&
                    (!passesSptypeSelection(stars[i]) || !passesAbsMagSelection(stars[i]))) {
                    continue;
                }
                const StarDrawCache& c = cache[i];
                StarDrawSlot& slot = slots[inFront];
                slot.vertex[0] = c.pos[0] * k - eye.x;
                slot.vertex[1] = c.pos[1] * k - eye.y;
                slot.vertex[2] = c.pos[2] * k - eye.z;
                slot.index = i;
                inFront += static_cast<int>(slot.vertex[0] * dir.x + slot.vertex[1] * dir.y +
                                                slot.vertex[2] * dir.z >=
                                            0.0);
            }
            int kept = 0;
            for (int n = 0; n < inFront; ++n) {
                const StarDrawSlot in = slots[n];
                const int i = in.index;
                const double px = in.vertex[0], py = in.vertex[1], pz = in.vertex[2];
                const double len2 = px * px + py * py + pz * pz;
                // log10 of the distance in drawing units; a star at the eye gets minus infinity.
                const double depth = 0.5 * std::log10(len2);
                const float m = static_cast<float>(cache[i].absMag + 5.0 * depth + magnitudeShift);
                stars[i].appMag = m;
                StarDrawSlot& slot = slots[kept];
                if (depth > kDepthCompressStart) {
                    const double r =
                        std::pow(10.0, (depth - kDepthCompressStart) / kDepthCompressFactor +
                                           kDepthCompressStart);
                    const double f = r / std::sqrt(len2);
                    slot.vertex[0] = px * f;
                    slot.vertex[1] = py * f;
                    slot.vertex[2] = pz * f;
                } else {
                    slot.vertex[0] = px;
                    slot.vertex[1] = py;
                    slot.vertex[2] = pz;
                }
                const std::uint32_t cls = classifier.classifyPacked(m);
                slot.index = i;
                slot.packedClass = cls;
                const bool inRange = !vmagOn || (vmagLow <= m && m <= vmagHigh);
                kept += static_cast<int>(inRange & (cls != 0u));
            }
            for (int n = 0; n < kept; ++n) {
                const StarDrawSlot& slot = slots[n];
                const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass);
                colourOf(slot.index, cls.coverage, rgba);
                batcher.add(cls.bucket, slot.vertex, rgba);
            }
        }
        batcher.finish();
        return;
    }

    // Textured: large stars as sprites now, the others kept for the point pass.
    const double halfLight = halfLightRadius > 0.0 ? halfLightRadius : 0.5;
    const float texMin =
        (param.textureSource == kStarTextureAiry || param.textureSource == kStarTextureFFT)
            ? 1.0f / 64.0f
            : 0.0f;
    sink.beginSprites();
    for (int i = last; i >= first; --i) {
        StarObj& s = stars[i];
        s.drawBucket = 0;
        EyePlacement pl;
        if (!place(i, pl)) continue;
        const StarSizeClass cls = classifier.classify(s.appMag);
        if (!cls.visible) continue;
        if (cls.bucket < param.pxsizeTex) {
            s.drawBucket = cls.bucket;
            s.drawCoverage = cls.coverage;
            s.eyePos = pl.rel;
            continue;
        }
        StarSprite sp;
        colourOf(i, cls.coverage, sp.rgba);
        const double* v = pl.vertex;
        const double dist = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        const double h =
            std::tan(cls.bucket * 0.25 * frame.radiansPerPixel) * dist / halfLight / 2.0;
        const double hw = h * frame.aspect;
        const Vec3 d{pl.rel.x, pl.rel.y, pl.rel.z};
        const Vec3 u = frame.up;
        const Vec3 x = cross(u, d);
        const double offsets[4][2] = {{-hw, -h}, {hw, -h}, {-hw, h}, {hw, h}};
        for (int c = 0; c < 4; ++c) {
            for (int k = 0; k < 3; ++k) {
                sp.corner[c][k] = v[k] + offsets[c][0] * x[k] + offsets[c][1] * u[k];
            }
        }
        sp.texMin = texMin;
        sp.starIndex = i;
        sink.sprite(sp);
    }
    sink.endSprites();

    PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
    for (int i = last; i >= first; --i) {
        const StarObj& s = stars[i];
        if (s.drawBucket == 0) continue;
        double vertex[3];
        vertexFromRel(s.eyePos, frame.currLogScale, vertex);
        colourOf(i, s.drawCoverage, rgba);
        batcher.add(s.drawBucket, vertex, rgba);
    }
    batcher.finish();
}
