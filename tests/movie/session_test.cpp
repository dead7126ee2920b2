// Begin/End sessions: their messages, and their effect on keyframes and interpolated views.

#include <gtest/gtest.h>

#include <cmath>

#include "script_fixture.h"

namespace {

std::string sessionNameList() {
    return "      should be [LinPos]\n             OR [SplPos]\n             OR [LinQuat]\n"
           "             OR [SplQuat]\n             OR [LinFov]\n             OR [SplFov]\n"
           "             OR [LinAspect]\n             OR [SplAspect]\n             OR [FixAtPt]\n"
           "             OR [FixHeadUp]\n             OR [RotateAbout].\n";
}

// Two keyframes at frames 4 and 10 with the given session lines in each block: the session
// lines of the first start at line 7.
std::string twoKeys(const std::string& first, const std::string& second) {
    return scriptHeader(2) +
           keyBlock("KeyFrame 4", "0 0 0 0", "0 0 -1", "0 1 0", "45", "1", first) +
           keyBlock("KeyFrame 10", "1 0 0 0", "0 0 -1", "0 1 0", "45", "1", second);
}

// Keyframe i of a curved path: positions on a helix, so spline and linear paths differ.
std::string helixKey(int i, const std::string& sessions = "") {
    char pos[96];
    std::snprintf(pos, sizeof pos, "%.6f %.6f %.6f 3", std::cos(i * 1.1), std::sin(i * 1.1),
                  0.4 * i);
    return keyBlock("KeyFrame " + std::to_string(10 * i), pos, "0 0 -1", "0 1 0", "45", "1",
                    sessions);
}

double angleToOrigin(const View& v) {
    Phc towards = phcNormalized(phcScale(v.viewPos, -1.0));
    return angleBetween(v.viewDir, towards.xyz());
}

bool samePosition(const Phc& a, const Phc& b) {
    return phcLengthMeters(phcSub(a, b)) <= 1e-9 * phcLengthMeters(a);
}

}  // namespace

TEST(Sessions, ReadingErrors) {
    struct Case {
        const char* what;
        std::string text;
        std::string err;
    };
    const std::vector<Case> cases = {
        {"unknown after Begin", twoKeys("Begin Linpos\n", ""),
         "Err : (line 7) unknown session name [Linpos] after [Begin].\n" + sessionNameList()},
        {"unknown after End", twoKeys("Begin LinPos\n", "End LinPos FixAt\n"),
         "Err : (line 15) unknown session name [FixAt] after [End].\n" + sessionNameList()},
        {"Begin twice", twoKeys("Begin LinPos\n", "Begin LinPos\n"),
         "Err : (line 15) [Begin LinPos] has been set twice here without [End] in-between!.\n"
         "       You may find your previous [Begin LinPos] at line: KeyFrame 4.\n"},
        {"End without Begin", twoKeys("End SplQuat\n", ""),
         "Err : (line 7) [End SplQuat] has been encountered without [Begin SplQuat] before!.\n"},
        {"pair on one line", twoKeys("Begin LinPos SplPos\n", ""),
         "Err : (line 7) [Begin SplPos] and [Begin LinPos] cannot co-exist\n"
         "       You may find your [Begin LinPos] at line: KeyFrame 4.\n"},
        {"pair across keyframes", twoKeys("Begin SplFov\n", "Begin LinFov\n"),
         "Err : (line 15) [Begin LinFov] and [Begin SplFov] cannot co-exist\n"
         "       You may find your [Begin SplFov] at line: KeyFrame 4.\n"},
        {"fixed point short", twoKeys("Begin FixAtPt 0 0 0\n", ""),
         "Err : (line 7) Need 4 numbers for fixed pt (in PHC) after [Begin FixAtPt].\n"},
        {"fixed point not numbers", twoKeys("Begin FixAtPt 0 0 0 LinPos\n", ""),
         "Err : (line 7) Need 4 numbers for fixed pt (in PHC) after [Begin FixAtPt].\n"},
        {"up short", twoKeys("Begin FixHeadUp 0 1\n", ""),
         "Err : (line 7) Need 3 numbers for fixed pt (in PHC) after [Begin FixHeadUp].\n"},
        {"rotation short", twoKeys("Begin RotateAbout 0 0 0 0 0 0 1\n", ""),
         "Err : (line 7) Need 3 numbers for fixed pt (in PHC) after [Begin RotateAbout].\n"},
        {"never closed", twoKeys("", "Begin SplPos\n"),
         "Err: [Begin SplPos] encountered in the line with Keyframe 10,\n"
         "     but correspond [End SplPos] is missing\n"},
        {"not Begin or End", twoKeys("Start LinPos\n", ""),
         "Err : (line 7) unknown identifier [Start] encountered.\n"
         "      should be [-----] OR [Begin] OR [End].\n"},
    };
    for (const Case& c : cases) {
        MovieRecord r;
        LoadResult res = loadText(r, c.text);
        EXPECT_EQ(res.rc, -1) << c.what;
        EXPECT_EQ(res.err, c.err) << c.what;
    }
}

