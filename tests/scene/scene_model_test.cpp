// What the scene computes for the panel and the screen, without a window: the picked star's
// fields and information lines, sky angles, the look-at turn, the LSR fields, the examine
// windows and the velocity trails.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "scene/examine_windows.h"
#include "scene/look_at.h"
#include "scene/picked_star_texts.h"
#include "scene/sky_angles.h"
#include "scene/star_velocity.h"
#include "scene/velocity_trails.h"

namespace {

StarObj starAt(double x, double y, double z, double w) {
    StarObj s = makeEmptyStarObj();
    s.pos = {x, y, z, w};
    s.catalogPos = s.pos;
    return s;
}

StarObj sirius() {
    // About 2.64 parsecs towards l = 227.23, b = -8.89.
    const Vec3 d = unitVectorOf(227.23, -8.89);
    StarObj s = starAt(d.x, d.y, d.z, std::log10(2.64 * 3.086e16));
    s.hd = 48915;
    s.hic = 32349;
    std::strcpy(s.commonName, "Sirius");
    std::strcpy(s.constellationName, "Canis Major");
    std::strcpy(s.constellationCode, "CMa");
    std::strcpy(s.spectralClass, "A");
    s.spectralNumber = 1.0f;
    std::strcpy(s.spectralType, "V");
    s.bv = 0.009f;
    s.homeMag = -1.46f;
    s.lum = 22.0f;
    s.distErr = 0.0042f;
    s.vel = {-12.0, 1.5, -9.0};
    s.velErr = {0.05, 0.5, 0.1};
    return s;
}

}  // namespace

TEST(PickedStarFields, EveryFieldOfAStar) {
    PickedStarTexts t;
    const double lsr[3] = {10.0, 5.25, 7.0};
    fillPickedStarTexts(t, sirius(), lsr, false);
    EXPECT_STREQ("48915", t.hdNumber.c_str());
    EXPECT_STREQ("Sirius", t.commonName.c_str());
    EXPECT_STREQ("Canis Major", t.constellation.c_str());
    EXPECT_STREQ("CMa", t.constellationCode.c_str());
    EXPECT_STREQ("0.009000", t.bv.c_str());
    EXPECT_STREQ("-1.460000", t.absVMag.c_str());
    EXPECT_STREQ("A1.0(V)", t.spType.c_str());
    EXPECT_STREQ("22.000000", t.luminosity.c_str());
    EXPECT_STREQ("0.42%", t.distError.c_str());
    EXPECT_STREQ("227.23", t.galacticL.c_str());
    EXPECT_STREQ("-8.89", t.galacticB.c_str());
    EXPECT_STREQ("2.640000", t.distParsec.c_str());     // 3.086e16 m per parsec
    EXPECT_STREQ("8.611183", t.distLightyear.c_str());  // 9.461e15 m per lightyear
    EXPECT_STREQ("-12.00 +- 5.00% km/s", t.velocity[0].c_str());
    EXPECT_STREQ("-2.00 +- 5.00% km/s", t.peculiar[0].c_str());  // plus the LSR
    EXPECT_STREQ("6.75 +- 50.00% km/s", t.peculiar[1].c_str());
    EXPECT_STREQ("16.911000", t.log10Scale.c_str());
}

TEST(PickedStarFields, RightAscensionAndDeclinationWhenAsked) {
    PickedStarTexts t;
    const double lsr[3] = {0.0, 0.0, 0.0};
    fillPickedStarTexts(t, sirius(), lsr, true);
    EXPECT_STREQ("6.75h", t.galacticL.c_str());  // 06h 45m
    EXPECT_STREQ("-16.72", t.galacticB.c_str());

    Phc p = sirius().pos;
    const auto lines = starInfoLines(t, p.xyz(), p.w, true);
    ASSERT_EQ(6u, lines.size());
    EXPECT_EQ("BV: 0.009000", lines[0]);
    EXPECT_EQ("Sp: A1.0(V)", lines[1]);
    EXPECT_EQ(0u, lines[2].find("RA: 6.75h (6 45 "));
    EXPECT_EQ(0u, lines[3].find("Dec: -16.72 (-16 42 5")) << lines[3];
    EXPECT_EQ("Dist: 2.64 parsec", lines[4]);
    EXPECT_EQ("Dist: 8.61 ly", lines[5]);
}

