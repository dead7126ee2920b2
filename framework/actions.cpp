#include "framework/actions.h"

#include <GL/freeglut.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "framework/dumps.h"
#include "framework/frame_loop.h"
#include "framework/framework_state.h"
#include "framework/gl_setup.h"
#include "framework/scene_hooks.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"
#include "platform/message_box.h"

namespace {

const char kFrameworkHelp[] =
    "\nKeys:\n"
    "  ESC/q/Q  quit                  h        this help\n"
    "  a        axes                  b / B    metre / parsec cubes\n"
    "  g        anti-aliasing         i        print the current view\n"
    "  k        frame rate            n        frame number\n"
    "  p        reset view            r        reload the movie script\n"
    "  x / X    play once (every frame / real time)\n"
    "  z / Z    play in a loop (every frame / real time)\n"
    "  < >      previous / next frame F1-F10   go to frame\n"
    "  PgUp/PgDn next / previous keyframe   Home/End  5 frames on / back\n"
    "  up/down  log scale of space    F11/F12  zoom into a quarter\n"
    "  { / }    mouse sensitivity     INSERT   dump the screen\n"
    "Mouse: left rolls the scene (+Alt about the eye, +Shift about the view axis,\n"
    "  +Ctrl scrubs the movie); middle moves in x/y (+Alt changes the field of view);\n"
    "  left+middle moves in x/z.\n\n";

void redisplay() {
    glutPostWindowRedisplay(mainWindow);
}

}  // namespace

void showHelp() {
    if (helpHook != nullptr && helpHook(stderr) == 1) return;
    std::fputs(kFrameworkHelp, stderr);
}

void reloadScript() {
    stopSpin();
    playCount = 0;
    std::fprintf(stderr, "loading script file [%s]...\n", scriptFileName.c_str());
    auto record = std::make_unique<MovieRecord>();
    if (record->loadRecord(scriptFileName.c_str(), 1) != 1) {
        std::fprintf(stderr, "Err: failed to read [%s]\n", scriptFileName.c_str());
        return;
    }
    movie = std::move(record);
    const int total = movie->totalNumFrame();
    if (currFrame > total - 1) currFrame = total - 1;
    showCurrentFrame();
}

[[noreturn]] void quitViewer(int exitCode) {
    movie.reset();
    const SceneEntryPoints& scene = activeScene();
    if (scene.quitScene) scene.quitScene();
    endProcess(exitCode);
}

[[noreturn]] void endProcess(int exitCode) {
    if (mainWindow != 0) {
        glutSetWindow(mainWindow);
        glutCloseFunc(nullptr);
    }
    std::fflush(stdout);
    std::fflush(stderr);
    std::exit(exitCode);
}

void quitWithConfirmation(int exitCode) {
    platform::askYesNo(windowTitle, "Really Quit?", platform::BoxIcon::Exclamation,
                       [exitCode](bool yes) {
                           if (yes) quitViewer(exitCode);
                       });
    redisplay();
}

void frameworkAction(int action) {
    WindowScope scope(mainWindow);
    switch (action) {
        case kActionHelp:
            showHelp();
            return;
        case kActionResetView:
            resetView();
            return;
        case kActionFrameRate:
            measureFrameRate = !measureFrameRate;
            break;
        case kActionAbout:
            platform::showMessage(windowTitle, bannerText.substr(0, kBannerTextMax),
                                  platform::BoxIcon::Information);
            break;
        case kActionQuit:
            quitWithConfirmation(0);
            return;
        case kActionRenderWordA:
            renderFlags[0] = renderFlags[0] == 2 ? 1 : 2;
            break;
        case kActionRenderWordB:
            renderFlags[1] = renderFlags[1] == 16 ? 8 : 16;
            break;
        case kActionRenderWordC:
            renderFlags[2] = renderFlags[2] == 4 ? 0 : 4;
            break;
        case kActionAntiAliasing:
            antiAliasing = !antiAliasing;
            applyAntiAliasing(antiAliasing);
            break;
        case kActionAxes:
            axesShown = !axesShown;
            break;
        case kActionMeterCubes:
            meterCubesShown = !meterCubesShown;
            break;
        case kActionParsecCubes:
            parsecCubesShown = !parsecCubesShown;
            break;
        case kActionPlayOnce:
            if (movie) playOnce();
            return;
        case kActionPlayLoop:
            if (movie) playLoop();
            return;
        case kActionScreenDump:
            if (movie) screenDump(nullptr);
            return;
        case kActionFrameInfo:
            if (!movie) return;
            showFrameInfo = !showFrameInfo;
            break;
        case kActionReloadScript:
            if (movie) reloadScript();
            return;
        default:
            if (action >= kActionGoToFrame && movie) goToFrame(action - kActionGoToFrame);
            return;
    }
    redisplay();
}
