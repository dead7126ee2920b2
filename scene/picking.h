#pragma once
// Picking a star: by a right click (in the framework's selection pass), or by its catalogue
// number, name or constellation typed into the panel; the anchor placed on the empty sky; and
// what is done with the picked star (printing it, turning the view to it).

// Catalogue fields that findStar searches.
constexpr int kFindByHD = 1;
constexpr int kFindByHIC = 2;
constexpr int kFindByName = 3;

// The 3-D drawing area (x, y, width, height): the panel layout's when the panel shares the
// main window, else the GL viewport.
void sceneViewport(int viewport[4]);

// In the selection pass: the star under (x, y) (y from the top) becomes the picked star, or,
// with no star there, the anchor moves to that direction.
void pickAt(int x, int y);

// The anchor to the sky direction under (x, y), at the panel's log scale + 3.5 decades; a
// negative x keeps it where it is. The anchor then becomes what the panel describes.
void placeAnchor(int x, int y);

// The panel's picked-star fields from the picked record.
void showPickedStar();

// Picks by HD number (field 1), HIC number (field 2) or name (field 3); "anchor" selects the
// anchor. Returns true when something was picked; otherwise says why and changes nothing.
bool findStar(const char* text, int field);

// Picks the star a constellation is found by, from its name or its code.
bool findConstellation(const char* text, bool byCode);

// "print (console)" and "look at star".
void printPickedStar();
void lookAtPickedStar();

// The on-screen information box of the picked star (or the anchor), with its planets.
void drawStarInfo(bool withPlanets);
