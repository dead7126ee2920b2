#include "framework/gl_setup.h"

#include <GL/freeglut.h>

#include <cstdio>

#include "framework/framework_state.h"

namespace {

const GLfloat kLightPosition[] = {0.0f, 0.0f, 2.0f, 1.0f};
const GLfloat kLightAmbient[] = {0.1f, 0.1f, 0.1f, 1.0f};
const GLfloat kLightDiffuse[] = {1.0f, 1.0f, 1.0f, 1.0f};
const GLfloat kLightSpecular[] = {1.0f, 1.0f, 1.0f, 1.0f};

void setLightValues() {
    for (int i = 0; i < kNumLights; ++i) {
        const GLenum light = GL_LIGHT0 + i;
        glLightfv(light, GL_POSITION, kLightPosition);
        glLightfv(light, GL_AMBIENT, kLightAmbient);
        glLightfv(light, GL_DIFFUSE, kLightDiffuse);
        glLightfv(light, GL_SPECULAR, kLightSpecular);
    }
}

}  // namespace

void setUpGLState() {
    glEnable(GL_LIGHTING);
    glEnable(GL_LIGHT0);
    controlledLight = 0;
    lightOn.fill(false);
    lightOn[0] = true;
    for (int i = 1; i < kNumLights; ++i)
        glDisable(GL_LIGHT0 + i);

    const GLenum error = glGetError();
    if (error != GL_NO_ERROR && error != GL_INVALID_ENUM) std::fprintf(stderr, "OpenGL error.\n");

    glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, GL_FALSE);
    setLightValues();

    glEnable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
    antiAliasing = true;
    applyAntiAliasing(true);
    glEnable(GL_NORMALIZE);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    if (jitterSize > 1) glClearAccum(0.0f, 0.0f, 0.0f, 0.0f);
}

void setUpLights() {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    setLightValues();
    glPopMatrix();
}

void applyAntiAliasing(bool on) {
    if (on) {
        glEnable(GL_POINT_SMOOTH);
        glEnable(GL_LINE_SMOOTH);
    } else {
        glDisable(GL_POINT_SMOOTH);
        glDisable(GL_LINE_SMOOTH);
    }
}
