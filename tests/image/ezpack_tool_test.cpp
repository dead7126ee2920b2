// The ezpack and ezunpack programs, run as a user would.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tests/image/image_test_util.h"
#include "tests/support/child_process.h"

using namespace imagetest;

namespace {

testsupport::RunResult run(const std::string& tool, const std::vector<std::string>& args) {
    std::vector<std::string> argv = {std::string(SKYRAMA_BINARY_DIR) + "/tools/ezpack/" + tool};
    argv.insert(argv.end(), args.begin(), args.end());
    testsupport::RunOptions options;
    options.withDisplay = false;
    return testsupport::runProgram(argv, options);
}

}  // namespace

TEST(EzpackTools, PackAndUnpackRoundTrip) {
    ScratchDir dir;
    const std::string text = catalogueText(100000);
    const std::string plain = dir.write("stars.txt", text), packed = dir.file("stars.ez");
    testsupport::RunResult r = run("ezpack", {plain, packed});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_LT(testsupport::readFile(packed).size(), text.size() / 2);
    // Unpacking gives the text back; a plain input is copied unchanged.
    for (const std::string& in : {packed, plain}) {
        EXPECT_EQ(run("ezunpack", {in, dir.file("out.txt")}).exitCode, 0) << in;
        EXPECT_EQ(testsupport::readFile(dir.file("out.txt")), text) << in;
    }
}

TEST(EzpackTools, MisuseAndBadInputGiveMessagesAndExitCodes) {
    ScratchDir dir;
    const std::string missing = dir.file("missing"), out = dir.file("out");
    const std::string bad = dir.write("bad.ez", Bytes{'E', 'Z', 0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
    const std::string usage =
        "usage: ezpack <in> <out>\n  packs file <in> into the EZ container <out>\n";
    const std::string notOpened =
        "ezunpack: cannot open [" + missing + "]: No such file or directory\n";
    const std::string damaged =
        "\nezunpack: " + bad + ": invalid compressed data--format violated\n";
    const std::tuple<std::string, std::vector<std::string>, int, std::string> cases[] = {
        {"ezpack", {}, 2, usage},
        {"ezunpack",
         {missing, out},
         1,
         notOpened + "ezunpack: failed to unpack [" + missing + "]\n"},
        {"ezunpack", {bad, out}, 1, damaged + "ezunpack: failed to unpack [" + bad + "]\n"},
    };
    for (const auto& [tool, args, exitCode, err] : cases) {
        testsupport::RunResult r = run(tool, args);
        EXPECT_EQ(r.exitCode, exitCode) << err;
        EXPECT_EQ(r.err, err);
        EXPECT_FALSE(fileExists(out)) << err;
    }
}
