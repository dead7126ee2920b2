#pragma once
// The brightness model of star drawing, without any GL: apparent magnitude to angular
// diameter, diameter to a point-size bucket and a coverage, coverage to alpha, and the
// colour that marks a star's distance.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

constexpr int kMagnitudeTableRows = 54;
constexpr int kNumSizeBuckets = 64;
constexpr int kStarSqrtTableSize = 4096;
constexpr int kBrightBucket = 32;  // bucket of stars too large to classify: 16-pixel points
constexpr int kFullCoverage = 255;

// A piecewise-linear function of magnitude given at falling breakpoints x with values y,
// extended along its first and last segments. Finds the segment of a magnitude without a
// search (stars come in random order of magnitude, so a bisection loses most of its time to
// mispredicted branches): a grid over the breakpoints' range holds, per cell of 1/64
// magnitude, how many breakpoints lie above the cell, and a step or two finds the segment.
// A breakpoint equal to m gives its own value.
class MagnitudeCurve {
  public:
    MagnitudeCurve() = default;
    MagnitudeCurve(const float* x, const float* y, int n);

    float value(float m) const {
        int seg;
        if (m > x_[0]) {
            seg = 0;
        } else if (m < x_[n_ - 1]) {
            seg = n_ - 2;
        } else {
            const int k = firstBelowOrAt(m);
            if (k < n_ && x_[k] == m) return y_[k];
            seg = k - 1;
        }
        return valueOn(seg, m);
    }
    // The segment value() takes for a magnitude m between breakpoints, and the curve there.
    int segment(float m) const {
        if (m > x_[0]) return 0;
        if (m < x_[n_ - 1]) return n_ - 2;
        return firstBelowOrAt(m) - 1;
    }
    float valueOn(int seg, float m) const { return y_[seg] + (m - x_[seg]) * slope_[seg]; }

  private:
    // The first breakpoint at or below m, for m within the breakpoints.
    int firstBelowOrAt(float m) const {
        // The count of breakpoints above the next cell up is a safe start: all of them are
        // above m even if m was rounded into a cell too low.
        int c = static_cast<int>((m - low_) * kCellsPerMagnitude) + 1;
        if (c >= cells_) c = cells_ - 1;
        // Two cells hold at most two breakpoints; x_ ends in two sentinels below any m.
        int k = above_[c];
        k += x_[k] > m;
        k += x_[k] > m;
        while (x_[k] > m) {
            ++k;
        }
        return k;
    }

    static constexpr float kCellsPerMagnitude = 64.0f;  // a cell holds a breakpoint or two
    std::vector<float> x_, y_, slope_;
    int n_ = 0;
    float low_ = 0.0f;
    int cells_ = 0;
    std::vector<std::uint16_t> above_;
};

// Angular diameter in radians of a star of shifted magnitude m: 0 above magnitude 10,
// otherwise interpolated in the two magnitude tables and blended (blend 1 = table A,
// 0 = table B, other values interpolate or extrapolate).
float sizeFromMagnitude(float m, float blend);

struct StarSizeClass {
    int bucket = 0;    // point size bucket * 0.5 pixels; 0 = not drawn
    int coverage = 0;  // part of the point the star's disc covers, in 1/256
    int visible = 0;   // 1 when the star is drawn (an int: cheaper to return than a bool)
};

// Classifies a star of shifted magnitude m seen at radiansPerPixel: its pixel diameter
// s = sizeFromMagnitude / radiansPerPixel, t = 2 texScale s, k = trunc(t^2 - 1), q = 256 k;
// 0 <= q < largeLimit gives bucket ceil(sqrt(k + 1)) and coverage q / bucket^2, anything
// larger the bright bucket with full coverage.
StarSizeClass classifyStarSize(float m, float starScale, double radiansPerPixel, double texScale,
                               int largeLimit);

// classifyStarSize with the frame's settings fixed: star drawing makes one per frame and
// classifies every star with it. The blend of the two magnitude tables is made once per frame
// as one curve through the corners of both. Within a frame the class depends on the magnitude
// alone and only ever grows with brightness along a segment of that curve, so the classifier
// also tabulates it over cells of 1/256 magnitude: a cell whose two ends classify alike and
// that holds no corner of the curve gives its class at once, any other magnitude is
// classified on the curve. The results are those of classifyStarSize up to the rounding of
// the last bit.
class StarSizeClassifier {
  public:
    // withTable false leaves out the curve and the table (for a few stars, not a frame).
    StarSizeClassifier(float starScale, double radiansPerPixel, double texScale, int largeLimit,
                       bool withTable = true);

    StarSizeClass classify(float m) const {
        if (!(m <= kShiftedFaintLimit)) return StarSizeClass{};  // NaN too
        // Brighter than the tables' corners the curve is extended far along its last segment,
        // where its rounding would tell: such stars are classified in full, unless the table's
        // bright end is already in the bright bucket (then so is every brighter star).
        if (!(m >= kTableLow) || table_.empty()) {
            return brightBelowTable_ ? StarSizeClass{kBrightBucket, kFullCoverage, 1}
                                     : classifyExact(m);
        }
        const std::uint16_t e = table_[static_cast<int>((m - kTableLow) * kCellsPerMagnitude)];
        if (!(e & kMixedCell)) {
            return StarSizeClass{(e >> 8) & 0x3f, e & 0xff, (e & kVisibleCell) ? 1 : 0};
        }
        return fromDiameter(blended_.value(m));
    }
    // The classification of classifyStarSize itself.
    StarSizeClass classifyExact(float m) const;

