#include "starrender/brightness_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kRadiansPerDegree = kPi / 180.0;

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

struct SizeTables {
    unsigned char sqrtTable[kStarSqrtTableSize];
    float coverageFactor[kNumSizeBuckets];
    unsigned char alphaGamma[256];
    unsigned char coverageOfK[kStarSqrtTableSize];  // trunc(256 k / bucket^2) of k
    float alphaOfCoverage[256];
    MagnitudeCurve columnA{kMagnitudeA, kDiameter, kMagnitudeTableRows};
    MagnitudeCurve columnB{kMagnitudeB, kDiameter, kMagnitudeTableRows};

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
        for (int k = 0; k < kStarSqrtTableSize; ++k) {
            // Beyond bucket 63 a star is drawn in the largest bucket, fully covered.
            const int b = sqrtTable[k];
            const int c = b < kNumSizeBuckets
                              ? static_cast<int>(static_cast<float>(k * 256) * coverageFactor[b])
                              : kFullCoverage;
            coverageOfK[k] = static_cast<unsigned char>(c > kFullCoverage ? kFullCoverage : c);
        }
        for (int c = 0; c < 256; ++c)
            alphaOfCoverage[c] = static_cast<float>(alphaGamma[c] & ~3) / 255.0f;
    }
};

const SizeTables& sizeTables() {
    static const SizeTables tables;
    return tables;
}

}  // namespace

MagnitudeCurve::MagnitudeCurve(const float* x, const float* y, int n)
    : x_(x, x + n), y_(y, y + n), n_(n) {
    x_.push_back(-HUGE_VALF);  // sentinels for the stepping in value()
    x_.push_back(-HUGE_VALF);
    slope_.resize(static_cast<std::size_t>(n > 1 ? n - 1 : 1), 0.0f);
    for (int j = 0; j + 1 < n; ++j)
        slope_[j] = (y[j + 1] - y[j]) / (x[j + 1] - x[j]);
    low_ = x[n - 1];
    cells_ = static_cast<int>((x[0] - low_) * kCellsPerMagnitude) + 2;
    above_.resize(static_cast<std::size_t>(cells_));
    for (int c = 0; c < cells_; ++c) {
        const float top = low_ + static_cast<float>(c + 1) / kCellsPerMagnitude;
        int k = 0;
        while (k < n && x[k] > top)
            ++k;
        above_[c] = static_cast<std::uint16_t>(k);
    }
}

const unsigned char* starSqrtTable() {
    return sizeTables().sqrtTable;
}
const float* coverageFactorTable() {
    return sizeTables().coverageFactor;
}
const unsigned char* alphaGammaTable() {
    return sizeTables().alphaGamma;
}
const unsigned char* coverageOfKTable() {
    return sizeTables().coverageOfK;
}

float sizeFromMagnitude(float m, float blend) {
    if (!(m <= kShiftedFaintLimit)) return 0.0f;  // NaN too
    const SizeTables& tables = sizeTables();
    const float dA = tables.columnA.value(m);
    const float dB = tables.columnB.value(m);
    return static_cast<float>((dA * blend + (1.0f - blend) * dB) * kRadiansPerDegree);
}

namespace {

// The blend of the two magnitude tables as one curve through the corners of both.
MagnitudeCurve blendedCurve(float blend) {
    std::vector<float> x(kMagnitudeA, kMagnitudeA + kMagnitudeTableRows);
    x.insert(x.end(), kMagnitudeB, kMagnitudeB + kMagnitudeTableRows);
    std::sort(x.begin(), x.end(), [](float a, float b) { return a > b; });
    x.erase(std::unique(x.begin(), x.end()), x.end());
    std::vector<float> y(x.size());
    const SizeTables& tables = sizeTables();
    for (std::size_t j = 0; j < x.size(); ++j) {
        y[j] = tables.columnA.value(x[j]) * blend + (1.0f - blend) * tables.columnB.value(x[j]);
    }
    return MagnitudeCurve(x.data(), y.data(), static_cast<int>(x.size()));
}

}  // namespace

