#pragma once
// The GL side shared by the overlays placed at stars (labels, constellations, planets, the
// spanning tree): eye-relative drawing in the frame of the current GL matrices.

#include "starrender/star_frame.h"
#include "starrender/star_labels.h"

// While alive: the frame of the current modelview, projection and viewport; the modelview
// replaced by its rotation only (vertices are eye-relative, as for the stars); lighting and
// texturing off. The matrix and the current colour, line, point and enable state come back
// when it ends.
class EyeRelativeScope {
  public:
    explicit EyeRelativeScope(double currLogScale);
    ~EyeRelativeScope();
    EyeRelativeScope(const EyeRelativeScope&) = delete;
    EyeRelativeScope& operator=(const EyeRelativeScope&) = delete;
    const StarFrame& frame() const { return frame_; }

  private:
    StarFrame frame_;
};

// Stroke text at a label's position, character size 0.008 x the label size, starting at the
// position (texts begin with a blank).
void drawLabelText(const LabelPlacement& label, const char* text);
// A wire cube of the label size centred at the label, or, for a marker, three segments of that
// length along the axes.
void drawLabelMarker(const LabelPlacement& label, bool axisCross);
// A distance-error bar: the line and 4-pixel points at both ends (point size back to 1).
void drawErrorBar(const ErrorBar& bar);
