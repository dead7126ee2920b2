#pragma once
// One GLUT window per test process for drawing tests on Mesa's software renderer.

#include <vector>

#if defined(__SANITIZE_ADDRESS__) && __has_include(<sanitizer/lsan_interface.h>)
#include <sanitizer/lsan_interface.h>
#endif

namespace testsupport {

// Opens (once) a double-buffered RGBA window with depth and accumulation buffers and makes
// it current; later calls resize it. Returns false when there is no display to open it on.
bool openTestWindow(int width, int height);

// The RGB bytes of the back buffer (what was just drawn), bottom row first as GL reads them.
std::vector<unsigned char> readBackRGB(int width, int height);

// One pixel of a read-back buffer, x from the left, y from the bottom.
struct Rgb {
    int r, g, b;
};
Rgb pixelAt(const std::vector<unsigned char>& rgb, int width, int x, int y);

// Cameras for drawing tests: the projection given (gluPerspective, glOrtho) and an identity
// model-view; the matrix mode is left at GL_MODELVIEW.
void perspectiveCamera(double fovy, double aspect, double zNear, double zFar);
void orthoCamera(double left, double right, double bottom, double top, double zNear, double zFar);
// The colour and depth buffers cleared, to this colour.
void clearTo(float r, float g, float b, float a);

// Lets GLUT deliver events and draw frames for a while, asking each time round for a
// redisplay of the window (a GLUT window id).
void pumpEvents(double seconds, int window);

// While one of these lives, allocations are left out of the leak check: the GL driver's own
// outlive its module, so the leak checker cannot name them.
struct [[maybe_unused]] DriverAllocationsUnchecked {
#if defined(__SANITIZE_ADDRESS__) && __has_include(<sanitizer/lsan_interface.h>)
    DriverAllocationsUnchecked() {
        __lsan_disable();
    }
    ~DriverAllocationsUnchecked() {
        __lsan_enable();
    }
#endif
};

}  // namespace testsupport

// Skips the current test when no X display is available.
#define SKYRAMA_REQUIRE_WINDOW(w, h)                                              \
    do {                                                                          \
        if (!testsupport::openTestWindow((w), (h))) GTEST_SKIP() << "no display"; \
    } while (0)
