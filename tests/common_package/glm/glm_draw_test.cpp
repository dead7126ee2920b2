// Drawing models on Mesa's software renderer: textures, lookup tables, opacity, the
// once-per-process warnings and the depth-sorted triangle order.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/common_package/glm/model_test_util.h"
#include "tests/support/gl_test_window.h"

using namespace modeltest;
using testsupport::clearTo;
using testsupport::pixelAt;
using testsupport::readBackRGB;

namespace {

constexpr int kSize = 64;

// A square over the whole view with texture coordinates 0..1, in one group.
std::string squareObj(const std::string& mtllib, const std::string& material) {
    return "mtllib " + mtllib + "\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n" +
           "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\ng square\nusemtl " + material + "\nf 1/1 2/2 3/3 4/4\n";
}

// Linear filtering mixes a little of the neighbouring texel in, hence the default tolerance.
void expectColor(int x, int y, int r, int g, int b, int tolerance = 10) {
    testsupport::Rgb p = pixelAt(readBackRGB(kSize, kSize), kSize, x, y);
    EXPECT_TRUE(std::abs(p.r - r) <= tolerance && std::abs(p.g - g) <= tolerance &&
                std::abs(p.b - b) <= tolerance)
        << x << "," << y << ": " << p.r << " " << p.g << " " << p.b;
}

class ModelDrawing : public testing::Test {
  protected:
    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        testsupport::orthoCamera(-1, 1, -1, 1, -1, 1);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_LIGHTING);
        glDisable(GL_BLEND);
    }
    // The square with a material library of this text.
    ModelPtr square(const std::string& mtl) {
        writeText(dir_.file("sq.mtl"), mtl);
        return readModel(dir_, squareObj("sq.mtl", "m"), "sq.obj");
    }
    ScratchDir dir_;
};

}  // namespace

TEST_F(ModelDrawing, TexturedSquareShowsItsTextureColours) {
    // A 2 x 2 texture: red, green on the first row of the file; blue, white on the second.
    writePnm(dir_.file("four.ppm"), 2, 2, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
    ModelPtr m = square("newmtl m\nKd 1 1 1\nTd replace four.ppm\n");
    ASSERT_TRUE(m);
    clearTo(0, 0, 0, 1);
    glmDraw(m.get(), GLM_TEXTURE | GLM_COLOR);
    EXPECT_EQ(m->materials[1].textureToLoad, 0);
    // The file's first row lies at t = 0, the bottom of the square.
    expectColor(16, 16, 255, 0, 0);
    expectColor(48, 16, 0, 255, 0);
    expectColor(16, 48, 0, 0, 255);

    // The same through a display list.
    std::vector<unsigned char> direct = readBackRGB(kSize, kSize);
    GLuint list = glmList(m.get(), GLM_TEXTURE | GLM_COLOR);
    ASSERT_NE(list, 0u);
    clearTo(0, 0, 0, 1);
    glCallList(list);
    EXPECT_EQ(readBackRGB(kSize, kSize), direct);
    glDeleteLists(list, 1);

    // Replacing the texture takes effect at once; bad names and modes change nothing.
    writePnm(dir_.file("grey.pgm"), 4, 4, 1, {100});
    EXPECT_EQ(glmSetTexture(m.get(), "m", dir_.file("grey.pgm").c_str(), nullptr, GL_REPLACE), 0);
    clearTo(0, 0, 0, 1);
    glmDraw(m.get(), GLM_TEXTURE);
    expectColor(10, 50, 100, 100, 100);
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(glmSetTexture(m.get(), "nosuch", "x.ppm", nullptr, GL_REPLACE), 1);
                  EXPECT_EQ(glmSetTexture(m.get(), "m", "x.ppm", nullptr, GL_ADD), GL_INVALID_ENUM);
                  EXPECT_EQ(glmSetTexWarpMode(m.get(), "m", GL_MIRRORED_REPEAT, GL_REPEAT),
                            GL_INVALID_ENUM);
                  EXPECT_EQ(glmSetTexWarpMode(m.get(), "m", GL_CLAMP, GL_MIRRORED_REPEAT),
                            GL_INVALID_ENUM);
                  EXPECT_EQ(glmSetTexWarpMode(m.get(), "none", GL_CLAMP, GL_CLAMP), 1);
                  EXPECT_EQ(glmSetTexWarpMode(m.get(), "m", GL_CLAMP, GL_REPEAT), 0);
              }),
              "Err (glmSetTexture) : material name [nosuch] not found in model!\n"
              "Err (glmSetTexture) : invalid envType (see gltexenv)!\n"
              "Err (glmSetTexWarpMode): unknown warpS_mode!\n"
              "Err (glmSetTexWarpMode): unknown warpT_mode!\n"
              "Err (glmSetTexWarpMode) : material name [none] not found in model!\n");
    EXPECT_EQ(m->materials[1].wrapS, GL_CLAMP);
}

