// What Begin/End sessions do to keyframes and views (messages: script_errors_test.cpp).

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "script_fixture.h"

namespace {

// keys keyframes 10 frames apart on a helix, "Begin <what>" in block begin, End in block end.
std::string helix(int keys, const std::string& interp, int begin = -1, const std::string& what = "",
                  int end = -1) {
    std::string text = head(keys, interp);
    for (int i = 0; i < keys; ++i) {
        char pos[96];
        std::snprintf(pos, sizeof pos, "%.6f %.6f %.6f 3", std::cos(i * 1.1), std::sin(i * 1.1),
                      0.4 * i);
        const std::string name = what.substr(0, what.find(' '));
        text +=
            key("KeyFrame " + std::to_string(10 * i),
                i == begin ? "Begin " + what + "\n" : (i == end ? "End " + name + "\n" : ""), pos);
    }
    return text;
}

double angleTowards(const View& v, const Phc& point) {
    return angleBetween(v.viewDir, phcNormalized(phcSub(point, v.viewPos)).xyz());
}

bool samePosition(const Phc& a, const Phc& b) {
    return phcLengthMeters(phcSub(a, b)) <= 1e-9 * phcLengthMeters(a);
}

}  // namespace

TEST(Sessions, MethodSessionCoversItsSegmentsOnly) {
    MovieRecord spline, linear, mixed;
    ASSERT_TRUE(loaded(spline, helix(7, "spline")));
    ASSERT_TRUE(loaded(linear, helix(7, "linear")));
    ASSERT_TRUE(loaded(mixed, helix(7, "spline", 2, "LinPos", 5)));
    for (double f = 2.5; f <= 60.0; f += 5.0) {
        const Phc s = frameView(spline, f).viewPos, l = frameView(linear, f).viewPos;
        EXPECT_FALSE(samePosition(s, l)) << f;
        EXPECT_TRUE(samePosition(frameView(mixed, f).viewPos, (f > 20.0 && f < 50.0) ? l : s)) << f;
    }
}

TEST(Sessions, FixedPointTurnsKeyFramesAndFramesTowardsIt) {
    MovieRecord r;
    ASSERT_TRUE(loaded(r, helix(5, "spline spline-quat", 1, "FixAtPt 0 0 0 0", 3)));
    const Phc origin{0, 0, 0, 0};
    for (int i = 0; i <= 3; ++i)
        EXPECT_EQ(angleTowards(r.keyFrame(i).view, origin) < 1e-9, i > 0) << "keyframe " << i;
    for (double f = 10.0; f < 30.0; f += 0.5) {
        const View v = frameView(r, f);
        EXPECT_NEAR(angleTowards(v, origin), 0.0, 1e-9) << "frame " << f;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-12) << "frame " << f;
    }
    EXPECT_GT(angleTowards(frameView(r, 38.0), origin), 0.01);
}

TEST(Sessions, HeldUpVectorAndLookAtTogether) {
    MovieRecord r, both;
    ASSERT_TRUE(loaded(r, helix(4, "spline spline-quat", 0, "FixHeadUp 0 2 2", 2)));
    const Vec3 up = normalized(Vec3{0, 1, 1});
    EXPECT_EQ(r.keyFrame(1).view.viewUp, up);
    for (double f = 0.0; f <= 20.0; f += 0.5) {
        const View v = frameView(r, f);
        EXPECT_NEAR(dot(v.viewUp, up), 1.0, 1e-12) << "frame " << f;
        EXPECT_NEAR(dot(v.viewDir, up), 0.0, 1e-12) << "frame " << f;
    }
    // With a fixed point too the direction follows the point.
    ASSERT_TRUE(loaded(
        both, head(2) + key("KeyFrame 0", "Begin FixHeadUp 0 1 0 FixAtPt 0 0 1 1\n", "1 0 0 2") +
                  key("KeyFrame 10", "End FixAtPt FixHeadUp\n", "0 1 0 2")));
    for (double f = 1.0; f < 10.0; f += 1.0) {
        const View v = frameView(both, f);
        EXPECT_NEAR(angleTowards(v, Phc{0, 0, 1, 1}), 0.0, 1e-9) << f;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-12) << f;
    }
}

TEST(Sessions, RotateAboutIsRecordedWithoutEffect) {
    const std::string text =
        head(2) + key("KeyFrame 4", "Begin RotateAbout 1 2 3 4 0 0 2 90 LinAspect # comment\n") +
        key("KeyFrame 10", "End LinAspect\nEnd RotateAbout\n", "1 0 0 0");
    MovieRecord r, quiet;
    EXPECT_EQ(loadText(r, text, 0).err, "Note: begin/end RotateAbout is pending.\n");
    EXPECT_TRUE(loaded(quiet, text));  // a note is neither an error nor a warning
    ASSERT_EQ(r.numSessions(), 2);
    const Session& s = r.session(1);
    EXPECT_EQ(std::make_pair(s.type, s.endKeyFrame), std::make_pair(int{SESSION_ROTATE_ABOUT}, 1));
    EXPECT_EQ(s.rotationAxis, (Vec3{0, 0, 1}));  // normalised
    EXPECT_EQ(frameView(r, 3.0).viewDir, (Vec3{0, 0, -1}));
}
