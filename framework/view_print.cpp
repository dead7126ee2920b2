#include "framework/view_print.h"

#include <GL/freeglut.h>

#include <cstdio>

#include "framework/framework_state.h"
#include "framework/input_handlers.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"

namespace {

constexpr int kViewDecimals = 5;

std::string number(double value) {
    char format[16];
    std::snprintf(format, sizeof format, "%%2.%df", kViewDecimals);
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string matrixLines(const double m[16]) {
    std::string s;
    for (int line = 0; line < 4; ++line) {
        char text[160];
        std::snprintf(text, sizeof text, "%7.3f %7.3f %7.3f %7.3f\n", m[line * 4], m[line * 4 + 1],
                      m[line * 4 + 2], m[line * 4 + 3]);
        s += text;
    }
    return s;
}

}  // namespace

std::string currentViewText(const View& v, const double modelview[16], const double projection[16],
                            const int viewport[4]) {
    std::string s = "\nCurrent View\n";
    s += "viewPos   = " + number(v.viewPos.x) + " " + number(v.viewPos.y) + " " +
         number(v.viewPos.z) + " " + number(v.viewPos.w) + "\n";
    s += "viewDir   = " + number(v.viewDir.x) + " " + number(v.viewDir.y) + " " +
         number(v.viewDir.z) + "\n";
    s += "viewUp    = " + number(v.viewUp.x) + " " + number(v.viewUp.y) + " " + number(v.viewUp.z) +
         "\n";
    s += "fovy      = " + number(v.fovy) + "\n";
    s += "aspect    = " + number(v.aspect) + "\n";
    s += "Modelview:\n" + matrixLines(modelview);
    s += "Projection:\n" + matrixLines(projection);
    char text[96];
    std::snprintf(text, sizeof text, "Viewport: %d %d %d %d\n", viewport[0], viewport[1],
                  viewport[2], viewport[3]);
    return s + text;
}

void printCurrentView(FILE* out) {
    WindowScope scope(mainWindow);
    double modelview[16], projection[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    const std::string text = currentViewText(currentView(), modelview, projection, viewport);
    std::fputs(text.c_str(), out);
    std::fflush(out);
}