TEST_F(ModelDrawing, LookupTableAndAlphaImageGiveALuminanceAlphaTexture) {
    writePnm(dir_.file("lum.pgm"), 300, 200, 1, {10});
    writePnm(dir_.file("alpha.pgm"), 300, 200, 1, {128});
    std::string lut;
    for (int i = 0; i < 256; i++)
        lut += std::to_string(i == 10 ? 250 : i) + " 0 0" + (i == 128 ? " 255" : "") + "\n";
    writeText(dir_.file("t.lut"), lut);
    ModelPtr m;
    EXPECT_EQ(stderrOf([&] {
                  m = square("newmtl m\nTd lut_pgm t.lut modulate lum.pgm alpha.pgm\n");
                  glmLoadTextures(m.get());
              }),
              "- LUT option [1] using file [t.lut]\n"
              "- call gluScaleImage : 300x200 to 256x256\n- done.\n"
              "Apply LUTFILE [t.lut] using option [1]\n");
    ASSERT_NE(m->materials[1].textureName, 0u);
    glBindTexture(GL_TEXTURE_2D, m->materials[1].textureName);
    auto level = [](GLenum name) {
        GLint value = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, name, &value);
        return value;
    };
    ASSERT_TRUE(level(GL_TEXTURE_WIDTH) == 256 && level(GL_TEXTURE_HEIGHT) == 256);
    EXPECT_TRUE(level(GL_TEXTURE_LUMINANCE_SIZE) > 0 && level(GL_TEXTURE_ALPHA_SIZE) > 0 &&
                level(GL_TEXTURE_GREEN_SIZE) == 0);
    std::vector<unsigned char> texels(256 * 256 * 2);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_TRUE(texels[0] == 250 && texels[1] == 255);  // luminance through red, alpha its own
}

TEST_F(ModelDrawing, OpacityBlendsAndIsClampedWithAWarning) {
    ModelPtr m = square("newmtl m\nKd 1 0 0 1\n");
    ASSERT_TRUE(m);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    clearTo(0, 0, 1, 1);
    glmDrawOpacity(m.get(), GLM_COLOR, 0.5f);
    expectColor(32, 32, 128, 0, 128, 2);

    // The opacity scales all four components: additive blending shows it in the colour.
    glBlendFunc(GL_ONE, GL_ONE);
    clearTo(0, 0, 0, 1);
    glmDrawOpacity(m.get(), GLM_COLOR | GLM_OPACITY_ALL, 0.25f);
    expectColor(32, 32, 64, 0, 0, 2);

    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    clearTo(0, 0, 1, 1);
    EXPECT_EQ(stderrOf([&] {
                  glmDrawOpacity(m.get(), GLM_COLOR, 1.5f);
                  glmDrawOpacity(m.get(), GLM_COLOR, 1.5f);
              }),
              "glmDrawOpacity() warning: opacity out of range [0,1]\n"
              "glmDrawOpacity() warning: opacity out of range [0,1]\n");
    expectColor(32, 32, 255, 0, 0);
    glDisable(GL_BLEND);
}

