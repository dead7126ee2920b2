#include "starrender/brightness_model.h"

#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;

// Angular diameter D_k = k/36 degrees, rounded to four decimals, and the two magnitudes
// A_k and B_k at which a star is drawn with that diameter. Both magnitude columns fall as
// the diameter grows.
constexpr float kDiameter[kMagnitudeTableRows] = {
    0.0278f, 0.0556f, 0.0833f, 0.1111f, 0.1389f, 0.1667f, 0.1944f, 0.2222f, 0.25f,
    0.2778f, 0.3056f, 0.3333f, 0.3611f, 0.3889f, 0.4167f, 0.4444f, 0.4722f, 0.5f,
    0.5278f, 0.5556f, 0.5833f, 0.6111f, 0.6389f, 0.6667f, 0.6944f, 0.7222f, 0.75f,
    0.7778f, 0.8056f, 0.8333f, 0.8611f, 0.8889f, 0.9167f, 0.9444f, 0.9722f, 1.0f,
    1.0278f, 1.0556f, 1.0833f, 1.1111f, 1.1389f, 1.1667f, 1.1944f, 1.2222f, 1.25f,
    1.2778f, 1.3056f, 1.3333f, 1.3611f, 1.3889f, 1.4167f, 1.4444f, 1.4722f, 1.5f};

constexpr float kMagnitudeA[kMagnitudeTableRows] = {
    10.7583f, 8.8445f, 7.725f,  6.9308f, 6.3147f,  5.8113f,  5.3857f,  5.017f,   4.6918f,
    4.4009f,  4.1378f, 3.8976f, 3.6766f, 3.4719f,  3.2815f,  3.1033f,  2.9359f,  2.7781f,
    2.6288f,  2.4872f, 2.3525f, 2.224f,  2.1013f,  1.9838f,  1.8711f,  1.7628f,  1.6586f,
    1.5582f,  1.4613f, 1.3677f, 1.2772f, 1.1895f,  1.1046f,  1.0221f,  0.9421f,  0.8643f,
    0.7887f,  0.7151f, 0.6433f, 0.5734f, 0.5053f,  0.4387f,  0.3738f,  0.3103f,  0.2482f,
    0.1876f,  0.1282f, 0.0701f, 0.0131f, -0.0426f, -0.0973f, -0.1509f, -0.2035f, -0.2551f};

constexpr float kMagnitudeB[kMagnitudeTableRows] = {
    14.9428f, 12.0061f, 10.2882f, 9.0694f,  8.124f,   7.3515f,  6.6984f,  6.1327f,  5.6336f,
    5.1873f,  4.7835f,  4.4148f,  4.0757f,  3.7617f,  3.4694f,  3.196f,   2.9391f,  2.6969f,
    2.4679f,  2.2506f,  2.0438f,  1.8467f,  1.6584f,  1.4781f,  1.3051f,  1.139f,   0.9791f,
    0.825f,   0.6763f,  0.5327f,  0.3938f,  0.2593f,  0.1289f,  0.0024f,  -0.1204f, -0.2398f,
    -0.3558f, -0.4688f, -0.5789f, -0.6862f, -0.7908f, -0.8929f, -0.9926f, -1.09f,   -1.1852f,
    -1.2783f, -1.3694f, -1.4586f, -1.546f,  -1.6316f, -1.7155f, -1.7977f, -1.8784f, -1.9576f};

constexpr float kShiftedFaintLimit = 10.0f;  // shifted magnitudes above this are not drawn

// Diameter (degrees) at magnitude m in a falling magnitude column, by bisection;
// extrapolated on the first or last segment outside the column.
float diameterAt(const float* column, float m) {
    int seg;
    if (m > column[0]) {
        seg = 0;
    } else if (m < column[kMagnitudeTableRows - 1]) {
        seg = kMagnitudeTableRows - 2;
    } else {
        int lo = 0, hi = kMagnitudeTableRows - 1;
        if (column[lo] == m) return kDiameter[lo];
        if (column[hi] == m) return kDiameter[hi];
        while (hi - lo > 1) {
            int mid = (lo + hi) / 2;
            if (column[mid] == m) return kDiameter[mid];
            if (column[mid] > m) {
                lo = mid;
            } else {
                hi = mid;
            }
        }
        seg = lo;
    }
    const float m0 = column[seg], m1 = column[seg + 1];
    const float d0 = kDiameter[seg], d1 = kDiameter[seg + 1];
    return d0 + (m - m0) / (m1 - m0) * (d1 - d0);
}

struct SizeTables {
    unsigned char sqrtTable[kStarSqrtTableSize];
    float coverageFactor[kNumSizeBuckets];
    unsigned char alphaGamma[256];

