#pragma once
// Star labels: their texts, where they go and how large they are, and the distance-error bars.
// Plain computations here; star_labels_draw.cpp turns them into GL calls, and the other
// overlays placed at stars (constellation names, planet orbits, the spanning tree) place
// their geometry with the same functions.

#include <optional>
#include <string>

#include "catalogue/star_obj.h"
#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"
#include "starrender/star_frame.h"

constexpr int kLabelNone = 0;
constexpr int kLabelCommonName = 1;
constexpr int kLabelHD = 2;
constexpr double kLabelMaxDepth = 3.5;      // labels come no farther than 10^3.5 units
constexpr double kLabelSizeDivisor = 75.0;  // a label is 1/75 of its distance
constexpr double kLabelCharSize = 0.008;    // character size per unit of label size
constexpr double kErrorBarMinDepth = -1.0;  // error bars are drawn for depths in (-1, 3.5)
constexpr double kErrorBarMaxDepth = 3.5;

// The label of a star: mode 0 the empty text, 1 " name" or " name (constellation code)",
// 2 " HD<n>" or " HD<n> (constellation code)". A constellation name that is empty or begins
// with "-" means none. Any other mode: no label at all.
std::optional<std::string> starLabelText(const StarObj& star, int labelMode);

// A position relative to the eye of the frame, normalised (w is the lowest double at the eye
// itself). Unlike star drawing, a position behind the eye is placed too (GL clips it).
Phc eyeRelative(const StarFrame& frame, const Phc& position);
// Where a star point at this position is drawn (depth compressed beyond 3.5 units), so that
// lines between stars meet the drawn stars.
Vec3 eyeRelativeVertex(const StarFrame& frame, const Phc& position);

struct LabelPlacement {
    Phc rel;        // eye-relative position, normalised
    double depth;   // rel.w - currLogScale, not limited
    Vec3 position;  // the direction times 10^min(depth, 3.5)
    double size;    // 10^min(depth, 3.5) / 75 x label scale
};
LabelPlacement labelPlacement(const StarFrame& frame, const Phc& position, double labelScale);

struct ErrorBar {
    Vec3 from, to;
};
// The bar of a label: along the eye-relative direction from (1 - error) to (1 + error) times
// 10^depth (from the eye itself when the error is 1 or more). Drawn only for an error above
// 0.001 and a depth in (-1, 3.5).
bool labelErrorBar(const LabelPlacement& label, float distErr, ErrorBar& bar);
// The bar of drawDistanceErrors: the same along the star's own direction from the origin of
// the current modelview, for an error of at least 0.001 and w - currLogScale in (-1, 3.5).
bool distanceErrorBar(const Phc& position, double currLogScale, float distErr, ErrorBar& bar);
