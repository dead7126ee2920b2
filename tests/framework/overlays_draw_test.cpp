// The reference overlays drawn in a small window: each must put its colours where its
// geometry projects and leave the GL state as the frame loop expects. Set
// SKYRAMA_OVERLAY_SHOTS to a folder to keep a PPM picture of every check.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"
#include "tests/support/gl_test_window.h"

#include <GL/freeglut.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kSize = 200;
constexpr double kDegree = 3.14159265358979323846 / 180.0;

using testsupport::Rgb;
using Image = std::vector<unsigned char>;
using PixelTest = std::function<bool(const Rgb&)>;

bool lit(const Rgb& p) {
    return p.r + p.g + p.b > 30;
}

struct Box {
    int minX = kSize, minY = kSize, maxX = -1, maxY = -1;
    bool empty() const { return maxX < 0; }
};

class OverlayDrawing : public testing::Test {
  protected:
    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDisable(GL_LIGHTING);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_BLEND);
        glDisable(GL_LINE_SMOOTH);
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LESS);
        glDepthMask(GL_TRUE);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    // The frame loop's drawing state: blended, smooth lines.
    static void frameLoopState() {
        glEnable(GL_BLEND);
        glEnable(GL_LINE_SMOOTH);
        glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
    }

    static void perspective(double fovy, const double eye[3], const double centre[3],
                            const double up[3]) {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(fovy, 1.0, 0.01, 10000.0);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(eye[0], eye[1], eye[2], centre[0], centre[1], centre[2], up[0], up[1], up[2]);
    }

    // Window position of a point under the current matrices (y from the bottom).
    static void project(double x, double y, double z, int& px, int& py) {
        double mv[16], pr[16], wx, wy, wz;
        int viewport[4];
        glGetDoublev(GL_MODELVIEW_MATRIX, mv);
        glGetDoublev(GL_PROJECTION_MATRIX, pr);
        glGetIntegerv(GL_VIEWPORT, viewport);
        gluProject(x, y, z, mv, pr, viewport, &wx, &wy, &wz);
        px = static_cast<int>(std::lround(wx));
        py = static_cast<int>(std::lround(wy));
    }

    Image read(const char* shotName) {
        Image rgb = testsupport::readBackRGB(kSize, kSize);
        const char* folder = std::getenv("SKYRAMA_OVERLAY_SHOTS");
        if (folder != nullptr) {
            std::string path = std::string(folder) + "/" + shotName + ".ppm";
            if (FILE* f = std::fopen(path.c_str(), "wb")) {
                std::fprintf(f, "P6\n%d %d\n255\n", kSize, kSize);
                for (int row = kSize - 1; row >= 0; --row) {
                    std::fwrite(&rgb[static_cast<size_t>(row) * kSize * 3], 1, kSize * 3, f);
                }
                std::fclose(f);
            }
        }
        return rgb;
    }

    static Rgb at(const Image& rgb, int x, int y) { return testsupport::pixelAt(rgb, kSize, x, y); }

    // True when a pixel within radius (a square) of (x, y) passes the test.
    static bool near(const Image& rgb, int x, int y, int radius, const PixelTest& test) {
        for (int j = y - radius; j <= y + radius; ++j) {
            for (int i = x - radius; i <= x + radius; ++i) {
                if (i >= 0 && j >= 0 && i < kSize && j < kSize && test(at(rgb, i, j))) return true;
            }
        }
        return false;
    }

    static int count(const Image& rgb, const PixelTest& test) {
        int n = 0;
        for (int j = 0; j < kSize; ++j) {
            for (int i = 0; i < kSize; ++i)
                n += test(at(rgb, i, j)) ? 1 : 0;
        }
        return n;
    }

    static Box bounds(const Image& rgb, const PixelTest& test = lit) {
        Box b;
        for (int j = 0; j < kSize; ++j) {
            for (int i = 0; i < kSize; ++i) {
                if (!test(at(rgb, i, j))) continue;
                b.minX = std::min(b.minX, i);
                b.maxX = std::max(b.maxX, i);
                b.minY = std::min(b.minY, j);
                b.maxY = std::max(b.maxY, j);
            }
        }
        return b;
    }

    static void clear() { glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }
};

