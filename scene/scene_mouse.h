#pragma once
// The star scene's mouse: the right button picks (or drags the anchor over the empty sky),
// Shift with the left or middle button turns the view about the picked star, and a locked
// view takes no drags. y is counted from the bottom of the window (the framework flips it).

int sceneMouse(int button, int state, int x, int y);
int sceneMotion(int x, int y);
void scenePassiveMotion(int x, int y);
