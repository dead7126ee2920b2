#pragma once
// Movie scripts loaded from scratch files with both output streams captured, and their pieces.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "movie/movie_record.h"
#include "tests/support/scratch_files.h"

struct LoadResult {
    int rc = 0;
    std::string err, out;  // standard error and standard output
};

inline LoadResult loadFile(MovieRecord& record, const std::string& path, int quiet = 1) {
    LoadResult r;
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    r.rc = record.loadRecord(path.c_str(), quiet);
    std::fflush(stdout);
    r.out = ::testing::internal::GetCapturedStdout();
    r.err = ::testing::internal::GetCapturedStderr();
    return r;
}

inline LoadResult loadText(MovieRecord& record, const std::string& text, int quiet = 1) {
    static testsupport::ScratchDir dir;
    const std::string path = dir.write("script.scp", text);
    LoadResult r = loadFile(record, path, quiet);
    std::remove(path.c_str());
    return r;
}

// Success when text loads without a message.
inline ::testing::AssertionResult loaded(MovieRecord& record, const std::string& text) {
    LoadResult r = loadText(record, text);
    if (r.rc == 1 && r.err.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "rc " << r.rc << ": " << r.err;
}

inline View frameView(const MovieRecord& record, double frame) {
    View v;
    EXPECT_EQ(record.evaluateFrame(frame, v), 1) << "frame " << frame;
    return v;
}

// Lines 1-5 of a script announcing count keyframes.
inline std::string head(int count, const std::string& interp = "linear") {
    return "Movie Script\n-----\nresolution : 640 x 480\ninterp : " + interp +
           "\nnKeyFrames : " + std::to_string(count) + "\n";
}

inline std::string view(const std::string& pos, const std::string& dir = "0 0 -1",
                        const std::string& up = "0 1 0", const std::string& fovy = "45",
                        const std::string& aspect = "1") {
    return "viewPos = " + pos + "\nviewDir = " + dir + "\nviewUp = " + up + "\nfovy = " + fovy +
           "\naspect = " + aspect + "\n";
}

// A keyframe block: header, session lines, separator, view lines (7 lines + sessions).
inline std::string key(const std::string& header, const std::string& sessions = "",
                       const std::string& pos = "0 0 0 0", const std::string& dir = "0 0 -1",
                       const std::string& fovy = "45") {
    return header + "\n" + sessions + "-----\n" + view(pos, dir, "0 1 0", fovy);
}
