// TGA images uploaded as textures: channel order and formats, read back from GL.

#include <gtest/gtest.h>

#include <GL/gl.h>

#include <string>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"
#include "tests/support/gl_test_window.h"

using namespace imagetest;

namespace {

Bytes tgaFile(int imageType, int side, int bits) {
    Bytes b(18, 0);
    b[2] = static_cast<unsigned char>(imageType);
    b[12] = static_cast<unsigned char>(side);
    b[13] = static_cast<unsigned char>(side >> 8);
    b[14] = b[12];
    b[15] = b[13];
    b[16] = static_cast<unsigned char>(bits);
    const int bytesPerPixel = bits / 8;
    for (int p = 0; p < side * side; ++p)
        for (int k = 0; k < bytesPerPixel; ++k)
            b.push_back(static_cast<unsigned char>(p % 200 + 10 * k));  // B, G, R, A
    return b;
}

GLint internalFormat(GLuint texture) {
    GLint format = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    return format;
}

}  // namespace

TEST(TgaUpload, FontSized32BitImageLoadsAsRgba) {
    SKYRAMA_REQUIRE_WINDOW(32, 32);
    ScratchDir dir;
    writeFile(dir.file("font.tga"), tgaFile(2, 256, 32));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    ASSERT_EQ(loadTGA(dir.file("font.tga").c_str(), texture), 1);
    EXPECT_EQ(internalFormat(texture), GL_RGBA);
    std::vector<unsigned char> rgba(256 * 256 * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    // Pixel 7 was stored B=7, G=17, R=27, A=37.
    EXPECT_EQ(rgba[7 * 4 + 0], 27);
    EXPECT_EQ(rgba[7 * 4 + 1], 17);
    EXPECT_EQ(rgba[7 * 4 + 2], 7);
    EXPECT_EQ(rgba[7 * 4 + 3], 37);
    GLint wrap = 0, filter = 0;
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, &wrap);
    glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &filter);
    EXPECT_EQ(wrap, GL_REPEAT);
    EXPECT_EQ(filter, GL_LINEAR);
    glDeleteTextures(1, &texture);
}
