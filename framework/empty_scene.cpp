#include "framework/empty_scene.h"

#include "framework/framework_state.h"

namespace {

int initEmptyScene(int, char**) {
    axesShown = true;
    meterCubesShown = true;
    return 0;
}

void drawEmptyScene(double, int, int, double, int) {}

void quitEmptyScene() {}

}  // namespace

const SceneEntryPoints& emptyScene() {
    static const SceneEntryPoints scene{initEmptyScene, drawEmptyScene, quitEmptyScene};
    return scene;
}
