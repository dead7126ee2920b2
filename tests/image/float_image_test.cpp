// PF and PD maps: bytes on disk most-significant first, round trips, wrong types, bad files.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

TEST(FloatImages, PfStoresEachValueMostSignificantByteFirst) {
    ScratchDir dir;
    const float values[3] = {1.0f, -2.0f, 0.15625f};
    ASSERT_EQ(writePFM(dir.file("m.pf").c_str(), "PF", 3, 1, 2.5f, values), 1);
    EXPECT_EQ(values[0], 1.0f);  // the caller's values are untouched
    EXPECT_EQ(
        readFile(dir.file("m.pf")),
        concat("PF\n3 1\n2.500000\n", {0x3F, 0x80, 0, 0, 0xC0, 0x00, 0, 0, 0x3E, 0x20, 0, 0}));
    int w = 0, h = 0;
    float value = 0;
    std::vector<float> data;
    ASSERT_EQ(readPFM(dir.file("m.pf").c_str(), "PF", &w, &h, &value, &data), 1);
    EXPECT_EQ(w, 3);
    EXPECT_EQ(h, 1);
    EXPECT_EQ(value, 2.5f);
    EXPECT_EQ(data, std::vector<float>(values, values + 3));
}

TEST(FloatImages, PdRoundTripKeepsEveryBit) {
    ScratchDir dir;
    std::vector<double> values(40 * 30);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = std::sin(double(i)) * 1e-3 * i;
    ASSERT_EQ(writePDM(dir.file("m.pd").c_str(), "PD", 40, 30, -1.25, values.data()), 1);
    const Bytes bytes = readFile(dir.file("m.pd"));
    const std::string header = "PD\n40 30\n-1.250000\n";
    ASSERT_EQ(bytes.size(), header.size() + values.size() * 8);
    EXPECT_EQ(bytes[header.size()], 0x00);      // 0.0 first
    EXPECT_EQ(bytes[header.size() + 8], 0x3F);  // sin(1) * 1e-3: sign and exponent byte first
    int w = 0, h = 0;
    double value = 0;
    std::vector<double> data;
    ASSERT_EQ(readPDM(dir.file("m.pd").c_str(), "PD", &w, &h, &value, &data), 1);
    EXPECT_EQ(value, -1.25);
    EXPECT_EQ(data, values);
}

TEST(FloatImages, WrongTypesLeaveHeaderOnlyAndSayWhy) {
    ScratchDir dir;
    const float f[1] = {1};
    const double d[1] = {1};
    testing::internal::CaptureStderr();
    EXPECT_EQ(writePFM(dir.file("a").c_str(), "PD", 1, 1, 0, f), -1);
    EXPECT_EQ(writePDM(dir.file("b").c_str(), "PF", 1, 1, 0, d), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "writePFM : Wrong Type! Must be PF!\nwritePDM : Wrong Type! Must be PD!\n");
    EXPECT_EQ(readFile(dir.file("a")), concat("PD\n1 1\n", {}));

    ASSERT_EQ(writePFM(dir.file("ok.pf").c_str(), "PF", 1, 1, 0, f), 1);
    int w, h;
    float value;
    std::vector<float> data;
    testing::internal::CaptureStderr();
    EXPECT_EQ(readPFM(dir.file("ok.pf").c_str(), "PD", &w, &h, &value, &data), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "readPFM : Wrong Type! Must be PF!\n");
    EXPECT_TRUE(data.empty());
}

TEST(FloatImages, BadFilesGiveMessagesAndNoData) {
    ScratchDir dir;
    const std::vector<std::pair<const char*, Bytes>> cases = {
        {"empty", {}},
        {"truncated", concat("PF\n4 4\n1.0\n", Bytes(63, 1))},
        {"huge header", concat("PF\n100000 100000\n1.0\n", Bytes(64, 1))},
        {"zero size", concat("PF\n0 5\n1.0\n", {})},
        {"no value", concat("PF\n1 1\n", {})},
    };
    for (const auto& [label, bytes] : cases) {
        SCOPED_TRACE(label);
        writeFile(dir.file("bad.pf"), bytes);
        int w = -1, h = -1;
        float value = -1;
        std::vector<float> data;
        testing::internal::CaptureStderr();
        EXPECT_EQ(readPFM(dir.file("bad.pf").c_str(), "PF", &w, &h, &value, &data), -1);
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_EQ(message.rfind("readPFM : ", 0), 0u) << message;
        EXPECT_TRUE(data.empty());
        EXPECT_EQ(w, -1);
    }
}
