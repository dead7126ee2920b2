#include "scene/scene_mouse.h"

#include <GL/freeglut.h>

#include <cmath>

#include "framework/framework_state.h"
#include "framework/scene_hooks.h"
#include "framework/view_control.h"
#include "framework/view_math.h"
#include "scene/control_panel.h"
#include "scene/draw_rules.h"
#include "scene/pick_state.h"
#include "scene/picking.h"
#include "scene/scene_settings.h"
#include "wim/wim_windows.h"

namespace {

int buttons = 0;  // bit (1 << button) while held
int lastX = 0, lastY = 0;

bool held(int button) {
    return (buttons & (1 << button)) != 0;
}

void loadAndRedisplay(const Mat4& m) {
    loadModelview(m);
    glutPostWindowRedisplay(mainWindow);
}

// The picked star in eye coordinates (drawing units, uncompressed).
Vec3 pickedStarInEye(const Mat4& m) {
    const Vec3 p = phcToDrawing(pickState.pickedStar.pos, currLogScale);
    const double* a = m.m.data();
    return {a[0] * p.x + a[4] * p.y + a[8] * p.z + a[12],
            a[1] * p.x + a[5] * p.y + a[9] * p.z + a[13],
            a[2] * p.x + a[6] * p.y + a[10] * p.z + a[14]};
}

// Shift + left: a roll about the line of sight to the picked star.
void rollAboutPickedStar(int dx) {
    const Mat4 m = currentModelview();
    const Vec3 axis = normalized(pickedStarInEye(m));
    if (length(axis) == 0.0) return;
    const double angle = dx * 0.5 * 0.3 * sensitivity;
    loadAndRedisplay(turnAboutEye(m, angle, axis));
}

// Shift + middle: the view orbits the picked star.
void orbitPickedStar(int dx, int dy) {
    const double drag = std::sqrt(static_cast<double>(dx) * dx + static_cast<double>(dy) * dy);
    if (drag == 0.0) return;
    const Mat4 m = currentModelview();
    const Vec3 c = pickedStarInEye(m);
    const Vec3 axis = normalized(Vec3{-static_cast<double>(dy), static_cast<double>(dx), 0.0});
    loadAndRedisplay(translation4(c) * rotation4(drag * 0.5, axis) * translation4(-c) * m);
}

}  // namespace

int sceneMouse(int button, int state, int x, int y) {
    const int bit = 1 << (button & 31);
    if (state == GLUT_DOWN) {
        buttons |= bit;
    } else {
        buttons &= ~bit;
    }
    lastX = x;
    lastY = y;
    if (button == GLUT_RIGHT_BUTTON && state == GLUT_DOWN && frameworkModifiers() == 0) {
        pickX = x;
        pickY = winHeight - y;
        pickPending = true;
        glutPostWindowRedisplay(mainWindow);
        return 0;
    }
    addHistoryView(currentView());
    return 0;
}

int sceneMotion(int x, int y) {
    const int dx = x - lastX, dy = y - lastY;
    lastX = x;
    lastY = y;
    const int modifiers = frameworkModifiers();
    if (held(GLUT_RIGHT_BUTTON) && !pickState.starPicked && modifiers == 0) {
        placeAnchor(x, winHeight - y);
        refreshPanel();
        return 1;
    }
    const bool movesView = held(GLUT_LEFT_BUTTON) || held(GLUT_MIDDLE_BUTTON);
    if (sceneSettings.lockView) return movesView ? 1 : 0;
    if (pickState.starPicked && (modifiers & GLUT_ACTIVE_SHIFT) != 0) {
        if (held(GLUT_LEFT_BUTTON) && !held(GLUT_MIDDLE_BUTTON)) {
            rollAboutPickedStar(dx);
            return 1;
        }
        if (held(GLUT_MIDDLE_BUTTON) && !held(GLUT_LEFT_BUTTON) &&
            drawingDistance(pickState.pickedStar.pos.w, currLogScale) < kPickedCubeDistanceLimit) {
            orbitPickedStar(dx, dy);
            return 1;
        }
    }
    addHistoryView(currentView());
    return 0;
}

void scenePassiveMotion(int x, int y) {
    // Hovering the registration overlay and the examine windows belongs to image
    // registration; the scene itself has nothing under a moving pointer.
    (void)x;
    (void)y;
}
