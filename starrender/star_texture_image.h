#pragma once
// The images of star textures, without any GL: Gaussian, Airy and FFT-filtered profiles,
// file images, the half-light radius and the alpha ramp.

#include <vector>

constexpr int kStarTextureSize = 64;    // synthesised textures are 64 x 64 RGBA
constexpr int kStarTextureCentre = 32;  // pixel (32, 32) is the centre
constexpr int kMaxStarTextureFileSide = 8192;

// RGBA images, rows in order, pixel (i, j) at ((i * width) + j) * 4.
std::vector<unsigned char> gaussStarImage(float filterSize, float filterCutoff);
std::vector<unsigned char> airyStarImage(float filterSize, float filterCutoff, float telescopeDiam);
// Prints which aperture filter it uses.
std::vector<unsigned char> fftStarImage(float filterSize, float filterExp, float filterCutoff,
                                        float filterOrder, const float filterRGB[3],
                                        int filterType);

// The RGBA image of a PNM or SGI file, rescaled to the nearest powers of two. Prints the
// reason and returns false when the file cannot be read or has other than 3 or 4 channels.
bool fileStarImage(const char* fileName, std::vector<unsigned char>& rgba, int* width, int* height);

// Area-averaging resampler of RGBA images (used instead of GLU's scaling, which wraps
// colours from the opposite edge when enlarging).
std::vector<unsigned char> rescaleRGBA(const std::vector<unsigned char>& src, int width, int height,
                                       int newWidth, int newHeight);

// Radius, as a fraction of the image width, inside which the given fraction of the summed
// intensity lies (intensity = mean of a pixel's channels).
double halfLightRadius(const unsigned char* image, int width, int height, int channels,
                       double fraction);

// Alpha from the mean of red, green and blue: 0 below 32, 255 above 223, a ramp between.
void applyAlphaRamp(unsigned char* rgba, int width, int height);
