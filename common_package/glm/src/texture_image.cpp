#include "common_package/glm/src/texture_image.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace glmdetail {
namespace {

struct Tap {
    int index;
    float weight;
};

// For each output position along one axis, the input samples and their weights.
std::vector<std::vector<Tap>> axisTaps(int inSize, int outSize) {
    std::vector<std::vector<Tap>> taps(outSize);
    double ratio = static_cast<double>(inSize) / outSize;
    for (int o = 0; o < outSize; o++) {
        if (inSize > outSize) {
            double start = o * ratio, end = (o + 1) * ratio;
            for (int i = static_cast<int>(start); i < inSize && i < end; i++) {
                double overlap = std::min(end, i + 1.0) - std::max(start, double(i));
                if (overlap > 0.0) taps[o].push_back({i, static_cast<float>(overlap / ratio)});
            }
        } else {
            double x = (o + 0.5) * ratio - 0.5;
            x = std::max(0.0, std::min(x, inSize - 1.0));
            int i0 = static_cast<int>(x);
            int i1 = std::min(i0 + 1, inSize - 1);
            float f = static_cast<float>(x - i0);
            taps[o].push_back({i0, 1.0f - f});
            if (f > 0.0f) taps[o].push_back({i1, f});
        }
    }
    return taps;
}

}  // namespace

ImageBuffer rescaleImage(const ImageBuffer& in, int width, int height) {
    ImageBuffer out;
    if (in.empty() || in.width < 1 || in.height < 1 || in.components < 1 || width < 1 || height < 1)
        return out;
    const int c = in.components;
    const std::vector<std::vector<Tap>> xTaps = axisTaps(in.width, width);
    const std::vector<std::vector<Tap>> yTaps = axisTaps(in.height, height);

    // Rows first (in.height x width), then columns.
    std::vector<float> rows(static_cast<std::size_t>(in.height) * width * c, 0.0f);
    for (int y = 0; y < in.height; y++) {
        const unsigned char* src = &in.pixels[static_cast<std::size_t>(y) * in.width * c];
        float* dst = &rows[static_cast<std::size_t>(y) * width * c];
        for (int x = 0; x < width; x++)
            for (const Tap& t : xTaps[x])
                for (int k = 0; k < c; k++)
                    dst[x * c + k] += t.weight * src[t.index * c + k];
    }
    out.width = width;
    out.height = height;
    out.components = c;
    out.pixels.assign(static_cast<std::size_t>(width) * height * c, 0);
    std::vector<float> line(static_cast<std::size_t>(width) * c);
    for (int y = 0; y < height; y++) {
        std::fill(line.begin(), line.end(), 0.0f);
        for (const Tap& t : yTaps[y]) {
            const float* src = &rows[static_cast<std::size_t>(t.index) * width * c];
            for (std::size_t i = 0; i < line.size(); i++)
                line[i] += t.weight * src[i];
        }
        unsigned char* dst = &out.pixels[static_cast<std::size_t>(y) * width * c];
        for (std::size_t i = 0; i < line.size(); i++)
            dst[i] =
                static_cast<unsigned char>(std::lround(std::max(0.0f, std::min(255.0f, line[i]))));
    }
    return out;
}

bool addAlphaChannel(ImageBuffer* image, const ImageBuffer& alpha) {
    if (alpha.components != 1 || alpha.width != image->width || alpha.height != image->height)
        return false;
    const std::size_t pixels = static_cast<std::size_t>(image->width) * image->height;
    if (alpha.pixels.size() < pixels || image->pixels.size() < pixels * image->components)
        return false;
    if (image->components == 4) {
        for (std::size_t i = 0; i < pixels; i++)
            image->pixels[4 * i + 3] = alpha.pixels[i];
        return true;
    }
    if (image->components != 1 && image->components != 3) return false;
    const int from = image->components, to = from + 1;
    std::vector<unsigned char> merged(pixels * to);
    for (std::size_t i = 0; i < pixels; i++) {
        for (int k = 0; k < from; k++)
            merged[to * i + k] = image->pixels[from * i + k];
        merged[to * i + from] = alpha.pixels[i];
    }
    image->pixels.swap(merged);
    image->components = to;
    return true;
}

bool expandToRGBA(ImageBuffer* image) {
    const int c = image->components;
    if (c == 4) return true;
    if (c < 1 || c > 3) return false;
    const std::size_t pixels = static_cast<std::size_t>(image->width) * image->height;
    if (image->pixels.size() < pixels * c) return false;
    std::vector<unsigned char> rgba(pixels * 4);
    for (std::size_t i = 0; i < pixels; i++) {
        const unsigned char* p = &image->pixels[c * i];
        unsigned char* q = &rgba[4 * i];
        if (c == 3) {
            q[0] = p[0];
            q[1] = p[1];
            q[2] = p[2];
            q[3] = 255;
        } else {
            q[0] = q[1] = q[2] = p[0];
            q[3] = c == 2 ? p[1] : 255;
        }
    }
    image->pixels.swap(rgba);
    image->components = 4;
    return true;
}

unsigned pixelFormat(int components) {
    switch (components) {
        case 1:
            return GL_LUMINANCE;
        case 2:
            return GL_LUMINANCE_ALPHA;
        case 3:
            return GL_RGB;
        case 4:
            return GL_RGBA;
        default:
            return 0;
    }
}

}  // namespace glmdetail
