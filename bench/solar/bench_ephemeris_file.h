#pragma once
// The ephemeris the solar benchmarks read: the data tree's DE405 file when it is there
// (under TOPDIR, else in the source tree), otherwise a small file written in the same layout.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/solar/ephemeris_test_file.h"

inline std::string benchEphemerisPath() {
    const char* top = std::getenv("TOPDIR");
    for (std::string root :
         {std::string(top != nullptr ? top : ""), std::string(SKYRAMA_SOURCE_DIR)}) {
        if (root.empty()) continue;
        std::string path = root + "/data/ephemerisdata/binp_all.405";
        if (std::FILE* f = std::fopen(path.c_str(), "rb")) {
            std::fclose(f);
            return path;
        }
    }
    static const std::string written = [] {
        std::string path = solartest::testFilePath("bench.405");
        solartest::TestEphemerisSpec spec;
        spec.records = 64;
        solartest::writeTestEphemeris(path, spec);
        return path;
    }();
    return written;
}
