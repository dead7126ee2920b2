// The printed star description: every line in its exact format, the Sun, colormap lines,
// constellation and planets.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

namespace {

using cattest::ScratchDir;
using cattest::stdoutOf;

StarObj testStar() {
    StarObj s = makeEmptyStarObj();
    s.pos = Phc{1.0, 0.0, 0.0, 16.4894 + 1.0};  // 10 pc towards the galactic centre
    s.distErr = 0.05f;
    s.vel = Vec3{10.0, -20.0, 5.0};
    s.velErr = Vec3{0.1, 0.2, 0.5};
    s.bv = 0.65f;
    s.lum = 2.5f;
    s.homeMag = 3.25f;
    std::strcpy(s.spectralClass, "K");
    s.spectralNumber = 3.5f;
    std::strcpy(s.spectralType, "IV");
    s.hd = 1234;
    s.hic = 567;
    std::strcpy(s.commonName, "Test Star");
    std::strcpy(s.constellationName, "Sagittarius");
    std::strcpy(s.constellationCode, "Sgr");
    return s;
}

TEST(StarInfo, EveryLineOfAStar) {
    StarList list;
    const double lsr[3] = {10.0, 5.0, 7.0};
    list.setLSR(lsr);
    const StarObj star = testStar();
    EXPECT_EQ(stdoutOf([&] { list.printStarInfo(&star, stdout); }),
              "name      : HD(1234) HIC(567) CommonName(Test Star)\n"
              "constell. : Sagittarius (Sgr)\n"
              "position  :   1.0000   0.0000   0.0000 x 10e( 17.4894) meters\n"
              "RA,DEC    :  17.7606H -28.9387\n"
              "l,b       :   0.0000   0.0000\n"
              "distance  : 3.0860e+17 +- 1.5430e+16 meters\n"
              "distance  : 3.0860e+14 +- 1.5430e+13 kilometers\n"
              "distance  :  10.0001 +-   0.5000 parsecs\n"
              "distance  :  32.6184 +-   1.6309 lightyears\n"
              "%err dist :   5.0000% (percentage error in distance)\n"
              "velX     :  10.0000 +-   1.0000 km/s\n"
              "velY     : -20.0000 +-  -4.0000 km/s\n"
              "velZ     :   5.0000 +-   2.5000 km/s\n"
              "velX-LSRX:   0.0000 +-   1.0000 km/s\n"
              "velY-LSRY: -25.0000 +-  -4.0000 km/s\n"
              "velZ-LSRZ:  -2.0000 +-   2.5000 km/s\n"
              "%err vel  :  10.0000%  20.0000%  50.0000% (percentage errors in velocity)\n"
              "b-v       :   0.6500\n"
              "lum       :   2.5000\n"
              "abs.VMag  :   3.2500\n"
              "spectral  : class(K) num(3.500000) type(IV)\n");

    // Along galactic +y, and with no constellation.
    StarObj other = star;
    other.pos = Phc{0.0, 1.0, 0.0, 17.0};
    other.constellationName[0] = '\0';
    const std::string text = stdoutOf([&] { list.printStarInfo(&other, stdout); });
    EXPECT_NE(text.find("constell. : none\n"), std::string::npos);
    EXPECT_NE(text.find("RA,DEC    :  21.1996H  48.3360\n"), std::string::npos);
    EXPECT_NE(text.find("l,b       :  90.0000   0.0000\n"), std::string::npos);
}

TEST(StarInfo, TheSunAndSeveralRecords) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 1, cattest::fullLine(3, 4, 0, "G 2 V 77 88 Five"), 1);
    StarObj records[2];
    ASSERT_EQ(list.getStar(&records[0], 0), 1);
    ASSERT_EQ(list.getStar(&records[1], 1), 1);
    const StarObj& sun = records[0];
    // The Sun: at 10^11 m, zero parsecs, its own class.
    const std::string sunText = stdoutOf([&] { list.printStarInfo(&sun, stdout); });
    for (const char* line : {"name      : HD(0) HIC(0) CommonName(Sun)\n",
                             "position  :   0.0000   0.0000   0.0000 x 10e( 11.0000) meters\n",
                             "distance  : 1.0000e+11 +- 0.0000e+00 meters\n",
                             "distance  :   0.0000 +-   0.0000 parsecs\n", "b-v       :   0.6300\n",
                             "spectral  : class(G) num(2.000000) type(V)\n"})
        EXPECT_NE(sunText.find(line), std::string::npos) << line;
    const std::string printed =
        stdoutOf([&] { EXPECT_EQ(list.printStarsInfo(records, 2, stdout), 2); });
    EXPECT_EQ(printed.substr(0, sunText.size()), sunText);
    EXPECT_NE(printed.find("name      : HD(77) HIC(88) CommonName(Five)\n", sunText.size()),
              std::string::npos);
    EXPECT_NE(printed.find("distance  :   5.0001 +-   0.2500 parsecs\n"), std::string::npos)
        << printed;
}

TEST(StarInfo, ColormapLineFollowsTheActiveMapAndPlanetsFollowTheStar) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 1, cattest::fullLine(3, 4, 0, "G 2 V 1397 88 Host"));
    const std::string planets = dir.write(
        "p.txt",
        "       1            1397 HD 1397             0.415000   11.535330     0.109700    "
        "0.251000 32.009\n");
    ASSERT_EQ(list.loadExtrasolarPlanets(planets.c_str()), 1);
    StarObj host;
    ASSERT_EQ(list.getStarByHD(&host, 1397), 1);
    auto printed = [&] { return stdoutOf([&] { list.printStarInfo(&host, stdout); }); };
    EXPECT_EQ(printed().find("rgba"), std::string::npos);  // no colormap loaded
    const std::string map = dir.write("bv.txt", "1\n0.25 0.5 0.75 1\n");
    ASSERT_EQ(list.loadColorMapBV(map.c_str(), -0.4, 2.0), 1);
    ASSERT_EQ(list.getStarByHD(&host, 1397), 1);
    const std::string tail =
        "bv-rgba   :   0.2500   0.5000   0.7500   1.0000\n"
        "spectral  : class(G) num(2.000000) type(V)\n"
        "#. planet : 1\n"
        "Planet 1 (star: HD1397)\n"
        "mass:         0.41 of Jupiter\n"
        "semimajor R:  0.11 A.U.\n"
        "period:       11.54 days\n"
        "eccentricity: 0.25\n"
        "K:            32.01 m/s\n";
    const std::string text = printed();
    ASSERT_GE(text.size(), tail.size());
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
    list.setWhichColorMap(0);
    EXPECT_EQ(printed().find("rgba"), std::string::npos);
}

}  // namespace
