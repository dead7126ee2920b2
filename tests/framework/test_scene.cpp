#include "tests/framework/test_scene.h"

#include <GL/freeglut.h>

#include <cmath>

TestRgb backgroundFor(double frame) {
    const int halfFrames = static_cast<int>(std::floor(frame * 2.0 + 0.5));
    return {40, 60 + 30 * (((halfFrames % 6) + 6) % 6), 160};
}

void drawTestPattern(double frame) {
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LIGHTING_BIT | GL_COLOR_BUFFER_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glShadeModel(GL_SMOOTH);

    const TestRgb bg = backgroundFor(frame);  // fills the viewport whatever the matrices
    glClearColor(bg.r / 255.0f, bg.g / 255.0f, bg.b / 255.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glBegin(GL_TRIANGLES);
    glColor3ub(250, 30, 20);
    glVertex3d(-0.27, -0.19, 0.0);
    glColor3ub(20, 240, 40);
    glVertex3d(0.26, -0.13, 0.0);
    glColor3ub(230, 230, 250);
    glVertex3d(0.03, 0.25, 0.0);
    glEnd();
    glPopAttrib();
}
