// Star texture images: the synthesised profiles, the FFT, file images and their rescaling,
// the half-light radius, and the texture setters.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <utility>
#include <vector>

#include "catalogue/star_list.h"
#include "image/pnm_file.h"
#include "starrender/complex_fft.h"
#include "starrender/star_texture_image.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::stderrOf;

namespace {

// Intensity (red) of pixel (row i, column j) of a 64 x 64 RGBA image.
int at(const std::vector<unsigned char>& img, int i, int j) {
    return img[(i * 64 + j) * 4];
}

// The image is symmetric under the eight turns and mirrors about its centre pixel (32, 32).
void expectCentreSymmetry(const std::vector<unsigned char>& img) {
    for (int di = -31; di <= 31; ++di) {
        for (int dj = -31; dj <= 31; ++dj) {
            const int v = at(img, 32 + di, 32 + dj);
            ASSERT_NEAR(v, at(img, 32 - di, 32 - dj), 1) << di << "," << dj;
            ASSERT_NEAR(v, at(img, 32 + dj, 32 + di), 1) << di << "," << dj;
            ASSERT_NEAR(v, at(img, 32 - di, 32 + dj), 1) << di << "," << dj;
        }
    }
}

// An FFT star image; checks the line it prints.
std::vector<unsigned char> fftImage(float size, float order, const float rgb[3], int filter,
                                    const char* name) {
    std::vector<unsigned char> img;
    EXPECT_EQ(cattest::stdoutOf([&] { img = fftStarImage(size, 0.5f, 1.0f, order, rgb, filter); }),
              std::string("fft texture (") + name + ")!\n");
    return img;
}

}  // namespace

TEST(ComplexFFT, InverseOfForwardIsTheInputAndOnlyPowersOfTwoAreTaken) {
    std::vector<std::complex<float>> data(8 * 16);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = {std::sin(0.3f * i), std::cos(1.7f * i)};
    const std::vector<std::complex<float>> original = data;
    complex_fft(data.data(), 8, 16, 0);
    complex_fft(data.data(), 8, 16, 1);
    for (size_t i = 0; i < data.size(); ++i)
        ASSERT_NEAR(std::abs(data[i] - original[i]), 0.0, 1e-5);

    std::vector<std::complex<float>> six(6 * 4, 1.0f);
    EXPECT_EQ(stderrOf([&] { complex_fft(six.data(), 6, 4, 0); }),
              "complex_fft: input array must have dimensions a power of 2");
    EXPECT_EQ(six[5], std::complex<float>(1.0f));
}

TEST(GaussTexture, ZeroSizeIsTransparentAndTheCutoffSaturatesTheCore) {
    std::vector<unsigned char> img = gaussStarImage(0.0f, 1.0f);
    for (unsigned char v : img)
        ASSERT_EQ(v, 0);
    img = gaussStarImage(0.1f, 1.0f);
    // A pure Gaussian: exp(-r^2 / 6.4^2) at the pixel centres.
    EXPECT_EQ(at(img, 32, 32), static_cast<int>(std::exp(-0.5 / (6.4 * 6.4)) * 255));
    EXPECT_EQ(at(img, 32, 36), static_cast<int>(std::exp(-(0.25 + 4.5 * 4.5) / (6.4 * 6.4)) * 255));
    std::vector<unsigned char> saturated = gaussStarImage(0.1f, 0.2f);
    EXPECT_EQ(at(saturated, 32, 36), 255);  // exp(-0.5) = 0.6 is above the cutoff
    EXPECT_GT(at(saturated, 32, 44), at(img, 32, 44));
}

// The first dark ring along a row from the centre, in channel c.
static int firstDarkRing(const std::vector<unsigned char>& img, int c) {
    for (int d = 2; d < 31; ++d) {
        const int v = img[(32 * 64 + 32 + d) * 4 + c];
        if (v <= img[(32 * 64 + 31 + d) * 4 + c] && v < img[(32 * 64 + 33 + d) * 4 + c]) return d;
    }
    return -1;
}

TEST(AiryTexture, BrightCentreFirstDarkRingAndRedWidestRings) {
    // A 1 m telescope puts the rings inside the image.
    const std::vector<unsigned char> img = airyStarImage(0.0f, 1.0f, 1.0f);
    EXPECT_EQ(at(img, 32, 32), 255);
    EXPECT_GE(img[(32 * 64 + 32) * 4 + 3], 254);
    expectCentreSymmetry(img);
    const int red = firstDarkRing(img, 0), blue = firstDarkRing(img, 2);
    ASSERT_GT(blue, 0);
    EXPECT_GT(red, blue);  // longer wavelength, wider pattern
}

TEST(FFTTexture, SquareApertureGivesACross) {
    const float rgb[3] = {1, 1, 1};
    std::vector<unsigned char> img = fftImage(0.25f, 1, rgb, _STAR_FILTER_SQUARE, "_FILTER_SQUARE");
    EXPECT_EQ(at(img, 32, 32), 255);
    expectCentreSymmetry(img);
    // Along the axes the pattern reaches much further than along the diagonals.
    int axis = 0, diagonal = 0;
    for (int d = 3; d < 20; ++d) {
        axis += at(img, 32, 32 + d);
        diagonal += at(img, 32 + d, 32 + d);
        EXPECT_GE(at(img, 32, 32 + d), at(img, 32 + d, 32 + d));
    }
    EXPECT_GT(axis, 4 * diagonal + 100);
    EXPECT_EQ(img[3], 255);  // alpha
}

