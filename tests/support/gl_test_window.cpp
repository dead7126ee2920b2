#include "tests/support/gl_test_window.h"

#include <GL/freeglut.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace testsupport {

namespace {
int window = 0;
}

bool openTestWindow(int width, int height) {
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || *display == '\0') return false;
    if (window == 0) {
        int argc = 1;
        char name[] = "skyrama-test";
        char* argv[] = {name, nullptr};
        glutInit(&argc, argv);
        glutInitDisplayMode(GLUT_DOUBLE | GLUT_RGBA | GLUT_DEPTH | GLUT_ACCUM);
        glutInitWindowSize(width, height);
        window = glutCreateWindow("skyrama test");
        glutDisplayFunc([] {});
    } else {
        glutSetWindow(window);
        glutReshapeWindow(width, height);
    }
    // Let the window appear and take its size before anything is drawn.
    for (int i = 0; i < 5; ++i)
        glutMainLoopEvent();
    glViewport(0, 0, width, height);
    return true;
}

std::vector<unsigned char> readBackRGB(int width, int height) {
    std::vector<unsigned char> rgb(static_cast<size_t>(width) * height * 3);
    glFinish();
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    return rgb;
}

Rgb pixelAt(const std::vector<unsigned char>& rgb, int width, int x, int y) {
    size_t i = (static_cast<size_t>(y) * width + x) * 3;
    return {rgb[i], rgb[i + 1], rgb[i + 2]};
}

namespace {

void identityModelview() {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

}  // namespace

void perspectiveCamera(double fovy, double aspect, double zNear, double zFar) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(fovy, aspect, zNear, zFar);
    identityModelview();
}

void orthoCamera(double left, double right, double bottom, double top, double zNear, double zFar) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(left, right, bottom, top, zNear, zFar);
    identityModelview();
}

void clearTo(float r, float g, float b, float a) {
    glClearColor(r, g, b, a);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void pumpEvents(double seconds, int window) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
        glutPostWindowRedisplay(window);
        glutMainLoopEvent();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

}  // namespace testsupport
