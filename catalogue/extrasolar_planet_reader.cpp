// Reading the extrasolar planet catalogue: a first pass counts the planets and those of each
// host star, a second fills the records, checks them and gives each its random orbit phase and
// normal (the random generator seeded with 2002, so a file always gives the same orbits).

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>

#include "catalogue/extrasolar_planet_orbit.h"
#include "catalogue/star_list.h"
#include "catalogue/text_lines.h"
#include "common_package/math/src/random.h"
#include "image/data_file.h"

namespace {

constexpr std::uint32_t kPlanetRandomSeed = 2002;
constexpr double kRandomRange = 32768.0;  // random values are 0 .. 32767

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

double uniformRandom() {
    return nextRandom() / kRandomRange;
}

// Finds host stars: by HD number, else by common name (first star of each).
class HostFinder {
  public:
    HostFinder(StarObj* stars, int count) : stars_(stars), count_(count) {
        for (int i = 0; i < count; ++i) {
            if (stars[i].hd > 0) byHD_.emplace(stars[i].hd, i);
        }
    }
    StarObj* find(const PlanetLine& planet) {
        if (planet.hd > 0) {
            const auto it = byHD_.find(planet.hd);
            return it != byHD_.end() ? &stars_[it->second] : nullptr;
        }
        // Records without a name carry "---"; a planet line without one has no host.
        if (planet.starName.empty() || planet.starName == "---") return nullptr;
        if (!namesIndexed_) {
            for (int i = 0; i < count_; ++i)
                byName_.emplace(stars_[i].commonName, i);
            namesIndexed_ = true;
        }
        const auto it = byName_.find(planet.starName);
        return it != byName_.end() ? &stars_[it->second] : nullptr;
    }

  private:
    StarObj* stars_;
    int count_;
    std::unordered_map<int, int> byHD_;
    std::unordered_map<std::string, int> byName_;
    bool namesIndexed_ = false;
};

void printPlanetError(int lineNumber, const char* what) {
    std::fprintf(stderr, "Err(StarList::loadExtrasolarPlanets): (line %d)\n\t%s\n", lineNumber,
                 what);
}

}  // namespace

int StarList::loadExtrasolarPlanets(const char* fileName) {
    if (fileName == nullptr) fileName = "";
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        std::fprintf(stderr, "ERR : reading [%s]\n", fileName);
        return -1;
    }
    if (fileName != param.extrasolarPlanetFile) {
        std::strncpy(param.extrasolarPlanetFile, fileName, kStarParameterPathSize - 1);
        param.extrasolarPlanetFile[kStarParameterPathSize - 1] = '\0';
    }
    releaseExtrasolarPlanets();
    HostFinder hosts(stars, count);
    auto fail = [this]() {
        releaseExtrasolarPlanets();
        return -1;
    };

    // First pass: count the planets and the planets of each host.
    std::size_t total = 0;
    {
        TextLineReader reader(in.file);
        std::string_view line;
        PlanetLine planet;
        while (reader.nextDataLine(line)) {
            const PlanetLineKind kind = parsePlanetLine(line, planet);
            if (kind == PlanetLineKind::Ignored) continue;
            if (kind == PlanetLineKind::TooShort) {
                const std::string text(line);
                std::fprintf(stderr,
                             "Err(StarList::loadExtrasolarPlanets): (line %d)\n\tnot enough "
                             "input argument in line [%s]\n",
                             reader.lineNumber(), text.c_str());
                return fail();
            }
            ++total;
            if (StarObj* host = hosts.find(planet)) ++host->numPlanets;
        }
    }

    planets = allocateArray<ExtrasolarPlanet>(total);
    bool allocated = planets != nullptr;
    for (int i = 0; i < count && allocated; ++i) {
        if (stars[i].numPlanets == 0) continue;
        stars[i].planets = allocateArray<ExtrasolarPlanet*>(stars[i].numPlanets);
        allocated = stars[i].planets != nullptr;
    }
    if (!allocated) {
        std::fprintf(stderr, "Err(StarList::loadExtrasolarPlanets): failed to allocate memory\n");
        return fail();
    }
    if (std::fseek(in.file, 0, SEEK_SET) != 0) {
        std::fprintf(stderr, "ERR : reading [%s]\n", fileName);
        return fail();
    }
    seedRandom(kPlanetRandomSeed);

    // Second pass: fill, check and place the planets.
    TextLineReader reader(in.file);
    std::string_view line;
    PlanetLine fields;
    std::size_t index = 0;
    while (index < total && reader.nextDataLine(line)) {
        if (parsePlanetLine(line, fields) != PlanetLineKind::Planet) continue;
        if (const char* error = planetValueError(fields)) {
            printPlanetError(reader.lineNumber(), error);
            return fail();
        }
        ExtrasolarPlanet& p = planets[index++];
        numPlanets = static_cast<std::int32_t>(index);
        p.number = fields.number;
        p.hd = fields.hd;
        std::memset(p.starName, 0, sizeof p.starName);
        std::memcpy(p.starName, fields.starName.data(), fields.starName.size());
        p.mass = fields.mass;
        p.period = fields.period;
        p.semimajorAxis = fields.semimajorAxis;
        p.eccentricity = fields.eccentricity;
        p.k = fields.k;
        p.axisRatio = std::sqrt(1.0f - p.eccentricity * p.eccentricity);
        p.logOrbitSize = std::log10(static_cast<double>(p.semimajorAxis) * kAstronomicalUnitMetres);
        p.phase = uniformRandom() * 360.0;
        // A direction uniform on the sphere: points of the cube kept inside the unit ball
        // (and away from its centre, which has no direction).
        double v[3], length2 = 0.0;
        do {
            for (double& c : v)
                c = 2.0 * uniformRandom() - 1.0;
            length2 = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
        } while (length2 > 1.0 || length2 == 0.0);
        const double length = std::sqrt(length2);
        for (int c = 0; c < 3; ++c)
            p.orbitNormal[c] = v[c] / length;

        p.hostStar = hosts.find(fields);
        if (p.hostStar != nullptr) {
            StarObj& host = *p.hostStar;
            for (int slot = 0; slot < host.numPlanets; ++slot) {
                if (host.planets[slot] == nullptr) {
                    host.planets[slot] = &p;
                    break;
                }
            }
        }
    }
    return 1;
}
