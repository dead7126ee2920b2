#pragma once
// A scene with nothing in it: the framework runs (movie playback, overlays, dumps) before a
// real scene exists, and tests run the framework on its own.

#include "framework/scene_hooks.h"

// initScene accepts any arguments and returns 0 (it switches the axes and the metre cubes on
// so that a camera path shows where it goes); drawScene draws nothing; no hooks are set.
const SceneEntryPoints& emptyScene();
