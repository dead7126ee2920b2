#pragma once
// Line-by-line reading of the catalogue's text files: lines of at most 511 characters,
// every line counted for messages, comment and blank lines recognised.

#include <cstddef>
#include <cstdio>
#include <string_view>
#include <vector>

constexpr int kMaxTextLine = 511;  // characters per line, the line end not counted

// True when the first non-blank character is '#'.
bool isCommentLine(std::string_view line);
// True when the line holds white space only (or nothing).
bool isBlankLine(std::string_view line);
// The line without its trailing white space (line end included).
std::string_view trimTrailing(std::string_view line);

class TextLineReader {
  public:
    explicit TextLineReader(std::FILE* file);

    // The next physical line without its line end. A line holding a NUL byte ends there,
    // as a C string would. Returns false at the end of the file.
    bool next(std::string_view& line);
    // True when the line last returned was longer than kMaxTextLine characters; it is then
    // cut to that length and the rest of the physical line has been skipped.
    bool lastTooLong() const { return tooLong_; }
    // Lines returned so far, counted from 1.
    int lineNumber() const { return lineNumber_; }
    // Skips comment and blank lines; false at the end of the file.
    bool nextDataLine(std::string_view& line);
    // Bytes consumed from the file so far.
    long long bytesConsumed() const { return consumed_; }

  private:
    bool fill();

    std::FILE* file_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0, end_ = 0;
    std::vector<char> longLine_;
    bool eof_ = false;
    bool tooLong_ = false;
    int lineNumber_ = 0;
    long long consumed_ = 0;
};

// Size of the rest of the file from its current position, or -1 when it cannot be measured.
long long remainingFileBytes(std::FILE* file);
