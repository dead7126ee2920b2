#include "common_package/glm/src/texture_upload.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "common_package/glm/src/texture_image.h"

namespace glmdetail {

void setTextureFilterChain() {
    static const GLint chain[] = {GL_LINEAR_MIPMAP_LINEAR,  GL_NEAREST_MIPMAP_LINEAR,  GL_LINEAR,
                                  GL_LINEAR_MIPMAP_NEAREST, GL_NEAREST_MIPMAP_NEAREST, GL_NEAREST};
    // Clear errors left by earlier calls (bounded, in case there is no context at all).
    for (int i = 0; i < 32 && glGetError() != GL_NO_ERROR; i++) {
    }
    for (GLenum which : {GLenum(GL_TEXTURE_MIN_FILTER), GLenum(GL_TEXTURE_MAG_FILTER)}) {
        for (GLint filter : chain) {
            glTexParameteri(GL_TEXTURE_2D, which, filter);
            if (glGetError() == GL_NO_ERROR) break;
        }
    }
}

void buildMipmaps(const ImageBuffer& image) {
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    gluBuild2DMipmaps(GL_TEXTURE_2D, image.components, image.width, image.height,
                      pixelFormat(image.components), GL_UNSIGNED_BYTE, image.pixels.data());
}

}  // namespace glmdetail
