#pragma once
// The star scene's keys: its keyboard and special-key hooks and its help pages.

#include <cstdio>

// The framework's keyboard hook: 1 for a key the scene handled, 0 to let the framework
// handle it.
int sceneKeyboard(unsigned char key, int x, int y);
// The special-key hook: consumes Up and Down while the view is locked; otherwise lets the
// framework handle every key (after F1 .. F10 and Insert have done the scene's part).
int sceneSpecial(int key, int x, int y);
// The help hook: shows the help pages in a box of their own; always 1.
int sceneHelp(std::FILE* out);

// Star size changes by "+" and "-": times or divided by 1.05, within 0.01 .. 15.
float starSizeUp(float size);
float starSizeDown(float size);
