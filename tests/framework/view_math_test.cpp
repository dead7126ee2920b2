// Camera arithmetic without a window: reading a view back from a modelview matrix, the
// field-of-view control, and what each mouse drag does to the matrix.

#include <gtest/gtest.h>

#include <GL/freeglut.h>

#include <cmath>

#include "framework/view_math.h"

namespace {

constexpr double kEps = 1e-9;

// gluLookAt's matrix, built by hand: rows side, up, -forward; translation -R eye.
Mat4 lookAt(const Vec3& eye, const Vec3& centre, const Vec3& up) {
    const Vec3 f = normalized(centre - eye);
    const Vec3 s = normalized(cross(f, up));
    const Vec3 u = cross(s, f);
    const Vec3 rows[3] = {s, u, -f};
    Mat4 m;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            m.m[c * 4 + r] = rows[r][c];
        m.m[12 + r] = -dot(rows[r], eye);
    }
    return m;
}

Vec3 eyeOf(const Mat4& m) {
    const View v = viewFromModelview(m, 0.0, 60.0, 1.0);
    return {v.viewPos.x, v.viewPos.y, v.viewPos.z};
}

void expectNear(const Vec3& a, const Vec3& b, double eps = 1e-9) {
    EXPECT_NEAR(a.x, b.x, eps);
    EXPECT_NEAR(a.y, b.y, eps);
    EXPECT_NEAR(a.z, b.z, eps);
}

}  // namespace

TEST(ViewReadBack, GivesEyeDirectionUpAtTheCurrentScale) {
    const Mat4 m = lookAt({1, 2, 3}, {1, 2, 2}, {0, 1, 0});
    const View v = viewFromModelview(m, 4.5, 33.0, 1.25);
    expectNear({v.viewPos.x, v.viewPos.y, v.viewPos.z}, {1, 2, 3});
    EXPECT_DOUBLE_EQ(4.5, v.viewPos.w);
    expectNear(v.viewDir, {0, 0, -1});
    expectNear(v.viewUp, {0, 1, 0});
    EXPECT_DOUBLE_EQ(33.0, v.fovy);
    EXPECT_DOUBLE_EQ(1.25, v.aspect);

    const View side = viewFromModelview(lookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1}), 0.0, 60, 1);
    expectNear(side.viewDir, {1, 0, 0});
    expectNear(side.viewUp, {0, 0, 1});
}

TEST(FieldOfViewStep, LinearAboveATenthLogarithmicBelowAndBounded) {
    EXPECT_NEAR(65.0, fieldOfViewStep(60.0, 5.0), kEps);
    EXPECT_DOUBLE_EQ(179.9, fieldOfViewStep(179.0, 50.0));
    EXPECT_NEAR(0.1, fieldOfViewStep(0.1, 0.0), kEps);
    // From 0.1 down by one unit of control: 0.1 x e^(-1/8).
    EXPECT_NEAR(0.1 * std::exp(-1.0 / 8.0), fieldOfViewStep(0.1, -1.0), 1e-12);
    // The logarithmic range is left again by the same step back up.
    EXPECT_NEAR(0.1, fieldOfViewStep(fieldOfViewStep(0.1, -1.0), 1.0), 1e-12);
    EXPECT_DOUBLE_EQ(1e-7, fieldOfViewStep(0.1, -1000.0));
    EXPECT_DOUBLE_EQ(1e-7, fieldOfViewStep(1e-7, -1.0));
    EXPECT_NEAR(0.2, fieldOfViewStep(0.05, 8.0 * std::log(2.0) + 0.1), 1e-9);
}

TEST(Drag, LeftTurnsTheSceneAboutItsOriginAndAltAboutTheEye) {
    const Mat4 start = lookAt({0, 0, 3}, {0, 0, 0}, {0, 1, 0});
    DragInput in;
    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.dx = 30.0;
    in.fovy = 60.0;

    Mat4 m = start;
    double fovyOut = 60.0;
    ASSERT_EQ(DragEffect::ModelviewChanged, dragStep(in, m, fovyOut));
    // About the origin: the origin stays where it was in eye space; the eye moved.
    expectNear(translationPart(m), translationPart(start));
    // Turned by 30 x 0.5 x 60/90 = 10 degrees: the eye is 3 units from the origin still.
    const Vec3 eye = eyeOf(m);
    EXPECT_NEAR(3.0, length(eye), 1e-9);
    EXPECT_NEAR(10.0, angleBetween(eye, {0, 0, 3}) * 180.0 / M_PI, 1e-9);

    in.modifiers = GLUT_ACTIVE_ALT;
    m = start;
    ASSERT_EQ(DragEffect::ModelviewChanged, dragStep(in, m, fovyOut));
    expectNear(eyeOf(m), {0, 0, 3});  // about the eye: the eye stays
    const View v = viewFromModelview(m, 0, 60, 1);
    EXPECT_NEAR(10.0, angleBetween(v.viewDir, {0, 0, -1}) * 180.0 / M_PI, 1e-9);

    in.modifiers = 0;
    in.dx = 0.0;
    m = start;
    EXPECT_EQ(DragEffect::None, dragStep(in, m, fovyOut));
    EXPECT_EQ(start.m, m.m);
}

