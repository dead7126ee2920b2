// Every message of a script that fails to load (or warns), with its line number, byte for
// byte. Scripts are head() (lines 1-5) and key() blocks.

#include <gtest/gtest.h>

#include "script_fixture.h"

namespace {

const std::string kPre = "Movie Script\n-----\n";
const std::string kUpToCount = kPre + "resolution : 1 x 1\ninterp :\n";
const std::string kOneKey = key("KeyFrame 0");

std::string oneKey(const std::string& header) {
    return head(1) + key(header);
}

// One keyframe whose view line i (0 = viewPos, line 8) is replaced.
std::string inView(int i, const std::string& replacement) {
    std::string lines[5] = {"viewPos = 0 0 0 0", "viewDir = 0 0 -1", "viewUp = 0 1 0", "fovy = 45",
                            "aspect = 1"};
    lines[i] = replacement;
    return head(1) + "KeyFrame 0\n-----\n" + lines[0] + "\n" + lines[1] + "\n" + lines[2] + "\n" +
           lines[3] + "\n" + lines[4] + "\n";
}

// Keyframes 4 and 10 with session lines; the first block's start at line 7.
std::string twoKeys(const std::string& first, const std::string& second) {
    return head(2) + key("KeyFrame 4", first) + key("KeyFrame 10", second, "1 0 0 0");
}

// keys keyframes, each closing the LinPos session the one before opened.
std::string sessionChain(int keys) {
    std::string text = head(keys);
    for (int k = 0; k < keys; ++k)
        text +=
            key("KeyFrame " + std::to_string(k),
                (k > 0 ? "End LinPos\n" : "") + std::string(k < keys - 1 ? "Begin LinPos\n" : ""));
    return text;
}

std::string defines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "define n" + std::to_string(i) + " " + std::to_string(i) + "\n";
    return text;
}

const std::string kInterpHelp =
    "      valid interp method should be:\n        - [linear]\n        - [spline]\n"
    "        - [linear-quat]\n        - [spline-quat]\n        - [linear-fovy]\n"
    "        - [spline-fovy]\n        - [linear-aspect-ratio]\n        - [spline-aspect-ratio]\n";
const std::string kDefineHelp =
    "        define format should be\n               [define <definition name> <value>].\n\n"
    "            OR [define <definition name> <value> <operator> <operand>].\n\n"
    "    where <operator> should be +, -, *, or /\n";
const std::string kSubIdHelp =
    "       valid subID are [Break],\n                       [FPos],\n"
    "                       [FQuat],\n                       [FFov],\n"
    "                    OR [FAspect].\n";
const std::string kSessionHelp =
    "      should be [LinPos]\n             OR [SplPos]\n             OR [LinQuat]\n"
    "             OR [SplQuat]\n             OR [LinFov]\n             OR [SplFov]\n"
    "             OR [LinAspect]\n             OR [SplAspect]\n             OR [FixAtPt]\n"
    "             OR [FixHeadUp]\n             OR [RotateAbout].\n";

// With line > 0 the message follows "Err : (line <line>) ", else it is the whole output.
struct Row {
    std::string text;
    int line;
    std::string message;
    int rc = -1;
};

}  // namespace

