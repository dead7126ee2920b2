#pragma once
// The framework's numbered actions, shared by its keys and the scene's control panel.

enum FrameworkAction : int {
    kActionHelp = 11,  // helpHook(stderr), else the framework's own key list
    kActionResetView = 12,
    kActionFrameRate = 13,     // toggle measureFrameRate
    kActionAbout = 14,         // About box with bannerText
    kActionQuit = 15,          // "Really Quit?", exit code 0 on Yes
    kActionRenderWordA = 101,  // 2 <-> 1
    kActionRenderWordB = 102,  // 16 <-> 8
    kActionRenderWordC = 103,  // 4 <-> 0
    kActionAntiAliasing = 104,
    kActionAxes = 105,
    kActionMeterCubes = 106,
    kActionParsecCubes = 107,
    kActionPlayOnce = 300,      // toggle playCount 0 <-> 1
    kActionPlayLoop = 301,      // toggle playCount 0 <-> kPlayForever
    kActionScreenDump = 303,    // "screen.%04d.pnm"
    kActionFrameInfo = 304,     // toggle the frame-number overlay
    kActionReloadScript = 305,  // reload scriptFileName
    kActionGoToFrame = 3000,    // 3000 + k: go to frame k
};

// Runs one action; numbers without a meaning are ignored, and the playback and frame actions
// (300 and above) do nothing without a movie.
void frameworkAction(int action);

// Asks "Really Quit?" (modal; No is the default). On Yes: releases the movie, calls the
// scene's quitScene and exits with exitCode. Returns at once; the answer comes later.
void quitWithConfirmation(int exitCode);
// Releases the movie, calls quitScene and exits with exitCode, without asking.
[[noreturn]] void quitViewer(int exitCode);
// Ends the process with exitCode. The main window's close handler is detached first: GLUT
// destroys its windows at exit and would otherwise run it (and its exit code would win).
[[noreturn]] void endProcess(int exitCode);

// Action 305: reads scriptFileName into a new movie record; keeps the old one on failure.
void reloadScript();
// Action 11: the scene's help hook, or the framework's own key list on standard error.
void showHelp();
