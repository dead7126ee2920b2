#include "tools/datatree/core/colormaps.h"

#include <algorithm>
#include <cmath>

#include "tools/datatree/core/star_colour.h"
#include "tools/datatree/core/text_input.h"

namespace {

// Effective temperatures of the spectral types (K). Dwarfs follow the main-sequence scale of
// Pecaut and Mamajek (2013); giants and supergiants the usual calibrations (Alonso et al.
// 1999 for G-K giants, van Belle et al. 1999 for M giants, Levesque et al. 2005 for red
// supergiants), rounded.
const SpectralTemperature kTemperatures[] = {
    {"O5(V)", 41400},
    {"O6(V)", 39500},
    {"O7(V)", 37100},
    {"O8(V)", 35100},
    {"O9(V)", 33300},
    {"B0(V)", 31400},
    {"B1(V)", 26000},
    {"B2(V)", 20600},
    {"B3(V)", 17000},
    {"B4(V)", 16400},
    {"B5(V)", 15700},
    {"B6(V)", 14500},
    {"B7(V)", 14000},
    {"B8(V)", 12300},
    {"B9(V)", 10700},
    {"A0(V)", 9700},
    {"A1(V)", 9300},
    {"A2(V)", 8800},
    {"A3(V)", 8600},
    {"A4(V)", 8250},
    {"A5(V)", 8100},
    {"A6(V)", 7910},
    {"A7(V)", 7760},
    {"A8(V)", 7590},
    {"A9(V)", 7400},
    {"F0(V)", 7220},
    {"F1(V)", 7020},
    {"F2(V)", 6820},
    {"F3(V)", 6750},
    {"F4(V)", 6670},
    {"F5(V)", 6550},
    {"F6(V)", 6350},
    {"F7(V)", 6280},
    {"F8(V)", 6180},
    {"F9(V)", 6050},
    {"G0(V)", 5930},
    {"G1(V)", 5860},
    {"G2(V)", 5770},
    {"G3(V)", 5720},
    {"G4(V)", 5680},
    {"G5(V)", 5660},
    {"G6(V)", 5600},
    {"G7(V)", 5550},
    {"G8(V)", 5480},
    {"G9(V)", 5380},
    {"K0(V)", 5270},
    {"K1(V)", 5170},
    {"K2(V)", 5100},
    {"K3(V)", 4830},
    {"K4(V)", 4600},
    {"K5(V)", 4440},
    {"K6(V)", 4300},
    {"K7(V)", 4100},
    {"K8(V)", 3990},
    {"K9(V)", 3930},
    {"M0(V)", 3850},
    {"M1(V)", 3660},
    {"M2(V)", 3560},
    {"M3(V)", 3430},
    {"M4(V)", 3210},
    {"M5(V)", 3060},
    {"M6(V)", 2810},
    {"M7(V)", 2680},
    {"M8(V)", 2570},
    {"B0(III)", 29000},
    {"B5(III)", 15000},
    {"A0(III)", 9500},
    {"A5(III)", 8000},
    {"F0(III)", 7150},
    {"F5(III)", 6400},
    {"G0(III)", 5600},
    {"G5(III)", 5050},
    {"G8(III)", 4900},
    {"K0(III)", 4750},
    {"K1(III)", 4600},
    {"K2(III)", 4450},
    {"K3(III)", 4300},
    {"K4(III)", 4150},
    {"K5(III)", 4000},
    {"M0(III)", 3850},
    {"M1(III)", 3750},
    {"M2(III)", 3660},
    {"M3(III)", 3560},
    {"M4(III)", 3450},
    {"M5(III)", 3350},
    {"M6(III)", 3250},
    {"M7(III)", 3150},
    {"M8(III)", 3050},
    {"B0(I)", 26000},
    {"B5(I)", 13600},
    {"A0(I)", 9700},
    {"A5(I)", 8500},
    {"F0(I)", 7700},
    {"F5(I)", 6900},
    {"G0(I)", 5550},
    {"G5(I)", 4850},
    {"K0(I)", 4420},
    {"K5(I)", 3900},
    {"M0(I)", 3750},
    {"M2(I)", 3650},
    {"M5(I)", 3450},
    // Classes outside O..M need no luminosity class.
    {"WN", 50000},
    {"WC", 60000},
    {"DA", 12000},
    {"DB", 16000},
    {"DC", 8000},
    {"C", 2800},
    {"N", 2700},
    {"R", 3600},
    {"S", 3100},
    {"L", 1900},
    {"T", 1200},
};

int channel(double v) {
    return std::min(255, std::max(0, int(std::lround(v * 255.0))));
}

}  // namespace

const SpectralTemperature* spectralTemperatures(int* count) {
    *count = int(sizeof kTemperatures / sizeof kTemperatures[0]);
    return kTemperatures;
}

std::string formatBvColormap() {
    std::string out;
    out +=
        format("# Black-body colours of stars over B-V %.1f .. %.1f (%d entries, %.2f mag apart)\n",
               kBvColourStart, kBvColourEnd, kBvColormapEntries,
               (kBvColourEnd - kBvColourStart) / (kBvColormapEntries - 1));
    out += format("%d\n", kBvColormapEntries);
    for (int i = 0; i < kBvColormapEntries; ++i) {
        double bv = kBvColourStart + i * (kBvColourEnd - kBvColourStart) / (kBvColormapEntries - 1);
        Rgb c = colourFromBv(bv);
        out += format("%.4f %.4f %.4f 1.0000\n", c.r, c.g, c.b);
    }
    return out;
}

std::string formatSpectralColormap() {
    std::string out;
    out += "# Star colours by spectral type: a black body at the type's effective temperature.\n";
    out += "# type  CIE x  CIE y  red green blue (0..255)\n";
    int n;
    const SpectralTemperature* t = spectralTemperatures(&n);
    for (int i = 0; i < n; ++i) {
        double x, y;
        blackbodyChromaticity(t[i].kelvin, &x, &y);
        Rgb c = blackbodyColour(t[i].kelvin);
        out += format("%-8s %.4f %.4f %3d %3d %3d\n", t[i].type, x, y, channel(c.r), channel(c.g),
                      channel(c.b));
    }
    return out;
}
