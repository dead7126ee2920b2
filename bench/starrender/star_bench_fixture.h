#pragma once
// Star lists and camera frames shared by the star drawing benchmarks.

#include <memory>
#include <string>

#include "catalogue/star_list.h"
#include "starrender/star_frame.h"

// A star list of n synthetic stars within 300 parsecs (with the Sun), coloured by the data
// tree's B-V colormap when it is there, with the scene's exposure of 0.9. inFrontOnly puts
// every star in front of the camera of benchFrame().
std::unique_ptr<StarList> makeBenchStarList(int n, bool inFrontOnly);

// The Hipparcos catalogue of the data tree (or a synthetic one of the same size).
std::unique_ptr<StarList> makeCatalogueStarList();

// The camera at the Sun (or eyeX parsecs along x from it) looking down -z, one drawing unit a
// parsec, 60 degrees over a 640 x 640 viewport.
StarFrame benchFrame(double eyeX = 0.0);
constexpr int kBenchViewport = 640;
constexpr double kBenchFovy = 60.0;
constexpr double kBenchLogScale = 16.4894;

// The scene's star flags: colormap colours and depth writes.
constexpr int kSceneStarFlags = kStarColorMap | kStarDepthWrite;
