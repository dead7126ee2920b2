// Material texture images prepared before upload: power-of-two rescaling, alpha images,
// the reader choice and the process-ending errors.

#include <gtest/gtest.h>

#include <string>

#include "common_package/glm/src/glm_texture_file.h"
#include "common_package/glm/src/texture_image.h"
#include "tests/common_package/glm/model_test_util.h"

using glmdetail::readMaterialImage;
using modeltest::filled;
using modeltest::ScratchDir;
using modeltest::writePnm;
using modeltest::writeText;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

TEST(MaterialImages, SizesThatAreNotPowersOfTwoAreRescaled) {
    ScratchDir dir;
    writePnm(dir.file("wide.ppm"), 300, 200, 3, filled(300, 200, {200, 100, 50}));
    CaptureStderr();
    ImageBuffer image = readMaterialImage(dir.path() + "/", "wide.ppm", "");
    EXPECT_EQ(GetCapturedStderr(), "- call gluScaleImage : 300x200 to 256x256\n- done.\n");
    EXPECT_EQ(image.width, 256);
    EXPECT_EQ(image.height, 256);
    EXPECT_EQ(image.components, 3);
    ASSERT_EQ(image.pixels.size(), 256u * 256 * 3);
    EXPECT_EQ(image.pixels[0], 200);
    EXPECT_EQ(image.pixels[256 * 256 * 3 - 1], 50);

    writePnm(dir.file("square.ppm"), 512, 512, 3, filled(512, 512, {1, 2, 3}));
    CaptureStderr();
    image = readMaterialImage(dir.path() + "/", "square.ppm", "");
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_EQ(image.width, 512);
}

TEST(MaterialImages, AlphaImagesBecomeTheAlphaChannel) {
    ScratchDir dir;
    writePnm(dir.file("grey.pgm"), 4, 2, 1, filled(4, 2, {90}));
    std::vector<unsigned char> alpha = {0, 10, 20, 30, 40, 50, 60, 70};
    writePnm(dir.file("alpha.pgm"), 4, 2, 1, alpha);
    ImageBuffer image = readMaterialImage(dir.path() + "/", "grey.pgm", "alpha.pgm");
    ASSERT_EQ(image.components, 2);  // luminance-alpha
    EXPECT_EQ(image.pixels[0], 90);
    EXPECT_EQ(image.pixels[3], 10);
    EXPECT_EQ(image.pixels[15], 70);

    writePnm(dir.file("rgb.ppm"), 4, 2, 3, filled(4, 2, {1, 2, 3}));
    image = readMaterialImage(dir.path() + "/", "rgb.ppm", "alpha.pgm");
    ASSERT_EQ(image.components, 4);
    EXPECT_EQ(image.pixels[4 * 7 + 2], 3);
    EXPECT_EQ(image.pixels[4 * 7 + 3], 70);

    // Names are tried as given before the model's directory.
    image = readMaterialImage("/nonexistent/", dir.file("rgb.ppm"), dir.file("alpha.pgm"));
    EXPECT_EQ(image.components, 4);
}

TEST(MaterialImages, EnlargingDoesNotWrapAroundTheEdges) {
    ImageBuffer in;
    in.width = 3;
    in.height = 1;
    in.components = 1;
    in.pixels = {0, 0, 255};
    ImageBuffer out = glmdetail::rescaleImage(in, 8, 2);
    ASSERT_EQ(out.pixels.size(), 16u);
    EXPECT_EQ(out.pixels[0], 0);    // left edge: no colour from the right edge
    EXPECT_EQ(out.pixels[7], 255);  // right edge
    EXPECT_EQ(out.pixels[8], 0);
    for (int x = 1; x < 8; x++)
        EXPECT_GE(out.pixels[x], out.pixels[x - 1]);
    // Shrinking averages.
    ImageBuffer half = glmdetail::rescaleImage(out, 4, 1);
    EXPECT_EQ(half.pixels[0], 0);
    EXPECT_GT(half.pixels[3], 200);
}

TEST(MaterialImagesDeathTest, UnreadableTexturesEndTheProcess) {
    ScratchDir dir;
    std::string d = dir.path() + "/";
    writePnm(dir.file("rgb.ppm"), 4, 2, 3, filled(4, 2, {1, 2, 3}));
    writePnm(dir.file("small.pgm"), 2, 2, 1, filled(2, 2, {1}));
    writePnm(dir.file("colour.ppm"), 4, 2, 3, filled(4, 2, {1, 2, 3}));
    EXPECT_EXIT(readMaterialImage(d, "tex.png", ""), testing::ExitedWithCode(1),
                "Err: unknown file extension in \\[" + d + "tex.png\\]\n");
    EXPECT_EXIT(readMaterialImage(d, "none.ppm", ""), testing::ExitedWithCode(1),
                "Err: reading \\[none.ppm\\] or \\[" + d + "none.ppm\\]\n");
    EXPECT_EXIT(readMaterialImage(d, "rgb.ppm", "none.pgm"), testing::ExitedWithCode(1),
                "Err: reading \\[none.pgm\\] o \\[" + d + "none.pgm\\]\n");
    EXPECT_EXIT(
        readMaterialImage(d, "rgb.ppm", "small.pgm"), testing::ExitedWithCode(1),
        "Err: sizes of files \\[" + d + "rgb.ppm\\] and \\[" + d + "small.pgm\\] illmatch\n");
    EXPECT_EXIT(readMaterialImage(d, "rgb.ppm", "colour.ppm"), testing::ExitedWithCode(1),
                "Err: \\[" + d + "colour.ppm\\] should have one alpha channel only\n");
    writeText(dir.file("junk.ppm"), "P6\n99999 99999\n255\nshort");
    EXPECT_EXIT(readMaterialImage(d, "junk.ppm", ""), testing::ExitedWithCode(1),
                "Err: reading \\[junk.ppm\\]");
}
