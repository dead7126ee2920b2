#pragma once
// Line and token reading for movie scripts: every line is counted for messages, lines are
// limited to the reader's 512-byte buffer, blank and "#" comment lines are skipped where a
// data line is wanted.

#include <cstdio>
#include <string>
#include <vector>

// Longest line a script may hold, its line end not counted. A longer line is an error
// rather than being cut into pieces that would be read as lines of their own.
constexpr int kScriptLineMax = 511;

enum class LineStatus { Ok, End, Failed };

class ScriptLines {
  public:
    explicit ScriptLines(std::FILE* fp) : fp_(fp) {}

    // The next line without its line end ("\n" or "\r\n"). End at the end of the file; Failed
    // (after the message) for an over-long line or a read error.
    LineStatus readLine(std::string& line);
    // The next line that is neither blank nor a comment.
    LineStatus readDataLine(std::string& line);
    int lineNumber() const { return lineNumber_; }

  private:
    std::FILE* fp_;
    int lineNumber_ = 0;
};

bool isBlankLine(const std::string& line);
// First non-blank character is "#".
bool isCommentLine(const std::string& line);
// Begins with "-" and holds only "-" and white space.
bool isSeparatorLine(const std::string& line);
// Splits at blanks, tabs, carriage returns and line feeds.
std::vector<std::string> tokenize(const std::string& line);
// The whole token is a decimal floating-point number.
bool parseNumber(const std::string& token, double& value);
// The whole token is a decimal integer; values beyond the range of long long are clamped.
bool parseInteger(const std::string& token, long long& value);
// The token's leading numeric part, 0 when there is none.
double leadingNumber(const std::string& token);
