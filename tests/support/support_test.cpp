// The shared test helpers themselves: scratch folders go away with everything in them, and
// programs run with the environment, folder and limits asked for, their output kept apart.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

namespace fs = std::filesystem;
using namespace testsupport;

TEST(ScratchFolders, AScratchDirHoldsNestedFilesAndTakesThemAlong) {
    std::string path;
    {
        const ScratchDir dir;
        path = dir.path();
        EXPECT_EQ(0u, path.find(fs::temp_directory_path().string()));
        const std::string file = dir.write("a/b/c.txt", "one\ntwo\n");
        EXPECT_EQ(dir.path() + "/a/b/c.txt", file);
        EXPECT_EQ("one\ntwo\n", readFile(file));
        dir.write("bytes", std::vector<unsigned char>{0, 255, 10});
        EXPECT_EQ(std::string("\0\xff\n", 3), readFile(dir.file("bytes")));
    }
    EXPECT_FALSE(fileExists(path));
}

TEST(ScratchFolders, NamedFoldersLiveInTheWorkingFolderAndStartEmpty) {
    const std::string dir = freshDir("support_fresh");
    EXPECT_EQ((fs::current_path() / ("support_fresh." + std::to_string(getpid()))).string(), dir);
    ASSERT_TRUE(writeFile(dir + "/old/file", "x"));
    EXPECT_EQ(dir, freshDir("support_fresh"));  // made again: emptied
    EXPECT_TRUE(listDir(dir).empty());
    removeDir(dir);
    EXPECT_FALSE(fileExists(dir));
    {
        const ScratchDir named("support_named");
        EXPECT_EQ(fs::current_path().string(), fs::path(named.path()).parent_path().string());
    }
    EXPECT_FALSE(fileExists("support_named." + std::to_string(getpid())));
    EXPECT_EQ("", readFile(dir + "/never/there"));
    EXPECT_FALSE(writeFile("/proc/no/such/place", "x"));
}

TEST(OutputLines, CountedAndPicked) {
    const std::string text = "a\nstate 1\na\nab\nstate 2";
    EXPECT_EQ(2, countLines(text, "a"));
    EXPECT_EQ((std::vector<std::string>{"state 1", "state 2"}), linesStartingWith(text, "state "));
}

TEST(Programs, ExitCodesAndBothStreams) {
    const RunResult r = runProgram({"sh", "-c", "echo out; echo err >&2; exit 3"});
    EXPECT_EQ(3, r.exitCode);
    EXPECT_FALSE(r.timedOut);
    EXPECT_EQ("out\n", r.out);
    EXPECT_EQ("err\n", r.err);
    EXPECT_EQ(128 + 9, runProgram({"sh", "-c", "kill -9 $$"}).exitCode);
    EXPECT_NE(0, runProgram({"no-such-program-anywhere"}).exitCode);
}

TEST(Programs, EnvironmentAndFolderAsAsked) {
    const char* display = std::getenv("DISPLAY");
    const std::string savedDisplay = display != nullptr ? display : "";
    setenv("SUPPORT_TEST_GONE", "here", 1);
    setenv("DISPLAY", ":99", 1);
    RunOptions options;
    options.env = {{"SUPPORT_TEST_SET", "a b"}, {"SUPPORT_TEST_GONE", std::nullopt}};
    options.withDisplay = false;
    options.workingDir = fs::temp_directory_path().string();
    const RunResult r = runProgram(
        {"sh", "-c", "echo \"$SUPPORT_TEST_SET|${SUPPORT_TEST_GONE-unset}|${DISPLAY-none}\"; pwd"},
        options);
    EXPECT_EQ("a b|unset|none\n" + fs::canonical(options.workingDir).string() + "\n", r.out);
    unsetenv("SUPPORT_TEST_GONE");
    if (display != nullptr)
        setenv("DISPLAY", savedDisplay.c_str(), 1);
    else
        unsetenv("DISPLAY");
}

TEST(Programs, ARunPastItsTimeIsKilled) {
    RunOptions options;
    options.timeoutSeconds = 0.3;
    const RunResult r = runProgram({"sleep", "30"}, options);
    EXPECT_TRUE(r.timedOut);
    EXPECT_EQ(-1, r.exitCode);
}

TEST(Programs, ABackgroundProgramIsWatchedAndEndedWithItsOwner) {
    int pid = 0;
    {
        BackgroundProgram p({"sh", "-c", "echo started; echo $$ >&2; exec sleep 30"});
        ASSERT_TRUE(p.started());
        EXPECT_TRUE(p.waitForOut("started", 10.0));
        EXPECT_TRUE(p.running());
        EXPECT_EQ(-1, p.wait(0.1));
        EXPECT_FALSE(p.waitForOut("never said", 0.2));
        pid = std::atoi(p.err().c_str());
    }
    ASSERT_GT(pid, 0);
    EXPECT_FALSE(fileExists("/proc/" + std::to_string(pid) + "/status"));
}

TEST(Programs, FoundOnThePath) {
    EXPECT_TRUE(haveProgram("sh"));
    EXPECT_FALSE(haveProgram("no-such-program-anywhere"));
}
