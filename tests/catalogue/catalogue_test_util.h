#pragma once
// Shared helpers of the catalogue and star rendering tests: scratch files, star lines, loading,
// captured output and damaged copies of files.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "catalogue/star_list.h"
#include "tests/support/scratch_files.h"

namespace cattest {

using testsupport::readFile;
using testsupport::ScratchDir;

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

// A full 22-field line at (x, y, z) pc with 5 % distance error; tail is class, number, type,
// HD, HIC and name.
inline std::string fullLine(double x, double y, double z, const std::string& tail) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "%g %g %g 0.05 1 2 3 0.1 0.1 0.1 0.65 1.0 1 1 1 1 ", x, y, z);
    return buf + tail + "\n";
}

// Reads a star file of these lines into the list quietly; the test fails if it does not load.
inline void loadStars(StarList& list, const ScratchDir& dir, int n, const std::string& lines,
                      int includeSun = 0) {
    const std::string path = dir.write("s.star", starFile(n, lines));
    int status = 0;
    const std::string err = stderrOf(
        [&] { stdoutOf([&] { status = list.readStarFiles(path.c_str(), includeSun, 0); }); });
    ASSERT_EQ(status, 1) << err;
}

inline const StarObj& byHD(const StarList& list, int hd) {
    for (int i = 0; i < list.getNumRecords(); ++i)
        if (list.getStarArray()[i].hd == hd) return list.getStarArray()[i];
    static const StarObj none = makeEmptyStarObj();
    ADD_FAILURE() << "no HD " << hd;
    return none;
}

// A reproducible damaged copy of text: bytes changed, cut out or repeated, a digit made a huge
// number or a non-number, or a very long run inserted.
inline std::string damaged(const std::string& text, unsigned seed) {
    std::string out = text;
    std::uint32_t state = seed * 2654435761u + 1;
    auto draw = [&state](std::size_t n) {
        state = state * 1664525u + 1013904223u;
        return n == 0 ? 0 : static_cast<std::size_t>(state >> 8) % n;
    };
    static const char* const kWords[] = {"99999999999", "-2147483648", "nan",
                                         "inf",         "1e400",       "++1"};
    for (std::size_t e = 0, edits = 1 + draw(3); e < edits && !out.empty(); ++e) {
        const std::size_t at = draw(out.size());
        switch (draw(5)) {
            case 0:
                out[at] = static_cast<char>(draw(256));
                break;
            case 1:
                out.erase(at, 1 + draw(8));
                break;
            case 2:
                out.insert(at, out.substr(at, 1 + draw(60)));
                break;
            case 3: {
                const std::size_t digit = out.find_first_of("0123456789", at);
                if (digit != std::string::npos) out.replace(digit, 1, kWords[draw(6)]);
                break;
            }
            default:
                out.insert(at, std::string(300 + draw(1500), 'x'));
                break;
        }
    }
    return out;
}

}  // namespace cattest
