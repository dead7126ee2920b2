// Builds <data>/stardata/constellations.txt: the 88 constellations with names and codes,
// boundaries and figures through HD stars.
#include <cstdio>

#include "tools/datatree/core/constellation_catalogue.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/star_sources.h"

int main(int argc, char** argv) {
    const char* program = "datatree_constellations";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        std::string root = std::string(argv[1]) + "/";
        ConstellationSources sources;
        sources.names = readConstellationNames(
            root + "usr/share/stellarium/skycultures/western/constellation_names.eng.fab");
        sources.figures =
            readFigures(root + "usr/share/stellarium/skycultures/western/constellationship.fab");
        sources.boundaries =
            readBoundaryEdges(root + "usr/share/stellarium/data/constellation_boundaries.dat");

        // HIP -> HD: the cross-identification first, the star-name list for the rest.
        CrossIds ids = readCrossIds(root + "usr/share/stellarium/stars/default/cross-id.dat");
        auto named = readStarNames(root + "package/data/starnames.json");
        std::unordered_map<int, int> hdOfHip = ids.hdOfHip;
        std::unordered_map<int, std::string> constellationOfHip;
        for (const auto& [hip, star] : named) {
            if (star.hd > 0) hdOfHip.emplace(hip, star.hd);
            if (!star.constellation.empty()) constellationOfHip.emplace(hip, star.constellation);
        }
        // Designations ("alpha_And") name the constellation of the remaining stars.
        auto designations =
            readHipNames(root + "usr/share/stellarium/stars/default/name.fab", false);
        for (const auto& [hip, list] : designations) {
            std::string::size_type bar = list[0].rfind('_');
            if (bar != std::string::npos) constellationOfHip.emplace(hip, list[0].substr(bar + 1));
        }

        FigureStarTable stars = makeFigureStarTable(sources, hdOfHip, constellationOfHip);
        int withoutHd = 0;
        for (const auto& entry : stars.byHip)
            withoutHd += entry.second.hd > 0 ? 0 : 1;
        std::string text = formatConstellationFile(sources, stars);
        writeFileAtomically(std::string(argv[2]) + "/stardata/constellations.txt", text);
        std::printf("%zu constellations, %zu boundary edges, %zu figure stars (%d without HD)\n",
                    sources.names.size(), sources.boundaries.size(), stars.byHip.size(), withoutHd);
        return kExitOk;
    });
}
