// Reading PARTICLE files (textures need a window): the file layout, appending, Gaussian and
// image textures, and the messages of malformed files.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common_package/particle/src/particle_list.h"
#include "tests/common_package/glm/model_test_util.h"
#include "tests/support/gl_test_window.h"

using namespace modeltest;

namespace {

class ParticleFiles : public testing::Test {
  protected:
    void SetUp() override { SKYRAMA_REQUIRE_WINDOW(64, 64); }

    // Reads text as a particle file into list; returns the result and the messages.
    int read(const std::string& text, std::string* messages, ParticleList* list = nullptr) {
        writeText(dir_.file("p.prt"), text);
        int result = 0;
        *messages =
            stderrOf([&] { result = (list ? list : &list_)->read(dir_.file("p.prt").c_str()); });
        return result;
    }

    // The size of a texture's level 0 and one texel (RGBA) of it.
    std::vector<int> texel(int name, int x, int y) {
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(name));
        GLint w = 0, h = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &w);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &h);
        std::vector<unsigned char> texels(static_cast<std::size_t>(w) * h * 4);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        const unsigned char* t = &texels[(static_cast<std::size_t>(y) * w + x) * 4];
        return {w, h, t[0], t[1], t[2], t[3]};
    }

    ScratchDir dir_;
    ParticleList list_;
};

// A verbatim SGI image: 512-byte header, then each channel's rows bottom first.
void writeSgi(const std::string& name, int width, int height, const std::vector<int>& channels) {
    std::string bytes(512, '\0');
    const int header[] = {474, 1, 3, width, height, static_cast<int>(channels.size())};
    for (int i = 0; i < 6; i++) {
        bytes[2 * i] = static_cast<char>(header[i] >> 8);
        bytes[2 * i + 1] = static_cast<char>(header[i] & 255);
    }
    for (int value : channels)
        bytes.append(static_cast<std::size_t>(width) * height, static_cast<char>(value));
    writeText(name, bytes);
}

}  // namespace

TEST_F(ParticleFiles, TwoParticlesSharingOneGaussianTexture) {
    std::string messages;
    ASSERT_EQ(read("PARTICLE-set 2 1 16.0\n# a comment, then a blank line\n\n"
                   "texture blob gaussian 200 0.5\n"
                   "1 0 0 0.5 1 0 0 1 blob\n"
                   "  0 -1 2.5 0.25 0 1 0 0.5 blob\n",
                   &messages),
              1);
    EXPECT_EQ(messages, "- build the BSP tree\n  done!\n");
    ASSERT_EQ(list_.getNumParticles(), 2);
    ASSERT_EQ(list_.getNumTextures(), 1);
    EXPECT_FLOAT_EQ(list_.getTexRatio(0), 0.5f);  // min(sigma, 1)
    Particle p;
    ASSERT_EQ(list_.getParticle(1, &p), 1);
    EXPECT_EQ(std::vector<double>(
                  {p.pos[0], p.pos[1], p.pos[2], p.pos[3], p.currPos[3], p.size[0], p.size[1]}),
              std::vector<double>({0, -1, 2.5, 16, 16, 0.25, 16}));
    EXPECT_TRUE(p.color[3] == 0.5f && p.texRatio == 0.5f && p.valid == 1);
    EXPECT_TRUE(p.texName >= 1 && p.texName == list_.getTexName(0));
    ASSERT_NE(list_.getBSPRoot(), nullptr);
    EXPECT_FALSE(list_.getBSPRoot()->leaf);
    // 64 x 64; at the centre 200 exp(-0.5 / 0.25) = 27.07
    EXPECT_EQ(texel(p.texName, 31, 31), (std::vector<int>{64, 64, 27, 27, 27, 27}));
}

TEST_F(ParticleFiles, ReadingAgainAppendsParticlesAndTextures) {
    std::string messages;
    ASSERT_EQ(read("PARTICLE 2 1 10\ntexture a gaussian 255 4\n"
                   "1 0 0 1 1 0 0 1 a\n2 0 0 1 1 0 0 1 a\n",
                   &messages),
              1);
    ASSERT_EQ(read("PARTICLE 3 2 12\ntexture b gaussian 100 2\ntexture a gaussian 50 8\n"
                   "3 0 0 1 0 1 0 1 a\n4 0 0 1 0 1 0 1 b\n5 0 0 1 0 1 0 1 a\n",
                   &messages),
              1);
    ASSERT_EQ(list_.getNumParticles(), 5);
    ASSERT_EQ(list_.getNumTextures(), 3);
    // Particle: x, exponent, texture slot (this file's "a", not the first file's).
    const double expected[5][3] = {{1, 10, 0}, {2, 10, 0}, {3, 12, 2}, {4, 12, 1}, {5, 12, 2}};
    for (int i = 0; i < 5; i++) {
        Particle p;
        list_.getParticle(i, &p);
        EXPECT_TRUE(p.pos[0] == expected[i][0] && p.pos[3] == expected[i][1] &&
                    p.texName == list_.getTexName(int(expected[i][2])))
            << i;
    }
    EXPECT_NE(list_.getTexName(0), list_.getTexName(2));
}

