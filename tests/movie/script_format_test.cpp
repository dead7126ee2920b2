// The movie script layout: every error message with its line number, and the accepted forms.

#include <gtest/gtest.h>

#include "script_fixture.h"

namespace {

struct BadScript {
    const char* what;
    std::string text;
    std::string err;
};

void expectFailures(const std::vector<BadScript>& cases) {
    for (const BadScript& c : cases) {
        MovieRecord r;
        LoadResult res = loadText(r, c.text);
        EXPECT_EQ(res.rc, -1) << c.what;
        EXPECT_EQ(res.err, c.err) << c.what;
    }
}

const std::string kOneKey = keyBlock("KeyFrame 0");

}  // namespace

TEST(ScriptFormat, HeaderResolutionInterpAndCountErrors) {
    const std::string rest = "interp : linear\nnKeyFrames : 1\n" + kOneKey;
    expectFailures({
        {"empty file", "", "Err : (line 1) Wrong/Missing script header [Movie Script]\n\n"},
        {"wrong header", "Movie Scripts\n-----\n",
         "Err : (line 1) Wrong/Missing script header [Movie Script]\n\n"},
        {"header with a trailing blank", "Movie Script \n-----\n",
         "Err : (line 1) Wrong/Missing script header [Movie Script]\n\n"},
        {"no separator", "Movie Script\nresolution : 640 x 480\n",
         "Err : (line 2) should be ----- after header [Movie Script]\n\n"},
        {"separator with text", "Movie Script\n--- x\n",
         "Err : (line 2) should be ----- after header [Movie Script]\n\n"},
        {"resolution word", "Movie Script\n-----\n\n# size\nsize : 640 x 480\n" + rest,
         "Err : (line 5) missing identifier [resolution]\n\n"},
        {"resolution colon", "Movie Script\n-----\nresolution = 640 x 480\n" + rest,
         "Err : (line 3) format should be [resolution : <winW> x <winH>]\n\n"},
        {"resolution x", "Movie Script\n-----\nresolution : 640 by 480\n" + rest,
         "Err : (line 3) format should be [resolution : <winW> x <winH>]\n\n"},
        {"resolution four fields", "Movie Script\n-----\nresolution : 640x480\n" + rest,
         "Err : (line 3) format should be [resolution : <winW> x <winH>]\n\n"},
        {"resolution zero", "Movie Script\n-----\nresolution : 0 x 480\n" + rest,
         "Err : (line 3) Non-positive window sizes [0 x 480]\n\n"},
        {"resolution negative", "Movie Script\n-----\nresolution : 640 x -2\n" + rest,
         "Err : (line 3) Non-positive window sizes [640 x -2]\n\n"},
        {"resolution huge", "Movie Script\n-----\nresolution : 99999999999 x 480\n" + rest,
         "Err : (line 3) window sizes too large [99999999999 x 480] (max:16384)\n\n"},
        {"interp word", "Movie Script\n-----\nresolution : 640 x 480\ninterpolation : linear\n",
         "Err : (line 4) missing identifier [interp]\n\n"},
        {"interp colon", "Movie Script\n-----\nresolution : 640 x 480\ninterp linear\n",
         "Err : (line 4) missing token [:] after [interp]\n\n"},
        {"interp unknown", "Movie Script\n-----\nresolution : 640 x 480\ninterp : spline cubic\n",
         "Err : (line 4) undefined interpolation method [cubic]\n"
         "      valid interp method should be:\n"
         "        - [linear]\n        - [spline]\n        - [linear-quat]\n"
         "        - [spline-quat]\n        - [linear-fovy]\n        - [spline-fovy]\n"
         "        - [linear-aspect-ratio]\n        - [spline-aspect-ratio]\n"},
        {"count two fields", "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nnKeyFrames :\n",
         "Err : (line 5) the format should be [nKeyFrames : <# of keyframes>]\n\n"},
        {"count not a number",
         "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nnKeyFrames : two\n",
         "Err : (line 5) the format should be [nKeyFrames : <# of keyframes>]\n\n"},
        {"count word", "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nkeyframes : 2\n",
         "Err : (line 5) missing identifier [nFrames/nKeyFrames]\n\n"},
        {"count colon", "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nnFrames = 2\n",
         "Err : (line 5) the format should be [nKeyFrames : <# of keyframes>]\n\n"},
        {"count negative", "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nnFrames : -3\n",
         "Err : (line 5) number of keyframes should be positive\n\n"},
        {"end of file before the count", "Movie Script\n-----\nresolution : 1 x 1\ninterp :\n\n",
         "Err : (line 5) Encounter EOF without the data.\n"},
        {"no keyframe after the definitions", scriptHeader(2) + "define a 1\n\n",
         "Err: (line 7) no more keyframe to read?\n\n"},
    });
}