TEST(Drag, ShiftRollsAboutTheViewingAxis) {
    const Mat4 start = lookAt({0, 0, 3}, {0, 0, 0}, {0, 1, 0});
    DragInput in;
    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.modifiers = GLUT_ACTIVE_SHIFT;
    in.dx = 100.0;  // 100 x 0.5 x 0.3 = 15 degrees
    in.dy = 40.0;   // ignored
    Mat4 m = start;
    double f = 60.0;
    ASSERT_EQ(DragEffect::ModelviewChanged, dragStep(in, m, f));
    const View v = viewFromModelview(m, 0, 60, 1);
    expectNear(v.viewDir, {0, 0, -1});
    EXPECT_NEAR(15.0, angleBetween(v.viewUp, {0, 1, 0}) * 180.0 / M_PI, 1e-9);
}

TEST(Drag, MiddleTranslatesAndLeftMiddleMovesInDepth) {
    const Mat4 start = lookAt({0, 0, 3}, {0, 0, 0}, {0, 1, 0});
    DragInput in;
    in.buttonMask = 1 << GLUT_MIDDLE_BUTTON;
    in.dx = 10.0;
    in.dy = -20.0;
    in.fovy = 45.0;  // 0.01 x 45 / 90 = 0.005 a pixel
    Mat4 m = start;
    double f = 45.0;
    ASSERT_EQ(DragEffect::ModelviewChanged, dragStep(in, m, f));
    expectNear(translationPart(m), translationPart(start) + Vec3{0.05, -0.1, 0.0});

    in.buttonMask |= 1 << GLUT_LEFT_BUTTON;
    in.modifiers = GLUT_ACTIVE_ALT | GLUT_ACTIVE_CTRL;  // any modifier
    m = start;
    ASSERT_EQ(DragEffect::ModelviewChanged, dragStep(in, m, f));
    expectNear(translationPart(m), translationPart(start) + Vec3{0.05, 0.0, 0.1});
}

TEST(Drag, AltMiddleChangesTheFieldOfView) {
    DragInput in;
    in.buttonMask = 1 << GLUT_MIDDLE_BUTTON;
    in.modifiers = GLUT_ACTIVE_ALT;
    in.dx = 30.0;
    in.dy = -10.0;
    in.winHeight = 400;  // (30 + 10) x 10 / 400 = 1 degree
    Mat4 m;
    double f = 60.0;
    EXPECT_EQ(DragEffect::FieldOfViewChanged, dragStep(in, m, f));
    EXPECT_NEAR(61.0, f, 1e-12);
    f = 0.1;
    in.dx = -400.0;
    in.dy = 0.0;  // 10 units down: into the logarithmic range, above 1e-7
    dragStep(in, m, f);
    EXPECT_NEAR(0.1 * std::exp(-10.0 / 8.0), f, 1e-12);
}

TEST(Drag, CtrlLeftScrubsTheMovieOnlyWhenThereIsOne) {
    DragInput in;
    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.modifiers = GLUT_ACTIVE_CTRL;
    in.movieLoaded = true;
    Mat4 m;
    double f = 60;
    in.dx = 3;
    EXPECT_EQ(DragEffect::NextFrame, dragStep(in, m, f));
    in.dx = -1;
    EXPECT_EQ(DragEffect::PreviousFrame, dragStep(in, m, f));
    in.movieLoaded = false;
    EXPECT_EQ(DragEffect::None, dragStep(in, m, f));
    in.buttonMask = 1 << GLUT_RIGHT_BUTTON;
    in.modifiers = 0;
    EXPECT_EQ(DragEffect::None, dragStep(in, m, f));  // the right button is the scene's
}

TEST(Flick, SpinsOnlyFromAFastEnoughLastStep) {
    // 10 pixels in 0.01 s: 10 x 0.2 / 0.01 / 100 = 2 degrees a second.
    Flick f = flickFromDrag(100, 100, 106, 92, 1.0, 0.01);
    ASSERT_TRUE(f.spin);
    EXPECT_NEAR(2.0, f.speed, 1e-12);
    // vx = 6, vy = -(92 - 100) = 8: axis (vy, vx, 0) / 10.
    expectNear(f.axis, {0.8, 0.6, 0.0});

    EXPECT_FALSE(flickFromDrag(100, 100, 106, 92, 1.0, 0.05).spin);  // 0.4 degrees a second
    EXPECT_FALSE(flickFromDrag(100, 100, 100, 100, 1.0, 0.0).spin);  // no movement
    // Times below a millisecond count as one.
    EXPECT_NEAR(20.0, flickFromDrag(0, 0, 10, 0, 1.0, 0.0).speed, 1e-12);
    // The sensitivity scales the distance.
    EXPECT_NEAR(1.0, flickFromDrag(100, 100, 106, 92, 0.5, 0.01).speed, 1e-12);
}
