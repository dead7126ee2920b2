#include "common_package/math/src/mat3.h"
#include "common_package/math/src/pow2.h"

#include <gtest/gtest.h>

TEST(Mat3, InverseUndoesTheMatrix) {
    Mat3 a = Mat3::fromRows({2, 0, 1}, {1, 3, 0}, {0, 1, 4});
    Mat3 inv;
    ASSERT_TRUE(inverse(a, inv));
    Mat3 id = a * inv;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(id.m[i][j], i == j ? 1.0 : 0.0, 1e-12);
    Mat3 singular = Mat3::fromRows({1, 2, 3}, {2, 4, 6}, {0, 0, 1});
    EXPECT_FALSE(inverse(singular, inv));
}

TEST(Mat3, RotationFollowsTheRightHandRule) {
    Vec3 y = rotationMatrix(90, {0, 0, 1}) * Vec3{1, 0, 0};
    EXPECT_NEAR(y.x, 0, 1e-12);
    EXPECT_NEAR(y.y, 1, 1e-12);
    EXPECT_NEAR(transpose(rotationMatrix(30, {1, 2, 3})).m[0][1],
                rotationMatrix(-30, {1, 2, 3}).m[0][1], 1e-12);
}

TEST(PowerOfTwo, LowerPowerWinsTies) {
    EXPECT_EQ(nearestPowerOfTwo(300), 256);
    EXPECT_EQ(nearestPowerOfTwo(384), 256);
    EXPECT_EQ(nearestPowerOfTwo(400), 512);
    EXPECT_EQ(nearestPowerOfTwo(100), 128);
    EXPECT_EQ(nearestPowerOfTwo(60), 64);
    EXPECT_EQ(nearestPowerOfTwo(3), 2);
    EXPECT_EQ(nearestPowerOfTwo(512), 512);
}
