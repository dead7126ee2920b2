#pragma once
// A stand-in star scene: the star datasets of the command line (with the Sun) and the star
// parameter file, drawn as stars and nothing else, until the full star scene takes over.

#include "framework/scene_hooks.h"

class StarList;

// initScene reads the star files given after the movie script (none: the start-up message
// and -1) and "data/stardata/skyrama.txt" when present (relative to the working folder, then
// under TOPDIR, default "../.."); drawScene draws the stars with the colormap colours, depth
// writes on, and textured sprites when a texture source is set; quitScene releases the list.
SceneEntryPoints minimalStarScene();

// The scene's star list (null before initScene and after quitScene).
StarList* minimalSceneStarList();
