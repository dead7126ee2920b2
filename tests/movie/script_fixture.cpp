#include "script_fixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

std::string writeScript(const std::string& text) {
    static int serial = 0;
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string path = ::testing::TempDir() + "movie_" + (info ? info->name() : "script") + "_" +
                       std::to_string(++serial) + ".scp";
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

LoadResult loadFile(MovieRecord& record, const std::string& path, int quiet) {
    LoadResult r;
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    r.rc = record.loadRecord(path.c_str(), quiet);
    std::fflush(stdout);
    std::fflush(stderr);
    r.out = ::testing::internal::GetCapturedStdout();
    r.err = ::testing::internal::GetCapturedStderr();
    return r;
}

LoadResult loadText(MovieRecord& record, const std::string& text, int quiet) {
    std::string path = writeScript(text);
    LoadResult r = loadFile(record, path, quiet);
    std::remove(path.c_str());
    return r;
}

std::string scriptHeader(int count, const std::string& interp, const std::string& resolution) {
    return "Movie Script\n-----\nresolution : " + resolution + "\ninterp : " + interp +
           "\nnKeyFrames : " + std::to_string(count) + "\n";
}

std::string viewLines(const std::string& pos, const std::string& dir, const std::string& up,
                      const std::string& fovy, const std::string& aspect) {
    return "viewPos = " + pos + "\nviewDir = " + dir + "\nviewUp = " + up + "\nfovy = " + fovy +
           "\naspect = " + aspect + "\n";
}

std::string keyBlock(const std::string& headerLine, const std::string& pos, const std::string& dir,
                     const std::string& up, const std::string& fovy, const std::string& aspect,
                     const std::string& sessionLines) {
    return headerLine + "\n" + sessionLines + "-----\n" + viewLines(pos, dir, up, fovy, aspect);
}
