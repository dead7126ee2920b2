#pragma once
// Writing movie scripts to temporary files and loading them with stderr captured.

#include <string>

#include "movie/movie_record.h"

struct LoadResult {
    int rc = 0;
    std::string err;  // everything written to standard error
    std::string out;  // everything written to standard output
};

// Writes text to a fresh file in the test's temporary folder and returns its path.
std::string writeScript(const std::string& text);
// Loads text (quiet unless told otherwise) into record, capturing both streams.
LoadResult loadText(MovieRecord& record, const std::string& text, int quiet = 1);
// Loads the file name as given.
LoadResult loadFile(MovieRecord& record, const std::string& path, int quiet = 1);

// The five header lines (lines 1-5) of a script announcing count keyframes.
std::string scriptHeader(int count, const std::string& interp = "linear",
                         const std::string& resolution = "640 x 480");
// A keyframe block: its header line, optional session lines, the separator and the five view
// lines (7 lines plus one per session line).
std::string keyBlock(const std::string& headerLine, const std::string& pos = "0 0 0 0",
                     const std::string& dir = "0 0 -1", const std::string& up = "0 1 0",
                     const std::string& fovy = "45", const std::string& aspect = "1",
                     const std::string& sessionLines = "");
// The five view lines alone.
std::string viewLines(const std::string& pos, const std::string& dir = "0 0 -1",
                      const std::string& up = "0 1 0", const std::string& fovy = "45",
                      const std::string& aspect = "1");
