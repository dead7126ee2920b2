#pragma once
// Helpers shared by the particle set's source files; not part of its interface.

#include <vector>

#include "common_package/particle/src/particle_list.h"

namespace particledetail {

// A particle's position in metres; a coordinate that is not a number reads as 0.
void positionMetres(const Particle& p, double out[3]);

// The 64 x 64 RGBA Gaussian blob: texel (row i, column j) has x = j + 0.5 - 32,
// y = i + 0.5 - 32 and value c exp(-(x^2 + y^2) / sigma^2) in all four components
// (255 from 255 up, the integer part above 0, else 0).
constexpr int kGaussSize = 64;
std::vector<unsigned char> gaussTextureImage(int c, float sigma);

// Binds name and uploads an RGBA image with repeat wrapping and the filter fallback chain.
void uploadRGBA(int name, int width, int height, const unsigned char* pixels);

}  // namespace particledetail
