// skyrama: the viewer's entry point. The framework drives the star scene.
#include "framework/scene_hooks.h"
#include "scene/scene.h"

int main(int argc, char** argv) {
    return runViewer(argc, argv, starScene());
}
