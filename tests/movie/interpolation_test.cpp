// Frames to segments and segments to views: timing, the four channels, guides and the
// position arithmetic across many decades.

#include <gtest/gtest.h>

#include <cmath>

#include "movie/guides.h"
#include "movie/timing.h"
#include "script_fixture.h"

namespace {

bool sameView(const View& a, const View& b) {
    return a.viewPos == b.viewPos && a.viewDir == b.viewDir && a.viewUp == b.viewUp &&
           a.fovy == b.fovy && a.aspect == b.aspect;
}

// The direction of a camera turned by degrees about +y from looking down -z.
std::string turnedAboutY(double degrees) {
    double a = degrees * M_PI / 180.0;
    char text[64];
    std::snprintf(text, sizeof text, "%.17g 0 %.17g", -std::sin(a), -std::cos(a));
    return text;
}

}  // namespace

TEST(Interpolation, FramesSegmentsAndKeyFrameViews) {
    MovieRecord r;
    std::string text = scriptHeader(3, "spline spline-quat spline-fovy spline-aspect-ratio") +
                       keyBlock("KeyFrame 0", "1 0 0 3", "0 0 -1", "0 1 0", "45", "1") +
                       keyBlock("KeyFrame 10", "0 1 0 5", "1 0 0", "0 0 1", "20", "2") +
                       keyBlock("KeyFrame 20", "0 0 1 4", "0 -1 0", "1 0 0", "60", "1.5");
    ASSERT_EQ(loadText(r, text).rc, 1);
    EXPECT_EQ(r.totalNumFrame(), 21);
    EXPECT_EQ(r.frameOfKeyFrame(0), 0.0);
    EXPECT_EQ(r.frameOfKeyFrame(1), 10.0);
    EXPECT_EQ(r.frameOfKeyFrame(2), 20.0);
    EXPECT_EQ(r.frameOfKeyFrame(3), -1.0);

    int k = -1;
    double t = -1.0;
    ASSERT_EQ(r.locate(10.0, k, t), 1);
    EXPECT_EQ(k, 1);
    EXPECT_EQ(t, 0.0);
    ASSERT_EQ(r.locate(15.0, k, t), 1);
    EXPECT_EQ(k, 1);
    EXPECT_EQ(t, 0.5);
    ASSERT_EQ(r.locate(2.5, k, t), 1);
    EXPECT_EQ(k, 0);
    EXPECT_EQ(t, 0.25);
    ASSERT_EQ(r.locate(20.0, k, t), 1);
    EXPECT_EQ(k, 2);
    EXPECT_EQ(t, 0.0);
    EXPECT_EQ(r.locate(-0.001, k, t), -1);
    EXPECT_EQ(r.locate(20.001, k, t), -1);
    EXPECT_EQ(r.locate(std::nan(""), k, t), -1);

    for (int i = 0; i < 3; ++i) {
        View v;
        ASSERT_EQ(r.evaluateFrame(10.0 * i, v), 1);
        EXPECT_TRUE(sameView(v, r.keyFrame(i).view)) << "keyframe " << i;
    }
    View untouched;
    untouched.fovy = 7.0;
    EXPECT_EQ(r.evaluateFrame(21.0, untouched), -1);
    EXPECT_EQ(untouched.fovy, 7.0);
    EXPECT_EQ(r.evaluateSegment(2, 0.5, untouched), -1);
    EXPECT_EQ(r.evaluateSegment(0, 1.5, untouched), -1);
    EXPECT_EQ(r.evaluateSegment(-1, 0.0, untouched), -1);
    EXPECT_EQ(untouched.fovy, 7.0);
    View nearEnd;
    ASSERT_EQ(r.evaluateSegment(0, 0.9999995, nearEnd), 1);
    EXPECT_TRUE(sameView(nearEnd, r.keyFrame(1).view));

    // Every frame in between is a proper camera.
    for (double f = 0.0; f <= 20.0; f += 0.5) {
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_NEAR(length(v.viewDir), 1.0, 1e-12) << f;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-9) << f;
        EXPECT_TRUE(std::isfinite(v.viewPos.w) && std::isfinite(v.fovy) && v.fovy > 0.0) << f;
    }
}

