#pragma once
// The brightness model of star drawing, without any GL: apparent magnitude to angular
// diameter, diameter to a point-size bucket and a coverage, coverage to alpha, and the
// colour that marks a star's distance.

constexpr int kMagnitudeTableRows = 54;
constexpr int kNumSizeBuckets = 64;
constexpr int kStarSqrtTableSize = 4096;
constexpr int kBrightBucket = 32;  // bucket of stars too large to classify: 16-pixel points
constexpr int kFullCoverage = 255;

// Angular diameter in radians of a star of shifted magnitude m: 0 above magnitude 10,
// otherwise interpolated in the two magnitude tables and blended (blend 1 = table A,
// 0 = table B, other values interpolate or extrapolate).
float sizeFromMagnitude(float m, float blend);

struct StarSizeClass {
    int bucket = 0;    // point size bucket * 0.5 pixels; 0 = not drawn
    int coverage = 0;  // part of the point the star's disc covers, in 1/256
    bool visible = false;
};

// Classifies a star of shifted magnitude m seen at radiansPerPixel: its pixel diameter
// s = sizeFromMagnitude / radiansPerPixel, t = 2 texScale s, k = trunc(t^2 - 1), q = 256 k;
// 0 <= q < largeLimit gives bucket ceil(sqrt(k + 1)) and coverage q / bucket^2, anything
// larger the bright bucket with full coverage.
StarSizeClass classifyStarSize(float m, float starScale, double radiansPerPixel, double texScale,
                               int largeLimit);

// Alpha of a coverage value: the gamma table entry with its two low bits cleared, over 255.
float coverageAlpha(int coverage);

// The tables the classification uses: ceil(sqrt(k + 1)) for k < 4096, 1/b^2 per bucket
// (entry 0 = 1), trunc(255.99 (i/255)^0.4) per coverage.
const unsigned char* starSqrtTable();
const float* coverageFactorTable();
const unsigned char* alphaGammaTable();

// Colour marking the distance 10^w metres: white within 10^8 m, then through cyan and
// yellow to red at about 4 x 10^26 m and beyond.
void distanceColour(double w, float rgba[4]);
