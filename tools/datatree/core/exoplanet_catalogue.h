#pragma once
// The extrasolar planet file of the data tree: planets of stars that resolve to an HD number,
// with mass, period, semimajor axis, eccentricity and the radial-velocity semi-amplitude K,
// in the fixed columns the star list reads.

#include <string>
#include <unordered_map>
#include <vector>

#include "tools/datatree/core/json.h"
#include "tools/datatree/core/star_sources.h"

// Finds, inside a binary, the zlib-compressed resource (u32 big-endian size of the rest of
// the resource, u32 big-endian plain size, zlib stream) whose plain text contains marker,
// and returns that text. Throws DataError when none does.
std::string extractCompressedResource(const std::string& binaryPath, const std::string& marker);

// Radial-velocity semi-amplitude in m/s of a planet of mass m sin i (Jupiter masses) on an
// orbit of period P (days) and eccentricity e around a star of mass M (solar masses):
// K = (2 pi G / P)^(1/3) m sin i (M + m)^(-2/3) / sqrt(1 - e^2).
double radialVelocityAmplitude(double massJupiter, double periodDays, double eccentricity,
                               double starMassSolar);

struct Planet {
    int hd = 0;
    std::string host;  // ASCII, at most 15 characters
    std::string letter;
    double mass = 0.0, period = 0.0, semimajorAxis = 0.0, eccentricity = 0.0, k = 0.0;
};

// What resolves a host star to an HD number.
struct HostLookup {
    CrossIds crossIds;
    std::unordered_map<int, NamedStar> names;               // HIP -> name, HD
    std::unordered_map<std::string, int> hipOfDesignation;  // "51_Peg", "alpha_And" -> HIP
    std::unordered_map<int, StarPosition> positions;        // HIP -> position
    std::unordered_map<int, ProperMotion> properMotions;
};

// How far a host's catalogue position may lie from its Hipparcos star.
constexpr double kHostMatchArcsec = 20.0;

struct PlanetStatistics {
    int hosts = 0, hostsWithHd = 0, planets = 0;
    int skippedIncomplete = 0, skippedNoStarMass = 0, skippedOutOfRange = 0;
};

// Planets of the catalogue ("stars" object of host name -> host record with "exoplanets")
// whose host resolves to HD and that have every element; sorted by HD, then letter.
std::vector<Planet> selectPlanets(const JsonValue& catalogue, const HostLookup& lookup,
                                  PlanetStatistics* stats);

// The fixed-column text.
std::string formatPlanetFile(const std::vector<Planet>& planets);
