// Builds <data>/ephemerisdata/binp_all.405: the DE405 planetary ephemeris in the big-endian
// binary layout of skyrama's reader.
#include <cmath>
#include <cstdio>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/ephemeris_table.h"

namespace {
// Positions of consecutive records must meet at their common date; the real table agrees to
// millimetres. More than this means the rows or their dates are out of step.
constexpr double kMaxBoundaryJumpKm = 0.001;
// The Earth's longitude at J2000 against the low-precision solar theory, degrees.
constexpr double kMaxSolarTheoryDeviation = 0.05;
}  // namespace

int main(int argc, char** argv) {
    const char* program = "datatree_ephemeris";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        std::string directory = std::string(argv[1]) + "/usr/share/casacore/data/ephemerides/DE405";
        EphemerisTable table = readEphemerisTable(directory);
        if (table.number != 405) {
            throw DataError(directory + ": ephemeris number " + std::to_string(table.number) +
                            ", expected 405");
        }
        double jump = largestBoundaryJump(table);
        if (!(jump < kMaxBoundaryJumpKm)) {
            throw DataError(directory + ": positions jump by " + std::to_string(jump) +
                            " km between records (rows out of step with their dates)");
        }
        double deviation = solarTheoryDeviation(table);
        if (!(deviation < kMaxSolarTheoryDeviation)) {
            throw DataError(directory + ": at J2000 the Earth lies " + std::to_string(deviation) +
                            " degrees from where the solar theory puts it (record dates wrong)");
        }
        std::vector<unsigned char> bytes = formatEphemerisFile(table);
        writeFileAtomically(std::string(argv[2]) + "/ephemerisdata/binp_all.405", bytes);
        double emb[3];
        tablePosition(table, 2, 2451545.0, emb);
        double sun[3];
        tablePosition(table, 10, 2451545.0, sun);
        double r = std::sqrt((emb[0] - sun[0]) * (emb[0] - sun[0]) +
                             (emb[1] - sun[1]) * (emb[1] - sun[1]) +
                             (emb[2] - sun[2]) * (emb[2] - sun[2])) /
                   table.au;
        std::printf(
            "DE%d: %zu records, %zu bytes; largest jump between records %.3g m; "
            "Earth-Moon barycentre %.9f AU from the Sun at JD 2451545.0\n",
            table.number, table.rows.size(), bytes.size(), jump * 1000.0, r);
        return kExitOk;
    });
}
