// Malformed, truncated, binary and absurd scripts: a clear message and -1, never a crash.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>
#include <sstream>

#include "script_fixture.h"

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

const std::string kFullScript =
    readFile(std::string(SKYRAMA_SOURCE_DIR) + "/tests/movie/data/full_featured.scp");

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

// A loaded record must evaluate every sampled frame into a finite camera.
void expectPlayable(const MovieRecord& r, const std::string& what) {
    const int total = r.totalNumFrame();
    for (int i = 0; i <= 40 && total > 0; ++i) {
        double f = (total - 1) * (i / 40.0);
        View v;
        ASSERT_EQ(r.evaluateFrame(f, v), 1) << what << " frame " << f;
        EXPECT_TRUE(std::isfinite(v.viewDir.x) && std::isfinite(v.viewUp.y) &&
                    std::isfinite(v.fovy) && std::isfinite(v.aspect))
            << what << " frame " << f;
    }
}

}  // namespace

TEST(BadInput, FullFeaturedScriptLoads) {
    ASSERT_FALSE(kFullScript.empty());
    MovieRecord r;
    LoadResult res = loadText(r, kFullScript);
    ASSERT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(res.err, "");
    EXPECT_EQ(r.numKeyFrames(), 5);
    EXPECT_EQ(r.totalNumFrame(), 121);
    EXPECT_EQ(r.numSessions(), 6);
    EXPECT_DOUBLE_EQ(r.definitions().value(2), (16.4894 + 3) / 2);
    expectPlayable(r, "full script");

    // The same script with carriage-return line ends gives the same movie.
    std::string crlf;
    for (char c : kFullScript)
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    MovieRecord same;
    res = loadText(same, crlf);
    ASSERT_EQ(res.rc, 1) << res.err;
    ASSERT_EQ(same.totalNumFrame(), r.totalNumFrame());
    for (double f = 0.0; f < r.totalNumFrame(); f += 7.5) {
        View a, b;
        r.evaluateFrame(f, a);
        same.evaluateFrame(f, b);
        EXPECT_EQ(a.viewPos, b.viewPos) << f;
        EXPECT_EQ(a.viewDir, b.viewDir) << f;
        EXPECT_EQ(a.fovy, b.fovy) << f;
    }
}

TEST(BadInput, OverLongLines) {
    // 511 characters fit; one more is refused wherever the line stands, comments included.
    std::string fits = "# " + std::string(509, 'x');
    MovieRecord ok;
    LoadResult res = loadText(ok, scriptHeader(1) + fits + "\n" + keyBlock("KeyFrame 0"));
    EXPECT_EQ(res.rc, 1) << res.err;

    struct Case {
        std::string text;
        std::string err;
    };
    const std::vector<Case> cases = {
        {"Movie Script\n-----\n" + fits + "y\n",
         "Err : (line 3) line longer than 511 characters.\n"},
        {scriptHeader(1) + "KeyFrame 0\n-----\nviewPos = 0 0 0 " + std::string(100000, '1') + "\n",
         "Err : (line 8) line longer than 511 characters.\n"},
        {std::string(1 << 20, 'M'), "Err : (line 1) line longer than 511 characters.\n"},
    };
    for (const Case& c : cases) {
        MovieRecord r;
        res = loadText(r, c.text);
        EXPECT_EQ(res.rc, -1);
        EXPECT_EQ(res.err, c.err);
    }
}