StarSizeClassifier::StarSizeClassifier(float starScale, double radiansPerPixel, double texScale,
                                       int largeLimit, bool withTable)
    : sqrtTable_(starSqrtTable()),
      coverageOfK_(coverageOfKTable()),
      starScale_(starScale),
      pixelsPerRadian_(1.0 / radiansPerPixel),
      twoTexScale_(2.0 * texScale),
      largeLimit_(static_cast<float>(largeLimit)),
      table_(withTable ? kTableCells : 0, kMixedCell) {
    if (!withTable) return;
    blended_ = blendedCurve(starScale);
    auto edge = [](int c) { return kTableLow + static_cast<float>(c) / kCellsPerMagnitude; };
    std::uint16_t below = encode(fromDiameter(blended_.value(edge(0))));
    for (int c = 0; c + 1 < kTableCells; ++c) {
        const std::uint16_t above = encode(fromDiameter(blended_.value(edge(c + 1))));
        table_[c] = below == above ? below : kMixedCell;
        below = above;
    }
    // How far each cell is from the nearest corner of the curve, in cells (up to 3).
    std::vector<int> fromCorner(kTableCells, 3);
    for (const float* column : {kMagnitudeA, kMagnitudeB}) {
        for (int j = 0; j < kMagnitudeTableRows; ++j) {
            const int c =
                static_cast<int>(std::floor((column[j] - kTableLow) * kCellsPerMagnitude));
            for (int n = std::max(c - 2, 0); n <= std::min(c + 2, kTableCells - 1); ++n)
                fromCorner[n] = std::min(fromCorner[n], std::abs(n - c));
        }
    }
    // The curve may turn at its corners: the cells around one are classified in full.
    for (int c = 0; c < kTableCells; ++c) {
        if (fromCorner[c] <= 1) table_[c] = kMixedCell;
    }
    const StarSizeClass brightEnd = classifyExact(kTableLow);
    brightBelowTable_ = starScale >= 0.0f && starScale <= 1.0f &&
                        brightEnd.bucket == kBrightBucket && brightEnd.coverage == kFullCoverage;
    packed_.assign(kTableCells + 2, 0u);
    packed_[0] = brightBelowTable_ ? pack(brightEnd) : kMixedCell;
    for (int c = 0; c < kTableCells; ++c) {
        const std::uint16_t e = table_[c];
        packed_[c + 1] =
            (e & kMixedCell)
                ? kMixedCell
                : pack(StarSizeClass{(e >> 8) & 0x3f, e & 0xff, (e & kVisibleCell) ? 1 : 0});
    }
    // Mixed cells whose neighbours hold no corner either lie within one segment of the curve:
    // their stars are sized on that segment straight away.
    for (int c = 0; c < kTableCells; ++c) {
        if (!(table_[c] & kMixedCell) || fromCorner[c] <= 2) continue;
        const int seg = blended_.segment(edge(c) + 0.5f / kCellsPerMagnitude);
        if (seg >= 0 && seg < 256 && blended_.segment(edge(c)) == seg &&
            blended_.segment(edge(c + 1)) == seg) {
            packed_[c + 1] = kMixedCell | kSegmentCell | static_cast<std::uint32_t>(seg);
        }
    }
}

StarSizeClass StarSizeClassifier::classifyExact(float m) const {
    if (!(m <= kShiftedFaintLimit)) return StarSizeClass{};  // NaN too
    const SizeTables& tables = sizeTables();
    return fromDiameter(tables.columnA.value(m) * starScale_ +
                        (1.0f - starScale_) * tables.columnB.value(m));
}

StarSizeClass classifyStarSize(float m, float starScale, double radiansPerPixel, double texScale,
                               int largeLimit) {
    return StarSizeClassifier(starScale, radiansPerPixel, texScale, largeLimit, false)
        .classifyExact(m);
}

float coverageAlpha(int coverage) {
    if (coverage < 0) coverage = 0;
    if (coverage > 255) coverage = 255;
    return sizeTables().alphaOfCoverage[coverage];
}

const float* coverageAlphaTable() {
    return sizeTables().alphaOfCoverage;
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
