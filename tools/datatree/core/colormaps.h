#pragma once
// The colormap files of the data tree.

#include <string>

// B-V colormap: the entry count, then one "r g b a" line per entry, evenly spaced over
// B-V kBvColourStart .. kBvColourEnd (the bounds themselves go on the color_map line of the
// star parameter file).
constexpr int kBvColormapEntries = 241;  // 0.01 mag per step
std::string formatBvColormap();

// Spectral colormap: one "type x y r g b" line per spectral type and luminosity class
// ("G2(V)"), x and y the CIE chromaticity and r g b 0..255, all from a black body at the
// type's effective temperature. Dwarfs come first: the lookup takes the first entry of a
// class nearest in subclass.
std::string formatSpectralColormap();

struct SpectralTemperature {
    const char* type;  // "G2(V)"
    double kelvin;
};
// The table behind formatSpectralColormap, and its length.
const SpectralTemperature* spectralTemperatures(int* count);
