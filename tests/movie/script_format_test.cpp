// Scripts that load: what the record holds afterwards.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "script_fixture.h"

namespace {
std::vector<double> factors(const ChannelFactors& f) {
    return {f.level, f.in, f.out};
}
}  // namespace

TEST(ScriptFormat, HeaderFormsAndQuietLoading) {
    // CRs, comments, blank lines; a later interp word wins; other spellings; vectors normalised.
    const std::string text =
        "Movie Script\r\n- - -\r\n# comment\n\n  resolution : 800 x 600 # SVGA\n"
        "interp : spline linear-quat spline-quat spline-fovy linear-aspect-ratio "
        "spline-aspect-ratio linear-fovy\nnFrames : 1\nKeyFrame 0\n-----\n"
        "viewPos = 1 2 3 4 extra\nviewVec = 0 0 -5\n\n# between\nupVec\t=\t0 3 4\nviewFOV = 30\n"
        "aspect = 1.5\n";
    MovieRecord r, loud;
    ASSERT_TRUE(loaded(r, text));
    int w = 0, h = 0;
    r.getResolution(w, h);
    EXPECT_EQ(std::make_pair(w, h), std::make_pair(800, 600));
    EXPECT_EQ((std::vector<int>{r.interpMethod(), r.interpMethodQuat(), r.interpMethodFovy(),
                                r.interpMethodAspect()}),
              (std::vector<int>{INTERP_SPLINE, INTERP_SPLINE_QUAT, INTERP_LINEAR_FOVY,
                                INTERP_SPLINE_ASPECT}));
    const View& v = r.keyFrame(0).view;
    EXPECT_EQ(v.viewPos, (Phc{1, 2, 3, 4}));
    EXPECT_TRUE(v.viewDir == (Vec3{0, 0, -1}) && v.viewUp == normalized(Vec3{0, 3, 4}));
    EXPECT_EQ(std::make_pair(v.fovy, v.aspect), std::make_pair(30.0, 1.5));
    EXPECT_EQ(loadText(r, text).out, "");
    EXPECT_NE(loadText(loud, text, 0).out, "");  // progress only when not quiet
}

TEST(ScriptFormat, ZeroKeyFramesGiveAnEmptyMovie) {
    MovieRecord r;  // the warning is in script_errors_test.cpp
    ASSERT_EQ(loadText(r, head(0) + "define a 1\n").rc, 1);
    EXPECT_EQ(r.totalNumFrame(), 0);
    View v;
    EXPECT_EQ(r.evaluateFrame(0.0, v), -1);
}

TEST(ScriptFormat, DefinitionArithmeticAndCase) {
    MovieRecord r;
    ASSERT_TRUE(loaded(r, head(1) +
                              "define a 2\ndefine b a * 3\ndefine A 7 # a second entry\n"
                              "define c A + 1\ndefine d 10 / 4\ndefine e 1 - 3.5\n"
                              "define f unknown\ndefine g 5xyz\ndefine a 4\n" +
                              key("KeyFrame 0")));
    const DefinitionTable& d = r.definitions();
    ASSERT_EQ(d.count(), 8);
    // "A" is stored apart from "a", but looking it up finds the first match, a = 2.
    const char* names[] = {"a", "b", "A", "c", "d", "e", "f", "g"};
    const double values[] = {4, 6, 7, 3, 2.5, -2.5, 0, 5};
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(d.name(i) == names[i] && d.value(i) == values[i]) << i << " " << d.name(i);
}

TEST(ScriptFormat, KeyFrameHeaderBreakFactorsAndComment) {
    MovieRecord r;
    ASSERT_TRUE(loaded(r, head(2) + key("KeyFrame 0 FQuat 1 2 3") +
                              key("KeyFrame 10 Break FPos 0.5 1 2 #FAspect 99 99 99 junk")));
    const KeyFrame &k0 = r.keyFrame(0), &k1 = r.keyFrame(1);
    EXPECT_TRUE(k0.isBreak == 0 && k1.isBreak == 1 && k1.nFrames == 9);
    EXPECT_EQ(factors(k0.quatFactors), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(factors(k1.posFactors), (std::vector<double>{0.5, 1, 2}));
    EXPECT_EQ(factors(k1.aspectFactors), (std::vector<double>{0, 1, 1}));  // after the comment
}

TEST(ScriptFormat, TextAfterTheLastKeyFrameIsIgnored) {
    MovieRecord r, partial;
    ASSERT_TRUE(loaded(r, head(2) + key("KeyFrame 0") + key("KeyFrame 10") +
                              "The End\nviewPos = broken\n" + key("KeyFrame 20")));
    EXPECT_EQ(r.numKeyFrames(), 2);
    EXPECT_EQ(
        loadText(partial, head(3) + key("KeyFrame 0") + key("KeyFrame 5") + key("KeyFrame 5")).rc,
        -1);
    EXPECT_EQ(partial.numKeyFrames(), 2);
}
