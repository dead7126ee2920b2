// Command-line parsing: which words are options and which is the script, and the refusals
// the process test does not already pin down byte for byte.

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <tuple>
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

TEST(CommandLine, OptionsInAnyOrderBeforeTheScriptAndTheLaterDumpWins) {
    CommandLine c;
    std::string error;
    ASSERT_EQ(0, parse({"skyrama", "-double", "-gzip", "-jitter", "16", "-dumpSkip", "out", "100",
                        "2", "-fullscreen", "tour.scp", "a.star", "-jitter"},
                       c, error));
    EXPECT_TRUE(c.doubleRate && c.gzipFrames && c.fullscreen && c.dumpMode);
    EXPECT_EQ(16, c.jitterSize);
    EXPECT_EQ((std::tuple{"out", 100, 2, "tour.scp", 11}),  // words after the script: the scene's
              (std::tuple{c.movieFileHead, c.frameNumOffset, c.frameSkip, c.scriptFileName,
                          c.firstSceneArg}));

    ASSERT_EQ(0,
              parse({"skyrama", "-dumpSkip", "a", "1", "5", "-dump", "b", "7", "s.scp"}, c, error));
    EXPECT_TRUE(c.movieFileHead == "b" && c.frameSkip == 0);
    CommandLine d;  // options are case-sensitive: an unknown dash word is the script
    ASSERT_EQ(0, parse({"skyrama", "-Double", "x"}, d, error));
    EXPECT_TRUE(!d.doubleRate && d.scriptFileName == "-Double");
}

TEST(CommandLine, RefusalsAndTextLimits) {
    const std::string h511(511, 'h'), h512(512, 'h');
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"skyrama"}, ""},
        {{"skyrama", "-jitter", "-4", "s"}, "\nErr: jitterSize not supported!\n\n"},
        {{"skyrama", "-dumpSkip", "out"}, "\nErr: not enough argument after -dumpSkip\n"},
        {{"skyrama", "-dumpSkip", "out", "0", "-2", "s.scp"},
         "\nErr: frameSkip must be non-negative!\n"},
        {{"skyrama", "-dumpSkip", "out", "0", "2"}, "\nErr: No script file\n"},
        {{"skyrama", "-dump", h512, "0", "s.scp"},
         "\nErr: movie file head longer than 511 characters!\n"},
        {{"skyrama", std::string(512, 's')},
         "\nErr: script file name longer than 511 characters!\n"},
    };
    for (const auto& [words, message] : cases) {
        CommandLine c;
        std::string error;
        EXPECT_EQ(-1, parse(words, c, error)) << message;
        EXPECT_EQ(message, error);
    }
    CommandLine c;
    std::string error;
    EXPECT_EQ(0, parse({"skyrama", "-dump", h511, "0", std::string(511, 's')}, c, error));
    EXPECT_EQ(12, decimalValue("12abc"));
    EXPECT_EQ(INT_MAX, decimalValue("99999999999999999999"));
    EXPECT_EQ(INT_MIN, decimalValue("-99999999999999999999"));
}

TEST(CommandLine, TitleNamesTheThirdWordOrTheScript) {
    Args three({"skyrama", "tour.scp", "near.star"});
    EXPECT_EQ("skyrama 1.0 [near.star]", titleFor(three.argc(), three.argv.data(), "tour.scp"));
    EXPECT_EQ("skyrama 1.0 [tour.scp]", titleFor(2, three.argv.data(), "tour.scp"));
}
