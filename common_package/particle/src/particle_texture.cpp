// Particle textures: synthesised Gaussian blobs and image files.

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>
#include <string>

#include "common_package/glm/src/texture_image.h"
#include "common_package/glm/src/texture_upload.h"
#include "common_package/math/src/pow2.h"
#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"
#include "image/image_file.h"

namespace particledetail {

std::vector<unsigned char> gaussTextureImage(int c, float sigma) {
    std::vector<unsigned char> pixels(kGaussSize * kGaussSize * 4);
    const double half = kGaussSize / 2.0;
    for (int i = 0; i < kGaussSize; i++) {
        for (int j = 0; j < kGaussSize; j++) {
            double x = j + 0.5 - half, y = i + 0.5 - half;
            double v = c * std::exp(-(x * x + y * y) / (double(sigma) * sigma));
            unsigned char texel = v >= 255.0 ? 255 : (v > 0.0 ? static_cast<unsigned char>(v) : 0);
            unsigned char* p = &pixels[4 * (i * kGaussSize + j)];
            p[0] = p[1] = p[2] = p[3] = texel;
        }
    }
    return pixels;
}

void uploadRGBA(int name, int width, int height, const unsigned char* pixels) {
    ImageBuffer image;
    image.width = width;
    image.height = height;
    image.components = 4;
    image.pixels.assign(pixels, pixels + static_cast<std::size_t>(width) * height * 4);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(name));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    glmdetail::setTextureFilterChain();
    glmdetail::buildMipmaps(image);
}

}  // namespace particledetail

namespace {

// Reads an image as PNM, then as SGI: under the name as given, then under dir + name.
ImageBuffer readPnmOrSgi(const std::string& name, const std::string& joined) {
    ImageBuffer image;
    for (const std::string* candidate : {&name, &joined}) {
        image.pixels = read_pnm(candidate->c_str(), &image.width, &image.height, &image.components);
        if (!image.pixels.empty()) return image;
        image.pixels = read_sgi(candidate->c_str(), &image.width, &image.height, &image.components);
        if (!image.pixels.empty()) return image;
    }
    return ImageBuffer();
}

bool validGauss(int c, float sigma) {
    return c >= 0 && c <= 255 && sigma > 0.0f && std::isfinite(sigma);
}

}  // namespace

int ParticleList::createTextureGauss(int c, float sigma) {
    if (!validGauss(c, sigma)) {
        std::fprintf(stderr,
                     "Err (ParticleList::createTextureGauss): c should be in [0,255] and sigma "
                     "positive.\n");
        return -1;
    }
    GLuint name = 0;
    glGenTextures(1, &name);
    if (name == 0) {
        std::fprintf(stderr,
                     "Err (ParticleList::createTextureGauss): failed to create new tex name.\n");
        return -1;
    }
    if (numTextures_ >= kMaxParticleTextures) {
        std::fprintf(stderr, "Err (ParticleList): failed to allocate memory.\n");
        glDeleteTextures(1, &name);
        return -1;
    }
    try {
        texNames_.push_back(static_cast<int>(name));
        texRatios_.push_back(std::min(sigma, 1.0f));
    } catch (const std::bad_alloc&) {
        texNames_.resize(numTextures_);
        std::fprintf(stderr, "Err (ParticleList): failed to allocate memory.\n");
        glDeleteTextures(1, &name);
        return -1;
    }
    numTextures_++;
    if (createTextureGauss(static_cast<int>(name), c, sigma) != 1) return -1;
    return numTextures_ - 1;
}

int ParticleList::createTextureGauss(int texName, int c, float sigma) {
    bool known = false;
    for (int t = 0; t < numTextures_ && !known; t++)
        known = texNames_[t] == texName;
    if (!known || texName <= 0) {
        std::fprintf(stderr,
                     "Err (ParticleList::createTextureGauss): failed to find existing tex name.\n");
        return -1;
    }
    if (!validGauss(c, sigma)) {
        std::fprintf(stderr,
                     "Err (ParticleList::createTextureGauss): c should be in [0,255] and sigma "
                     "positive.\n");
        return -1;
    }
    try {
        std::vector<unsigned char> pixels = particledetail::gaussTextureImage(c, sigma);
        particledetail::uploadRGBA(texName, particledetail::kGaussSize, particledetail::kGaussSize,
                                   pixels.data());
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err : allocate memory for texture!\n");
        return -1;
    }
    return 1;
}

int ParticleList::initTextureFile(int texName, const char* imageFile, const char* alphaFile,
                                  const char* dirName) {
    if (texName <= 0 || imageFile == nullptr) {
        std::fprintf(stderr, "Err (ParticleList): failed to generate new texture name.\n");
        return -1;
    }
    const std::string dir = dirName != nullptr ? dirName : "";
    const std::string name = imageFile;
    ImageBuffer image = readPnmOrSgi(name, dir + name);
    if (image.empty()) {
        std::fprintf(stderr, "Err : reading pnm or rgb file at [%s] or [%s]\n", name.c_str(),
                     (dir + name).c_str());
        return -1;
    }
    if (image.components != 3 && image.components != 4) {
        std::fprintf(stderr, "Err : [%s] has to be an RGB or RGBA image!\n", name.c_str());
        return -1;
    }
    try {
        if (alphaFile != nullptr && alphaFile[0] != '\0') {
            const std::string alphaName = alphaFile;
            ImageBuffer alpha = readPnmOrSgi(alphaName, dir + alphaName);
            if (alpha.empty()) {
                std::fprintf(stderr, "Err : reading pgm or rgb file [%s] or [%s]\n",
                             alphaName.c_str(), (dir + alphaName).c_str());
                return -1;
            }
            if (alpha.components != 1) {
                std::fprintf(stderr, "Err : [%s] has to be an alpha channel image!\n",
                             alphaName.c_str());
                return -1;
            }
            if (alpha.width != image.width || alpha.height != image.height) {
                std::fprintf(stderr, "Err : sizes of [%s] and [%s] differ\n", name.c_str(),
                             alphaName.c_str());
                return -1;
            }
            glmdetail::addAlphaChannel(&image, alpha);
        }
        glmdetail::expandToRGBA(&image);
        if (!isPowerOfTwo(image.width) || !isPowerOfTwo(image.height)) {
            int width = nearestPowerOfTwo(image.width), height = nearestPowerOfTwo(image.height);
            std::fprintf(stderr, "- call gluScaleImage : %dx%d to %dx%d : ", image.width,
                         image.height, width, height);
            image = glmdetail::rescaleImage(image, width, height);
            std::fprintf(stderr, "done!\n");
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr,
                     "Err : ParticleList::initTextureFile : Can't allocate memory for textures!\n");
        return -1;
    }
    particledetail::uploadRGBA(texName, image.width, image.height, image.pixels.data());
    return 1;
}
