// Drawing particle sets on Mesa's software renderer: sprites where their particles project,
// back-to-front order through the BSP tree and through sorting, points, flags and tints.

#include <GL/gl.h>
#include <GL/glu.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common_package/particle/src/particle_list.h"
#include "tests/common_package/glm/model_test_util.h"
#include "tests/support/gl_test_window.h"

using namespace modeltest;
using testsupport::pixelAt;
using testsupport::readBackRGB;

namespace {

constexpr int kSize = 64;

class ParticleDrawing : public testing::Test {
  protected:
    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        // The viewer's own near and far planes.
        testsupport::perspectiveCamera(60.0, 1.0, 0.01, 10000.0);
        lookFrom(3.0f);
        glDisable(GL_LIGHTING);
        glDisable(GL_BLEND);
        glDisable(GL_DEPTH_TEST);
        testsupport::clearTo(0, 0, 0, 1);
    }

    // The eye on the z axis looking at the origin.
    static void lookFrom(float z) {
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(0, 0, z, 0, 0, 0, 0, 1, 0);
    }

    // Reads a set of particles (metres, exponent 0) with one flat-topped Gaussian texture.
    void readSet(const std::string& particles, int count) {
        writeText(dir_.file("s.prt"), "PARTICLE " + std::to_string(count) +
                                          " 1 0\ntexture t gaussian 255 40\n" + particles);
        stderrOf([&] { ASSERT_EQ(list_.read(dir_.file("s.prt").c_str()), 1); });
    }

    // Draws with the mode after clearing; the pixel at the centre.
    testsupport::Rgb drawn(int mode, double logScale = 0.0) {
        glClear(GL_COLOR_BUFFER_BIT);
        list_.render(mode, logScale);
        return pixelAt(readBackRGB(kSize, kSize), kSize, 32, 32);
    }

    ScratchDir dir_;
    ParticleList list_;
};

int litPixels() {
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
    int n = 0;
    for (std::size_t i = 0; i < rgb.size(); i += 3)
        n += rgb[i] + rgb[i + 1] + rgb[i + 2] > 30;
    return n;
}

}  // namespace

TEST_F(ParticleDrawing, SortedSpritesAppearWhereTheirParticlesProject) {
    readSet("1 0 0 0.5 1 0 0 1 t\n", 1);
    list_.render(PARTICLE_SPRITES_SORTED | PARTICLE_DEPTH_TEST | PARTICLE_NO_DEPTH_WRITE, 0.0);
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
    // (1, 0, 0) seen from 3 units with a 60-degree view lies 0.577 of the half width right.
    int x = 32 + static_cast<int>(32 * 0.577);
    testsupport::Rgb sprite = pixelAt(rgb, kSize, x, 32);
    EXPECT_TRUE(sprite.r > 200 && sprite.g < 20) << sprite.r << " " << sprite.g;
    EXPECT_LT(pixelAt(rgb, kSize, 8, 32).r + pixelAt(rgb, kSize, x, 60).r, 10);  // dark elsewhere
    // Depth writes were off: the depth buffer is still clear.
    float depth = 0.0f;
    glReadPixels(x, 32, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_FLOAT_EQ(depth, 1.0f);
}

TEST_F(ParticleDrawing, NearerSpritesAreDrawnLastInEveryOrder) {
    // Red at the origin, green one unit nearer the eye at z = 3.
    readSet("0 0 0 1 1 0 0 1 t\n0 0 1 1 0 1 0 1 t\n", 2);
    for (int mode : {PARTICLE_SPRITES_BSP, PARTICLE_SPRITES_SORTED}) {
        for (float eyeZ : {3.0f, -3.0f}) {
            lookFrom(eyeZ);
            testsupport::Rgb c = drawn(mode);
            EXPECT_TRUE(eyeZ > 0 ? c.g > 200 && c.r < 20 : c.r > 200 && c.g < 20)
                << mode << " from " << eyeZ;
        }
    }
}

TEST_F(ParticleDrawing, PointsFlagsTintAndRange) {
    readSet("0 0 0 1 0 0 1 1 t\n", 1);
    glPointSize(5.0f);
    EXPECT_GT(drawn(PARTICLE_POINTS).b, 200);
    EXPECT_LT(pixelAt(readBackRGB(kSize, kSize), kSize, 40, 32).b, 10);  // a point, not a sprite
    EXPECT_GT(drawn(PARTICLE_POINTS_BSP).b, 200);

    list_.setTuneColor(1, 1, 0, 1);  // blue tinted away
    EXPECT_LT(drawn(PARTICLE_SPRITES_SORTED).b, 10);
    list_.setTuneColor(1, 1, 1, 1);
    list_.setDraw(false);
    drawn(PARTICLE_SPRITES_SORTED);
    EXPECT_EQ(litPixels(), 0);
    list_.setDraw(true);

    ASSERT_EQ(list_.setZRange(1.0, 2.0), 1);
    drawn(PARTICLE_SPRITES_BSP, 0.0);  // 0 is outside the range
    EXPECT_EQ(litPixels(), 0);
    drawn(PARTICLE_SPRITES_BSP, 1.0);
    EXPECT_GT(litPixels(), 0);
}

TEST_F(ParticleDrawing, DepthCompressionAndTheReferenceScale) {
    // A particle 10^6 metres away at log scale 0 lies beyond 10^3.5 units: compressed to
    // about 10^3.53 units, with its size shrunk by the same factor, it looks the same.
    readSet("0 0 -1e6 2e5 1 1 1 1 t\n", 1);
    drawn(PARTICLE_SPRITES_SORTED);
    const int far = litPixels();
    EXPECT_TRUE(far > 30 && far < kSize * kSize) << far;
    // Below the reference scale sprites keep the size they have at the reference scale.
    glClear(GL_COLOR_BUFFER_BIT);
    list_.render(PARTICLE_SPRITES_SORTED, 0.0, 1.0);
    EXPECT_LT(litPixels(), far / 10);
}

TEST_F(ParticleDrawing, RandomSetWithAGaussianTexture) {
    ASSERT_EQ(list_.createTextureGauss(255, 8.0f), 0);
    stderrOf([&] { ASSERT_EQ(list_.createRandomParticles(200), 1); });
    ASSERT_EQ(list_.setParticleScale(20.0), 1);  // sizes 0.03 - 0.05 would be under a pixel
    Particle p;
    list_.getParticle(0, &p);
    EXPECT_TRUE(p.texName == list_.getTexName(0) && p.valid == 1);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    drawn(PARTICLE_SPRITES_SORTED | PARTICLE_DEPTH_TEST | PARTICLE_NO_DEPTH_WRITE);
    EXPECT_GT(litPixels(), 100);
    glDisable(GL_BLEND);

    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(list_.createTextureGauss(999, 1, 1.0f), -1);
                  EXPECT_EQ(list_.createTextureGauss(300, 1.0f), -1);
                  list_.render_boundsphere(0.0, 500, 8);
              }),
              "Err (ParticleList::createTextureGauss): failed to find existing tex name.\n"
              "Err (ParticleList::createTextureGauss): c should be in [0,255] and sigma "
              "positive.\n"
              "warning (ParticleList::render_boundsphere): too many stacks.\n");
}