TEST(Interpolation, PlaybackStartsAtTheFirstKeyFrame) {
    MovieRecord r;
    ASSERT_EQ(loadText(r, scriptHeader(2) + keyBlock("KeyFrame 5") + keyBlock("KeyFrame 15")).rc,
              1);
    EXPECT_EQ(r.keyFrame(0).nFrames, 5);
    EXPECT_EQ(r.totalNumFrame(), 11);
    EXPECT_EQ(r.frameOfKeyFrame(1), 10.0);

    MovieRecord single;
    ASSERT_EQ(loadText(single, scriptHeader(1) + keyBlock("KeyFrame 7", "1 2 3 4")).rc, 1);
    EXPECT_EQ(single.totalNumFrame(), 1);
    EXPECT_EQ(single.frameOfKeyFrame(0), 0.0);
    int k = -1;
    double t = -1.0;
    ASSERT_EQ(single.locate(0.0, k, t), 1);
    EXPECT_EQ(k, 0);
    EXPECT_EQ(t, 0.0);
    View v;
    ASSERT_EQ(single.evaluateFrame(0.0, v), 1);
    EXPECT_TRUE(sameView(v, single.keyFrame(0).view));
    EXPECT_EQ(single.keyFrame(0).guideOut.viewPos, (Phc{1, 2, 3, 4}));
}

TEST(Interpolation, SmallTermBesideAHugeOneIsDropped) {
    // 1 m along y, then 10^20 m along x: halfway the 0.5 m term is 20 decades below the other.
    MovieRecord r;
    ASSERT_EQ(loadText(r, scriptHeader(2) + keyBlock("KeyFrame 0", "0 1 0 0") +
                              keyBlock("KeyFrame 10", "1 0 0 20"))
                  .rc,
              1);
    View v;
    ASSERT_EQ(r.evaluateFrame(5.0, v), 1);
    Phc p = phcNormalized(v.viewPos);
    EXPECT_EQ(p.y, 0.0);
    EXPECT_DOUBLE_EQ(p.x, 1.0);
    EXPECT_NEAR(p.w, 20.0 + std::log10(0.5), 1e-12);

    // Within 15 decades both terms count.
    MovieRecord near;
    ASSERT_EQ(loadText(near, scriptHeader(2) + keyBlock("KeyFrame 0", "0 1 0 0") +
                                 keyBlock("KeyFrame 10", "1 0 0 10"))
                  .rc,
              1);
    ASSERT_EQ(near.evaluateFrame(5.0, v), 1);
    p = phcNormalized(v.viewPos);
    EXPECT_GT(p.y, 0.0);
}

TEST(Interpolation, OrientationTakesTheShorterWay) {
    // 170 and 190 degrees about y are 20 degrees apart, across the half turn.
    MovieRecord r;
    ASSERT_EQ(loadText(r, scriptHeader(2) + keyBlock("KeyFrame 0", "0 0 0 0", turnedAboutY(170)) +
                              keyBlock("KeyFrame 10", "0 0 0 0", turnedAboutY(190)))
                  .rc,
              1);
    View v;
    ASSERT_EQ(r.evaluateFrame(5.0, v), 1);
    EXPECT_NEAR(v.viewDir.x, 0.0, 1e-12);
    EXPECT_NEAR(v.viewDir.z, 1.0, 1e-12);
    EXPECT_NEAR(v.viewUp.y, 1.0, 1e-12);
    for (double f = 0.0; f <= 10.0; f += 1.0) {
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_LE(angleBetween(v.viewDir, Vec3{0, 0, 1}), 10.0 * M_PI / 180.0 + 1e-9) << f;
    }

    // Views half a turn apart: halfway the camera looks sideways, up unchanged.
    MovieRecord half;
    ASSERT_EQ(loadText(half, scriptHeader(2) + keyBlock("KeyFrame 0", "0 0 0 0", "0 0 -1") +
                                 keyBlock("KeyFrame 10", "0 0 0 0", "0 0 1"))
                  .rc,
              1);
    ASSERT_EQ(half.evaluateFrame(5.0, v), 1);
    EXPECT_NEAR(std::fabs(v.viewDir.x), 1.0, 1e-12);
    EXPECT_NEAR(v.viewUp.y, 1.0, 1e-12);

    // Equal orientations give the orientation itself, in either method.
    for (const char* interp : {"linear-quat", "spline-quat"}) {
        MovieRecord same;
        ASSERT_EQ(loadText(same, scriptHeader(3, interp) +
                                     keyBlock("KeyFrame 0", "0 0 0 0", "1 1 0", "0 0 1") +
                                     keyBlock("KeyFrame 10", "1 0 0 1", "1 1 0", "0 0 1") +
                                     keyBlock("KeyFrame 20", "1 0 0 2", "1 1 0", "0 0 1"))
                      .rc,
                  1);
        for (double f = 0.5; f < 20.0; f += 2.5) {
            ASSERT_EQ(same.evaluateFrame(f, v), 1);
            EXPECT_NEAR(angleBetween(v.viewDir, Vec3{1, 1, 0}), 0.0, 1e-7) << interp << f;
            EXPECT_NEAR(angleBetween(v.viewUp, Vec3{0, 0, 1}), 0.0, 1e-7) << interp << f;
        }
    }
}

