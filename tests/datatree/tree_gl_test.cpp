// The data tree through the readers that need OpenGL, and the Milky Way surround drawn.
#include <gtest/gtest.h>

#include <GL/gl.h>
#include <GL/glu.h>

#include <cmath>

#include "common_package/glm/src/glm.h"
#include "common_package/particle/src/particle_list.h"
#include "image/tga_file.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kSize = 64;

// Mean brightness of the middle quarter of the surround seen from its centre along dir.
double brightnessTowards(GLMmodel* model, double dx, double dy, double dz, double ux, double uy,
                         double uz) {
    glViewport(0, 0, kSize, kSize);
    testsupport::clearTo(0, 0, 0, 0);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    testsupport::perspectiveCamera(40.0, 1.0, 0.01, 10.0);
    gluLookAt(0, 0, 0, dx, dy, dz, ux, uy, uz);
    glColor4f(1, 1, 1, 1);
    glmDraw(model, GLM_TEXTURE | GLM_COLOR);
    std::vector<unsigned char> rgb = testsupport::readBackRGB(kSize, kSize);
    double sum = 0;
    for (int y = kSize / 4; y < 3 * kSize / 4; ++y) {
        for (int x = kSize / 4; x < 3 * kSize / 4; ++x) {
            testsupport::Rgb p = testsupport::pixelAt(rgb, kSize, x, y);
            sum += p.r + p.g + p.b;
        }
    }
    return sum / (kSize * kSize / 4);
}

class GlTree : public testing::Test {
  protected:
    void SetUp() override {
        if (!requireDataTree()) GTEST_SKIP();
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    }
    testsupport::DriverAllocationsUnchecked unchecked_;
};

}  // namespace

TEST_F(GlTree, MilkyWayIsBrightTowardsTheGalacticCentre) {
    GLMmodel* model = glmReadOBJ((dataRoot() + "/objdata/MilkyWayEnv.obj").c_str());
    ASSERT_NE(model, nullptr);
    glmUnitize(model);
    double centre = brightnessTowards(model, 1, 0, 0, 0, 0, 1);  // +x: the galactic centre
    double pole = brightnessTowards(model, 0, 0, 1, 1, 0, 0);
    EXPECT_GT(centre, 3 * pole) << "centre " << centre << ", pole " << pole;
    glmDelete(model);
}

TEST_F(GlTree, SunParticlesLoadWithTexturesThatNeedNoRescaling) {
    ParticleList sun;
    testing::internal::CaptureStderr();
    ASSERT_EQ(sun.read((dataRoot() + "/prtdata/SolarSystem/sun.prt").c_str()), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "- build the BSP tree\n  done!\n");
    ASSERT_EQ(sun.getNumParticles(), 5);
    // At the reference scale 15 (eye 10^15.2 m away) the widest glow spans tens of degrees.
    double largest = 0;
    for (int i = 0; i < sun.getNumParticles(); ++i) {
        Particle p;
        sun.getParticle(i, &p);
        EXPECT_EQ(p.size[1], 15.0);
        largest = std::max(largest, p.size[0]);
    }
    EXPECT_GT(std::atan(largest / 2 / std::pow(10.0, 0.2)) * 180.0 / M_PI, 20.0);
}

TEST_F(GlTree, FontTextureLoadsWithItsGlyphs) {
    GLuint font = 0;
    glGenTextures(1, &font);
    ASSERT_EQ(loadTGA((dataRoot() + "/texturedata/font.tga").c_str(), font), kTgaLoaded);
    GLint w = 0, h = 0;
    glBindTexture(GL_TEXTURE_2D, font);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &w);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &h);
    ASSERT_EQ(w, h);
    std::vector<unsigned char> texels(std::size_t(w) * h * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    glDeleteTextures(1, &font);
    // Coverage (alpha) summed over a glyph's cell of the 16 x 16 grid; rows bottom first.
    const int cell = w / 16;
    auto coverage = [&](int glyph) {
        long sum = 0;
        for (int y = 0; y < cell; ++y) {
            int row = h - 1 - ((glyph / 16) * cell + y);
            for (int x = 0; x < cell; ++x)
                sum += texels[(std::size_t(row) * w + (glyph % 16) * cell + x) * 4 + 3];
        }
        return sum;
    };
    EXPECT_GT(coverage('A'), 2000);
    EXPECT_GT(coverage(0xE9), 2000);  // e with an acute accent
    EXPECT_EQ(coverage(' ') + coverage(7), 0);
}
