#include "framework/frame_overlay.h"

#include <GL/freeglut.h>

#include <cstdio>

#include "framework/framework_state.h"
#include "framework/playback.h"

std::string frameInfoText(double frame, int totalNumFrame, bool doubleRateOn, bool onKey) {
    char text[96];
    if (doubleRateOn) {
        std::snprintf(text, sizeof text, "Frame %.1f/%d", frame, 2 * (totalNumFrame - 1));
    } else {
        std::snprintf(text, sizeof text, "Frame %d/%d", static_cast<int>(frame), totalNumFrame - 1);
    }
    std::string s(text);
    if (onKey) s += " (*)";
    return s;
}

void drawFrameInfo() {
    const int total = totalFrames();
    const bool onKey = movie && onKeyFrame(*movie, currFrame);
    const std::string text = frameInfoText(currFrame, total, doubleRate, onKey);

    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluOrtho2D(-1.0, 1.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glTranslated(-0.93, -0.93, 0.0);
    glScaled(0.00085, 0.00085, 0.00085);
    glColor4d(1.0, 0.4, 1.0, 1.0);
    for (char c : text)
        glutStrokeCharacter(GLUT_STROKE_ROMAN, static_cast<unsigned char>(c));
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}