TEST(Interpolation, SplineOrientationIsContinuous) {
    // A camera that swings by large angles at every keyframe: neighbouring frames, also
    // across keyframes, must differ by small turns only (no detour through a sign flip).
    std::string text = scriptHeader(5, "spline spline-quat");
    const char* dirs[] = {"0 0 -1", "1 0 0.2", "0 0 1", "-1 0 0.3", "0 0 -1"};
    for (int i = 0; i < 5; ++i)
        text +=
            keyBlock("KeyFrame " + std::to_string(20 * i), std::to_string(i) + " 0 0 2", dirs[i]);
    MovieRecord r;
    ASSERT_EQ(loadText(r, text).rc, 1);
    View prev;
    ASSERT_EQ(r.evaluateFrame(0.0, prev), 1);
    for (double f = 0.25; f <= 80.0; f += 0.25) {
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_LT(angleBetween(v.viewDir, prev.viewDir), 0.1) << f;
        EXPECT_LT(angleBetween(v.viewUp, prev.viewUp), 0.1) << f;
        prev = v;
    }
}

TEST(Interpolation, LinearChannelsUseThePlainParameter) {
    // Uneven spacing and shape factors change the timing curve, which linear channels ignore.
    MovieRecord r;
    ASSERT_EQ(
        loadText(
            r, scriptHeader(3) +
                   keyBlock("KeyFrame 0 FPos 0.3 2 0.5", "0 0 0 0", "0 0 -1", "0 1 0", "40", "1") +
                   keyBlock("KeyFrame 3 FPos 1 0.2 3", "1 0 0 0", "0 0 -1", "0 1 0", "10", "3") +
                   keyBlock("KeyFrame 40", "2 0 0 0", "0 0 -1", "0 1 0", "80", "2"))
            .rc,
        1);
    View v;
    ASSERT_EQ(r.evaluateFrame(1.0, v), 1);
    EXPECT_DOUBLE_EQ(v.fovy, 40.0 - 30.0 / 3.0);
    EXPECT_DOUBLE_EQ(v.aspect, 1.0 + 2.0 / 3.0);
    EXPECT_NEAR(phcLengthMeters(v.viewPos), 1.0 / 3.0, 1e-12);
    ASSERT_EQ(r.evaluateFrame(3.0 + 37.0 * 0.25, v), 1);
    EXPECT_DOUBLE_EQ(v.fovy, 10.0 + 70.0 * 0.25);
    EXPECT_DOUBLE_EQ(v.aspect, 3.0 - 0.25);
}

TEST(Interpolation, SplineFieldOfViewFollowsTheTimingCurve) {
    // Two keyframes 12 frames apart with given fovy guides. The timing controls of a lone
    // segment sit a sixth of its length, times the first keyframe's position in factor and
    // the second's position out factor, inside its ends.
    MovieRecord r;
    std::string text = scriptHeader(2, "linear spline-fovy") +
                       keyBlock("KeyFrame 0 FPos 0 2 0.5", "0 0 0 0", "0 0 -1", "0 1 0", "30") +
                       "GuideFrame Out\n" + viewLines("0 0 0 0", "0 0 -1", "0 1 0", "60") +
                       keyBlock("KeyFrame 12 FPos 0 3 0.5", "1 0 0 0", "0 0 -1", "0 1 0", "50") +
                       "GuideFrame In\n" + viewLines("0 0 0 0", "0 0 -1", "0 1 0", "10");
    ASSERT_EQ(loadText(r, text).rc, 1);
    for (double f = 1.0; f < 12.0; f += 1.0) {
        double s = searchLocalT(0.0, 4.0, 11.0, 12.0, f);
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_NEAR(v.fovy, bezier1D(30.0, 60.0, 10.0, 50.0, s), 1e-12) << f;
        EXPECT_NEAR(v.aspect, 1.0, 1e-12);
        // Position stays on the plain parameter.
        EXPECT_NEAR(phcLengthMeters(v.viewPos), f / 12.0, 1e-12);
    }
}

TEST(Interpolation, SearchLocalT) {
    // A Bézier with evenly spaced controls is the identity scaled by p3.
    for (double target : {0.5, 1.0, 3.3, 9.99}) {
        double u = searchLocalT(0.0, 10.0 / 3.0, 20.0 / 3.0, 10.0, target);
        EXPECT_NEAR(bezier1D(0.0, 10.0 / 3.0, 20.0 / 3.0, 10.0, u), target, 1e-5);
        EXPECT_NEAR(u, target / 10.0, 1e-6);
    }
    EXPECT_EQ(searchLocalT(2.0, 1.0, 5.0, 8.0, 2.0), 0.0);
    EXPECT_EQ(searchLocalT(2.0, 1.0, 5.0, 8.0, 8.0), 1.0);

    ::testing::internal::CaptureStderr();
    double below = searchLocalT(2.0, 1.0, 5.0, 8.0, 1.0);
    double above = searchLocalT(2.0, 1.0, 5.0, 8.0, 9.0);
    double nan = searchLocalT(0.0, 1.0, 2.0, 3.0, std::nan(""));
    double wild = searchLocalT(0.0, 1e9, -1e9, 3.0, 1.5);  // not monotonic: still ends
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "ERR in searchLocalT\nERR in searchLocalT\n");
    EXPECT_EQ(below, 0.0);
    EXPECT_EQ(above, 1.0);
    EXPECT_TRUE(nan >= 0.0 && nan <= 1.0);
    EXPECT_TRUE(wild >= 0.0 && wild <= 1.0);
}