TEST(FFTTexture, CircularApertureGivesRingsButterworthASpot) {
    const float rgb[3] = {1, 0.5f, 0};
    std::vector<unsigned char> img =
        fftImage(0.25f, 1, rgb, _STAR_FILTER_CIRCULAR, "_FILTER_CIRCULAR");
    EXPECT_EQ(at(img, 32, 32), 255);
    expectCentreSymmetry(img);
    ASSERT_GT(firstDarkRing(img, 0), 0);
    // ...at the same radius in a 3-4-5 direction as along the axis (5 pixels).
    EXPECT_NEAR(at(img, 32 + 3, 32 + 4), at(img, 32, 32 + 5), 25);
    EXPECT_NEAR(at(img, 32 + 6, 32 + 8), at(img, 32, 32 + 10), 25);
    // The filter colours scale the channels.
    EXPECT_EQ(img[(32 * 64 + 32) * 4 + 1], 127);
    EXPECT_EQ(img[(32 * 64 + 32) * 4 + 2], 0);
    // Butterworth: a symmetric spot; a zero aperture: dark.
    img = fftImage(0.3f, 2, rgb, _STAR_FILTER_BUTTERWORTH, "_FILTER_BUTTERWORTH");
    EXPECT_EQ(at(img, 32, 32), 255);
    expectCentreSymmetry(img);
    img = fftImage(0.0f, 1, rgb, _STAR_FILTER_SQUARE, "_FILTER_SQUARE");
    for (int i = 0; i < 64 * 64; ++i)
        ASSERT_EQ(img[i * 4], 0);
}

TEST(TextureImages, HalfLightRadiusAlphaRampAndRescaling) {
    std::vector<unsigned char> flat(64 * 64 * 4, 200);
    // Half the light of a uniform square lies within r with pi r^2 = 0.5.
    EXPECT_NEAR(halfLightRadius(flat.data(), 64, 64, 4, 0.5), std::sqrt(0.5 / M_PI), 1.0 / 64);
    std::vector<unsigned char> spot(64 * 64, 0);
    spot[31 * 64 + 31] = spot[31 * 64 + 32] = spot[32 * 64 + 31] = spot[32 * 64 + 32] = 255;
    EXPECT_LT(halfLightRadius(spot.data(), 64, 64, 1, 0.5), 2.0 / 64);
    std::vector<unsigned char> dark(16 * 16 * 4, 0);
    const double r = halfLightRadius(dark.data(), 16, 16, 4, 0.5);
    EXPECT_TRUE(std::isfinite(r) && r > 0.0);

    // Alpha from the mean of the colour, ramped between 32 and 223.
    std::vector<unsigned char> px = {20,  20,  20,  9, 32,  32,  32,  9,
                                     127, 127, 127, 9, 224, 224, 224, 9};
    applyAlphaRamp(px.data(), 4, 1);
    EXPECT_EQ(std::vector<int>({px[3], px[7], px[11], px[15]}),
              std::vector<int>({0, 0, (127 - 32) * 255 / 191, 255}));

    // Shrinking averages; a uniform image stays uniform.
    std::vector<unsigned char> src(4 * 2 * 4, 0);
    for (int x = 0; x < 4; ++x)
        src[x * 4] = src[(4 + x) * 4] = static_cast<unsigned char>(x * 40);
    std::vector<unsigned char> out = rescaleRGBA(src, 4, 2, 2, 1);
    EXPECT_EQ(out[0], 20);
    EXPECT_EQ(out[4], 100);
    for (unsigned char v : rescaleRGBA(std::vector<unsigned char>(3 * 3 * 4, 90), 3, 3, 4, 4))
        EXPECT_EQ(v, 90);
}

