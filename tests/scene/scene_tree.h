#pragma once
// A small data tree for running the star scene in tests: three stars 10 parsecs from the Sun
// along +x, +y and -z, a star parameter file, tiny models, a one-particle Sun, a movie script
// whose eye sits at the Sun looking along +x at log scale 16, and (optionally) an ephemeris.

#include <string>

namespace scenetest {

// The stars of the tree.
constexpr int kAlphaHD = 1001;  // "Alpha Testi" at (10, 0, 0) parsecs, straight ahead
constexpr int kBetaHD = 1002;   // "Beta Testi" at (0, 10, 0)
constexpr int kGammaHD = 1003;  // "Gamma (Ursa)-Minor" at (0, 0, -10)

// The drawing area of the tree's script.
constexpr int kScriptWidth = 480;
constexpr int kScriptHeight = 640;

struct SceneTree {
    std::string root;      // the data root (TOPDIR)
    std::string starFile;  // absolute path of the .star file
    std::string script;    // absolute path of the movie script
};

// Writes the tree under root. starFileName names the .star file (its name shows in the
// window title, so tests can find their window by it). ephemerisRecords 0 writes no ephemeris.
SceneTree writeSceneTree(const std::string& root, const std::string& starFileName,
                         int ephemerisRecords = 0);

}  // namespace scenetest
