// The skyrama program's command-line errors, run as a process without any display: every
// message on standard error byte for byte and exit code 1.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace {

const std::string kProgram = testsupport::skyramaProgram();
const std::string kScripts = SKYRAMA_SOURCE_DIR "/tests/framework/scripts/";
const std::string kUsage =
    "\nUsage : " + kProgram +
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

testsupport::RunResult runWithoutDisplay(std::vector<std::string> words) {
    words.insert(words.begin(), kProgram);
    testsupport::RunOptions options;
    options.withDisplay = false;
    options.timeoutSeconds = 30.0;
    return testsupport::runProgram(words, options);
}

}  // namespace

TEST(CommandLineErrors, EachMistakeHasItsMessageThenTheUsage) {
    const std::string three = kScripts + "three_frames.scp";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, ""},
        {{"-gzip", "-double", "-fullscreen"}, "\nErr: No script file\n"},
        {{"-jitter", "7", three}, "\nErr: jitterSize not supported!\n\n"},
        {{"-jitter", "abc", three}, "\nErr: jitterSize not supported!\n\n"},
        {{"-jitter"}, "\nErr: not enough argument after -jitter\n"},
        {{"-dump", "head"}, "\nErr: not enough argument after -dump\n"},
        {{"-dump", "head", "-5", three}, "\nErr: frameNumOffset must be non-negative!\n"},
        {{"-dumpSkip", "head", "0"}, "\nErr: not enough argument <frameNumSkip> after -dumpSkip\n"},
    };
    for (const auto& [words, message] : cases) {
        const testsupport::RunResult r = runWithoutDisplay(words);
        EXPECT_EQ(1, r.exitCode) << message;
        EXPECT_EQ(message + kUsage, r.err);
        EXPECT_EQ("", r.out);
    }
}

TEST(CommandLineErrors, ScriptsThatCannotBeUsedAreRefusedBeforeAnyWindow) {
    const testsupport::RunResult missing = runWithoutDisplay({"no-such-script.scp"});
    EXPECT_EQ(1, missing.exitCode);
    EXPECT_EQ(
        "Err : Can't open [no-such-script.scp]\nErr : in movie script [no-such-script.scp]!\n\n",
        missing.err);
    for (const std::string name : {"broken.scp", "too_wide.scp"}) {  // bad layout, huge window
        const testsupport::RunResult r = runWithoutDisplay({kScripts + name, "a.star"});
        EXPECT_EQ(1, r.exitCode);
        const std::string tail = "Err : in movie script [" + kScripts + name + "]!\n\n";
        ASSERT_GE(r.err.size(), tail.size());
        EXPECT_EQ(tail, r.err.substr(r.err.size() - tail.size()));
        EXPECT_EQ(std::string::npos, r.err.find("Usage"));
    }
    // A good command line without a display still ends, with exit code 1.
    const testsupport::RunResult good = runWithoutDisplay({kScripts + "three_frames.scp"});
    EXPECT_EQ(1, good.exitCode);
    EXPECT_FALSE(good.timedOut);
}
