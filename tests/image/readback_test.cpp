// Frame-buffer read-back and texture upload in a real window.

#include <gtest/gtest.h>

#include <GL/freeglut.h>

#include <string>
#include <tuple>

#include "image/image_file.h"
#include "image/readback.h"
#include "tests/image/image_test_util.h"
#include "tests/support/gl_test_window.h"

using namespace imagetest;

namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 48;

void ortho() {
    glViewport(0, 0, kWidth, kHeight);
    testsupport::orthoCamera(0, kWidth, 0, kHeight, -1, 1);
}

std::string pixel(const ImageBuffer& image, int x, int rowFromTop) {
    const unsigned char* p = &image.pixels[(std::size_t(rowFromTop) * image.width + x) * 3];
    return std::to_string(p[0]) + "," + std::to_string(p[1]) + "," + std::to_string(p[2]);
}

}  // namespace

TEST(ReadImg, WholeViewportOrARectangleTopRowFirst) {
    testsupport::DriverAllocationsUnchecked unchecked;
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    ortho();
    glDisable(GL_DEPTH_TEST);
    testsupport::clearTo(0, 0, 0, 1);
    glColor3ub(255, 0, 0);  // the top half red, the bottom-left pixel green
    glRecti(0, kHeight / 2, kWidth, kHeight);
    glColor3ub(0, 255, 0);
    glRecti(0, 0, 1, 1);
    glFinish();
    const ImageBuffer image = readImg(GL_BACK, -1, 5, 10, 10);  // x < 0: the whole viewport
    ASSERT_EQ(std::make_tuple(image.width, image.height, image.components),
              std::make_tuple(kWidth, kHeight, 3));
    EXPECT_EQ(pixel(image, 10, 0) + " " + pixel(image, 10, kHeight - 1) + " " +
                  pixel(image, 0, kHeight - 1),
              "255,0,0 0,0,0 0,255,0");
    const ImageBuffer corner = readImg(GL_BACK, 0, 0, 2, 2);  // the upper of two rows first
    EXPECT_EQ(corner.pixels, Bytes({0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0}));
}

TEST(Depth, WrittenDepthReadsBackAndReadDepthGivesDistances) {
    testsupport::DriverAllocationsUnchecked unchecked;
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    ortho();
    glClear(GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_ALWAYS);
    std::vector<float> map(kWidth * kHeight);
    for (std::size_t i = 0; i < map.size(); ++i)
        map[i] = 0.01f * (i / kWidth) + 0.001f * (i % kWidth);
    glRasterPos2i(0, 0);
    EXPECT_EQ(writeRawDepth(map.data(), kWidth, kHeight, 0, 1), 1);
    glFinish();
    const DepthMap back = readRawDepth(0, 1);
    ASSERT_EQ(std::make_pair(back.width, back.height), std::make_pair(kWidth, kHeight));
    for (std::size_t i = 0; i < map.size(); i += 97)
        EXPECT_NEAR(back.depth[i], map[i], 1e-5) << i;
    EXPECT_EQ(
        stderrOf([&] { EXPECT_EQ(writeRawDepth(map.data(), kWidth - 1, kHeight, 0, 1), -1); }),
        "writeRawDepth : size of depth map doesn't match current window size!\n\n");
    // A wall 5 units away over the left half of a perspective view.
    testsupport::perspectiveCamera(60, double(kWidth) / kHeight, 1, 100);
    glDepthFunc(GL_LESS);
    glClear(GL_DEPTH_BUFFER_BIT);
    glTranslatef(0, 0, -5);
    glRectf(-20, -20, 0, 20);
    glFinish();
    const DepthMap distance = readDepth();
    glDisable(GL_DEPTH_TEST);
    auto at = [&](int x, int row) { return distance.depth[std::size_t(row) * kWidth + x]; };
    EXPECT_NEAR(at(kWidth / 2 - 1, kHeight / 2), 5.0, 0.05);
    EXPECT_NEAR(at(0, 0), 7.5, 2.0);               // off-axis points of the wall lie farther
    EXPECT_GT(at(kWidth - 1, kHeight / 2), 99.0);  // empty sky: the far plane
}

TEST(TgaUpload, FontSized32BitImageLoadsAsRgba) {
    testsupport::DriverAllocationsUnchecked unchecked;
    SKYRAMA_REQUIRE_WINDOW(32, 32);
    ScratchDir dir;
    const Bytes file = tga(2, 256, 256, 32, 256 * 256 * 4);  // B, G, R, A = 0, 1, 2, 3 ...
    GLuint texture = 0;
    glGenTextures(1, &texture);
    ASSERT_EQ(loadTGA(dir.write("font.tga", file).c_str(), texture), 1);
    GLint format = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    EXPECT_EQ(format, GL_RGBA);
    Bytes rgba(256 * 256 * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    EXPECT_EQ(Bytes(rgba.begin(), rgba.begin() + 8), Bytes({2, 1, 0, 3, 6, 5, 4, 7}));
    glDeleteTextures(1, &texture);
}
