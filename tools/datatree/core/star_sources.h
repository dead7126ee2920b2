#pragma once
// Readers of the star catalogue sources: the binary Hipparcos zone catalogues with their
// spectral-type list, the cross-identification, parallax-error, proper-motion and name
// tables, the GeoJSON star positions and star names, and the bright-star list that carries
// radial velocities. Each reader checks its input and throws DataError naming the file and,
// for text files, the line.

#include <string>
#include <unordered_map>
#include <vector>

// One record of the binary zone catalogues.
struct ZoneStar {
    double vmag = 0.0;         // V magnitude (0.05 mag steps)
    double bv = 0.0;           // B-V (0.03 mag steps)
    int spectralIndex = 0;     // line index into the spectral-type list
    double parallaxMas = 0.0;  // mas
};

// HIP -> record; the first record of a HIP number wins (components share the number).
using ZoneCatalogue = std::unordered_map<int, ZoneStar>;

// Adds the records of one zone catalogue file. Checks the magic number, the record type,
// the level and that the zone counts match the file size.
void readZoneCatalogue(const std::string& path, ZoneCatalogue* catalogue);

// Reads the spectral-type list: line i (from 0) is the type of spectral index i.
std::vector<std::string> readSpectralTypes(const std::string& path);

// Tab-separated cross-identification: HIP -> HD (first non-empty) and HR -> HIP.
struct CrossIds {
    std::unordered_map<int, int> hdOfHip;
    std::unordered_map<int, int> hipOfHr;
};
CrossIds readCrossIds(const std::string& path);

// HIP -> parallax error (mas).
std::unordered_map<int, double> readParallaxErrors(const std::string& path);

// HIP -> proper motion (mas/yr, RA part times cos dec).
struct ProperMotion {
    double ra = 0.0, dec = 0.0;
};
std::unordered_map<int, ProperMotion> readProperMotions(const std::string& path);

// "HIP|text" tables. For designations the text is e.g. "alpha_CMa" in Greek letters; for
// proper names it is _("Name") and the quotes are removed. Every entry is kept, in order.
std::unordered_map<int, std::vector<std::string>> readHipNames(const std::string& path,
                                                               bool quotedNames);

// GeoJSON star positions: HIP -> J2000 position (degrees), V and B-V.
struct StarPosition {
    double raDeg = 0.0, decDeg = 0.0;
    double vmag = 0.0;
    bool hasBv = false;
    double bv = 0.0;
};
std::unordered_map<int, StarPosition> readStarPositions(const std::string& path);

// Star names keyed by HIP: proper name, HD number and constellation code.
struct NamedStar {
    std::string name;
    int hd = 0;
    std::string constellation;
};
std::unordered_map<int, NamedStar> readStarNames(const std::string& path);

// Bright stars with radial velocities, J2000 (epoch-1950 lines are precessed).
struct BrightStar {
    double raDeg = 0.0, decDeg = 0.0;  // J2000
    double radialVelocity = 0.0;       // km/s
    double vmag = 0.0;
    std::string name;
};
std::vector<BrightStar> readBrightStars(const std::string& path);

// The Hipparcos positions hold at epoch J1991.25; this carries one to J2000 along its proper
// motion (none when pm is null).
void positionAtJ2000(const StarPosition& p, const ProperMotion* pm, double* raDeg, double* decDeg);