    SizeTables() {
        for (int k = 0; k < kStarSqrtTableSize; ++k) {
            sqrtTable[k] =
                static_cast<unsigned char>(std::ceil(std::sqrt(static_cast<double>(k + 1))));
        }
        coverageFactor[0] = 1.0f;
        for (int b = 1; b < kNumSizeBuckets; ++b)
            coverageFactor[b] = 1.0f / static_cast<float>(b * b);
        for (int i = 0; i < 256; ++i) {
            alphaGamma[i] = static_cast<unsigned char>(255.99 * std::pow(i / 255.0, 0.4));
        }
    }
};

const SizeTables& sizeTables() {
    static const SizeTables tables;
    return tables;
}

}  // namespace

const unsigned char* starSqrtTable() {
    return sizeTables().sqrtTable;
}
const float* coverageFactorTable() {
    return sizeTables().coverageFactor;
}
const unsigned char* alphaGammaTable() {
    return sizeTables().alphaGamma;
}

float sizeFromMagnitude(float m, float blend) {
    if (!(m <= kShiftedFaintLimit)) return 0.0f;  // NaN too
    const float dA = diameterAt(kMagnitudeA, m);
    const float dB = diameterAt(kMagnitudeB, m);
    return static_cast<float>((dA * blend + (1.0f - blend) * dB) / 180.0 * kPi);
}

StarSizeClass classifyStarSize(float m, float starScale, double radiansPerPixel, double texScale,
                               int largeLimit) {
    StarSizeClass out;
    const float s = static_cast<float>(sizeFromMagnitude(m, starScale) / radiansPerPixel);
    if (!(s >= 0.001f)) return out;
    out.visible = true;
    const float t = static_cast<float>(2.0 * texScale * s);
    // trunc(t^2 - 1) is 0 for every t in (0, sqrt 2); t so small that t^2 vanishes in
    // single precision counts the same.
    float k = std::trunc(t * t - 1.0f);
    if (k < 0.0f) k = 0.0f;
    const float q = k * 256.0f;
    if (q < static_cast<float>(largeLimit)) {
        const int ki = static_cast<int>(k);
        int b = ki < kStarSqrtTableSize ? starSqrtTable()[ki]
                                        : static_cast<int>(std::ceil(std::sqrt(ki + 1.0)));
        if (b >= kNumSizeBuckets) {
            // Larger than the buckets hold (ptLarge above 31): the largest bucket, covered.
            out.bucket = kNumSizeBuckets - 1;
            out.coverage = kFullCoverage;
            return out;
        }
        int c = static_cast<int>(static_cast<float>(ki * 256) * coverageFactorTable()[b]);
        out.bucket = b;
        out.coverage = c > kFullCoverage ? kFullCoverage : c;
        return out;
    }
    out.bucket = kBrightBucket;
    out.coverage = kFullCoverage;
    return out;
}

float coverageAlpha(int coverage) {
    if (coverage < 0) coverage = 0;
    if (coverage > 255) coverage = 255;
    return static_cast<float>(alphaGammaTable()[coverage] & ~3) / 255.0f;
}

void distanceColour(double w, float rgba[4]) {
    const double farW = std::log10(4.2723) + 26.0;
    double t;
    if (w < 8.0) {
        t = 1.0;
    } else if (w <= farW) {
        t = (w - farW) / (8.0 - farW);
    } else {
        t = 0.0;
    }
    const double d = (1.0 - t) * 255.0;
    double red, green, blue;
    if (d <= 80.0) {
        red = 255.0 - (255.0 - 15.0) * d / 80.0;
    } else if (d <= 81.0) {
        red = 15.0;
    } else if (d <= 161.0) {
        red = 15.0 + (255.0 - 15.0) * (d - 81.0) / 80.0;
    } else {
        red = 255.0;
    }
    if (d <= 148.0) {
        green = 255.0;
    } else if (d <= 233.0) {
        green = (1.0 - (d - 148.0) / 86.0) * 255.0;
    } else {
        green = 0.0;
    }
    if (d <= 88.0) {
        blue = 255.0;
    } else if (d <= 215.0) {
        const double s = (d - 88.0) / 128.0;
        blue = s + (1.0 - s) * 255.0;
    } else if (d <= 216.0) {
        blue = 1.0 - (d - 215.0);
    } else {
        blue = 0.0;
    }
    rgba[0] = static_cast<float>(red / 255.0);
    rgba[1] = static_cast<float>(green / 255.0);
    rgba[2] = static_cast<float>(blue / 255.0);
    rgba[3] = 1.0f;
}
