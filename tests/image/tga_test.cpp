// TGA checks made before anything is uploaded: every refusal code, with no window.

#include <gtest/gtest.h>

#include <string>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

Bytes tga(int imageType, int width, int height, int bits, std::size_t pixelBytes,
          int colourMapType = 0) {
    Bytes b(18, 0);
    b[1] = static_cast<unsigned char>(colourMapType);
    b[2] = static_cast<unsigned char>(imageType);
    b[12] = static_cast<unsigned char>(width);
    b[13] = static_cast<unsigned char>(width >> 8);
    b[14] = static_cast<unsigned char>(height);
    b[15] = static_cast<unsigned char>(height >> 8);
    b[16] = static_cast<unsigned char>(bits);
    b.resize(18 + pixelBytes, 0x55);
    return b;
}

}  // namespace

TEST(Tga, RefusalCodesInCheckOrder) {
    ScratchDir dir;
    const struct {
        const char* label;
        Bytes file;
        int code;
    } cases[] = {
        {"run-length type 10", tga(10, 256, 256, 32, 256 * 256 * 4), kTgaBadType},
        {"colour-mapped", tga(2, 256, 256, 32, 256 * 256 * 4, 1), kTgaBadType},
        {"type 1", tga(1, 256, 256, 8, 256 * 256), kTgaBadType},
        {"empty file", {}, kTgaBadType},
        {"short header", Bytes(15, 2), kTgaBadType},
        {"1024 wide", tga(2, 1024, 1024, 32, 0), kTgaBadSize},
        {"100 wide", tga(2, 100, 100, 32, 100 * 100 * 4), kTgaBadSize},
        {"height 1", tga(3, 256, 1, 8, 256), kTgaBadSize},
        {"bad type before bad size", tga(10, 100, 100, 16, 0), kTgaBadType},
        {"16 bits", tga(2, 256, 256, 16, 256 * 256 * 2), kTgaBadDepth},
        {"bad size before bad depth", tga(2, 100, 256, 16, 0), kTgaBadSize},
        {"short pixels", tga(2, 256, 256, 32, 256 * 256 * 4 - 1), kTgaShortData},
        {"no pixels", tga(3, 512, 512, 8, 0), kTgaShortData},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        writeFile(dir.file("f.tga"), c.file);
        testing::internal::CaptureStderr();
        EXPECT_EQ(loadTGA(dir.file("f.tga").c_str(), 1), c.code);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
    EXPECT_EQ(loadTGA(dir.file("missing.tga").c_str(), 1), kTgaCannotOpen);
    EXPECT_EQ(kTgaCannotOpen, -13);
    EXPECT_EQ(kTgaShortData, -17);
}