TEST_F(ParticleFiles, ImageTexturesWithAlphaAndRescaling) {
    writePnm(dir_.file("wide.ppm"), 300, 200, 3, {10, 20, 30});
    writePnm(dir_.file("wide.pgm"), 300, 200, 1, {77});
    writeSgi(dir_.file("tile.sgi"), 4, 4, {200, 100, 50});
    std::string messages;
    // Image names are relative to the particle file's folder.
    ASSERT_EQ(read("PARTICLE 2 2 0\ntexture w file wide.ppm wide.pgm\ntexture s file tile.sgi\n"
                   "0 0 0 1 1 1 1 1 w\n1 1 1 1 1 1 1 1 s\n",
                   &messages),
              1);
    EXPECT_EQ(messages,
              "- call gluScaleImage : 300x200 to 256x256 : done!\n"
              "- build the BSP tree\n  done!\n");
    EXPECT_FLOAT_EQ(list_.getTexRatio(0), 1.0f);
    EXPECT_EQ(texel(list_.getTexName(0), 100, 100), (std::vector<int>{256, 256, 10, 20, 30, 77}));
    // RGB expanded to opaque RGBA.
    EXPECT_EQ(texel(list_.getTexName(1), 1, 1), (std::vector<int>{4, 4, 200, 100, 50, 255}));
}

TEST_F(ParticleFiles, MalformedFilesSayWhatIsWrong) {
    writePnm(dir_.file("grey.pgm"), 4, 4, 1, {1});
    writePnm(dir_.file("rgb.ppm"), 4, 4, 3, {1, 2, 3});
    const std::string d = dir_.path() + "/", one = "PARTICLE 1 1 0\n", dot = "0 0 0 1 1 1 1 1 g\n";
    struct Case {
        std::string text, message;
        int particlesKept;
    } cases[] = {
        {one + "texture g\n" + dot, "Err : line 2 does not have enough parameters\n\n", 0},
        {one + "txture g gaussian 1 1\n" + dot, "Err : line 2\n      Invalid identifier [txture]\n",
         0},
        {one + "texture g gaussian 256 1\n" + dot,
         "Err : line 2\n      c is out of range [0,255]\n", 0},
        {one + "texture g gaussian 255\n" + dot, "Err : line 2 does not have enough parameters\n\n",
         0},
        {one + "texture g gaussian 255 -2\n" + dot,
         "Err : line 2\n      sigma should be a positive number\n", 0},
        {one + "texture g airy 255 2\n" + dot,
         "Err : line 2\n      Unknown identifier [airy] after [texture g]\n", 0},
        {one + "texture g file\n" + dot, "Err : line 2 does not have enough parameters\n\n", 0},
        {"PARTICLE 1 2 0\n# only one\ntexture g gaussian 1 1\n" + std::string(40, '#') + "\n",
         "Err : cannot find enough textures\n      till the end of files\n", 0},
        {one + "texture g file none.ppm\n" + dot,
         "Err : reading pnm or rgb file at [none.ppm] or [" + d +
             "none.ppm]\nErr : line 2\n      reading ppm file [none.ppm]\n",
         0},
        {one + "texture g file grey.pgm\n" + dot,
         "Err : [grey.pgm] has to be an RGB or RGBA image!\nErr : line 2\n      reading ppm file "
         "[grey.pgm]\n",
         0},
        {one + "texture g file rgb.ppm rgb.ppm\n" + dot,
         "Err : [rgb.ppm] has to be an alpha channel image!\nErr : line 2\n      reading ppm file "
         "[rgb.ppm]\n",
         0},
        {"PARTICLE 3 1 0\ntexture g gaussian 9 9\n" + dot + "\n1 1 1 1 1 1 1 1 nope\n",
         "Err : line 5\n      Unknown texture name [nope]\n", 1},
        {"PARTICLE 2 1 0\ntexture g gaussian 9 9\n0 0 0 1 1 1 1 g\n" + std::string(30, ' ') + "\n",
         "Err : not enough parameters (line 3)\n\n", 0},
        {"PARTICLE 2 1 0\ntexture g gaussian 9 9\n" + dot + "#\n" + std::string(30, '#'),
         "Err : cannot find enough particles\n", 1},
        {one + "texture g gaussian 9 9\n0 inf 0 1 1 1 1 1 g\n",
         "Err : line 3\n      numbers should be finite\n", 0},
    };
    for (const Case& c : cases) {
        ParticleList list;
        std::string messages;
        EXPECT_EQ(read(c.text, &messages, &list), -1) << c.text;
        EXPECT_EQ(messages, c.message) << c.text;
        EXPECT_EQ(list.getNumParticles(), c.particlesKept) << c.text;
    }
}