TEST(BadInput, AbsurdNumbers) {
    struct Case {
        std::string text;
        std::string err;
    };
    auto oneKey = [](const std::string& header, const std::string& pos = "0 0 0 0") {
        return scriptHeader(1) + keyBlock(header, pos);
    };
    const std::string hugeCount = scriptHeader(2000000000) + keyBlock("KeyFrame 0");
    const std::string hugerCount =
        "Movie Script\n-----\nresolution : 1 x 1\ninterp :\nnKeyFrames : 99999999999999999999999\n";
    const std::vector<Case> cases = {
        {oneKey("KeyFrame nan"), "Err : (line 6) incorrect frame number.\n"},
        {oneKey("KeyFrame inf"), "Err : (line 6) frame number [inf] too large (max:1000000000).\n"},
        {oneKey("KeyFrame 1e300"),
         "Err : (line 6) frame number [1e300] too large (max:1000000000).\n"},
        {scriptHeader(2) + keyBlock("KeyFrame 0") + keyBlock("KeyFrame 4000000000"),
         "Err : (line 13) frame number [4000000000] too large (max:1000000000).\n"},
        {oneKey("KeyFrame 2.5"), "Err : (line 6) frame number [2.5] should be a whole number.\n"},
        {oneKey("KeyFrame 3 FPos nan 1 1"),
         "Err : (line 6) level-factor (1st arg. of FPos) ranges [0.0,10.0]\n"},
        {oneKey("KeyFrame 3 FPos 0 nan 1"),
         "Err : (line 6) in-factor (2nd arg. of FPos) should be positive\n"},
        {oneKey("KeyFrame 3 FPos 0 1 inf"),
         "Err : (line 6) out-factor (3rd arg. of FPos) should be positive\n"},
        {oneKey("KeyFrame 0", "0 0 nan 0"),
         "Err : (line 8) the argument 3 after [viewPos] should be a finite number of magnitude "
         "at most 1e+150.\n"},
        {oneKey("KeyFrame 0", "1e300 1e300 1e300 0"),
         "Err : (line 8) the argument 1 after [viewPos] should be a finite number of magnitude "
         "at most 1e+150.\n"},
        {oneKey("KeyFrame 0", "1 0 0 -inf"),
         "Err : (line 8) the argument 4 after [viewPos] should be a finite number of magnitude "
         "at most 1e+150.\n"},
        {hugeCount, "Err : (line 5) 2000000000 keyframes cannot fit in a script of " +
                        std::to_string(hugeCount.size()) + " bytes\n\n"},
        {hugerCount, "Err : (line 5) 99999999999999999999999 keyframes cannot fit in a script of " +
                         std::to_string(hugerCount.size()) + " bytes\n\n"},
        {scriptHeader(1, "linear", "2147483648 x 2147483648") + keyBlock("KeyFrame 0"),
         "Err : (line 3) window sizes too large [2147483648 x 2147483648] (max:16384)\n\n"},
        {scriptHeader(1, "linear", "-99999999999 x 1") + keyBlock("KeyFrame 0"),
         "Err : (line 3) Non-positive window sizes [-2147483647 x 1]\n\n"},
        {scriptHeader(2) + keyBlock("KeyFrame 0", "0 0 0 0", "0 0 -1", "0 1 0", "45", "1",
                                    "Begin FixAtPt nan 0 0 0\n"),
         "Err : (line 7) Need 4 numbers for fixed pt (in PHC) after [Begin FixAtPt].\n"},
        {scriptHeader(2) + keyBlock("KeyFrame 0", "0 0 0 0", "0 0 -1", "0 1 0", "45", "1",
                                    "Begin FixHeadUp 0 0 0\n"),
         "Err : (line 7) the up vector after [Begin FixHeadUp] should be a non-zero vector.\n"},
    };
    for (const Case& c : cases) {
        MovieRecord r;
        LoadResult res = loadText(r, c.text);
        EXPECT_EQ(res.rc, -1) << c.text.substr(0, 200);
        EXPECT_EQ(res.err, c.err);
    }

    // The largest frame number is a long but valid movie.
    MovieRecord longest;
    LoadResult res = loadText(longest, scriptHeader(2) + keyBlock("KeyFrame 0") +
                                           keyBlock("KeyFrame 1000000000", "1 0 0 0"));
    ASSERT_EQ(res.rc, 1) << res.err;
    EXPECT_EQ(longest.totalNumFrame(), 1000000001);
    View v;
    ASSERT_EQ(longest.evaluateFrame(5e8, v), 1);
    EXPECT_NEAR(phcLengthMeters(v.viewPos), 0.5, 1e-9);
    EXPECT_EQ(longest.evaluateFrame(1e300, v), -1);
    EXPECT_EQ(longest.evaluateFrame(-INFINITY, v), -1);
}

