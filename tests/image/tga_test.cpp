// TGA checks made before anything is uploaded: every refusal code, with no window.

#include <gtest/gtest.h>

#include <string>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

TEST(Tga, RefusalCodesInCheckOrder) {
    ScratchDir dir;
    const struct {
        Bytes file;
        int code;
    } cases[] = {
        {tga(10, 256, 256, 32, 256 * 256 * 4), -14},    // run-length encoded
        {tga(2, 256, 256, 32, 256 * 256 * 4, 1), -14},  // colour-mapped
        {Bytes(15, 2), -14},                            // header cut short
        {tga(10, 100, 100, 16, 0), -14},                // the type is checked first
        {tga(2, 1024, 1024, 32, 0), -15},
        {tga(2, 100, 100, 32, 100 * 100 * 4), -15},
        {tga(3, 256, 1, 8, 256), -15},
        {tga(2, 100, 256, 16, 0), -15},  // then the size
        {tga(2, 256, 256, 16, 256 * 256 * 2), -16},
        {tga(2, 256, 256, 32, 256 * 256 * 4 - 1), -17},
        {tga(3, 512, 512, 8, 0), -17},
    };
    for (const auto& c : cases) {
        const std::string name = dir.write("f.tga", c.file);
        EXPECT_EQ(stderrOf([&] { EXPECT_EQ(loadTGA(name.c_str(), 1), c.code) << &c - cases; }), "");
    }
    EXPECT_EQ(loadTGA(dir.file("missing.tga").c_str(), 1), -13);
}
