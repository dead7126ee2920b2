#pragma once
// Reading source files: whole files with a size limit, lines with their numbers, fields, and
// strict number conversion that names the file and line when a field is not a number.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Largest source file a converter reads into memory (the biggest real one is ~19 MB).
constexpr std::size_t kMaxSourceBytes = std::size_t(256) << 20;

// Reads the whole file. Throws DataError when it cannot be opened or is larger than maxBytes.
std::string readWholeFile(const std::string& path, std::size_t maxBytes = kMaxSourceBytes);

// One line of a text file; number counts from 1.
struct TextLine {
    int number = 0;
    std::string_view text;  // without the line end ("\n" or "\r\n")
};

// Splits text into lines (the views point into text).
std::vector<TextLine> splitLines(std::string_view text);

// Splits on any run of blanks and tabs; no empty fields.
std::vector<std::string_view> splitWords(std::string_view text);

// Splits on every occurrence of the separator; empty fields are kept.
std::vector<std::string_view> splitFields(std::string_view text, char separator);

std::string_view trim(std::string_view text);
bool startsWith(std::string_view text, std::string_view prefix);

// "<file>: line <n>" for messages.
std::string where(const std::string& file, int line);

// Strict conversions of a whole field (surrounding blanks allowed). The checked forms throw
// DataError "<where>: <what> is not a number: [<field>]".
bool toDouble(std::string_view field, double* value);
bool toInt(std::string_view field, long long* value);
double needDouble(std::string_view field, const std::string& place, const char* what);
long long needInt(std::string_view field, const std::string& place, const char* what);

// printf into a std::string.
std::string format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
