#include "starrender/star_labels.h"

#include <cmath>
#include <cstdio>

namespace {

constexpr float kLabelErrorThreshold = 0.001f;

bool hasConstellation(const StarObj& star) {
    return star.constellationName[0] != '\0' && star.constellationName[0] != '-';
}

// The frame with no viewing direction: placeStar then places every position, even behind
// the eye.
StarFrame placeEverywhere(const StarFrame& frame) {
    StarFrame all = frame;
    all.viewDir = Vec3{0.0, 0.0, 0.0};
    return all;
}

}  // namespace

std::optional<std::string> starLabelText(const StarObj& star, int labelMode) {
    char text[160];
    const bool withConstellation = hasConstellation(star);
    switch (labelMode) {
        case kLabelNone:
            return std::string();
        case kLabelCommonName:
            if (withConstellation) {
                std::snprintf(text, sizeof text, " %s (%s %s)", star.commonName,
                              star.constellationName, star.constellationCode);
            } else {
                std::snprintf(text, sizeof text, " %s", star.commonName);
            }
            return std::string(text);
        case kLabelHD:
            if (withConstellation) {
                std::snprintf(text, sizeof text, " HD%d (%s %s)", star.hd, star.constellationName,
                              star.constellationCode);
            } else {
                std::snprintf(text, sizeof text, " HD%d", star.hd);
            }
            return std::string(text);
        default:
            return std::nullopt;
    }
}

Phc eyeRelative(const StarFrame& frame, const Phc& position) {
    EyePlacement placed;
    placeStar(placeEverywhere(frame), position, placed);
    return placed.rel;
}

Vec3 eyeRelativeVertex(const StarFrame& frame, const Phc& position) {
    EyePlacement placed;
    placeStar(placeEverywhere(frame), position, placed);
    return Vec3{placed.vertex[0], placed.vertex[1], placed.vertex[2]};
}

LabelPlacement labelPlacement(const StarFrame& frame, const Phc& position, double labelScale) {
    LabelPlacement label;
    label.rel = eyeRelative(frame, position);
    label.depth = label.rel.w - frame.currLogScale;
    const double depth = label.depth > kLabelMaxDepth ? kLabelMaxDepth : label.depth;
    const double distance = std::pow(10.0, depth);  // 0 for a position at the eye
    label.position = label.rel.xyz() * distance;
    label.size = distance / kLabelSizeDivisor * labelScale;
    return label;
}

namespace {

bool errorBarAlong(const Vec3& direction, double depth, float distErr, ErrorBar& bar) {
    if (!(depth > kErrorBarMinDepth && depth < kErrorBarMaxDepth)) return false;
    const double f = std::pow(10.0, depth);
    const double error = distErr;
    bar.from = error >= 1.0 ? Vec3{0.0, 0.0, 0.0} : direction * ((1.0 - error) * f);
    bar.to = direction * ((1.0 + error) * f);
    return true;
}

}  // namespace

bool labelErrorBar(const LabelPlacement& label, float distErr, ErrorBar& bar) {
    if (!(distErr > kLabelErrorThreshold)) return false;
    return errorBarAlong(label.rel.xyz(), label.depth, distErr, bar);
}

bool distanceErrorBar(const Phc& position, double currLogScale, float distErr, ErrorBar& bar) {
    if (!(distErr >= kLabelErrorThreshold)) return false;
    return errorBarAlong(position.xyz(), position.w - currLogScale, distErr, bar);
}
