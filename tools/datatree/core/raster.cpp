#include "tools/datatree/core/raster.h"

#include <stb_image.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "image/pnm_file.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/text_input.h"

Raster decodePicture(const std::string& path, int components) {
    std::string bytes = readWholeFile(path);
    int w = 0, h = 0, n = 0;
    if (!stbi_info_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), int(bytes.size()),
                               &w, &h, &n)) {
        throw DataError(path + ": not a readable picture (" + stbi_failure_reason() + ")");
    }
    if (w <= 0 || h <= 0 || (long long)w * h > kMaxRasterPixels) {
        throw DataError(path + ": picture size " + std::to_string(w) + " x " + std::to_string(h) +
                        " out of range");
    }
    stbi_uc* data = stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()),
                                          int(bytes.size()), &w, &h, &n, components);
    if (!data) throw DataError(path + ": damaged picture (" + stbi_failure_reason() + ")");
    Raster r;
    r.width = w;
    r.height = h;
    r.components = components;
    r.pixels.assign(data, data + std::size_t(w) * h * components);
    stbi_image_free(data);
    return r;
}

void sampleBilinear(const Raster& image, double u, double v, bool wrapU, double* out) {
    double x = u * image.width - 0.5, y = v * image.height - 0.5;
    int x0 = int(std::floor(x)), y0 = int(std::floor(y));
    double fx = x - x0, fy = y - y0;
    auto column = [&](int c) {
        if (wrapU) return ((c % image.width) + image.width) % image.width;
        return std::min(std::max(c, 0), image.width - 1);
    };
    auto row = [&](int r) { return std::min(std::max(r, 0), image.height - 1); };
    int xa = column(x0), xb = column(x0 + 1), ya = row(y0), yb = row(y0 + 1);
    for (int c = 0; c < image.components; ++c) {
        double top = image.at(xa, ya, c) * (1 - fx) + image.at(xb, ya, c) * fx;
        double bottom = image.at(xa, yb, c) * (1 - fx) + image.at(xb, yb, c) * fx;
        out[c] = top * (1 - fy) + bottom * fy;
    }
}

Raster selectChannels(const Raster& image, int first, int count) {
    Raster r;
    r.width = image.width;
    r.height = image.height;
    r.components = count;
    r.pixels.resize(std::size_t(r.width) * r.height * count);
    for (int y = 0; y < r.height; ++y)
        for (int x = 0; x < r.width; ++x)
            for (int c = 0; c < count; ++c)
                r.at(x, y, c) = image.at(x, y, first + c);
    return r;
}

namespace {

void replaceWith(const std::string& temporary, const std::string& path) {
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        throw DataError("cannot rename [" + temporary + "] to [" + path + "]");
    }
}

}  // namespace

void writePnmAtomically(const std::string& path, const Raster& image) {
    if (image.components != 1 && image.components != 3) {
        throw DataError(path + ": a PNM texture needs 1 or 3 components");
    }
    makeDirectories(directoryOf(path));
    std::string temporary = path + ".tmp";
    if (write_pnm(temporary.c_str(), image.width, image.height, image.components,
                  image.pixels.data()) != 0) {
        std::remove(temporary.c_str());
        throw DataError("cannot write [" + temporary + "]");
    }
    replaceWith(temporary, path);
}

void writeSgiAtomically(const std::string& path, const Raster& image) {
    std::vector<unsigned char> out(512, 0);
    auto put16 = [&](std::size_t at, unsigned v) {
        out[at] = static_cast<unsigned char>(v >> 8);
        out[at + 1] = static_cast<unsigned char>(v & 0xFF);
    };
    put16(0, 474);  // magic
    out[2] = 0;     // verbatim
    out[3] = 1;     // bytes per channel
    put16(4, image.components == 1 ? 2 : 3);
    put16(6, unsigned(image.width));
    put16(8, unsigned(image.height));
    put16(10, unsigned(image.components));
    out[19] = 255;  // largest pixel value (bytes 12-15 smallest, 16-19 largest)
    // Channel planes, each bottom row first.
    for (int c = 0; c < image.components; ++c)
        for (int y = image.height - 1; y >= 0; --y)
            for (int x = 0; x < image.width; ++x)
                out.push_back(image.at(x, y, c));
    writeFileAtomically(path, out);
}

void writeTgaAtomically(const std::string& path, const Raster& rgba) {
    if (rgba.components != 4) throw DataError(path + ": a 32-bit TGA needs 4 components");
    std::vector<unsigned char> out(18, 0);
    out[2] = 2;  // uncompressed true colour
    out[12] = static_cast<unsigned char>(rgba.width & 0xFF);
    out[13] = static_cast<unsigned char>(rgba.width >> 8);
    out[14] = static_cast<unsigned char>(rgba.height & 0xFF);
    out[15] = static_cast<unsigned char>(rgba.height >> 8);
    out[16] = 32;
    out[17] = 8;  // 8 alpha bits, origin at the lower left
    for (int y = rgba.height - 1; y >= 0; --y) {
        for (int x = 0; x < rgba.width; ++x) {
            out.push_back(rgba.at(x, y, 2));
            out.push_back(rgba.at(x, y, 1));
            out.push_back(rgba.at(x, y, 0));
            out.push_back(rgba.at(x, y, 3));
        }
    }
    writeFileAtomically(path, out);
}
