// Star labels without a window: the texts by mode, where a label goes and how large it is,
// and the distance-error bars.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "catalogue/star_obj.h"
#include "starrender/star_frame.h"
#include "starrender/star_labels.h"

namespace {

StarObj named(const char* name, int hd, const char* constellation, const char* code) {
    StarObj s = makeEmptyStarObj();
    std::strcpy(s.commonName, name);
    s.hd = hd;
    std::strcpy(s.constellationName, constellation);
    std::strcpy(s.constellationCode, code);
    return s;
}

TEST(StarLabel, TextsByMode) {
    const StarObj sirius = named("Sirius", 48915, "Canis Major", "CMa");
    const StarObj lone = named("Lone", 7, "---", "---");
    EXPECT_EQ(starLabelText(sirius, 0), "");
    EXPECT_EQ(starLabelText(sirius, 1), " Sirius (Canis Major CMa)");
    EXPECT_EQ(starLabelText(sirius, 2), " HD48915 (Canis Major CMa)");
    EXPECT_EQ(starLabelText(lone, 1), " Lone");
    EXPECT_EQ(starLabelText(lone, 2), " HD7");
    EXPECT_FALSE(starLabelText(sirius, 3).has_value());
    EXPECT_FALSE(starLabelText(sirius, -1).has_value());
}

// A frame with the eye at the origin looking down -z, drawing units of 10^scale metres.
StarFrame originFrame(double scale) {
    const double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double projection[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1, -1, 0, 0, -0.02, 0};
    const int viewport[4] = {0, 0, 100, 100};
    return makeStarFrame(identity, projection, viewport, scale);
}

TEST(StarLabel, PlacementAndSize) {
    const StarFrame frame = originFrame(16.0);
    // Ten units away: at the star, a tenth... 10/75 of a unit large (times the label scale).
    LabelPlacement near = labelPlacement(frame, Phc{0.0, 0.6, -0.8, 17.0}, 2.0);
    EXPECT_NEAR(near.depth, 1.0, 1e-12);
    EXPECT_NEAR(near.position.y, 6.0, 1e-9);
    EXPECT_NEAR(near.position.z, -8.0, 1e-9);
    EXPECT_NEAR(near.size, 10.0 / 75.0 * 2.0, 1e-12);
    // Far stars come no farther than 10^3.5 units, in their own direction.
    LabelPlacement far = labelPlacement(frame, Phc{0.0, 0.0, -1.0, 22.0}, 1.0);
    EXPECT_NEAR(far.depth, 6.0, 1e-12);
    EXPECT_NEAR(far.position.z, -std::pow(10.0, 3.5), 1e-6);
    EXPECT_NEAR(far.size, std::pow(10.0, 3.5) / 75.0, 1e-9);
    // Behind the eye is placed too (GL clips it), unlike a star point.
    LabelPlacement behind = labelPlacement(frame, Phc{0.0, 0.0, 1.0, 16.0}, 1.0);
    EXPECT_NEAR(behind.position.z, 1.0, 1e-12);
}

TEST(StarLabel, DistanceErrorBars) {
    const StarFrame frame = originFrame(16.0);
    ErrorBar bar;
    // Error 0.05 at depth 1: from 0.95 x 10 to 1.05 x 10 units; at depth 4 nothing.
    LabelPlacement at10 = labelPlacement(frame, Phc{1.0, 0.0, 0.0, 17.0}, 1.0);
    ASSERT_TRUE(labelErrorBar(at10, 0.05f, bar));
    EXPECT_NEAR(bar.from.x, 9.5, 1e-6);
    EXPECT_NEAR(bar.to.x, 10.5, 1e-6);
    EXPECT_FALSE(labelErrorBar(labelPlacement(frame, Phc{1.0, 0.0, 0.0, 20.0}, 1.0), 0.05f, bar));
    EXPECT_FALSE(labelErrorBar(labelPlacement(frame, Phc{1.0, 0.0, 0.0, 15.0}, 1.0), 0.05f, bar));
    EXPECT_FALSE(labelErrorBar(at10, 0.001f, bar));  // must exceed 0.001
    // An error of 1 or more starts at the eye.
    ASSERT_TRUE(labelErrorBar(at10, 1.5f, bar));
    EXPECT_EQ(bar.from.x, 0.0);
    EXPECT_NEAR(bar.to.x, 25.0, 1e-5);

    // The bars of all stars lie along the star's own direction from the modelview origin.
    ASSERT_TRUE(distanceErrorBar(Phc{0.0, 1.0, 0.0, 17.0}, 16.0, 0.05f, bar));
    EXPECT_NEAR(bar.from.y, 9.5, 1e-6);
    EXPECT_NEAR(bar.to.y, 10.5, 1e-6);
    EXPECT_TRUE(distanceErrorBar(Phc{0.0, 1.0, 0.0, 17.0}, 16.0, 0.001f, bar));  // at least 0.001
    EXPECT_FALSE(distanceErrorBar(Phc{0.0, 1.0, 0.0, 17.0}, 16.0, 0.0009f, bar));
    EXPECT_FALSE(distanceErrorBar(Phc{0.0, 1.0, 0.0, 19.5}, 16.0, 0.05f, bar));
    EXPECT_FALSE(distanceErrorBar(Phc{0.0, 1.0, 0.0, 15.0}, 16.0, 0.05f, bar));
}

}  // namespace
