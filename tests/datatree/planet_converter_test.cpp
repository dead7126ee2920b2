// The extrasolar planet file: K, host resolution, the fixed columns, and finding the
// catalogue inside a binary.
#include <gtest/gtest.h>

#include <zlib.h>

#include <cmath>

#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/star_sources_fixture.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/exoplanet_catalogue.h"

TEST(PlanetK, KnownPlanets) {
    EXPECT_NEAR(radialVelocityAmplitude(0.47, 4.2308, 0.0069, 1.11), 55.1, 0.05);    // 51 Peg b
    EXPECT_NEAR(radialVelocityAmplitude(0.69, 3.52472, 0.0082, 1.148), 84.0, 0.05);  // HD 209458 b
    // An eccentric orbit raises K by 1 / sqrt(1 - e^2).
    EXPECT_NEAR(radialVelocityAmplitude(1, 100, 0.6, 1) / radialVelocityAmplitude(1, 100, 0, 1),
                1.25, 1e-9);
}

namespace {

HostLookup lookupFor(const std::string& root) {
    HostLookup l;
    l.crossIds = readCrossIds(root + "/usr/share/stellarium/stars/default/cross-id.dat");
    l.names = readStarNames(root + "/package/data/starnames.json");
    for (const auto& [hip, list] :
         readHipNames(root + "/usr/share/stellarium/stars/default/name.fab", false))
        for (const auto& d : list)
            l.hipOfDesignation.emplace(d, hip);
    l.positions = readStarPositions(root + "/package/data/stars.14.json");
    l.properMotions = readProperMotions(root + "/usr/share/stellarium/stars/default/hip_pm.dat");
    return l;
}

const char* kCatalogue = R"({"version": "1", "stars": {
  "HD 300 A": {"smass": 1.0, "exoplanets": [
      {"mass": 1.0, "period": 365.25, "semiAxis": 1.0, "eccentricity": 0.0, "planetName": "b"}]},
  "alf CMa": {"smass": 2.0, "exoplanets": [
      {"mass": 2.0, "period": 10.0, "semiAxis": 0.1, "eccentricity": 0.1, "planetName": "c"},
      {"mass": 2.0, "period": 20.0, "semiAxis": 0.2, "eccentricity": 0.1, "planetName": "b"}]},
  "Some Star": {"smass": 1.0, "starAltNames": "GJ 1, HIP 91262", "exoplanets": [
      {"mass": 0.5, "period": 5.0, "semiAxis": 0.05, "eccentricity": 0.2, "planetName": "b"}]},
  "Near Beta": {"smass": 1.0, "RA": "2h0m0s", "DE": "-10d0m5s", "exoplanets": [
      {"mass": 0.5, "period": 5.0, "semiAxis": 0.05, "eccentricity": 0.2, "planetName": "b"}]},
  "Kepler-1": {"smass": 1.0, "RA": "5h0m0s", "DE": "50d0m0s", "exoplanets": [
      {"mass": 0.5, "period": 5.0, "semiAxis": 0.05, "eccentricity": 0.2, "planetName": "b"}]},
  "HD 500": {"exoplanets": [
      {"mass": 0.5, "period": 5.0, "semiAxis": 0.05, "eccentricity": 0.2, "planetName": "b"}]},
  "HD 600": {"smass": 1.0, "exoplanets": [
      {"period": 5.0, "semiAxis": 0.05, "eccentricity": 0.2, "planetName": "b"},
      {"mass": 0.5, "period": 5.0, "semiAxis": 0.05, "eccentricity": 1.0, "planetName": "c"}]}
}})";

}  // namespace

