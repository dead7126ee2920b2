// The star converter on small synthetic sources: what it writes, and that damaged sources
// stop it with a clear message and no output file.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/star_sources_fixture.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/star_catalogue.h"
#include "tools/datatree/core/text_input.h"

namespace {

std::string starsTool() {
    return DATATREE_STARS_TOOL;
}

// Data lines of a .star text (comments and the two header lines skipped).
std::vector<std::string> dataLines(const std::string& text) {
    std::vector<std::string> lines;
    for (const TextLine& l : splitLines(text)) {
        if (l.number <= 2 || l.text.empty() || l.text[0] == '#') continue;
        lines.emplace_back(l.text);
    }
    return lines;
}

// The 21 scanned fields and the name, as the star list reads a data line.
struct ParsedLine {
    double f[16];
    char cls[64], type[64];
    float number;
    int hd, hip, fields;
    std::string name;
};

ParsedLine parse(const std::string& line) {
    ParsedLine p{};
    p.fields =
        std::sscanf(line.c_str(),
                    "%lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %63s %f "
                    "%63s %d %d",
                    &p.f[0], &p.f[1], &p.f[2], &p.f[3], &p.f[4], &p.f[5], &p.f[6], &p.f[7], &p.f[8],
                    &p.f[9], &p.f[10], &p.f[11], &p.f[12], &p.f[13], &p.f[14], &p.f[15], p.cls,
                    &p.number, p.type, &p.hd, &p.hip);
    auto words = splitWords(line);
    for (std::size_t i = 21; i < words.size(); ++i)
        p.name += (i > 21 ? " " : "") + std::string(words[i]);
    return p;
}

}  // namespace

TEST(StarConverter, WritesBothDatasetsFromTheSources) {
    ScratchDir sources, out;
    std::string root = writeStarSources(sources);
    RunResult r = runCommand({starsTool(), root, out.path()});
    ASSERT_EQ(r.exitCode, 0) << r.err;

    std::string packed = readFile(out.path() + "/stardata/hipparcos.star");
    EXPECT_EQ(packed.substr(0, 2), "EZ");  // the full list is stored compressed
    std::string all = readDataText(out.path() + "/stardata/hipparcos.star");
    ASSERT_EQ(all.substr(0, 27), "NUM_STARS 3\nSIZE 1 16.4894\n");
    std::string near = readFile(out.path() + "/stardata/nearby.star");
    ASSERT_EQ(near.substr(0, 27), "NUM_STARS 2\nSIZE 1 16.4894\n");

    // Nearest first; the star without HD and the one without parallax are left out.
    auto lines = dataLines(all);
    ASSERT_EQ(lines.size(), 3u);
    ParsedLine sirius = parse(lines[0]), vega = parse(lines[1]), far = parse(lines[2]);
    for (const ParsedLine* p : {&sirius, &vega, &far})
        EXPECT_EQ(p->fields, 21);
    EXPECT_EQ(sirius.hd, 48915);
    EXPECT_EQ(sirius.hip, 32349);
    EXPECT_EQ(sirius.name, "Sirius");
    EXPECT_EQ(vega.name, "Vega");     // proper name from the star-name list
    EXPECT_EQ(far.name, "Beta Cet");  // designation, Greek letter spelled out
    EXPECT_EQ(far.hd, 400);

    double d = std::sqrt(sirius.f[0] * sirius.f[0] + sirius.f[1] * sirius.f[1] +
                         sirius.f[2] * sirius.f[2]);
    EXPECT_NEAR(d, 1000.0 / 379.21, 1e-5);
    double l, b;
    galacticAngles({sirius.f[0], sirius.f[1], sirius.f[2]}, &l, &b);
    EXPECT_NEAR(l, 227.2303, 0.002);
    EXPECT_NEAR(b, -8.8902, 0.002);
    EXPECT_NEAR(sirius.f[3], 1.58 / 379.21, 1e-6);  // distance error
    EXPECT_NEAR(-2.5 * std::log10(sirius.f[11]), -1.44 + 5 + 5 * std::log10(0.37921), 1e-4);
    EXPECT_STREQ(sirius.cls, "A");
    EXPECT_FLOAT_EQ(sirius.number, 1.0f);
    EXPECT_STREQ(sirius.type, "V");
    EXPECT_STREQ(far.type, "III");
    // B-V 0.009 is a white star, B-V 1.0 an orange one.
    EXPECT_GT(sirius.f[14], sirius.f[12]);
    EXPECT_GT(far.f[12], far.f[14]);
}