TEST(ScriptFormat, AcceptedHeaderForms) {
    MovieRecord r;
    // Carriage-return line ends, comments and blank lines between the header lines, interp
    // words where a later word for the same channel wins, and the nFrames spelling.
    std::string text =
        "Movie Script\r\n- - -\r\n# comment\n\n  resolution : 800 x 600 # SVGA\n"
        "interp : spline linear-quat spline-quat spline-fovy linear-aspect-ratio "
        "spline-aspect-ratio linear-fovy\nnFrames : 1\n" +
        kOneKey;
    LoadResult res = loadText(r, text);
    ASSERT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(res.err, "");
    int w = 0, h = 0;
    r.getResolution(w, h);
    EXPECT_EQ(w, 800);
    EXPECT_EQ(h, 600);
    EXPECT_EQ(r.interpMethod(), INTERP_SPLINE);
    EXPECT_EQ(r.interpMethodQuat(), INTERP_SPLINE_QUAT);
    EXPECT_EQ(r.interpMethodFovy(), INTERP_LINEAR_FOVY);
    EXPECT_EQ(r.interpMethodAspect(), INTERP_SPLINE_ASPECT);
    EXPECT_EQ(r.keyFrame(0).interpMethod, INTERP_SPLINE);

    MovieRecord fresh;
    fresh.getResolution(w, h);
    EXPECT_EQ(w, 256);
    EXPECT_EQ(h, 256);
    EXPECT_EQ(fresh.totalNumFrame(), 0);
}

TEST(ScriptFormat, ZeroKeyFramesWarnAndGiveAnEmptyMovie) {
    MovieRecord r;
    LoadResult res = loadText(r, scriptHeader(0) + "define a 1\n");
    EXPECT_EQ(res.rc, 1);
    EXPECT_EQ(res.err, "warning: no keyframe in the scp file.\n");
    EXPECT_EQ(r.numKeyFrames(), 0);
    EXPECT_EQ(r.totalNumFrame(), 0);
    View v;
    EXPECT_EQ(r.evaluateFrame(0.0, v), -1);
    int k = 0;
    double t = 0.0;
    EXPECT_EQ(r.locate(0.0, k, t), -1);
    EXPECT_EQ(r.frameOfKeyFrame(0), -1.0);
}

TEST(ScriptFormat, QuietOnlySilencesProgress) {
    std::string text = scriptHeader(1) + kOneKey;
    MovieRecord quiet, loud;
    LoadResult q = loadText(quiet, text, 1);
    LoadResult l = loadText(loud, text, 0);
    EXPECT_EQ(q.rc, 1);
    EXPECT_EQ(q.out, "");
    EXPECT_EQ(q.err, "");
    EXPECT_EQ(l.rc, 1);
    EXPECT_NE(l.out, "");
    EXPECT_EQ(l.err, "");

    MovieRecord missing;
    LoadResult m = loadFile(missing, "/nonexistent/dir/none.scp");
    EXPECT_EQ(m.rc, -1);
    EXPECT_EQ(m.err, "Err : Can't open [/nonexistent/dir/none.scp]\n");
}

