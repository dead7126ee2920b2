#pragma once
// Raster images of the converters: decoding the source pictures (PNG, JPEG), simple
// resampling, and the SGI and TGA writers (PNM goes through the image library's write_pnm).

#include <string>
#include <vector>

// Row-major bytes, top row first, components interleaved.
struct Raster {
    int width = 0, height = 0, components = 0;
    std::vector<unsigned char> pixels;

    unsigned char& at(int x, int y, int c) {
        return pixels[(std::size_t(y) * width + x) * components + c];
    }
    unsigned char at(int x, int y, int c) const {
        return pixels[(std::size_t(y) * width + x) * components + c];
    }
};

// Largest picture a converter decodes (pixels).
constexpr long long kMaxRasterPixels = 64LL << 20;

// Decodes a PNG or JPEG file into the requested number of components (1..4). Throws
// DataError when the file is missing, damaged or larger than kMaxRasterPixels.
Raster decodePicture(const std::string& path, int components);

// Bilinear sample at (u, v) in [0, 1] x [0, 1] (u to the right, v down), clamped at the edges
// (or wrapped horizontally when wrapU is set).
void sampleBilinear(const Raster& image, double u, double v, bool wrapU, double* out);

// Keeps channels [first, first + count) of the image.
Raster selectChannels(const Raster& image, int first, int count);

// Writes a PNM file through write_pnm (1 component P5, 3 components P6), atomically.
void writePnmAtomically(const std::string& path, const Raster& image);

// SGI image, verbatim, one byte per channel; rows are stored bottom row first as the format
// wants, so the picture reads upright in any SGI viewer. Atomically.
void writeSgiAtomically(const std::string& path, const Raster& image);

// Uncompressed true-colour TGA of 32 bits (B, G, R, A), no identification field, origin at
// the lower left: the bottom row of the picture is stored first. Atomically.
void writeTgaAtomically(const std::string& path, const Raster& rgba);