TEST(PlanetFile, HostsResolveByNameCrossIdDesignationAndPosition) {
    ScratchDir dir;
    std::string root = writeStarSources(dir);
    PlanetStatistics stats;
    std::vector<Planet> planets =
        selectPlanets(parseJson(kCatalogue, "cat"), lookupFor(root), &stats);
    // HD 300 by name; alpha CMa -> HIP 32349 -> HD 48915; HIP 91262 -> HD 172167;
    // "Near Beta" within 20" of HIP 13 (RA 30 deg, Dec -10) -> HD 400; Kepler-1 nowhere.
    std::string found;  // sorted by HD, then letter
    for (const Planet& p : planets)
        found += std::to_string(p.hd) + p.letter + " ";
    EXPECT_EQ(found, "300b 400b 48915b 48915c 172167b ");
    // Skipped: HD 500 without a star mass, HD 600 b without a mass, HD 600 c with e = 1.
    EXPECT_EQ((std::vector<int>{stats.hosts, stats.hostsWithHd, stats.skippedNoStarMass,
                                stats.skippedIncomplete, stats.skippedOutOfRange}),
              (std::vector<int>{7, 6, 1, 1, 1}));
    // A year around a solar mass: K of a Jupiter mass at 1 AU, about 28.4 m/s.
    EXPECT_NEAR(planets[0].k, 28.4, 0.1);
}

TEST(PlanetFile, FixedColumnsAsTheStarListReadsThem) {
    std::vector<Planet> planets(2);
    planets[0] = {217014, "51 Peg", "b", 0.47, 4.2308, 0.052, 0.0069, 55.078};
    planets[1] = {1, "A very long host", "b", 12345.678, 9999999.0, 9999999.0, 0.999, 0.0001};
    ScratchDir dir;
    StarList list;
    ASSERT_EQ(list.loadExtrasolarPlanets(dir.write("p.txt", formatPlanetFile(planets)).c_str()), 1);
    ASSERT_EQ(list.getNumPlanets(), 2);
    for (int i = 0; i < 2; ++i) {
        const Planet& p = planets[i];
        const ExtrasolarPlanet* read = list.getPlanet(i);
        EXPECT_TRUE(read->number == i + 1 && read->hd == p.hd) << i;
        EXPECT_EQ(std::string(read->starName), p.host.substr(0, 15));
        const double relative[] = {read->mass / p.mass, read->period / p.period,
                                   read->semimajorAxis / p.semimajorAxis};
        for (double r : relative)
            EXPECT_NEAR(r, 1.0, 1e-6) << i;
        EXPECT_TRUE(std::fabs(read->eccentricity - p.eccentricity) < 1e-6 &&
                    std::fabs(read->k - p.k) < 1e-3)
            << i;
    }
}

namespace {

// A resource as a binary carries it: sizes, then the zlib stream, amid other bytes.
std::string embedded(const std::string& plain) {
    uLongf size = compressBound(uLong(plain.size()));
    std::string z(size, '\0');
    compress(reinterpret_cast<Bytef*>(z.data()), &size,
             reinterpret_cast<const Bytef*>(plain.data()), uLong(plain.size()));
    z.resize(size);
    std::string b(1000, '\x78');  // decoys: bytes that look like zlib headers
    putU32be(b, unsigned(z.size() + 4));
    putU32be(b, unsigned(plain.size()));
    b += z;
    b += std::string(500, '\0');
    return b;
}

}  // namespace

TEST(PlanetFile, CatalogueIsFoundInsideABinary) {
    ScratchDir dir;
    const std::string other = embedded("{\"satellites\": {}}"), wanted = embedded(kCatalogue);
    EXPECT_EQ(extractCompressedResource(dir.write("program", other + wanted), "\"exoplanets\""),
              kCatalogue);
    std::string none = dir.write("other", other + std::string(wanted.substr(0, wanted.size() / 2)));
    EXPECT_THROW(extractCompressedResource(none, "\"exoplanets\""), DataError);
}

TEST(PlanetConverter, BadCatalogueStopsWithoutOutput) {
    ScratchDir dir, out;
    std::string root = writeStarSources(dir);
    const std::string written = out.file("stardata/exoplanets.txt");
    struct Case {
        const char *json, *message;
        int exitCode;
    } cases[] = {
        {"{\"stars\": {\"HD 1\": {\"smass\": 1, }}}", "cat.json: bad JSON at byte", 1},
        {"{\"stars\": {\"HD 1\": {\"smass\": 1}}}", "has no \"exoplanets\" list", 1},
        {kCatalogue, "", 0},
    };
    for (const Case& c : cases) {
        RunResult r =
            runCommand({DATATREE_PLANETS_TOOL, root, out.path(), dir.write("cat.json", c.json)});
        EXPECT_EQ(r.exitCode, c.exitCode) << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_EQ(fileExists(written), c.exitCode == 0) << c.json;
    }
}
