// Builds <data>/stardata/exoplanets.txt from the planet catalogue that the sky-atlas
// package ships inside its program as a compressed resource.
#include <cstdio>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/exoplanet_catalogue.h"
#include "tools/datatree/core/text_input.h"

int main(int argc, char** argv) {
    const char* program = "datatree_planets";
    if (argc != 3 && argc != 4) {
        return usage(program, "<unpacked-sources> <data-dir> [<planet-catalogue.json>]");
    }
    return runConverter(program, [&] {
        std::string root = std::string(argv[1]) + "/";
        std::string json;
        std::string source;
        if (argc == 4) {
            source = argv[3];
            json = readWholeFile(source);
        } else {
            source = root + "usr/bin/stellarium";
            json = extractCompressedResource(source, "\"exoplanets\"");
        }
        JsonValue catalogue = parseJson(json, source);

        HostLookup lookup;
        lookup.crossIds = readCrossIds(root + "usr/share/stellarium/stars/default/cross-id.dat");
        lookup.names = readStarNames(root + "package/data/starnames.json");
        for (const auto& [hip, list] :
             readHipNames(root + "usr/share/stellarium/stars/default/name.fab", false)) {
            for (const std::string& d : list)
                lookup.hipOfDesignation.emplace(d, hip);
        }
        lookup.positions = readStarPositions(root + "package/data/stars.14.json");
        lookup.properMotions =
            readProperMotions(root + "usr/share/stellarium/stars/default/hip_pm.dat");

        PlanetStatistics stats;
        std::vector<Planet> planets = selectPlanets(catalogue, lookup, &stats);
        if (planets.empty())
            throw DataError(source + ": no planet of an HD star has every element");
        writeFileAtomically(std::string(argv[2]) + "/stardata/exoplanets.txt",
                            formatPlanetFile(planets));
        std::printf(
            "%d hosts, %d with HD; %d planets written (%d lack an element, %d lack the "
            "host's mass, %d out of range)\n",
            stats.hosts, stats.hostsWithHd, stats.planets, stats.skippedIncomplete,
            stats.skippedNoStarMass, stats.skippedOutOfRange);
        return kExitOk;
    });
}
