// Camera arithmetic without a window: the view read back from a modelview matrix, the
// field-of-view control, what each mouse drag does to the matrix, and the flick spin.

#include <gtest/gtest.h>

#include <GL/freeglut.h>

#include <cmath>

#include "framework/view_math.h"

namespace {

// gluLookAt's matrix, built by hand: rows side, up, -forward; translation -R eye.
Mat4 lookAt(const Vec3& eye, const Vec3& centre, const Vec3& up) {
    const Vec3 f = normalized(centre - eye), s = normalized(cross(f, up)), u = cross(s, f);
    const Vec3 rows[3] = {s, u, -f};
    Mat4 m;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            m.m[c * 4 + r] = rows[r][c];
        m.m[12 + r] = -dot(rows[r], eye);
    }
    return m;
}

void expectNear(const Vec3& a, const Vec3& b) {
    EXPECT_NEAR(a.x, b.x, 1e-9);
    EXPECT_NEAR(a.y, b.y, 1e-9);
    EXPECT_NEAR(a.z, b.z, 1e-9);
}

double degreesBetween(const Vec3& a, const Vec3& b) {
    return angleBetween(a, b) * 180.0 / M_PI;
}

const Mat4 kStart = lookAt({0, 0, 3}, {0, 0, 0}, {0, 1, 0});

// One drag step from kStart with the buttons and modifiers given.
Mat4 dragged(DragInput in, DragEffect expected = DragEffect::ModelviewChanged) {
    Mat4 m = kStart;
    double fovy = in.fovy;
    EXPECT_EQ(expected, dragStep(in, m, fovy));
    return m;
}

}  // namespace

TEST(ViewReadBack, GivesEyeDirectionUpAtTheCurrentScale) {
    const View v = viewFromModelview(lookAt({1, 2, 3}, {1, 2, 2}, {0, 1, 0}), 4.5, 33.0, 1.25);
    expectNear({v.viewPos.x, v.viewPos.y, v.viewPos.z}, {1, 2, 3});
    EXPECT_DOUBLE_EQ(4.5, v.viewPos.w);
    expectNear(v.viewDir, {0, 0, -1});
    EXPECT_DOUBLE_EQ(33.0, v.fovy);
    EXPECT_DOUBLE_EQ(1.25, v.aspect);
    const View side = viewFromModelview(lookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1}), 0.0, 60, 1);
    expectNear(side.viewDir, {1, 0, 0});
    expectNear(side.viewUp, {0, 0, 1});
}

TEST(FieldOfViewStep, LinearAboveATenthLogarithmicBelowAndBounded) {
    EXPECT_NEAR(65.0, fieldOfViewStep(60.0, 5.0), 1e-9);
    EXPECT_DOUBLE_EQ(179.9, fieldOfViewStep(179.0, 50.0));
    EXPECT_NEAR(0.1 * std::exp(-1.0 / 8.0), fieldOfViewStep(0.1, -1.0), 1e-12);
    EXPECT_NEAR(0.1, fieldOfViewStep(fieldOfViewStep(0.1, -1.0), 1.0), 1e-12);
    EXPECT_DOUBLE_EQ(1e-7, fieldOfViewStep(0.1, -1000.0));
    EXPECT_NEAR(0.2, fieldOfViewStep(0.05, 8.0 * std::log(2.0) + 0.1), 1e-9);
}

TEST(Drag, EachButtonAndModifierMovesTheViewItsWay) {
    DragInput in;
    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.dx = 30.0;  // 30 x 0.5 x 60/90 = 10 degrees
    in.fovy = 60.0;
    Mat4 m = dragged(in);  // about the scene's origin: the origin stays, the eye moves
    expectNear(translationPart(m), translationPart(kStart));
    const View about = viewFromModelview(m, 0.0, 60.0, 1.0);
    const Vec3 eye{about.viewPos.x, about.viewPos.y, about.viewPos.z};
    EXPECT_NEAR(3.0, length(eye), 1e-9);
    EXPECT_NEAR(10.0, degreesBetween(eye, {0, 0, 3}), 1e-9);

    in.modifiers = GLUT_ACTIVE_ALT;  // about the eye: the eye stays
    const View turned = viewFromModelview(dragged(in), 0, 60, 1);
    expectNear({turned.viewPos.x, turned.viewPos.y, turned.viewPos.z}, {0, 0, 3});
    EXPECT_NEAR(10.0, degreesBetween(turned.viewDir, {0, 0, -1}), 1e-9);

    in.modifiers = GLUT_ACTIVE_SHIFT;  // a roll: 100 x 0.5 x 0.3 = 15 degrees, dy ignored
    in.dx = 100.0;
    in.dy = 40.0;
    const View rolled = viewFromModelview(dragged(in), 0, 60, 1);
    expectNear(rolled.viewDir, {0, 0, -1});
    EXPECT_NEAR(15.0, degreesBetween(rolled.viewUp, {0, 1, 0}), 1e-9);

    in.buttonMask = 1 << GLUT_MIDDLE_BUTTON;  // 0.01 x 45 / 90 = 0.005 a pixel
    in.modifiers = 0;
    in.dx = 10.0;
    in.dy = -20.0;
    in.fovy = 45.0;
    expectNear(translationPart(dragged(in)), translationPart(kStart) + Vec3{0.05, -0.1, 0.0});
    in.buttonMask |= 1 << GLUT_LEFT_BUTTON;  // in depth, with any modifier
    in.modifiers = GLUT_ACTIVE_ALT | GLUT_ACTIVE_CTRL;
    expectNear(translationPart(dragged(in)), translationPart(kStart) + Vec3{0.05, 0.0, 0.1});

    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.modifiers = 0;
    in.dx = in.dy = 0.0;
    EXPECT_EQ(kStart.m, dragged(in, DragEffect::None).m);
    in.buttonMask = 1 << GLUT_RIGHT_BUTTON;  // the right button is the scene's
    in.dx = 10.0;
    dragged(in, DragEffect::None);
}

TEST(Drag, AltMiddleChangesTheFieldOfViewAndCtrlLeftScrubsTheMovie) {
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

    in.buttonMask = 1 << GLUT_LEFT_BUTTON;
    in.modifiers = GLUT_ACTIVE_CTRL;
    in.movieLoaded = true;
    in.dx = 3;
    EXPECT_EQ(DragEffect::NextFrame, dragStep(in, m, f));
    in.dx = -1;
    EXPECT_EQ(DragEffect::PreviousFrame, dragStep(in, m, f));
    in.movieLoaded = false;
    EXPECT_EQ(DragEffect::None, dragStep(in, m, f));
}

TEST(Flick, SpinsOnlyFromAFastEnoughLastStep) {
    // 10 pixels in 0.01 s: 10 x 0.2 / 0.01 / 100 = 2 degrees a second about (vy, vx, 0) / 10.
    Flick f = flickFromDrag(100, 100, 106, 92, 1.0, 0.01);
    ASSERT_TRUE(f.spin);
    EXPECT_NEAR(2.0, f.speed, 1e-12);
    expectNear(f.axis, {0.8, 0.6, 0.0});
    EXPECT_FALSE(flickFromDrag(100, 100, 106, 92, 1.0, 0.05).spin);  // 0.4 degrees a second
    EXPECT_FALSE(flickFromDrag(100, 100, 100, 100, 1.0, 0.0).spin);
    EXPECT_NEAR(20.0, flickFromDrag(0, 0, 10, 0, 1.0, 0.0).speed, 1e-12);  // at least 1 ms
    EXPECT_NEAR(1.0, flickFromDrag(100, 100, 106, 92, 0.5, 0.01).speed, 1e-12);
}
