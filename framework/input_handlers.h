#pragma once
// The framework's own key and mouse handling, after the scene's hooks have declined.

#include <cstdio>

// The framework's keyboard table for one key (as typed) and its special-key table; the
// scene's panel uses them for "previous/next frame" and the like. No hook is consulted.
void frameworkKeyboard(unsigned char key, int x, int y);
void frameworkSpecial(int key, int x, int y);

// "\nCurrent View\n", the view, the modelview and projection matrices and the viewport.
void printCurrentView(FILE* out);

// The full GLUT-level handlers: main window made current, hook offered first, then the
// framework's handling. y is GLUT's (from the top); modifiers are GLUT_ACTIVE_* bits and time
// is the wall clock when the event arrived.
void keyboardInput(unsigned char key, int x, int y, int modifiers);
void specialInput(int key, int x, int y, int modifiers);
void mouseInput(int button, int state, int x, int y, int modifiers, double time);
void motionInput(int x, int y, double time);
void passiveMotionInput(int x, int y);
