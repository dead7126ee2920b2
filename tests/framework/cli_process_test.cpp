// The skyrama program's command-line errors, run as a process without any display: every
// message on standard error byte for byte, exit code 1, no window needed.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace {

const std::string kProgram = testsupport::skyramaProgram();
const std::string kScripts = SKYRAMA_SOURCE_DIR "/tests/framework/scripts/";

std::string usage() {
    return "\n"
           "Usage : " +
           kProgram +
           " <option> <movie script> <.star dataset>\n"
           "      - any argument after script will go to initScene.\n"
           "\n"
           "   <option> : -dump     <movie file head> <frameNum offset>\n"
           "   <option> : -dumpSkip <movie file head> <frameNum offset> <# frame skip>\n"
           "   <option> : -double\n"
           "                   : double the frame rate\n"
           "   <option> : -jitter   <sample jittering size>\n"
           "                   : jittering sizes (2,3,4,5,6,8,9,12,16)\n"
           "   <option> : -fullscreen to set fullscreen mode\n"
           "   <option> : -gzip to gzip raw ppm frame\n"
           "\n"
           "   Image FileNames : movieFileHead(offset+i).pnm\n"
           "                       where i = frameSkip to totalNumFrame-1\n"
           "                         and frameSkip = 0 for -dump\n"
           "\n";
}

testsupport::RunResult runWithoutDisplay(std::vector<std::string> words) {
    words.insert(words.begin(), kProgram);
    testsupport::RunOptions options;
    options.withDisplay = false;
    options.timeoutSeconds = 30.0;
    return testsupport::runProgram(words, options);
}

void expectRefused(const std::vector<std::string>& words, const std::string& err) {
    const testsupport::RunResult r = runWithoutDisplay(words);
    EXPECT_EQ(1, r.exitCode) << words.size();
    EXPECT_EQ(err, r.err);
    EXPECT_EQ("", r.out);
}

}  // namespace

TEST(CommandLineErrors, NoArgumentsPrintsTheUsage) {
    expectRefused({}, usage());
}

TEST(CommandLineErrors, OptionsWithoutAScript) {
    expectRefused({"-gzip", "-double", "-fullscreen"}, "\nErr: No script file\n" + usage());
}

TEST(CommandLineErrors, UnsupportedJitterSizes) {
    for (const char* size : {"7", "1", "abc"}) {
        expectRefused({"-jitter", size, kScripts + "three_frames.scp"},
                      "\nErr: jitterSize not supported!\n\n" + usage());
    }
    expectRefused({"-jitter"}, "\nErr: not enough argument after -jitter\n" + usage());
}

TEST(CommandLineErrors, DumpArguments) {
    expectRefused({"-dump", "head"}, "\nErr: not enough argument after -dump\n" + usage());
    expectRefused({"-dump", "head", "-5", kScripts + "three_frames.scp"},
                  "\nErr: frameNumOffset must be non-negative!\n" + usage());
    expectRefused({"-dumpSkip", "head", "0"},
                  "\nErr: not enough argument <frameNumSkip> after -dumpSkip\n" + usage());
}

TEST(CommandLineErrors, ScriptThatCannotBeLoaded) {
    expectRefused(
        {"no-such-script.scp"},
        "Err : Can't open [no-such-script.scp]\nErr : in movie script [no-such-script.scp]!\n\n");
    const testsupport::RunResult r = runWithoutDisplay({kScripts + "broken.scp", "a.star"});
    EXPECT_EQ(1, r.exitCode);
    const std::string tail = "Err : in movie script [" + kScripts + "broken.scp]!\n\n";
    ASSERT_GE(r.err.size(), tail.size());
    EXPECT_EQ(tail, r.err.substr(r.err.size() - tail.size()));
    EXPECT_EQ(std::string::npos, r.err.find("Usage"));
}

TEST(CommandLineErrors, AWindowTooLargeToDrawIntoIsRefusedBeforeAnyWindow) {
    const testsupport::RunResult r = runWithoutDisplay({kScripts + "too_wide.scp"});
    EXPECT_EQ(1, r.exitCode);
    const std::string tail = "Err : in movie script [" + kScripts + "too_wide.scp]!\n\n";
    ASSERT_GE(r.err.size(), tail.size());
    EXPECT_EQ(tail, r.err.substr(r.err.size() - tail.size()));
}

TEST(CommandLineErrors, AGoodCommandLineWithoutADisplayStillEndsWithExitCodeOne) {
    const testsupport::RunResult r = runWithoutDisplay({kScripts + "three_frames.scp"});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_FALSE(r.timedOut);
}
