#pragma once
// The ephemeris the solar benchmarks read: the data tree's DE405 file when it is there
// (under TOPDIR, else in the source tree), otherwise a small file written in the same layout.

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "tests/solar/ephemeris_test_file.h"

inline std::string benchEphemerisPath() {
    std::string real = solartest::realEphemerisPath();
    if (!real.empty()) return real;
    // Written once per run and removed when the program ends.
    struct WrittenFile {
        std::string path = (std::filesystem::temp_directory_path() /
                            ("skyrama_bench_" + std::to_string(getpid()) + ".405"))
                               .string();
        WrittenFile() {
            solartest::TestEphemerisSpec spec;
            spec.records = 64;
            solartest::writeTestEphemeris(path, spec);
        }
        ~WrittenFile() { std::remove(path.c_str()); }
    };
    static const WrittenFile written;
    return written.path;
}