TEST_F(ModelDrawing, ModeConflictWarningsAppearOncePerProcess) {
    ModelPtr m = readModel(dir_, "v -1 -1 0\nv 1 -1 0\nv 0 1 0\nf 1 2 3\n");
    ASSERT_TRUE(m);
    glmFacetNormals(m.get());
    glmVertexNormals(m.get(), 90.0f);
    EXPECT_EQ(stderrOf([&] {
                  for (int i = 0; i < 3; i++)
                      glmDraw(m.get(), GLM_FLAT | GLM_SMOOTH);
                  for (int i = 0; i < 2; i++)
                      glmDraw(m.get(), GLM_COLOR | GLM_TEXTURE);
              }),
              "glmDraw() warning: flat render mode requested (assume smooth).\n"
              "glmDraw() warning: texture render mode requested with no texture coordinates "
              "defined.\n"
              "glmDraw() warning: color render mode requested with no materials defined.\n");
    EXPECT_EQ(stderrOf([&] {
                  glmDrawNormals(m.get(), GLM_FLAT | GLM_SMOOTH, 1.0f);
                  glmDrawNormals(nullptr, GLM_FLAT, 1.0f);
                  glmDrawNormals(m.get(), GLM_SMOOTH, 0.5f);
              }),
              "glmDrawNormals: contradictory mode; both GLM_FLAT and GLM_SMOOTH are on.\n");
}

TEST_F(ModelDrawing, DepthSortDrawsFarthestOrNearestFirst) {
    // Two triangles in one group, at distances 1 and 2 in front of the eye at the origin.
    ModelPtr m = readModel(dir_,
                           "v -1 -1 -1\nv 1 -1 -1\nv 0 1 -1\nv -1 -1 -2\nv 1 -1 -2\nv 0 1 -2\n"
                           "f 1 2 3\nf 4 5 6\n");
    ASSERT_TRUE(m);
    testsupport::orthoCamera(-2, 2, -2, 2, 0, 4);  // window depth = distance / 4

    // The depths of the triangles in the order they reach the rasteriser.
    auto drawnDepths = [&](GLuint mode) {
        std::vector<GLfloat> feedback(256);
        glFeedbackBuffer(static_cast<GLsizei>(feedback.size()), GL_3D, feedback.data());
        glRenderMode(GL_FEEDBACK);
        glmDraw(m.get(), mode);
        GLint n = glRenderMode(GL_RENDER);
        std::vector<float> depths;
        for (GLint i = 0; i < n; i++) {
            if (feedback[i] != GL_POLYGON_TOKEN) continue;
            depths.push_back(feedback[i + 2 + 2]);  // z of the first vertex
            i += 1 + 3 * static_cast<int>(feedback[i + 1]);
        }
        return depths;
    };
    EXPECT_EQ(drawnDepths(GLM_NONE), (std::vector<float>{0.25f, 0.5f}));   // file order
    EXPECT_EQ(drawnDepths(GLM_ZSORT), (std::vector<float>{0.5f, 0.25f}));  // distance 2 first
    EXPECT_EQ(drawnDepths(GLM_ZSORT_NEG), (std::vector<float>{0.25f, 0.5f}));

    // The eye at (0, 0, -3) in model coordinates, behind the far triangle: the order turns.
    testsupport::orthoCamera(-2, 2, -2, 2, -4, 4);
    glRotatef(180, 0, 1, 0);
    glTranslatef(0, 0, 3);
    std::vector<float> depths;
    EXPECT_EQ(stderrOf([&] { depths = drawnDepths(GLM_ZSORT | GLM_ZSORT_NEG); }),
              "glmDraw() warning: GLM_ZSORT and GLM_ZSORT_NEG render mode requested (assume "
              "GLM_ZSORT).\n");
    ASSERT_EQ(depths.size(), 2u);
    EXPECT_GT(depths[0], depths[1]);  // the triangle at z = -1, now the farther, comes first
}
