// Frame-buffer read-back in a real window: colour rows top first, depth maps, bitmap text.

#include <gtest/gtest.h>

#include <GL/freeglut.h>
#include <GL/glu.h>

#include <cmath>
#include <string>

#include "image/readback.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kWidth = 64;
constexpr int kHeight = 48;

void ortho() {
    glViewport(0, 0, kWidth, kHeight);
    testsupport::orthoCamera(0, kWidth, 0, kHeight, -1, 1);
}

// Black, with the top half red and the bottom-left pixel green.
void drawTopRed() {
    ortho();
    glDisable(GL_DEPTH_TEST);
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glColor3ub(255, 0, 0);
    glRecti(0, kHeight / 2, kWidth, kHeight);
    glColor3ub(0, 255, 0);
    glRecti(0, 0, 1, 1);
    glFinish();
}

}  // namespace

TEST(ReadImg, NegativeArgumentReadsTheWholeViewportTopRowFirst) {
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    drawTopRed();
    const ImageBuffer image = readImg(GL_BACK, -1, 5, 10, 10);
    ASSERT_EQ(image.width, kWidth);
    ASSERT_EQ(image.height, kHeight);
    EXPECT_EQ(image.components, 3);
    ASSERT_EQ(image.pixels.size(), std::size_t(kWidth * kHeight * 3));
    auto pixel = [&](int x, int rowFromTop) {
        const unsigned char* p = &image.pixels[(std::size_t(rowFromTop) * kWidth + x) * 3];
        return std::to_string(p[0]) + "," + std::to_string(p[1]) + "," + std::to_string(p[2]);
    };
    EXPECT_EQ(pixel(10, 0), "255,0,0");
    EXPECT_EQ(pixel(10, kHeight - 1), "0,0,0");
    EXPECT_EQ(pixel(0, kHeight - 1), "0,255,0");

    // A rectangle: two rows at the bottom, flipped so the upper one comes first.
    const ImageBuffer corner = readImg(GL_BACK, 0, 0, 2, 2);
    ASSERT_EQ(corner.width, 2);
    ASSERT_EQ(corner.height, 2);
    EXPECT_EQ(corner.pixels, std::vector<unsigned char>({0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0}));
}

TEST(Depth, WrittenDepthReadsBackAndSizesMustMatch) {
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    ortho();
    glClear(GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_ALWAYS);
    std::vector<float> map(kWidth * kHeight);
    for (int r = 0; r < kHeight; ++r)
        for (int c = 0; c < kWidth; ++c)
            map[r * kWidth + c] = 0.01f * r + 0.001f * c;
    glRasterPos2i(0, 0);
    EXPECT_EQ(writeRawDepth(map.data(), kWidth, kHeight, 0, 1), 1);
    glFinish();
    const DepthMap back = readRawDepth(0, 1);
    glDepthFunc(GL_LESS);
    glDisable(GL_DEPTH_TEST);
    ASSERT_EQ(back.width, kWidth);
    ASSERT_EQ(back.height, kHeight);
    for (std::size_t i = 0; i < map.size(); i += 97)
        EXPECT_NEAR(back.depth[i], map[i], 1e-5) << i;

    testing::internal::CaptureStderr();
    EXPECT_EQ(writeRawDepth(map.data(), kWidth - 1, kHeight, 0, 1), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "writeRawDepth : size of depth map doesn't match current window size!\n\n");
}

TEST(Depth, ReadDepthGivesDistancesFromTheEye) {
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    glViewport(0, 0, kWidth, kHeight);
    testsupport::perspectiveCamera(60, double(kWidth) / kHeight, 1, 100);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    // A wall at 5 units covering the left half of the view.
    glBegin(GL_QUADS);
    glVertex3f(-20, -20, -5);
    glVertex3f(0, -20, -5);
    glVertex3f(0, 20, -5);
    glVertex3f(-20, 20, -5);
    glEnd();
    glFinish();
    const DepthMap distance = readDepth();
    glDisable(GL_DEPTH_TEST);
    ASSERT_EQ(distance.width, kWidth);
    ASSERT_EQ(distance.height, kHeight);
    auto at = [&](int x, int rowFromTop) {
        return distance.depth[std::size_t(rowFromTop) * kWidth + x];
    };
    EXPECT_NEAR(at(kWidth / 2 - 1, kHeight / 2), 5.0, 0.05);
    EXPECT_GT(at(0, 0), 5.5);  // off-axis points of the wall lie farther
    EXPECT_LT(at(0, 0), 10.0);
    EXPECT_GT(at(kWidth - 1, kHeight / 2), 99.0);  // empty sky: the far plane
}

TEST(BitmapText, DrawsAtTheRasterPosition) {
    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    ortho();
    glClear(GL_COLOR_BUFFER_BIT);
    glColor3ub(255, 255, 255);
    drawBitmapString(4, 30, "WM", GLUT_BITMAP_HELVETICA_12);
    glFinish();
    const ImageBuffer image = readImg(GL_BACK, 0, 0, kWidth, kHeight);
    int lit = 0, litBelow = 0;
    for (int row = 0; row < kHeight; ++row)
        for (int x = 0; x < kWidth; ++x)
            if (image.pixels[(std::size_t(row) * kWidth + x) * 3] > 128) {
                ++lit;
                if (row > kHeight - 30) ++litBelow;  // below the baseline, row counted from top
            }
    EXPECT_GT(lit, 10);
    EXPECT_EQ(litBelow, 0);
}
