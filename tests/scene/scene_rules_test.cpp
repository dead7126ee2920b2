// The scene's decisions without a window: what is drawn at which scale, the constellation
// key's cycle, the star-size keys, finding stars by typed names, the rollout order, the
// ephemeris cache and the data root.

#include <gtest/gtest.h>

#include <cstdlib>

#include "scene/data_root.h"
#include "scene/draw_rules.h"
#include "scene/rollout_order.h"
#include "scene/panel_state.h"
#include "scene/scene_keys.h"
#include "scene/star_names.h"

// The frame tests draw the Sun's particles and the cubes; here the edges of each rule.
TEST(ScaleRules, OrreryBelow18SunParticlesFrom5To15CubesNearerThanTenUnits) {
    SceneSettings s;
    EXPECT_TRUE(orreryVisible(s, 17.999));
    EXPECT_FALSE(orreryVisible(s, 18.0));
    EXPECT_TRUE(sunParticlesVisible(s, 5.0));
    EXPECT_TRUE(sunParticlesVisible(s, 15.0));
    EXPECT_FALSE(sunParticlesVisible(s, 4.999));
    EXPECT_FALSE(sunParticlesVisible(s, 15.001));
    s.cubeAtPickedStar = true;
    EXPECT_TRUE(cubesAtPickedStarVisible(s, true, 16.99, 16.0));   // 9.8 units
    EXPECT_FALSE(cubesAtPickedStarVisible(s, true, 17.0, 16.0));   // exactly 10
    EXPECT_FALSE(cubesAtPickedStarVisible(s, false, 16.5, 16.0));  // nothing picked
    s.showSolarSystem = false;
    s.showSun = false;
    EXPECT_FALSE(orreryVisible(s, 10.0));
    EXPECT_FALSE(sunParticlesVisible(s, 10.0));
}

TEST(ScaleRules, StarFlagsAndPickedOnlyConstellations) {
    SceneSettings s;
    EXPECT_EQ(0x2 | 0x20 | 0x10, starDrawingFlags(s));
    s.showColorMap = false;
    s.showTexturedStars = false;
    EXPECT_EQ(0x4 | 0x20, starDrawingFlags(s));
    EXPECT_EQ(ConstellationScope::None, constellationScope(s, true));
    s.showConstellationLines = s.showConstellationNames = s.showConstellationBounds = true;
    EXPECT_EQ(ConstellationScope::All, constellationScope(s, false));
    s.constellationOfPickedOnly = true;
    EXPECT_EQ(ConstellationScope::None, constellationScope(s, false));
    EXPECT_EQ(ConstellationScope::PickedOnly, constellationScope(s, true));
}

TEST(SceneKeys, StarSizeStaysWithinItsLimits) {
    EXPECT_FLOAT_EQ(0.01f, starSizeDown(0.0105f));  // not a wrap to the top
    EXPECT_FLOAT_EQ(0.01f, starSizeDown(0.01f));
    EXPECT_FLOAT_EQ(15.0f, starSizeUp(14.9f));
    EXPECT_FLOAT_EQ(0.9f * 1.05f, starSizeUp(0.9f));
}

TEST(StarNames, MatchesAtTheStartOrAfterAnySeparatorOnTheShorterLength) {
    const struct {
        const char* name;
        const char* typed;
        bool matches;
    } cases[] = {
        {"Alpha Centauri A", "Alp", true},
        {"Alpha Centauri A", "Cen", true},
        {"Rigil Kent.(Alpha Cen)", "Alpha", true},
        {"Gamma (Ursa)-Minor", "Minor", true},
        {"Gliese//Wolf 359", "Wolf", true},
        {"Procyon.B", "B", true},
        {"Sirius", "Siriusly", true},
        {"Alpha Centauri A", "lpha", false},
        {"Gliese/Wolf", "Wolf", false},  // one slash is no separator
        {"Sirius", "Sirio", false},
        {"Sirius", "", false},
        {"---", "x", false},  // a name ending in a separator: empty rest
        {"Vega ", "x", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.matches, starNameMatches(c.name, c.typed)) << c.name << " / " << c.typed;
}

TEST(StarNames, TypedNumbers) {
    EXPECT_EQ(48915, parseWholeNumber(" 48915 "));
    EXPECT_EQ(-3, parseWholeNumber("-3"));
    EXPECT_FALSE(parseWholeNumber("abc"));
    EXPECT_FALSE(parseWholeNumber("12ab"));
    EXPECT_FALSE(parseWholeNumber(""));
    EXPECT_FALSE(parseWholeNumber("99999999999"));
    EXPECT_DOUBLE_EQ(20.5, *parseLeadingNumber("20.500 km/s"));
    EXPECT_DOUBLE_EQ(-7.0, *parseLeadingNumber("-7"));
    EXPECT_FALSE(parseLeadingNumber("fast"));
    EXPECT_FALSE(parseLeadingNumber("1.5.3"));
    EXPECT_FALSE(parseLeadingNumber("nan"));
}

TEST(Rollouts, LetterBringsAClosedRolloutFirstAndOpensItOrClosesAnOpenOne) {
    RolloutOrder r = makeSceneRollouts();
    EXPECT_EQ("acsptimovew", r.describe());
    EXPECT_TRUE(r.selectByKey('O'));
    EXPECT_EQ("Oacsptimvew", r.describe());
    EXPECT_TRUE(r.selectByKey('v'));
    EXPECT_EQ("VOacsptimew", r.describe());
    EXPECT_TRUE(r.selectByKey('o'));  // open: closes, stays where it is
    EXPECT_EQ("Voacsptimew", r.describe());
    EXPECT_FALSE(r.selectByKey('z'));
    EXPECT_EQ("Voacsptimew", r.describe());
    r.rotate();
    EXPECT_EQ("oacsptimewV", r.describe());
    EXPECT_TRUE(r.selectByKey('-'));
    EXPECT_EQ("oacsptimewv", r.describe());
}

TEST(StartUp, EphemerisCacheDoublesOrTakesTheWholeFile) {
    const int slot = 8152;
    EXPECT_EQ(3 * slot, ephemerisCacheSizeFor(3 * slot, 256 * slot));  // cached whole
    EXPECT_EQ(512 * slot, ephemerisCacheSizeFor(1143 * slot, 256 * slot));
    EXPECT_EQ(512 * slot, ephemerisCacheSizeFor(512 * slot, 256 * slot));
}

TEST(StartUp, DataRootFromTopdirOrTwoFoldersUp) {
    setenv("TOPDIR", "/data/tree", 1);
    EXPECT_EQ("/data/tree", dataRootFromEnvironment());
    EXPECT_EQ("/data/tree/data/stardata/skyrama.txt",
              underDataRoot(dataRootFromEnvironment(), "data/stardata/skyrama.txt"));
    unsetenv("TOPDIR");
    EXPECT_EQ("../..", dataRootFromEnvironment());
    EXPECT_FALSE(readableFile("/"));  // a folder is no data file
}
