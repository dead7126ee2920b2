// The program's start-up: command line, movie script, main window, scene, main loop.

#include <GL/freeglut.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "framework/actions.h"
#include "framework/command_line.h"
#include "framework/frame_loop.h"
#include "framework/framework_state.h"
#include "framework/gl_setup.h"
#include "framework/input_handlers.h"
#include "framework/scene_hooks.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "platform/clock.h"
#include "platform/display_size.h"
#include "platform/panel_host.h"

namespace {

const char kBanner[] =
    "skyrama 1.0 - a 3-D viewer of the stars around the Sun\n"
    "by the skyrama developers\n"
    "- November 2025";

[[noreturn]] void failWithUsage(const std::string& message, const char* program) {
    std::fputs(message.c_str(), stderr);
    std::fputs(usageText(program).c_str(), stderr);
    std::exit(1);
}

void routeInput(const platform::InputEvent& e) {
    switch (e.kind) {
        case platform::InputKind::Keyboard:
            keyboardInput(static_cast<unsigned char>(e.key), e.x, e.y, e.modifiers);
            break;
        case platform::InputKind::Special:
            specialInput(e.key, e.x, e.y, e.modifiers);
            break;
        case platform::InputKind::Mouse:
            mouseInput(e.button, e.state, e.x, e.y, e.modifiers, e.time);
            break;
        case platform::InputKind::Motion:
            motionInput(e.x, e.y, e.time);
            break;
        case platform::InputKind::PassiveMotion:
            passiveMotionInput(e.x, e.y);
            break;
    }
}

// Closing the main window releases the movie and runs quitScene; GLUT then ends the process
// (a scene may install its own close handler in initScene).
void onMainWindowClose() {
    movie.reset();
    const SceneEntryPoints& scene = activeScene();
    if (scene.quitScene) scene.quitScene();
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_EXIT);
}

void resetPlayState() {
    playCount = 0;
    playEveryFrame = false;
    lastPlayTime = kNotStarted;
    currLogScale = 0.0;
    measureFrameRate = false;
    sensitivity = 1.0;
    showFrameInfo = false;
    stopSpin();
    createPanelHook = nullptr;
    keyboardHook = nullptr;
    specialHook = nullptr;
    mouseHook = nullptr;
    motionHook = nullptr;
    passiveMotionHook = nullptr;
    idleHook = nullptr;
    helpHook = nullptr;
    frameworkMenu = true;
    panelEmbedded = false;
}

void setUpScene(int argc, char** argv, int firstSceneArg) {
    setUpGLState();

    View v;
    if (movie->evaluateFrame(0.0, v) == 1) {
        currFrame = 0.0;
    } else {
        v = defaultView();
        currFrame = -1.0;
    }
    playEveryFrame = false;
    lastPlayTime = kNotStarted;
    applyView(v);

    showFrameInfo = false;
    axesShown = false;
    meterCubesShown = false;
    parsecCubesShown = false;
    renderFlags = {2, 16, 4};

    const SceneEntryPoints& scene = activeScene();
    if (scene.initScene && scene.initScene(argc - firstSceneArg, argv + firstSceneArg) == -1) {
        endProcess(1);
    }
    setUpLights();
}

}  // namespace

int runViewer(int argc, char** argv, const SceneEntryPoints& scene) {
    setActiveScene(scene);
    scriptFileName.clear();
    const char* program = argc > 0 ? argv[0] : "skyrama";

    CommandLine commandLine;
    std::string error;
    if (parseCommandLine(argc, argv, commandLine, error) != 0) failWithUsage(error, program);
    jitterSize = commandLine.jitterSize;
    jitterTable = jitterSize > 1 ? jitterTableFor(jitterSize) : nullptr;
    dumpMode = commandLine.dumpMode;
    firstDisplayArmed = false;
    setMovieFileHead(commandLine.movieFileHead);
    frameNumOffset = commandLine.frameNumOffset;
    frameSkip = commandLine.frameSkip;
    doubleRate = commandLine.doubleRate;
    fullscreen = commandLine.fullscreen;
    gzipFrames = commandLine.gzipFrames;
    setScriptFileName(commandLine.scriptFileName);

    setWindowTitle(titleFor(argc, argv, scriptFileName));
    setBannerText(kBanner);

    // The script is read before any window exists: every error so far needs no display.
    movie = std::make_unique<MovieRecord>();
    if (movie->loadRecord(scriptFileName.c_str(), 1) == -1) {
        std::fprintf(stderr, "Err : in movie script [%s]!\n\n", scriptFileName.c_str());
        std::exit(1);
    }
    movie->getResolution(winWidth, winHeight);
    resetPlayState();
    perfFrequency = platform::frameClockFrequency();
    if (perfFrequency <= 0) perfFrequency = 1000;

    // GLUT sees only the program name: every word of our command line is ours or the scene's.
    platform::waitForDisplay();
    int glutArgc = 1;
    char* glutArgv[] = {const_cast<char*>(program), nullptr};
    glutInit(&glutArgc, glutArgv);
    platform::displaySize(screenWidth, screenHeight);

    unsigned int mode = GLUT_DOUBLE | GLUT_DEPTH | GLUT_RGBA;
    if (jitterSize > 1) mode |= GLUT_ACCUM;
    glutInitDisplayMode(mode);
    if (fullscreen) {
        winWidth = screenWidth - 1;
        winHeight = screenHeight - 1;
    } else {
        glutInitWindowSize(winWidth, winHeight);
    }
    mainWindow = glutCreateWindow("");
    if (fullscreen) panelEmbedded = false;
    glutDisplayFunc(displayCallback);
    glutCloseFunc(onMainWindowClose);

    setUpScene(argc, argv, commandLine.firstSceneArg);

    if (!(glutDeviceGet(GLUT_HAS_MOUSE) != 0 && glutDeviceGet(GLUT_NUM_MOUSE_BUTTONS) == 3)) {
        std::fprintf(stderr, "warning: 3 buttons mouse is prefered for this application.\n\n");
    }
    glutSetWindowTitle(windowTitle.substr(0, kWindowTitleMax).c_str());
    if (createPanelHook == nullptr && panelEmbedded) glutReshapeWindow(winWidth, winHeight);

    platform::HostCallbacks callbacks;
    callbacks.input = routeInput;
    callbacks.reshape = reshapeCallback;
    platform::initPanelHost(mainWindow, callbacks);
    if (createPanelHook != nullptr) createPanelHook();
    if (fullscreen) {
        glutSetWindow(mainWindow);
        glutFullScreen();
        panelEmbedded = false;
    }
    glutSetWindow(mainWindow);
    glutDisplayFunc(displayCallback);
    glutIdleFunc(idleCallback);
    // The framework's own popup menu is not offered: the right button belongs to the scene.

    glutMainLoop();
    std::fprintf(stderr, "after mainloop\n");
    return 0;
}
