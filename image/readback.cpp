#include "image/readback.h"

#include <GL/freeglut.h>
#include <GL/glu.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "image/file_util.h"

namespace {

struct Viewport {
    GLint x, y, width, height;
};

Viewport currentViewport() {
    GLint v[4] = {0, 0, 0, 0};
    glGetIntegerv(GL_VIEWPORT, v);
    return {v[0], v[1], v[2], v[3]};
}

// Swaps rows pairwise through one row buffer; exits when there is no memory for it.
void flipRows(unsigned char* data, std::size_t rowBytes, int rows, const char* message) {
    if (data == nullptr || rows < 2 || rowBytes == 0) return;
    std::vector<unsigned char> buffer;
    try {
        buffer.resize(rowBytes);
    } catch (const std::bad_alloc&) {
        fputs(message, stderr);
        exit(1);
    }
    for (int top = 0, bottom = rows - 1; top < bottom; ++top, --bottom) {
        unsigned char* a = data + std::size_t(top) * rowBytes;
        unsigned char* b = data + std::size_t(bottom) * rowBytes;
        std::copy(a, a + rowBytes, buffer.data());
        std::copy(b, b + rowBytes, a);
        std::copy(buffer.data(), buffer.data() + rowBytes, b);
    }
}

// The viewport's depth values, top row first, with the depth range set first.
DepthMap readViewportDepth(double nearValue, double farValue, const char* message) {
    const Viewport viewport = currentViewport();
    DepthMap map;
    std::size_t bytes = 0;
    if (viewport.width < 1 || viewport.height < 1 ||
        !imageio::imageByteCount(viewport.width, viewport.height, 1, sizeof(float), &bytes))
        return map;
    try {
        map.depth.resize(bytes / sizeof(float));
    } catch (const std::bad_alloc&) {
        fputs(message, stderr);
        return map;
    }
    map.width = viewport.width;
    map.height = viewport.height;
    glDepthRange(nearValue, farValue);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(viewport.x, viewport.y, viewport.width, viewport.height, GL_DEPTH_COMPONENT,
                 GL_FLOAT, map.depth.data());
    upsidedownDepth(map.depth.data(), map.width, map.height);
    return map;
}

}  // namespace

ImageBuffer readImg(unsigned int buffer, int x, int y, int width, int height) {
    if (x < 0 || y < 0 || width < 0 || height < 0) {
        const Viewport viewport = currentViewport();
        x = viewport.x;
        y = viewport.y;
        width = viewport.width;
        height = viewport.height;
    }
    ImageBuffer image;
    std::size_t bytes = 0;
    if (width < 1 || height < 1 || !imageio::imageByteCount(width, height, 3, 1, &bytes))
        return image;
    try {
        image.pixels.resize(bytes);
    } catch (const std::bad_alloc&) {
        fputs("readImg : Not enough memory to allocate for img!\n\n", stderr);
        return image;
    }
    image.width = width;
    image.height = height;
    image.components = 3;
    glReadBuffer(buffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, width, height, GL_RGB, GL_UNSIGNED_BYTE, image.pixels.data());
    upsidedownImage(image.pixels.data(), width, height);
    return image;
}

void upsidedownImage(unsigned char* image, int width, int height) {
    if (width < 1) return;
    flipRows(image, std::size_t(width) * 3, height,
             "upsidedownImage : Not enough memory to allocate for buf!\n\n");
}

void upsidedownDepth(float* depth, int width, int height) {
    if (width < 1) return;
    flipRows(reinterpret_cast<unsigned char*>(depth), std::size_t(width) * sizeof(float), height,
             "upsidedownDepth : Not enough memory to allocate for buf!\n\n");
}

DepthMap readRawDepth(double nearValue, double farValue) {
    return readViewportDepth(nearValue, farValue,
                             "readRawDepth : Not enough memory to allocate for depth!\n\n");
}

int writeRawDepth(const float* depth, int width, int height, double nearValue, double farValue) {
    const Viewport viewport = currentViewport();
    if (depth == nullptr || width != viewport.width || height != viewport.height || width < 1 ||
        height < 1) {
        fputs("writeRawDepth : size of depth map doesn't match current window size!\n\n", stderr);
        return -1;
    }
    std::vector<float> flipped;
    try {
        flipped.assign(depth, depth + std::size_t(width) * height);
    } catch (const std::bad_alloc&) {
        fputs("writeRawDepth : Not enough memory to allocate for depth!\n\n", stderr);
        return -1;
    }
    upsidedownDepth(flipped.data(), width, height);
    glDepthRange(nearValue, farValue);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glDrawPixels(width, height, GL_DEPTH_COMPONENT, GL_FLOAT, flipped.data());
    return 1;
}

DepthMap readDepth() {
    DepthMap map =
        readViewportDepth(0.0, 1.0, "readDepth : Not enough memory to allocate for depth!\n\n");
    if (map.empty()) return map;
    const Viewport viewport = currentViewport();
    GLdouble projection[16];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    const GLdouble identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const GLint view[4] = {viewport.x, viewport.y, viewport.width, viewport.height};
    // A singular projection fails every pixel alike: it is reported once per read.
    bool reported = false;
    for (int row = 0; row < map.height; ++row) {
        for (int column = 0; column < map.width; ++column) {
            float& value = map.depth[std::size_t(row) * map.width + column];
            GLdouble x = 0, y = 0, z = 0;
            // Window coordinates of the pixel: rows were flipped to top first.
            if (gluUnProject(viewport.x + column, viewport.y + map.height - row - 1, value,
                             identity, projection, view, &x, &y, &z) == GL_FALSE) {
                if (!reported) fputs("False Return from gluUnProject!\n", stderr);
                reported = true;
            }
            value = static_cast<float>(std::sqrt(x * x + y * y + z * z));
        }
    }
    return map;
}

double nowSeconds() {
    using namespace std::chrono;
    const long long milliseconds =
        duration_cast<std::chrono::milliseconds>(system_clock::now().time_since_epoch()).count();
    return double(milliseconds / 1000) + double(milliseconds % 1000) * 0.001;
}

void drawBitmapString(float x, float y, const char* text, void* font) {
    glRasterPos2f(x, y);
    if (text == nullptr) return;
    for (const char* c = text; *c != '\0'; ++c)
        glutBitmapCharacter(font, static_cast<unsigned char>(*c));
}