TEST(PickedStarFields, TheAnchorHasNoCatalogueFields) {
    PickedStarTexts t;
    t.hdNumber.set("48915");
    t.bv.set("0.1");
    const double lsr[3] = {0.0, 0.0, 0.0};
    StarObj anchor = starAt(0.0, 1.0, 0.0, 19.5);
    anchor.hd = kAnchorHD;
    fillPickedStarTexts(t, anchor, lsr, false);
    EXPECT_STREQ("", t.hdNumber.c_str());
    EXPECT_STREQ("", t.bv.c_str());
    EXPECT_STREQ("anchor", t.commonName.c_str());
    EXPECT_STREQ("19.500000", t.log10Scale.c_str());
    EXPECT_STREQ("90.00", t.galacticL.c_str());
    t.commonName.set(std::string(400, 'x'));  // cut at the field's size
    EXPECT_EQ(kPanelTextSize - 1, std::strlen(t.commonName.c_str()));
    const auto lines = starInfoLines(t, {0.0, 1.0, 0.0}, 19.5, false);
    EXPECT_EQ("Gal L: 90.00", lines[2]);
    EXPECT_EQ("Gal B: 0.00", lines[3]);
}

TEST(SkyAngles, GalacticPoleInEquatorialCoordinates) {
    const SkyAngles pole = skyAnglesOf(equatorialFromGalactic({0.0, 0.0, 1.0}));
    EXPECT_NEAR(192.86, pole.longitude, 0.02);
    EXPECT_NEAR(27.13, pole.latitude, 0.02);
    const Sexagesimal s = sexagesimalOf(-16.7161);
    EXPECT_EQ(16, s.whole);
    EXPECT_EQ(42, s.minutes);
    EXPECT_NEAR(58.0, s.seconds, 0.1);
    const Sexagesimal carried = sexagesimalOf(1.99999);
    EXPECT_EQ(2, carried.whole);
    EXPECT_EQ(0, carried.minutes);
}

TEST(LookAt, TurnsThroughTheAngleInOneAndAHalfSecondsFromTheOriginWhenBehind) {
    View v;  // at the origin, looking down -z
    v.viewPos = {0.0, 0.0, 0.0, 16.0};
    v.fovy = 60.0;
    LookAtTurn turn = lookAtTurn(v, Mat3{}, {1.0, 0.0, 0.0, 17.0});
    ASSERT_TRUE(turn.start);
    EXPECT_NEAR(90.0, turn.angle, 1e-9);
    EXPECT_NEAR(60.0, turn.speed, 1e-9);
    EXPECT_NEAR(1.0, turn.axisEye.y, 1e-9);  // +x onto -z turns about +y (right-handed)
    EXPECT_FALSE(lookAtTurn(v, Mat3{}, {0.0, 0.0, -1.0, 17.0}).start);  // already ahead

    // Five units out on -z: seen from the eye the star lies almost straight behind; from the
    // origin it lies 5.7 degrees off the viewing direction, and that is the turn.
    v.viewPos = {0.0, 0.0, -5.0, 16.0};
    turn = lookAtTurn(v, Mat3{}, {0.1, 0.0, -1.0, 16.0});
    ASSERT_TRUE(turn.start);
    EXPECT_NEAR(std::atan(0.1) * 180.0 / M_PI, turn.angle, 1e-9);
}