TEST(BadInput, TruncatedScripts) {
    // Cut the script after every byte: the load either fails with an error message or, when
    // only the tail after the last keyframe's view was lost, succeeds.
    const std::size_t lastAspect = kFullScript.rfind("aspect = 1.5");
    for (std::size_t n = 0; n < kFullScript.size(); ++n) {
        MovieRecord r;
        LoadResult res = loadText(r, kFullScript.substr(0, n));
        if (n >= lastAspect + 12) {
            EXPECT_EQ(res.rc, 1) << "cut at " << n << ": " << res.err;
            expectPlayable(r, "cut script");
        } else if (n > lastAspect + 9) {
            EXPECT_EQ(res.rc, 1) << "cut at " << n;  // "aspect = 1" and "aspect = 1." still load
        } else {
            EXPECT_EQ(res.rc, -1) << "cut at " << n;
            EXPECT_TRUE(startsWith(res.err, "Err")) << "cut at " << n << ": " << res.err;
        }
    }
}

TEST(BadInput, BinaryGarbage) {
    std::mt19937 random(1234);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(1 + random() % 3000, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random() & 0xff);
        if (i % 2) bytes = "Movie Script\n-----\n" + bytes;  // garbage after a good start
        MovieRecord r;
        LoadResult res = loadText(r, bytes);
        EXPECT_EQ(res.rc, -1);
        EXPECT_TRUE(startsWith(res.err, "Err")) << res.err;
    }
    // NUL bytes inside otherwise good lines.
    std::string withNul = scriptHeader(1) + keyBlock("KeyFrame 0");
    withNul[withNul.find("viewDir") + 3] = '\0';
    MovieRecord r;
    LoadResult res = loadText(r, withNul);
    EXPECT_EQ(res.rc, -1);
    EXPECT_EQ(res.err,
              "Err : (line 9) should have identifier [viewDir] OR [viewVec] but found [vie].\n");

    // A folder is no script.
    MovieRecord folder;
    res = loadFile(folder, ::testing::TempDir());
    EXPECT_EQ(res.rc, -1);
    EXPECT_TRUE(startsWith(res.err, "Err")) << res.err;
}

TEST(BadInput, RandomEditsNeverBreakTheLoader) {
    // Replace, delete, duplicate or swap pieces of the full script; any outcome but a crash,
    // a hang or a silent failure is acceptable, and a loaded script must play.
    std::mt19937 random(99);
    const char* pieces[] = {
        " ",       "\n",       "-",        "#",   "0", "1e308", "nan",
        "-7",      "KeyFrame", "Begin",    "End", "=", "x",     "GuideFrame In\n",
        "FixAtPt", "Break",    "999999999"};
    for (int i = 0; i < 1500; ++i) {
        std::string text = kFullScript;
        int edits = 1 + random() % 4;
        for (int e = 0; e < edits; ++e) {
            std::size_t at = random() % text.size();
            std::size_t len = random() % 12;
            switch (random() % 4) {
                case 0:
                    text.replace(at, len, pieces[random() % (sizeof pieces / sizeof *pieces)]);
                    break;
                case 1:
                    text.erase(at, len);
                    break;
                case 2:
                    text.insert(at, text.substr(random() % text.size(), len * 8));
                    break;
                default:
                    text[at] = static_cast<char>(random() & 0xff);
                    break;
            }
            if (text.empty()) text = "x";
        }
        MovieRecord r;
        LoadResult res = loadText(r, text);
        ASSERT_TRUE(res.rc == 1 || res.rc == -1);
        if (res.rc == -1) {
            EXPECT_NE(res.err.find("Err"), std::string::npos) << text;
        } else {
            expectPlayable(r, text);
        }
    }
}
