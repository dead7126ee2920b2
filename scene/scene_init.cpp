// initScene and quitScene: the star scene's start-up from the data tree and its release.

#include <GL/freeglut.h>

#include <cstdio>
#include <memory>
#include <string>

#include "common_package/glm/src/glm.h"
#include "framework/framework_state.h"
#include "framework/scene_hooks.h"
#include "scene/catalogue_layers.h"
#include "scene/control_panel.h"
#include "scene/data_root.h"
#include "scene/examine_windows.h"
#include "scene/pick_state.h"
#include "scene/scene.h"
#include "scene/scene_keys.h"
#include "scene/scene_layout.h"
#include "scene/scene_mouse.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "wim/bright_stars.h"

namespace {

constexpr int kVersionMajor = 1;
constexpr int kVersionMinor = 9;
constexpr const char* kBanner =
    "skyrama - a three-dimensional viewer of the stars around the Sun, by the skyrama "
    "developers\n"
    "Contact: the skyrama developers <skyrama@example.org>\n"
    "- November 2026";

constexpr const char* kStarParameterFile = "data/stardata/skyrama.txt";
constexpr const char* kMilkyWayModel = "data/objdata/MilkyWayEnv.obj";
constexpr const char* kEarthModels[3] = {"data/objdata/earth.obj", "data/objdata/earthCloud.obj",
                                         "data/objdata/earthNight.obj"};
constexpr const char* kSunParticles = "data/prtdata/SolarSystem/sun.prt";
constexpr const char* kEphemeris = "data/ephemerisdata/binp_all.405";

// Closing the main window: the movie goes first, then the scene, then the process.
void onMainWindowClose() {
    movie.reset();
    quitScene();
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_EXIT);
}

bool readStarParameters(StarList& stars, const std::string& root) {
    const std::string under = underDataRoot(root, kStarParameterFile);
    // A missing file is tried quietly; one that is there but wrong says why.
    if (readableFile(kStarParameterFile) &&
        stars.readStarParameter(kStarParameterFile, nullptr, 0) == 1) {
        return true;
    }
    if (readableFile(under) && stars.readStarParameter(under.c_str(), root.c_str(), 0) == 1)
        return true;
    std::fprintf(stderr, "Err: failed to open [%s] or [%s]\n", kStarParameterFile, under.c_str());
    return false;
}

GlmModelPtr readModel(const char* relative, const std::string& root) {
    if (readableFile(relative)) return GlmModelPtr(glmReadOBJ(relative));
    const std::string under = underDataRoot(root, relative);
    if (readableFile(under)) return GlmModelPtr(glmReadOBJ(under.c_str()));
    return nullptr;
}

bool readModels(const std::string& root) {
    SceneObjects& o = sceneObjects;
    o.milkyWay = readModel(kMilkyWayModel, root);
    if (!o.milkyWay) {
        std::printf("Err: reading Milkyway model [%s] or [%s]\n", kMilkyWayModel,
                    underDataRoot(root, kMilkyWayModel).c_str());
        return false;
    }
    glmUnitize(o.milkyWay.get());
    sceneSettings.milkyWayAlpha = 0.35f;

    GlmModelPtr* earth[3] = {&o.earthDay, &o.earthCloud, &o.earthNight};
    for (int i = 0; i < 3; ++i) {
        *earth[i] = readModel(kEarthModels[i], root);
        if (!*earth[i]) {
            std::printf("Err: reading obj model [%s] or [%s]\n", kEarthModels[i],
                        underDataRoot(root, kEarthModels[i]).c_str());
            return false;
        }
    }
    for (GlmModelPtr* model : earth)
        glmUnitize(model->get());
    return true;
}

bool readSunParticles(const std::string& root) {
    SceneObjects& o = sceneObjects;
    const std::string under = underDataRoot(root, kSunParticles);
    if (readableFile(kSunParticles)) {
        o.sunParticles = std::make_unique<ParticleList>();
        if (o.sunParticles->read(kSunParticles, false) == 1) {
            o.sunParticles->setName("Generic-Particles");
            std::printf("- %d particles read from %s\n", o.sunParticles->getNumParticles(),
                        kSunParticles);
            return true;
        }
    }
    o.sunParticles = std::make_unique<ParticleList>();
    if (readableFile(under) && o.sunParticles->read(under.c_str(), false) == 1) {
        o.sunParticles->setName("Generic-Particles");
        return true;
    }
    o.sunParticles.reset();
    std::printf("Err : reading particles from [%s] or [%s]\n", kSunParticles, under.c_str());
    return false;
}