TEST(Sessions, BeginAndEndInOneBlockOnlyWarn) {
    MovieRecord r;
    LoadResult res = loadText(r, twoKeys("Begin LinPos FixAtPt 5 5 5 5\nEnd LinPos FixAtPt\n", ""));
    EXPECT_EQ(res.rc, 1);
    EXPECT_EQ(
        res.err,
        "Warning : (line 8) same [Begin LinPos] and [End LinPos] here -- effect ignored.\n"
        "Warning : (line 8) same [Begin FixAtPt] and [End FixAtPt] here -- effect ignored.\n");
    EXPECT_EQ(r.numSessions(), 0);
    EXPECT_EQ(r.keyFrame(0).view.viewDir, (Vec3{0, 0, -1}));
    EXPECT_EQ(r.keyFrame(0).fixedLookAtSession, -1);
}

TEST(Sessions, SessionsAreRecordedWithTheirArguments) {
    const std::string text = twoKeys("Begin RotateAbout 1 2 3 4 0 0 2 90 LinAspect # comment\n",
                                     "End LinAspect\nEnd RotateAbout\n");
    MovieRecord r;
    LoadResult res = loadText(r, text, 0);
    ASSERT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(res.err, "Note: begin/end RotateAbout is pending.\n");
    MovieRecord quiet;
    res = loadText(quiet, text, 1);
    EXPECT_EQ(res.rc, 1);
    EXPECT_EQ(res.err, "");  // a note is neither an error nor a warning
    ASSERT_EQ(r.numSessions(), 2);
    EXPECT_EQ(r.session(0).type, SESSION_LIN_ASPECT);
    const Session& s = r.session(1);
    EXPECT_EQ(s.type, SESSION_ROTATE_ABOUT);
    EXPECT_EQ(s.beginKeyFrame, 0);
    EXPECT_EQ(s.endKeyFrame, 1);
    EXPECT_EQ(s.rotationCentre, (Phc{1, 2, 3, 4}));
    EXPECT_EQ(s.rotationAxis, (Vec3{0, 0, 1}));
    EXPECT_EQ(s.rotationAngle, 90.0);
    // A rotation session does not change the path.
    View v;
    ASSERT_EQ(r.evaluateFrame(3.0, v), 1);
    EXPECT_EQ(v.viewDir, (Vec3{0, 0, -1}));
}

TEST(Sessions, The257thSessionIsRefused) {
    // Each keyframe after the first closes the LinPos session of the previous block and opens
    // a new one, so the End in keyframe k's block closes session k.
    auto script = [](int keys) {
        std::string text = scriptHeader(keys);
        for (int k = 0; k < keys; ++k) {
            std::string sessions =
                k == 0 ? "Begin LinPos\n"
                       : (k == keys - 1 ? "End LinPos\n" : "End LinPos\nBegin LinPos\n");
            text += keyBlock("KeyFrame " + std::to_string(k), "0 0 0 0", "0 0 -1", "0 1 0", "45",
                             "1", sessions);
        }
        return text;
    };
    MovieRecord full;
    LoadResult res = loadText(full, script(257));
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(full.numSessions(), 256);

    MovieRecord over;
    res = loadText(over, script(258));
    EXPECT_EQ(res.rc, -1);
    // Keyframe 0 spans lines 6-13, each later one 9 lines; the End of keyframe 257 is the
    // second line of its block.
    const int line = 6 + 8 + 9 * 256 + 1;
    EXPECT_EQ(res.err, "Err: (line " + std::to_string(line) +
                           ") too many [Begin-End] sessions in script file (max:256)\n\n");
}

TEST(Sessions, MethodSessionCoversItsSegmentsOnly) {
    const int keys = 7;
    auto script = [&](const std::string& interp, bool withSession) {
        std::string text = scriptHeader(keys, interp);
        for (int i = 0; i < keys; ++i) {
            std::string s;
            if (withSession && i == 2) s = "Begin LinPos\n";
            if (withSession && i == 5) s = "End LinPos\n";
            text += helixKey(i, s);
        }
        return text;
    };
    MovieRecord spline, linear, mixed;
    ASSERT_EQ(loadText(spline, script("spline", false)).rc, 1);
    ASSERT_EQ(loadText(linear, script("linear", false)).rc, 1);
    ASSERT_EQ(loadText(mixed, script("spline", true)).rc, 1);

    for (int i = 0; i < keys; ++i)
        EXPECT_EQ(mixed.keyFrame(i).interpMethod, (i >= 2 && i < 5) ? INTERP_LINEAR : INTERP_SPLINE)
            << i;
    for (double f = 0.0; f <= 60.0; f += 2.5) {
        View m, s, l;
        ASSERT_EQ(mixed.evaluateFrame(f, m), 1);
        ASSERT_EQ(spline.evaluateFrame(f, s), 1);
        ASSERT_EQ(linear.evaluateFrame(f, l), 1);
        const View& expected = (f > 20.0 && f < 50.0) ? l : s;
        EXPECT_TRUE(samePosition(m.viewPos, expected.viewPos)) << "frame " << f;
        if (std::fmod(f, 10.0) != 0.0) {
            EXPECT_FALSE(samePosition(s.viewPos, l.viewPos)) << f;
        }
    }
}