TEST(ScriptFormat, DefinitionsComputeAndKeepCaseRules) {
    std::string text = scriptHeader(1) +
                       "define a 2\ndefine b a * 3\ndefine A 7 # a second entry\ndefine c A + 1\n"
                       "define d 10 / 4\ndefine e 1 - 3.5\ndefine f unknown\ndefine g 5xyz\n"
                       "define h b + 0 # comment after five\ndefine a 4\n" +
                       kOneKey;
    MovieRecord ok;
    LoadResult res = loadText(ok, text);
    ASSERT_EQ(res.rc, 1) << res.err;
    const DefinitionTable& d = ok.definitions();
    ASSERT_EQ(d.count(), 9);
    EXPECT_EQ(d.name(0), "a");
    EXPECT_EQ(d.value(0), 4.0);  // replaced by the last line
    EXPECT_EQ(d.name(1), "b");
    EXPECT_EQ(d.value(1), 6.0);
    EXPECT_EQ(d.name(2), "A");
    EXPECT_EQ(d.value(2), 7.0);
    EXPECT_EQ(d.value(3), 3.0);  // "A" looks up the first match regardless of case: a = 2
    EXPECT_EQ(d.value(4), 2.5);
    EXPECT_EQ(d.value(5), -2.5);
    EXPECT_EQ(d.value(6), 0.0);
    EXPECT_EQ(d.value(7), 5.0);
    EXPECT_EQ(d.value(8), 6.0);
    EXPECT_EQ(d.find("B"), 1);
    EXPECT_EQ(d.find("zz"), -1);
}

TEST(ScriptFormat, DefinitionErrors) {
    const std::string formatHelp =
        "        define format should be\n"
        "               [define <definition name> <value>].\n\n"
        "            OR [define <definition name> <value> <operator> <operand>].\n\n"
        "    where <operator> should be +, -, *, or /\n";
    std::string many;
    for (int i = 0; i < 1025; ++i)
        many += "define n" + std::to_string(i) + " " + std::to_string(i) + "\n";
    expectFailures({
        {"four tokens", scriptHeader(1) + "define b = 3\n" + kOneKey,
         "Err: (line 6) [define b = 3]\n" + formatHelp},
        {"two tokens", scriptHeader(1) + "\ndefine x\n" + kOneKey,
         "Err: (line 7) [define x]\n" + formatHelp},
        {"six tokens", scriptHeader(1) + "define x 1 + 2 3\n" + kOneKey,
         "Err: (line 6) [define x 1 + 2 3]\n" + formatHelp},
        {"bad operator", scriptHeader(1) + "define x 1 ^ 2\n" + kOneKey,
         "Err: (line 6) [define <definition name> <value>].\n\n"},
        {"too many", scriptHeader(1) + many + kOneKey,
         "Err: (line 1030) too many definitions in script file (max:1024)\n\n"},
    });
    // Exactly 1024 definitions fit, and replacing one of them adds nothing.
    std::string full;
    for (int i = 0; i < 1024; ++i)
        full += "define n" + std::to_string(i) + " 1\n";
    MovieRecord r;
    LoadResult res = loadText(r, scriptHeader(1) + full + "define n5 2\n" + kOneKey);
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(r.definitions().count(), 1024);
    EXPECT_EQ(r.definitions().value(5), 2.0);
}

