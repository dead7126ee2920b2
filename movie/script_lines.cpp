#include "movie/script_lines.h"

#include <cctype>
#include <climits>
#include <cstdlib>

LineStatus ScriptLines::readLine(std::string& line) {
    line.clear();
    int c = std::getc(fp_);
    if (c == EOF) {
        if (std::ferror(fp_)) {
            std::fprintf(stderr, "Err : (line %d) failed to read the script file.\n",
                         lineNumber_ + 1);
            return LineStatus::Failed;
        }
        return LineStatus::End;
    }
    if (lineNumber_ < INT_MAX) ++lineNumber_;  // a file of billions of lines stays countable
    while (c != EOF && c != '\n') {
        if (static_cast<int>(line.size()) >= kScriptLineMax) {
            std::fprintf(stderr, "Err : (line %d) line longer than %d characters.\n", lineNumber_,
                         kScriptLineMax);
            return LineStatus::Failed;
        }
        line.push_back(static_cast<char>(c));
        c = std::getc(fp_);
    }
    if (c == EOF && std::ferror(fp_)) {
        std::fprintf(stderr, "Err : (line %d) failed to read the script file.\n", lineNumber_);
        return LineStatus::Failed;
    }
    // Scripts written with carriage-return line ends read the same.
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return LineStatus::Ok;
}

LineStatus ScriptLines::readDataLine(std::string& line) {
    for (;;) {
        LineStatus status = readLine(line);
        if (status != LineStatus::Ok) return status;
        if (!isBlankLine(line) && !isCommentLine(line)) return LineStatus::Ok;
    }
}

namespace {
bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}
bool isTokenSeparator(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
}  // namespace

bool isBlankLine(const std::string& line) {
    for (char c : line)
        if (!isBlank(c)) return false;
    return true;
}

bool isCommentLine(const std::string& line) {
    for (char c : line) {
        if (isBlank(c)) continue;
        return c == '#';
    }
    return false;
}

bool isSeparatorLine(const std::string& line) {
    if (line.empty() || line[0] != '-') return false;
    for (char c : line)
        if (c != '-' && !isBlank(c)) return false;
    return true;
}

std::vector<std::string> tokenize(const std::string& line) {
    std::vector<std::string> tokens;
    std::size_t i = 0, n = line.size();
    while (i < n) {
        while (i < n && isTokenSeparator(line[i]))
            ++i;
        std::size_t start = i;
        while (i < n && !isTokenSeparator(line[i]))
            ++i;
        if (i > start) tokens.emplace_back(line, start, i - start);
    }
    return tokens;
}

bool parseNumber(const std::string& token, double& value) {
    if (token.empty()) return false;
    const char* begin = token.c_str();
    char* end = nullptr;
    double v = std::strtod(begin, &end);
    if (end == begin || *end != '\0') return false;
    value = v;
    return true;
}

bool parseInteger(const std::string& token, long long& value) {
    if (token.empty()) return false;
    const char* begin = token.c_str();
    char* end = nullptr;
    long long v = std::strtoll(begin, &end, 10);
    if (end == begin || *end != '\0') return false;
    value = v;  // strtoll clamps to LLONG_MIN / LLONG_MAX on overflow
    return true;
}

double leadingNumber(const std::string& token) {
    const char* begin = token.c_str();
    char* end = nullptr;
    double v = std::strtod(begin, &end);
    return end == begin ? 0.0 : v;
}
