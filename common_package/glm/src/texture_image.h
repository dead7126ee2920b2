#pragma once
// Texture images prepared on the processor before upload: rescaling to power-of-two sizes,
// alpha channels from separate images, expansion to RGBA. Shared by models and particle sets.

#include "image/image_buffer.h"

namespace glmdetail {

// Resamples to width x height: a box filter along an axis that shrinks, linear interpolation
// (edges clamped, never wrapped) along one that grows. The component count is kept.
ImageBuffer rescaleImage(const ImageBuffer& in, int width, int height);

// Makes alpha (one component, same size) the alpha channel: luminance becomes
// luminance-alpha, RGB becomes RGBA, RGBA has its alpha replaced. False (image unchanged) for
// another combination.
bool addAlphaChannel(ImageBuffer* image, const ImageBuffer& alpha);

// Luminance, luminance-alpha and RGB become RGBA (opaque where there was no alpha).
bool expandToRGBA(ImageBuffer* image);

// The OpenGL pixel format of a component count (GL_LUMINANCE ... GL_RGBA), 0 for none.
unsigned pixelFormat(int components);

}  // namespace glmdetail
