// Drawing models on Mesa's software renderer: textures, lookup tables, opacity, the
// once-per-process warnings and the depth-sorted triangle order.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "tests/common_package/glm/model_test_util.h"
#include "tests/support/gl_test_window.h"

using modeltest::countOf;
using modeltest::ScratchDir;
using modeltest::writePnm;
using modeltest::writeText;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using testsupport::pixelAt;
using testsupport::readBackRGB;

namespace {

constexpr int kSize = 64;

struct ModelDeleter {
    void operator()(GLMmodel* m) const { glmDelete(m); }
};
using ModelPtr = std::unique_ptr<GLMmodel, ModelDeleter>;

// A square over the whole view at depth z, with texture coordinates 0..1, in one group.
std::string squareObj(const std::string& mtllib, const std::string& material, float z = 0.0f) {
    std::string zs = std::to_string(z);
    return "mtllib " + mtllib + "\n" + "v -1 -1 " + zs + "\nv 1 -1 " + zs + "\nv 1 1 " + zs +
           "\nv -1 1 " + zs + "\n" + "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n" + "g square\nusemtl " +
           material + "\nf 1/1 2/2 3/3 4/4\n";
}

void resetView() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_BLEND);
}

void clearTo(float r, float g, float b) {
    glClearColor(r, g, b, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// Linear filtering mixes a little of the neighbouring texel in, hence the default tolerance.
void expectColor(const testsupport::Rgb& p, int r, int g, int b, int tolerance = 10) {
    EXPECT_NEAR(p.r, r, tolerance);
    EXPECT_NEAR(p.g, g, tolerance);
    EXPECT_NEAR(p.b, b, tolerance);
}

class ModelDrawing : public testing::Test {
  protected:
    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        resetView();
    }
    ScratchDir dir_;
};

}  // namespace

