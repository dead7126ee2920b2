// Reading PARTICLE files (textures need a window): the file layout, appending, Gaussian and
// image textures, and the messages of malformed files.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common_package/particle/src/particle_list.h"
#include "tests/common_package/glm/model_test_util.h"
#include "tests/support/gl_test_window.h"

using modeltest::filled;
using modeltest::ScratchDir;
using modeltest::writePnm;
using modeltest::writeText;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

class ParticleFiles : public testing::Test {
  protected:
    void SetUp() override { SKYRAMA_REQUIRE_WINDOW(64, 64); }

    // Reads text as a particle file into list_; returns the result and the messages.
    int read(const std::string& text, std::string* messages, const char* name = "p.prt") {
        writeText(dir_.file(name), text);
        CaptureStderr();
        int result = list_.read(dir_.file(name).c_str());
        *messages = GetCapturedStderr();
        return result;
    }

    // Size and one texel (RGBA) of a texture's level 0.
    void textureAt(int name, int* width, int* height, int x, int y, unsigned char rgba[4]) {
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(name));
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, width);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, height);
        std::vector<unsigned char> texels(static_cast<std::size_t>(*width) * *height * 4);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        for (int k = 0; k < 4; k++)
            rgba[k] = texels[(static_cast<std::size_t>(y) * *width + x) * 4 + k];
    }

    ScratchDir dir_;
    ParticleList list_;
};

// A verbatim SGI image: 512-byte header, then each channel's rows bottom first.
void writeSgi(const std::string& name, int width, int height, const std::vector<int>& channels) {
    std::string bytes(512, '\0');
    auto put16 = [&bytes](int at, int v) {
        bytes[at] = static_cast<char>(v >> 8);
        bytes[at + 1] = static_cast<char>(v & 255);
    };
    put16(0, 474);
    put16(2, 1);
    put16(4, 3);
    put16(6, width);
    put16(8, height);
    put16(10, static_cast<int>(channels.size()));
    for (int value : channels)
        bytes.append(static_cast<std::size_t>(width) * height, static_cast<char>(value));
    writeText(name, bytes);
}

}  // namespace

TEST_F(ParticleFiles, TwoParticlesSharingOneGaussianTexture) {
    std::string messages;
    ASSERT_EQ(read("PARTICLE-set 2 1 16.0\n"
                   "# a comment, then a blank line\n\n"
                   "texture blob gaussian 200 0.5\n"
                   "1 0 0 0.5 1 0 0 1 blob\n"
                   "  0 -1 2.5 0.25 0 1 0 0.5 blob\n",
                   &messages),
              1);
    EXPECT_EQ(messages, "- build the BSP tree\n  done!\n");
    ASSERT_EQ(list_.getNumParticles(), 2);
    ASSERT_EQ(list_.getNumTextures(), 1);
    EXPECT_GE(list_.getTexName(0), 1);
    EXPECT_FLOAT_EQ(list_.getTexRatio(0), 0.5f);  // min(sigma, 1)
    Particle p;
    ASSERT_EQ(list_.getParticle(1, &p), 1);
    EXPECT_EQ(p.pos[1], -1.0);
    EXPECT_EQ(p.pos[2], 2.5);
    EXPECT_EQ(p.pos[3], 16.0);
    EXPECT_EQ(p.currPos[3], 16.0);
    EXPECT_EQ(p.size[0], 0.25);
    EXPECT_EQ(p.size[1], 16.0);
    EXPECT_FLOAT_EQ(p.color[3], 0.5f);
    EXPECT_EQ(p.texName, list_.getTexName(0));
    EXPECT_FLOAT_EQ(p.texRatio, 0.5f);
    EXPECT_EQ(p.valid, 1);
    ASSERT_NE(list_.getBSPRoot(), nullptr);
    EXPECT_FALSE(list_.getBSPRoot()->leaf);

    int width, height;
    unsigned char centre[4];
    textureAt(p.texName, &width, &height, 31, 31, centre);
    EXPECT_EQ(width, 64);
    EXPECT_EQ(height, 64);
    EXPECT_EQ(centre[3], 27);  // 200 exp(-0.5 / 0.25) = 27.07
}

TEST_F(ParticleFiles, ReadingAgainAppendsParticlesAndTextures) {
    std::string messages;
    ASSERT_EQ(read("PARTICLE 2 1 10\ntexture a gaussian 255 4\n"
                   "1 0 0 1 1 0 0 1 a\n2 0 0 1 1 0 0 1 a\n",
                   &messages, "first.prt"),
              1);
    ASSERT_EQ(read("PARTICLE 3 2 12\ntexture b gaussian 100 2\ntexture a gaussian 50 8\n"
                   "3 0 0 1 0 1 0 1 a\n4 0 0 1 0 1 0 1 b\n5 0 0 1 0 1 0 1 a\n",
                   &messages, "second.prt"),
              1);
    ASSERT_EQ(list_.getNumParticles(), 5);
    ASSERT_EQ(list_.getNumTextures(), 3);
    Particle p;
    list_.getParticle(1, &p);
    EXPECT_EQ(p.pos[0], 2.0);
    EXPECT_EQ(p.pos[3], 10.0);
    EXPECT_EQ(p.texName, list_.getTexName(0));
    list_.getParticle(2, &p);
    EXPECT_EQ(p.pos[3], 12.0);
    EXPECT_EQ(p.texName, list_.getTexName(2));  // this file's "a", not the first file's
    list_.getParticle(3, &p);
    EXPECT_EQ(p.texName, list_.getTexName(1));
    EXPECT_NE(list_.getTexName(0), list_.getTexName(2));
}

