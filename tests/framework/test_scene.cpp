#include "tests/framework/test_scene.h"

#include <GL/freeglut.h>

#include <cmath>

TestRgb backgroundFor(double frame) {
    const int halfFrames = static_cast<int>(std::floor(frame * 2.0 + 0.5));
    return {40, 60 + 30 * (((halfFrames % 6) + 6) % 6), 160};
}

void drawTestPattern(double frame) {
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LIGHTING_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glShadeModel(GL_SMOOTH);

    const TestRgb bg = backgroundFor(frame);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glColor3ub(static_cast<GLubyte>(bg.r), static_cast<GLubyte>(bg.g), static_cast<GLubyte>(bg.b));
    glBegin(GL_QUADS);
    glVertex2d(-1.0, -1.0);
    glVertex2d(1.0, -1.0);
    glVertex2d(1.0, 1.0);
    glVertex2d(-1.0, 1.0);
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);

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