bool reddish(const Rgb& p) {
    return p.r > 60 && p.r > 2 * p.g && p.r > 2 * p.b;
}
bool greenish(const Rgb& p) {
    return p.g > 60 && p.g > 2 * p.r && p.g > 2 * p.b;
}
bool bluish(const Rgb& p) {
    return p.b > 60 && 2 * p.b > 3 * p.r && 2 * p.b > 3 * p.g;
}

}  // namespace

TEST_F(OverlayDrawing, AxesShowRedGreenAndBlueWhereTheyProjectWithTheirLabels) {
    frameLoopState();
    const double eye[3] = {2.2, 1.6, 3.0}, centre[3] = {0.35, 0.35, 0.35}, up[3] = {0, 1, 0};
    perspective(50.0, eye, centre, up);
    drawAxes(true, "G", 2.0f);
    Image shot = read("axes");

    int x, y;
    project(0.6, 0.0, 0.0, x, y);
    EXPECT_TRUE(near(shot, x, y, 1, reddish)) << "x axis at " << x << "," << y;
    project(0.0, 0.6, 0.0, x, y);
    EXPECT_TRUE(near(shot, x, y, 1, greenish)) << "y axis at " << x << "," << y;
    project(0.0, 0.0, 0.6, x, y);
    EXPECT_TRUE(near(shot, x, y, 1, bluish)) << "z axis at " << x << "," << y;
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));

    // Labels add red above the end of x and blue above the end of z; without them the same
    // places hold only the axes.
    int withLabels = count(shot, reddish) + count(shot, bluish);
    clear();
    drawAxes(false, "G", 2.0f);
    Image bare = read("axes_bare");
    EXPECT_GT(withLabels, count(bare, reddish) + count(bare, bluish) + 40);
    project(1.1, 0.0, 0.0, x, y);
    EXPECT_TRUE(near(shot, x, y + 6, 5, reddish));
    EXPECT_FALSE(near(bare, x, y + 8, 3, lit));
}

TEST_F(OverlayDrawing, MetreCubesFadeWithTheirDistanceFromTheEye) {
    // Eye 3 units from the origin: the 1 m cube at sqrt(0.99), the 10 m cube at sqrt(0.49),
    // no 100 m cube.
    const double eye[3] = {0, 0, 3}, centre[3] = {0, 0, 0}, up[3] = {0, 1, 0};
    const int bright = static_cast<int>(0.8 * std::sqrt(1 - 0.0232 / 2) * 255);
    const int dim = static_cast<int>(0.8 * std::sqrt(1 - 1.0232 / 2) * 255);
    auto yellow = [](int level) {
        return [level](const Rgb& p) {
            return std::abs(p.r - level) <= 3 && std::abs(p.g - level) <= 3 && p.b == 0;
        };
    };
    struct Case {
        const char* name;
        double logScale;
        void (*draw)(double);
    };
    const Case cases[] = {{"metre_cubes", 0.0, drawMeterCubes},
                          {"parsec_cubes", kParsecLog10, drawParsecCubes}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        clear();
        perspective(120.0, eye, centre, up);
        c.draw(c.logScale);
        Image shot = read(c.name);
        int x, y;
        project(0.5, 0.25, 0.5, x, y);
        EXPECT_TRUE(near(shot, x, y, 1, yellow(bright))) << "1 unit cube at " << x << "," << y;
        project(5.0, 2.5, -5.0, x, y);
        EXPECT_TRUE(near(shot, x, y, 1, yellow(dim))) << "10 unit cube at " << x << "," << y;
        project(50.0, 25.0, -50.0, x, y);
        EXPECT_FALSE(near(shot, x, y, 2, lit)) << "100 unit cube at " << x << "," << y;
        GLfloat width;
        glGetFloatv(GL_LINE_WIDTH, &width);
        EXPECT_EQ(width, 1.0f);
        GLint depthFunc;
        glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
        EXPECT_EQ(depthFunc, GL_LESS);
    }
}

