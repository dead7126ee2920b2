// The framework with its empty scene (axes and metre cubes on), whatever scene the skyrama
// program itself runs.

#include "framework/empty_scene.h"
#include "framework/scene_hooks.h"

int main(int argc, char** argv) {
    return runViewer(argc, argv, emptyScene());
}
