// Layout of the power cubes and of the stroke texts: which cubes are seen from the eye and
// how strongly, where the runs of a power label go, where billboard and screen text start.
// Plain computations; the GL side is in overlays_cubes.cpp and overlays_text.cpp.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"

#include <cmath>
#include <string>

namespace {

// Cubes whose exponent cannot be an int are not drawn; no real scene comes near this.
constexpr double kLargestCubeExponent = 1e6;
// Cubes tried upwards from the eye's own decade.
constexpr int kCubesTried = 7;
}  // namespace

double eyeDistanceExponent(const double modelview[16], double currLogScale) {
    // The eye in drawing units is -R^T t, R the upper 3 x 3 and t the last column.
    const double* m = modelview;
    Vec3 eye{-(m[0] * m[12] + m[1] * m[13] + m[2] * m[14]),
             -(m[4] * m[12] + m[5] * m[13] + m[6] * m[14]),
             -(m[8] * m[12] + m[9] * m[13] + m[10] * m[14])};
    Phc p = Phc::from(eye, currLogScale);
    phcNormalize(p);
    return p.w;
}

double powerCubeWeight(int n, double e) {
    return 1.0 - std::fabs(n - (e - 0.5)) / 2.0;
}

std::vector<PowerCubeFade> powerCubeFades(double e) {
    std::vector<PowerCubeFade> cubes;
    if (!std::isfinite(e) || std::fabs(e) > kLargestCubeExponent) return cubes;
    // The first cube is e truncated towards zero, so below 1 m (or 1 pc) the cube of the
    // eye's own decade is skipped; the cubes above it still show.
    int first = static_cast<int>(std::trunc(e));
    for (int n = first; n < first + kCubesTried; ++n) {
        double a = powerCubeWeight(n, e);
        if (a <= 0.0) continue;
        cubes.push_back({n, std::sqrt(a)});
    }
    return cubes;
}

std::vector<StrokePiece> powerLabelLayout(int n, const char* unit, const StrokeWidthFn& width) {
    std::string base = n == 0 ? "1" : "10";
    std::string exponent = n == 0 ? "" : std::to_string(n);
    std::string unitText = unit != nullptr ? unit : "";

    double raise = 0.75 * width("-");
    double baseWidth = width(base);
    double exponentWidth = n == 0 ? 0.0 : width(exponent) * 0.5;  // drawn at half size
    double total = baseWidth + width(unitText) + exponentWidth;

    std::vector<StrokePiece> pieces;
    double x = -total / 2.0;
    pieces.push_back({base, x, 0.0, 1.0});
    x += baseWidth;
    if (n != 0) {
        pieces.push_back({exponent, x, raise, 0.5});
        // The unit follows the exponent as drawn, at half size, so the label stays centred.
        x += exponentWidth;
    }
    if (!unitText.empty()) pieces.push_back({unitText, x, 0.0, 1.0});
    return pieces;
}

double billboardTextStart(const char* text, int alignment, float offset,
                          const StrokeWidthFn& width) {
    double dash = width("-");
    double total = 0.0;
    for (const char* c = text != nullptr ? text : ""; *c != '\0'; ++c) {
        total += *c == ' ' ? dash : width(std::string(1, *c));
    }
    double start = alignment == 1 ? 0.0 : (alignment == 2 ? -total / 2.0 : -total);
    return start + offset * dash;
}

std::array<double, 16> billboardMatrix(const double modelview[16], float size, double start) {
    std::array<double, 16> m;
    for (int i = 0; i < 16; ++i)
        m[i] = modelview[i];
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row)
            m[column * 4 + row] = row == column ? size : 0.0;
    }
    m[12] += start * size;
    return m;
}

double screenTextOffset(const char* text, float size, int alignment, int dashCount,
                        const StrokeWidthFn& width) {
    double offset = 0.0;
    if (alignment != 1) {
        for (const char* c = text != nullptr ? text : ""; *c != '\0'; ++c) {
            offset -= *c == ' ' ? kScreenBlankPerSize * size : width(std::string(1, *c));
        }
        if (alignment == 2) offset /= 2.0;
    }
    return offset + dashCount * width("-");
}
