// Image arithmetic and the small array helpers: no window needed.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "image/readback.h"
#include "tests/image/image_test_util.h"

using imagetest::Bytes;
using imagetest::stderrOf;

TEST(Flip, OddHeightSwapsPairsAndKeepsTheMiddleRow) {
    Bytes image(2 * 5 * 3);  // every byte holds its row number
    for (std::size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<unsigned char>(i / 6);
    upsidedownImage(image.data(), 2, 5);
    for (std::size_t i = 0; i < image.size(); ++i)
        EXPECT_EQ(image[i], 4 - i / 6) << i;
    std::vector<float> depth = {0, 0, 1, 1, 2, 2, 3, 3};
    upsidedownDepth(depth.data(), 2, 4);
    EXPECT_EQ(depth, std::vector<float>({3, 3, 2, 2, 1, 1, 0, 0}));
}

TEST(ValueMaps, DataOnto0To254AndBackgroundOnto255) {
    const float f[] = {1, 2, 3, 100};
    EXPECT_EQ(floatToImage(f, 4, 50), Bytes({0, 127, 254, 255}));
    // One data value maps to 0; nothing below the background: all 255; NaN is background.
    const float one[] = {7, 7, 100}, odd[] = {0, std::numeric_limits<float>::quiet_NaN(), 1};
    EXPECT_EQ(floatToImage(one, 3, 50), Bytes({0, 0, 255}));
    EXPECT_EQ(floatToImage(f, 4, 0.5f), Bytes({255, 255, 255, 255}));
    EXPECT_EQ(floatToImage(odd, 3, 50), Bytes({0, 255, 254}));
}

TEST(CropPaste, RectanglesAreClippedToTheImages) {
    Bytes image(12);  // 4 x 3 luminance, value = 10 * row + column
    for (int i = 0; i < 12; ++i)
        image[i] = static_cast<unsigned char>(10 * (i / 4) + i % 4);
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, 1, 1, 2, 2), Bytes({11, 12, 21, 22}));
    // Partly outside: the clipped part goes to the top-left, the rest stays 0.
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, -1, 2, 3, 2), Bytes({20, 21, 0, 0, 0, 0}));
    EXPECT_EQ(cropImage(image.data(), 4, 3, 1, 3, 0, 3, 1), Bytes({3, 0, 0}));
    Bytes dest(12, 0);
    const Bytes src = {1, 2, 3, 4};  // 2 x 2
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, 3, -1);
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, -1, 2);
    pasteImage(dest.data(), 4, 3, 1, src.data(), 2, 2, 9, 9);  // wholly outside
    EXPECT_EQ(dest, Bytes({0, 0, 0, 3, 0, 0, 0, 0, 2, 0, 0, 0}));
}

TEST(Differences, RmsSnrAndDiffPerComponent) {
    const Bytes a = {10, 200, 0, 30, 100, 0};  // two RGB pixels
    const Bytes b = {13, 200, 0, 26, 100, 0};
    EXPECT_EQ(diffImgs(a.data(), b.data(), 2, 1, 3), Bytes({3, 0, 0, 4, 0, 0}));
    // Pairs above the threshold take part; the sum is divided by all pixels.
    const double thresholds[] = {0, 12, 13, 255}, red[] = {25.0 / 2, 25.0 / 2, 16.0 / 2, 0};
    for (int i = 0; i < 4; ++i) {
        double rms[3] = {-1, -1, -1};
        rmsImgs(a.data(), b.data(), 2, 1, 3, rms, thresholds[i]);
        EXPECT_DOUBLE_EQ(rms[0], std::sqrt(red[i])) << thresholds[i];
        EXPECT_EQ(rms[1] + rms[2], 0.0);
    }
    double snr[3] = {-1, -1, -1};
    snrImgs(a.data(), b.data(), 2, 1, 3, snr, 0);
    EXPECT_DOUBLE_EQ(snr[0], (100.0 + 900.0) / 25.0);
    EXPECT_EQ(snr[1], std::numeric_limits<double>::infinity());  // signal without noise
    EXPECT_EQ(snr[2], 0);                                        // neither
    double out[4] = {7, 7, 7, 7};
    EXPECT_EQ(stderrOf([&] {
                  rmsImgs(nullptr, a.data(), 2, 1, 1, out, 0);
                  snrImgs(a.data(), a.data(), 2, 1, 5, out, 0);
                  EXPECT_TRUE(diffImgs(a.data(), a.data(), 2, -1, 1).empty());
              }),
              "Err (rmsImgs): <NULL> input encountered.\n"
              "Err (rmsImgs): with imgW, imgH, or imgComp.\n"
              "Err (rmsImgs): with imgW, imgH, or imgComp.\n");
    EXPECT_EQ(out[0], 7);
}

TEST(Angles, LongitudeFrom0To360AndLatitude) {
    const double rows[][5] = {{-1, 0, 0, 180, 0},
                              {0, -1, 0, 270, 0},
                              {0, 0, 5, 0, 90},
                              {2, 2, 0, 45, 0},
                              {0, 0, 0, 0, 0}};
    for (const auto& row : rows) {  // vector, longitude, latitude
        double lon = -1, lat = -1;
        directionAngles(row, &lon, &lat);
        EXPECT_NEAR(std::abs(lon - row[3]) + std::abs(lat - row[4]), 0.0, 1e-12)
            << lon << " " << lat;
    }
}

TEST(ArrayHelpers, EdgesOfTheSmallTools) {
    std::vector<float> f = {3, -1, 8, 8, 5};
    EXPECT_EQ(largestBelowMaximum(f.data(), f.size()), 5);
    clampArray(f.data(), f.size(), 4.0f, 1.0f);  // low > high: nothing happens
    clampArray(f.data(), f.size(), 0.0f, 6.0f);
    normalizeArray(f.data(), f.size());
    EXPECT_EQ(f, std::vector<float>({0.5f, 0, 1, 1, 5.0f / 6}));
    const int sorted[] = {10, 20, 30};
    const int values[] = {5, 10, 25, 30, 31}, intervals[] = {0, 0, 1, 2, -1};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(findInterval(sorted, 3, values[i]), intervals[i]) << values[i];
}
