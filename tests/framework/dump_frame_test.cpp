// Writing dumped frames: the PNM file and its name, the missing head, and compression that
// replaces an older file and never goes through a command interpreter.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/dumps.h"
#include "framework/framework_state.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

TEST(DumpFrame, WritesAPpmNamedByHeadAndNumberOrNothingWithoutAHead) {
    const testsupport::ScratchDir dir;
    winWidth = 4;
    winHeight = 2;
    gzipFrames = false;
    std::vector<unsigned char> image;
    for (int i = 0; i < 24; ++i)
        image.push_back(static_cast<unsigned char>(i * 10));
    testing::internal::CaptureStderr();
    dumpFrame(dir.file("out"), 7, image.data());
    dumpFrame(dir.file("out"), 12345, image.data());
    dumpFrame("", 0, image.data());
    EXPECT_EQ("write frame to [" + dir.file("out.0007.pnm]\nwrite frame to [") +
                  dir.file("out.12345.pnm]\nErr (dumpFrame): header is null.\n"),
              testing::internal::GetCapturedStderr());
    EXPECT_EQ(std::string("P6\n4 2\n255\n") + std::string(image.begin(), image.end()),
              testsupport::readFile(dir.file("out.0007.pnm")));
    EXPECT_EQ(2u, testsupport::listDir(dir.path()).size());

    if (!testsupport::haveProgram("gzip")) GTEST_SKIP() << "no gzip";
    gzipFrames = true;
    const std::string head = dir.file("my frame;touch pwned");
    testing::internal::CaptureStderr();
    dumpFrame(head, 100, image.data());
    dumpFrame(head, 100, image.data());  // again: the older .gz is replaced, nothing asked
    EXPECT_EQ(2, testsupport::countLines(testing::internal::GetCapturedStderr(),
                                         "Run [gzip " + head + ".0100.pnm]"));
    EXPECT_TRUE(testsupport::fileExists(head + ".0100.pnm.gz"));
    EXPECT_FALSE(testsupport::fileExists(head + ".0100.pnm"));
    EXPECT_FALSE(testsupport::fileExists("pwned"));
    gzipFrames = false;
}
