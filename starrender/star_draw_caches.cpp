// Per-star values kept for drawing: positions in plain metres-based coordinates, absolute
// magnitudes and colours with exposure applied, made again only when positions or colour
// settings change.

#include <cmath>
#include <cstdio>

#include "catalogue/star_list.h"
#include "starrender/star_frame.h"
#include "starrender/star_pass.h"

void StarList::releaseDrawCaches() {
    for (double* coordinate : {drawPositions.x, drawPositions.y, drawPositions.z}) {
        if (coordinate != nullptr) release(coordinate);
    }
    if (drawLights != nullptr) release(drawLights);
    if (drawSlots != nullptr) release(drawSlots);
    if (eyeMagnitudes != nullptr) release(eyeMagnitudes);
    if (stillView != nullptr) release(stillView);
    if (magnitudeEye != nullptr) release(magnitudeEye);
    // Called when the records are replaced: what frames saw of the old ones is dropped.
    magnitudeEye = nullptr;
    seenEyes.clear();
    texturedFrame = TexturedFrame{};
    eyeMagnitudes = nullptr;
    stillView = nullptr;
    stillViewGeneration = 0;
    eyeGeneration = 0;
    lastFrameGeneration = 0;
    eyeKeyValid = false;
    drawPositions = StarDrawPositions{};
    drawLights = nullptr;
    drawSlots = nullptr;
    drawCacheCount = 0;
    cartesianEpoch = 0;
    colourCacheEpoch = 0;
    colourCacheFlags = -1;
}

bool StarList::refreshDrawCaches(int renderFlags) {
    if (count <= 0) return true;
    const auto ready = [this] {
        return drawPositions.x != nullptr && drawPositions.y != nullptr &&
               drawPositions.z != nullptr && drawLights != nullptr && eyeMagnitudes != nullptr &&
               drawSlots != nullptr && magnitudeEye != nullptr;
    };
    if (drawCacheCount != count || !ready()) {
        releaseDrawCaches();
        const std::size_t n = static_cast<std::size_t>(count);
        drawPositions.x = allocateRecords<double>(n);
        drawPositions.y = allocateRecords<double>(n);
        drawPositions.z = allocateRecords<double>(n);
        drawLights = allocateRecords<StarDrawLight>(n);
        eyeMagnitudes = allocateArray<StarEyeMagnitude>(n);
        magnitudeEye = allocateArray<std::uint16_t>(n);
        drawSlots = allocateRecords<StarDrawSlot>(n + 1 + kDrawSlotBlock);
        if (!ready()) {
            releaseDrawCaches();
            std::fprintf(stderr, "Err : allocating memory for drawing the stars!\n\n");
            return false;
        }
        drawCacheCount = count;
    }
    if (cartesianEpoch != positionEpoch) {
        settleMagnitudes();  // from the positions the eyes saw
        for (int i = 0; i < count; ++i) {
            const Phc& p = stars[i].pos;
            const double f = std::pow(10.0, p.w - kDrawCacheLog);
            drawPositions.x[i] = p.x * f;
            drawPositions.y[i] = p.y * f;
            drawPositions.z[i] = p.z * f;
            drawLights[i].absMag = stars[i].absMag;
        }
        cartesianEpoch = positionEpoch;
    }
    const int colourFlags =
        renderFlags & (kStarColorFile | kStarColorMap | kStarColorWhite | kStarColorDistance);
    if (colourCacheEpoch != colourEpoch || colourCacheFlags != colourFlags) {
        for (int i = 0; i < count; ++i)
            starColourRGB(stars[i], colourFlags, drawLights[i].rgb);
        colourCacheEpoch = colourEpoch;
        colourCacheFlags = colourFlags;
    }
    return true;
}

