// Selections, star motion through time and the local standard of rest.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;
using cattest::stderrOf;

namespace {

constexpr double kParsecMetres = 3.0857e16;

double separationParsec(const Phc& a, const Phc& b) {
    Vec3 pa = a.xyz() * std::pow(10.0, a.w), pb = b.xyz() * std::pow(10.0, b.w);
    return length(pa - pb) / kParsecMetres;
}

}  // namespace

TEST(SpectralSelection, AClassRangeHidesOnlyThatClassOutsideIt) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 5,
                       "1 0 0 0 0 0 0 0 0 0 0.6 1 1 1 1 1 G 2 V 1\n"
                       "2 0 0 0 0 0 0 0 0 0 0.6 1 1 1 1 1 G 5 V 2\n"
                       "3 0 0 0 0 0 0 0 0 0 0.9 1 1 1 1 1 K 5 V 3\n"
                       "4 0 0 0 0 0 0 0 0 0 1.4 1 1 1 1 1 M 5 V 4\n"
                       "5 0 0 0 0 0 0 0 0 0 0.0 1 1 1 1 1 DA 5 V 5\n",
                       1);
    ASSERT_EQ(list.setSptypeRangeOn(4, 0.0f, 4.0f), 1);
    for (int hd = 1; hd <= 5; ++hd)
        EXPECT_EQ(list.passesSptypeSelection(cattest::byHD(list, hd)), hd != 2) << hd;
    // A class letter outside O B A F G K M belongs to "Other".
    ASSERT_EQ(list.setSptypeRangeOn(7, 0.0f, 1.0f), 1);
    EXPECT_FALSE(list.passesSptypeSelection(cattest::byHD(list, 5)));
    EXPECT_EQ(StarList::spectralClassIndex("DA"), 7);
    EXPECT_EQ(StarList::spectralClassIndex("---"), 7);
    // The master switch stays on while some class is on.
    ASSERT_EQ(list.setSptypeRangeOff(4), 1);
    EXPECT_EQ(list.getStarParameter().sptypeOn, 1);
    ASSERT_EQ(list.setSptypeRangeOff(7), 1);
    EXPECT_EQ(list.getStarParameter().sptypeOn, 0);
    EXPECT_TRUE(list.passesSptypeSelection(cattest::byHD(list, 2)));
}

