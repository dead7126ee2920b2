#pragma once
// The live camera: applying a view record to the projection and modelview matrices, reading
// it back, and the steps the keys, the mouse and the scene's panel take on it.

#include "common_package/math/src/vec3.h"
#include "common_package/math/src/view.h"
#include "framework/view_math.h"

// Loads the projection (one sheared quarter when shearQuadrant is 1 .. 4, after its message)
// and the modelview of the main window from v; sets fovy, aspect and currLogScale.
void applyView(const View& v);
// The view read back from the modelview matrix, at currLogScale, with fovy and aspect.
View currentView();
// currentView() applied again: after a change of fovy, aspect or the shear quadrant.
void reapplyCurrentView();
// Eye 3 units out on z, looking down -z, fovy 60, aspect of the drawing area; turns
// aspectFollowsWindow on.
View defaultView();
// Stops any spin; the movie's view at currFrame (the default view without one) applied.
void resetView();

// The current modelview matrix, and a matrix loaded as the modelview (the matrix mode is left
// at GL_MODELVIEW).
Mat4 currentModelview();
void loadModelview(const Mat4& m);

// Field of view changed by delta: logarithmic below 0.1 degrees, linear above; the result
// stays within 1e-7 .. 179.9.
double fieldOfViewStep(double fovyDegrees, double delta);

void sensitivityDown();        // halve, at least 0.01
void sensitivityUp();          // double, at most 5.0
void logScaleUp();             // currLogScale + 0.02, redisplay
void logScaleDown();           // currLogScale - 0.02, redisplay
void shearQuadrantNext();      // (q + 1) mod 5, view re-applied (only with a movie)
void shearQuadrantPrevious();  // (q + 4) mod 5

// A turn of the scene that continues in the idle callback. The axis is in eye coordinates.
enum class TurnCentre {
    SceneOrigin,  // about the origin of the scene (a flick of the mouse)
    Eye,          // about the eye (the view swings, the eye stays)
};
// Turns at degreesPerSecond until stopSpin (or any button press, playback action, reset view
// or frame step).
void startSpin(const Vec3& axis, double degreesPerSecond,
               TurnCentre centre = TurnCentre::SceneOrigin);
// Turns through angleDegrees at degreesPerSecond, then stops by itself ("look at" moves).
void startTurn(const Vec3& axis, double angleDegrees, double degreesPerSecond, TurnCentre centre);
void stopSpin();
bool spinActive();

// Called by the idle callback: one step of a running spin or turn.
void continueSpin();
