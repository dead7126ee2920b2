#pragma once
// Reading a material's texture image on the processor: the image, its optional alpha image,
// and the rescaling to power-of-two sizes. Failures end the process (status 1) with a message.

#include <string>

#include "image/image_buffer.h"

namespace glmdetail {

// Tries textureFile as given, then dir + textureFile; the reader is picked by the last four
// characters of dir + textureFile (".sgi", ".rgb", ".ppm", ".pnm", ".pgm"). The alpha image,
// when named, is read as PNM the same way and becomes the alpha channel. Sizes that are not
// powers of two are rescaled to the nearest ones (the lower on a tie).
ImageBuffer readMaterialImage(const std::string& dir, const std::string& textureFile,
                              const std::string& alphaFile);

}  // namespace glmdetail
