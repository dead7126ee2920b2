// Command-line parsing: which words are options, which is the script, and the refusals that
// the process test does not already pin down byte for byte.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "framework/command_line.h"

namespace {

struct Args {
    explicit Args(std::vector<std::string> w) : words(std::move(w)) {
        for (std::string& s : words)
            argv.push_back(s.data());
        argv.push_back(nullptr);
    }
    int argc() const { return static_cast<int>(words.size()); }
    std::vector<std::string> words;
    std::vector<char*> argv;
};

int parse(const std::vector<std::string>& words, CommandLine& out, std::string& error) {
    Args a(words);
    return parseCommandLine(a.argc(), a.argv.data(), out, error);
}

}  // namespace

TEST(CommandLine, EveryOptionInAnyOrderBeforeTheScript) {
    CommandLine c;
    std::string error;
    ASSERT_EQ(0, parse({"skyrama", "-double", "-gzip", "-jitter", "16", "-dumpSkip", "out", "100",
                        "2", "-fullscreen", "tour.scp", "a.star", "-jitter"},
                       c, error));
    EXPECT_TRUE(c.doubleRate);
    EXPECT_TRUE(c.gzipFrames);
    EXPECT_TRUE(c.fullscreen);
    EXPECT_TRUE(c.dumpMode);
    EXPECT_EQ(16, c.jitterSize);
    EXPECT_EQ("out", c.movieFileHead);
    EXPECT_EQ(100, c.frameNumOffset);
    EXPECT_EQ(2, c.frameSkip);
    EXPECT_EQ("tour.scp", c.scriptFileName);
    EXPECT_EQ(11, c.firstSceneArg);  // "a.star": words after the script belong to the scene
}

TEST(CommandLine, LaterDumpReplacesEarlierAndResetsTheSkip) {
    CommandLine c;
    std::string error;
    ASSERT_EQ(0,
              parse({"skyrama", "-dumpSkip", "a", "1", "5", "-dump", "b", "7", "s.scp"}, c, error));
    EXPECT_EQ("b", c.movieFileHead);
    EXPECT_EQ(7, c.frameNumOffset);
    EXPECT_EQ(0, c.frameSkip);
}

TEST(CommandLine, UnknownDashWordIsTheScriptAndOptionsAreCaseSensitive) {
    CommandLine c;
    std::string error;
    ASSERT_EQ(0, parse({"skyrama", "-Double", "x"}, c, error));
    EXPECT_FALSE(c.doubleRate);
    EXPECT_EQ("-Double", c.scriptFileName);
    EXPECT_EQ(2, c.firstSceneArg);
}

TEST(CommandLine, Refusals) {
    struct Case {
        std::vector<std::string> words;
        std::string message;
    };
    const std::vector<Case> cases = {
        {{"skyrama"}, ""},
        {{"skyrama", "-gzip", "-double"}, "\nErr: No script file\n"},
        {{"skyrama", "-jitter"}, "\nErr: not enough argument after -jitter\n"},
        {{"skyrama", "-jitter", "0", "s"}, "\nErr: jitterSize not supported!\n\n"},
        {{"skyrama", "-jitter", "-4", "s"}, "\nErr: jitterSize not supported!\n\n"},
        {{"skyrama", "-dumpSkip", "out"}, "\nErr: not enough argument after -dumpSkip\n"},
        {{"skyrama", "-dumpSkip", "out", "0"},
         "\nErr: not enough argument <frameNumSkip> after -dumpSkip\n"},
        {{"skyrama", "-dumpSkip", "out", "0", "-2", "s.scp"},
         "\nErr: frameSkip must be non-negative!\n"},
        {{"skyrama", "-dumpSkip", "out", "0", "2"}, "\nErr: No script file\n"},
    };
    for (const Case& k : cases) {
        CommandLine c;
        std::string error;
        EXPECT_EQ(-1, parse(k.words, c, error)) << k.words.size();
        EXPECT_EQ(k.message, error) << k.words.size();
    }
}

TEST(CommandLine, TextLimits) {
    CommandLine c;
    std::string error;
    const std::string head511(511, 'h'), head512(512, 'h');
    EXPECT_EQ(0, parse({"skyrama", "-dump", head511, "0", "s.scp"}, c, error));
    EXPECT_EQ(-1, parse({"skyrama", "-dump", head512, "0", "s.scp"}, c, error));
    EXPECT_EQ("\nErr: movie file head longer than 511 characters!\n", error);
    EXPECT_EQ(0, parse({"skyrama", std::string(511, 's')}, c, error));
    EXPECT_EQ(-1, parse({"skyrama", std::string(512, 's')}, c, error));
    EXPECT_EQ("\nErr: script file name longer than 511 characters!\n", error);
}

TEST(CommandLine, DecimalValueReadsLeadingDigitsAndHoldsAtTheIntLimits) {
    EXPECT_EQ(12, decimalValue("12abc"));
    EXPECT_EQ(0, decimalValue("abc"));
    EXPECT_EQ(-3, decimalValue("-3"));
    EXPECT_EQ(7, decimalValue("  7"));
    EXPECT_EQ(INT_MAX, decimalValue("99999999999999999999"));
    EXPECT_EQ(INT_MIN, decimalValue("-99999999999999999999"));
}

TEST(CommandLine, TitleNamesTheThirdWordOrTheScript) {
    Args three({"skyrama", "tour.scp", "near.star"});
    EXPECT_EQ("skyrama 1.0 [near.star]", titleFor(three.argc(), three.argv.data(), "tour.scp"));
    Args options({"skyrama", "-gzip", "tour.scp"});
    EXPECT_EQ("skyrama 1.0 [tour.scp]", titleFor(options.argc(), options.argv.data(), "tour.scp"));
    Args two({"skyrama", "tour.scp"});
    EXPECT_EQ("skyrama 1.0 [tour.scp]", titleFor(two.argc(), two.argv.data(), "tour.scp"));
}
