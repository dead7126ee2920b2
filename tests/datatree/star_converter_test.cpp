// The star converter on small synthetic sources: what it writes, read back with the star
// list; damaged sources stop it with a clear message and no output file.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/star_sources_fixture.h"
#include "tools/datatree/core/star_catalogue.h"

static const std::string starsTool = DATATREE_STARS_TOOL;

TEST(StarConverter, WritesBothDatasetsAsTheStarListReadsThem) {
    ScratchDir sources, out;
    RunResult r = runCommand({starsTool, writeStarSources(sources), out.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const std::string all = out.file("stardata/hipparcos.star");
    const std::string near = out.file("stardata/nearby.star");
    EXPECT_EQ(readFile(all).substr(0, 2), "EZ");  // the full list is stored compressed
    EXPECT_EQ(readDataText(all).substr(0, 27), "NUM_STARS 3\nSIZE 1 16.4894\n");
    EXPECT_EQ(readFile(near).substr(0, 27), "NUM_STARS 2\nSIZE 1 16.4894\n");

    // The star without HD and the one without parallax are left out; the far one is not near.
    StarList whole, nearby;
    ASSERT_TRUE(readStars(whole, all));
    ASSERT_TRUE(readStars(nearby, near));
    EXPECT_TRUE(whole.getNumStars() == 3 && nearby.getNumStars() == 2);
    StarObj sirius = starByHd(nearby, 48915), vega = starByHd(nearby, 172167);
    StarObj far = starByHd(whole, 400);
    EXPECT_EQ(sirius.hic, 32349);
    // Names from the star-name list, or the designation with its Greek letter spelled out.
    EXPECT_EQ(std::string(sirius.commonName) + "/" + vega.commonName + "/" + far.commonName,
              "Sirius/Vega/Beta Cet");
    EXPECT_NEAR(parsecs(sirius), 1000.0 / 379.21, 1e-5);
    double l, b;
    galacticLB(sirius, &l, &b);
    EXPECT_NEAR(std::hypot(l - 227.2303, b + 8.8902), 0.0, 0.002);
    EXPECT_NEAR(sirius.distErr, 1.58 / 379.21, 1e-6);
    EXPECT_NEAR(absoluteMagnitude(sirius), -1.44 + 5 + 5 * std::log10(0.37921), 1e-4);
    EXPECT_EQ(std::string(sirius.spectralClass) + std::to_string(int(sirius.spectralNumber)) +
                  sirius.spectralType + " " + far.spectralType,
              "A1V III");
    // B-V 0.009 is a white star, B-V 1.0 an orange one.
    EXPECT_GT(sirius.fileColor[2], sirius.fileColor[0]);
    EXPECT_GT(far.fileColor[0], far.fileColor[2]);

    // Sirius's radial velocity is known: every component to a few km/s. The far star's is
    // not: along its line of sight the error is the assumed 30 km/s (or the capped fraction).
    for (int i = 0; i < 3; ++i)
        EXPECT_LT(sirius.velErr[i] * std::fabs(sirius.vel[i]), 3.0) << i;
    Vec3 sight = normalized({far.catalogPos.x, far.catalogPos.y, far.catalogPos.z});
    int along = 0;
    for (int i = 1; i < 3; ++i)
        if (std::fabs(sight[i]) > std::fabs(sight[along])) along = i;
    double fraction = far.velErr[along];
    EXPECT_TRUE(fraction * std::max(std::fabs(far.vel[along]), kVelocityErrorFloor) > 15.0 ||
                std::fabs(fraction - kMaxFractionalError) < 1e-5)
        << "fraction " << fraction << " of " << far.vel[along] << " km/s";
}

TEST(StarConverter, DamagedSourcesStopWithAMessageAndWriteNothing) {
    struct Case {
        const char* what;
        std::string file, bytes;
        const char* message;
    };
    const std::string s = "usr/share/stellarium/stars/default/";
    std::string full = zoneCatalogue({{11, 30, 180, 3, 500}});
    std::vector<Case> cases = {
        {"truncated zone catalogue", s + "stars_2_0v0_8.cat", full.substr(0, full.size() - 5),
         "stars_2_0v0_8.cat: truncated"},
        {"header only", s + "stars_2_0v0_8.cat", full.substr(0, 20),
         "shorter than the 32-byte header"},
        {"zone table announces more", s + "stars_2_0v0_8.cat",
         zoneCatalogue({{11, 30, 180, 3, 500}}, 3), "announces 4 records"},
        {"not a catalogue", s + "stars_1_0v0_8.cat", std::string(200, 'x'), "bad magic number"},
        {"bad JSON", "package/data/stars.14.json", "{\"features\":[{\"id\":1,}]}",
         "bad JSON at byte"},
        {"no coordinates", "package/data/stars.14.json",
         "{\"features\":[{\"id\":1,\"properties\":{\"mag\":1}}]}", "no [ra, dec] coordinates"},
        {"missing columns", s + "cross-id.dat", "# HIP\n32349\t\t151881\n", "cross-id.dat: line 2"},
        {"not a number", s + "hip_plx_err.dat", "32349\tabc\n", "parallax error is not a number"},
    };
    for (const Case& c : cases) {
        ScratchDir sources, out;
        std::string root = writeStarSources(sources);
        sources.write(c.file, c.bytes);
        RunResult r = runCommand({starsTool, root, out.path()});
        EXPECT_EQ(r.exitCode, 1) << c.what;
        EXPECT_NE(r.err.find(std::string("datatree_stars: error: ")), std::string::npos)
            << c.what << ": " << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.what << ": " << r.err;
        EXPECT_FALSE(fileExists(out.file("stardata/hipparcos.star")) ||
                     fileExists(out.file("stardata/nearby.star")))
            << c.what;
    }
}

TEST(StarConverter, AFailedRunKeepsTheFilesOfTheLastGoodOneAndUsageIsPrinted) {
    ScratchDir sources, out;
    std::string root = writeStarSources(sources);
    ASSERT_EQ(runCommand({starsTool, root, out.path()}).exitCode, 0);
    std::string before = readFile(out.file("stardata/nearby.star"));
    sources.write("package/data/stars.14.json", "{\"features\": [");
    EXPECT_EQ(runCommand({starsTool, root, out.path()}).exitCode, 1);
    EXPECT_EQ(readFile(out.file("stardata/nearby.star")), before);
    EXPECT_FALSE(fileExists(out.file("stardata/nearby.star.tmp")));

    RunResult r = runCommand({starsTool});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "usage: datatree_stars <unpacked-sources> <data-dir>\n");
    r = runCommand({starsTool, out.file("empty"), out.path()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot open ["), std::string::npos) << r.err;
}
