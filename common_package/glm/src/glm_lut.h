#pragma once
// Colour lookup tables for textures: four tables of 256 integers (red, green, blue, alpha)
// indexed by the input byte; the output is the low byte of the entry.
//
// A LUT file has exactly 256 text lines; line i (from 0) holds "R G B A" for input i, or
// "R G B" in which case alpha maps i to itself.

#include <memory>

constexpr int LUT_SIZE = 256;

struct LUT {
    int red[LUT_SIZE];
    int green[LUT_SIZE];
    int blue[LUT_SIZE];
    int alpha[LUT_SIZE];
};

// Reads a LUT file (plain files only). Returns nullptr on failure; "quiet" silences the
// messages for a missing name and an unopenable file.
std::unique_ptr<LUT> readLUT(const char* fileName, bool quiet);
inline std::unique_ptr<LUT> readLUTVerbose(const char* fileName) {
    return readLUT(fileName, false);
}
// The identity table (every entry maps i to i).
std::unique_ptr<LUT> initLUT();
// Maps an image in place: 2 components through red and alpha, 3 through red, green, blue,
// 4 through all four, any other count every byte through red. Returns 1, or -1 for no LUT,
// no image, or a size or component count below 1.
int applyLUT(const LUT* lut, unsigned char* image, int width, int height, int components,
             bool quiet);
// Prints the 256 rows as " %3d %3d %3d %3d\n".
void printLUT(const LUT* lut);