TEST(Selections, SettersRejectReversedRangesAndBoundsAreInclusive) {
    StarList list;
    const std::pair<std::function<int()>, std::string> rejected[] = {
        {[&] { return list.setSptypeRangeOn(8, 0, 1); },
         "Err(setSptypeRangeOn) : sptype out of range\n\n"},
        {[&] { return list.setSptypeRangeOff(-1); },
         "Err(setSptypeRangeOn) : sptype out of range\n\n"},
        {[&] { return list.setSptypeRangeOn(2, 3, 1); },
         "Err(setSptypeRangeOn) : rangeMin should be <= rangeMax\n\n"},
        {[&] { return list.setZRangeOn(20, 10); }, "Err(setZRangeOn) : inMinZ > inMaxZ\n\n"},
        {[&] { return list.setVMagRangeOn(5, 1); },
         "Err(setVMagRangeOn) : inMinVMag > inMaxVMag\n\n"},
        {[&] { return list.setAbsMagRangeOn(5, 1); },
         "Err(setAbsMagRangeOn) : inMinAbsMag > inMaxAbsMag\n\n"},
        {[&] { return list.setLSR(nullptr); }, "Err (setLSR)  : inLSR input is NULL.\n\n"},
    };
    for (const auto& c : rejected) {
        int result = 0;
        EXPECT_EQ(stderrOf([&] { result = c.first(); }), c.second);
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(list.getStarParameter().zRangeOn, 0);
    EXPECT_EQ(list.getStarParameter().sptypeOn, 0);
    StarObj s = makeEmptyStarObj();
    s.homeMag = 5.0f;
    list.setAbsMagRangeOn(4.0, 5.0);
    EXPECT_TRUE(list.passesAbsMagSelection(s));
    s.homeMag = 5.01f;
    EXPECT_FALSE(list.passesAbsMagSelection(s));
    list.setVMagRangeOn(-1.0, 2.0);
    EXPECT_TRUE(list.passesVMagSelection(2.0f));
    EXPECT_FALSE(list.passesVMagSelection(2.1f));
}

// The index range of a distance shell, also after motion has put the stars out of order.
TEST(DistanceSelection, IndicesBoundTheStarsInsideTheShell) {
    ScratchDir dir;
    StarList list;
    const double pc = 16.4894f;
    cattest::loadStars(list, dir, 4, "1 0 0\n10 0 0\n100 0 0\n1000 0 0\n", 1);
    ASSERT_EQ(list.setZRangeOn(pc + 0.5, pc + 2.5), 1);
    int first = 0, last = 0;
    list.getStarRange(&first, &last);
    EXPECT_EQ(first, 2);  // the Sun is record 0, 1 pc is record 1
    EXPECT_EQ(last, 3);
    ASSERT_EQ(list.setZRangeOn(pc + 5, pc + 6), 1);  // beyond every star
    list.getStarRange(&first, &last);
    EXPECT_GT(first, last);
    ASSERT_EQ(list.setZRangeOff(), 1);
    list.getStarRange(&first, &last);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(last, 4);

    // The near star runs away fast; 20 years on it is about 6 pc further out.
    cattest::loadStars(list, dir, 3, "1 0 0 0 300000 0 0\n2 0 0\n3 0 0\n", 1);
    ASSERT_EQ(list.setZRangeOn(pc + std::log10(1.5), pc + std::log10(2.5)), 1);
    ASSERT_EQ(list.setStarAtYear(1991 + 20), 1);
    list.getStarRange(&first, &last);
    EXPECT_LE(first, last);
    for (int i = 0; i < list.getNumRecords(); ++i) {
        const double w = list.getStarArray()[i].pos.w;
        if (w >= pc + std::log10(1.5) && w < pc + std::log10(2.5)) {
            EXPECT_GE(i, first);
            EXPECT_LE(i, last);
        }
    }
}

TEST(StarMotion, AThousandYearsAtAHundredKmPerSecondMovesAbout0p1Parsec) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 1, "10 0 0 0 0 100 0\n", 1);
    const Phc before = list.getStarArray()[1].pos;
    ASSERT_EQ(list.setStarAtYear(1991 + 1000), 1);
    const Phc after = list.getStarArray()[1].pos;
    // 100 km/s x 1000 Julian years = 3.156e15 m = 0.1023 pc.
    EXPECT_NEAR(separationParsec(before, after), 0.1023, 0.0005);
    EXPECT_NEAR(after.w, before.w, 1e-3);  // transverse: the distance barely changes
    // The motion is kept in metres per Julian year.
    EXPECT_NEAR(list.getStarArray()[1].motion.y, 100.0 * 1000.0 * 31557600.0, 1.0);
}

TEST(StarMotion, AStarMovingWithTheLocalStandardOfRestStaysPut) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 2, "10 0 0 0 -10 -5 -7\n0 5 0 0 30 0 0\n", 1);
    const double lsr[3] = {10, 5, 7};
    ASSERT_EQ(list.setLSR(lsr), 1);
    const StarObj* still = nullptr;
    for (int i = 0; i < list.getNumRecords(); ++i) {
        if (list.getStarArray()[i].vel.x == -10.0) still = &list.getStarArray()[i];
    }
    ASSERT_NE(still, nullptr);
    const Phc before = still->pos;
    const Phc sunBefore = list.getStarArray()[0].pos;
    ASSERT_EQ(list.setStarAtYear(-50000), 1);
    EXPECT_LT(separationParsec(before, still->pos), 1e-9);
    // The Sun never moves, whatever the local standard of rest.
    EXPECT_EQ(list.getStarArray()[0].pos, sunBefore);
}

TEST(StarMotion, AverageVelocitySkipsTheSunAndHonoursTheFilters) {
    ScratchDir dir;
    StarList list;
    cattest::loadStars(list, dir, 3,
                       "1 0 0 0 10 0 0 0 0 0 0 1 1 1 1 1 G 2 V\n"
                       "2 0 0 0 20 0 0 0 0 0 0 1 1 1 1 1 K 2 V\n"
                       "3 0 0 0 60 6 0 0 0 0 0 1 1 1 1 1 K 8 V\n",
                       1);
    double mean[3];
    EXPECT_EQ(list.getAverageVelocity(0, 0, 0, mean), 3);
    EXPECT_DOUBLE_EQ(mean[0], 30.0);
    EXPECT_DOUBLE_EQ(mean[1], 2.0);
    list.setSptypeRangeOn(5, 0.0f, 5.0f);
    EXPECT_EQ(list.getAverageVelocity(0, 0, 1, mean), 2);
    EXPECT_DOUBLE_EQ(mean[0], 15.0);
    list.setZRangeOn(30, 31);
    EXPECT_EQ(list.getAverageVelocity(0, 1, 0, mean), 0);
    EXPECT_DOUBLE_EQ(mean[0], 0.0);
}