TEST(LsrFields, EnteredAsLongitudeLatitudeAndSpeedTextChangesNothingCopiesAreOpposite) {
    StarVelocityPanel& v = velocityPanel;
    v = StarVelocityPanel{};
    v.lsrL.set("90.000");
    v.lsrB.set("0.000");
    v.lsrSpeed.set("20.000 km/s");
    ASSERT_TRUE(readEnteredLSR());
    EXPECT_NEAR(0.0, v.currentLSR[0], 1e-9);
    EXPECT_NEAR(20.0, v.currentLSR[1], 1e-9);
    v.lsrSpeed.set("0");  // a zero speed is a zero vector whatever l and b say
    ASSERT_TRUE(readEnteredLSR());
    EXPECT_EQ(0.0, v.currentLSR[1]);
    EXPECT_STREQ("0.000 km/s", v.lsrSpeed.c_str());

    v.currentLSR[0] = 10.0;
    showCurrentLSR();
    v.lsrB.set("north");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(readEnteredLSR());
    EXPECT_EQ("Err (LSR b) : [north] is not a number.\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(10.0, v.currentLSR[0]);
    EXPECT_STREQ("0.000", v.lsrB.c_str());  // the field shows the LSR in force again

    v.average[0] = 3.0;
    v.average[1] = -4.0;
    v.average[2] = 0.0;
    copyAverageToLSR();
    EXPECT_EQ(-3.0, v.currentLSR[0]);
    EXPECT_EQ(4.0, v.currentLSR[1]);
    EXPECT_STREQ("5.000 km/s", v.lsrSpeed.c_str());
    EXPECT_STREQ("126.870", v.lsrL.c_str());
}

// The frame tests add windows up to the limit through the panel; here what removing and
// storing do.
TEST(ExamineWindows, RemovingKeepsOneAndMovesTheLastIntoTheGapStoringStaysInTheWindow) {
    ExamineWindowSet e;
    e.reset(400, 300);
    EXPECT_EQ(20, e.shownX);
    EXPECT_EQ(25, e.shownWidth);
    e.removeCurrent();  // the last window stays
    EXPECT_EQ(1, e.windowCount);
    for (int i = 1; i < kMaxExamineWindows; ++i)
        ASSERT_TRUE(e.add(400, 300));
    e.current = 3;
    e.windows[31].x = 77;
    e.removeCurrent();  // the last record moves into window 3; window 0 becomes current
    EXPECT_EQ(31, e.windowCount);
    EXPECT_EQ(77, e.windows[3].x);
    EXPECT_EQ(0, e.current);

    e.reset(10, 10);
    EXPECT_EQ(10, e.shownWidth);  // 25 does not fit
    e.shownX = -5;
    e.shownWidth = 500;
    e.store(100, 80);
    EXPECT_EQ(0, e.windows[0].x);
    EXPECT_EQ(100, e.windows[0].width);
}

TEST(VelocityTrails, FromTheStarToWhereItWillBe) {
    StarObj s = starAt(1.0, 0.0, 0.0, 16.0);
    s.motion = {0.0, 1e12, 0.0, 0.0};  // metres per year
    s.velErr = {0.0, 0.5, 0.0};
    TrailSegment trail;
    ASSERT_TRUE(velocityTrail(s, s.motion.w + 15.0, 1000.0, trail));  // log scale 15
    EXPECT_NEAR(10.0, trail.from[0], 1e-9);
    EXPECT_NEAR(1.0, trail.to[1], 1e-9);  // 1e15 m in 1000 years
    TrailSegment cross[3];
    velocityErrorCross(s, trail, 15.0, 1000.0, 2.0, cross);
    EXPECT_NEAR(0.0, cross[1].from[1], 1e-9);  // +-50 % x 2
    EXPECT_NEAR(2.0, cross[1].to[1], 1e-9);
    EXPECT_EQ(cross[0].from[0], cross[0].to[0]);

    EXPECT_FALSE(velocityTrail(s, 11.0, 1000.0, trail));  // 5 decades away: not drawn
    s.motion = {0.0, 0.0, 0.0, 0.0};
    EXPECT_FALSE(velocityTrail(s, 15.0, 1000.0, trail));  // does not move
}