TEST_F(OverlayDrawing, PowerLabelIsCentredAndRaisesItsExponent) {
    glMatrixMode(GL_PROJECTION);
    gluOrtho2D(-200.0, 200.0, -200.0, 200.0);  // two font units per pixel
    glMatrixMode(GL_MODELVIEW);
    glDepthFunc(GL_ALWAYS);
    glColor3f(1.0f, 1.0f, 1.0f);
    drawPowerLabel(0, 0.8f, "m");
    Box one = bounds(read("power_label_0"));
    GLint depthFunc;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
    EXPECT_EQ(depthFunc, GL_LESS);

    clear();
    drawPowerLabel(3, 0.8f, "m");
    Box kilo = bounds(read("power_label_3"));
    ASSERT_FALSE(one.empty());
    ASSERT_FALSE(kilo.empty());
    EXPECT_NEAR((one.minX + one.maxX) / 2.0, 100.0, 6.0);
    EXPECT_NEAR((kilo.minX + kilo.maxX) / 2.0, 100.0, 6.0);
    EXPECT_GT(kilo.maxX - kilo.minX, one.maxX - one.minX + 20);  // "10" and "3" are wider
    // Same baseline; the raised 3 reaches above the digits.
    EXPECT_NEAR(kilo.minY, one.minY, 1);
    EXPECT_GT(kilo.maxY, one.maxY + 5);
}

TEST_F(OverlayDrawing, BillboardTextFacesTheViewerWhateverTheRotation) {
    const double eye[3] = {0, 0, 3}, centre[3] = {0, 0, 0}, up[3] = {0, 1, 0};
    const double charWidth = strokeTextWidth(GLUT_STROKE_MONO_ROMAN, "H") * 0.005;
    const double pixelsPerUnit = kSize / (2.0 * 3.0 * std::tan(30.0 * kDegree));
    struct Case {
        int alignment;
        float offset;
    };
    const Case cases[] = {{2, 0.0f}, {1, 0.0f}, {3, 0.0f}, {1, 1.0f}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "alignment " << c.alignment << " offset " << c.offset);
        clear();
        perspective(60.0, eye, centre, up);
        glRotated(90.0, 0.0, 1.0, 0.0);  // plain text here would be seen edge-on
        glColor3f(1.0f, 1.0f, 1.0f);
        drawBillboardText("HH", 0.005f, c.alignment, c.offset);
        std::string name = "billboard_" + std::to_string(c.alignment) + "_" +
                           std::to_string(static_cast<int>(c.offset));
        Box b = bounds(read(name.c_str()));
        ASSERT_FALSE(b.empty());
        // Two upright letters, full size, on a baseline through the origin.
        EXPECT_GT(b.maxX - b.minX, charWidth * pixelsPerUnit);
        EXPECT_GE(b.minY, 99);
        EXPECT_GT(b.maxY, 110);
        if (c.alignment == 2) {
            EXPECT_NEAR((b.minX + b.maxX) / 2.0, 100.0, 3.0);
        } else if (c.alignment == 1) {  // starts at the origin, moved by the offset
            EXPECT_GE(b.minX, 100 + c.offset * charWidth * pixelsPerUnit - 1);
        } else {  // ends at the origin
            EXPECT_LE(b.maxX, 101);
        }
    }
    GLint depthFunc;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
    EXPECT_EQ(depthFunc, GL_LESS);
}

TEST_F(OverlayDrawing, ScreenBoxFillsItsRectangleCountedFromTheTop) {
    const double eye[3] = {0, 0, 3}, centre[3] = {0, 0, 0}, up[3] = {0, 1, 0};
    perspective(60.0, eye, centre, up);
    double before[16], after[16];
    glGetDoublev(GL_PROJECTION_MATRIX, before);
    const float fill[4] = {0.2f, 0.4f, 0.6f, 1.0f};
    const float red[4] = {1.0f, 0.0f, 0.0f, 1.0f};
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, false, red);
    Image shot = read("screen_box");

    // Columns 20 .. 119, rows 40 .. 99 from the top = 100 .. 159 from the bottom.
    auto isFill = [](const Rgb& p) { return p.r == 51 && p.g == 102 && p.b == 153; };
    Box b = bounds(shot, isFill);
    EXPECT_NEAR(b.minX, 20, 1);
    EXPECT_NEAR(b.maxX, 119, 1);
    EXPECT_NEAR(b.minY, 100, 1);
    EXPECT_NEAR(b.maxY, 159, 1);
    EXPECT_EQ(count(shot, isFill), count(shot, lit));
    EXPECT_GT(count(shot, isFill), 98 * 58);

    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    glGetDoublev(GL_PROJECTION_MATRIX, after);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(before[i], after[i]);

    clear();
    drawScreenBox(0.1f, 0.2f, 0.5f, 0.3f, fill, true, red);
    Image outlined = read("screen_box_outline");
    auto isRed = [](const Rgb& p) { return p.r == 255 && p.g == 0 && p.b == 0; };
    EXPECT_TRUE(near(outlined, 20, 130, 1, isRed));
    EXPECT_TRUE(near(outlined, 119, 130, 1, isRed));
    EXPECT_TRUE(near(outlined, 70, 159, 1, isRed));
    EXPECT_TRUE(isFill(at(outlined, 70, 130)));
    GLint modes[2];
    glGetIntegerv(GL_POLYGON_MODE, modes);
    EXPECT_EQ(modes[0], GL_FILL);
}

