#include "framework/view_control.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "framework/framework_state.h"
#include "framework/view_math.h"
#include "framework/window_scope.h"
#include "platform/clock.h"

namespace {

constexpr double kNear = 0.01;
constexpr double kFar = 10000.0;
constexpr double kPi = 3.14159265358979323846;

struct Spin {
    bool on = false;
    Vec3 axis;
    double speed = 0.0;  // degrees per second
    double lastTime = 0.0;
    TurnCentre centre = TurnCentre::SceneOrigin;
    bool limited = false;    // a turn through a given angle
    double remaining = 0.0;  // degrees still to turn
};
Spin spin;

}  // namespace

void applyView(const View& v) {
    WindowScope scope(mainWindow);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    const double top = std::tan(v.fovy / 2.0 * kPi / 180.0) * kNear;
    const double right = top * v.aspect;
    switch (shearQuadrant) {
        case 1:
            std::fprintf(stderr, "sheared view (zoom to left-top)\n");
            glFrustum(-right, 0.0, 0.0, top, kNear, kFar);
            break;
        case 2:
            std::fprintf(stderr, "sheared view (zoom to right-top)\n");
            glFrustum(0.0, right, 0.0, top, kNear, kFar);
            break;
        case 3:
            std::fprintf(stderr, "sheared view (zoom to left-bottom)\n");
            glFrustum(-right, 0.0, -top, 0.0, kNear, kFar);
            break;
        case 4:
            std::fprintf(stderr, "sheared view (zoom to right-bottom)\n");
            glFrustum(0.0, right, -top, 0.0, kNear, kFar);
            break;
        default:
            gluPerspective(v.fovy, v.aspect, kNear, kFar);
            break;
    }
    fovy = v.fovy;
    aspect = v.aspect;

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    const Phc p = phcNormalized(v.viewPos);  // a zero position keeps its own exponent
    currLogScale = p.w;
    const Vec3 eye{p.x, p.y, p.z};
    const Vec3 centre = eye + v.viewDir;
    gluLookAt(eye.x, eye.y, eye.z, centre.x, centre.y, centre.z, v.viewUp.x, v.viewUp.y,
              v.viewUp.z);
}

View currentView() {
    WindowScope scope(mainWindow);
    return viewFromModelview(currentModelview(), currLogScale, fovy, aspect);
}

void reapplyCurrentView() {
    applyView(currentView());
}

View defaultView() {
    View v;
    v.viewPos = Phc{0.0, 0.0, 3.0, 0.0};
    v.viewDir = {0.0, 0.0, -1.0};
    v.viewUp = {0.0, 1.0, 0.0};
    v.fovy = 60.0;
    v.aspect = static_cast<double>(winWidth) / std::max(winHeight, 1);
    aspectFollowsWindow = true;
    return v;
}

void resetView() {
    stopSpin();
    View v;
    if (movie && movie->evaluateFrame(currFrame, v) == 1) {
        applyView(v);
    } else {
        applyView(defaultView());
    }
    glutPostWindowRedisplay(mainWindow);
}

void sensitivityDown() {
    sensitivity = std::max(sensitivity * 0.5, 0.01);
}

void sensitivityUp() {
    sensitivity = std::min(sensitivity * 2.0, 5.0);
}

void logScaleUp() {
    currLogScale += 0.02;
    glutPostWindowRedisplay(mainWindow);
}

void logScaleDown() {
    currLogScale -= 0.02;
    glutPostWindowRedisplay(mainWindow);
}

void shearQuadrantNext() {
    shearQuadrant = (shearQuadrant + 1) % 5;
    if (movie) reapplyCurrentView();
    glutPostWindowRedisplay(mainWindow);
}

void shearQuadrantPrevious() {
    shearQuadrant = (shearQuadrant + 4) % 5;
    if (movie) reapplyCurrentView();
    glutPostWindowRedisplay(mainWindow);
}

void startSpin(const Vec3& axis, double degreesPerSecond, TurnCentre centre) {
    spin = Spin{};
    if (length(axis) == 0.0 || !(degreesPerSecond > 0.0)) return;
    spin.on = true;
    spin.axis = axis;
    spin.speed = degreesPerSecond;
    spin.lastTime = platform::wallClockSeconds();
    spin.centre = centre;
}

void startTurn(const Vec3& axis, double angleDegrees, double degreesPerSecond, TurnCentre centre) {
    if (!(std::fabs(angleDegrees) > 0.0)) return;
    // A negative angle is the same turn about the opposite axis.
    const Vec3 a = angleDegrees < 0.0 ? -axis : axis;
    startSpin(a, std::fabs(degreesPerSecond), centre);
    if (!spin.on) return;
    spin.limited = true;
    spin.remaining = std::fabs(angleDegrees);
}

void stopSpin() {
    spin.on = false;
}

bool spinActive() {
    return spin.on;
}

void continueSpin() {
    if (!spin.on) return;
    WindowScope scope(mainWindow);
    const double now = platform::wallClockSeconds();
    double angle = spin.speed * (now - spin.lastTime);
    if (spin.limited) {
        if (angle >= spin.remaining) {
            angle = spin.remaining;
            spin.on = false;
        }
        spin.remaining -= angle;
    }
    spin.lastTime = now;
    if (angle != 0.0) {
        const Mat4 m = currentModelview();
        loadModelview(spin.centre == TurnCentre::Eye ? turnAboutEye(m, angle, spin.axis)
                                                     : turnAboutOrigin(m, angle, spin.axis));
    }
    glutPostWindowRedisplay(mainWindow);
}

Mat4 currentModelview() {
    Mat4 m;
    glGetDoublev(GL_MODELVIEW_MATRIX, m.m.data());
    return m;
}

void loadModelview(const Mat4& m) {
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(m.m.data());
}
