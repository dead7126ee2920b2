#pragma once
// Size of the primary display, for full-screen windows.

namespace platform {

// Width and height in pixels of the screen GLUT opened (call after glutInit). False, with
// both set to 0, when GLUT cannot tell.
bool displaySize(int& width, int& height);

}  // namespace platform
