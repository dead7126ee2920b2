#pragma once
// One-dimensional cubic Bézier curves, the control-value rule that shapes a channel at a
// keyframe, and the timing curve that reshapes the parameter of the field-of-view and aspect
// channels inside a segment.

#include "movie/keyframe.h"

// (1-u)^3 p0 + 3u(1-u)^2 p1 + 3u^2(1-u) p2 + u^3 p3.
double bezier1D(double p0, double p1, double p2, double p3, double u);

// Control value just after p1 on a curve through p0, p1, p2, for level factor level and
// tangent factor factor.
double controlValueAfter(double p0, double p1, double p2, double level, double factor);
// Control value just before p1.
double controlValueBefore(double p0, double p1, double p2, double level, double factor);

// The parameter u in 0 .. 1 at which the Bézier (p0, p1, p2, p3) reaches target, found by
// bisection to 1e-5. A target outside p0 .. p3 prints "ERR in searchLocalT\n" and gives the
// nearer end.
double searchLocalT(double p0, double p1, double p2, double p3, double target);

// The warped parameter s of the segment a -> b at local parameter t, in frame units of the
// keyframe spacing. before is a's previous keyframe and after is b's next one (null when
// missing).
double timingCurve(const KeyFrame* before, const KeyFrame& a, const KeyFrame& b,
                   const KeyFrame* after, double t);
