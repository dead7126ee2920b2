#pragma once
// Uncompressed TGA images, as used for the texture font.

// Codes returned by loadTGA.
constexpr int kTgaLoaded = 1;
constexpr int kTgaCannotOpen = -13;
constexpr int kTgaBadType = -14;    // colour-map type not 0, or image type not 2 or 3
constexpr int kTgaBadSize = -15;    // width or height not a power of two from 2 to 512
constexpr int kTgaBadDepth = -16;   // bits per pixel not 8, 24 or 32
constexpr int kTgaShortData = -17;  // pixel data missing (or no memory)

// Reads an uncompressed true-colour (type 2) or greyscale (type 3) TGA file and uploads it
// into the 2-D texture textureName (RGBA for 32 bits, RGB for 24, ALPHA for 8) with linear
// filtering, repeat wrapping and modulate mode. Needs a current GL context for the upload.
// Returns kTgaLoaded or one of the negative codes above; prints nothing.
int loadTGA(const char* fileName, unsigned int textureName);
