// The ezpack and ezunpack command-line tools, run as a user would.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <string>

#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

const std::string kTools = std::string(SKYRAMA_BINARY_DIR) + "/tools/ezpack/";

// Runs a tool with arguments; gives its exit code and what it wrote on standard error.
int runTool(const std::string& command, const ScratchDir& dir, std::string* errors) {
    const std::string log = dir.file("stderr.txt");
    const int status = std::system((kTools + command + " 2>'" + log + "'").c_str());
    const Bytes text = readFile(log);
    *errors = std::string(text.begin(), text.end());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(EzpackTools, PackAndUnpackRoundTrip) {
    ScratchDir dir;
    const std::string text = catalogueText(100000);
    writeFile(dir.file("stars.txt"), text);
    std::string errors;
    ASSERT_EQ(runTool("ezpack " + dir.file("stars.txt") + " " + dir.file("stars.ez"), dir, &errors),
              0)
        << errors;
    EXPECT_EQ(errors, "");
    const Bytes packed = readFile(dir.file("stars.ez"));
    ASSERT_GT(packed.size(), 6u);
    EXPECT_LT(packed.size(), text.size() / 2);
    EXPECT_EQ(packed[0], 'E');
    EXPECT_EQ(packed[1], 'Z');
    EXPECT_EQ(
        runTool("ezunpack " + dir.file("stars.ez") + " " + dir.file("stars.out"), dir, &errors), 0)
        << errors;
    EXPECT_EQ(readFile(dir.file("stars.out")), Bytes(text.begin(), text.end()));
    // A plain input is copied unchanged.
    EXPECT_EQ(
        runTool("ezunpack " + dir.file("stars.txt") + " " + dir.file("copy.txt"), dir, &errors), 0);
    EXPECT_EQ(readFile(dir.file("copy.txt")), Bytes(text.begin(), text.end()));
}

TEST(EzpackTools, MisuseAndBadInputGiveMessagesAndExitCodes) {
    ScratchDir dir;
    std::string errors;
    EXPECT_EQ(runTool("ezpack", dir, &errors), 2);
    EXPECT_EQ(errors, "usage: ezpack <in> <out>\n  packs file <in> into the EZ container <out>\n");
    EXPECT_EQ(runTool("ezunpack onlyone", dir, &errors), 2);
    EXPECT_EQ(errors.rfind("usage: ezunpack <in> <out>\n", 0), 0u) << errors;

    const std::string missing = dir.file("missing");
    EXPECT_EQ(runTool("ezpack " + missing + " " + dir.file("out.ez"), dir, &errors), 1);
    EXPECT_EQ(errors,
              "ezpack: cannot open [" + missing + "] for reading: No such file or directory\n");
    EXPECT_FALSE(fileExists(dir.file("out.ez")));
    EXPECT_EQ(runTool("ezunpack " + missing + " " + dir.file("out"), dir, &errors), 1);
    EXPECT_EQ(errors, "ezunpack: cannot open [" + missing +
                          "]: No such file or directory\nezunpack: failed to unpack [" + missing +
                          "]\n");

    const std::string bad = dir.file("bad.ez");
    writeFile(bad, Bytes{'E', 'Z', 0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
    EXPECT_EQ(runTool("ezunpack " + bad + " " + dir.file("out"), dir, &errors), 1);
    EXPECT_EQ(errors, "\nezunpack: " + bad +
                          ": invalid compressed data--format violated\nezunpack: failed to "
                          "unpack [" +
                          bad + "]\n");
    EXPECT_FALSE(fileExists(dir.file("out")));
}