TEST(ScriptFormat, KeyFrameHeaderErrors) {
    const std::string unknownHelp =
        "       valid subID are [Break],\n"
        "                       [FPos],\n"
        "                       [FQuat],\n"
        "                       [FFov],\n"
        "                    OR [FAspect].\n";
    expectFailures({
        {"wrong header", scriptHeader(1) + keyBlock("Keyframe 0"),
         "Err : (line 6) Wrong keyframe header [Keyframe]\n"},
        {"no number", scriptHeader(1) + keyBlock("KeyFrame Break"),
         "Err : (line 6) Missing frame number after [KeyFrame]\n"},
        {"only the word", scriptHeader(1) + keyBlock("KeyFrame"),
         "Err : (line 6) Missing frame number after [KeyFrame]\n"},
        {"negative first", scriptHeader(1) + keyBlock("KeyFrame -1"),
         "Err : (line 6) incorrect frame number.\n"},
        {"repeated frame",
         scriptHeader(3) + keyBlock("KeyFrame 0") + keyBlock("KeyFrame 10") +
             keyBlock("KeyFrame 10"),
         "Err : (line 20) incorrect frame number.\n"},
        {"decreasing frame", scriptHeader(2) + keyBlock("KeyFrame 10") + keyBlock("KeyFrame 3"),
         "Err : (line 13) incorrect frame number.\n"},
        {"two factors", scriptHeader(1) + keyBlock("KeyFrame 0 FPos 0.5 1"),
         "Err : (line 6) failed to read 3 arguments after [FPos].\n"},
        {"factor not a number", scriptHeader(1) + keyBlock("KeyFrame 0 FQuat 0.5 x 1"),
         "Err : (line 6) failed to read 3 arguments after [FQuat].\n"},
        {"level 11", scriptHeader(1) + keyBlock("KeyFrame 0 FPos 11 1 1"),
         "Err : (line 6) level-factor (1st arg. of FPos) ranges [0.0,10.0]\n"},
        {"level negative", scriptHeader(1) + keyBlock("KeyFrame 0 FAspect -0.1 1 1"),
         "Err : (line 6) level-factor (1st arg. of FAspect) ranges [0.0,10.0]\n"},
        {"in factor zero", scriptHeader(1) + keyBlock("KeyFrame 0 FFov 1 0 1"),
         "Err : (line 6) in-factor (2nd arg. of FFov) should be positive\n"},
        {"out factor negative", scriptHeader(1) + keyBlock("KeyFrame 0 FQuat 1 1 -2"),
         "Err : (line 6) out-factor (3rd arg. of FQuat) should be positive\n"},
        {"unknown sub-identifier", scriptHeader(1) + keyBlock("KeyFrame 0 Break Smooth"),
         "Err : (line 6) unknown identifiers [Smooth] after [KeyFrame %d].\n" + unknownHelp},
    });
}

TEST(ScriptFormat, HeaderSubIdentifiersAndComment) {
    MovieRecord r;
    std::string text = scriptHeader(2) + keyBlock("KeyFrame 0 FQuat 1 2 3 FFov 0 0.5 0.25") +
                       keyBlock("KeyFrame 10 Break FPos 0.5 1 2 #FAspect 99 99 99 junk");
    LoadResult res = loadText(r, text);
    ASSERT_EQ(res.rc, 1) << res.err;
    const KeyFrame& k0 = r.keyFrame(0);
    EXPECT_EQ(k0.isBreak, 0);
    EXPECT_EQ(k0.quatFactors.level, 1.0);
    EXPECT_EQ(k0.quatFactors.in, 2.0);
    EXPECT_EQ(k0.quatFactors.out, 3.0);
    EXPECT_EQ(k0.fovyFactors.out, 0.25);
    EXPECT_EQ(k0.posFactors.level, 0.0);
    EXPECT_EQ(k0.posFactors.in, 1.0);
    const KeyFrame& k1 = r.keyFrame(1);
    EXPECT_EQ(k1.isBreak, 1);
    EXPECT_EQ(k1.posFactors.level, 0.5);
    EXPECT_EQ(k1.posFactors.in, 1.0);
    EXPECT_EQ(k1.posFactors.out, 2.0);
    EXPECT_EQ(k1.aspectFactors.level, 0.0);
    EXPECT_EQ(k1.aspectFactors.in, 1.0);
    EXPECT_EQ(k1.nFrames, 9);
    EXPECT_EQ(k1.index, 1);
}

