#include "platform/display_size.h"

#include <GL/freeglut.h>

namespace platform {

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
