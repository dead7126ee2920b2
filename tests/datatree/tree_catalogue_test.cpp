// The real catalogue files of the data tree: star datasets, constellations, planets,
// colormaps and the star parameter file, checked against known stars and read with the
// star list's own readers.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <set>

#include "catalogue/star_list.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/text_input.h"

namespace {

struct FileStar {
    Vec3 position;  // pc
    double distanceError = 0, bv = 0, luminosity = 0, rgba[4] = {};
    Vec3 velocity, velocityError;
    std::string cls, type, name;
    double number = 0;
    int hd = 0, hip = 0;
    double distance() const { return length(position); }
    double absoluteMagnitude() const { return -2.5 * std::log10(luminosity); }
};

// Reads a .star text by the format's rules; every broken rule is a test failure.
std::vector<FileStar> readStarText(const std::string& text, const std::string& file) {
    auto lines = splitLines(text);
    std::vector<FileStar> stars;
    int declared = -1;
    if (lines.size() < 2 ||
        std::sscanf(std::string(lines[0].text).c_str(), "NUM_STARS %d", &declared) != 1) {
        ADD_FAILURE() << file << ": no NUM_STARS line";
        return stars;
    }
    EXPECT_EQ(lines[1].text, "SIZE 1 16.4894") << file;
    const std::set<std::string> types = {"I", "II", "III", "IV", "V", "---"};
    for (std::size_t i = 2; i < lines.size(); ++i) {
        std::string line(lines[i].text);
        if (trim(line).empty() || trim(line)[0] == '#') continue;
        FileStar s;
        char cls[64], type[64];
        float number;
        int n = std::sscanf(
            line.c_str(),
            "%lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %63s %f %63s %d %d",
            &s.position.x, &s.position.y, &s.position.z, &s.distanceError, &s.velocity.x,
            &s.velocity.y, &s.velocity.z, &s.velocityError.x, &s.velocityError.y,
            &s.velocityError.z, &s.bv, &s.luminosity, &s.rgba[0], &s.rgba[1], &s.rgba[2],
            &s.rgba[3], cls, &number, type, &s.hd, &s.hip);
        if (n != 21) {
            ADD_FAILURE() << file << ": line " << lines[i].number << " has " << n << " fields";
            return stars;
        }
        s.cls = cls;
        s.type = type;
        s.number = number;
        auto words = splitWords(line);
        for (std::size_t k = 21; k < words.size(); ++k)
            s.name += (k > 21 ? " " : "") + std::string(words[k]);
        bool ok = s.distanceError >= 0 && number >= 0 && number <= 10 && types.count(s.type) &&
                  s.name.size() <= 31 && !s.name.empty() && s.hd > 0 && s.hip > 0 &&
                  s.luminosity > 0;
        for (double c : s.rgba)
            ok = ok && c >= 0 && c <= 1;
        if (!ok) {
            ADD_FAILURE() << file << ": line " << lines[i].number << " breaks the format: " << line;
            return stars;
        }
        stars.push_back(s);
    }
    EXPECT_EQ(int(stars.size()), declared) << file;
    return stars;
}

class CatalogueTree : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!requireDataTree()) return;
        all_ = new std::vector<FileStar>(
            readStarText(readDataText(dataRoot() + "/stardata/hipparcos.star"), "hipparcos.star"));
        for (const FileStar& s : *all_)
            byHd_[s.hd] = &s;
    }
    static void TearDownTestSuite() {
        delete all_;
        all_ = nullptr;
        byHd_.clear();
    }
    void SetUp() override {
        if (!all_) GTEST_SKIP() << "no data tree";
    }
    static const FileStar& star(int hd) {
        static const FileStar none;
        auto it = byHd_.find(hd);
        EXPECT_NE(it, byHd_.end()) << "HD " << hd << " missing";
        return it == byHd_.end() ? none : *it->second;
    }
    static std::vector<FileStar>* all_;
    static std::map<int, const FileStar*> byHd_;
};
std::vector<FileStar>* CatalogueTree::all_ = nullptr;
std::map<int, const FileStar*> CatalogueTree::byHd_;

}  // namespace

