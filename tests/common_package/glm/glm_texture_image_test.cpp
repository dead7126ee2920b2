// Material texture images prepared before upload: power-of-two rescaling, alpha images,
// the reader choice and the process-ending errors.

#include <gtest/gtest.h>

#include <string>

#include "common_package/glm/src/glm_texture_file.h"
#include "common_package/glm/src/texture_image.h"
#include "tests/common_package/glm/model_test_util.h"

using glmdetail::readMaterialImage;
using namespace modeltest;

TEST(MaterialImages, SizesThatAreNotPowersOfTwoAreRescaled) {
    ScratchDir dir;
    const std::string d = dir.path() + "/";
    writePnm(dir.file("wide.ppm"), 300, 200, 3, {200, 100, 50});
    ImageBuffer image;
    EXPECT_EQ(stderrOf([&] { image = readMaterialImage(d, "wide.ppm", ""); }),
              "- call gluScaleImage : 300x200 to 256x256\n- done.\n");
    ASSERT_TRUE(image.width == 256 && image.height == 256 && image.pixels.size() == 256u * 256 * 3);
    EXPECT_TRUE(image.pixels[0] == 200 && image.pixels.back() == 50);

    writePnm(dir.file("square.ppm"), 512, 512, 3, {1, 2, 3});
    EXPECT_EQ(stderrOf([&] { image = readMaterialImage(d, "square.ppm", ""); }), "");
    EXPECT_EQ(image.width, 512);

    // Enlarging does not wrap colour round from the other edge; shrinking averages.
    ImageBuffer in;
    in.width = 3;
    in.height = in.components = 1;
    in.pixels = {0, 0, 255};
    ImageBuffer out = glmdetail::rescaleImage(in, 8, 2);
    ASSERT_EQ(out.pixels.size(), 16u);
    EXPECT_TRUE(out.pixels[0] == 0 && out.pixels[7] == 255);
    for (int x = 1; x < 8; x++)
        EXPECT_GE(out.pixels[x], out.pixels[x - 1]);
    EXPECT_GT(glmdetail::rescaleImage(out, 4, 1).pixels[3], 200);
}

TEST(MaterialImages, AlphaImagesBecomeTheAlphaChannel) {
    ScratchDir dir;
    const std::string d = dir.path() + "/";
    writePnm(dir.file("grey.pgm"), 4, 2, 1, {90});
    writePnm(dir.file("alpha.pgm"), 4, 2, 1, {0, 10, 20, 30, 40, 50, 60, 70});
    ImageBuffer image = readMaterialImage(d, "grey.pgm", "alpha.pgm");
    ASSERT_EQ(image.components, 2);  // luminance-alpha
    EXPECT_TRUE(image.pixels[0] == 90 && image.pixels[3] == 10 && image.pixels[15] == 70);

    writePnm(dir.file("rgb.ppm"), 4, 2, 3, {1, 2, 3});
    // Names are tried as given before the model's directory.
    image = readMaterialImage("/nonexistent/", dir.file("rgb.ppm"), dir.file("alpha.pgm"));
    ASSERT_EQ(image.components, 4);
    EXPECT_TRUE(image.pixels[4 * 7 + 2] == 3 && image.pixels[4 * 7 + 3] == 70);
}

TEST(MaterialImagesDeathTest, UnreadableTexturesEndTheProcess) {
    ScratchDir dir;
    const std::string d = dir.path() + "/";
    writePnm(dir.file("rgb.ppm"), 4, 2, 3, {1, 2, 3});
    writePnm(dir.file("small.pgm"), 2, 2, 1, {1});
    writeText(dir.file("junk.ppm"), "P6\n99999 99999\n255\nshort");
    struct Case {
        const char *texture, *alpha;
        std::string message;
    } cases[] = {
        {"tex.png", "", "Err: unknown file extension in \\[" + d + "tex.png\\]\n"},
        {"none.ppm", "", "Err: reading \\[none.ppm\\] or \\[" + d + "none.ppm\\]\n"},
        {"rgb.ppm", "none.pgm", "Err: reading \\[none.pgm\\] o \\[" + d + "none.pgm\\]\n"},
        {"rgb.ppm", "small.pgm",
         "Err: sizes of files \\[" + d + "rgb.ppm\\] and \\[" + d + "small.pgm\\] illmatch\n"},
        {"rgb.ppm", "rgb.ppm", "Err: \\[" + d + "rgb.ppm\\] should have one alpha channel only\n"},
        {"junk.ppm", "", "Err: reading \\[junk.ppm\\]"},
    };
    for (const Case& c : cases)
        EXPECT_EXIT(readMaterialImage(d, c.texture, c.alpha), testing::ExitedWithCode(1), c.message)
            << c.texture;
}
