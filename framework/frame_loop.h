#pragma once
// The per-frame machinery: GLUT display, reshape and idle callbacks, the frame drawing routine
// and movie playback.

#include "framework/jitter_accumulation.h"

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

// The last jittered frame: its averaged RGB image, rows top first, and its size.
const JitterAccumulator& lastJitteredFrame();

// For the dumps: the next display reads its picture (width x height RGB from the back buffer,
// before the panel is drawn and the buffers swapped) into buffer, rows top first.
void captureNextDisplay(unsigned char* buffer, int width, int height);
// While set, displays draw the scene only: no panel, no message boxes, no input routing.
void setInterfaceSuppressed(bool suppressed);