TEST_F(CatalogueTree, KnownStarsHaveTheirCatalogueValues) {
    const FileStar& sirius = star(48915);
    EXPECT_EQ(sirius.hip, 32349);
    EXPECT_EQ(sirius.name, "Sirius");
    EXPECT_NEAR(sirius.distance(), 2.637, 0.0005);
    double l, b;
    galacticAngles(sirius.position, &l, &b);
    EXPECT_NEAR(l, 227.23, 0.005);
    EXPECT_NEAR(b, -8.89, 0.005);
    EXPECT_NEAR(sirius.absoluteMagnitude(), 1.44, 0.02);  // V -1.45 at 379.21 mas
    EXPECT_NEAR(sirius.distanceError, 1.58 / 379.21, 1e-5);
    EXPECT_EQ(sirius.cls + sirius.type, "AV");

    const FileStar& vega = star(172167);
    EXPECT_EQ(vega.name, "Vega");
    EXPECT_NEAR(vega.distance(), 1000.0 / 130.23, 0.001);
    EXPECT_NEAR(vega.absoluteMagnitude(), 0.60, 0.03);
    EXPECT_EQ(vega.cls, "A");

    const FileStar& alphaCenA = star(128620);
    EXPECT_NEAR(alphaCenA.distance(), 1000.0 / 742.12, 0.001);
    EXPECT_EQ(alphaCenA.cls + std::to_string(int(alphaCenA.number)) + alphaCenA.type, "G2V");
    // Its radial velocity (-22.2 km/s) is known: the speed is the textbook ~32 km/s.
    EXPECT_NEAR(length(alphaCenA.velocity), 32.4, 1.5);
    EXPECT_LT(alphaCenA.velocityError.x * std::fabs(alphaCenA.velocity.x), 3.0);
}

TEST_F(CatalogueTree, DatasetsHoldTheWholeCatalogueAndItsNearbyPart) {
    EXPECT_GT(all_->size(), 98000u);
    EXPECT_LT(all_->size(), 99500u);
    for (std::size_t i = 1; i < all_->size(); ++i) {
        ASSERT_LE((*all_)[i - 1].distance(),
                  (*all_)[i].distance() + 1e-5);  // nearest first (to the printed digits)
    }
    auto nearby = readStarText(readDataText(dataRoot() + "/stardata/nearby.star"), "nearby.star");
    EXPECT_GT(nearby.size(), 17000u);
    EXPECT_LT(nearby.size(), 18500u);
    std::size_t within = 0;
    // Distances from the printed positions; 10.00 mas stars lie at 100 pc to the last digit.
    for (const FileStar& s : *all_)
        within += s.distance() <= 100.0 + 1e-4 ? 1 : 0;
    EXPECT_EQ(nearby.size(), within);
    EXPECT_LE(nearby.back().distance(), 100.0 + 1e-4);
}

TEST_F(CatalogueTree, StarDatasetsLoadInTheStarList) {
    StarList list;
    std::string nearby = dataRoot() + "/stardata/nearby.star";
    std::string packed = dataRoot() + "/stardata/hipparcos.star";
    const char* files[] = {nearby.c_str()};
    ASSERT_EQ(list.readStarFiles(1, files, 1, 0), 1)
        << "the star list refused nearby.star (stars whose luminosity class is unknown carry "
           "\"---\")";
    EXPECT_GT(list.getNumStars(), 17000);
    StarObj s;
    ASSERT_EQ(list.getStarByHD(&s, 48915), 1);
    EXPECT_NEAR(std::pow(10.0, s.catalogPos.w - 16.4894) *
                    length({s.catalogPos.x, s.catalogPos.y, s.catalogPos.z}),
                2.637, 0.001);
    EXPECT_STREQ(s.commonName, "Sirius");
    StarList whole;
    EXPECT_EQ(whole.readStarFiles(packed.c_str()), 1);
    EXPECT_GT(whole.getNumStars(), 98000);
}

