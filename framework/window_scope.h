#pragma once
// Makes a GLUT window current for a scope and puts the previous one back at its end.

#include <GL/freeglut.h>

class WindowScope {
  public:
    explicit WindowScope(int window) : previous_(glutGetWindow()) {
        if (window != 0 && previous_ != window) glutSetWindow(window);
    }
    ~WindowScope() {
        if (previous_ != 0 && glutGetWindow() != previous_) glutSetWindow(previous_);
    }
    WindowScope(const WindowScope&) = delete;
    WindowScope& operator=(const WindowScope&) = delete;

  private:
    int previous_;
};
