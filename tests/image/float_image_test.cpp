// PF and PD maps: byte order on disk, round trips, wrong types, bad files.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

TEST(FloatImages, PfStoresEachValueMostSignificantByteFirst) {
    ScratchDir dir;
    const float values[3] = {1.0f, -2.0f, 0.15625f};
    ASSERT_EQ(writePFM(dir.file("m.pf").c_str(), "PF", 3, 1, 2.5f, values), 1);
    EXPECT_EQ(readFile(dir.file("m.pf")),
              concat("PF\n3 1\n2.500000\n", {0x3F, 0x80, 0, 0, 0xC0, 0, 0, 0, 0x3E, 0x20, 0, 0}));
    int w = 0, h = 0;
    float value = 0;
    std::vector<float> data;
    ASSERT_EQ(readPFM(dir.file("m.pf").c_str(), "PF", &w, &h, &value, &data), 1);
    EXPECT_EQ(std::make_tuple(w, h, value), std::make_tuple(3, 1, 2.5f));
    EXPECT_EQ(data, std::vector<float>(values, values + 3));
    // Doubles keep every bit.
    std::vector<double> doubles(40 * 30), back;
    for (std::size_t i = 0; i < doubles.size(); ++i)
        doubles[i] = std::sin(double(i)) * 1e-3 * i;
    double dValue = 0;
    ASSERT_EQ(writePDM(dir.file("m.pd").c_str(), "PD", 40, 30, -1.25, doubles.data()), 1);
    ASSERT_EQ(readPDM(dir.file("m.pd").c_str(), "PD", &w, &h, &dValue, &back), 1);
    EXPECT_EQ(dValue, -1.25);
    EXPECT_EQ(back, doubles);
}

TEST(FloatImages, WrongTypesAndBadFilesSayWhy) {
    ScratchDir dir;
    const float f[1] = {1};
    const double d[1] = {1};
    int w = -1, h = -1;
    float value = -1;
    std::vector<float> data;
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(writePFM(dir.file("a").c_str(), "PD", 1, 1, 0, f), -1);
                  EXPECT_EQ(writePDM(dir.file("b").c_str(), "PF", 1, 1, 0, d), -1);
                  EXPECT_EQ(writePFM(dir.file("ok.pf").c_str(), "PF", 1, 1, 0, f), 1);
                  EXPECT_EQ(readPFM(dir.file("ok.pf").c_str(), "PD", &w, &h, &value, &data), -1);
              }),
              "writePFM : Wrong Type! Must be PF!\nwritePDM : Wrong Type! Must be PD!\n"
              "readPFM : Wrong Type! Must be PF!\n");
    EXPECT_EQ(readFile(dir.file("a")), bytesOf("PD\n1 1\n"));
    const Bytes cases[] = {{},
                           concat("PF\n4 4\n1.0\n", Bytes(63, 1)),
                           concat("PF\n100000 100000\n1.0\n", Bytes(64, 1)),
                           bytesOf("PF\n0 5\n1.0\n"),
                           bytesOf("PF\n1 1\n")};
    for (const Bytes& bytes : cases) {
        const std::string name = dir.write("bad.pf", bytes);
        const std::string message =
            stderrOf([&] { EXPECT_EQ(readPFM(name.c_str(), "PF", &w, &h, &value, &data), -1); });
        EXPECT_EQ(message.rfind("readPFM : ", 0), 0u) << message;
        EXPECT_TRUE(data.empty() && w == -1);
    }
}
