// The CPU side of star drawing: every star of the range visited farthest first, filtered,
// placed relative to the eye, classified into a point-size bucket, coloured, and handed to
// a sink in batches of one point size.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "catalogue/star_list.h"
#include "starrender/brightness_model.h"
#include "starrender/point_batcher.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"
#include "starrender/star_pass.h"

namespace {

constexpr double kMinTexScale = 1e-7;
constexpr int kRecordPrefetch = 24;  // stars ahead whose records are fetched

}  // namespace

void StarDrawSink::points(const StarBucketEntry* entries, int n) {
    for (int i = 0; i < n; ++i)
        point(entries[i].pos, entries[i].rgba);
}

void StarList::drawStarsInto(const StarFrame& frame, int renderFlags, StarDrawSink& sink) {
    if (param.texScale < kMinTexScale) return;
    for (std::int32_t& c : bucketCounts)
        c = 0;
    if (!refreshDrawCaches(pickMode ? 0 : renderFlags)) return;
    int first = 0, last = -1;
    getStarRange(&first, &last);
    const StarSizeClassifier& classifier =
        classifierFor(param.starScale, frame.radiansPerPixel, param.texScale, largeLimit);
    const StarDrawPosition* positions = drawPositions;
    const StarDrawLight* lights = drawLights;
    const PointViewportTest viewport(frame);
    const float* alphaOf = coverageAlphaTable();
    const double shift = magnitudeShift(frame.currLogScale, param.vmagMin);
    auto colourOf = [&](int i, int coverage, float rgba[4]) {
        const float* rgb = lights[i].rgb;
        rgba[0] = rgb[0];
        rgba[1] = rgb[1];
        rgba[2] = rgb[2];
        rgba[3] = alphaOf[coverage];
    };

    // The stars seen in front of this frame's eye are marked with it.
    const std::uint16_t seenEye = seenEyeFor(frame, shift);

    if (pickMode) {
        // Picking sees the magnitudes from its own eye.
        forgetEyeMagnitudes();
        for (int i = last; i >= first; --i) {
            const StarObj& s = stars[i];
            if (!passesSptypeSelection(s) || !passesAbsMagSelection(s)) continue;
            double vertex[3], depth;
            if (!placeStarPoint(frame, positions[i].pos, vertex, &depth)) continue;
            magnitudeEye[i] = seenEye;
            const float m = magnitudeAtDepth(lights[i].absMag, depth, shift);
            if (!passesVMagSelection(m)) continue;
            const StarSizeClass cls = classifier.classify(m);
            const int b = cls.visible ? cls.bucket : 1;
            // Only a point inside the pick box can be a hit.
            if (viewport.mayShow(vertex, b)) sink.namedPoint(i, b * 0.5f, vertex);
        }
        return;
    }

    if (first <= last && isSunRecord(first)) ++first;
    const bool selections = param.sptypeOn || param.absmagRangeOn;
    const bool scaleFree = viewport.scaleFree();
    bool eyeStill = false;
    const std::uint32_t generation = eyeGenerationFor(frame, &eyeStill);
    if (eyeStill && !(renderFlags & kStarTextured) && !selections && scaleFree &&
        (stillViewGeneration == generation || makeStillView(frame, generation))) {
        drawStillEye(frame, generation, seenEye, first, last, sink);
        return;
    }

    // Measures the stars blockEnd down to blockStart with as few branches as can be (stars
    // come in no order of direction or brightness, so branches on them are mostly guessed
    // wrong): first the stars in front of the eye (most views leave half the sky behind),
    // marked as seen, then their magnitudes and classes, taken over from an earlier frame
    // while the eye stands still. Keeps the visible ones, farthest first, in out, marking
    // those whose point can touch the viewport; without placeAll only those are kept, and a
    // star whose point could not touch the viewport at the largest size is not measured at
    // all. A kept star's vertex is its eye-relative position, placed (depth-compressed, with
    // its depth) only with placeAll or a projection that needs the drawn vertex to tell.
    const bool vmagOn = param.vmagRangeOn != 0;
    const float vmagLow = static_cast<float>(param.vmagRangeMin);
    const float vmagHigh = static_cast<float>(param.vmagRangeMax);
    const double k = frame.cacheToDrawing;
    const Vec3 eye = frame.eyeDrawing, dir = frame.viewDir;
    // The magnitude and class of star i seen from the eye at squared distance len2 (drawing
    // units), its magnitude written into its record. With keep, they are taken over from an
    // earlier frame of this eye or kept for the next ones.
    // Returns the star's depth, log10 of its distance in drawing units (minus infinity at the
    // eye), when it was worked out or needDepth asks for it, else 0.
    auto measureStar = [&](int i, double len2, bool keep, bool needDepth, float* m,
                           std::uint32_t* cls) {
        StarEyeMagnitude& seen = eyeMagnitudes[i];
        if (keep && seen.generation == generation) {
            *m = seen.appMag;
            *cls = seen.packedClass;
            return needDepth ? depthOf(len2) : 0.0;
        }
        const double depth = depthOf(len2);
        *m = magnitudeAtDepth(lights[i].absMag, depth, shift);
        *cls = classifier.classifyPacked(*m);
        if (keep) seen = StarEyeMagnitude{*m, *cls, generation};
        return depth;
    };
    // With placeAll (the textured pass) every star's draw bucket is also cleared here.
    auto measureBlock = [&](int blockStart, int blockEnd, StarDrawSlot* out, bool placeAll) {
        const bool cull = !placeAll && scaleFree;
        // Copies in locals, which the stores below cannot touch, so that they stay in
        // registers.
        const double kk = k;
        const Vec3 e = eye, d = dir;
        const PointViewportTest vp = viewport;
        const StarDrawPosition* const pos = positions;
        std::uint16_t* const seenBy = magnitudeEye;
        const std::uint16_t mark = seenEye;
        int inFront = 0;
        for (int i = blockEnd; i >= blockStart; --i) {
            if (placeAll) {
                // Records are large and far apart: the ones written a little later are
                // fetched now, for writing.
                __builtin_prefetch(&stars[std::max(blockStart, i - kRecordPrefetch)].drawBucket, 1);
                stars[i].drawBucket = 0;
            }
            if (selections &&
                (!passesSptypeSelection(stars[i]) || !passesAbsMagSelection(stars[i]))) {
                continue;
            }
            const double* c = pos[i].pos;
            const double p[3] = {c[0] * kk - e.x, c[1] * kk - e.y, c[2] * kk - e.z};
            StarDrawSlot& slot = out[inFront];
            slot.vertex[0] = p[0];
            slot.vertex[1] = p[1];
            slot.vertex[2] = p[2];
            slot.index = i;
            const bool front = p[0] * d.x + p[1] * d.y + p[2] * d.z >= 0.0;
            seenBy[i] = front ? mark : seenBy[i];
            const bool mayShow = vp.mayShow(p, kNumPointBuckets - 1) | !cull;
            inFront += static_cast<int>(front & mayShow);
        }
        const bool place = placeAll || !scaleFree;
        int kept = 0;
        for (int n = 0; n < inFront; ++n) {
            const StarDrawSlot in = out[n];
            const double len2 = in.vertex[0] * in.vertex[0] + in.vertex[1] * in.vertex[1] +
                                in.vertex[2] * in.vertex[2];
            float m;
            std::uint32_t cls;
            const double depth = measureStar(in.index, len2, eyeStill, place, &m, &cls);
            const int bucket = static_cast<int>((cls >> 8) & 0xff);
            StarDrawSlot& slot = out[kept];
            slot = in;
            if (place) {
                slot.depth = depth;
                placeVertexAtDepth(slot.vertex, len2, depth);
            }
            const bool onScreen = viewport.mayShow(slot.vertex, bucket);
            slot.packedClass = cls | (onScreen ? kSlotOnScreen : 0u);
            const bool inRange = !vmagOn || (vmagLow <= m && m <= vmagHigh);
            kept += static_cast<int>(inRange & (cls != 0u) & (placeAll || onScreen));
        }
        return kept;
    };
    // Hands a kept star whose point can touch the viewport to the batcher.
    float rgba[4];
    auto batch = [&](PointBatcher& batcher, StarDrawSlot& slot, bool placed) {
        if (!(slot.packedClass & kSlotOnScreen)) return;
        const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass & ~kSlotOnScreen);
        if (!placed) {
            double* v = slot.vertex;
            placePoint(v, v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        }
        colourOf(slot.index, cls.coverage, rgba);
        batcher.add(cls.bucket, slot.vertex, rgba);
    };

    StarDrawSlot* block = drawSlots + count + 1;  // room for one block after the kept stars
    if (!(renderFlags & kStarTextured)) {
        // A block of stars at a time, so that the points of one block are on their way to
        // the renderer while the next block is worked out.
        PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
        for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
            const int n = measureBlock(std::max(first, blockEnd - kDrawSlotBlock + 1), blockEnd,
                                       block, false);
            for (int j = 0; j < n; ++j)
                batch(batcher, block[j], !scaleFree);
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
    // tan of half a sprite's angular size, per bucket.
    double halfAngleTan[kNumPointBuckets];
    for (int b = 0; b < kNumPointBuckets; ++b)
        halfAngleTan[b] = std::tan(b * 0.25 * frame.radiansPerPixel);
    StarDrawSlot* kept = drawSlots;
    int numKept = 0;
    sink.beginSprites();
    for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
        const int blockStart = std::max(first, blockEnd - kDrawSlotBlock + 1);
        const int n = measureBlock(blockStart, blockEnd, block, true);
        for (int j = 0; j < n; ++j) {
            const StarDrawSlot& slot = block[j];
            const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass & ~kSlotOnScreen);
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
            const double h = halfAngleTan[cls.bucket] * dist / halfLight / 2.0;
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
    for (int j = 0; j < numKept; ++j)
        batch(batcher, kept[j], true);
    batcher.finish();
}
