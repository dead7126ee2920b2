#pragma once
// What the star scene owns: the star list, the four models, the Sun's particle set, the
// planetary ephemeris and the data root. Made by initScene, released by quitScene.

#include <memory>
#include <string>

#include "catalogue/star_list.h"
#include "common_package/glm/src/glm.h"
#include "common_package/particle/src/particle_list.h"
#include "solar/ephemeris.h"
#include "solar/orrery_settings.h"

struct GlmModelDeleter {
    void operator()(GLMmodel* model) const { glmDelete(model); }
};
using GlmModelPtr = std::unique_ptr<GLMmodel, GlmModelDeleter>;

// Capacity of the data root path (characters, terminator included).
constexpr std::size_t kDataRootSize = 512;

struct SceneObjects {
    std::unique_ptr<StarList> starList;
    std::string firstStarFile;  // the first dataset named on the command line

    GlmModelPtr milkyWay;
    GlmModelPtr earthDay;
    GlmModelPtr earthCloud;
    GlmModelPtr earthNight;

    std::unique_ptr<ParticleList> sunParticles;  // "Generic-Particles"
    std::unique_ptr<Ephemeris> ephemeris;        // null: no orrery mode

    std::string dataRoot;  // TOPDIR, or "../.."

    EarthModels earthModels() const {
        EarthModels m;
        m.day = earthDay.get();
        m.night = earthNight.get();
        m.cloud = earthCloud.get();
        return m;
    }
};

extern SceneObjects sceneObjects;

// The star list; null before initScene has made it and after quitScene.
inline StarList* sceneStars() {
    return sceneObjects.starList.get();
}

// Releases everything that is present (each only if present); safe to call twice.
void releaseSceneObjects();
