#pragma once
// Velocity trails: each star's motion drawn as a line from where it is to where it will be
// after a number of years, with the errors of its velocity as a cross at the far end.

#include "catalogue/star_list.h"

// Trails are drawn for stars lying within these decades of the drawing unit (as the distance
// error bars are): nearer ones would be cut by the near plane, farther ones are too small.
constexpr double kTrailNearestDecades = -1.0;
constexpr double kTrailFarthestDecades = 3.5;

struct TrailSegment {
    double from[3];
    double to[3];
};

// The trail of one star at log scale s over years: its start and end in drawing units; false
// when the star lies outside the drawn decades or does not move.
bool velocityTrail(const StarObj& star, double currLogScale, double years, TrailSegment& trail);

// The error cross at the end of a trail: three segments along the axes, each the velocity
// component times its relative error times years times errorScale, either side of the end.
void velocityErrorCross(const StarObj& star, const TrailSegment& trail, double currLogScale,
                        double years, double errorScale, TrailSegment cross[3]);

// Draws the trails of the stars that pass the selections (the Sun and the stars outside the
// distance selection skipped), with the error crosses when withErrors is set.
void drawVelocityTrails(const StarList& stars, double currLogScale, int years, bool withErrors,
                        float errorScale);