TEST(ScriptFormat, ViewBlockErrors) {
    const std::string h = scriptHeader(1) + "KeyFrame 0\n-----\n";
    const std::string pos = "viewPos = 0 0 0 0\n";
    const std::string dir = "viewDir = 0 0 -1\n";
    const std::string up = "viewUp = 0 1 0\n";
    const std::string fovy = "fovy = 45\n";
    expectFailures({
        {"session line", scriptHeader(1) + "KeyFrame 0\nbegin LinPos\n-----\n",
         "Err : (line 7) unknown identifier [begin] encountered.\n"
         "      should be [-----] OR [Begin] OR [End].\n"},
        {"no separator before the end", scriptHeader(1) + "KeyFrame 0\n\n",
         "Err : (line 7) Encounter EOF without the data.\n"},
        {"position identifier", h + "viewPosition = 0 0 0 0\n",
         "Err : (line 8) should have identifier [viewPos] but found [viewPosition].\n"},
        {"position equals sign", h + "viewPos 0 0 0 0\n",
         "Err : (line 8) missing [=] after [viewPos].\n"},
        {"position glued equals", h + "viewPos= 0 0 0 0\n",
         "Err : (line 8) should have identifier [viewPos] but found [viewPos=].\n"},
        {"position three numbers", h + "viewPos = 0 0 0\n",
         "Err : (line 8) missing the argument 4 after [viewPos].\n"},
        {"position text", h + "viewPos = 0 0 zero 0\n",
         "Err : (line 8) missing the argument 3 after [viewPos].\n"},
        {"direction identifier", h + pos + "dir = 0 0 1\n",
         "Err : (line 9) should have identifier [viewDir] OR [viewVec] but found [dir].\n"},
        {"direction equals", h + pos + "viewVec : 0 0 1\n",
         "Err : (line 9) missing [=] after [viewDir] OR [viewVec].\n"},
        {"direction two numbers", h + pos + "viewDir = 0 0\n",
         "Err : (line 9) missing the argument 3 after [viewDir] or [viewVec].\n"},
        {"direction zero", h + pos + "viewDir = 0 0 0\n",
         "Err : (line 9) viewDir should be a non-zero vector.\n"},
        {"up identifier", h + pos + dir + "up = 0 1 0\n",
         "Err : (line 10) should have identifier [viewUp] OR [upVec] but found [up].\n"},
        {"up missing", h + pos + dir + "upVec =\n",
         "Err : (line 10) missing the argument 1 after [viewUp] or [upVec].\n"},
        {"up zero", h + pos + dir + "upVec = 0 0 0\n",
         "Err : (line 10) viewUp should be a non-zero vector.\n"},
        {"fovy identifier", h + pos + dir + up + "fov = 45\n",
         "Err : (line 11) should have identifier [fovy] OR [viewFOV] but found [fov].\n"},
        {"fovy zero", h + pos + dir + up + "viewFOV = 0\n",
         "Err : (line 11) fovy should be positive.\n"},
        {"aspect identifier", h + pos + dir + up + fovy + "ratio = 1\n",
         "Err : (line 12) should have identifier [aspect] but found [ratio].\n"},
        {"aspect equals", h + pos + dir + up + fovy + "aspect\n",
         "Err : (line 12) missing [=] after [aspect].\n"},
        {"aspect negative", h + pos + dir + up + fovy + "aspect = -1\n",
         "Err : (line 12) aspect ratio should be positive.\n"},
        {"aspect missing at the end", h + pos + dir + up + fovy + "\n# end\n",
         "Err : (line 13) Encounter EOF without the data.\n"},
    });
}

TEST(ScriptFormat, ViewBlockAlternativeSpellingsAndNormalising) {
    MovieRecord r;
    std::string text = scriptHeader(1) +
                       "KeyFrame 0\n-----\n"
                       "viewPos = 1 2 3 4 extra tokens ignored\n"
                       "viewVec = 0 0 -5\n"
                       "\n# comment between view lines\n"
                       "upVec\t=\t0 3 4\n"
                       "viewFOV = 30\n"
                       "aspect = 1.5\n";
    LoadResult res = loadText(r, text);
    ASSERT_EQ(res.rc, 1) << res.err;
    const View& v = r.keyFrame(0).view;
    EXPECT_EQ(v.viewPos, (Phc{1, 2, 3, 4}));
    EXPECT_EQ(v.viewDir, (Vec3{0, 0, -1}));
    EXPECT_DOUBLE_EQ(v.viewUp.y, 0.6);
    EXPECT_DOUBLE_EQ(v.viewUp.z, 0.8);
    EXPECT_EQ(v.fovy, 30.0);
    EXPECT_EQ(v.aspect, 1.5);
}

