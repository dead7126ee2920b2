#include <GL/freeglut.h>

#include "framework/framework_state.h"
#include "framework/input_handlers.h"
#include "framework/scene_hooks.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "framework/view_math.h"
#include "framework/window_scope.h"

namespace {

int buttonMask = 0;  // bit (1 << button) while that button is down
int modifiers = 0;   // at the last button event
int lastX = 0, lastY = 0;
int previousX = -1, previousY = -1;  // -1: no drag in progress
double lastMotionTime = 0.0;

constexpr double kFlickWindow = 0.2;  // seconds between the last drag step and the release

}  // namespace

void mouseInput(int button, int state, int x, int y, int eventModifiers, double time) {
    WindowScope scope(mainWindow);
    y = winHeight - 1 - y;
    const int bit = 1 << (button & 31);
    if (state == GLUT_DOWN) {
        buttonMask |= bit;
    } else {
        buttonMask &= ~bit;
    }
    modifiers = eventModifiers;
    setEventModifiers(eventModifiers);
    if (mouseHook != nullptr && mouseHook(button, state, x, y) == 1) return;

    if (state == GLUT_DOWN) {
        stopSpin();
        previousX = -1;
    } else if (button == GLUT_LEFT_BUTTON && modifiers == 0 && buttonMask == 0 &&
               time - lastMotionTime < kFlickWindow && playCount == 0 && previousX != -1) {
        const Flick flick =
            flickFromDrag(previousX, previousY, x, y, sensitivity, time - lastMotionTime);
        if (flick.spin) startSpin(flick.axis, flick.speed, TurnCentre::SceneOrigin);
    }
    lastX = x;
    lastY = y;
}

void motionInput(int x, int y, double time) {
    WindowScope scope(mainWindow);
    y = winHeight - 1 - y;
    if (x == lastX && y == lastY) return;
    lastMotionTime = time;
    if (motionHook != nullptr && motionHook(x, y) == 1) return;

    DragInput in;
    in.buttonMask = buttonMask;
    in.modifiers = modifiers;
    in.dx = (x - lastX) * sensitivity;
    in.dy = (y - lastY) * sensitivity;
    in.fovy = fovy;
    in.winHeight = winHeight;
    in.movieLoaded = haveMovieFrames();
    previousX = lastX;
    previousY = lastY;
    lastX = x;
    lastY = y;

    Mat4 m = currentModelview();
    double newFovy = fovy;
    switch (dragStep(in, m, newFovy)) {
        case DragEffect::ModelviewChanged:
            loadModelview(m);
            break;
        case DragEffect::NextFrame:
            frameworkSpecial(GLUT_KEY_RIGHT, x, y);
            break;
        case DragEffect::PreviousFrame:
            frameworkSpecial(GLUT_KEY_LEFT, x, y);
            break;
        case DragEffect::FieldOfViewChanged:
            fovy = newFovy;
            reapplyCurrentView();
            break;
        case DragEffect::None:
            break;
    }
    glutPostWindowRedisplay(mainWindow);
}

void passiveMotionInput(int x, int y) {
    WindowScope scope(mainWindow);
    if (passiveMotionHook != nullptr) passiveMotionHook(x, y);
}
