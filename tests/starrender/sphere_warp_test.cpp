// The sphere warp: its settings and what it does to star directions.

#include <gtest/gtest.h>

#include <cmath>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::stderrOf;

namespace {

double halve(double angle, double, double) {
    return angle / 2;
}

}  // namespace

TEST(SphereWarp, RejectedSettingsPrintTheirMessage) {
    StarList list;
    const double axis[3] = {0, 0, 1}, none[3] = {0, 0, 0};
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setSphWarp(axis, -0.1, 1.0), -1); }),
              "Err (StarList::setSphWarp): inSphwarpAngleFrm is out of range [0,pi].\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setSphWarp(axis, 1.0, 4.0), -1); }),
              "Err (StarList::setSphWarp): inSphwarpAngleTo is out of range [0,pi].\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(list.setSphWarp(none, 1.0, 1.0), -1); }),
              "Err (StarList::setSphWarp): inSphwarpDir is not a valid direction.\n");
    EXPECT_EQ(list.setSphWarpFunc(nullptr), -1);
}

TEST(SphereWarp, StarsTurnTowardsTheAxisByTheWarpFunction) {
    cattest::ScratchDir dir;
    std::string path = dir.write("s.star", cattest::starFile(2, "3 0 0\n0 0 -2\n"));
    StarList list;
    cattest::stdoutOf([&] { ASSERT_EQ(list.readStarFiles(path.c_str(), 1, 0), 1); });
    const double axis[3] = {0, 0, 5};
    ASSERT_EQ(list.setSphWarp(axis, 0.0, M_PI), 1);
    ASSERT_EQ(list.setSphWarpFunc(halve), 1);
    ASSERT_EQ(list.setSphWarpOn(), 1);
    // The star on the x axis, 90 degrees from the warp axis, now lies at 45 degrees; its
    // distance is kept; the star opposite the axis has no plane to turn in; the Sun stays.
    const StarObj& onX = list.getStarArray()[2];
    EXPECT_NEAR(onX.pos.x, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(onX.pos.z, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(onX.pos.w, 16.4894f + std::log10(3.0), 1e-12);
    EXPECT_NEAR(list.getStarArray()[1].pos.z, -1.0, 1e-12);
    EXPECT_EQ(list.getStarArray()[0].pos.w, 11.0);
    ASSERT_EQ(list.setSphWarpOff(), 1);
    EXPECT_NEAR(list.getStarArray()[2].pos.x, 1.0, 1e-12);
}
