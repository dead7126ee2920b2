#pragma once
// One star of the catalogue. StarList keeps its stars in one contiguous array of these
// plain records, nearest to the Sun first, and copies them by value.

#include <cstdint>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"

struct ExtrasolarPlanet;

constexpr int kStarNameSize = 32;          // common and constellation names, terminator included
constexpr int kConstellationCodeSize = 4;  // three letters and the terminator
constexpr int kSpectralClassSize = 4;      // one or two letters ("G", "DA")
constexpr int kSpectralTypeSize = 12;      // luminosity class "I" .. "V", at most 10 characters

struct StarObj {
    Phc catalogPos;      // position at the dataset epoch, scaled by the SIZE line, not normalised
    Phc pos;             // normalised position at the displayed epoch (motion and warp applied)
    float distErr;       // fractional error of the distance (0.05 = 5 %), >= 0
    Vec3 vel;            // space velocity in km/s, galactic frame
    Vec3 velErr;         // fractional error of each velocity component
    float bv;            // B-V colour index
    float lum;           // luminosity in units of a star of absolute V magnitude 0
    float fileColor[4];  // RGBA from the dataset file, each in [0,1]
    std::int32_t hd;     // Henry Draper number, 0 if none (-2 marks the scene's anchor)
    std::int32_t hic;    // Hipparcos number, 0 if none
    char commonName[kStarNameSize];
    char constellationName[kStarNameSize];  // "---" after loading, empty means none
    char constellationCode[kConstellationCodeSize];
    char spectralClass[kSpectralClassSize];
    float spectralNumber;  // subclass 0 .. 10
    char spectralType[kSpectralTypeSize];
    float homeMag;               // apparent magnitude seen from the Sun (printed as abs.VMag)
    float colormapColor[4];      // RGBA from the active colormap
    float absMag;                // -2.5 log10(lum)
    float relLum;                // lum / the normalising luminosity
    Phc motion;                  // (velocity + LSR) in metres per Julian year, w = 0
    std::int32_t numPlanets;     // extrasolar planets of this star
    ExtrasolarPlanet** planets;  // owned by the star, null when it has none
    std::int32_t drawBucket;     // per frame: point-size bucket, 0 = not drawn as a point
    std::int32_t drawCoverage;   // per frame: coverage of the point in 1/256
    Phc eyePos;                  // per frame: position relative to the eye, normalised
    float appMag;                // per frame: apparent magnitude from the eye point
};

// A record with every field at its "missing" value: position zero, colour 0.8 grey,
// names "---", no planets.
StarObj makeEmptyStarObj();
