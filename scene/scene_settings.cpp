#include "scene/scene_settings.h"

SceneSettings sceneSettings;

void resetSceneSettings() {
    sceneSettings = SceneSettings{};
}
