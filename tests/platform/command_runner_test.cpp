// External commands run without a command interpreter.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "platform/command_runner.h"
#include "tests/support/scratch_files.h"

using testsupport::fileExists;

TEST(RunCommand, ReturnsTheProgramsExitStatus) {
    EXPECT_EQ(0, platform::runCommand({"true"}));
    EXPECT_EQ(1, platform::runCommand({"false"}));
    EXPECT_EQ(3, platform::runCommand({"sh", "-c", "exit 3"}));
}

TEST(RunCommand, NothingToRun) {
    EXPECT_EQ(-1, platform::runCommand({}));
    EXPECT_EQ(-1, platform::runCommand({""}));
    const int missing = platform::runCommand({"no-such-program-anywhere"});
    EXPECT_TRUE(missing == -1 || missing == 127) << missing;
}

TEST(RunCommand, WordsReachTheProgramUnchanged) {
    const std::string name = "run command; touch pwned $(touch pwned2) 'q'";
    std::remove(name.c_str());
    ASSERT_EQ(0, platform::runCommand({"touch", "--", name}));
    EXPECT_TRUE(fileExists(name));
    EXPECT_FALSE(fileExists("pwned"));
    EXPECT_FALSE(fileExists("pwned2"));
    std::remove(name.c_str());
}
