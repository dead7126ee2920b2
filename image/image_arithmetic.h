#pragma once
// Image arithmetic on in-memory images (row-major bytes) and value maps; no GL here.

#include <cstddef>
#include <vector>

// Maps values onto grey bytes: the data onto 0 .. 254 between the smallest value and the
// largest value below background, values above that largest one (the background) onto 255.
// Returns count bytes, or an empty buffer after
// "floatToImage : Not enough memory to allocate for dataOut!\n\n".
std::vector<unsigned char> floatToImage(const float* data, std::size_t count, float background);
// The same for doubles ("doubleToImage : Not enough memory to allocate for dataOut!\n\n").
std::vector<unsigned char> doubleToImage(const double* data, std::size_t count, double background);
// Element-wise widening ("floatToDouble : Not enough memory to allocate for dataOut!\n\n").
std::vector<double> floatToDouble(const float* data, std::size_t count);

// A new cropWidth x cropHeight image, zero-filled, holding the part of the rectangle at (x, y)
// that lies inside the source, copied to its top-left corner. Empty when a crop size is < 1.
std::vector<unsigned char> cropImage(const unsigned char* image, int width, int height,
                                     int components, int x, int y, int cropWidth, int cropHeight);

// Copies src into dest with its top-left corner at (x, y), clipped to dest on all sides.
void pasteImage(unsigned char* dest, int width, int height, int components,
                const unsigned char* src, int srcWidth, int srcHeight, int x, int y);

// Per byte |a - b|. Empty after "Err (rmsImgs): <NULL> input encountered.\n",
// "Err (rmsImgs): with imgW, imgH, or imgComp.\n" or
// "Err (rmsImgs): cannot allocate memory to imgDiff.\n".
std::vector<unsigned char> diffImgs(const unsigned char* a, const unsigned char* b, int width,
                                    int height, int components);

// Root-mean-square difference per component into rms[0 .. components-1]. A component pair
// takes part when either value is above the threshold (converted to an integer); the sum is
// divided by all width * height pixels. Bad arguments print the "Err (rmsImgs): ..." messages
// and leave rms unchanged.
void rmsImgs(const unsigned char* a, const unsigned char* b, int width, int height, int components,
             double* rms, double threshold);

// Signal-to-noise ratio per component: sum of a^2 over sum of (a - b)^2, over the pairs that
// take part as in rmsImgs. With no noise the ratio is infinite; with neither signal nor noise
// it is 0. Same messages as rmsImgs.
void snrImgs(const unsigned char* a, const unsigned char* b, int width, int height, int components,
             double* snr, double threshold);

// Normalises (x, y, z) and gives its longitude atan2(y, x) in [0, 360) and latitude asin(z),
// both in degrees. A zero vector gives 0 and 0.
void directionAngles(const double vector[3], double* longitude, double* latitude);
