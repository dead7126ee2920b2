#pragma once
// Star colours: the colour of a black body at the star's temperature as a display shows it
// (sRGB, brightest channel 1), with the temperature taken from B-V.

struct Rgb {
    double r = 0.0, g = 0.0, b = 0.0;
};

// Effective temperature (K) of a star of colour index B-V (the black-body fit of
// Ballesteros 2012, good for main-sequence stars from about -0.4 to 2.0).
double temperatureFromBv(double bv);

// Colour of a black body at temperature T (K): CIE 1931 colour matching (analytic fit),
// converted to linear sRGB, scaled so that the largest channel is 1, negative channels set
// to 0, then gamma-encoded.
Rgb blackbodyColour(double temperatureK);

// CIE 1931 chromaticity (x, y) of a black body at temperature T (K).
void blackbodyChromaticity(double temperatureK, double* x, double* y);

// Range of B-V the colour ramp covers; values outside take the end colours.
constexpr double kBvColourStart = -0.4;
constexpr double kBvColourEnd = 2.0;

// blackbodyColour(temperatureFromBv(bv)) with bv clamped to the range above (from a table
// 0.001 mag apart).
Rgb colourFromBv(double bv);
