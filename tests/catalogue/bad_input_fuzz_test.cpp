// Damaged star, parameter, colormap, constellation, planet and tree files load or fail with a
// message, never crash, hang, read out of bounds or allocate without bound (the sanitizer
// build runs these too).

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "catalogue/extrasolar_planet_orbit.h"
#include "catalogue/mst.h"
#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace {

using cattest::ScratchDir;

const char* const kStarFile =
    "NUM_STARS 4\nSIZE 1 16.4894\n# comment\n"
    "1.3 0.2 -0.1 0.002 -12.8 -13.4 14.8 1.6 1.5 0.02 0.90 0.0052 1 0.9 0.8 1 K 1.0 V 1397 71681 "
    "Toliman\n"
    "2.5 1.0 0.4 0.01 10 20 30 0.1 0.1 0.1 0.65 1.0 1 1 1 1 G 2 V 1234 5678 Alpha Centauri A\n"
    "\n-3 4 0 0.1 5 5 5\n7 -2 1\n";

const char* const kParameterFile =
    "Star Parameters\n---------------\n"
    "zRange_selection     = on 15.0 20.0\n"
    "Sptype_selection     = on G 0 4\n"
    "color_map = no_colormap\n"
    "texture_source = Gauss\n"
    "filterSize    = 0.2\n"
    "exposure      = 0.9\n"
    "starAtYear    = 2002\n"
    "LSR_LB_SPEED = 90 10 20\n";

const char* const kConstellations =
    "CONSTELLATION Ori Orion\nBOUNDARY BEGIN\n17.7606 -28.9387 Sgr\n21.1996 48.3360 Cyg\n"
    "BOUNDARY END\nLINE BEGIN\nHD1397\nHD1234 SHARED\nHD999\nLINE END\n"
    "CONSTELLATION CMa Canis Major\nLINE BEGIN\nHD1234\nHD1397\nLINE END\n";

std::string planetLine(int number, int hd, const char* host, const char* e) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "%8d%16d %-15s%13s%12s%13s%12s%s\n", number, hd, host, "0.5",
                  "10.0", "0.1", e, " 30.5");
    return buf;
}

struct Sample {
    const char* name;
    std::string text;
    // Loads the file into the list (which holds kStarFile) and checks what was kept.
    std::function<int(StarList&, const std::string&)> load;
};

}  // namespace

TEST(DamagedFiles, LoadOrFailCleanly) {
    ScratchDir dir;
    const std::string stars = dir.write("stars.star", kStarFile);
    const std::vector<Sample> samples = {
        {"star file", kStarFile,
         [](StarList&, const std::string& path) {
             StarList fresh;
             int status = 0;
             cattest::stdoutOf([&] { status = fresh.readStarFiles(path.c_str(), 1, 0); });
             EXPECT_GE(fresh.getNumRecords(), 1);  // the Sun at least
             EXPECT_LE(fresh.getNumRecords(), 100);
             return status;
         }},
        {"parameter file", kParameterFile,
         [](StarList& list, const std::string& path) {
             const auto block = [&] {
                 return cattest::stdoutOf([&] { list.writeStarParameter(stdout); });
             };
             const std::string before = block();
             const int status = list.readStarParameter(path.c_str(), nullptr, 0);
             if (status == -1) {
                 EXPECT_EQ(block(), before);  // applied wholly or not at all
             }
             return status;
         }},
        {"B-V colormap", "# ramp\n3\n1 0 0 1\n0 1 0 1\n0 0 1 1\n",
         [](StarList& list, const std::string& path) {
             return list.loadColorMapBV(path.c_str(), -0.4, 2.0);
         }},
        {"spectral colormap", "O5(V) 0 0 158 184 255\nG2(V) 0 0 255 240 230\nDA3 0 0 200 200 255\n",
         [](StarList& list, const std::string& path) {
             return list.loadColorMapSpType(path.c_str());
         }},
        {"constellations", kConstellations,
         [](StarList& list, const std::string& path) {
             const int status = list.loadConstellations(path.c_str());
             EXPECT_LE(list.getNumConstellations(), 8);
             for (int c = 0; c < list.getNumConstellations(); ++c) {
                 int n = 0;
                 std::int32_t* set = list.getConstellationLineSet(c, &n);
                 for (int i = 0; i < 2 * n; ++i)
                     EXPECT_TRUE(set[i] >= 0 && set[i] < list.getNumRecords());
                 list.releaseArray(set);
             }
             return status;
         }},
        {"planets",
         "# planets\n" + planetLine(1, 1397, "HD 1397", "0.1") +
             planetLine(2, 1234, "Alpha Cen", "0.5") + planetLine(3, -1, "Toliman", "0.03"),
         [](StarList& list, const std::string& path) {
             const int status = list.loadExtrasolarPlanets(path.c_str());
             EXPECT_LE(list.getNumPlanets(), status == 1 ? 12 : 0);
             for (int i = 0; i < list.getNumPlanets(); ++i) {
                 const ExtrasolarPlanet* p = list.getPlanet(i);
                 EXPECT_TRUE(p->eccentricity >= 0.0f && p->eccentricity < 1.0f);
                 EXPECT_GT(p->mass, 0.0f);
             }
             return status;
         }},
        {"spanning tree",
         "MST-FILE 12 points\n1 0\n2 1\n3 2\n4 3\n5 4\n6 5\n7 6\n8 7\n9 8\n10 9\n11 10\n",
         [](StarList&, const std::string& path) {
             int n = -1;
             std::int32_t* tree = load_MST(path.c_str(), &n);
             if (tree == nullptr) return -1;
             EXPECT_GE(n, 1);
             for (int i = 0; i < 2 * (n - 1); ++i)
                 EXPECT_TRUE(tree[i] >= 0 && tree[i] < n);
             releaseMSTArray(tree);
             return 1;
         }},
    };
    for (const Sample& sample : samples) {
        StarList list;
        cattest::stdoutOf([&] { ASSERT_EQ(list.readStarFiles(stars.c_str(), 1, 0), 1); });
        for (unsigned seed = 0; seed < 300; ++seed) {
            SCOPED_TRACE(std::string(sample.name) + " seed " + std::to_string(seed));
            const std::string path = dir.write("damaged", cattest::damaged(sample.text, seed));
            int status = 0;
            const std::string err = cattest::stderrOf([&] { status = sample.load(list, path); });
            ASSERT_TRUE(status == 1 || status == -1);
            if (status == -1 && !err.empty()) {
                EXPECT_EQ(err.rfind("Err", 0), 0u) << err;
            }
        }
    }
}
