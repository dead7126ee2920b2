#pragma once
// Uploading texture images with OpenGL; shared by models and particle sets.

#include "image/image_buffer.h"

namespace glmdetail {

// Sets the minification, then the magnification filter of the bound 2-D texture to the first
// of linear-mipmap-linear, nearest-mipmap-linear, linear, linear-mipmap-nearest,
// nearest-mipmap-nearest and nearest that raises no OpenGL error.
void setTextureFilterChain();

// Builds every mipmap level of the bound 2-D texture from the image (unpack alignment 1).
void buildMipmaps(const ImageBuffer& image);

}  // namespace glmdetail
