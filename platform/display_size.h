#pragma once
// The X display: reaching it, and the size of its primary screen for full-screen windows.

namespace platform {

// Tries to connect to the display named by DISPLAY a few times, a short pause apart (a busy
// X server can refuse a single connection). False when DISPLAY is unset or stays unreachable;
// GLUT then reports the failure itself.
bool waitForDisplay(int attempts = 5);

// Width and height in pixels of the screen GLUT opened (call after glutInit). False, with
// both set to 0, when GLUT cannot tell.
bool displaySize(int& width, int& height);

}  // namespace platform
