#include "image/tga_file.h"

#include <GL/gl.h>

#include <new>
#include <vector>

#include "image/data_file.h"
#include "image/file_util.h"

namespace {

bool isTextureSide(int size) {
    for (int side = 2; side <= 512; side *= 2)
        if (size == side) return true;
    return false;
}

}  // namespace

int loadTGA(const char* fileName, unsigned int textureName) {
    imageio::FileHandle file(openDataFile(fileName, "rb"));
    if (!file) return kTgaCannotOpen;
    // A file too short for its header reads as zeros, which fails the type check.
    unsigned char start[3] = {0, 0, 0};
    unsigned char info[6] = {0, 0, 0, 0, 0, 0};
    if (fread(start, 1, sizeof start, file.get()) == sizeof start &&
        fseeko(file.get(), 12, SEEK_SET) == 0) {
        if (fread(info, 1, sizeof info, file.get()) != sizeof info) start[1] = start[2] = 0;
    }
    const int colourMapType = start[1];
    const int imageType = start[2];
    const int width = info[0] | (info[1] << 8);
    const int height = info[2] | (info[3] << 8);
    const int bitsPerPixel = info[4];
    if (colourMapType != 0 || (imageType != 2 && imageType != 3)) return kTgaBadType;
    if (!isTextureSide(width) || !isTextureSide(height)) return kTgaBadSize;
    if (bitsPerPixel != 8 && bitsPerPixel != 24 && bitsPerPixel != 32) return kTgaBadDepth;

    // The pixels follow the 18-byte header directly; an image-identification field is not
    // skipped.
    const int bytesPerPixel = bitsPerPixel / 8;
    std::vector<unsigned char> pixels;
    try {
        pixels.resize(std::size_t(width) * height * bytesPerPixel);
    } catch (const std::bad_alloc&) {
        return kTgaShortData;
    }
    if (fread(pixels.data(), 1, pixels.size(), file.get()) != pixels.size()) return kTgaShortData;
    file.reset();

    GLenum format = GL_ALPHA;
    if (bytesPerPixel > 1) {
        format = bytesPerPixel == 4 ? GL_RGBA : GL_RGB;
        for (std::size_t i = 0; i < pixels.size(); i += bytesPerPixel)
            std::swap(pixels[i], pixels[i + 2]);  // B, G, R (, A) to R, G, B (, A)
    }
    glBindTexture(GL_TEXTURE_2D, textureName);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), width, height, 0, format,
                 GL_UNSIGNED_BYTE, pixels.data());
    return kTgaLoaded;
}
