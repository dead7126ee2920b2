#include <GL/freeglut.h>

#include <cctype>
#include <cstdio>

#include "framework/actions.h"
#include "framework/frame_loop.h"
#include "framework/framework_state.h"
#include "framework/input_handlers.h"
#include "framework/playback.h"
#include "framework/scene_hooks.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"

namespace {

constexpr unsigned char kEscape = 27;

// Moves currFrame to frame (already within the movie) and shows it.
void showFrame(double frame) {
    stopSpin();
    currFrame = frame;
    showCurrentFrame();
}

double frameStep() {
    return doubleRate ? 0.5 : 1.0;
}

void setPlayMode(bool everyFrame) {
    if (everyFrame) {
        std::fprintf(stderr, "Play every frame\n");
    } else {
        std::fprintf(stderr, "Play at realtime (may skip frames)\n");
    }
    playEveryFrame = everyFrame;
}

}  // namespace

void frameworkKeyboard(unsigned char key, int x, int y) {
    (void)x;
    (void)y;
    // Entries that look at the case as typed.
    switch (key) {
        case kEscape:
            frameworkAction(kActionQuit);
            return;
        case '<':
            if (movie) frameworkSpecial(GLUT_KEY_LEFT, x, y);
            return;
        case '>':
            if (movie) frameworkSpecial(GLUT_KEY_RIGHT, x, y);
            return;
        case 'b':
            frameworkAction(kActionMeterCubes);
            return;
        case 'B':
            frameworkAction(kActionParsecCubes);
            return;
        case 'x':
        case 'X':
            setPlayMode(key == 'x');
            if (movie) frameworkAction(kActionPlayOnce);
            return;
        case 'z':
        case 'Z':
            setPlayMode(key == 'z');
            if (movie) frameworkAction(kActionPlayLoop);
            return;
        case '{':
            sensitivityDown();
            return;
        case '}':
            sensitivityUp();
            return;
        default:
            break;
    }
    switch (std::tolower(key)) {
        case 'q':
            frameworkAction(kActionQuit);
            break;
        case 'a':
            frameworkAction(kActionAxes);
            break;
        case 'g':
            frameworkAction(kActionAntiAliasing);
            break;
        case 'h':
            frameworkAction(kActionHelp);
            break;
        case 'i':
            printCurrentView(stderr);
            break;
        case 'k':
            frameworkAction(kActionFrameRate);
            break;
        case 'm':
            frameworkAction(kActionRenderWordB);
            break;
        case 'n':
            if (movie) frameworkAction(kActionFrameInfo);
            break;
        case 'p':
            frameworkAction(kActionResetView);
            break;
        case 'r':
            if (movie) frameworkAction(kActionReloadScript);
            break;
        case 's':
            frameworkAction(kActionRenderWordA);
            break;
        case 't':
            frameworkAction(kActionRenderWordC);
            break;
        default:
            break;
    }
}

void frameworkSpecial(int key, int x, int y) {
    (void)x;
    (void)y;
    if (key == GLUT_KEY_UP) {
        logScaleUp();
        return;
    }
    if (key == GLUT_KEY_DOWN) {
        logScaleDown();
        return;
    }
    if (!movie) return;
    if (key == GLUT_KEY_F11) {
        shearQuadrantPrevious();
        return;
    }
    if (key == GLUT_KEY_F12) {
        shearQuadrantNext();
        return;
    }
    if (key == GLUT_KEY_INSERT) {
        frameworkAction(kActionScreenDump);
        return;
    }
    if (!haveMovieFrames()) return;
    const int total = totalFrames();
    if (key >= GLUT_KEY_F1 && key <= GLUT_KEY_F10) {
        stopSpin();
        goToFrame(jumpFrame(key - GLUT_KEY_F1 + 1, total));
        return;
    }
    switch (key) {
        case GLUT_KEY_LEFT:
            showFrame(stepFrame(currFrame, -frameStep(), total));
            break;
        case GLUT_KEY_RIGHT:
            showFrame(stepFrame(currFrame, frameStep(), total));
            break;
        case GLUT_KEY_PAGE_UP:
            showFrame(nextKeyFrame(*movie, currFrame));
            break;
        case GLUT_KEY_PAGE_DOWN:
            showFrame(previousKeyFrame(*movie, currFrame));
            break;
        case GLUT_KEY_HOME:
            showFrame(stepFrame(currFrame, 5.0, total));
            break;
        case GLUT_KEY_END:
            showFrame(stepFrame(currFrame, -5.0, total));
            break;
        default:
            break;
    }
}

void keyboardInput(unsigned char key, int x, int y, int modifiers) {
    WindowScope scope(mainWindow);
    setEventModifiers(modifiers);
    if (keyboardHook != nullptr && keyboardHook(key, x, y) == 1) return;
    frameworkKeyboard(key, x, y);
}

void specialInput(int key, int x, int y, int modifiers) {
    WindowScope scope(mainWindow);
    setEventModifiers(modifiers);
    if (specialHook != nullptr && specialHook(key, x, y) == 1) return;
    frameworkSpecial(key, x, y);
}
