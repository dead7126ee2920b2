#pragma once
// Shared fixtures of the catalogue and star rendering tests: a scratch folder for data files,
// a few known star lines, and capture of what the code prints.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/scratch_files.h"

namespace cattest {

// A scratch folder removed with its files when the test ends.
using testsupport::readFile;
using testsupport::ScratchDir;

// What a call prints on the standard error stream.
template <typename F>
std::string stderrOf(F&& f) {
    std::fflush(stderr);
    testing::internal::CaptureStderr();
    f();
    std::fflush(stderr);
    return testing::internal::GetCapturedStderr();
}

template <typename F>
std::string stdoutOf(F&& f) {
    std::fflush(stdout);
    testing::internal::CaptureStdout();
    f();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

// A .star file in parsecs with the given data lines.
inline std::string starFile(int n, const std::string& lines) {
    return "NUM_STARS " + std::to_string(n) + "\nSIZE 1 16.4894\n" + lines;
}

// A full 22-field line: position (pc), 5 % distance error, velocity, errors, B-V,
// luminosity, colour, spectral class, number, type, HD, HIC, name.
inline std::string fullLine(double x, double y, double z, const std::string& tail) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "%g %g %g 0.05 1 2 3 0.1 0.1 0.1 0.65 1.0 1 1 1 1 ", x, y, z);
    return buf + tail + "\n";
}

}  // namespace cattest