TEST_F(ParticleFiles, ImageTexturesWithAlphaAndRescaling) {
    writePnm(dir_.file("wide.ppm"), 300, 200, 3, filled(300, 200, {10, 20, 30}));
    writePnm(dir_.file("wide.pgm"), 300, 200, 1, filled(300, 200, {77}));
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
    int width, height;
    unsigned char texel[4];
    textureAt(list_.getTexName(0), &width, &height, 100, 100, texel);
    EXPECT_EQ(width, 256);
    EXPECT_EQ(height, 256);
    EXPECT_EQ(texel[0], 10);
    EXPECT_EQ(texel[2], 30);
    EXPECT_EQ(texel[3], 77);
    textureAt(list_.getTexName(1), &width, &height, 1, 1, texel);
    EXPECT_EQ(width, 4);
    EXPECT_EQ(texel[1], 100);
    EXPECT_EQ(texel[3], 255);  // RGB expanded to opaque RGBA
}

TEST_F(ParticleFiles, MalformedFilesSayWhatIsWrong) {
    writePnm(dir_.file("grey.pgm"), 4, 4, 1, filled(4, 4, {1}));
    writePnm(dir_.file("rgb.ppm"), 4, 4, 3, filled(4, 4, {1, 2, 3}));
    const std::string d = dir_.path() + "/";
    struct Case {
        std::string text;
        std::string message;
        int particlesKept;
    } cases[] = {
        {"PARTICLE 1 1 0\ntexture g\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2 does not have enough parameters\n\n", 0},
        {"PARTICLE 1 1 0\ntxture g gaussian 1 1\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2\n      Invalid identifier [txture]\n", 0},
        {"PARTICLE 1 1 0\ntexture g gaussian 256 1\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2\n      c is out of range [0,255]\n", 0},
        {"PARTICLE 1 1 0\ntexture g gaussian 255\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2 does not have enough parameters\n\n", 0},
        {"PARTICLE 1 1 0\ntexture g gaussian 255 -2\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2\n      sigma should be a positive number\n", 0},
        {"PARTICLE 1 1 0\ntexture g airy 255 2\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2\n      Unknown identifier [airy] after [texture g]\n", 0},
        {"PARTICLE 1 1 0\ntexture g file\n0 0 0 1 1 1 1 1 g\n",
         "Err : line 2 does not have enough parameters\n\n", 0},
        {"PARTICLE 1 2 0\n# only one\ntexture g gaussian 1 1\n" + std::string(40, '#') + "\n",
         "Err : cannot find enough textures\n      till the end of files\n", 0},
        {"PARTICLE 1 1 0\ntexture g file none.ppm\n0 0 0 1 1 1 1 1 g\n",
         "Err : reading pnm or rgb file at [none.ppm] or [" + d +
             "none.ppm]\nErr : line 2\n      reading ppm file [none.ppm]\n",
         0},
        {"PARTICLE 1 1 0\ntexture g file grey.pgm\n0 0 0 1 1 1 1 1 g\n",
         "Err : [grey.pgm] has to be an RGB or RGBA image!\nErr : line 2\n      reading ppm file "
         "[grey.pgm]\n",
         0},
        {"PARTICLE 1 1 0\ntexture g file rgb.ppm rgb.ppm\n0 0 0 1 1 1 1 1 g\n",
         "Err : [rgb.ppm] has to be an alpha channel image!\nErr : line 2\n      reading ppm file "
         "[rgb.ppm]\n",
         0},
        {"PARTICLE 3 1 0\ntexture g gaussian 9 9\n0 0 0 1 1 1 1 1 g\n\n1 1 1 1 1 1 1 1 nope\n",
         "Err : line 5\n      Unknown texture name [nope]\n", 1},
        {"PARTICLE 2 1 0\ntexture g gaussian 9 9\n0 0 0 1 1 1 1 g\n" + std::string(30, ' ') + "\n",
         "Err : not enough parameters (line 3)\n\n", 0},
        {"PARTICLE 2 1 0\ntexture g gaussian 9 9\n0 0 0 1 1 1 1 1 g\n#\n" + std::string(30, '#'),
         "Err : cannot find enough particles\n", 1},
        {"PARTICLE 1 1 0\ntexture g gaussian 9 9\n0 inf 0 1 1 1 1 1 g\n",
         "Err : line 3\n      numbers should be finite\n", 0},
    };
    for (const Case& c : cases) {
        ParticleList list;
        writeText(dir_.file("bad.prt"), c.text);
        CaptureStderr();
        EXPECT_EQ(list.read(dir_.file("bad.prt").c_str()), -1) << c.text;
        EXPECT_EQ(GetCapturedStderr(), c.message) << c.text;
        EXPECT_EQ(list.getNumParticles(), c.particlesKept) << c.text;
    }
}
