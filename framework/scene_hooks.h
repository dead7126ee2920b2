#pragma once
// How a scene plugs into the viewer framework: three entry points called directly, and hook
// slots the scene fills in initScene (the idle hook is filled by the scene's control panel).
//
// For every hook returning int, 1 means "handled": the framework then does nothing more for
// that event; any other value lets the framework's own handling run. Input reaches the hooks
// only when the control panel does not want it, always on the GLUT thread with the main
// window current.

#include <cstdio>

struct SceneEntryPoints {
    // Once during scene set-up, with the command-line words after the movie script.
    // -1 ends the process with exit code 1.
    int (*initScene)(int argc, char** argv) = nullptr;
    // Once per drawn pass; pickMode 0 draws, non-zero is a selection pass.
    void (*drawScene)(double currFrame, int totalNumFrame, int renderFlags, double currLogScale,
                      int pickMode) = nullptr;
    // On quit, after the movie is released, before the process exits.
    void (*quitScene)() = nullptr;
};

using CreatePanelHook = void (*)();
using KeyboardHook = int (*)(unsigned char key, int x, int y);  // key as typed
using SpecialHook = int (*)(int key, int x, int y);
// y counts from the bottom (winHeight - 1 - y); the framework has already updated its button
// mask and modifier state (frameworkModifiers()).
using MouseHook = int (*)(int button, int state, int x, int y);
using MotionHook = int (*)(int x, int y);          // y from the bottom; only real moves
using PassiveMotionHook = void (*)(int x, int y);  // raw GLUT coordinates
using IdleHook = int (*)();
using HelpHook = int (*)(FILE* out);  // out = the standard error stream

// The slots; all start null.
extern CreatePanelHook createPanelHook;
extern KeyboardHook keyboardHook;
extern SpecialHook specialHook;
extern MouseHook mouseHook;
extern MotionHook motionHook;
extern PassiveMotionHook passiveMotionHook;
extern IdleHook idleHook;
extern HelpHook helpHook;

// GLUT modifier bits (GLUT_ACTIVE_SHIFT, _CTRL, _ALT) of the event being handled. Hooks must
// use this instead of glutGetModifiers(): input is routed after GLUT's own callback returned.
int frameworkModifiers();

// The program: parses the command line, loads the movie script, opens the main window, calls
// the scene's initScene and runs the GLUT main loop. Returns only if the loop ever does.
int runViewer(int argc, char** argv, const SceneEntryPoints& scene);
