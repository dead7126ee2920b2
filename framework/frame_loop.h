#pragma once
// The per-frame machinery: GLUT display, reshape and idle callbacks, the frame drawing routine
// and movie playback.

#include <vector>

void displayCallback();
void reshapeCallback(int width, int height);
void idleCallback();

// One pass of the current frame into the current buffer with the current matrices: drawScene,
// then (pickMode 0) the framework's overlays. Without a selection pass nothing is swapped.
void drawFrame(int pickMode);

// Playback and frame steps (they stop any spin). Without a movie they do nothing.
void playOnce();        // toggle playCount 0 <-> 1, real-time clock restarted
void playLoop();        // toggle playCount 0 <-> kPlayForever
void goToFrame(int k);  // 0 <= k < totalNumFrame
// The movie evaluated at currFrame, applied, redisplay posted.
void showCurrentFrame();

// The averaged RGB image of the last jittered frame, rows top first (winWidth x winHeight).
const std::vector<unsigned char>& jitteredImage();
