// Celestial sky grids on a sphere around the eye, and the wire sphere they are made of.

#include "framework/overlays.h"

#include <GL/freeglut.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr double kGridRadius = 1000.0;
constexpr double kDegree = 3.14159265358979323846 / 180.0;
constexpr int kSphereSlices[3] = {24, 72, 144};
constexpr int kSphereStacks[3] = {12, 36, 72};

// Label sizes at a field of view of 60 degrees; both grow with the field of view so that
// the grid looks the same at any zoom.
constexpr double kMainLabelSize = 0.5;
constexpr double kCrossingLabelSize = 0.1;

// The third frame's orientation: columns of a rotation, as OpenGL stores them.
// clang-format off
constexpr double kThirdFrame[16] = {
    -0.735742574804,  0.677261296414,  0.0,            0.0,
    -0.074553778365, -0.080991471307,  0.9939225904,   0.0,
     0.673145302109,  0.731271165817,  0.110081262225, 0.0,
     0.0,             0.0,             0.0,            1.0};
// clang-format on

double monoWidth(const std::string& text) {
    return strokeTextWidth(GLUT_STROKE_MONO_ROMAN, text);
}

struct GridStyle {
    float line[4];
    float label[4];
};

// Orients the current matrix to the grid's frame and returns its colours.
GridStyle enterGridFrame(int kind) {
    switch (kind) {
        case 1:
            // The equatorial frame seen from the scene's galactic frame.
            glRotated(32.931377, 0.0, 0.0, 1.0);
            glRotated(-62.882179, 1.0, 0.0, 0.0);
            glRotated(77.141663, 0.0, 0.0, 1.0);
            glScaled(1.05, 1.05, 1.05);
            return {{0.8f, 0.6f, 0.6f, 0.5f}, {1.0f, 0.6f, 0.6f, 0.8f}};
        case 2:
            return {{0.5f, 0.8f, 0.8f, 0.5f}, {0.5f, 1.0f, 1.0f, 0.8f}};
        default:
            glMultMatrixd(kThirdFrame);
            glScaled(1.1, 1.1, 1.1);
            return {{0.7f, 0.7f, 0.9f, 0.5f}, {0.7f, 0.7f, 1.0f, 0.8f}};
    }
}

// Mono stroke glyphs reach this far below and above the baseline, in font units (with room
// to spare).
constexpr double kGlyphBottom = -50.0;
constexpr double kGlyphTop = 150.0;

// The grid frame's modelview and the projection, read once per grid, to skip the labels that
// would draw nothing: at the finest level most of the ten thousand crossings are out of view.
struct GridView {
    double modelview[16];
    double projection[16];

    GridView() {
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
    }

    // True when the label's upright box lies wholly beyond one side of the view volume.
    bool hides(const GridLabel& label, float size) const {
        double lon = label.longitude * kDegree, lat = label.latitude * kDegree;
        double p[3] = {kGridRadius * std::cos(lat) * std::cos(lon),
                       kGridRadius * std::cos(lat) * std::sin(lon), kGridRadius * std::sin(lat)};
        double eye[3];
        for (int r = 0; r < 3; ++r) {
            eye[r] = modelview[r] * p[0] + modelview[4 + r] * p[1] + modelview[8 + r] * p[2] +
                     modelview[12 + r];
        }
        double start = billboardTextStart(label.text.c_str(), 2, 0.0f, monoWidth) * size;
        double xs[2] = {eye[0] + start, eye[0] - start};  // centred text
        double ys[2] = {eye[1] + kGlyphBottom * size, eye[1] + kGlyphTop * size};
        // For each clip plane (x < -w, x > w, y < -w, y > w, z < -w): all four corners out.
        int outside[5] = {0, 0, 0, 0, 0};
        for (double x : xs) {
            for (double y : ys) {
                double c[4];
                for (int r = 0; r < 4; ++r) {
                    c[r] = projection[r] * x + projection[4 + r] * y + projection[8 + r] * eye[2] +
                           projection[12 + r];
                }
                outside[0] += c[0] < -c[3];
                outside[1] += c[0] > c[3];
                outside[2] += c[1] < -c[3];
                outside[3] += c[1] > c[3];
                outside[4] += c[2] < -c[3];
            }
        }
        for (int n : outside) {
            if (n == 4) return true;
        }
        return false;
    }
};

