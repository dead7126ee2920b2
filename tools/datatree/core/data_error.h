#pragma once
// Errors of the data-tree converters. A converter either writes every output file it owns
// or none: inputs are read and checked first, outputs are written to a temporary name and
// renamed into place only when complete.

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// A source file is missing, damaged or not in the expected form. The message names the file
// and, for text files, the line.
struct DataError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Exit codes of the converters.
constexpr int kExitOk = 0;
constexpr int kExitDataError = 1;  // a source could not be read or converted
constexpr int kExitUsage = 2;      // wrong command line

// Runs a converter body; a DataError prints "<program>: error: <message>\n" on standard error
// and gives kExitDataError. The body returns its own exit code.
int runConverter(const char* program, const std::function<int()>& body);

// Prints "usage: <program> <arguments>\n" on standard error and returns kExitUsage.
int usage(const char* program, const char* arguments);

// Writes the bytes to path through "<path>.tmp" and a rename, so that a reader never sees a
// half-written file. Throws DataError when the file cannot be written.
void writeFileAtomically(const std::string& path, const std::string& bytes);
void writeFileAtomically(const std::string& path, const std::vector<unsigned char>& bytes);

// Writes the bytes as an "EZ" container, atomically as above.
void writePackedFileAtomically(const std::string& path, const std::string& bytes);

// Creates the directory and its parents when missing; throws DataError on failure.
void makeDirectories(const std::string& path);

// The directory part of a path ("a/b/c.txt" -> "a/b"; "c.txt" -> ".").
std::string directoryOf(const std::string& path);
