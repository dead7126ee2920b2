#pragma once
// The ephemeris the solar benchmarks read: the data tree's DE405 file when it is there
// (under TOPDIR, else in the source tree), otherwise a small file written in the same layout.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/solar/ephemeris_test_file.h"

inline std::string benchEphemerisPath() {
    std::string real = solartest::realEphemerisPath();
    if (!real.empty()) return real;
    static const std::string written = [] {
        std::string path = solartest::testFilePath("bench.405");
        solartest::TestEphemerisSpec spec;
        spec.records = 64;
        solartest::writeTestEphemeris(path, spec);
        return path;
    }();
    return written;
}
