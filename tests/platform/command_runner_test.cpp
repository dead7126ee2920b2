// External commands run without a command interpreter.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/command_runner.h"

namespace {

bool exists(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

}  // namespace

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
    EXPECT_TRUE(exists(name));
    EXPECT_FALSE(exists("pwned"));
    EXPECT_FALSE(exists("pwned2"));
    std::remove(name.c_str());
}
