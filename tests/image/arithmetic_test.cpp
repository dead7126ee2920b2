// Image arithmetic and the small array helpers: no window needed.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "image/readback.h"
#include "tests/image/image_test_util.h"

using imagetest::Bytes;

TEST(Flip, OddHeightSwapsPairsAndKeepsTheMiddleRow) {
    Bytes image(2 * 5 * 3);
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<unsigned char>(i / 6);
    upsidedownImage(image.data(), 2, 5);
    for (int row = 0; row < 5; ++row)
        for (int b = 0; b < 6; ++b)
            EXPECT_EQ(image[row * 6 + b], 4 - row) << row;

    std::vector<float> depth = {0, 0, 1, 1, 2, 2, 3, 3};
    upsidedownDepth(depth.data(), 2, 4);
    EXPECT_EQ(depth, std::vector<float>({3, 3, 2, 2, 1, 1, 0, 0}));
    upsidedownImage(image.data(), 2, 1);  // one row: nothing to do
    upsidedownImage(nullptr, 2, 0);
}

TEST(ValueMaps, DataOnto0To254AndBackgroundOnto255) {
    const float f[] = {1, 2, 3, 100};
    EXPECT_EQ(floatToImage(f, 4, 50), Bytes({0, 127, 254, 255}));
    const double d[] = {100, 3, 2, 1, 50};
    EXPECT_EQ(doubleToImage(d, 5, 50), Bytes({255, 254, 127, 0, 255}));
    // One data value: it maps to 0. Nothing below the background: all 255. NaN is background.
    const float one[] = {7, 7, 100};
    EXPECT_EQ(floatToImage(one, 3, 50), Bytes({0, 0, 255}));
    EXPECT_EQ(floatToImage(f, 4, 0.5f), Bytes({255, 255, 255, 255}));
    const float odd[] = {0, std::numeric_limits<float>::quiet_NaN(), 1};
    EXPECT_EQ(floatToImage(odd, 3, 50), Bytes({0, 255, 254}));
    EXPECT_TRUE(floatToImage(f, 0, 50).empty());
    EXPECT_EQ(floatToDouble(f, 4), std::vector<double>({1, 2, 3, 100}));
}

TEST(CropPaste, RectanglesAreClippedToTheImages) {
    // 4 x 3 luminance image, value = 10 * row + column.
    Bytes image(12);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c)
            image[r * 4 + c] = static_cast<unsigned char>(10 * r + c);
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, 1, 1, 2, 2), Bytes({11, 12, 21, 22}));
    // Partly outside: the clipped part goes to the top-left, the rest stays 0.
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, -1, 2, 3, 2), Bytes({20, 21, 0, 0, 0, 0}));
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, 3, 0, 3, 1), Bytes({3, 0, 0}));
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, 10, 10, 2, 1), Bytes({0, 0}));
    EXPECT_TRUE(cropImage(image.data(), 4, 3, 1, 0, 0, 0, 5).empty());

    Bytes dest(12, 0);
    const Bytes src = {1, 2, 3, 4};  // 2 x 2
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, 3, -1);
    EXPECT_EQ(dest, Bytes({0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0}));
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, -1, 2);
    EXPECT_EQ(dest, Bytes({0, 0, 0, 3, 0, 0, 0, 0, 2, 0, 0, 0}));
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, 1, 0);
    EXPECT_EQ(dest, Bytes({0, 1, 2, 3, 0, 3, 4, 0, 2, 0, 0, 0}));
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, 9, 9);  // wholly outside
    EXPECT_EQ(dest, Bytes({0, 1, 2, 3, 0, 3, 4, 0, 2, 0, 0, 0}));
}

TEST(Differences, RmsSnrAndDiffPerComponent) {
    const Bytes a = {10, 200, 0, 30, 100, 0};  // two RGB pixels
    const Bytes b = {13, 200, 0, 26, 100, 0};
    EXPECT_EQ(diffImgs(a.data(), b.data(), 2, 1, 3), Bytes({3, 0, 0, 4, 0, 0}));
    double rms[3] = {-1, -1, -1};
    rmsImgs(a.data(), b.data(), 2, 1, 3, rms, 0);
    EXPECT_DOUBLE_EQ(rms[0], std::sqrt((9.0 + 16.0) / 2));
    EXPECT_EQ(rms[1], 0);
    EXPECT_EQ(rms[2], 0);
    // Threshold 12: the red pair (10, 13) still takes part through 13; (30, 26) as well.
    rmsImgs(a.data(), b.data(), 2, 1, 3, rms, 12);
    EXPECT_DOUBLE_EQ(rms[0], std::sqrt(25.0 / 2));
    // Threshold 13: only (30, 26) takes part; the division is still by both pixels.
    rmsImgs(a.data(), b.data(), 2, 1, 3, rms, 13);
    EXPECT_DOUBLE_EQ(rms[0], std::sqrt(16.0 / 2));
    rmsImgs(a.data(), b.data(), 2, 1, 3, rms, 255);
    EXPECT_EQ(rms[0], 0);
    rmsImgs(a.data(), a.data(), 2, 1, 3, rms, 0);
    EXPECT_EQ(rms[0], 0);

    double snr[3] = {-1, -1, -1};
    snrImgs(a.data(), b.data(), 2, 1, 3, snr, 0);
    EXPECT_DOUBLE_EQ(snr[0], (100.0 + 900.0) / 25.0);
    EXPECT_EQ(snr[1], std::numeric_limits<double>::infinity());  // signal without noise
    EXPECT_EQ(snr[2], 0);                                        // neither
}

