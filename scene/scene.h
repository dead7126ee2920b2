#pragma once
// The star scene: what the framework runs (framework/main.cpp hands it to runViewer).

#include "framework/scene_hooks.h"

const SceneEntryPoints& starScene();

// Start-up from the data tree with the star dataset files named on the command line: 0 when
// the scene can run, -1 when the program cannot go on.
int initScene(int argc, char** argv);

// One frame of the scene (pickMode 0), or the selection pass of a right click.
void drawScene(double currFrame, int totalNumFrame, int renderFlags, double currLogScale,
               int pickMode);

// Releases everything the scene holds; safe to call more than once.
void quitScene();