TEST_F(OverlayDrawing, ScreenTextIsAnchoredByItsAlignment) {
    const double dash = strokeTextWidth(GLUT_STROKE_ROMAN, "-") * 0.001 * kSize;
    struct Case {
        int alignment;
        int dashes;
    };
    const Case cases[] = {{1, 0}, {2, 0}, {0, 0}, {1, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "alignment " << c.alignment << " dashes " << c.dashes);
        clear();
        glColor3f(1.0f, 1.0f, 1.0f);
        drawScreenText("HH", 0.5f, 0.25f, 0.001f, c.alignment, c.dashes);
        std::string name =
            "screen_text_" + std::to_string(c.alignment) + "_" + std::to_string(c.dashes);
        Box b = bounds(read(name.c_str()));
        ASSERT_FALSE(b.empty());
        // Baseline a quarter of the way down: row 150 from the bottom.
        EXPECT_GE(b.minY, 149);
        EXPECT_LE(b.maxY, 175);
        EXPECT_GT(b.maxX - b.minX, 30);
        if (c.alignment == 1) {  // starts at the anchor, moved by the dashes
            EXPECT_GE(b.minX, 100 + c.dashes * dash - 1);
            EXPECT_LE(b.minX, 100 + c.dashes * dash + 6);
        } else if (c.alignment == 2) {
            EXPECT_NEAR((b.minX + b.maxX) / 2.0, 100.0, 3.0);
        } else {  // ends at the anchor
            EXPECT_LE(b.maxX, 101);
            EXPECT_GE(b.maxX, 94);
        }
    }
    GLint depthFunc;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
    EXPECT_EQ(depthFunc, GL_LESS);
}

namespace {

// A point of the grid sphere seen from eye, at a longitude and latitude of the galactic
// frame (the grid is centred on the eye).
void gridPoint(const double eye[3], double lon, double lat, double out[3]) {
    out[0] = eye[0] + 1000.0 * std::cos(lat * kDegree) * std::cos(lon * kDegree);
    out[1] = eye[1] + 1000.0 * std::cos(lat * kDegree) * std::sin(lon * kDegree);
    out[2] = eye[2] + 1000.0 * std::sin(lat * kDegree);
}

}  // namespace

TEST_F(OverlayDrawing, SkyGridDrawsItsLinesAroundTheEyeAndNotBetweenThem) {
    frameLoopState();
    // Looking at the middle of a 15-degree cell of the galactic grid from away from the
    // origin: the grid follows the eye.
    const double eye[3] = {300, -200, 400}, up[3] = {0, 0, 1};
    double centre[3];
    gridPoint(eye, 7.5, 7.5, centre);
    perspective(60.0, eye, centre, up);
    drawSkyGrid(2, false, 60.0);
    Image shot = read("sky_grid_galactic");

    auto gridColour = [](const Rgb& p) { return p.g > 60 && p.g > p.r + 20 && p.b > p.r + 20; };
    EXPECT_FALSE(near(shot, kSize / 2, kSize / 2, 2, lit));
    double point[3];
    int x, y;
    gridPoint(eye, 7.5, 0.0, point);  // the equator
    project(point[0], point[1], point[2], x, y);
    EXPECT_TRUE(near(shot, x, y, 1, gridColour)) << "equator at " << x << "," << y;
    gridPoint(eye, 0.0, 7.5, point);  // the zero meridian
    project(point[0], point[1], point[2], x, y);
    EXPECT_TRUE(near(shot, x, y, 1, gridColour)) << "meridian at " << x << "," << y;
    gridPoint(eye, 15.0, 3.0, point);  // the 15-degree meridian
    project(point[0], point[1], point[2], x, y);
    EXPECT_TRUE(near(shot, x, y, 1, gridColour)) << "meridian 15 at " << x << "," << y;

    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_TRUE(glIsEnabled(GL_TEXTURE_2D));
    GLboolean depthWrites;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    EXPECT_TRUE(depthWrites);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);

    // The crossing labels add text; the equatorial grid is drawn in its own reddish colour.
    clear();
    drawSkyGrid(2, true, 60.0);
    Image detailed = read("sky_grid_galactic_detail");
    EXPECT_GT(count(detailed, lit), count(shot, lit) + 20);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    clear();
    drawSkyGrid(1, true, 60.0);
    Image equatorial = read("sky_grid_equatorial");
    auto reddishGrid = [](const Rgb& p) { return p.r > 40 && p.r > p.g + 10 && p.r > p.b + 10; };
    EXPECT_GT(count(equatorial, reddishGrid), 500);
    EXPECT_EQ(count(equatorial, gridColour), 0);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    clear();
    drawSkyGrid(3, false, 60.0);
    Image third = read("sky_grid_third");
    auto lavender = [](const Rgb& p) {
        return p.b > 60 && p.b > p.r + 15 && std::abs(p.r - p.g) <= 2;
    };
    EXPECT_GT(count(third, lavender), 500);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
}

