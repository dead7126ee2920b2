// Builds the star datasets of the data tree:
//   <data>/stardata/hipparcos.star  every Hipparcos star with an HD number and a positive
//                                   parallax, packed in the "EZ" container
//   <data>/stardata/nearby.star     the stars within 100 pc, plain text
#include <cstdio>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/star_catalogue.h"

namespace {
constexpr double kNearbyLimitPc = 100.0;
}

int main(int argc, char** argv) {
    const char* program = "datatree_stars";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        StarSources sources = loadStarSources(argv[1]);
        StarStatistics stats;
        std::vector<StarRecord> all = buildStarRecords(sources, &stats);
        if (all.empty()) throw DataError("no star has both an HD number and a parallax");
        std::vector<StarRecord> nearby;
        for (const StarRecord& r : all) {
            if (r.distancePc <= kNearbyLimitPc) nearby.push_back(r);
        }
        std::string data = argv[2];
        writePackedFileAtomically(
            data + "/stardata/hipparcos.star",
            formatStarFile(all, "Hipparcos stars with an HD number and a positive parallax"));
        writeFileAtomically(
            data + "/stardata/nearby.star",
            formatStarFile(nearby, "Hipparcos stars with an HD number within 100 pc"));
        std::printf(
            "%d stars with HD and position, %d without parallax; %d written "
            "(%d with radial velocity, %d with luminosity class), %zu within 100 pc\n",
            stats.withHdAndPosition, stats.noParallax, stats.joined, stats.withRadialVelocity,
            stats.withLuminosityClass, nearby.size());
        return kExitOk;
    });
}