void openEphemeris(const std::string& root) {
    SceneObjects& o = sceneObjects;
    std::printf("try to setup orrery ... ");
    std::fflush(stdout);
    const std::string under = underDataRoot(root, kEphemeris);
    o.ephemeris = std::make_unique<Ephemeris>();
    if (o.ephemeris->open(kEphemeris, true) != 0 && o.ephemeris->open(under.c_str(), false) != 0) {
        o.ephemeris.reset();
        std::fprintf(stderr, "Fail to open [%s] or [%s] - use no orrery mode.\n", kEphemeris,
                     under.c_str());
        return;
    }
    const int dataSize = o.ephemeris->dataSize();
    std::printf("datasize = [%d]\n", dataSize);
    const int cacheSize =
        o.ephemeris->setCacheSize(ephemerisCacheSizeFor(dataSize, o.ephemeris->cacheSize()));
    std::printf("cachesize = [%d bytes].\n", cacheSize > 0 ? cacheSize : o.ephemeris->cacheSize());
    std::fflush(stdout);
}

void installHooks() {
    helpHook = sceneHelp;
    keyboardHook = sceneKeyboard;
    specialHook = sceneSpecial;
    mouseHook = sceneMouse;
    motionHook = sceneMotion;
    passiveMotionHook = scenePassiveMotion;
    createPanelHook = createScenePanel;
    frameworkMenu = false;  // the right button picks stars
}

}  // namespace

int initScene(int argc, char** argv) {
    glutCloseFunc(onMainWindowClose);
    resetSceneSettings();
    resetPickState();
    SceneObjects& o = sceneObjects;
    o.dataRoot = dataRootFromEnvironment();
    if (argc < 1 || argv == nullptr) {
        std::fprintf(stderr,
                     "Err: (initScene) Please input a list of .star files after movie script.\n\n");
        return -1;
    }
    if (o.dataRoot.size() >= kDataRootSize) {
        std::fprintf(stderr, "Err: (initScene) TOPDIR is longer than %zu characters.\n",
                     kDataRootSize - 1);
        return -1;
    }

    o.starList = std::make_unique<StarList>();
    if (o.starList->readStarFiles(argc, argv, 1, 0) != 1) return -1;
    o.firstStarFile = argv[0];
    if (!readStarParameters(*o.starList, o.dataRoot)) return -1;
    const StarParameter& param = o.starList->getStarParameter();
    sceneSettings.labelSize = param.labelScale;
    sceneSettings.orbitScale = param.extrasolarPlanetOrbitScale;

    buildStarSpanningTree(*o.starList);
    build_bright_starlist(*o.starList);
    build_nearby_starlist(*o.starList);

    if (sceneSettings.showDarkSky) {
        glClearColor(0.03f, 0.03f, 0.1f, 1.0f);
    } else {
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    }
    char title[kWindowTitleMax + 1];
    std::snprintf(title, sizeof title, "skyrama %d.%d [%s]", kVersionMajor, kVersionMinor,
                  o.firstStarFile.c_str());
    setWindowTitle(title);
    setBannerText(kBanner);

    if (!readModels(o.dataRoot)) return -1;
    installHooks();
    chooseSceneLayout();
    resetMeasurementState(winWidth, winHeight);
    if (!readSunParticles(o.dataRoot)) return -1;
    openEphemeris(o.dataRoot);
    std::fflush(stdout);
    return 0;
}

void quitScene() {
    releaseSceneObjects();
    for (ExamineWindow& w : examineWindows.windows)
        w.clearImages();
    resetPickState();
}

namespace {

const SceneEntryPoints kStarScene{initScene, drawScene, quitScene};

}  // namespace

const SceneEntryPoints& starScene() {
    return kStarScene;
}
