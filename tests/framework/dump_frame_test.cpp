// Writing dumped frames: file names, the PNM written, the missing head, write failures and
// compression that never goes through a command interpreter.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/dumps.h"
#include "framework/framework_state.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

namespace {

class DumpFrame : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = testsupport::freshDir("dump_frame");
        winWidth = 4;
        winHeight = 2;
        gzipFrames = false;
        for (int i = 0; i < 24; ++i)
            image_.push_back(static_cast<unsigned char>(i * 10));
    }
    void TearDown() override {
        gzipFrames = false;
        testsupport::removeDir(dir_);
    }
    std::string dir_;
    std::vector<unsigned char> image_;
};

}  // namespace

TEST_F(DumpFrame, WritesAPpmNamedByHeadAndNumber) {
    testing::internal::CaptureStderr();
    dumpFrame(dir_ + "/out", 7, image_.data());
    dumpFrame(dir_ + "/out", 12345, image_.data());
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(
        "write frame to [" + dir_ + "/out.0007.pnm]\nwrite frame to [" + dir_ + "/out.12345.pnm]\n",
        err);
    const std::string file = testsupport::readFile(dir_ + "/out.0007.pnm");
    EXPECT_EQ(std::string("P6\n4 2\n255\n") + std::string(image_.begin(), image_.end()), file);
    EXPECT_TRUE(testsupport::fileExists(dir_ + "/out.12345.pnm"));
}

TEST_F(DumpFrame, AnEmptyHeadWritesNothing) {
    testing::internal::CaptureStderr();
    dumpFrame("", 0, image_.data());
    EXPECT_EQ("Err (dumpFrame): header is null.\n", testing::internal::GetCapturedStderr());
    EXPECT_TRUE(testsupport::listDir(dir_).empty());
}

TEST_F(DumpFrame, AFrameThatCannotBeWrittenEndsTheProcess) {
    const std::string head = dir_ + "/no/such/folder/out";
    EXPECT_EXIT(dumpFrame(head, 3, image_.data()), ::testing::ExitedWithCode(1),
                "Err : writing to \\[" + head + ".0003.pnm\\]");
}

TEST_F(DumpFrame, GzipTakesTheNameAsOneWord) {
    if (!testsupport::haveProgram("gzip")) GTEST_SKIP() << "no gzip";
    gzipFrames = true;
    const std::string head = dir_ + "/my frame;touch pwned";
    testing::internal::CaptureStderr();
    dumpFrame(head, 100, image_.data());
    dumpFrame(head, 100, image_.data());  // again: the older .gz is replaced, nothing asked
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(2, testsupport::countLines(err, "Run [gzip " + head + ".0100.pnm]"));
    EXPECT_EQ(std::vector<std::string>{"my frame;touch pwned.0100.pnm.gz"},
              testsupport::listDir(dir_));
    EXPECT_FALSE(testsupport::fileExists("pwned"));
}