void drawGridLabel(const GridView& view, const GridLabel& label, float size) {
    if (view.hides(label, size)) return;
    glPushMatrix();
    glRotated(label.longitude, 0.0, 0.0, 1.0);
    glRotated(label.latitude, 0.0, -1.0, 0.0);
    glTranslated(kGridRadius, 0.0, 0.0);
    drawBillboardText(label.text.c_str(), size, 2, 0.0f);
    glPopMatrix();
}

WireSphereTable wireSphereTable;

}  // namespace

void drawSkyGrid(int kind, bool detail, double fovy) {
    if (kind < 1 || kind > 3) {
        static int lastReported = 0;
        if (kind != lastReported) {
            std::fprintf(stderr, "Err (drawSkyGrid) : unknown grid kind %d.\n", kind);
            lastReported = kind;
        }
        return;
    }
    if (!std::isfinite(fovy)) return;

    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
    glLineWidth(1.0f);
    glPushMatrix();
    // Centre the grid sphere on the eye: keep the rotation, drop the translation.
    double modelview[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    modelview[12] = modelview[13] = modelview[14] = 0.0;
    glLoadMatrixd(modelview);

    GridStyle style = enterGridFrame(kind);
    GridView view;
    std::array<double, 3> weights = skyGridSphereWeights(fovy);
    for (int i = 0; i < 3; ++i) {
        if (weights[i] <= 0.0) continue;
        glColor4f(style.line[0], style.line[1], style.line[2],
                  static_cast<float>(style.line[3] * weights[i]));
        myGlutWireSphere(kGridRadius, kSphereSlices[i], kSphereStacks[i]);
    }

    glColor4fv(style.label);
    float mainSize = static_cast<float>(kMainLabelSize * fovy / 60.0);
    for (const GridLabel& label : skyGridMainLabels(kind))
        drawGridLabel(view, label, mainSize);

    if (detail) {
        float crossingSize = static_cast<float>(kCrossingLabelSize * fovy / 60.0);
        for (const GridLabel& label : skyGridCrossingLabels(kind, fovy)) {
            float alpha =
                label.major ? style.label[3] : static_cast<float>(style.label[3] * label.weight);
            glColor4f(style.label[0], style.label[1], style.label[2], alpha);
            drawGridLabel(view, label, crossingSize);
        }
    }

    glEnable(GL_LIGHTING);
    glEnable(GL_TEXTURE_2D);
    glDepthMask(GL_TRUE);
    glPopMatrix();
}

void myGlutWireSphere(double radius, int slices, int stacks) {
    if (!limitWireSphereCounts(slices, stacks)) return;
    const WireSphereTable& t = wireSphereTable;
    wireSphereTable.update(radius, slices, stacks);

    // Meridians from the north pole to the south pole, then the parallels between them.
    for (int i = 0; i < slices; ++i) {
        glBegin(GL_LINE_STRIP);
        for (int j = 0; j <= stacks; ++j) {
            glVertex3d(t.sliceCos[i] * t.stackCos[j], t.sliceSin[i] * t.stackCos[j], t.stackSin[j]);
        }
        glEnd();
    }
    for (int j = 1; j < stacks; ++j) {
        glBegin(GL_LINE_LOOP);
        for (int i = 0; i < slices; ++i) {
            glVertex3d(t.sliceCos[i] * t.stackCos[j], t.sliceSin[i] * t.stackCos[j], t.stackSin[j]);
        }
        glEnd();
    }
}