    // classify as one word, visible << 16 | bucket << 8 | coverage, reached without a branch
    // on the magnitude for all but the stars of mixed cells (drawing visits stars in no order
    // of magnitude, so such branches would mostly be guessed wrong).
    std::uint32_t classifyPacked(float m) const {
        float f = (m - kTableLow) * kCellsPerMagnitude + 1.0f;
        if (!(f >= 0.0f)) f = 0.0f;  // brighter than the table, or NaN (not drawn, below): cell 0
        f = std::min(f, static_cast<float>(kTableCells + 1));
        std::uint32_t e = packed_[static_cast<int>(f)];
        if (e & kMixedCell) {
            // Within one segment of the curve, or around a corner.
            e = (e & kSegmentCell) ? pack(fromDiameter(blended_.valueOn(e & 0xff, m)))
                                   : pack(classify(m));
        }
        return m <= kShiftedFaintLimit ? e : 0u;
    }
    static StarSizeClass unpack(std::uint32_t e) {
        return StarSizeClass{static_cast<int>((e >> 8) & 0xff), static_cast<int>(e & 0xff),
                             static_cast<int>(e >> 16)};
    }

  private:
    static constexpr float kShiftedFaintLimit = 10.0f;  // fainter stars are not drawn
    static constexpr float kTableLow = -2.0f;           // just below the brightest corner, B_54
    static constexpr float kCellsPerMagnitude = 256.0f;
    // Cells up to magnitude 10, and one more for 10 itself.
    static constexpr int kTableCells = 12 * 256 + 1;
    static constexpr std::uint16_t kMixedCell = 0x8000;
    // In the packed table: a mixed cell that lies within one segment of the curve, whose index
    // is in the low byte.
    static constexpr std::uint32_t kSegmentCell = 0x10000000;
    static constexpr std::uint16_t kVisibleCell = 0x4000;

    static std::uint32_t pack(const StarSizeClass& c) {
        return static_cast<std::uint32_t>((c.visible << 16) | (c.bucket << 8) | c.coverage);
    }
    static std::uint16_t encode(const StarSizeClass& c) {
        return static_cast<std::uint16_t>((c.visible ? kVisibleCell : 0) | (c.bucket << 8) |
                                          c.coverage);
    }

    StarSizeClass fromDiameter(float degrees) const {
        const float size = static_cast<float>(degrees * kRadiansPerDegree);
        const float s = static_cast<float>(size * pixelsPerRadian_);
        if (!(s >= 0.001f)) return StarSizeClass{0, 0, 0};
        const float t = static_cast<float>(twoTexScale_ * s);
        // trunc(t^2 - 1) is 0 for every t in (0, sqrt 2); t so small that t^2 vanishes in
        // single precision counts the same.
        const float k = std::max(std::trunc(t * t - 1.0f), 0.0f);
        if (!(k * 256.0f < largeLimit_)) return StarSizeClass{kBrightBucket, kFullCoverage, 1};
        const int ki = static_cast<int>(k);
        int bucket = kNumSizeBuckets, coverage = kFullCoverage;
        if (ki < kStarSqrtTableSize) {
            bucket = sqrtTable_[ki];
            coverage = coverageOfK_[ki];
        }
        // Larger than the buckets hold (ptLarge above 31): the largest bucket, covered.
        if (bucket >= kNumSizeBuckets) return StarSizeClass{kNumSizeBuckets - 1, kFullCoverage, 1};
        return StarSizeClass{bucket, coverage, 1};
    }

    static constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;
    const unsigned char* sqrtTable_;
    const unsigned char* coverageOfK_;
    float starScale_;
    double pixelsPerRadian_;
    double twoTexScale_;
    float largeLimit_;
    MagnitudeCurve blended_;
    // Every magnitude below the table is in the bright bucket: with a blend between the two
    // tables (starScale in [0, 1]) the size only grows with brightness, and the table's bright
    // end is already there.
    bool brightBelowTable_ = false;
    std::vector<std::uint16_t> table_;
    // The table again for classifyPacked: entry 0 for magnitudes below the table (mixed), the
    // cells, and one entry for magnitudes above 10 (not drawn).
    std::vector<std::uint32_t> packed_;
};

// trunc(256 k / bucket(k)^2) for k < 4096: the coverage of a star of k.
const unsigned char* coverageOfKTable();

// Alpha of a coverage value: the gamma table entry with its two low bits cleared, over 255.
float coverageAlpha(int coverage);
// coverageAlpha of 0 .. 255.
const float* coverageAlphaTable();

// The tables the classification uses: ceil(sqrt(k + 1)) for k < 4096, 1/b^2 per bucket
// (entry 0 = 1), trunc(255.99 (i/255)^0.4) per coverage.
const unsigned char* starSqrtTable();
const float* coverageFactorTable();
const unsigned char* alphaGammaTable();

// Colour marking the distance 10^w metres: white within 10^8 m, then through cyan and
// yellow to red at about 4 x 10^26 m and beyond.
void distanceColour(double w, float rgba[4]);
