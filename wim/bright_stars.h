#pragma once
// The stars the overview map (world in miniature) always shows: the bright stars of the sky
// as seen from the Sun, and the nearest stars. Both are copies of star records taken once at
// start, in catalogue order.

#include <vector>

#include "catalogue/star_list.h"

// Stars brighter than this apparent V magnitude, seen from the Sun, are bright stars.
constexpr float kBrightStarMagnitude = 2.0f;
// The overview map shows this many nearest stars.
constexpr int kNumNearbyStars = 23;

// Copies every star from index 1 on whose apparent magnitude seen from the Sun is below 2.0,
// prints "num_bright_stars = %d\n" and returns the count. Out of memory: prints
// "Err (build_bright_starlist): failed to allocate memory.\n" and ends the process (status 1).
int build_bright_starlist(const StarList& stars);
const std::vector<StarObj>& brightStarList();

// Copies the 23 stars nearest to the Sun (fewer when the list holds fewer); the Sun itself is
// not one of them. Returns the count.
int build_nearby_starlist(const StarList& stars);
const std::vector<StarObj>& nearbyStarList();

// The apparent V magnitude of a star seen from the Sun, from its absolute magnitude and its
// distance (independent of the faint-limit shift of the brightness model).
float magnitudeSeenFromSun(const StarObj& star);
