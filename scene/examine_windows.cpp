#include "scene/examine_windows.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cstdio>

ExamineWindowSet examineWindows;
MeasurementSettings measurementSettings;
MeasurementRequests measurementRequests;

namespace {

constexpr int kNewWindowSize = 25;

int clampInt(int v, int lo, int hi) {
    return std::max(lo, std::min(v, hi));
}

}  // namespace

void ExamineWindowSet::reset(int winWidth, int winHeight) {
    for (ExamineWindow& w : windows)
        w.clearImages();
    windowCount = 1;
    current = 0;
    ExamineWindow& first = windows[0];
    first.x = 20;
    first.y = 20;
    first.width = std::max(1, std::min(kNewWindowSize, winWidth));
    first.height = std::max(1, std::min(kNewWindowSize, winHeight));
    first.dragMode = 0;
    show();
}

void ExamineWindowSet::show() {
    if (current < 0 || current >= windowCount) return;
    const ExamineWindow& w = windows[current];
    shownX = w.x;
    shownY = w.y;
    shownWidth = w.width;
    shownHeight = w.height;
}

bool ExamineWindowSet::add(int winWidth, int winHeight) {
    if (windowCount >= kMaxExamineWindows) {
        std::fprintf(stderr, "cannot add more window\n");
        return false;
    }
    ExamineWindow& w = windows[windowCount];
    w = ExamineWindow{};
    w.x = 50;
    w.y = 50;
    w.width = std::max(1, std::min(kNewWindowSize, winWidth));
    w.height = std::max(1, std::min(kNewWindowSize, winHeight));
    current = windowCount++;
    show();
    return true;
}

void ExamineWindowSet::removeCurrent() {
    if (windowCount <= 1) return;
    if (current >= 0 && current < windowCount) {
        const int last = windowCount - 1;
        if (current != last) windows[current] = std::move(windows[last]);
        windows[last] = ExamineWindow{};
        windowCount = last;
    }
    current = 0;
    show();
}

void ExamineWindowSet::store(int winWidth, int winHeight) {
    if (current < 0 || current >= windowCount) return;
    ExamineWindow& w = windows[current];
    const int maxW = std::max(1, winWidth), maxH = std::max(1, winHeight);
    w.x = clampInt(shownX, 0, maxW);
    w.y = clampInt(shownY, 0, maxH);
    w.width = clampInt(shownWidth, 1, maxW);
    w.height = clampInt(shownHeight, 1, maxH);
    show();
}

void resetMeasurementState(int winWidth, int winHeight) {
    examineWindows.reset(winWidth, winHeight);
    measurementSettings = MeasurementSettings{};
    measurementSettings.differencePath.set("Error/window");
    measurementRequests = MeasurementRequests{};
}

void drawExamineWindows(int viewportWidth, int viewportHeight) {
    const int w = std::max(1, viewportWidth), h = std::max(1, viewportHeight);
    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LINE_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_DEPTH_TEST);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluOrtho2D(0.0, w, h, 0.0);  // y from the top, as the windows are held
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    for (int i = 0; i < examineWindows.windowCount; ++i) {
        const ExamineWindow& e = examineWindows.windows[i];
        if (i == examineWindows.current) {
            glColor4f(0.9f, 0.9f, 0.4f, 1.0f);
        } else {
            glColor4f(0.7f, 0.7f, 0.7f, 1.0f);
        }
        glBegin(GL_LINE_LOOP);
        glVertex2f(e.x + 0.5f, e.y + 0.5f);
        glVertex2f(e.x + e.width - 0.5f, e.y + 0.5f);
        glVertex2f(e.x + e.width - 0.5f, e.y + e.height - 0.5f);
        glVertex2f(e.x + 0.5f, e.y + e.height - 0.5f);
        glEnd();
        char label[40];
        std::snprintf(label, sizeof label, "Examine window %d", i);
        glRasterPos2f(static_cast<float>(e.x), static_cast<float>(e.y) - 3.0f);
        glutBitmapString(GLUT_BITMAP_HELVETICA_10, reinterpret_cast<const unsigned char*>(label));
    }
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}
