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
    EXPECT_NEAR(0.0, length(a - b), 1e-9) << a.x << " " << a.y << " " << a.z;
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
    const View side = viewFromModelview(lookAt({0, 0, 0}, {1, 0, 0}, {0, 0, 1}), 0.0, 60, 1);
    expectNear(side.viewDir, {1, 0, 0});
    expectNear(side.viewUp, {0, 0, 1});
}

TEST(FieldOfViewStep, LinearAboveATenthLogarithmicBelowAndBounded) {
    EXPECT_NEAR(65.0, fieldOfViewStep(60.0, 5.0), 1e-9);
    EXPECT_DOUBLE_EQ(179.9, fieldOfViewStep(179.0, 50.0));
    EXPECT_NEAR(0.1 * std::exp(-1.0 / 8.0), fieldOfViewStep(0.1, -1.0), 1e-12);
    EXPECT_DOUBLE_EQ(1e-7, fieldOfViewStep(0.1, -1000.0));
    EXPECT_NEAR(0.2, fieldOfViewStep(0.05, 8.0 * std::log(2.0) + 0.1), 1e-9);
}

TEST(Drag, EachButtonAndModifierMovesTheViewItsWay) {
    constexpr int left = 1 << GLUT_LEFT_BUTTON, middle = 1 << GLUT_MIDDLE_BUTTON;
    // About the scene's origin: the origin stays, the eye turns 30 x 0.5 x 60/90 = 10 degrees.
    const Mat4 m = dragged({left, 0, 30.0, 0.0, 60.0});
    expectNear(translationPart(m), translationPart(kStart));
    const View about = viewFromModelview(m, 0.0, 60.0, 1.0);
    const Vec3 eye{about.viewPos.x, about.viewPos.y, about.viewPos.z};
    EXPECT_NEAR(3.0, length(eye), 1e-9);
    EXPECT_NEAR(10.0, degreesBetween(eye, {0, 0, 3}), 1e-9);

    const View turned = viewFromModelview(dragged({left, GLUT_ACTIVE_ALT, 30.0, 0.0}), 0, 60, 1);
    expectNear({turned.viewPos.x, turned.viewPos.y, turned.viewPos.z}, {0, 0, 3});  // eye stays
    EXPECT_NEAR(10.0, degreesBetween(turned.viewDir, {0, 0, -1}), 1e-9);

    // A roll: 100 x 0.5 x 0.3 = 15 degrees, dy ignored.
    const View rolled =
        viewFromModelview(dragged({left, GLUT_ACTIVE_SHIFT, 100.0, 40.0}), 0, 60, 1);
    expectNear(rolled.viewDir, {0, 0, -1});
    EXPECT_NEAR(15.0, degreesBetween(rolled.viewUp, {0, 1, 0}), 1e-9);

    // Middle: 0.01 x 45 / 90 = 0.005 a pixel; with the left button too, in depth, any modifier.
    expectNear(translationPart(dragged({middle, 0, 10.0, -20.0, 45.0})),
               translationPart(kStart) + Vec3{0.05, -0.1, 0.0});
    expectNear(
        translationPart(dragged({middle | left, GLUT_ACTIVE_ALT | GLUT_ACTIVE_CTRL, 10, -20, 45})),
        translationPart(kStart) + Vec3{0.05, 0.0, 0.1});

    EXPECT_EQ(kStart.m, dragged({left}, DragEffect::None).m);
    dragged({1 << GLUT_RIGHT_BUTTON, 0, 10.0},
            DragEffect::None);  // the right button is the scene's
}

TEST(Drag, AltMiddleChangesTheFieldOfViewAndCtrlLeftScrubsTheMovie) {
    Mat4 m;
    double f = 60.0;  // (30 + 10) x 10 / 400 = 1 degree
    EXPECT_EQ(DragEffect::FieldOfViewChanged,
              dragStep({1 << GLUT_MIDDLE_BUTTON, GLUT_ACTIVE_ALT, 30, -10, 60, 400}, m, f));
    EXPECT_NEAR(61.0, f, 1e-12);
    const DragInput scrub{1 << GLUT_LEFT_BUTTON, GLUT_ACTIVE_CTRL, 3, 0, 60, 1, true};
    EXPECT_EQ(DragEffect::NextFrame, dragStep(scrub, m, f));
    EXPECT_EQ(DragEffect::PreviousFrame,
              dragStep({scrub.buttonMask, scrub.modifiers, -1, 0, 60, 1, true}, m, f));
    EXPECT_EQ(DragEffect::None, dragStep({scrub.buttonMask, scrub.modifiers, 3}, m, f));
}

TEST(Flick, SpinsOnlyFromAFastEnoughLastStep) {
    // 10 pixels in 0.01 s: 10 x 0.2 / 0.01 / 100 = 2 degrees a second about (vy, vx, 0) / 10.
    Flick f = flickFromDrag(100, 100, 106, 92, 1.0, 0.01);
    ASSERT_TRUE(f.spin);
    EXPECT_NEAR(2.0, f.speed, 1e-12);
    expectNear(f.axis, {0.8, 0.6, 0.0});
    EXPECT_FALSE(flickFromDrag(100, 100, 106, 92, 1.0, 0.05).spin);        // 0.4 degrees a second
    EXPECT_NEAR(20.0, flickFromDrag(0, 0, 10, 0, 1.0, 0.0).speed, 1e-12);  // at least 1 ms
    EXPECT_NEAR(1.0, flickFromDrag(100, 100, 106, 92, 0.5, 0.01).speed, 1e-12);
}
