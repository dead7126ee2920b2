#include "common_package/glm/src/glm_texture_file.h"

#include <cstdio>
#include <new>

#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/texture_image.h"
#include "common_package/math/src/pow2.h"
#include "image/image_file.h"

namespace glmdetail {
namespace {

ImageBuffer readWith(ImageReader reader, const std::string& name) {
    ImageBuffer image;
    if (reader == ImageReader::kSgi)
        image.pixels = read_sgi(name.c_str(), &image.width, &image.height, &image.components);
    else
        image.pixels = read_pnm(name.c_str(), &image.width, &image.height, &image.components);
    if (image.pixels.empty()) image = ImageBuffer();
    return image;
}

}  // namespace

ImageBuffer readMaterialImage(const std::string& dir, const std::string& textureFile,
                              const std::string& alphaFile) {
    const std::string joined = dir + textureFile;
    ImageReader reader = imageReaderForName(joined.c_str());
    if (reader == ImageReader::kUnknown) {
        std::fprintf(stderr, "Err: unknown file extension in [%s]\n", joined.c_str());
        exitProcess();
    }
    std::string readName = textureFile;
    ImageBuffer image = readWith(reader, textureFile);
    if (image.empty()) {
        readName = joined;
        image = readWith(reader, joined);
    }
    if (image.empty()) {
        std::fprintf(stderr, "Err: reading [%s] or [%s]\n", textureFile.c_str(), joined.c_str());
        exitProcess();
    }
    if (image.components != 1 && image.components != 3 && image.components != 4) {
        std::fprintf(stderr, "Err: [%s] should have Luminosity or RGB or RGBA channel only\n",
                     readName.c_str());
        exitProcess();
    }

    try {
        if (!alphaFile.empty()) {
            const std::string alphaJoined = dir + alphaFile;
            std::string alphaName = alphaFile;
            ImageBuffer alpha = readWith(ImageReader::kPnm, alphaFile);
            if (alpha.empty()) {
                alphaName = alphaJoined;
                alpha = readWith(ImageReader::kPnm, alphaJoined);
            }
            if (alpha.empty()) {
                std::fprintf(stderr, "Err: reading [%s] o [%s]\n", alphaFile.c_str(),
                             alphaJoined.c_str());
                exitProcess();
            }
            if (alpha.width != image.width || alpha.height != image.height) {
                std::fprintf(stderr, "Err: sizes of files [%s] and [%s] illmatch\n",
                             readName.c_str(), alphaName.c_str());
                exitProcess();
            }
            if (alpha.components != 1) {
                std::fprintf(stderr, "Err: [%s] should have one alpha channel only\n",
                             alphaName.c_str());
                exitProcess();
            }
            addAlphaChannel(&image, alpha);
        }

        if (!isPowerOfTwo(image.width) || !isPowerOfTwo(image.height)) {
            int width = nearestPowerOfTwo(image.width);
            int height = nearestPowerOfTwo(image.height);
            std::fprintf(stderr, "- call gluScaleImage : %dx%d to %dx%d\n", image.width,
                         image.height, width, height);
            image = rescaleImage(image, width, height);
            std::fprintf(stderr, "- done.\n");
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err: GLerror [out of memory]\n");
        exitProcess();
    }
    return image;
}

}  // namespace glmdetail
