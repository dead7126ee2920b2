// The star texture: its settings and the GL texture made from them when stars are drawn.

#include <GL/gl.h>
#include <GL/glu.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "catalogue/star_list.h"
#include "starrender/star_texture_image.h"

namespace {

constexpr double kSynthesisedTexSize = 6.0;  // texSize of the Gauss and Airy textures
constexpr double kFFTTexSize = 3.0;

bool inUnit(float v) {
    return v >= 0.0f && v <= 1.0f;
}

}  // namespace

void StarList::deleteStarTexture() {
    if (textureName != 0) {
        GLuint name = textureName;
        glDeleteTextures(1, &name);
        textureName = 0;
    }
}

int StarList::setStarTextureFile(const char* fileName, double texSize) {
    if (!(texSize > 0.0)) {
        std::fprintf(stderr, "Err (setStarTextureFile) : inTexSize should be positive.\n\n");
        return -1;
    }
    if (fileName == nullptr || fileName[0] == '\0') {
        std::fprintf(stderr, "Err (setStarTextureFile) : inTexFile is NULL.\n\n");
        return -1;
    }
    deleteStarTexture();
    param.texSize = texSize;
    if (fileName != param.textureFile) {
        std::strncpy(param.textureFile, fileName, kStarParameterPathSize - 1);
        param.textureFile[kStarParameterPathSize - 1] = '\0';
    }
    param.textureSource = kStarTextureFile;
    return 1;
}

int StarList::setStarTextureAiry(float filterSize, float filterCutoff, float telescopeDiam) {
    if (!inUnit(filterSize)) {
        std::fprintf(stderr, "Err (setStarTextureAiry) : inFilterSize should be [0,1].\n\n");
        return -1;
    }
    if (!inUnit(filterCutoff)) {
        std::fprintf(stderr, "Err (setStarTextureAiry) : inFilterCutoff should be [0,1].\n\n");
        return -1;
    }
    if (!(telescopeDiam > 0.0f) || telescopeDiam > 1e30f) {
        std::fprintf(stderr, "Err (setStarTextureAiry) : inTelescopeDiam should be positive.\n\n");
        return -1;
    }
    deleteStarTexture();
    param.texSize = kSynthesisedTexSize;
    param.filterSize = filterSize;
    param.filterCutoff = filterCutoff;
    param.telescopeDiam = telescopeDiam;
    param.textureSource = kStarTextureAiry;
    return 1;
}

int StarList::setStarTextureGauss(float filterSize, float filterCutoff) {
    if (!inUnit(filterSize)) return -1;
    if (!inUnit(filterCutoff)) {
        std::fprintf(stderr, "Err (setStarTextureGauss) : inFilterCutoff should be [0,1].\n\n");
        return -1;
    }
    deleteStarTexture();
    param.texSize = kSynthesisedTexSize;
    param.filterSize = filterSize;
    param.filterCutoff = filterCutoff;
    param.textureSource = kStarTextureGauss;
    return 1;
}

int StarList::setStarTextureFFT(float filterSize, float filterExp, float filterCutoff,
                                float filterOrder, const float filterRGB[3], int filterType) {
    if (!inUnit(filterSize)) {
        std::fprintf(stderr, "Err (setStarTextureFFT) : inFilterSize should be [0,1].\n\n");
        return -1;
    }
    if (!(filterExp > 0.0f) || filterExp > 1e30f) {
        std::fprintf(stderr, "Err (setStarTextureFFT) : inFilterExp should be positive.\n\n");
        return -1;
    }
    if (!inUnit(filterCutoff)) {
        std::fprintf(stderr, "Err (setStarTextureFFT) : inFilterCutoff should be [0,1].\n\n");
        return -1;
    }
    if (filterRGB == nullptr || !inUnit(filterRGB[0]) || !inUnit(filterRGB[1]) ||
        !inUnit(filterRGB[2])) {
        std::fprintf(stderr, "Err (setStarTextureFFT) : inFilterRGB's values should be [0,1].\n\n");
        return -1;
    }
    if (!(filterOrder >= 0.0f) || filterOrder > 1e30f) {
        std::fprintf(stderr, "Err (setStarTextureFFT) : inFilterOrder should be positive.\n\n");
        return -1;
    }
    if (filterType != _STAR_FILTER_SQUARE && filterType != _STAR_FILTER_CIRCULAR &&
        filterType != _STAR_FILTER_BUTTERWORTH) {
        std::fprintf(stderr,
                     "Err (setStarTextureFFT) : inFilterType should be _STAR_FILTER_CIRCULAR, "
                     "_STAR_FILTER_SQUARE, or _STAR_FILTER_BUTTERWORTH.\n\n");
        return -1;
    }
    deleteStarTexture();
    param.texSize = kFFTTexSize;
    param.filterSize = filterSize;
    param.filterExp = filterExp;
    param.filterCutoff = filterCutoff;
    param.filterOrder = filterOrder;
    for (int c = 0; c < 3; ++c)
        param.filterRGB[c] = filterRGB[c];
    param.filterType = filterType;
    param.textureSource = kStarTextureFFT;
    return 1;
}

int StarList::setStarTextureParaFilter(int minFilter, int magFilter) {
    switch (minFilter) {
        case GL_NEAREST:
        case GL_LINEAR:
        case GL_NEAREST_MIPMAP_NEAREST:
        case GL_LINEAR_MIPMAP_NEAREST:
        case GL_NEAREST_MIPMAP_LINEAR:
        case GL_LINEAR_MIPMAP_LINEAR:
            break;
        default:
            std::fprintf(stderr,
                         "Err (setStarTextureParaFilter) : inTexParaMinFilter should take values "
                         "GL_NEAREST, GL_LINEAR, etc.\n\n");
            return -1;
    }
    if (magFilter != GL_NEAREST && magFilter != GL_LINEAR) {
        std::fprintf(stderr,
                     "Err (setStarTextureParaFilter) : inTexParaMagFilter should take values "
                     "GL_NEAREST or GL_LINEAR.\n\n");
        return -1;
    }
    param.texParaMinFilter = minFilter;
    param.texParaMagFilter = magFilter;
    return 1;
}

int StarList::createStarTexture() {
    deleteStarTexture();
    GLuint name = 0;
    glGenTextures(1, &name);
    if (name == 0) {
        std::fprintf(stderr, "Err : cannot generate texture name!\n\n");
        return -1;
    }
    std::vector<unsigned char> image;
    int width = kStarTextureSize, height = kStarTextureSize;
    const StarParameter& p = param;
    switch (p.textureSource) {
        case kStarTextureGauss:
            image = gaussStarImage(p.filterSize, p.filterCutoff);
            break;
        case kStarTextureAiry:
            image = airyStarImage(p.filterSize, p.filterCutoff, p.telescopeDiam);
            break;
        case kStarTextureFFT:
            image = fftStarImage(p.filterSize, p.filterExp, p.filterCutoff, p.filterOrder,
                                 p.filterRGB, p.filterType);
            break;
        case kStarTextureFile:
            if (!fileStarImage(p.textureFile, image, &width, &height)) image.clear();
            break;
        default:
            break;
    }
    if (image.empty()) {
        glDeleteTextures(1, &name);
        return -1;
    }
    textureName = name;
    glBindTexture(GL_TEXTURE_2D, name);
    halfLightRadius = ::halfLightRadius(image.data(), width, height, 4, 0.5);
    applyAlphaRamp(image.data(), width, height);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, p.texParaMagFilter);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, p.texParaMinFilter);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA, width, height, GL_RGBA, GL_UNSIGNED_BYTE,
                      image.data());
    glPopClientAttrib();
    return 1;
}
