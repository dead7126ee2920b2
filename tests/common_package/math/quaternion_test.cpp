#include "common_package/math/src/quaternion.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {
void expectVecNear(const Vec3& a, const Vec3& b, double eps = 1e-12) {
    EXPECT_NEAR(a.x, b.x, eps);
    EXPECT_NEAR(a.y, b.y, eps);
    EXPECT_NEAR(a.z, b.z, eps);
}
}  // namespace

TEST(Quaternion, DefaultCameraIsIdentity) {
    Quat q = quatFromView({0, 0, -1}, {0, 1, 0});
    EXPECT_NEAR(q.w, 1, 1e-12);
    EXPECT_NEAR(q.x, 0, 1e-12);
}

TEST(Quaternion, ViewRoundTripsThroughQuaternion) {
    // Views along every largest-term branch of the conversion.
    const Vec3 dirs[] = {{0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0.3, -0.5, 0.8}, {-1, 0.2, 0.1}};
    const Vec3 ups[] = {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, -1}};
    for (int i = 0; i < 5; ++i) {
        Vec3 d = normalized(dirs[i]);
        Vec3 side = normalized(cross(d, ups[i]));
        Vec3 up = normalized(cross(side, d));
        Vec3 d2, up2;
        quatToView(quatFromView(d, ups[i]), d2, up2);
        expectVecNear(d2, d, 1e-12);
        expectVecNear(up2, up, 1e-12);
    }
}

TEST(Quaternion, ProductComposesRotations) {
    double h = std::sqrt(0.5);
    Quat z90{h, 0, 0, h};  // 90 degrees about z
    Quat z180 = quatMultiply(z90, z90);
    EXPECT_NEAR(std::fabs(z180.z), 1.0, 1e-12);
    EXPECT_NEAR(z180.w, 0.0, 1e-12);
    Quat back = quatMultiply(z90, quatConjugate(z90));
    EXPECT_NEAR(back.w, 1.0, 1e-12);
}

TEST(Quaternion, PowerScalesTheAngle) {
    double h = std::sqrt(0.5);
    Quat half = quatPower({h, 0, 0, h}, 0.5);  // 45 degrees about z
    EXPECT_NEAR(half.w, std::cos(M_PI / 8), 1e-12);
    EXPECT_NEAR(half.z, std::sin(M_PI / 8), 1e-12);
    Quat id = quatPower({1, 0, 0, 0}, 3.0);
    EXPECT_EQ(id.w, 1.0);
}

TEST(Quaternion, SlerpTakesTheShorterArc) {
    double h = std::sqrt(0.5);
    Quat a{1, 0, 0, 0}, b{h, 0, 0, h};
    Quat mid = quatSlerp(a, b, 0.5);
    EXPECT_NEAR(mid.w, std::cos(M_PI / 8), 1e-12);
    // The negated end point is the same rotation: the same midpoint.
    Quat midNeg = quatSlerp(a, quatNegate(b), 0.5);
    EXPECT_NEAR(midNeg.w, mid.w, 1e-12);
    EXPECT_NEAR(midNeg.z, mid.z, 1e-12);
    // Equal orientations give themselves for every u.
    Quat same = quatSlerp(b, b, 0.3);
    EXPECT_NEAR(same.z, h, 1e-12);
}