TEST(Differences, BadArgumentsPrintAndLeaveOutputsAlone) {
    const Bytes a = {1, 2};
    double out[4] = {7, 7, 7, 7};
    testing::internal::CaptureStderr();
    rmsImgs(nullptr, a.data(), 2, 1, 1, out, 0);
    snrImgs(a.data(), a.data(), 2, 1, 1, nullptr, 0);
    rmsImgs(a.data(), a.data(), 0, 1, 1, out, 0);
    snrImgs(a.data(), a.data(), 2, 1, 5, out, 0);
    EXPECT_TRUE(diffImgs(a.data(), nullptr, 2, 1, 1).empty());
    EXPECT_TRUE(diffImgs(a.data(), a.data(), 2, -1, 1).empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Err (rmsImgs): <NULL> input encountered.\n"
              "Err (rmsImgs): <NULL> input encountered.\n"
              "Err (rmsImgs): with imgW, imgH, or imgComp.\n"
              "Err (rmsImgs): with imgW, imgH, or imgComp.\n"
              "Err (rmsImgs): <NULL> input encountered.\n"
              "Err (rmsImgs): with imgW, imgH, or imgComp.\n");
    EXPECT_EQ(out[0], 7);
}

TEST(Angles, LongitudeFrom0To360AndLatitude) {
    double lon = -1, lat = -1;
    const double west[3] = {-1, 0, 0};
    directionAngles(west, &lon, &lat);
    EXPECT_DOUBLE_EQ(lon, 180);
    EXPECT_DOUBLE_EQ(lat, 0);
    const double south[3] = {0, -1, 0};
    directionAngles(south, &lon, &lat);
    EXPECT_DOUBLE_EQ(lon, 270);
    const double up[3] = {0, 0, 5};
    directionAngles(up, &lon, &lat);
    EXPECT_DOUBLE_EQ(lat, 90);
    const double diagonal[3] = {2, 2, 0};  // not a unit vector
    directionAngles(diagonal, &lon, &lat);
    EXPECT_DOUBLE_EQ(lon, 45);
    const double zero[3] = {0, 0, 0};
    directionAngles(zero, &lon, &lat);
    EXPECT_EQ(lon, 0);
    EXPECT_EQ(lat, 0);
}

TEST(ArrayHelpers, EdgesOfTheSmallTools) {
    std::vector<float> f = {3, -1, 8, 8, 5};
    float lo = 0, hi = 0;
    EXPECT_TRUE(arrayMinMax(f.data(), f.size(), &lo, &hi));
    EXPECT_EQ(lo, -1);
    EXPECT_EQ(hi, 8);
    EXPECT_FALSE(arrayMinMax(f.data(), 0, &lo, &hi));
    EXPECT_EQ(largestBelowMaximum(f.data(), f.size()), 5);
    const double same[] = {2, 2};
    EXPECT_EQ(largestBelowMaximum(same, 2), 2);

    clampArray(f.data(), f.size(), 4.0f, 1.0f);  // low > high: nothing happens
    EXPECT_EQ(f, std::vector<float>({3, -1, 8, 8, 5}));
    clampArray(f.data(), f.size(), 0.0f, 6.0f);
    EXPECT_EQ(f, std::vector<float>({3, 0, 6, 6, 5}));
    normalizeArray(f.data(), f.size());
    EXPECT_EQ(f, std::vector<float>({0.5f, 0, 1, 1, 5.0f / 6}));
    std::vector<double> flat = {4, 4};
    normalizeArray(flat.data(), flat.size());
    EXPECT_EQ(flat, std::vector<double>({0, 0}));

    const Bytes rgb = {0, 0, 255, 9, 9, 0};
    EXPECT_DOUBLE_EQ(meanBlueLevel(rgb.data(), 2), 0.5);
    EXPECT_EQ(countBytesEqual(rgb.data(), rgb.size(), 9), 2u);

    const int sorted[] = {10, 20, 30};
    EXPECT_EQ(findInterval(sorted, 3, 5), 0);
    EXPECT_EQ(findInterval(sorted, 3, 10), 0);
    EXPECT_EQ(findInterval(sorted, 3, 25), 1);
    EXPECT_EQ(findInterval(sorted, 3, 20), 1);
    EXPECT_EQ(findInterval(sorted, 3, 30), 2);
    EXPECT_EQ(findInterval(sorted, 3, 31), -1);
    EXPECT_EQ(findInterval(sorted, 0, 1), -1);
}
