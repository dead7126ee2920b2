// The star list's brightness settings: magnitudes, exposure, point sizes and colours.

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "catalogue/star_list.h"
#include "starrender/brightness_model.h"

namespace {

constexpr float kActiveEpsilon = 1e-5f;  // exposure and tuneIntensity within this of 1 are off
constexpr int kMinBucketCapacity = 16;
constexpr int kMaxBucketCapacity = 256;
constexpr int kMaxPtLarge = 64;
constexpr int kMaxPxsizeTex = 64;

}  // namespace

int StarList::setExposure(float exposure) {
    if (!(exposure > 0.0f)) {
        std::fprintf(stderr, "Err (setExposure) : inExposure should be positive.\n\n");
        return -1;
    }
    param.exposure = exposure;
    touchColours();
    exposureActive = std::fabs(exposure - 1.0f) >= kActiveEpsilon;
    return 1;
}

int StarList::setTuneIntensity(float tuneIntensity) {
    if (!(tuneIntensity > 0.0f)) {
        std::fprintf(stderr, "Err (setTuneIntensity)  : inTuneIntensity should be positive.\n\n");
        return -1;
    }
    param.tuneIntensity = tuneIntensity;
    touchColours();
    tuneIntensityActive = std::fabs(tuneIntensity - 1.0f) >= kActiveEpsilon;
    return 1;
}

int StarList::setStarScale(float starScale) {
    if (!(starScale > -10.0f)) {
        std::fprintf(stderr, "Err (setStarScale) : inStarScale should be greater than -10.0f.\n\n");
        return -1;
    }
    param.starScale = starScale;
    return 1;
}

int StarList::setVMagMin(float vmagMin) {
    if (!(vmagMin >= -10.0f && vmagMin <= 20.0f)) {
        std::fprintf(stderr,
                     "Err (setVMagMin) : inVMagMin should be reasonable range [-10,20].\n\n");
        vmagMin = vmagMin > 20.0f ? 20.0f : -10.0f;  // a NaN becomes the bright end
    }
    param.vmagMin = vmagMin;
    return 1;
}

int StarList::setPtFaint(float inPtFaint) {
    if (!(inPtFaint >= 0.0f && inPtFaint <= 1.0f)) {
        std::fprintf(stderr, "Err (setPtFaint) : inPtFaint out of range [0,1]\n\n");
        return -1;
    }
    ptFaint = inPtFaint;
    return 1;
}

int StarList::setPtLarge(int inPtLarge) {
    if (inPtLarge < 1) {
        std::fprintf(stderr, "Err (setPtLarge) : inPtLarge should be positive.\n\n");
        return -1;
    }
    ptLarge = inPtLarge > kMaxPtLarge ? kMaxPtLarge : inPtLarge;
    largeLimit = ptLarge * 1024 * ptLarge;
    return 1;
}

int StarList::setPXsizeTex(int pxsizeTex) {
    if (pxsizeTex < 0) {
        std::fprintf(stderr, "Err (setPXsizeTex) : inPtsizeTex should be non-negative.\n\n");
        return -1;
    }
    param.pxsizeTex = pxsizeTex > kMaxPxsizeTex ? kMaxPxsizeTex : pxsizeTex;
    return 1;
}

int StarList::setStarTextureScale(double texScale) {
    if (!(texScale >= 0.0)) {
        std::fprintf(stderr, "Err (setStarTextureScale) : inTexScale should be non-negative.\n\n");
        return -1;
    }
    param.texScale = texScale;
    return 1;
}

int StarList::ptSizeRescaleHint(int flag, float fixedLum) {
    if (flag == 1) {
        lumNormMode = 1;
        return 1;
    }
    if (flag == 2) {
        if (!(fixedLum > 0.0f)) {
            std::fprintf(stderr, "Err : ptSizeRescaleHint() : fixedLum should be positive!\n\n");
            return -1;
        }
        lumNormMode = 2;
        lumNormFixed = fixedLum;
        return 1;
    }
    std::fprintf(stderr, "Err : ptSizeRescaleHint() : unknown flag!\n\n");
    return -1;
}

void StarList::resetPtSize() {
    float norm = 0.0f;
    if (lumNormMode == 1) {
        for (int i = 0; i < count; ++i) {
            if (stars[i].lum > norm) norm = stars[i].lum;
        }
    } else if (lumNormMode == 2) {
        norm = lumNormFixed;
    } else {
        std::fprintf(stderr, "Err : resetPtSize() : something's wrong!\n\n");
        std::exit(1);
    }
    // With no luminous star at all there is nothing to normalise by.
    for (int i = 0; i < count; ++i)
        stars[i].relLum = norm > 0.0f ? stars[i].lum / norm : 0.0f;
}

void StarList::starColourRGB(const StarObj& star, int renderFlags, float rgb[3]) const {
    if (renderFlags & (kStarColorFile | kStarColorMap | kStarColorWhite | kStarColorDistance)) {
        for (int c = 0; c < 3; ++c)
            rgb[c] = baseColor[c];
        if (renderFlags & kStarColorFile) {
            for (int c = 0; c < 3; ++c)
                rgb[c] *= star.fileColor[c];
        }
        if ((renderFlags & kStarColorMap) && hasColorMap()) {
            for (int c = 0; c < 3; ++c)
                rgb[c] *= star.colormapColor[c];
        }
        if (renderFlags & kStarColorDistance) {
            float d[4];
            distanceColour(star.pos.w, d);
            for (int c = 0; c < 3; ++c)
                rgb[c] *= d[c];
        }
    } else {
        for (int c = 0; c < 3; ++c)
            rgb[c] = plainColor[c];
    }
    if (exposureActive) {
        for (int c = 0; c < 3; ++c)
            rgb[c] = std::pow(rgb[c], param.exposure);
    }
    if (tuneIntensityActive) {
        for (int c = 0; c < 3; ++c) {
            rgb[c] *= param.tuneIntensity;
            if (rgb[c] > 1.0f) rgb[c] = 1.0f;
        }
    }
}

void StarList::releaseBuckets() {
    for (StarBucketEntry*& bucket : buckets) {
        if (bucket != nullptr) release(bucket);
        bucket = nullptr;
    }
    for (std::int32_t& c : bucketCounts)
        c = 0;
}

// One twentieth of the stars per bucket, 16 to 256 entries.
void StarList::rebuildBuckets() {
    releaseBuckets();
    int capacity = count / 20;
    if (capacity < kMinBucketCapacity) capacity = kMinBucketCapacity;
    if (capacity > kMaxBucketCapacity) capacity = kMaxBucketCapacity;
    bucketCapacity = capacity;
    for (StarBucketEntry*& bucket : buckets) {
        // One entry more than the capacity: drawing writes a point before it finds the bucket
        // full (see PointBatcher).
        bucket = allocateArray<StarBucketEntry>(static_cast<std::size_t>(capacity) + 1);
        if (bucket == nullptr) {
            std::fprintf(stderr, "Err : allocating memory for buckets!\n\n");
            std::exit(1);
        }
    }
}
