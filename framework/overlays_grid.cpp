// Celestial sky grids on a sphere around the eye, and the wire sphere they are made of.

#include "framework/overlays.h"

#include <GL/freeglut.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr double kGridRadius = 1000.0;
constexpr int kSphereSlices[3] = {24, 72, 144};
constexpr int kSphereStacks[3] = {12, 36, 72};

// Label sizes at a field of view of 60 degrees; both grow with the field of view so that
// the grid looks the same at any zoom.
constexpr double kMainLabelSize = 0.5;
constexpr double kCrossingLabelSize = 0.1;

// The third frame's orientation: columns of a rotation, as OpenGL stores them.
constexpr double kThirdFrame[16] = {-0.735742574804,
                                    0.677261296414,
                                    0.0,
                                    0.0,  //
                                    -0.074553778365,
                                    -0.080991471307,
                                    0.9939225904,
                                    0.0,  //
                                    0.673145302109,
                                    0.731271165817,
                                    0.110081262225,
                                    0.0,  //
                                    0.0,
                                    0.0,
                                    0.0,
                                    1.0};

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

void drawGridLabel(const GridLabel& label, float size) {
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
        drawGridLabel(label, mainSize);

    if (detail) {
        float crossingSize = static_cast<float>(kCrossingLabelSize * fovy / 60.0);
        for (const GridLabel& label : skyGridCrossingLabels(kind, fovy)) {
            float alpha =
                label.major ? style.label[3] : static_cast<float>(style.label[3] * label.weight);
            glColor4f(style.label[0], style.label[1], style.label[2], alpha);
            drawGridLabel(label, crossingSize);
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