TEST(StarConverter, VelocityErrorsShowWhetherTheRadialVelocityIsKnown) {
    ScratchDir sources, out;
    std::string root = writeStarSources(sources);
    ASSERT_EQ(runCommand({starsTool(), root, out.path()}).exitCode, 0);
    auto lines = dataLines(readFile(out.path() + "/stardata/nearby.star"));
    ParsedLine sirius = parse(lines[0]);
    // Sirius has a radial velocity in the bright-star list: every component is known to a
    // few per cent or a few km/s.
    for (int i = 0; i < 3; ++i)
        EXPECT_LT(sirius.f[7 + i] * std::fabs(sirius.f[4 + i]), 3.0);

    // The far star has none: along its line of sight the error is the assumed 30 km/s.
    auto all = dataLines(readDataText(out.path() + "/stardata/hipparcos.star"));
    ParsedLine far = parse(all[2]);
    Vec3 sight = normalized({far.f[0], far.f[1], far.f[2]});
    int dominant = 0;
    for (int i = 1; i < 3; ++i) {
        if (std::fabs(sight[i]) > std::fabs(sight[dominant])) dominant = i;
    }
    double fraction = far.f[7 + dominant];
    double sigma = fraction * std::max(std::fabs(far.f[4 + dominant]), kVelocityErrorFloor);
    // Either the error shows in km/s or the fraction is at its cap.
    EXPECT_TRUE(sigma > 15.0 || std::fabs(fraction - kMaxFractionalError) < 1e-6)
        << "fraction " << fraction << " of " << far.f[4 + dominant] << " km/s";
}

TEST(StarConverter, DamagedSourcesStopWithAMessageAndWriteNothing) {
    struct Case {
        const char* what;
        std::string file;
        std::string bytes;
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
        RunResult r = runCommand({starsTool(), root, out.path()});
        EXPECT_EQ(r.exitCode, 1) << c.what;
        EXPECT_NE(r.err.find("datatree_stars: error: "), std::string::npos)
            << c.what << ": " << r.err;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.what << ": " << r.err;
        EXPECT_FALSE(fileExists(out.path() + "/stardata/hipparcos.star")) << c.what;
        EXPECT_FALSE(fileExists(out.path() + "/stardata/nearby.star")) << c.what;
    }
}

TEST(StarConverter, AFailedRunKeepsTheFilesOfTheLastGoodOne) {
    ScratchDir sources, out;
    std::string root = writeStarSources(sources);
    ASSERT_EQ(runCommand({starsTool(), root, out.path()}).exitCode, 0);
    std::string before = readFile(out.path() + "/stardata/nearby.star");
    sources.write("package/data/stars.14.json", "{\"features\": [");
    EXPECT_EQ(runCommand({starsTool(), root, out.path()}).exitCode, 1);
    EXPECT_EQ(readFile(out.path() + "/stardata/nearby.star"), before);
    EXPECT_FALSE(fileExists(out.path() + "/stardata/nearby.star.tmp"));
}

TEST(StarConverter, WrongArgumentsPrintUsage) {
    RunResult r = runCommand({starsTool()});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(r.err, "usage: datatree_stars <unpacked-sources> <data-dir>\n");
    ScratchDir empty, out;
    r = runCommand({starsTool(), empty.path(), out.path()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_NE(r.err.find("cannot open ["), std::string::npos) << r.err;
}
