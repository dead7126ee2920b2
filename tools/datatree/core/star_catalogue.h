#pragma once
// The star datasets: every Hipparcos star with an HD number and a positive parallax, joined
// from the catalogue sources, and their ".star" text form.

#include <string>
#include <unordered_map>
#include <vector>

#include "common_package/math/src/vec3.h"
#include "tools/datatree/core/star_sources.h"

// Radial velocity assumed for stars whose radial velocity is unknown, and its error: the
// typical one-dimensional velocity dispersion of the stars near the Sun. The velocity errors
// of such stars therefore show how little of their motion is known along the line of sight.
constexpr double kUnknownRadialVelocity = 0.0;        // km/s
constexpr double kUnknownRadialVelocitySigma = 30.0;  // km/s
// Error of the radial velocities that the bright-star list gives (quoted to 1 km/s).
constexpr double kKnownRadialVelocitySigma = 2.0;  // km/s
// Fractional velocity errors are taken against at least this speed and capped, so that a
// component near zero does not give an unbounded fraction.
constexpr double kVelocityErrorFloor = 0.1;  // km/s
constexpr double kMaxFractionalError = 10.0;

// How far a bright-star entry may lie from the Hipparcos position (carried to J2000).
constexpr double kBrightStarMatchArcsec = 60.0;

struct StarSources {
    ZoneCatalogue zones;
    std::vector<std::string> spectralTypes;
    CrossIds crossIds;
    std::unordered_map<int, double> parallaxErrors;
    std::unordered_map<int, ProperMotion> properMotions;
    std::unordered_map<int, std::vector<std::string>> designations;
    std::unordered_map<int, std::vector<std::string>> properNames;
    std::unordered_map<int, StarPosition> positions;
    std::unordered_map<int, NamedStar> names;
    std::vector<BrightStar> brightStars;
};

// Relative paths of the sources below the unpacked package root.
struct StarSourceFiles {
    static constexpr const char* kZoneCatalogues[3] = {
        "usr/share/stellarium/stars/default/stars_0_0v0_8.cat",
        "usr/share/stellarium/stars/default/stars_1_0v0_8.cat",
        "usr/share/stellarium/stars/default/stars_2_0v0_8.cat"};
    static constexpr const char* kSpectralTypes =
        "usr/share/stellarium/stars/default/stars_hip_sp_0v0_4.cat";
    static constexpr const char* kCrossIds = "usr/share/stellarium/stars/default/cross-id.dat";
    static constexpr const char* kParallaxErrors =
        "usr/share/stellarium/stars/default/hip_plx_err.dat";
    static constexpr const char* kProperMotions = "usr/share/stellarium/stars/default/hip_pm.dat";
    static constexpr const char* kDesignations = "usr/share/stellarium/stars/default/name.fab";
    static constexpr const char* kProperNames =
        "usr/share/stellarium/skycultures/western/star_names.fab";
    static constexpr const char* kPositions = "package/data/stars.14.json";
    static constexpr const char* kNames = "package/data/starnames.json";
    static constexpr const char* kBrightStars = "usr/share/aa/star.cat";
};

// Reads every source below root. Throws DataError on the first bad one.
StarSources loadStarSources(const std::string& root);

// HD number of a HIP star: the cross-identification first, the star-name list second.
int hdOfHip(const StarSources& sources, int hip);

struct StarRecord {
    int hd = 0, hip = 0;
    double raDeg = 0.0, decDeg = 0.0;  // J2000 (epoch of the positions: 1991.25)
    double vmag = 0.0, bv = 0.0;
    double parallaxMas = 0.0, parallaxSigmaMas = 0.0;
    double distancePc = 0.0;
    Vec3 position;  // pc, galactic
    double distanceError = 0.0;
    Vec3 velocity, velocityError;  // km/s and fractions
    bool radialVelocityKnown = false;
    double luminosity = 0.0;  // units of an M_V = 0 star
    double rgba[4] = {0.8, 0.8, 0.8, 0.8};
    std::string spectralClass = "---";
    double spectralNumber = 0.0;
    std::string luminosityClass = "---";
    std::string name = "---";
};

struct StarStatistics {
    int withHdAndPosition = 0;
    int noParallax = 0;
    int joined = 0;
    int withRadialVelocity = 0;
    int withLuminosityClass = 0;
};

// Joins the sources on HIP; the result is sorted by distance, nearest first.
std::vector<StarRecord> buildStarRecords(const StarSources& sources, StarStatistics* stats);

// The ".star" text of the records (distances in parsecs, galactic frame).
std::string formatStarFile(const std::vector<StarRecord>& records, const std::string& title);

// One data line (no line end).
std::string formatStarLine(const StarRecord& star);
