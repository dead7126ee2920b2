// Frames to segments to views: frame counts, channels, timing curve, guides, decades.

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "movie/timing.h"
#include "script_fixture.h"

namespace {

bool sameView(const View& a, const View& b) {
    return a.viewPos == b.viewPos && a.viewDir == b.viewDir && a.viewUp == b.viewUp &&
           a.fovy == b.fovy && a.aspect == b.aspect;
}

std::pair<int, double> located(const MovieRecord& r, double frame) {
    int k = -1;
    double t = -1.0;
    return r.locate(frame, k, t) == 1 ? std::make_pair(k, t) : std::make_pair(-1, -1.0);
}

// A camera looking down -z turned by degrees about +y.
Vec3 turnedAboutY(double degrees) {
    return {-std::sin(degrees * M_PI / 180.0), 0.0, -std::cos(degrees * M_PI / 180.0)};
}
std::string text(const Vec3& v) {
    char s[80];
    std::snprintf(s, sizeof s, "%.17g %.17g %.17g", v.x, v.y, v.z);
    return s;
}

double xMeters(const Phc& p) {
    return p.x * std::pow(10.0, p.w);
}

}  // namespace

TEST(Interpolation, KeyFramesAt0_10_20) {
    MovieRecord r;
    ASSERT_TRUE(
        loaded(r, head(3, "spline spline-quat spline-fovy spline-aspect-ratio") +
                      "KeyFrame 0\n-----\n" + view("1 0 0 3", "0 0 -1", "0 1 0", "45", "1") +
                      "KeyFrame 10\n-----\n" + view("0 1 0 5", "1 0 0", "0 0 1", "20", "2") +
                      "KeyFrame 20\n-----\n" + view("0 0 1 4", "0 -1 0", "1 0 0", "60", "1.5")));
    EXPECT_EQ(r.totalNumFrame(), 21);
    EXPECT_EQ(located(r, 2.5), std::make_pair(0, 0.25));
    EXPECT_EQ(located(r, 10.0), std::make_pair(1, 0.0));
    EXPECT_EQ(located(r, 20.0), std::make_pair(2, 0.0));
    EXPECT_EQ(located(r, 20.001), std::make_pair(-1, -1.0));
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameView(frameView(r, 10.0 * i), r.keyFrame(i).view)) << i;
        EXPECT_EQ(r.frameOfKeyFrame(i), 10.0 * i);
    }
    View outside;
    EXPECT_EQ(r.evaluateFrame(21.0, outside) + r.evaluateSegment(2, 0.5, outside), -2);
}

TEST(Interpolation, PlaybackStartsAtTheFirstKeyFrame) {
    MovieRecord r, single;
    ASSERT_TRUE(loaded(r, head(2) + key("KeyFrame 5") + key("KeyFrame 15")));
    EXPECT_EQ(r.totalNumFrame(), 11);
    EXPECT_EQ(r.frameOfKeyFrame(1), 10.0);
    ASSERT_TRUE(loaded(single, head(1) + key("KeyFrame 7", "", "1 2 3 4")));
    EXPECT_TRUE(single.totalNumFrame() == 1 &&
                sameView(frameView(single, 0.0), single.keyFrame(0).view));
    // The largest frame number makes a long but valid movie.
    MovieRecord longest;
    ASSERT_TRUE(
        loaded(longest, head(2) + key("KeyFrame 0") + key("KeyFrame 1000000000", "", "1 0 0 0")));
    EXPECT_EQ(longest.totalNumFrame(), 1000000001);
    EXPECT_NEAR(phcLengthMeters(frameView(longest, 5e8).viewPos), 0.5, 1e-9);
    View v;
    EXPECT_EQ(longest.evaluateFrame(1e300, v) + longest.evaluateFrame(NAN, v), -2);
}

TEST(Interpolation, TermsMoreThan15DecadesSmallerAreDropped) {
    // 1 m along y, then 10^20 m (or 10^10 m) along x: halfway, is the 0.5 m term kept?
    for (int exponent : {20, 10}) {
        MovieRecord r;
        ASSERT_TRUE(loaded(r, head(2) + key("KeyFrame 0", "", "0 1 0 0") +
                                  key("KeyFrame 10", "", "1 0 0 " + std::to_string(exponent))));
        Phc p = phcNormalized(frameView(r, 5.0).viewPos);
        EXPECT_NEAR(p.w, exponent + std::log10(0.5), 1e-9);
        EXPECT_EQ(p.y > 0.0, exponent == 10) << p.y;
    }
}

TEST(Interpolation, OrientationTakesTheShorterWay) {
    // Turns about y from a to b, halfway at mid: 10 -> 200 degrees goes through -75 (sign
    // flip), 170 -> 190 through 180; equal views stay put.
    const double turns[][3] = {{170, 190, 180}, {10, 200, -75}, {30, 30, 30}};
    for (const std::string interp : {"linear", "linear spline-quat"}) {
        for (const auto& turn : turns) {
            MovieRecord r;
            ASSERT_TRUE(loaded(
                r, head(2, interp) + key("KeyFrame 0", "", "0 0 0 0", text(turnedAboutY(turn[0]))) +
                       key("KeyFrame 10", "", "1 0 0 0", text(turnedAboutY(turn[1])))));
            const View v = frameView(r, 5.0);
            EXPECT_NEAR(angleBetween(v.viewDir, turnedAboutY(turn[2])), 0.0, 1e-7)
                << interp << turn[0];
            EXPECT_NEAR(v.viewUp.y, 1.0, 1e-9) << interp << turn[0];
        }
    }
}

