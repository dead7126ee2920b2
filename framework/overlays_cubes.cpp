// Axes and power cubes: the overlays that show where the origin is and what scale the
// viewer is at.

#include "framework/overlays.h"

#include "common_package/math/src/phc.h"

#include <GL/freeglut.h>

#include <cmath>
#include <cstdio>
#include <string>

namespace {

float labelSizeSetting = 1.0f;

// Size of an axis label per unit of label size, and of a power label on its cube.
constexpr float kAxisLabelScale = 0.001f;
constexpr float kPowerLabelSize = 0.0015f;

double romanWidth(const std::string& text) {
    return strokeTextWidth(GLUT_STROKE_ROMAN, text);
}

void drawAxisLabel(const std::string& text, float x, float y, float z, float size) {
    glPushMatrix();
    glTranslatef(x, y, z);
    drawBillboardText(text.c_str(), size, 2, 0.0f);
    glPopMatrix();
}

// Cubes of 10^n units where one unit is 10^unitLog10 metres.
void drawCubes(double currLogScale, double unitLog10, const char* unit) {
    glLineWidth(2.0f);
    double modelview[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    double e = eyeDistanceExponent(modelview, currLogScale) - unitLog10;
    for (const PowerCubeFade& cube : powerCubeFades(e)) {
        glPushMatrix();
        double k = std::pow(10.0, cube.n - currLogScale + unitLog10);
        glScaled(k, k, k);
        drawPowerCube(cube.n, static_cast<float>(labelSizeSetting * cube.fade), unit);
        glPopMatrix();
    }
    glLineWidth(1.0f);
}

}  // namespace

float getLabelSize() {
    return labelSizeSetting;
}

int setLabelSize(float size) {
    if (!std::isfinite(size) || size < 0.0f) {
        std::fprintf(stderr, "Err (setLabelSize) : inSize should not be negative.\n\n");
        return -1;
    }
    labelSizeSetting = size;
    return 1;
}

double strokeTextWidth(void* font, const std::string& text) {
    double width = 0.0;
    for (unsigned char c : text)
        width += glutStrokeWidthf(font, c);
    return width;
}

void drawAxes(bool labels, const char* prefix, float labelSize) {
    glLineWidth(3.0f);
    glBegin(GL_LINES);
    glColor4f(0.8f, 0.2f, 0.2f, 0.8f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3f(1.0f, 0.0f, 0.0f);
    glColor4f(0.0f, 0.8f, 0.0f, 0.8f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3f(0.0f, 1.0f, 0.0f);
    glColor4f(0.3f, 0.3f, 1.0f, 0.8f);
    glVertex3f(0.0f, 0.0f, 0.0f);
    glVertex3f(0.0f, 0.0f, 1.0f);
    glEnd();
    glLineWidth(1.0f);
    if (!labels) return;

    std::string head = prefix != nullptr ? prefix : "";
    float size = labelSize * kAxisLabelScale;
    glColor3f(0.8f, 0.2f, 0.2f);
    drawAxisLabel(head + "x", 1.1f, 0.0f, 0.0f, size);
    glColor4f(0.0f, 0.8f, 0.0f, 0.8f);
    drawAxisLabel(head + "y", 0.0f, 1.1f, 0.0f, size);
    glColor4f(0.5f, 0.5f, 1.0f, 0.8f);
    drawAxisLabel(head + "z", 0.0f, 0.0f, 1.1f, size);
}

void drawMeterCubes(double currLogScale) {
    drawCubes(currLogScale, 0.0, "m");
}

void drawParsecCubes(double currLogScale) {
    drawCubes(currLogScale, kParsecLog10, "parsec");
}

void drawPowerCube(int n, float fade, const char* unit) {
    const float s = fade;
    glPushMatrix();
    glColor4f(0.8f * s, 0.8f * s, 0.0f, 0.8f * s);
    glDepthFunc(GL_LEQUAL);
    for (float z : {0.5f, -0.5f}) {
        glBegin(GL_LINE_LOOP);
        glVertex3f(-0.5f, -0.5f, z);
        glVertex3f(0.5f, -0.5f, z);
        glVertex3f(0.5f, 0.5f, z);
        glVertex3f(-0.5f, 0.5f, z);
        glEnd();
    }
    glBegin(GL_LINES);
    for (float x : {-0.5f, 0.5f}) {
        for (float y : {-0.5f, 0.5f}) {
            glVertex3f(x, y, 0.5f);
            glVertex3f(x, y, -0.5f);
        }
    }
    glEnd();

    // The label lies along an edge of the cube's lower face, standing upright.
    glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    glTranslatef(0.0f, -0.65f, -0.7f);
    glRotatef(90.0f, 1.0f, 0.0f, 0.0f);
    glColor4f(0.8f * s, 0.8f * s, 0.8f * s, 0.8f * s);
    drawPowerLabel(n, kPowerLabelSize, unit);
    glPopMatrix();
}

void drawPowerLabel(int n, float size, const char* unit) {
    glPushMatrix();
    glScalef(size, size, size);
    for (const StrokePiece& piece : powerLabelLayout(n, unit, romanWidth)) {
        glPushMatrix();
        glTranslated(piece.x, piece.y, 0.0);
        glScaled(piece.scale, piece.scale, piece.scale);
        for (unsigned char c : piece.text)
            glutStrokeCharacter(GLUT_STROKE_ROMAN, c);
        glPopMatrix();
    }
    glPopMatrix();
    glDepthFunc(GL_LESS);
}