std::uint32_t StarList::eyeGenerationFor(const StarFrame& frame, bool* still) {
    const double key[kEyeKeySize] = {frame.eyeDrawing.x,
                                     frame.eyeDrawing.y,
                                     frame.eyeDrawing.z,
                                     frame.currLogScale,
                                     param.vmagMin,
                                     frame.radiansPerPixel,
                                     param.starScale,
                                     param.texScale,
                                     static_cast<double>(largeLimit),
                                     static_cast<double>(param.vmagRangeOn),
                                     param.vmagRangeMin,
                                     param.vmagRangeMax};
    bool same = eyeKeyValid && eyeKeyEpoch == positionEpoch;
    for (int i = 0; i < kEyeKeySize; ++i)
        same = same && key[i] == eyeKey[i];
    if (same) {
        *still = lastFrameGeneration == eyeGeneration;
        lastFrameGeneration = eyeGeneration;
        return eyeGeneration;
    }
    for (int i = 0; i < kEyeKeySize; ++i)
        eyeKey[i] = key[i];
    eyeKeyEpoch = positionEpoch;
    eyeKeyValid = true;
    if (++eyeGeneration == 0) {
        // Wrapped around: no star may look as if it were of the new generation.
        for (int i = 0; i < drawCacheCount; ++i)
            eyeMagnitudes[i].generation = 0;
        stillViewGeneration = 0;
        eyeGeneration = 1;
    }
    *still = false;
    lastFrameGeneration = eyeGeneration;
    return eyeGeneration;
}

std::uint16_t StarList::seenEyeFor(const StarFrame& frame, double magnitudeShift) {
    if (!seenEyes.empty()) {
        const SeenEye& last = seenEyes.back();
        if (last.eyeDrawing.x == frame.eyeDrawing.x && last.eyeDrawing.y == frame.eyeDrawing.y &&
            last.eyeDrawing.z == frame.eyeDrawing.z &&
            last.cacheToDrawing == frame.cacheToDrawing && last.magnitudeShift == magnitudeShift) {
            return static_cast<std::uint16_t>(seenEyes.size());
        }
    }
    if (seenEyes.size() == kMaxSeenEyes) settleMagnitudes();
    seenEyes.push_back(SeenEye{frame.eyeDrawing, frame.cacheToDrawing, magnitudeShift});
    return static_cast<std::uint16_t>(seenEyes.size());
}

namespace {

// The magnitude a frame worked out for a star, worked out again the same way.
float seenMagnitude(const StarDrawPositions& positions, int i, float absMag, const Vec3& eye,
                    double k, double shift) {
    double p[3];
    eyeRelative(positions, i, k, eye, p);
    const double len2 = p[0] * p[0] + p[1] * p[1] + p[2] * p[2];
    return magnitudeAtDepth(absMag, depthOf(len2), shift);
}

}  // namespace

void StarList::settleMagnitude(int index) const {
    if (seenEyes.empty() || index < 0 || index >= drawCacheCount) return;
    const std::uint16_t mark = magnitudeEye[index];
    if (mark == 0) return;
    const SeenEye& e = seenEyes[mark - 1u];
    stars[index].appMag = seenMagnitude(drawPositions, index, drawLights[index].absMag,
                                        e.eyeDrawing, e.cacheToDrawing, e.magnitudeShift);
    magnitudeEye[index] = 0;
}

void StarList::settleMagnitudes() const {
    if (seenEyes.empty()) return;
    for (int i = 0; i < drawCacheCount; ++i)
        settleMagnitude(i);
    seenEyes.clear();
}

void StarList::settleTexturedFrame() const {
    if (!texturedFrame.pending) return;
    for (int i = texturedFrame.first; i <= texturedFrame.last; ++i)
        stars[i].drawBucket = 0;
    for (int j = 0; j < texturedFrame.kept; ++j) {
        const StarDrawSlot& slot = drawSlots[j];
        const StarSizeClass cls = StarSizeClassifier::unpack(slot.packedClass & ~kSlotOnScreen);
        StarObj& s = stars[slot.index];
        s.drawBucket = cls.bucket;
        s.drawCoverage = cls.coverage;
        const Vec3 d = unitOf(slot.vertex, lengthOf(slot.vertex));
        s.eyePos = Phc{d.x, d.y, d.z, texturedFrame.currLogScale + slot.depth};
    }
    texturedFrame.pending = false;
}
