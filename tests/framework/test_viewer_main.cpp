// The framework with a test scene. Scene words (after the script):
//   keys       the key "=" prints the framework's state instead of reaching the framework
//   mouse-log  print every mouse event the scene is offered
//   fail       initScene fails
// Every other word is ignored (tests put a tag there to find the window by its title).
// Everything the scene prints goes to standard output, flushed at once.

#include <cstdio>
#include <cstring>

#include "framework/framework_state.h"
#include "framework/scene_hooks.h"
#include "tests/framework/test_scene.h"

namespace {

void drawTestScene(double frame, int, int, double, int pickMode) {
    if (pickMode == 0) drawTestPattern(frame);
}

int stateKey(unsigned char key, int, int) {
    if (key != '=') return 0;
    std::printf("state frame=%.1f sensitivity=%g playCount=%d fovy=%g logScale=%.2f\n", currFrame,
                sensitivity, playCount, fovy, currLogScale);
    std::fflush(stdout);
    return 1;
}

int logMouse(int button, int state, int x, int y) {
    std::printf("mouse %d %d %d %d modifiers=%d\n", button, state, x, y, frameworkModifiers());
    std::fflush(stdout);
    return 0;
}

int initTestScene(int argc, char** argv) {
    std::printf("init window=%dx%d screen=%dx%d words=%d\n", winWidth, winHeight, screenWidth,
                screenHeight, argc);
    std::fflush(stdout);
    for (int i = 0; i < argc; ++i) {
        if (std::strcmp(argv[i], "keys") == 0) keyboardHook = stateKey;
        if (std::strcmp(argv[i], "mouse-log") == 0) mouseHook = logMouse;
        if (std::strcmp(argv[i], "fail") == 0) return -1;
    }
    return 0;
}

void quitTestScene() {
    std::printf("quitScene\n");
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    SceneEntryPoints scene;
    scene.initScene = initTestScene;
    scene.drawScene = drawTestScene;
    scene.quitScene = quitTestScene;
    return runViewer(argc, argv, scene);
}
