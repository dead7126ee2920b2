#include "scene/minimal_scene.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "catalogue/star_list.h"
#include "framework/framework_state.h"

namespace {

constexpr const char* kStarParameterFile = "data/stardata/skyrama.txt";
constexpr const char* kDefaultDataRoot = "../..";

std::unique_ptr<StarList> starList;

int initMinimalScene(int argc, char** argv) {
    const char* topDir = std::getenv("TOPDIR");
    const std::string dataRoot = topDir != nullptr ? topDir : kDefaultDataRoot;
    if (argc < 1 || argv == nullptr) {
        std::fprintf(stderr,
                     "Err: (initScene) Please input a list of .star files after movie script.\n\n");
        return -1;
    }
    starList = std::make_unique<StarList>();
    if (starList->readStarFiles(argc, argv, 1, 0) < 0) return -1;

    // The parameter file is optional here: probe quietly, but a file that is there and
    // wrong still reports its errors.
    if (starList->readStarParameter(kStarParameterFile, nullptr, 1) < 0) {
        const std::string underRoot = dataRoot + "/" + kStarParameterFile;
        starList->readStarParameter(underRoot.c_str(), dataRoot.c_str(), 1);
    }
    char title[1024];
    std::snprintf(title, sizeof title, "skyrama %d.%d [%s]", 1, 9, argv[0]);
    setWindowTitle(title);
    return 0;
}

void drawMinimalScene(double, int, int, double logScale, int pickMode) {
    if (pickMode != 0 || !starList) return;
    int flags = kStarColorMap | kStarDepthWrite;
    if (starList->getStarParameter().textureSource != kStarTextureNone) flags |= kStarTextured;
    starList->drawStars(logScale, flags, -1, -1);
}

void quitMinimalScene() {
    starList.reset();
}

}  // namespace

SceneEntryPoints minimalStarScene() {
    SceneEntryPoints scene;
    scene.initScene = initMinimalScene;
    scene.drawScene = drawMinimalScene;
    scene.quitScene = quitMinimalScene;
    return scene;
}

StarList* minimalSceneStarList() {
    return starList.get();
}
