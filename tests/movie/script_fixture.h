#pragma once
// Movie scripts written to scratch files and loaded with both output streams captured, and
// the pieces scripts are built from.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "movie/movie_record.h"
#include "tests/support/scratch_files.h"

struct LoadResult {
    int rc = 0;
    std::string err;  // everything written to standard error
    std::string out;  // everything written to standard output
};

// Loads the file name as given (quiet unless told otherwise).
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

// Writes text to a scratch file and loads it.
inline LoadResult loadText(MovieRecord& record, const std::string& text, int quiet = 1) {
    static testsupport::ScratchDir dir;
    const std::string path = dir.write("script.scp", text);
    LoadResult r = loadFile(record, path, quiet);
    std::remove(path.c_str());  // rewriting a file in place is slow on some file systems
    return r;
}

// Success when text loads into record without a message; else the message.
inline ::testing::AssertionResult loaded(MovieRecord& record, const std::string& text) {
    LoadResult r = loadText(record, text);
    if (r.rc == 1 && r.err.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "rc " << r.rc << ": " << r.err;
}

// The view at a frame that must lie inside the movie.
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

// The five view lines.
inline std::string view(const std::string& pos, const std::string& dir = "0 0 -1",
                        const std::string& up = "0 1 0", const std::string& fovy = "45",
                        const std::string& aspect = "1") {
    return "viewPos = " + pos + "\nviewDir = " + dir + "\nviewUp = " + up + "\nfovy = " + fovy +
           "\naspect = " + aspect + "\n";
}

// A keyframe block: the header line, the session lines, the separator and the view lines
// (7 lines plus the session lines).
inline std::string key(const std::string& header, const std::string& sessions = "",
                       const std::string& pos = "0 0 0 0", const std::string& dir = "0 0 -1",
                       const std::string& fovy = "45") {
    return header + "\n" + sessions + "-----\n" + view(pos, dir, "0 1 0", fovy);
}