TEST(Interpolation, ComputedGuidePositions) {
    // Three keyframes on the x axis at 0, 1 and 4 m. The middle one's tangent runs along the
    // axis, as long as the nearer distance; the level factor blends in the chord instead.
    auto xOf = [](const Phc& p) { return p.x * std::pow(10.0, p.w); };
    for (double level : {0.0, 1.0}) {
        MovieRecord r;
        std::string middle = "KeyFrame 10 FPos " + std::to_string(level) + " 1 1";
        ASSERT_EQ(loadText(r, scriptHeader(3, "spline") + keyBlock("KeyFrame 0", "0 0 0 0") +
                                  keyBlock(middle, "1 0 0 0") + keyBlock("KeyFrame 20", "4 0 0 0"))
                      .rc,
                  1);
        const KeyFrame& k = r.keyFrame(1);
        EXPECT_NEAR(xOf(k.guideIn.viewPos), level == 0.0 ? 0.5 : 1.0 / 3.0, 1e-12) << level;
        EXPECT_NEAR(xOf(k.guideOut.viewPos), level == 0.0 ? 1.5 : 5.0 / 3.0, 1e-12) << level;
        // The ends look a sixth of the way to their neighbour; the outer guides stay the view.
        EXPECT_NEAR(xOf(r.keyFrame(0).guideOut.viewPos), 1.0 / 6.0, 1e-12);
        EXPECT_EQ(r.keyFrame(0).guideIn.viewPos, (Phc{0, 0, 0, 0}));
        EXPECT_NEAR(xOf(r.keyFrame(2).guideIn.viewPos), 3.5, 1e-12);
        EXPECT_EQ(r.keyFrame(2).guideOut.viewPos, (Phc{4, 0, 0, 0}));

        if (level == 0.0) {
            // Halfway through the first segment: Bezier(0, 1/6, 1/2, 1; 1/2).
            View v;
            ASSERT_EQ(r.evaluateFrame(5.0, v), 1);
            EXPECT_NEAR(xOf(v.viewPos), 0.375, 1e-12);
        }
    }

    // A break makes each side see only its own neighbour.
    MovieRecord broken;
    ASSERT_EQ(loadText(broken, scriptHeader(3, "spline") + keyBlock("KeyFrame 0", "0 0 0 0") +
                                   keyBlock("KeyFrame 10 Break", "1 0 0 0") +
                                   keyBlock("KeyFrame 20", "1 1 0 0"))
                  .rc,
              1);
    const KeyFrame& k = broken.keyFrame(1);
    Phc in = phcNormalized(k.guideIn.viewPos);
    Phc out = phcSub(k.guideOut.viewPos, k.view.viewPos);
    EXPECT_NEAR(phcLengthMeters(in), 1.0 - 1.0 / 6.0, 1e-12);
    EXPECT_NEAR(in.y, 0.0, 1e-12);
    EXPECT_NEAR(phcLengthMeters(out), 1.0 / 6.0, 1e-12);
    EXPECT_NEAR(phcNormalized(out).y, 1.0, 1e-12);
}

TEST(Interpolation, ComputedGuideFieldOfView) {
    // fovy 10, 20, 60 at equal spacing, level 0: the middle guides sit half the nearer
    // distance away, below and above.
    MovieRecord r;
    ASSERT_EQ(loadText(r, scriptHeader(3, "linear spline-fovy") +
                              keyBlock("KeyFrame 0", "0 0 0 0", "0 0 -1", "0 1 0", "10") +
                              keyBlock("KeyFrame 10", "1 0 0 0", "0 0 -1", "0 1 0", "20") +
                              keyBlock("KeyFrame 20", "2 0 0 0", "0 0 -1", "0 1 0", "60"))
                  .rc,
              1);
    EXPECT_DOUBLE_EQ(r.keyFrame(1).guideIn.fovy, 15.0);
    EXPECT_DOUBLE_EQ(r.keyFrame(1).guideOut.fovy, 25.0);
    EXPECT_DOUBLE_EQ(r.keyFrame(0).guideOut.fovy, 10.0 + 10.0 / 6.0);
    EXPECT_DOUBLE_EQ(r.keyFrame(2).guideIn.fovy, 60.0 - 40.0 / 6.0);
}
