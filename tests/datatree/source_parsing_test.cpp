// Parsing rules the converters share: spectral types, names, JSON, sky frames and space
// motion.
#include <gtest/gtest.h>

#include <cmath>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/json.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/spectral_type.h"
#include "tools/datatree/core/star_names.h"

TEST(SpectralType, ClassSubclassAndLuminosityClass) {
    struct Case {
        const char* text;
        const char* cls;
        double number;
        const char* luminosity;
    };
    const Case cases[] = {
        {"A1V+DA", "A", 1, "V"},     {"K0IIIb", "K", 0, "III"},  {"B9.5Va", "B", 9.5, "V"},
        {"G8/K0III", "G", 8, "III"}, {"K2/3III", "K", 2, "III"}, {"F3IV-V", "F", 3, "IV"},
        {"G8III/IV", "G", 8, "III"}, {"B1Ia0", "B", 1, "I"},     {"M2Iab", "M", 2, "I"},
        {"kA2hA5mA7V", "A", 5, "V"}, {"gK0", "K", 0, "III"},     {"dM2e", "M", 2, "V"},
        {"sdB5", "B", 5, "---"},     {"K2VI", "K", 2, "---"},    {"DA2", "DA", 2, "---"},
        {"WC8+O9I", "WC", 8, "---"}, {"M", "M", 0, "---"},       {"C5,4", "C", 5, "---"},
        {"", "---", 0, "---"},       {"B9p", "B", 9, "---"},     {"(B)e", "B", 0, "---"},
        {"G5 III", "G", 5, "III"},   {"M12", "M", 0, "---"},
    };
    for (const Case& c : cases) {
        SpectralType t = parseSpectralType(c.text);
        EXPECT_TRUE(t.spectralClass == c.cls && t.number == c.number &&
                    t.luminosityClass == c.luminosity)
            << c.text << ": " << t.spectralClass << " " << t.number << " " << t.luminosityClass;
    }
}

TEST(StarNames, DesignationsAndProperNamesBecomeShortAscii) {
    EXPECT_EQ(designationToAscii("\xCE\xB1_CMa"), "Alpha CMa");
    EXPECT_EQ(designationToAscii("\xCE\xB1"
                                 "1_Cen"),
              "Alpha1 Cen");
    EXPECT_EQ(designationToAscii("9_CMa"), "9 CMa");
    EXPECT_EQ(toAscii("Arcal\xC3\xADs"), "Arcalis");
    EXPECT_EQ(toAscii("Campbell\xE2\x80\x99s Hydrogen Star"), "Campbell's Hydrogen Star");
    EXPECT_EQ(toAscii("\xE5\xA4\xA9\xE7\x8B\xBC"), "");  // no ASCII spelling: dropped
    EXPECT_EQ(toAscii("bad \xC3 byte"), "bad byte");     // broken UTF-8
    EXPECT_EQ(fitStarName(std::string(40, 'x')), std::string(31, 'x'));
    EXPECT_EQ(fitStarName("Os Piscis Meridiani and more wordsX"),
              "Os Piscis Meridiani and more wo");
    EXPECT_EQ(fitStarName("thirty characters name ending  and"), "thirty characters name ending");
}

TEST(Json, ReadsNestedDocumentsAndEscapes) {
    JsonValue v =
        parseJson("{\"a\": [1, -2.5e2, true, null], \"b\": {\"c\": \"x\\u00e9\\n\"}}", "t");
    ASSERT_TRUE(v.isObject());
    const JsonValue* a = v.find("a");
    ASSERT_TRUE(a && a->isArray());
    EXPECT_EQ(a->items().size(), 4u);
    EXPECT_DOUBLE_EQ(a->items()[1].number(), -250.0);
    EXPECT_EQ(v.find("b")->find("c")->string(), "x\xC3\xA9\n");
    EXPECT_EQ(v.find("missing"), nullptr);
}

TEST(Json, MalformedTextNamesTheByte) {
    const char* bad[] = {"{\"a\": 1,}",  "[1 2]", "{\"a\" 1}", "\"open",
                         "{\"a\": tru}", "[1] x", "[01x]",     ""};
    for (const char* text : bad) {
        try {
            parseJson(text, "src.json");
            ADD_FAILURE() << "accepted " << text;
        } catch (const DataError& e) {
            EXPECT_NE(std::string(e.what()).find("src.json: bad JSON at byte "), std::string::npos)
                << e.what();
        }
    }
    // Deep nesting is refused instead of exhausting the stack.
    std::string deep(100000, '[');
    EXPECT_THROW(parseJson(deep, "deep.json"), DataError);
}

TEST(SkyFrames, GalacticAxesAndTheWayBack) {
    // The galactic centre and the north galactic pole land on +x and +z.
    EXPECT_NEAR(toGalactic(equatorialUnit(266.40499, -28.93617)).x, 1.0, 1e-7);
    EXPECT_NEAR(toGalactic(equatorialUnit(192.85948, 27.12825)).z, 1.0, 1e-7);
    EXPECT_NEAR(toEquatorial(toGalactic({0.3, -0.4, 0.866})).y, -0.4, 1e-9);
}

TEST(SpaceMotion, RadialAndTangentialPartsInTheGalacticFrame) {
    // A star at the north galactic pole receding at 10 km/s moves along +z.
    SpaceMotion m = spaceMotion(192.85948, 27.12825, 100.0, 1.0, 0.0, 0.0, 10.0, 30.0);
    EXPECT_NEAR(m.velocity.z, 10.0, 1e-5);
    EXPECT_NEAR(length(m.sigma - Vec3{0, 0, 30.0}), 0.0, 1e-4);  // the radial error: along z
    // Towards the galactic centre, 100 mas/yr north at 100 mas parallax is 4.74 km/s across.
    m = spaceMotion(266.40499, -28.93617, 100.0, 10.0, 0.0, 100.0, 0.0, 0.0);
    EXPECT_NEAR(length(m.velocity), kAuPerYearKmS, 1e-6);
    EXPECT_NEAR(m.velocity.x, 0.0, 1e-5);
    EXPECT_NEAR(length(m.sigma), kAuPerYearKmS * 0.1, 1e-6);  // 10 % parallax error
}
