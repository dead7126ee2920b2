// Stroke text and boxes for the overlays and the scene: billboard text that faces the viewer,
// text and boxes placed in window fractions.

#include "framework/overlays.h"

#include <GL/freeglut.h>

#include <string>

namespace {

double monoWidth(const std::string& text) {
    return strokeTextWidth(GLUT_STROKE_MONO_ROMAN, text);
}

double romanWidth(const std::string& text) {
    return strokeTextWidth(GLUT_STROKE_ROMAN, text);
}

// Projection and modelview both pushed and set for drawing in window fractions; popped
// again when the scope ends.
class WindowFractionFrame {
  public:
    explicit WindowFractionFrame(bool yFromTop) {
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        if (yFromTop) {
            gluOrtho2D(0.0, 1.0, 1.0, 0.0);
        } else {
            glOrtho(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
        }
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
    }
    ~WindowFractionFrame() {
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
    }
    WindowFractionFrame(const WindowFractionFrame&) = delete;
    WindowFractionFrame& operator=(const WindowFractionFrame&) = delete;
};

}  // namespace

void drawBillboardText(const char* text, float size, int alignment, float offset) {
    if (text == nullptr) return;
    glPushMatrix();
    double start = billboardTextStart(text, alignment, offset, monoWidth);
    double modelview[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    std::array<double, 16> facing = billboardMatrix(modelview, size, start);
    glLoadMatrixd(facing.data());
    glDepthFunc(GL_LEQUAL);
    for (const char* c = text; *c != '\0'; ++c) {
        glutStrokeCharacter(GLUT_STROKE_MONO_ROMAN, static_cast<unsigned char>(*c));
    }
    glDepthFunc(GL_LESS);
    glPopMatrix();
}

void drawScreenText(const char* text, float x, float y, float size, int alignment, int dashCount) {
    if (text == nullptr) return;
    double offset = screenTextOffset(text, size, alignment, dashCount, romanWidth);
    WindowFractionFrame frame(false);
    glTranslated(offset * size + x, 1.0 - y, 0.0);
    glScalef(size, size, size);
    glDepthFunc(GL_ALWAYS);
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == ' ') {
            glTranslated(kScreenBlankPerSize * size, 0.0, 0.0);
        } else {
            glutStrokeCharacter(GLUT_STROKE_ROMAN, static_cast<unsigned char>(*c));
        }
    }
    glDepthFunc(GL_LESS);
}

void drawScreenBox(float x, float y, float width, float height, const float fill[4], bool outline,
                   const float outlineColor[4]) {
    WindowFractionFrame frame(true);
    glDisable(GL_DEPTH_TEST);
    if (fill != nullptr) {
        glColor4fv(fill);
        glRectf(x, y, x + width, y + height);
    }
    if (outline && outlineColor != nullptr) {
        glColor4fv(outlineColor);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
        glRectf(x, y, x + width, y + height);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    }
    glEnable(GL_DEPTH_TEST);
}
