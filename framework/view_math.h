#pragma once
// Camera arithmetic on OpenGL's 4 x 4 matrices, without a GL context: the view read back
// from a modelview matrix, the field-of-view step, and the mouse drag and spin steps.

#include <array>

#include "common_package/math/src/vec3.h"
#include "common_package/math/src/view.h"

// Column-major, as OpenGL stores it: row r, column c at m[c * 4 + r].
struct Mat4 {
    std::array<double, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double at(int row, int column) const { return m[column * 4 + row]; }
};

Mat4 operator*(const Mat4& a, const Mat4& b);
Mat4 translation4(const Vec3& t);
Mat4 rotation4(double angleDegrees, const Vec3& axis);  // as glRotated
Vec3 translationPart(const Mat4& m);                    // where the origin lies in eye space

// The eye -R^T t at exponent logScale; direction = -(third row of R), up = second row.
View viewFromModelview(const Mat4& modelview, double logScale, double fovy, double aspect);

double fieldOfViewStep(double fovyDegrees, double delta);

// M = T(c) x Rot x T(-c) x M, c = the translation part of M: a turn about the scene origin.
Mat4 turnAboutOrigin(const Mat4& m, double angleDegrees, const Vec3& axis);
// M = Rot x M: a turn about the eye.
Mat4 turnAboutEye(const Mat4& m, double angleDegrees, const Vec3& axis);

// One drag step of the mouse (dx, dy already multiplied by the sensitivity, y up).
struct DragInput {
    int buttonMask = 0;  // bit (1 << GLUT button)
    int modifiers = 0;   // GLUT_ACTIVE_* bits
    double dx = 0.0, dy = 0.0;
    double fovy = 60.0;
    int winHeight = 1;
    bool movieLoaded = false;
};
enum class DragEffect {
    None,
    ModelviewChanged,    // the matrix passed in was changed
    NextFrame,           // movie scrub forward (the Right key)
    PreviousFrame,       // movie scrub back (the Left key)
    FieldOfViewChanged,  // fovy was changed: read the view back and apply it
};
DragEffect dragStep(const DragInput& in, Mat4& modelview, double& fovy);

// A flick of the left button: the last drag step (previous -> release position, y up), the
// sensitivity and the seconds since that step. Spins when the speed reaches 1 degree/s.
struct Flick {
    bool spin = false;
    Vec3 axis;           // in eye coordinates, z = 0
    double speed = 0.0;  // degrees per second
};
Flick flickFromDrag(int previousX, int previousY, int x, int y, double sensitivity,
                    double secondsSinceStep);
