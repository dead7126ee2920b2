// The real catalogue files of the data tree, read with the star list's own readers: star
// datasets, constellations, planets, colormaps and the star parameter file, checked against
// known stars.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <set>

#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"

namespace {

// The whole catalogue, read once for the suite, with constellations and planets on it.
class CatalogueTree : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!requireDataTree()) return;
        all_ = new StarList;
        if (!readStars(*all_, dataRoot() + "/stardata/hipparcos.star")) {
            ADD_FAILURE() << "the star list refused hipparcos.star";
            TearDownTestSuite();
        }
    }
    static void TearDownTestSuite() {
        delete all_;
        all_ = nullptr;
    }
    void SetUp() override {
        if (!all_) GTEST_SKIP() << "no data tree";
    }
    static StarList* all_;
};
StarList* CatalogueTree::all_ = nullptr;

}  // namespace

TEST_F(CatalogueTree, KnownStarsHaveTheirCatalogueValues) {
    StarObj sirius = starByHd(*all_, 48915);
    EXPECT_TRUE(sirius.hic == 32349 && std::string(sirius.commonName) == "Sirius");
    EXPECT_NEAR(parsecs(sirius), 2.637, 0.0005);
    double l, b;
    galacticLB(sirius, &l, &b);
    EXPECT_NEAR(std::hypot(l - 227.23, b + 8.89), 0.0, 0.005);
    EXPECT_NEAR(absoluteMagnitude(sirius), 1.44, 0.02);  // V -1.45 at 379.21 mas
    EXPECT_NEAR(sirius.distErr, 1.58 / 379.21, 1e-5);
    EXPECT_EQ(std::string(sirius.spectralClass) + sirius.spectralType, "AV");

    StarObj vega = starByHd(*all_, 172167);
    EXPECT_EQ(std::string(vega.commonName) + " " + vega.spectralClass, "Vega A");
    EXPECT_NEAR(parsecs(vega), 1000.0 / 130.23, 0.001);
    EXPECT_NEAR(absoluteMagnitude(vega), 0.60, 0.03);

    StarObj alphaCenA = starByHd(*all_, 128620);
    EXPECT_NEAR(parsecs(alphaCenA), 1000.0 / 742.12, 0.001);
    EXPECT_EQ(std::string(alphaCenA.spectralClass) + std::to_string(int(alphaCenA.spectralNumber)) +
                  alphaCenA.spectralType,
              "G2V");
    // Its radial velocity (-22.2 km/s) is known: the speed is the textbook ~32 km/s.
    EXPECT_NEAR(length(alphaCenA.vel), 32.4, 1.5);
    EXPECT_LT(alphaCenA.velErr.x * std::fabs(alphaCenA.vel.x), 3.0);
}

TEST_F(CatalogueTree, DatasetsHoldTheWholeCatalogueAndItsNearbyPart) {
    EXPECT_TRUE(all_->getNumStars() > 98000 && all_->getNumStars() < 99500);
    int within = 0;
    for (int i = 0; i < all_->getNumRecords(); ++i) {
        const StarObj& s = all_->getStarArray()[i];
        ASSERT_TRUE(s.hd > 0 && s.hic > 0 && s.commonName[0] != '\0' && s.lum > 0) << i;
        // 10.00 mas stars lie at 100 pc to the last printed digit.
        within += parsecs(s) <= 100.0 + 1e-4 ? 1 : 0;
    }
    StarList nearby;
    ASSERT_TRUE(readStars(nearby, dataRoot() + "/stardata/nearby.star"))
        << "stars whose luminosity class is unknown carry \"---\"";
    EXPECT_TRUE(nearby.getNumStars() > 17000 && nearby.getNumStars() < 18500);
    EXPECT_EQ(nearby.getNumStars(), within);
}

TEST_F(CatalogueTree, EightyEightConstellationsWithHdFigures) {
    const std::string file = dataRoot() + "/stardata/constellations.txt";
    ASSERT_EQ(all_->loadConstellations(file.c_str()), 1);
    ASSERT_EQ(all_->getNumConstellations(), 88);
    int lines = 0;
    for (int id = 0; id < 88; ++id) {
        const Constellation* c = all_->getConstellation(id);
        EXPECT_TRUE(c->numBoundaries >= 1 && c->numLines >= 1) << c->code;
        lines += c->numLines;
        if (std::string(c->code) != "Ori") continue;
        // Orion's figure: Betelgeuse, Rigel and the belt; Rigel is its brightest member.
        std::set<int> stars;
        for (int k = 0; k < c->numLines; ++k)
            stars.insert({c->lines[k].from->hd, c->lines[k].to->hd});
        for (int hd : {39801, 34085, 37742, 37128, 36486})
            EXPECT_TRUE(stars.count(hd)) << "HD " << hd;
        ASSERT_NE(c->brightestStar, nullptr);
        EXPECT_EQ(c->brightestStar->hd, 34085);
    }
    // A stroke of n stars makes n - 1 lines when every one of its stars is in the catalogue.
    const std::string text = readFile(file);
    EXPECT_EQ(lines, int(testsupport::linesStartingWith(text, "HD").size()) -
                         testsupport::countLines(text, "LINE BEGIN"));
}

TEST_F(CatalogueTree, PlanetsWithTheirRadialVelocityAmplitude) {
    ASSERT_EQ(all_->loadExtrasolarPlanets((dataRoot() + "/stardata/exoplanets.txt").c_str()), 1);
    EXPECT_GT(all_->getNumPlanets(), 100);
    const ExtrasolarPlanet* peg51 = nullptr;
    for (int i = 0; i < all_->getNumPlanets(); ++i) {
        const ExtrasolarPlanet* p = all_->getPlanet(i);
        EXPECT_TRUE(p->hd > 0 && p->mass > 0 && p->period > 0 && p->semimajorAxis > 0 && p->k >= 0)
            << p->starName;
        if (p->hd == 217014) peg51 = p;
    }
    ASSERT_NE(peg51, nullptr);
    EXPECT_NEAR(peg51->k, 55.1, 0.2);
    EXPECT_TRUE(std::fabs(peg51->period - 4.2308) < 1e-3 && peg51->hostStar != nullptr);
}

TEST_F(CatalogueTree, ColormapsAndTheParameterFileLoad) {
    StarList list;
    EXPECT_EQ(list.loadColorMapBV((dataRoot() + "/stardata/bv_colormap.txt").c_str(), -0.4, 2.0),
              1);
    EXPECT_EQ(list.loadColorMapSpType((dataRoot() + "/stardata/spectral_colormap.txt").c_str()), 1);

    // Read from the repository root, as the scene does, so that the names stay relative; the
    // writer gives the same bytes back.
    char previous[4096];
    ASSERT_NE(getcwd(previous, sizeof previous), nullptr);
    ASSERT_EQ(chdir(SKYRAMA_SOURCE_DIR), 0);
    int read = list.readStarParameter("data/stardata/skyrama.txt");
    ScratchDir dir;
    list.writeStarParameter(dir.file("written.txt").c_str());
    ASSERT_EQ(chdir(previous), 0);
    ASSERT_EQ(read, 1);
    EXPECT_EQ(readFile(dir.file("written.txt")), readFile(dataRoot() + "/stardata/skyrama.txt"));
    EXPECT_STREQ(list.getStarParameter().constellationFile, "data/stardata/constellations.txt");
}