TEST(ScriptFormat, TrailerAfterTheLastKeyFrameIsIgnoredButNotBefore) {
    MovieRecord last;
    LoadResult res =
        loadText(last, scriptHeader(2) + keyBlock("KeyFrame 0") + keyBlock("KeyFrame 10") +
                           "The End\nviewPos = broken\n" + std::string(2000, 'x'));
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(res.err, "");
    EXPECT_EQ(last.numKeyFrames(), 2);

    // More keyframes than announced: the extra ones are not read.
    MovieRecord extra;
    res = loadText(extra, scriptHeader(1) + keyBlock("KeyFrame 0") + keyBlock("KeyFrame 0"));
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(extra.numKeyFrames(), 1);

    expectFailures({
        {"text after an earlier keyframe",
         scriptHeader(2) + keyBlock("KeyFrame 0") + "The End\n" + keyBlock("KeyFrame 10"),
         "Err : (line 13) unknown identifier in [The End].\n"},
        {"guide of unknown side", scriptHeader(2) + keyBlock("KeyFrame 0") + "GuideFrame Mid\n",
         "Err : (line 13) unknown identifier in [GuideFrame Mid].\n"},
        {"end of file before the second keyframe", scriptHeader(2) + keyBlock("KeyFrame 0") + "\n",
         "Err : (line 13) Encounter EOF without the data.\n"},
        {"broken guide view after the last keyframe",
         scriptHeader(1) + keyBlock("KeyFrame 0") + "GuideFrame In\nviewPos = 1\n",
         "Err : (line 14) missing the argument 2 after [viewPos].\n"},
    });

    // Keyframes read before a failure stay in the record.
    MovieRecord partial;
    res = loadText(partial, scriptHeader(3) + keyBlock("KeyFrame 0") + keyBlock("KeyFrame 5") +
                                keyBlock("KeyFrame 5"));
    EXPECT_EQ(res.rc, -1);
    EXPECT_EQ(partial.numKeyFrames(), 2);
}

TEST(ScriptFormat, GivenGuideViewsAreKept) {
    MovieRecord r;
    std::string text = scriptHeader(2, "spline spline-quat spline-fovy") + keyBlock("KeyFrame 0") +
                       "GuideFrame Out\n" + viewLines("1 0 0 1", "1 0 0", "0 0 1", "50", "2") +
                       "GuideFrame In\n" + viewLines("0 1 0 1", "0 1 0", "0 0 1", "40", "3") +
                       keyBlock("KeyFrame 10", "0 0 1 2");
    LoadResult res = loadText(r, text);
    ASSERT_EQ(res.rc, 1) << res.err;
    const KeyFrame& k = r.keyFrame(0);
    EXPECT_EQ(k.guideInGiven, 1);
    EXPECT_EQ(k.guideOutGiven, 1);
    EXPECT_EQ(k.guideOut.viewPos, (Phc{1, 0, 0, 1}));
    EXPECT_EQ(k.guideOut.viewDir, (Vec3{1, 0, 0}));
    EXPECT_EQ(k.guideOut.fovy, 50.0);
    EXPECT_EQ(k.guideIn.viewPos, (Phc{0, 1, 0, 1}));
    EXPECT_EQ(k.guideIn.aspect, 3.0);
    // The second keyframe's guides were not given: its guide-out stays a copy of its view.
    EXPECT_EQ(r.keyFrame(1).guideInGiven, 0);
    EXPECT_EQ(r.keyFrame(1).guideOut.viewPos, r.keyFrame(1).view.viewPos);
}
