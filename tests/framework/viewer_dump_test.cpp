// Movie dumps of the running viewer under a display: file names and numbers, skipped and half
// frames, compression, what the pictures hold, full screen and exit codes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "image/pnm_file.h"
#include "tests/framework/test_scene.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

namespace {

const std::string kThree = SKYRAMA_SOURCE_DIR "/tests/framework/scripts/three_frames.scp";

class ViewerDump : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!testsupport::haveDisplay()) GTEST_SKIP() << "no display";
        dir_ = testsupport::freshDir("viewer_dump");
    }
    void TearDown() override { testsupport::removeDir(dir_); }

    testsupport::RunResult run(std::vector<std::string> argv) {
        testsupport::RunOptions options;
        options.workingDir = dir_;
        return testsupport::runProgram(argv, options);
    }
    std::vector<std::string> files() {
        auto names = testsupport::listDir(dir_);
        std::sort(names.begin(), names.end());
        return names;
    }
    void expectBackground(const std::string& name, double frame) {
        int w = 0, h = 0, c = 0;
        const auto p = read_pnm((dir_ + "/" + name).c_str(), &w, &h, &c);
        ASSERT_EQ(64u * 48u * 3u, p.size()) << name;
        const TestRgb bg = backgroundFor(frame);
        EXPECT_EQ((std::vector<int>{bg.r, bg.g, bg.b}), (std::vector<int>{p[195], p[196], p[197]}))
            << name;
    }

    std::string dir_;
};

}  // namespace

TEST_F(ViewerDump, DumpSkipAndDoubleRateWriteTheirFramesAndEndWithCodeOne) {
    testsupport::RunResult r = run({TEST_VIEWER, "-dump", "out", "100", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ((std::vector<std::string>{"out.0100.pnm", "out.0101.pnm", "out.0102.pnm"}), files());
    for (int f = 0; f < 3; ++f)
        expectBackground("out.010" + std::to_string(f) + ".pnm", f);
    EXPECT_EQ(1, testsupport::countLines(r.err, "write frame to [out.0102.pnm]"));
    EXPECT_EQ(std::string::npos, r.err.find("- dumping to"));  // the command-line dump is silent

    testsupport::removeDir(dir_);
    dir_ = testsupport::freshDir("viewer_dump");
    EXPECT_EQ(1, run({TEST_VIEWER, "-dumpSkip", "out", "0", "2", kThree}).exitCode);
    EXPECT_EQ(std::vector<std::string>{"out.0002.pnm"}, files());
    expectBackground("out.0002.pnm", 2);

    EXPECT_EQ(1, run({TEST_VIEWER, "-double", "-dump", "half", "0", kThree}).exitCode);
    EXPECT_EQ(6u, files().size());  // five half frames beside out.0002.pnm
    for (int i = 0; i < 5; ++i)
        expectBackground("half.000" + std::to_string(i) + ".pnm", i * 0.5);
}

TEST_F(ViewerDump, GzipCompressesEachFrameAndAHeadWithShellCharactersRunsNothing) {
    if (!testsupport::haveProgram("gzip")) GTEST_SKIP() << "no gzip";
    const std::string head = "my out;touch pwned";
    const testsupport::RunResult r = run({TEST_VIEWER, "-gzip", "-dump", head, "100", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ((std::vector<std::string>{head + ".0100.pnm.gz", head + ".0101.pnm.gz",
                                        head + ".0102.pnm.gz"}),
              files());
    EXPECT_EQ(1, testsupport::countLines(r.err, "Run [gzip " + head + ".0101.pnm]"));
}

TEST_F(ViewerDump, FullScreenStartsAtTheDisplaySizeMinusOne) {
    const testsupport::RunResult r =
        run({TEST_VIEWER, "-fullscreen", "-dump", "full", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    int winW = 0, winH = 0, screenW = 0, screenH = 0, words = -1;
    ASSERT_EQ(5, std::sscanf(r.out.c_str(), "init window=%dx%d screen=%dx%d words=%d", &winW, &winH,
                             &screenW, &screenH, &words))
        << r.out;
    EXPECT_GT(screenW, 1);
    EXPECT_EQ(screenW - 1, winW);
    EXPECT_EQ(screenH - 1, winH);
    EXPECT_EQ(0, words);
}

TEST_F(ViewerDump, AFailedSceneOrAnUnwritableFrameEndsWithCodeOne) {
    const testsupport::RunResult failed = run({TEST_VIEWER, kThree, "fail"});
    EXPECT_EQ(1, failed.exitCode);
    EXPECT_EQ(std::string::npos, failed.out.find("quitScene"));

    const testsupport::RunResult r = run({TEST_VIEWER, "-dump", "missing/folder/out", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("Err : writing to [missing/folder/out.0000.pnm]\n"));
    EXPECT_EQ(std::string::npos, r.err.find("out.0001.pnm"));  // nothing after the failure
    EXPECT_TRUE(files().empty());
}
