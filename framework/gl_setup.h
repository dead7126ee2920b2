#pragma once
// The OpenGL state the framework sets up once for the main window.

// Lighting with light 0 on and 1 .. 7 off, depth test, alpha blending, smooth points and
// lines, normalised normals, black clear colour (and accumulation clear colour when jittering).
void setUpGLState();
// Every light's position and colours set under an identity modelview, so that the lights stay
// fixed relative to the eye.
void setUpLights();
// Point and line smoothing on or off together.
void applyAntiAliasing(bool on);
