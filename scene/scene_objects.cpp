#include "scene/scene_objects.h"

SceneObjects sceneObjects;

void releaseSceneObjects() {
    sceneObjects.starList.reset();
    sceneObjects.milkyWay.reset();
    sceneObjects.sunParticles.reset();
    sceneObjects.earthDay.reset();
    sceneObjects.earthCloud.reset();
    sceneObjects.earthNight.reset();
    sceneObjects.ephemeris.reset();
}