TEST(ScriptErrors, EveryMessageWithItsLineNumber) {
    const std::string hugeCount = head(2000000000) + kOneKey;
    std::string withNul = head(1) + kOneKey;
    withNul[withNul.find("viewDir") + 3] = '\0';
    const Row rows[] = {
        // The header, resolution, interp and count lines.
        {"", 1, "Wrong/Missing script header [Movie Script]\n\n"},
        {"Movie Script \n-----\n", 1, "Wrong/Missing script header [Movie Script]\n\n"},
        {"Movie Script\n--- x\n", 2, "should be ----- after header [Movie Script]\n\n"},
        {kPre + "\n# size\nsize : 640 x 480\n", 5, "missing identifier [resolution]\n\n"},
        {kPre + "resolution = 640 x 480\n", 3,
         "format should be [resolution : <winW> x <winH>]\n\n"},
        {kPre + "resolution : 0 x -99999999999\n", 3,
         "Non-positive window sizes [0 x -2147483647]\n\n"},
        {kPre + "resolution : 99999999999 x 480\n", 3,
         "window sizes too large [99999999999 x 480] (max:16384)\n\n"},
        {kPre + "resolution : 1 x 1\ninterpolation : linear\n", 4,
         "missing identifier [interp]\n\n"},
        {kPre + "resolution : 1 x 1\ninterp linear\n", 4, "missing token [:] after [interp]\n\n"},
        {kPre + "resolution : 1 x 1\ninterp : spline cubic\n", 4,
         "undefined interpolation method [cubic]\n" + kInterpHelp},
        {kUpToCount + "nKeyFrames : two\n", 5,
         "the format should be [nKeyFrames : <# of keyframes>]\n\n"},
        {kUpToCount + "keyframes : 2\n", 5, "missing identifier [nFrames/nKeyFrames]\n\n"},
        {kUpToCount + "nFrames : -3\n", 5, "number of keyframes should be positive\n\n"},
        {kUpToCount + "\n", 5, "Encounter EOF without the data.\n"},
        {hugeCount, 5,
         "2000000000 keyframes cannot fit in a script of " + std::to_string(hugeCount.size()) +
             " bytes\n\n"},
        {head(0), 0, "warning: no keyframe in the scp file.\n", 1},
        // Definitions.
        {head(2) + "define a 1\n\n", 0, "Err: (line 7) no more keyframe to read?\n\n"},
        {head(1) + "\ndefine b = 3\n" + kOneKey, 0, "Err: (line 7) [define b = 3]\n" + kDefineHelp},
        {head(1) + "define x 1 ^ 2\n" + kOneKey, 0,
         "Err: (line 6) [define <definition name> <value>].\n\n"},
        {head(1) + defines(1025) + kOneKey, 0,
         "Err: (line 1030) too many definitions in script file (max:1024)\n\n"},
        // Keyframe header lines.
        {oneKey("Keyframe 0"), 6, "Wrong keyframe header [Keyframe]\n"},
        {oneKey("KeyFrame Break"), 6, "Missing frame number after [KeyFrame]\n"},
        {head(3) + key("KeyFrame 0") + key("KeyFrame 10") + key("KeyFrame 10"), 20,
         "incorrect frame number.\n"},
        {oneKey("KeyFrame nan"), 6, "incorrect frame number.\n"},
        {head(2) + kOneKey + key("KeyFrame 1e300"), 13,
         "frame number [1e300] too large (max:1000000000).\n"},
        {oneKey("KeyFrame 2.5"), 6, "frame number [2.5] should be a whole number.\n"},
        {oneKey("KeyFrame 0 FPos 0.5 1"), 6, "failed to read 3 arguments after [FPos].\n"},
        {oneKey("KeyFrame 0 FPos 11 1 1"), 6,
         "level-factor (1st arg. of FPos) ranges [0.0,10.0]\n"},
        {oneKey("KeyFrame 0 FFov 1 0 1"), 6, "in-factor (2nd arg. of FFov) should be positive\n"},
        {oneKey("KeyFrame 0 FQuat 1 1 -2"), 6,
         "out-factor (3rd arg. of FQuat) should be positive\n"},
        {oneKey("KeyFrame 0 Break Smooth"), 6,
         "unknown identifiers [Smooth] after [KeyFrame %d].\n" + kSubIdHelp},
        // View blocks.
        {inView(0, "viewPosition = 0 0 0 0"), 8,
         "should have identifier [viewPos] but found [viewPosition].\n"},
        {inView(0, "viewPos 0 0 0 0"), 8, "missing [=] after [viewPos].\n"},
        {inView(0, "viewPos = 0 0 0"), 8, "missing the argument 4 after [viewPos].\n"},
        {inView(0, "viewPos = 0 0 nan 0"), 8,
         "the argument 3 after [viewPos] should be a finite number of magnitude "
         "at most 1e+150.\n"},
        {inView(1, "dir = 0 0 1"), 9,
         "should have identifier [viewDir] OR [viewVec] but found [dir].\n"},
        {withNul, 9, "should have identifier [viewDir] OR [viewVec] but found [vie].\n"},
        {inView(1, "viewVec : 0 0 1"), 9, "missing [=] after [viewDir] OR [viewVec].\n"},
        {inView(1, "viewDir = 0 0"), 9, "missing the argument 3 after [viewDir] or [viewVec].\n"},
        {inView(1, "viewDir = 0 0 0"), 9, "viewDir should be a non-zero vector.\n"},
        {inView(2, "upVec = 0 0 0"), 10, "viewUp should be a non-zero vector.\n"},
        {inView(3, "viewFOV = 0"), 11, "fovy should be positive.\n"},
        {inView(4, "aspect = -1"), 12, "aspect ratio should be positive.\n"},
        {inView(4, "\n# end"), 13, "Encounter EOF without the data.\n"},
        // After a view block; line length.
        {head(2) + kOneKey + "The End\n" + key("KeyFrame 10"), 13,
         "unknown identifier in [The End].\n"},
        {head(2) + kOneKey + "\n", 13, "Encounter EOF without the data.\n"},
        {head(1) + "# " + std::string(510, 'x') + "\n" + kOneKey, 6,
         "line longer than 511 characters.\n"},
        // Session lines.
        {twoKeys("begin LinPos\n", ""), 7,
         "unknown identifier [begin] encountered.\n"
         "      should be [-----] OR [Begin] OR [End].\n"},
        {twoKeys("Begin Linpos\n", ""), 7,
         "unknown session name [Linpos] after [Begin].\n" + kSessionHelp},
        {twoKeys("Begin LinPos\n", "End LinPos FixAt\n"), 15,
         "unknown session name [FixAt] after [End].\n" + kSessionHelp},
        {twoKeys("Begin LinPos\n", "Begin LinPos\n"), 15,
         "[Begin LinPos] has been set twice here without [End] in-between!.\n"
         "       You may find your previous [Begin LinPos] at line: KeyFrame 4.\n"},
        {twoKeys("End SplQuat\n", ""), 7,
         "[End SplQuat] has been encountered without [Begin SplQuat] before!.\n"},
        {twoKeys("Begin LinPos SplPos\n", ""), 7,
         "[Begin SplPos] and [Begin LinPos] cannot co-exist\n"
         "       You may find your [Begin LinPos] at line: KeyFrame 4.\n"},
        {twoKeys("Begin FixAtPt 0 0 0\n", ""), 7,
         "Need 4 numbers for fixed pt (in PHC) after [Begin FixAtPt].\n"},
        {twoKeys("Begin FixHeadUp 0 1\n", ""), 7,
         "Need 3 numbers for fixed pt (in PHC) after [Begin FixHeadUp].\n"},
        {twoKeys("Begin RotateAbout 0 0 0 0 0 0 1\n", ""), 7,
         "Need 3 numbers for fixed pt (in PHC) after [Begin RotateAbout].\n"},
        {twoKeys("Begin FixHeadUp 0 0 0\n", ""), 7,
         "the up vector after [Begin FixHeadUp] should be a non-zero vector.\n"},
        {twoKeys("", "Begin SplPos\n"), 0,
         "Err: [Begin SplPos] encountered in the line with Keyframe 10,\n"
         "     but correspond [End SplPos] is missing\n"},
        {sessionChain(258), 0,
         "Err: (line 2319) too many [Begin-End] sessions in script file (max:256)\n\n"},
        {twoKeys("Begin LinPos FixAtPt 5 5 5 5\nEnd LinPos FixAtPt\n", ""), 0,
         "Warning : (line 8) same [Begin LinPos] and [End LinPos] here -- effect ignored.\n"
         "Warning : (line 8) same [Begin FixAtPt] and [End FixAtPt] here -- effect ignored.\n",
         1},
    };
    for (const Row& row : rows) {
        MovieRecord r;
        LoadResult res = loadText(r, row.text);
        const std::string expected =
            row.line > 0 ? "Err : (line " + std::to_string(row.line) + ") " + row.message
                         : row.message;
        EXPECT_EQ(res.err, expected) << "script:\n" << row.text.substr(0, 400);
        EXPECT_EQ(res.rc, row.rc) << expected;
    }
    MovieRecord missing;
    LoadResult res = loadFile(missing, "/nonexistent/none.scp");
    EXPECT_TRUE(res.err == "Err : Can't open [/nonexistent/none.scp]\n" && res.rc == -1) << res.err;
}

TEST(ScriptErrors, LimitsThemselvesLoad) {
    // 1024 definitions (one replaced), 256 sessions, 511-character lines.
    MovieRecord r;
    LoadResult res = loadText(
        r, head(1) + defines(1024) + "define n5 2\n# " + std::string(509, 'x') + "\n" + kOneKey);
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_TRUE(r.definitions().count() == 1024 && r.definitions().value(5) == 2.0);
    MovieRecord full;
    res = loadText(full, sessionChain(257));
    EXPECT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(full.numSessions(), 256);
}
