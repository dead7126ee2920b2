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
#include "starrender/star_front_pass.h"
#include "starrender/star_pass.h"

namespace {

constexpr double kMinTexScale = 1e-7;

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
    const StarDrawPositions positions = drawPositions;
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
            double vertex[3];
            eyeRelative(positions, i, frame.cacheToDrawing, frame.eyeDrawing, vertex);
            if (!inFrontOf(vertex, frame.viewDir)) continue;
            const double len2 =
                vertex[0] * vertex[0] + vertex[1] * vertex[1] + vertex[2] * vertex[2];
            const double depth = depthOf(len2);
            placeVertexAtDepth(vertex, len2, depth);
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
    // wrong): the front pass finds the stars in front of the eye (most views leave half the
    // sky behind) and marks them as seen, then their magnitudes and classes are worked out,
    // or taken over from an earlier frame while the eye stands still. Keeps the visible ones,
    // farthest first, in out, marking those whose point can touch the viewport; without
    // placeAll only those are kept, and a star whose point could not touch the viewport at
    // the largest size is not measured at all. A kept star's vertex is its eye-relative
    // position, placed (depth-compressed, with its depth) only with placeAll or a projection
    // that needs the drawn vertex to tell.
    const bool vmagOn = param.vmagRangeOn != 0;
    const float vmagLow = static_cast<float>(param.vmagRangeMin);
    const float vmagHigh = static_cast<float>(param.vmagRangeMax);
    const double k = frame.cacheToDrawing;
    const Vec3 eye = frame.eyeDrawing;
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
    StarFrontPass front;
    front.positions = positions;
    front.k = k;
    front.eye = eye;
    front.dir = frame.viewDir;
    front.seenBy = magnitudeEye;
    front.mark = seenEye;
    std::int32_t inFrontOf[kDrawSlotBlock];
    auto selected = [this](int i) {
        return passesSptypeSelection(stars[i]) && passesAbsMagSelection(stars[i]);
    };
    auto measureBlock = [&](int blockStart, int blockEnd, StarDrawSlot* out, bool placeAll) {
        front.viewport = !placeAll && scaleFree ? &viewport : nullptr;
        const int inFront = selections
                                ? frontPassEach(front, blockStart, blockEnd, inFrontOf, selected)
                                : frontPass(front, blockStart, blockEnd, inFrontOf);
        const bool place = placeAll || !scaleFree;
        int kept = 0;
        for (int n = 0; n < inFront; ++n) {
            const int i = inFrontOf[n];
            StarDrawSlot& slot = out[kept];
            eyeRelative(positions, i, k, eye, slot.vertex);
            slot.index = i;
            const double* v = slot.vertex;
            const double len2 = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
            float m;
            std::uint32_t cls;
            const double depth = measureStar(i, len2, eyeStill, place, &m, &cls);
            const int bucket = static_cast<int>((cls >> 8) & 0xff);
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

    // Textured: large stars as sprites now, the others kept for the point pass that follows,
    // and for the records (see TexturedFrame).
    if (texturedFrame.pending && (texturedFrame.first != first || texturedFrame.last != last))
        settleTexturedFrame();
    const double halfLight = halfLightRadius > 0.0 ? halfLightRadius : 0.5;
    const float texMin =
        (param.textureSource == kStarTextureAiry || param.textureSource == kStarTextureFFT)
            ? 1.0f / 64.0f
            : 0.0f;
    // tan of half a sprite's angular size, per bucket.
    double halfAngleTan[kNumPointBuckets];
    for (int b = 0; b < kNumPointBuckets; ++b)
        halfAngleTan[b] = std::tan(b * 0.25 * frame.radiansPerPixel);
    const double lightDiameter = 2.0 * halfLight;
    const double up[3] = {frame.up.x, frame.up.y, frame.up.z};
    StarDrawSlot* kept = drawSlots;
    int numKept = 0;
    sink.beginSprites();
    for (int blockEnd = last; blockEnd >= first; blockEnd -= kDrawSlotBlock) {
        const int blockStart = std::max(first, blockEnd - kDrawSlotBlock + 1);
        const int n = measureBlock(blockStart, blockEnd, block, true);
        for (int j = 0; j < n; ++j) {
            const StarDrawSlot& slot = block[j];
            const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass & ~kSlotOnScreen);
            if (cls.bucket < param.pxsizeTex) {
                kept[numKept++] = slot;
                continue;
            }
            const double* v = slot.vertex;
            const double dist = lengthOf(v);
            const Vec3 d = unitOf(v, dist);
            StarSprite sp;
            colourOf(slot.index, cls.coverage, sp.rgba);
            const double h = halfAngleTan[cls.bucket] * dist / lightDiameter;
            const double hw = h * frame.aspect;
            const Vec3 x = cross(frame.up, d);
            const double across[3] = {x.x, x.y, x.z};
            const double offsets[4][2] = {{-hw, -h}, {hw, -h}, {-hw, h}, {hw, h}};
            for (int c = 0; c < 4; ++c) {
                for (int a = 0; a < 3; ++a)
                    sp.corner[c][a] = v[a] + offsets[c][0] * across[a] + offsets[c][1] * up[a];
            }
            sp.texMin = texMin;
            sp.starIndex = slot.index;
            sink.sprite(sp);
        }
    }
    sink.endSprites();
    texturedFrame = TexturedFrame{true, first, last, numKept, frame.currLogScale};

    PointBatcher batcher(buckets, bucketCounts, bucketCapacity, sink);
    for (int j = 0; j < numKept; ++j)
        batch(batcher, kept[j], true);
    batcher.finish();
}