TEST(FileTexture, RescaledToPowersOfTwoWithAlphaFromColourAndBadFilesRefused) {
    cattest::ScratchDir dir;
    // 100 x 60 grey picture: left half dark, right half bright.
    std::vector<unsigned char> rgb(100 * 60 * 3);
    for (std::size_t i = 0; i < rgb.size(); ++i)
        rgb[i] = (i / 3) % 100 < 50 ? 30 : 100;
    const std::string path = dir.file("star.ppm");
    ASSERT_EQ(write_pnm(path.c_str(), 100, 60, 3, rgb.data()), 0);
    std::vector<unsigned char> rgba;
    int w = 0, h = 0;
    ASSERT_TRUE(fileStarImage(path.c_str(), rgba, &w, &h));
    EXPECT_EQ(w, 128);
    EXPECT_EQ(h, 64);
    ASSERT_EQ(rgba.size(), 128u * 64u * 4u);
    // Alpha is the length of the colour vector: sqrt(3) x 100 = 173.2.
    EXPECT_EQ(rgba[(10 * 128 + 127) * 4 + 3], 173);
    // Enlarging keeps each edge's own colour (no wrap from the opposite edge).
    EXPECT_EQ(rgba[(10 * 128 + 0) * 4], 30);
    EXPECT_EQ(rgba[(0 * 128 + 127) * 4], 100);

    const std::string junk = dir.write("junk.ppm", "this is not an image\n");
    // A header promising a huge picture is not believed.
    const std::string huge = dir.write("huge.ppm", "P6\n100000 100000\n255\nxyz");
    std::vector<unsigned char> grey(8 * 8, 77);
    const std::string pgm = dir.file("grey.pgm");
    ASSERT_EQ(write_pnm(pgm.c_str(), 8, 8, 1, grey.data()), 0);
    const std::pair<std::string, std::string> bad[] = {
        {junk, "Err : reading [" + junk + "]\n"},
        {huge, "Err : reading [" + huge + "]\n"},
        {pgm, "ERR : texFile [" + pgm + "] should have three or four channels\n\n"},
    };
    for (const auto& c : bad)
        EXPECT_EQ(stderrOf([&] { EXPECT_FALSE(fileStarImage(c.first.c_str(), rgba, &w, &h)); }),
                  c.second);
}

TEST(TextureSetters, RejectedValuesLeaveTheSourceAsItWas) {
    StarList list;
    const float rgb[3] = {1, 1, 1};
    const float badRgb[3] = {1, 2, 1};
    ASSERT_EQ(list.setStarTextureGauss(0.2f, 0.8f), 1);
    EXPECT_EQ(list.getStarParameter().texSize, 6.0);
    const std::pair<std::function<int()>, std::string> cases[] = {
        {[&] { return list.setStarTextureFFT(0.2f, 1, 1, 1, rgb, 4); },
         "Err (setStarTextureFFT) : inFilterType should be _STAR_FILTER_CIRCULAR, "
         "_STAR_FILTER_SQUARE, or "
         "_STAR_FILTER_BUTTERWORTH.\n\n"},
        {[&] { return list.setStarTextureFFT(1.2f, 1, 1, 1, rgb, 1); },
         "Err (setStarTextureFFT) : inFilterSize should be [0,1].\n\n"},
        {[&] { return list.setStarTextureFFT(0.2f, 0, 1, 1, rgb, 1); },
         "Err (setStarTextureFFT) : inFilterExp should be positive.\n\n"},
        {[&] { return list.setStarTextureFFT(0.2f, 1, 2, 1, rgb, 1); },
         "Err (setStarTextureFFT) : inFilterCutoff should be [0,1].\n\n"},
        {[&] { return list.setStarTextureFFT(0.2f, 1, 1, 1, badRgb, 1); },
         "Err (setStarTextureFFT) : inFilterRGB's values should be [0,1].\n\n"},
        {[&] { return list.setStarTextureFFT(0.2f, 1, 1, -1, rgb, 1); },
         "Err (setStarTextureFFT) : inFilterOrder should be positive.\n\n"},
        {[&] { return list.setStarTextureAiry(-0.1f, 1, 0.1f); },
         "Err (setStarTextureAiry) : inFilterSize should be [0,1].\n\n"},
        {[&] { return list.setStarTextureAiry(0.1f, 1.5f, 0.1f); },
         "Err (setStarTextureAiry) : inFilterCutoff should be [0,1].\n\n"},
        {[&] { return list.setStarTextureAiry(0.1f, 1, 0.0f); },
         "Err (setStarTextureAiry) : inTelescopeDiam should be positive.\n\n"},
        {[&] { return list.setStarTextureGauss(0.1f, 1.1f); },
         "Err (setStarTextureGauss) : inFilterCutoff should be [0,1].\n\n"},
        {[&] { return list.setStarTextureGauss(1.1f, 1.0f); }, ""},
        {[&] { return list.setStarTextureFile("star.sgi", 0.0); },
         "Err (setStarTextureFile) : inTexSize should be positive.\n\n"},
        {[&] { return list.setStarTextureFile("", 1.5); },
         "Err (setStarTextureFile) : inTexFile is NULL.\n\n"},
        {[&] { return list.setStarTextureParaFilter(0x1234, 0x2601); },
         "Err (setStarTextureParaFilter) : inTexParaMinFilter should take values GL_NEAREST, "
         "GL_LINEAR, "
         "etc.\n\n"},
        {[&] { return list.setStarTextureParaFilter(0x2601, 0x2703); },
         "Err (setStarTextureParaFilter) : inTexParaMagFilter should take values GL_NEAREST or "
         "GL_LINEAR.\n\n"},
    };
    for (const auto& c : cases) {
        int result = 0;
        EXPECT_EQ(stderrOf([&] { result = c.first(); }), c.second);
        EXPECT_EQ(result, -1);
        EXPECT_EQ(list.getStarParameter().textureSource, kStarTextureGauss);
        EXPECT_FLOAT_EQ(list.getStarParameter().filterSize, 0.2f);
    }
}
