#pragma once
// Every adjustable setting of the star catalogue and of star rendering, in one block that is
// saved to and read from the star parameter file and shown by the control panel.

#include <cstdint>

constexpr int kStarParameterPathSize = 512;
constexpr int kNumSpectralClasses = 8;  // O, B, A, F, G, K, M and Other
constexpr int kSpectralClassNameSize = 32;

// Colormap modes.
constexpr int _NO_COLOR_MAP = 0;
constexpr int _USE_BV_COLOR_MAP = 1;
constexpr int _USE_SPECTRAL_COLOR_MAP = 2;

// Aperture filters of the FFT star texture.
constexpr int _STAR_FILTER_SQUARE = 1;
constexpr int _STAR_FILTER_CIRCULAR = 2;
constexpr int _STAR_FILTER_BUTTERWORTH = 3;

// Where the star texture comes from.
enum StarTextureSource : std::int32_t {
    kStarTextureNone = 0,
    kStarTextureAiry = 1,
    kStarTextureGauss = 2,
    kStarTextureFFT = 3,
    kStarTextureFile = 4,
};

struct StarParameter {
    // Constellations.
    char constellationFile[kStarParameterPathSize];
    bool constellationColorsGiven;
    float constellationLineColor[4];
    float constellationBoundColor[4];
    bool constellationWidthsGiven;
    float constellationLineWidth;
    float constellationBoundWidth;
    std::int32_t constellationLineStipple;   // 16-bit pattern, 0 = off
    std::int32_t constellationBoundStipple;  // 16-bit pattern, 0 = off
    float labelScale;
    // Extrasolar planets.
    char extrasolarPlanetFile[kStarParameterPathSize];
    float extrasolarPlanetOrbitScale;
    // Selections. The distance bounds are log10 metres.
    std::int32_t zRangeOn;
    double zRangeMin, zRangeMax;
    std::int32_t vmagRangeOn;
    double vmagRangeMin, vmagRangeMax;
    std::int32_t absmagRangeOn;
    double absmagRangeMin, absmagRangeMax;
    std::int32_t sptypeOn;  // master switch: on while some class is on
    float sptypeRange[kNumSpectralClasses][2];
    std::int32_t sptypeRangeOn[kNumSpectralClasses];
    // Colormaps.
    char spColorMapFile[kStarParameterPathSize];
    char bvColorMapFile[kStarParameterPathSize];
    double bvStart, bvEnd;
    std::int32_t colorMapMode;  // _NO_COLOR_MAP, _USE_BV_COLOR_MAP or _USE_SPECTRAL_COLOR_MAP
    // Star textures.
    std::int32_t pxsizeTex;  // stars of a smaller bucket are drawn as points
    double texSize;          // kept in the file, not used for drawing
    double texScale;
    std::int32_t texParaMinFilter;  // GL enum
    std::int32_t texParaMagFilter;  // GL enum
    std::int32_t textureSource;     // StarTextureSource
    char textureFile[kStarParameterPathSize];
    float filterSize;
    float filterExp;
    float filterCutoff;
    float filterOrder;
    float filterRGB[3];
    std::int32_t filterType;  // _STAR_FILTER_*
    float telescopeDiam;      // metres
    // Brightness.
    float exposure;
    float tuneIntensity;
    float starScale;
    float vmagMin;
    // Epochs and the local standard of rest.
    std::int32_t starAtYear;
    std::int32_t datasetAtYear;
    double lsr[3];  // km/s, galactic frame
};

// The block as a new StarList has it.
StarParameter defaultStarParameter();