TEST(Sessions, FixedPointTurnsKeyFramesAndFramesTowardsIt) {
    const int keys = 5;
    std::string text = scriptHeader(keys, "spline spline-quat");
    for (int i = 0; i < keys; ++i) {
        std::string s;
        if (i == 1) s = "Begin FixAtPt 0 0 0 0\n";
        if (i == 3) s = "End FixAtPt\n";
        text += helixKey(i, s);
    }
    MovieRecord r;
    LoadResult res = loadText(r, text);
    ASSERT_EQ(res.rc, 1) << res.err;

    for (int i = 1; i <= 3; ++i) {
        const View& v = r.keyFrame(i).view;
        EXPECT_NEAR(angleToOrigin(v), 0.0, 1e-9) << "keyframe " << i;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-12);
        EXPECT_NEAR(length(v.viewUp), 1.0, 1e-12);
    }
    EXPECT_EQ(r.keyFrame(0).view.viewDir, (Vec3{0, 0, -1}));
    EXPECT_EQ(r.keyFrame(1).fixedLookAtSession, 0);
    EXPECT_EQ(r.keyFrame(2).fixedLookAtSession, 0);
    EXPECT_EQ(r.keyFrame(3).fixedLookAtSession, -1);

    for (double f = 10.0; f < 30.0; f += 0.5) {
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_NEAR(angleToOrigin(v), 0.0, 1e-9) << "frame " << f;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-12) << "frame " << f;
    }
    // After the session the camera turns back to the script's orientation.
    View after;
    ASSERT_EQ(r.evaluateFrame(38.0, after), 1);
    EXPECT_GT(angleToOrigin(after), 0.01);
}

TEST(Sessions, HeldUpVectorAndLookAtTogether) {
    const int keys = 4;
    std::string text = scriptHeader(keys, "spline spline-quat");
    for (int i = 0; i < keys; ++i) {
        std::string s;
        if (i == 0) s = "Begin FixHeadUp 0 0 2\n";
        if (i == 2) s = "End FixHeadUp\n";
        text += keyBlock("KeyFrame " + std::to_string(10 * i), std::to_string(i) + " 1 0 0",
                         i % 2 ? "1 0 -1" : "-1 0 -1", "0 1 0", "45", "1", s);
    }
    MovieRecord r;
    ASSERT_EQ(loadText(r, text).rc, 1);
    for (int i = 0; i <= 2; ++i)
        EXPECT_EQ(r.keyFrame(i).view.viewUp, (Vec3{0, 0, 1})) << i;
    for (double f = 0.0; f < 20.0; f += 0.5) {
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1);
        EXPECT_NEAR(v.viewUp.z, 1.0, 1e-12) << "frame " << f;
        EXPECT_NEAR(v.viewDir.z, 0.0, 1e-12) << "frame " << f;
        EXPECT_NEAR(length(v.viewDir), 1.0, 1e-12);
    }

    // With a fixed point as well, the direction follows the point and up is made
    // perpendicular to it.
    text =
        scriptHeader(2) +
        keyBlock("KeyFrame 0", "1 0 0 2", "0 0 -1", "0 1 0", "45", "1",
                 "Begin FixHeadUp 0 1 0 FixAtPt 0 0 1 1\n") +
        keyBlock("KeyFrame 10", "0 1 0 2", "0 0 -1", "0 1 0", "45", "1", "End FixAtPt FixHeadUp\n");
    MovieRecord both;
    ASSERT_EQ(loadText(both, text).rc, 1);
    for (double f = 1.0; f < 10.0; f += 1.0) {
        View v;
        ASSERT_EQ(both.evaluateFrame(f, v), 1);
        Phc towards = phcNormalized(phcSub(Phc{0, 0, 1, 1}, v.viewPos));
        EXPECT_NEAR(angleBetween(v.viewDir, towards.xyz()), 0.0, 1e-9) << f;
        EXPECT_NEAR(dot(v.viewDir, v.viewUp), 0.0, 1e-12) << f;
    }
}
