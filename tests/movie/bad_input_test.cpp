// A script using every feature plays; truncated, binary and mangled scripts give a message
// and -1, never a crash or a hang.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "script_fixture.h"
#include "tests/support/scratch_files.h"

namespace {

const std::string kFullScript =
    testsupport::readFile(std::string(SKYRAMA_SOURCE_DIR) + "/tests/movie/data/full_featured.scp");

// A failed load prints an error (perhaps after warnings); a loaded script plays finite views.
void expectHandled(const std::string& text) {
    MovieRecord r;
    LoadResult res = loadText(r, text);
    ASSERT_TRUE(res.rc == 1 || res.rc == -1) << res.err;
    ASSERT_TRUE(res.rc == 1 || res.err.find("Err") != std::string::npos) << res.err << text;
    for (int i = 0; i <= 40 && r.totalNumFrame() > 0; ++i) {
        View v = frameView(r, (r.totalNumFrame() - 1) * (i / 40.0));
        ASSERT_TRUE(std::isfinite(v.viewDir.x + v.viewUp.y + v.viewPos.w + v.fovy + v.aspect));
    }
}

}  // namespace

TEST(BadInput, FullFeaturedScriptLoadsAlsoWithCarriageReturns) {
    MovieRecord r, crlf;
    ASSERT_TRUE(loaded(r, kFullScript));
    EXPECT_EQ(r.totalNumFrame(), 121);
    EXPECT_EQ(r.numSessions(), 6);
    EXPECT_DOUBLE_EQ(r.definitions().value(2), (16.4894 + 3) / 2);
    EXPECT_EQ(r.keyFrame(1).guideOut.fovy, 70.0);  // given, not computed
    std::string text;
    for (char c : kFullScript)
        text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    ASSERT_TRUE(loaded(crlf, text));
    for (double f = 0.0; f < 121; f += 7.5)
        EXPECT_EQ(frameView(crlf, f).viewPos, frameView(r, f).viewPos) << f;
}

TEST(BadInput, TruncatedScripts) {
    // Cut after every byte: a message unless only what follows the last "aspect = 1" is lost.
    const std::size_t lastAspect = kFullScript.rfind("aspect = 1.5");
    for (std::size_t n = 0; n < kFullScript.size(); ++n) {
        MovieRecord r;
        LoadResult res = loadText(r, kFullScript.substr(0, n));
        EXPECT_EQ(res.rc, n >= lastAspect + 10 ? 1 : -1) << "cut at " << n << ": " << res.err;
        EXPECT_EQ(res.err.rfind("Err", 0), res.rc == 1 ? std::string::npos : 0u) << n;
    }
}

TEST(BadInput, GarbageAndMangledScripts) {
    std::mt19937 random(1234);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(1 + random() % 3000, '\0');
        for (char& c : bytes)
            c = static_cast<char>(random() & 0xff);
        expectHandled(i % 2 ? "Movie Script\n-----\n" + bytes : bytes);
    }
    expectHandled(std::string(1 << 20, 'M'));  // one huge line
    MovieRecord folder;
    EXPECT_NE(loadFile(folder, SKYRAMA_SOURCE_DIR).err.find("Err"), std::string::npos);

    // Pieces replaced by words of the format, numbers, nothing, other pieces or a byte.
    const std::string words[] = {" ",   "\n",       "-",     "#",   "0",  "1e308",
                                 "nan", "KeyFrame", "Begin", "End", "=",  "GuideFrame In\n",
                                 "x",   "FixAtPt",  "Break", "",    "-7", "999999999"};
    for (int i = 0; i < 1500; ++i) {
        std::string text = kFullScript;
        for (int edits = 1 + random() % 4; edits > 0 && !text.empty(); --edits) {
            const std::size_t at = random() % text.size(), length = random() % 12;
            const int pick = random() % 20;
            text.replace(at, length,
                         pick < 18   ? words[pick]
                         : pick < 19 ? text.substr(random() % text.size(), length * 8)
                                     : std::string(1, static_cast<char>(random())));
        }
        expectHandled(text.empty() ? "x" : text);
    }
}
