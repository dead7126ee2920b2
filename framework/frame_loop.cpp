#include "framework/frame_loop.h"

#include <GL/freeglut.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "framework/actions.h"
#include "framework/dumps.h"
#include "framework/frame_overlay.h"
#include "framework/framework_state.h"
#include "framework/jitter_accumulation.h"
#include "framework/overlays.h"
#include "framework/playback.h"
#include "framework/scene_hooks.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"
#include "image/readback.h"
#include "platform/clock.h"
#include "platform/panel_host.h"

namespace {

constexpr double kNear = 0.01;
constexpr double kFar = 10000.0;
constexpr double kPi = 3.14159265358979323846;

JitterAccumulator accumulator;
bool interfaceSuppressed = false;

struct Capture {
    unsigned char* buffer = nullptr;
    int width = 0, height = 0;
};
Capture capture;

void readCapture() {
    if (capture.buffer == nullptr) return;
    glReadBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, capture.width, capture.height, GL_RGB, GL_UNSIGNED_BYTE, capture.buffer);
    upsidedownImage(capture.buffer, capture.width, capture.height);
    capture = Capture{};
}

void drawPlainFrame() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (measureFrameRate) {
        const double before = frameClockSeconds();
        drawFrame(0);
        glFinish();
        const double after = frameClockSeconds();
        if (after > before) frameRate = 1.0 / (after - before);
        std::fprintf(stderr, "FrameRate = %f Hz\n", frameRate);
    } else {
        drawFrame(0);
    }
    glFlush();
    readCapture();
}

void drawJitteredFrame() {
    const double top = std::tan(fovy / 2.0 * kPi / 180.0) * kNear;
    const double right = top * aspect;
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (!accumulator.prepare(viewport[2], viewport[3])) {
        std::fprintf(stderr,
                     "Critical Err: failed to allocate memory for our own stencil buffer.\n");
        endProcess(1);
    }
    glReadBuffer(GL_BACK);
    glDrawBuffer(GL_BACK);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    for (int i = 0; i < jitterSize && jitterTable != nullptr; ++i) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        const double dx = jitterTable[i].jx * 2.0 * right / std::max(viewport[2], 1);
        const double dy = jitterTable[i].jy * 2.0 * top / std::max(viewport[3], 1);
        glFrustum(-right + dx, right + dx, -top + dy, top + dy, kNear, kFar);
        glMatrixMode(GL_MODELVIEW);
        drawFrame(0);
        glFlush();
        glReadPixels(viewport[0], viewport[1], viewport[2], viewport[3], GL_RGB, GL_UNSIGNED_BYTE,
                     accumulator.passBuffer());
        accumulator.addPass();
    }
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    accumulator.average();
    capture = Capture{};  // the dump takes the averaged image instead
}

// Starting playback at the last frame starts from the first.
void rewindAtEnd() {
    if (playCount != 0 && currFrame >= totalFrames() - 1) {
        currFrame = 0.0;
        showCurrentFrame();
    }
}

}  // namespace

void drawFrame(int pickMode) {
    const SceneEntryPoints& scene = activeScene();
    const int total = totalFrames();
    if (pickMode != 0) {
        glPushMatrix();
        if (scene.drawScene)
            scene.drawScene(currFrame, total, renderFlagsWord(), currLogScale, pickMode);
        glPopMatrix();
        return;
    }
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_LIGHTING);
    glPushMatrix();
    if (scene.drawScene) scene.drawScene(currFrame, total, renderFlagsWord(), currLogScale, 0);
    glPopMatrix();
    glPopAttrib();

    if (axesShown) drawAxes(true, "G", 1.0f);
    if (!cubesSuppressed) {
        if (meterCubesShown) drawMeterCubes(currLogScale);
        if (parsecCubesShown) drawParsecCubes(currLogScale);
    }
    if (showFrameInfo) drawFrameInfo();
}

void displayCallback() {
    WindowScope scope(mainWindow);
    const bool withInterface = !interfaceSuppressed && platform::beginInterfaceFrame();

    if (pickPending) {
        drawFrame(1);
        pickPending = false;
        glutPostWindowRedisplay(mainWindow);  // the picture after the selection pass
        return;
    }
    if (!firstDisplayArmed) {
        firstDisplayTime = frameClockSeconds();
        firstDisplayArmed = true;
    }
    if (jitterSize <= 1) {
        drawPlainFrame();
    } else {
        drawJitteredFrame();
    }
    if (withInterface) platform::drawInterface();
    glutSwapBuffers();
    glFlush();
}

void reshapeCallback(int width, int height) {
    WindowScope scope(mainWindow);
    if (panelEmbedded && createPanelHook != nullptr) {
        int x = 0, y = 0, w = 0, h = 0;
        platform::freeViewportArea(x, y, w, h);
        glViewport(x, y, w, h);
        glutPostRedisplay();
        winWidth = w;
        winHeight = h;
    } else {
        glViewport(0, 0, width, height);
        winWidth = width;
        winHeight = height;
    }
    if (aspectFollowsWindow) {
        aspect = static_cast<double>(winWidth) / std::max(winHeight, 1);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(fovy, aspect, kNear, kFar);
        glMatrixMode(GL_MODELVIEW);
    }
}

void idleCallback() {
    WindowScope scope(mainWindow);
    if (idleHook != nullptr && idleHook() == 1) return;

    if (dumpMode && firstDisplayArmed && frameClockSeconds() - firstDisplayTime > 1.0) {
        dumpMovie(true);
        endProcess(1);
    }

    bool busy = false;
    if (haveMovieFrames() && playCount != 0) {
        busy = true;
        PlaybackState s{currFrame, playCount, playEveryFrame, doubleRate, lastPlayTime};
        const PlaybackResult result =
            advancePlayback(s, platform::wallClockSeconds(), totalFrames());
        currFrame = s.currFrame;
        playCount = s.playCount;
        lastPlayTime = s.lastPlayTime;
        if (result == PlaybackResult::Advanced) {
            if (!playEveryFrame) std::fprintf(stderr, "-> Frame: [%.1f]\n", currFrame);
            View v;
            if (movie->evaluateFrame(currFrame, v) == 1) applyView(v);
            displayCallback();
        }
    }

    continueSpin();
    busy = busy || spinActive();
    glFlush();
    // Nothing moves on by itself: give the processor back for a moment instead of spinning.
    if (!busy && !dumpMode) std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

void playOnce() {
    if (!haveMovieFrames()) return;
    stopSpin();
    playCount = playCount == 0 ? 1 : 0;
    lastPlayTime = kNotStarted;
    rewindAtEnd();
}

void playLoop() {
    if (!haveMovieFrames()) return;
    stopSpin();
    playCount = playCount == 0 ? kPlayForever : 0;
    lastPlayTime = kNotStarted;
    rewindAtEnd();
}

void goToFrame(int k) {
    if (!haveMovieFrames() || k < 0 || k >= totalFrames()) return;
    stopSpin();
    View v;
    if (movie->evaluateFrame(k, v) == 1) applyView(v);
    currFrame = k;
    glutPostWindowRedisplay(mainWindow);
}

void showCurrentFrame() {
    if (!movie) return;
    View v;
    if (movie->evaluateFrame(currFrame, v) == 1) applyView(v);
    glutPostWindowRedisplay(mainWindow);
}

const JitterAccumulator& lastJitteredFrame() {
    return accumulator;
}

void captureNextDisplay(unsigned char* buffer, int width, int height) {
    capture = Capture{buffer, width, height};
}

void setInterfaceSuppressed(bool suppressed) {
    interfaceSuppressed = suppressed;
}
