// A frame dumped with -jitter 4 is the rounded mean of four passes with the table's sub-pixel
// shifts: the passes are rendered here with the same camera and scene, summed and averaged,
// and compared byte for byte with the file the viewer wrote.

#include <gtest/gtest.h>

#include <GL/freeglut.h>

#include <cmath>
#include <string>
#include <vector>

#include "framework/jitter_tables.h"
#include "image/pnm_file.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"
#include "tests/framework/test_scene.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kWidth = 64, kHeight = 48;  // the script's resolution
constexpr double kFovy = 40.0, kAspect = 1.3333333333;

// One pass as the viewer draws it: the script's first view (eye normalised to unit distance
// on z) under a frustum shifted by (jx, jy) pixels.
std::vector<unsigned char> renderPass(double jx, double jy) {
    const double top = std::tan(kFovy / 2.0 * M_PI / 180.0) * 0.01;
    const double right = top * kAspect;
    const double dx = jx * 2.0 * right / kWidth;
    const double dy = jy * 2.0 * top / kHeight;
    glViewport(0, 0, kWidth, kHeight);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glFrustum(-right + dx, right + dx, -top + dy, top + dy, 0.01, 10000.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    drawTestPattern(0.0);
    return testsupport::readBackRGB(kWidth, kHeight);
}

}  // namespace

TEST(JitterReference, DumpedFrameIsTheRoundedMeanOfItsPasses) {
    if (!testsupport::haveDisplay()) GTEST_SKIP() << "no display";
    const testsupport::ScratchDir scratch("jitter_reference");
    const std::string& dir = scratch.path();
    testsupport::RunOptions options;
    options.workingDir = dir;
    const testsupport::RunResult r =
        testsupport::runProgram({TEST_VIEWER, "-jitter", "4", "-dumpSkip", "jit", "0", "0",
                                 SKYRAMA_SOURCE_DIR "/tests/framework/scripts/three_frames.scp"},
                                options);
    ASSERT_EQ(1, r.exitCode) << r.err;
    int w = 0, h = 0, c = 0;
    const std::vector<unsigned char> dumped = read_pnm((dir + "/jit.0000.pnm").c_str(), &w, &h, &c);
    ASSERT_EQ(kWidth, w);
    ASSERT_EQ(kHeight, h);

    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    const JitterOffset* table = jitterTableFor(4);
    std::vector<std::vector<unsigned char>> passes;
    for (int i = 0; i < 4; ++i)
        passes.push_back(renderPass(table[i].jx, table[i].jy));

    std::vector<unsigned char> expected(passes[0].size());
    int edgeComponents = 0;  // where the passes disagree: the shifts were really applied
    for (std::size_t i = 0; i < expected.size(); ++i) {
        unsigned sum = 0;
        for (const auto& p : passes)
            sum += p[i];
        edgeComponents += (passes[0][i] != passes[1][i]) ? 1 : 0;
        expected[i] = static_cast<unsigned char>(static_cast<int>(sum / 4.0 + 0.5));
    }
    ASSERT_GT(edgeComponents, 10);

    // The dump holds rows top first; GL reads bottom first.
    int mismatches = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth * 3; ++x) {
            const unsigned char want = expected[(kHeight - 1 - y) * kWidth * 3 + x];
            const unsigned char got = dumped[y * kWidth * 3 + x];
            mismatches += want != got ? 1 : 0;
        }
    }
    EXPECT_EQ(0, mismatches);
}