TEST_F(ModelDrawing, TexturedSquareShowsItsTextureColours) {
    // A 2 x 2 texture: red, green on the first row of the file; blue, white on the second.
    writePnm(dir_.file("four.ppm"), 2, 2, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
    writeText(dir_.file("sq.mtl"), "newmtl tex\nKd 1 1 1\nTd replace four.ppm\n");
    writeText(dir_.file("sq.obj"), squareObj("sq.mtl", "tex"));
    ModelPtr m(glmReadOBJ(dir_.file("sq.obj").c_str()));
    ASSERT_TRUE(m);
    clearTo(0, 0, 0);
    glmDraw(m.get(), GLM_TEXTURE | GLM_COLOR);
    EXPECT_NE(m->materials[1].textureName, 0u);
    EXPECT_EQ(m->materials[1].textureToLoad, 0);
    std::vector<unsigned char> rgb = readBackRGB(kSize, kSize);
    // The file's first row lies at t = 0, the bottom of the square.
    expectColor(pixelAt(rgb, kSize, 16, 16), 255, 0, 0);
    expectColor(pixelAt(rgb, kSize, 48, 16), 0, 255, 0);
    expectColor(pixelAt(rgb, kSize, 16, 48), 0, 0, 255);
    expectColor(pixelAt(rgb, kSize, 48, 48), 255, 255, 255);

    // The same through a display list.
    GLuint list = glmList(m.get(), GLM_TEXTURE | GLM_COLOR);
    ASSERT_NE(list, 0u);
    clearTo(0, 0, 0);
    glCallList(list);
    std::vector<unsigned char> listed = readBackRGB(kSize, kSize);
    EXPECT_EQ(listed, rgb);
    glDeleteLists(list, 1);

    // Replacing the texture takes effect at once.
    writePnm(dir_.file("grey.pgm"), 4, 4, 1, modeltest::filled(4, 4, {100}));
    EXPECT_EQ(glmSetTexture(m.get(), "tex", dir_.file("grey.pgm").c_str(), nullptr, GL_REPLACE), 0);
    clearTo(0, 0, 0);
    glmDraw(m.get(), GLM_TEXTURE);
    expectColor(pixelAt(readBackRGB(kSize, kSize), kSize, 10, 50), 100, 100, 100);
    CaptureStderr();
    EXPECT_EQ(glmSetTexture(m.get(), "nosuch", "x.ppm", nullptr, GL_REPLACE), 1);
    EXPECT_EQ(glmSetTexture(m.get(), "tex", "x.ppm", nullptr, GL_ADD), GL_INVALID_ENUM);
    EXPECT_EQ(glmSetTexWarpMode(m.get(), "tex", GL_MIRRORED_REPEAT, GL_REPEAT), GL_INVALID_ENUM);
    EXPECT_EQ(glmSetTexWarpMode(m.get(), "tex", GL_CLAMP, GL_MIRRORED_REPEAT), GL_INVALID_ENUM);
    EXPECT_EQ(glmSetTexWarpMode(m.get(), "none", GL_CLAMP, GL_CLAMP), 1);
    EXPECT_EQ(glmSetTexWarpMode(m.get(), "tex", GL_CLAMP, GL_REPEAT), 0);
    EXPECT_EQ(GetCapturedStderr(),
              "Err (glmSetTexture) : material name [nosuch] not found in model!\n"
              "Err (glmSetTexture) : invalid envType (see gltexenv)!\n"
              "Err (glmSetTexWarpMode): unknown warpS_mode!\n"
              "Err (glmSetTexWarpMode): unknown warpT_mode!\n"
              "Err (glmSetTexWarpMode) : material name [none] not found in model!\n");
    EXPECT_EQ(m->materials[1].wrapS, GL_CLAMP);
}

TEST_F(ModelDrawing, LookupTableAndAlphaImageAreApplied) {
    writePnm(dir_.file("lum.pgm"), 300, 200, 1, modeltest::filled(300, 200, {10}));
    writePnm(dir_.file("alpha.pgm"), 300, 200, 1, modeltest::filled(300, 200, {128}));
    std::string lut;
    for (int i = 0; i < 256; i++)
        lut += std::to_string(i == 10 ? 250 : i) + " 0 0" + (i == 128 ? " 255" : "") + "\n";
    writeText(dir_.file("t.lut"), lut);
    writeText(dir_.file("la.mtl"),
              "newmtl la\nTd lut_pgm t.lut modulate lum.pgm alpha.pgm\nKd 1 1 1 1\n");
    writeText(dir_.file("la.obj"), squareObj("la.mtl", "la"));
    CaptureStderr();
    ModelPtr m(glmReadOBJ(dir_.file("la.obj").c_str()));
    ASSERT_TRUE(m);
    glmLoadTextures(m.get());
    EXPECT_EQ(GetCapturedStderr(),
              "- LUT option [1] using file [t.lut]\n"
              "- call gluScaleImage : 300x200 to 256x256\n- done.\n"
              "Apply LUTFILE [t.lut] using option [1]\n");
    ASSERT_NE(m->materials[1].textureName, 0u);
    glBindTexture(GL_TEXTURE_2D, m->materials[1].textureName);
    GLint width = 0, height = 0, luminance = 0, alpha = 0, green = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &height);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_LUMINANCE_SIZE, &luminance);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_ALPHA_SIZE, &alpha);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_GREEN_SIZE, &green);
    EXPECT_EQ(width, 256);
    EXPECT_EQ(height, 256);
    EXPECT_GT(luminance, 0);  // uploaded as luminance-alpha
    EXPECT_GT(alpha, 0);
    EXPECT_EQ(green, 0);
    std::vector<unsigned char> texels(256 * 256 * 2);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE, texels.data());
    EXPECT_EQ(texels[0], 250);  // luminance through red, alpha through alpha
    EXPECT_EQ(texels[1], 255);
}

TEST_F(ModelDrawing, OpacityBlendsAndIsClampedWithAWarning) {
    writeText(dir_.file("red.mtl"), "newmtl red\nKd 1 0 0 1\n");
    writeText(dir_.file("red.obj"), squareObj("red.mtl", "red"));
    ModelPtr m(glmReadOBJ(dir_.file("red.obj").c_str()));
    ASSERT_TRUE(m);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    clearTo(0, 0, 1);
    glmDrawOpacity(m.get(), GLM_COLOR, 0.5f);
    expectColor(pixelAt(readBackRGB(kSize, kSize), kSize, 32, 32), 128, 0, 128, 2);

    // The opacity scales all four components: additive blending shows it in the colour.
    glBlendFunc(GL_ONE, GL_ONE);
    clearTo(0, 0, 0);
    glmDrawOpacity(m.get(), GLM_COLOR | GLM_OPACITY_ALL, 0.25f);
    expectColor(pixelAt(readBackRGB(kSize, kSize), kSize, 32, 32), 64, 0, 0, 2);

    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    clearTo(0, 0, 1);
    CaptureStderr();
    glmDrawOpacity(m.get(), GLM_COLOR, 1.5f);
    glmDrawOpacity(m.get(), GLM_COLOR, 1.5f);
    EXPECT_EQ(GetCapturedStderr(),
              "glmDrawOpacity() warning: opacity out of range [0,1]\n"
              "glmDrawOpacity() warning: opacity out of range [0,1]\n");
    expectColor(pixelAt(readBackRGB(kSize, kSize), kSize, 32, 32), 255, 0, 0);
    glDisable(GL_BLEND);
}