TEST_F(OverlayDrawing, SkyGridGetsDenserAsTheViewNarrows) {
    frameLoopState();
    // The view centre lies on the 7.5-degree lines of the finest sphere only; the 10-degree
    // meridian belongs to the middle sphere.
    const double eye[3] = {0, 0, 0}, up[3] = {0, 0, 1};
    double centre[3], tenDegrees[3];
    gridPoint(eye, 7.5, 7.5, centre);
    gridPoint(eye, 10.0, 7.0, tenDegrees);
    struct Case {
        double fovy;
        bool centreLine;
        bool tenDegreeLine;
    };
    const Case cases[] = {{60.0, false, false}, {20.0, true, true}, {5.0, true, true}};
    int centreLevel[3] = {0, 0, 0};
    for (int i = 0; i < 3; ++i) {
        const Case& c = cases[i];
        SCOPED_TRACE(testing::Message() << "fovy " << c.fovy);
        clear();
        perspective(c.fovy, eye, centre, up);
        drawSkyGrid(2, false, c.fovy);
        std::string name = "sky_grid_galactic_" + std::to_string(static_cast<int>(c.fovy));
        Image shot = read(name.c_str());
        EXPECT_EQ(near(shot, kSize / 2, kSize / 2, 1, lit), c.centreLine);
        int x, y;
        project(tenDegrees[0], tenDegrees[1], tenDegrees[2], x, y);
        if (x >= 0 && x < kSize && y >= 0 && y < kSize) {
            EXPECT_EQ(near(shot, x, y, 1, lit), c.tenDegreeLine) << x << "," << y;
        } else {
            EXPECT_FALSE(c.tenDegreeLine);
        }
        for (int j = -1; j <= 1; ++j) {
            for (int k = -1; k <= 1; ++k) {
                centreLevel[i] = std::max(centreLevel[i], at(shot, kSize / 2 + j, kSize / 2 + k).g);
            }
        }
        glDisable(GL_LIGHTING);
        glDisable(GL_TEXTURE_2D);
    }
    // The finest lines fade in as the view narrows.
    EXPECT_GT(centreLevel[2], centreLevel[1]);
}

TEST_F(OverlayDrawing, WireSphereWarnsAboutTooManyStacksAndSlicesAndStillDraws) {
    const double eye[3] = {0, 0, 3}, centre[3] = {0, 0, 0}, up[3] = {0, 1, 0};
    perspective(60.0, eye, centre, up);
    glColor3f(1.0f, 1.0f, 1.0f);
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 513, 513);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning (myGlutWireSphere): too many stacks.\n"
              "warning (myGlutWireSphere): too many slices.\n");
    Image shot = read("wire_sphere");
    Box b = bounds(shot);
    // Radius 1 seen from 3 units: about 0.35 of the window's half height.
    EXPECT_NEAR(b.maxX - b.minX,
                2 * std::tan(std::asin(1.0 / 3.0)) / std::tan(30 * kDegree) * kSize / 2, 4);

    clear();
    testing::internal::CaptureStderr();
    myGlutWireSphere(1.0, 0, 12);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(count(read("wire_sphere_none"), lit), 0);
}
