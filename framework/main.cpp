// skyrama: the viewer's entry point. The framework drives the scene.
#include "framework/empty_scene.h"
#include "framework/scene_hooks.h"

int main(int argc, char** argv) {
    return runViewer(argc, argv, emptyScene());
}