TEST_F(ModelDrawing, ModeConflictWarningsAppearOncePerProcess) {
    writeText(dir_.file("n.obj"), "v -1 -1 0\nv 1 -1 0\nv 0 1 0\nf 1 2 3\n");
    ModelPtr m(glmReadOBJ(dir_.file("n.obj").c_str()));
    ASSERT_TRUE(m);
    glmFacetNormals(m.get());
    glmVertexNormals(m.get(), 90.0f);
    clearTo(0, 0, 0);
    CaptureStderr();
    for (int i = 0; i < 3; i++)
        glmDraw(m.get(), GLM_FLAT | GLM_SMOOTH);
    for (int i = 0; i < 2; i++)
        glmDraw(m.get(), GLM_COLOR | GLM_TEXTURE);
    std::string err = GetCapturedStderr();
    EXPECT_EQ(err,
              "glmDraw() warning: flat render mode requested (assume smooth).\n"
              "glmDraw() warning: texture render mode requested with no texture coordinates "
              "defined.\n"
              "glmDraw() warning: color render mode requested with no materials defined.\n");

    CaptureStderr();
    glmDrawNormals(m.get(), GLM_FLAT | GLM_SMOOTH, 1.0f);
    glmDrawNormals(nullptr, GLM_FLAT, 1.0f);
    glmDrawNormals(m.get(), GLM_SMOOTH, 0.5f);
    EXPECT_EQ(GetCapturedStderr(),
              "glmDrawNormals: contradictory mode; both GLM_FLAT and GLM_SMOOTH are on.\n");
}

TEST_F(ModelDrawing, DepthSortDrawsFarthestOrNearestFirst) {
    // Two triangles in one group, at distances 1 and 2 in front of the eye at the origin.
    writeText(dir_.file("z.obj"),
              "v -1 -1 -1\nv 1 -1 -1\nv 0 1 -1\n"
              "v -1 -1 -2\nv 1 -1 -2\nv 0 1 -2\n"
              "f 1 2 3\nf 4 5 6\n");
    ModelPtr m(glmReadOBJ(dir_.file("z.obj").c_str()));
    ASSERT_TRUE(m);
    glMatrixMode(GL_PROJECTION);
    glOrtho(-2, 2, -2, 2, 0, 4);  // window depth = distance / 4
    glMatrixMode(GL_MODELVIEW);

    // The depths of the triangles in the order they reach the rasteriser.
    auto drawnDepths = [&](GLuint mode) {
        std::vector<GLfloat> feedback(256);
        glFeedbackBuffer(static_cast<GLsizei>(feedback.size()), GL_3D, feedback.data());
        glRenderMode(GL_FEEDBACK);
        glmDraw(m.get(), mode);
        GLint n = glRenderMode(GL_RENDER);
        std::vector<float> depths;
        for (GLint i = 0; i < n;) {
            if (feedback[i] == GL_POLYGON_TOKEN) {
                int count = static_cast<int>(feedback[i + 1]);
                depths.push_back(feedback[i + 2 + 2]);  // z of the first vertex
                i += 2 + 3 * count;
            } else {
                i++;
            }
        }
        return depths;
    };
    std::vector<float> depths = drawnDepths(GLM_NONE);
    ASSERT_EQ(depths.size(), 2u);
    EXPECT_NEAR(depths[0], 0.25f, 1e-4);  // file order
    depths = drawnDepths(GLM_ZSORT);
    ASSERT_EQ(depths.size(), 2u);
    EXPECT_NEAR(depths[0], 0.5f, 1e-4);  // distance 2 first
    EXPECT_NEAR(depths[1], 0.25f, 1e-4);
    EXPECT_TRUE(m->centroidsValid);
    EXPECT_EQ(m->groups->sortOrder.size(), 2u);
    depths = drawnDepths(GLM_ZSORT_NEG);
    EXPECT_NEAR(depths[0], 0.25f, 1e-4);  // distance 1 first

    // Moving the eye behind the far triangle turns the order round.
    glTranslatef(0, 0, -3);
    testsupport::orthoCamera(-2, 2, -2, 2, -4, 4);
    glRotatef(180, 0, 1, 0);
    glTranslatef(0, 0, 3);  // the eye at (0, 0, -3) in model coordinates
    CaptureStderr();
    depths = drawnDepths(GLM_ZSORT | GLM_ZSORT_NEG);
    EXPECT_EQ(GetCapturedStderr(),
              "glmDraw() warning: GLM_ZSORT and GLM_ZSORT_NEG render mode requested (assume "
              "GLM_ZSORT).\n");
    ASSERT_EQ(depths.size(), 2u);
    EXPECT_GT(depths[0], depths[1]);  // the triangle at z = -1, now the farther, comes first
    EXPECT_EQ(m->groups->sortOrder[1], 0u);
}
