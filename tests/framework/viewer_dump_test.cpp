// Movie and screen dumps of the running viewer, under a display: file names and numbers,
// skipped and half frames, compression, what the pictures hold, full screen and exit codes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "image/pnm_file.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"
#include "tests/framework/test_scene.h"

namespace {

const std::string kViewer = TEST_VIEWER;
const std::string kEmptyViewer = EMPTY_VIEWER;
const std::string kScripts = SKYRAMA_SOURCE_DIR "/tests/framework/scripts/";
const std::string kThree = kScripts + "three_frames.scp";

class ViewerDump : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!testsupport::haveDisplay()) GTEST_SKIP() << "no display";
        dir_ = testsupport::freshDir("viewer_dump");
    }
    void TearDown() override { testsupport::removeDir(dir_); }

    testsupport::RunResult run(const std::string& program, const std::vector<std::string>& words) {
        std::vector<std::string> argv{program};
        argv.insert(argv.end(), words.begin(), words.end());
        testsupport::RunOptions options;
        options.workingDir = dir_;
        options.timeoutSeconds = 60.0;
        return testsupport::runProgram(argv, options);
    }

    // The RGB pixel at (x, y), y from the top, of a P6 file in the test folder.
    TestRgb pixel(const std::string& name, int x, int y, int* width = nullptr,
                  int* height = nullptr) {
        int w = 0, h = 0, c = 0;
        const std::vector<unsigned char> data = read_pnm((dir_ + "/" + name).c_str(), &w, &h, &c);
        if (width) *width = w;
        if (height) *height = h;
        if (data.empty() || c != 3 || x >= w || y >= h) return {-1, -1, -1};
        const std::size_t i = (static_cast<std::size_t>(y) * w + x) * 3;
        return {data[i], data[i + 1], data[i + 2]};
    }

    std::string dir_;
};

void expectRgb(const TestRgb& expected, const TestRgb& got, const std::string& what) {
    EXPECT_EQ(expected.r, got.r) << what;
    EXPECT_EQ(expected.g, got.g) << what;
    EXPECT_EQ(expected.b, got.b) << what;
}

}  // namespace

TEST_F(ViewerDump, DumpWritesEveryFrameWithTheOffsetAndEndsWithCodeOne) {
    const testsupport::RunResult r = run(kViewer, {"-dump", "out", "100", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ((std::vector<std::string>{"out.0100.pnm", "out.0101.pnm", "out.0102.pnm"}), [&] {
        auto names = testsupport::listDir(dir_);
        std::sort(names.begin(), names.end());
        return names;
    }());
    int w = 0, h = 0;
    for (int f = 0; f < 3; ++f) {
        const std::string name = "out.010" + std::to_string(f) + ".pnm";
        expectRgb(backgroundFor(f), pixel(name, 1, 1, &w, &h), name);
        EXPECT_EQ(64, w);
        EXPECT_EQ(48, h);
    }
    EXPECT_EQ(1, testsupport::countLines(r.err, "write frame to [out.0102.pnm]"));
    EXPECT_EQ(std::string::npos, r.err.find("- dumping to"));  // the command-line dump is silent
}

TEST_F(ViewerDump, DumpSkipWritesOnlyTheFramesFromTheSkipOn) {
    const testsupport::RunResult r = run(kViewer, {"-dumpSkip", "out", "0", "2", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ(std::vector<std::string>{"out.0002.pnm"}, testsupport::listDir(dir_));
    expectRgb(backgroundFor(2), pixel("out.0002.pnm", 1, 1), "frame 2");
}

TEST_F(ViewerDump, DoubleRateGivesAnImageForEveryHalfFrame) {
    const testsupport::RunResult r = run(kViewer, {"-double", "-dump", "half", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ(5u, testsupport::listDir(dir_).size());
    for (int i = 0; i < 5; ++i) {
        const std::string name = "half.000" + std::to_string(i) + ".pnm";
        expectRgb(backgroundFor(i * 0.5), pixel(name, 1, 1), name);
    }
}

TEST_F(ViewerDump, GzipCompressesEachFrameAndAHeadWithShellCharactersRunsNothing) {
    if (!testsupport::haveProgram("gzip")) GTEST_SKIP() << "no gzip";
    const std::string head = "my out;touch pwned";
    const testsupport::RunResult r = run(kViewer, {"-gzip", "-dump", head, "100", kThree});
    EXPECT_EQ(1, r.exitCode);
    auto names = testsupport::listDir(dir_);
    std::sort(names.begin(), names.end());
    EXPECT_EQ((std::vector<std::string>{head + ".0100.pnm.gz", head + ".0101.pnm.gz",
                                        head + ".0102.pnm.gz"}),
              names);
    EXPECT_EQ(1, testsupport::countLines(r.err, "Run [gzip " + head + ".0101.pnm]"));
}

TEST_F(ViewerDump, JitteredDumpHoldsTheAveragedPicture) {
    const testsupport::RunResult r = run(kViewer, {"-jitter", "4", "-dump", "jit", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    ASSERT_EQ(3u, testsupport::listDir(dir_).size());
    expectRgb(backgroundFor(1), pixel("jit.0001.pnm", 1, 1), "background of frame 1");
}

TEST_F(ViewerDump, TheEmptySceneDumpsVisibleAxesAndCubes) {
    const testsupport::RunResult r = run(kEmptyViewer, {"-dump", "sky", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    int w = 0, h = 0, c = 0;
    const auto data = read_pnm((dir_ + "/sky.0000.pnm").c_str(), &w, &h, &c);
    ASSERT_EQ(64u * 48u * 3u, data.size());
    int lit = 0;
    for (unsigned char v : data)
        lit += v > 40 ? 1 : 0;
    EXPECT_GT(lit, 20);  // not black: the axes and the metre cube are drawn
}

TEST_F(ViewerDump, FullScreenStartsAtTheDisplaySizeMinusOne) {
    const testsupport::RunResult r = run(kViewer, {"-fullscreen", "-dump", "full", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    int winW = 0, winH = 0, screenW = 0, screenH = 0, words = 0;
    ASSERT_EQ(5, std::sscanf(r.out.c_str(), "init window=%dx%d screen=%dx%d words=%d", &winW, &winH,
                             &screenW, &screenH, &words))
        << r.out;
    EXPECT_GT(screenW, 1);
    EXPECT_EQ(screenW - 1, winW);
    EXPECT_EQ(screenH - 1, winH);
    EXPECT_EQ(0, words);
}

TEST_F(ViewerDump, ASceneThatFailsToStartEndsWithCodeOne) {
    const testsupport::RunResult r = run(kViewer, {kThree, "fail"});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_EQ(std::string::npos, r.out.find("quitScene"));
}

TEST_F(ViewerDump, AFrameThatCannotBeWrittenEndsTheDumpWithCodeOne) {
    const testsupport::RunResult r = run(kViewer, {"-dump", "missing/folder/out", "0", kThree});
    EXPECT_EQ(1, r.exitCode);
    EXPECT_NE(std::string::npos, r.err.find("Err : writing to [missing/folder/out.0000.pnm]\n"));
    EXPECT_EQ(std::string::npos, r.err.find("out.0001.pnm"));  // nothing after the failure
    EXPECT_TRUE(testsupport::listDir(dir_).empty());
}
