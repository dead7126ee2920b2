#pragma once
// The scene the framework runs, and the modifiers of the input event being handled.

#include "framework/scene_hooks.h"

const SceneEntryPoints& activeScene();
void setActiveScene(const SceneEntryPoints& scene);
void setEventModifiers(int modifiers);
