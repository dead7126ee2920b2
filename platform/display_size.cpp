#include "platform/display_size.h"

#include <GL/freeglut.h>
#include <X11/Xlib.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace platform {

bool waitForDisplay(int attempts) {
    const char* name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') return false;
    for (int i = 0; i < attempts; ++i) {
        if (Display* display = XOpenDisplay(name)) {
            XCloseDisplay(display);
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return false;
}

bool displaySize(int& width, int& height) {
    width = glutGet(GLUT_SCREEN_WIDTH);
    height = glutGet(GLUT_SCREEN_HEIGHT);
    if (width <= 0 || height <= 0) {
        width = height = 0;
        return false;
    }
    return true;
}

}  // namespace platform
