#pragma once
// Image registration: a photograph of the sky laid over the star field through three stars
// named by the user, saved and restored as an alignment file.
//
// This build has no image registration yet: every action says so once and changes nothing;
// the drawing functions draw nothing and no registration ever exists.

// A registration matrix has been computed.
bool imageRegistered();

// Recomputes the registration from the three stars' texture coordinates.
void computeRegistration();
// Reads or writes the alignment file at path.
void readAlignment(const char* path);
void writeAlignment(const char* path);
// Loads the image (folder and name) as the registration image; its texture name, or 0.
unsigned loadRegistrationImage(const char* folder, const char* name);
// Registration star j (1, 2 or 3) from the picked star (or the anchor when none is picked).
void takeRegistrationStar(int j);
// The HD number of registration star j (1, 2 or 3); 0 when it has none.
int registrationStarHD(int j);

// The image on the sky and its labels, at the given opacity.
void drawRegistration(float opacity);
// The on-screen box in which the texture coordinates of the three stars are adjusted.
void drawRegistrationOverlay();
