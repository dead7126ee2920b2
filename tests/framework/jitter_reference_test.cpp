// A frame dumped with -jitter 4 is the rounded mean of four passes with the table's sub-pixel
// shifts: the passes are rendered here with the same camera and scene and compared byte for
// byte with the file the viewer wrote.

#include <gtest/gtest.h>

#include <GL/freeglut.h>

#include <cmath>
#include <string>
#include <vector>

#include "framework/jitter_tables.h"
#include "image/pnm_file.h"
#include "tests/framework/test_scene.h"
#include "tests/support/child_process.h"
#include "tests/support/gl_test_window.h"
#include "tests/support/scratch_files.h"

namespace {

constexpr int kWidth = 64, kHeight = 48;  // the script's resolution

// One pass as the viewer draws it: the script's first view (eye normalised to unit distance
// on z, fovy 40, aspect 4:3) under a frustum shifted by (jx, jy) pixels.
std::vector<unsigned char> renderPass(double jx, double jy) {
    const double top = std::tan(20.0 * M_PI / 180.0) * 0.01, right = top * 1.3333333333;
    const double dx = jx * 2.0 * right / kWidth, dy = jy * 2.0 * top / kHeight;
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

TEST(JitterReference, DumpedFramesAreTheRoundedMeanOfTheirPasses) {
    if (!testsupport::haveDisplay()) GTEST_SKIP() << "no display";
    const testsupport::ScratchDir scratch("jitter_reference");
    testsupport::RunOptions options;
    options.workingDir = scratch.path();
    const testsupport::RunResult r =
        testsupport::runProgram({TEST_VIEWER, "-jitter", "4", "-dumpSkip", "jit", "0", "0",
                                 SKYRAMA_SOURCE_DIR "/tests/framework/scripts/three_frames.scp"},
                                options);
    ASSERT_EQ(1, r.exitCode) << r.err;
    const auto read = [&](const char* name) {
        int w = 0, h = 0, c = 0;
        auto data = read_pnm(scratch.file(name).c_str(), &w, &h, &c);
        EXPECT_EQ(kWidth * kHeight * 3u, data.size()) << name;
        data.resize(kWidth * kHeight * 3);
        return data;
    };
    const std::vector<unsigned char> dumped = read("jit.0000.pnm"), next = read("jit.0001.pnm");
    const TestRgb bg = backgroundFor(1.0);  // the next frame starts its sums again
    EXPECT_EQ((std::vector<int>{bg.r, bg.g, bg.b}), (std::vector<int>{next[0], next[1], next[2]}));

    SKYRAMA_REQUIRE_WINDOW(kWidth, kHeight);
    const JitterOffset* table = jitterTableFor(4);
    std::vector<std::vector<unsigned char>> passes;
    for (int i = 0; i < 4; ++i)
        passes.push_back(renderPass(table[i].jx, table[i].jy));
    int edgeComponents = 0, mismatches = 0;  // edges: the shifts were really applied
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth * 3; ++x) {
            const std::size_t i = (kHeight - 1 - y) * kWidth * 3 + x;  // GL reads bottom first
            unsigned sum = 0;
            for (const auto& p : passes)
                sum += p[i];
            edgeComponents += passes[0][i] != passes[1][i] ? 1 : 0;
            mismatches += dumped[y * kWidth * 3 + x] != static_cast<int>(sum / 4.0 + 0.5) ? 1 : 0;
        }
    }
    EXPECT_GT(edgeComponents, 10);
    EXPECT_EQ(0, mismatches);
}
