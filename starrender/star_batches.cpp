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
    auto colourOf = [&](int i, int coverage, float rgba[4]) {
        const float* rgb = cache[i].rgb;
        rgba[0] = rgb[0];
        rgba[1] = rgb[1];
        rgba[2] = rgb[2];
        rgba[3] = alphaOf[coverage];
    };

    if (pickMode) {
        for (int i = last; i >= first; --i) {
            StarObj& s = stars[i];
            if (!passesSptypeSelection(s) || !passesAbsMagSelection(s)) continue;
            double vertex[3], depth;
            if (!placeStarPoint(frame, cache[i].pos, vertex, &depth)) continue;
            s.appMag = static_cast<float>(cache[i].absMag + 5.0 * depth + magnitudeShift);
            if (!passesVMagSelection(s.appMag)) continue;
            const StarSizeClass cls = classifier.classify(s.appMag);
            const int b = cls.visible ? cls.bucket : 1;
            sink.namedPoint(i, b * 0.5f, vertex);
        }
        return;
    }

    if (first <= last && isSunRecord(first)) ++first;

    // Places and classifies the stars blockEnd down to blockStart with as few branches as can
    // be (stars come in no order of direction or brightness, so branches on them are mostly
    // guessed wrong): first the stars in front of the eye (most views leave half the sky
    // behind), then their magnitudes and classes. Writes each star's magnitude seen from the
    // eye into its record and keeps the visible ones, farthest first, in out.
    const bool selections = param.sptypeOn || param.absmagRangeOn;
    const bool vmagOn = param.vmagRangeOn != 0;
    const float vmagLow = static_cast<float>(param.vmagRangeMin);
    const float vmagHigh = static_cast<float>(param.vmagRangeMax);
    const double k = frame.cacheToDrawing;
    const Vec3 eye = frame.eyeDrawing, dir = frame.viewDir;
    auto measureBlock = [&](int blockStart, int blockEnd, StarDrawSlot* out) {
        int inFront = 0;
        for (int i = blockEnd; i >= blockStart; --i) {
            if (selections &&
                (!passesSptypeSelection(stars[i]) || !passesAbsMagSelection(stars[i]))) {
                continue;
            }
            const StarDrawCache& c = cache[i];
            StarDrawSlot& slot = out[inFront];
            slot.vertex[0] = c.pos[0] * k - eye.x;
            slot.vertex[1] = c.pos[1] * k - eye.y;
            slot.vertex[2] = c.pos[2] * k - eye.z;
            slot.index = i;
            inFront += static_cast<int>(
                slot.vertex[0] * dir.x + slot.vertex[1] * dir.y + slot.vertex[2] * dir.z >= 0.0);
        }
        int kept = 0;
        for (int n = 0; n < inFront; ++n) {
            const StarDrawSlot in = out[n];
            const int i = in.index;
            const double px = in.vertex[0], py = in.vertex[1], pz = in.vertex[2];
            const double len2 = px * px + py * py + pz * pz;
            // log10 of the distance in drawing units; a star at the eye gets minus infinity.
            const double depth = 0.5 * std::log10(len2);
            const float m = static_cast<float>(cache[i].absMag + 5.0 * depth + magnitudeShift);
            stars[i].appMag = m;
            StarDrawSlot& slot = out[kept];
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
            slot.depth = depth;
            slot.packedClass = cls;
            const bool inRange = !vmagOn || (vmagLow <= m && m <= vmagHigh);
            kept += static_cast<int>(inRange & (cls != 0u));
        }
        return kept;
    };

    float rgba[4];
    StarDrawSlot* block = drawSlots + count + 1;  // room for one block after the kept stars
    if (!(renderFlags & kStarTextured)) {
        // A block of stars at a time, so that the points of one block are on their way to
        // the renderer while the next block is worked out.
        PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
        for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
            const int n =
                measureBlock(std::max(first, blockEnd - kDrawSlotBlock + 1), blockEnd, block);
            for (int j = 0; j < n; ++j) {
                const StarSizeClass cls = StarSizeClassifier::unpack(block[j].packedClass);
                colourOf(block[j].index, cls.coverage, rgba);
                batcher.add(cls.bucket, block[j].vertex, rgba);
            }
        }
        batcher.finish();
        return;
    }

    // Textured: large stars as sprites now, the others kept for the point pass that follows.
    // (The draw bucket of a star behind the eye is left as it was; the point pass goes by
    // its own list.)
    const double halfLight = halfLightRadius > 0.0 ? halfLightRadius : 0.5;
    const float texMin =
        (param.textureSource == kStarTextureAiry || param.textureSource == kStarTextureFFT)
            ? 1.0f / 64.0f
            : 0.0f;
    StarDrawSlot* kept = drawSlots;
    int numKept = 0;
    sink.beginSprites();
    for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
        const int blockStart = std::max(first, blockEnd - kDrawSlotBlock + 1);
        for (int i = blockEnd; i >= blockStart; --i)
            stars[i].drawBucket = 0;
        const int n = measureBlock(blockStart, blockEnd, block);
        for (int j = 0; j < n; ++j) {
            const StarDrawSlot& slot = block[j];
            const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass);
            StarObj& s = stars[slot.index];
            const double* v = slot.vertex;
            const double dist = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
            const double inv = dist > 0.0 ? 1.0 / dist : 0.0;
            const Vec3 d{v[0] * inv, v[1] * inv, v[2] * inv};
            if (cls.bucket < param.pxsizeTex) {
                s.drawBucket = cls.bucket;
                s.drawCoverage = cls.coverage;
                s.eyePos = Phc{d.x, d.y, d.z, frame.currLogScale + slot.depth};
                kept[numKept++] = slot;
                continue;
            }
            StarSprite sp;
            colourOf(slot.index, cls.coverage, sp.rgba);
            const double h =
                std::tan(cls.bucket * 0.25 * frame.radiansPerPixel) * dist / halfLight / 2.0;
            const double hw = h * frame.aspect;
            const Vec3 u = frame.up;
            const Vec3 x = cross(u, d);
            const double offsets[4][2] = {{-hw, -h}, {hw, -h}, {-hw, h}, {hw, h}};
            for (int c = 0; c < 4; ++c) {
                for (int a = 0; a < 3; ++a)
                    sp.corner[c][a] = v[a] + offsets[c][0] * x[a] + offsets[c][1] * u[a];
            }
            sp.texMin = texMin;
            sp.starIndex = slot.index;
            sink.sprite(sp);
        }
    }
    sink.endSprites();

    PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
    for (int j = 0; j < numKept; ++j) {
        const StarSizeClass cls = StarSizeClassifier::unpack(kept[j].packedClass);
        colourOf(kept[j].index, cls.coverage, rgba);
        batcher.add(cls.bucket, kept[j].vertex, rgba);
    }
    batcher.finish();
}