TEST(Interpolation, LinearChannelsUseThePlainParameter) {
    // Uneven spacing and shape factors change the timing curve, which linear channels ignore.
    MovieRecord r;
    ASSERT_TRUE(loaded(
        r, head(3) + "KeyFrame 0 FPos 0.3 2 0.5\n-----\n" +
               view("0 0 0 0", "0 0 -1", "0 1 0", "40", "1") + "KeyFrame 3 FPos 1 0.2 3\n-----\n" +
               view("1 0 0 0", "0 0 -1", "0 1 0", "10", "3") + "KeyFrame 40\n-----\n" +
               view("2 0 0 0", "0 0 -1", "0 1 0", "80", "2")));
    View v = frameView(r, 1.0);
    EXPECT_DOUBLE_EQ(v.fovy, 30.0);
    EXPECT_DOUBLE_EQ(v.aspect, 1.0 + 2.0 / 3.0);
    EXPECT_NEAR(phcLengthMeters(v.viewPos), 1.0 / 3.0, 1e-12);
    v = frameView(r, 3.0 + 37.0 * 0.25);
    EXPECT_DOUBLE_EQ(v.fovy, 10.0 + 70.0 * 0.25);
    EXPECT_DOUBLE_EQ(v.aspect, 3.0 - 0.25);
}

TEST(Interpolation, SplineFieldOfViewFollowsTheTimingCurve) {
    // Timing controls a sixth of the segment times the in factor (2) and out factor (0.5) in.
    MovieRecord r;
    ASSERT_TRUE(loaded(r, head(2, "linear spline-fovy") +
                              key("KeyFrame 0 FPos 0 2 0.5", "", "0 0 0 0", "0 0 -1", "30") +
                              "GuideFrame Out\n" + view("0 0 0 0", "0 0 -1", "0 1 0", "60") +
                              key("KeyFrame 12 FPos 0 3 0.5", "", "1 0 0 0", "0 0 -1", "50") +
                              "GuideFrame In\n" + view("0 0 0 0", "0 0 -1", "0 1 0", "10")));
    for (double f = 1.0; f < 12.0; f += 1.0) {
        View v = frameView(r, f);
        EXPECT_NEAR(v.fovy, bezier1D(30, 60, 10, 50, searchLocalT(0, 4, 11, 12, f)), 1e-12) << f;
        EXPECT_NEAR(phcLengthMeters(v.viewPos), f / 12.0, 1e-12);  // position on the plain t
    }
    EXPECT_NEAR(searchLocalT(0.0, 10.0 / 3.0, 20.0 / 3.0, 10.0, 3.3), 0.33, 1e-6);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(searchLocalT(2.0, 1.0, 5.0, 8.0, 1.0), 0.0);
    EXPECT_EQ(searchLocalT(2.0, 1.0, 5.0, 8.0, 9.0), 1.0);
    double wild = searchLocalT(0.0, 1e9, -1e9, 3.0, 1.5);  // not monotonic: still ends
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "ERR in searchLocalT\nERR in searchLocalT\n");
    EXPECT_TRUE(wild >= 0.0 && wild <= 1.0);
}

TEST(Interpolation, ComputedGuides) {
    // Keyframes at 0, 1 and 7 m on x, fovy 10, 20, 60: level 0 gives a tangent half the nearer
    // distance long, level 1 a sixth of the chord; a break sees one neighbour a side.
    for (const std::string middle : {"FPos 0 1 1", "FPos 1 1 1", "Break"}) {
        MovieRecord r;
        ASSERT_TRUE(loaded(r, head(3, "spline spline-fovy") +
                                  key("KeyFrame 0", "", "0 0 0 0", "0 0 -1", "10") +
                                  key("KeyFrame 10 " + middle, "", "1 0 0 0", "0 0 -1", "20") +
                                  key("KeyFrame 20", "", "7 0 0 0", "0 0 -1", "60")));
        const KeyFrame& k = r.keyFrame(1);
        const double in[] = {0.5, -1.0 / 6.0, 5.0 / 6.0}, out[] = {1.5, 13.0 / 6.0, 2.0};
        const int i = middle == "Break" ? 2 : middle[5] - '0';
        EXPECT_NEAR(xMeters(k.guideIn.viewPos), in[i], 1e-12) << middle;
        EXPECT_NEAR(xMeters(k.guideOut.viewPos), out[i], 1e-12) << middle;
        EXPECT_NEAR(xMeters(r.keyFrame(0).guideOut.viewPos), 1.0 / 6.0, 1e-12);
        EXPECT_NEAR(xMeters(r.keyFrame(2).guideIn.viewPos), 6.0, 1e-12);
        EXPECT_DOUBLE_EQ(k.guideIn.fovy, i < 2 ? 15.0 : 20.0 - 10.0 / 6.0) << middle;
        EXPECT_DOUBLE_EQ(k.guideOut.fovy, i < 2 ? 25.0 : 20.0 + 40.0 / 6.0) << middle;
        EXPECT_DOUBLE_EQ(r.keyFrame(0).guideOut.fovy, 10.0 + 10.0 / 6.0);
        // Halfway through the first segment: Bezier(0, 1/6, guide in, 1; 1/2).
        EXPECT_NEAR(xMeters(frameView(r, 5.0).viewPos), (0.5 + 3.0 * in[i] + 1.0) / 8.0, 1e-12);
    }
}