TEST_F(CatalogueTree, EightyEightConstellationsWithHdFigures) {
    std::string text = readFile(dataRoot() + "/stardata/constellations.txt");
    std::map<std::string, std::vector<int>> figureStars;
    std::map<std::string, int> boundaryBlocks;
    std::string code;
    for (const TextLine& l : splitLines(text)) {
        std::string t(trim(l.text));
        if (t.empty() || t[0] == '#') continue;
        auto w = splitWords(t);
        if (w[0] == "CONSTELLATION") {
            code = std::string(w[1]);
            ASSERT_EQ(code.size(), 3u);
            ASSERT_GE(w.size(), 3u) << t;
            ASSERT_LE(t.size() - 18, 31u) << t;
        } else if (t == "BOUNDARY BEGIN") {
            ++boundaryBlocks[code];
        } else if (startsWith(t, "HD")) {
            ASSERT_TRUE(w.size() == 1 || (w.size() == 2 && w[1] == "SHARED")) << t;
            figureStars[code].push_back(std::stoi(std::string(w[0].substr(2))));
        } else if (t != "BOUNDARY END" && t != "LINE BEGIN" && t != "LINE END") {
            double ra, dec;
            char neighbour[8];
            ASSERT_EQ(std::sscanf(t.c_str(), "%lf %lf %7s", &ra, &dec, neighbour), 3) << t;
            ASSERT_TRUE(ra >= 0 && ra <= 24 && dec >= -90 && dec <= 90) << t;
        }
    }
    EXPECT_EQ(figureStars.size(), 88u);
    EXPECT_EQ(boundaryBlocks.size(), 88u);
    // Orion's figure: Betelgeuse, Rigel and the belt, every star in the catalogue.
    const auto& orion = figureStars["Ori"];
    for (int hd : {39801, 34085, 37742, 37128, 36486}) {
        EXPECT_NE(std::find(orion.begin(), orion.end(), hd), orion.end()) << hd;
    }
    for (int hd : orion)
        EXPECT_TRUE(byHd_.count(hd)) << "HD " << hd;

    StarList list;
    EXPECT_EQ(list.loadConstellations((dataRoot() + "/stardata/constellations.txt").c_str()), 1);
}

TEST_F(CatalogueTree, PlanetsInFixedColumnsWithK) {
    std::string text = readFile(dataRoot() + "/stardata/exoplanets.txt");
    int planets = 0;
    bool found51Peg = false;
    for (const TextLine& l : splitLines(text)) {
        std::string line(l.text);
        if (trim(line).empty() || trim(line)[0] == '#') continue;
        ++planets;
        ASSERT_GE(line.size(), 89u) << line;
        ASSERT_GE(splitWords(line).size(), 7u) << line;
        double mass = std::stod(line.substr(40, 13)), period = std::stod(line.substr(53, 12));
        double axis = std::stod(line.substr(65, 13)), e = std::stod(line.substr(78, 12));
        double k = std::stod(line.substr(90));
        EXPECT_TRUE(mass > 0 && period > 0 && axis > 0 && e >= 0 && e < 1 && k >= 0) << line;
        int hd = std::stoi(line.substr(8, 16));
        EXPECT_GT(hd, 0);
        if (hd == 217014) {
            found51Peg = true;
            EXPECT_NEAR(k, 55.1, 0.2);
            EXPECT_NEAR(period, 4.2308, 1e-3);
        }
    }
    EXPECT_GT(planets, 100);
    EXPECT_TRUE(found51Peg);
    StarList list;
    EXPECT_EQ(list.loadExtrasolarPlanets((dataRoot() + "/stardata/exoplanets.txt").c_str()), 1);
}

TEST_F(CatalogueTree, ColormapsLoad) {
    StarList list;
    EXPECT_EQ(list.loadColorMapBV((dataRoot() + "/stardata/bv_colormap.txt").c_str(), -0.4, 2.0),
              1);
    EXPECT_EQ(list.loadColorMapSpType((dataRoot() + "/stardata/spectral_colormap.txt").c_str()), 1);
}

TEST_F(CatalogueTree, ParameterFileIsInTheWritersLayout) {
    // Read from the repository root, as the scene does, so that the names stay relative.
    char previous[4096];
    ASSERT_NE(getcwd(previous, sizeof previous), nullptr);
    ASSERT_EQ(chdir(SKYRAMA_SOURCE_DIR), 0);
    StarList list;
    int read = list.readStarParameter("data/stardata/skyrama.txt");
    ScratchDir dir;
    std::string written = dir.path() + "/written.txt";
    list.writeStarParameter(written.c_str());
    ASSERT_EQ(chdir(previous), 0);
    ASSERT_EQ(read, 1);
    EXPECT_EQ(readFile(written), readFile(dataRoot() + "/stardata/skyrama.txt"));
    const StarParameter& p = list.getStarParameter();
    EXPECT_STREQ(p.constellationFile, "data/stardata/constellations.txt");
    EXPECT_EQ(p.colorMapMode, 1);
}
