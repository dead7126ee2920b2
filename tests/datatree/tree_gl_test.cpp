// The data tree read by the readers that need an OpenGL context (particle textures, the
// font texture), and the Milky Way surround drawn: looking along +x, the galactic centre,
// the picture is far brighter than towards the galactic pole.
#include <gtest/gtest.h>

#include <GL/gl.h>
#include <GL/glu.h>

#include "common_package/glm/src/glm.h"
#include "common_package/particle/src/particle_list.h"
#include "image/tga_file.h"
#include "tests/datatree/tree_files.h"
#include "tests/support/gl_test_window.h"

#if defined(__SANITIZE_ADDRESS__) && __has_include(<sanitizer/lsan_interface.h>)
#include <sanitizer/lsan_interface.h>
// The GL driver keeps allocations of its own until the process ends, inside a module that is
// gone by the time the leak check runs (so the graphics suppressions cannot name it). What
// the driver allocates while these tests run is not checked.
struct DriverAllocationsUnchecked {
    DriverAllocationsUnchecked() { __lsan_disable(); }
    ~DriverAllocationsUnchecked() { __lsan_enable(); }
};
#else
struct DriverAllocationsUnchecked {
    DriverAllocationsUnchecked() {}  // nothing to do without the leak checker
};
#endif

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
    int n = 0;
    for (int y = kSize / 4; y < 3 * kSize / 4; ++y) {
        for (int x = kSize / 4; x < 3 * kSize / 4; ++x) {
            testsupport::Rgb p = testsupport::pixelAt(rgb, kSize, x, y);
            sum += p.r + p.g + p.b;
            ++n;
        }
    }
    return sum / n;
}

}  // namespace

TEST(GlTree, MilkyWayIsBrightTowardsTheGalacticCentre) {
    if (!requireDataTree()) return;
    DriverAllocationsUnchecked unchecked;
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    GLMmodel* model = glmReadOBJ((dataRoot() + "/objdata/MilkyWayEnv.obj").c_str());
    ASSERT_NE(model, nullptr);
    glmUnitize(model);
    double centre = brightnessTowards(model, 1, 0, 0, 0, 0, 1);
    double pole = brightnessTowards(model, 0, 0, 1, 1, 0, 0);
    double southPole = brightnessTowards(model, 0, 0, -1, 1, 0, 0);
    EXPECT_GT(centre, 3 * pole) << "centre " << centre << ", pole " << pole;
    EXPECT_GT(centre, 3 * southPole) << "centre " << centre << ", south pole " << southPole;
    glmDelete(model);
}

TEST(GlTree, SunParticlesAndFontLoad) {
    if (!requireDataTree()) return;
    DriverAllocationsUnchecked unchecked;
    SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
    ParticleList sun;
    ASSERT_EQ(sun.read((dataRoot() + "/prtdata/SolarSystem/sun.prt").c_str(), true), 1);
    EXPECT_EQ(sun.getNumParticles(), 5);
    GLuint font = 0;
    glGenTextures(1, &font);
    EXPECT_EQ(loadTGA((dataRoot() + "/texturedata/font.tga").c_str(), font), 1);
    glDeleteTextures(1, &font);
}
