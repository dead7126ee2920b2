// The real models, textures, particles and font of the data tree: they read with the model
// library and the image readers, their textures line up with the sky and the globe, and the
// files the GL-bound readers take keep their formats.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>

#include "common_package/glm/src/glm.h"
#include "common_package/math/src/pow2.h"
#include "image/pnm_file.h"
#include "image/sgi_file.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/text_input.h"

namespace {

// Vertices and texture coordinates of every face corner of an OBJ file.
struct Corner {
    Vec3 vertex;
    double s, t;
};
std::vector<Corner> faceCorners(const std::string& path) {
    std::vector<Vec3> v;
    std::vector<std::pair<double, double>> vt;
    std::vector<Corner> corners;
    const std::string text = readFile(path);
    for (const TextLine& l : splitLines(text)) {
        auto w = splitWords(l.text);
        if (w.empty()) continue;
        if (w[0] == "v")
            v.push_back({std::stod(std::string(w[1])), std::stod(std::string(w[2])),
                         std::stod(std::string(w[3]))});
        if (w[0] == "vt")
            vt.emplace_back(std::stod(std::string(w[1])), std::stod(std::string(w[2])));
        if (w[0] == "f") {
            for (std::size_t k = 1; k < w.size(); ++k) {
                int a = 0, b = 0, c = 0;
                std::sscanf(std::string(w[k]).c_str(), "%d/%d/%d", &a, &b, &c);
                corners.push_back({v.at(a - 1), vt.at(b - 1).first, vt.at(b - 1).second});
            }
        }
    }
    return corners;
}

double wrapDifference(double a, double b) {
    double d = std::fmod(std::fabs(a - b), 1.0);
    return std::min(d, 1.0 - d);
}

void expectPowerOfTwoPnm(const std::string& path, int components) {
    int w = 0, h = 0, c = 0;
    std::vector<unsigned char> pixels = read_pnm(path.c_str(), &w, &h, &c);
    ASSERT_FALSE(pixels.empty()) << path;
    EXPECT_EQ(c, components) << path;
    EXPECT_TRUE(isPowerOfTwo(w) && isPowerOfTwo(h)) << path << " " << w << "x" << h;
}

}  // namespace

TEST(ModelTree, EveryModelReadsWithItsTexture) {
    if (!requireDataTree()) return;
    for (const char* name :
         {"MilkyWayEnv", "earth", "earthNight", "earthCloud", "compass", "arrow"}) {
        std::string path = dataRoot() + "/objdata/" + name + ".obj";
        GLMmodel* model = glmReadOBJ(path.c_str());
        ASSERT_NE(model, nullptr) << path;
        EXPECT_GT(model->numtriangles, 0u) << name;
        EXPECT_GT(model->numtexcoords, 0u) << name;  // texture mode needs coordinates
        EXPECT_GT(model->numnormals, 0u) << name;
        for (GLuint m = 1; m < model->nummaterials; ++m) {
            const GLMmaterial& material = model->materials[m];
            if (material.textureFile[0] == '\0') continue;
            std::string dir = dataRoot() + "/objdata/";
            std::string file = dir + material.textureFile;
            expectPowerOfTwoPnm(file, file.substr(file.size() - 4) == ".pgm" ? 1 : 3);
            if (material.alphaFile[0]) expectPowerOfTwoPnm(dir + material.alphaFile, 1);
        }
        glmDelete(model);
    }
}

TEST(ModelTree, MilkyWayLinesUpWithTheGalacticFrame) {
    if (!requireDataTree()) return;
    // The panorama is equatorial plate carree: s = 0.25 - RA / 360, t = (90 - Dec) / 180.
    int checked = 0;
    for (const Corner& c : faceCorners(dataRoot() + "/objdata/MilkyWayEnv.obj")) {
        double ra, dec;
        equatorialAngles(toEquatorial(c.vertex), &ra, &dec);
        EXPECT_NEAR(c.t, (90.0 - dec) / 180.0, 1e-4);
        if (std::fabs(dec) > 89.9) continue;  // right ascension is undefined at the poles
        ASSERT_LT(wrapDifference(c.s, 0.25 - ra / 360.0), 1e-4) << "RA " << ra << " Dec " << dec;
        ++checked;
    }
    EXPECT_GT(checked, 10000);
    // So the galactic centre, +x, falls on pixel (1044, 677) of the 2048 x 1024 panorama.
    double ra, dec;
    equatorialAngles(toEquatorial({1, 0, 0}), &ra, &dec);
    EXPECT_NEAR(std::fmod(0.25 - ra / 360.0 + 1.0, 1.0) * 2048, 1044.5, 0.5);
    EXPECT_NEAR((90.0 - dec) / 180.0 * 1024, 676.6, 0.5);
}

TEST(ModelTree, GlobesPutTheMapsOnTheirLongitudes) {
    if (!requireDataTree()) return;
    // Pole on +y, longitude 0 on -x, 90 east on +z; the maps start at longitude -180.
    for (const char* name : {"earth", "earthNight", "earthCloud"}) {
        for (const Corner& c : faceCorners(dataRoot() + "/objdata/" + name + ".obj")) {
            double lat = std::asin(std::max(-1.0, std::min(1.0, c.vertex.y))) / kDegree;
            ASSERT_NEAR(c.t, (90.0 - lat) / 180.0, 1e-4);
            if (std::fabs(lat) > 89.9) continue;
            double lon = std::atan2(-c.vertex.z, c.vertex.x) / kDegree + 180.0;
            ASSERT_LT(wrapDifference(c.s, (lon + 180.0) / 360.0), 1e-4) << name;
        }
    }
}

TEST(ParticleTree, SunParticlesAndTheirTextures) {
    if (!requireDataTree()) return;
    std::string dir = dataRoot() + "/prtdata/SolarSystem/";
    const std::string text = readFile(dir + "sun.prt");
    auto lines = splitLines(text);
    char id[64];
    int particles = 0, textures = 0;
    float exponent = 0;
    ASSERT_EQ(std::sscanf(std::string(lines[0].text).c_str(), "%63s %d %d %f", id, &particles,
                          &textures, &exponent),
              4);
    EXPECT_TRUE(startsWith(id, "PARTICLE"));
    EXPECT_GE(particles, 1);
    EXPECT_GE(textures, 1);
    std::map<std::string, bool> names;
    int seenTextures = 0, seenParticles = 0;
    double largest = 0;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::string t(trim(lines[i].text));
        if (t.empty() || t[0] == '#') continue;
        auto w = splitWords(t);
        if (seenTextures < textures) {
            ASSERT_EQ(w[0], "texture") << t;
            names[std::string(w[1])] = true;
            if (w[2] == "file") {
                expectPowerOfTwoPnm(dir + std::string(w[3]), 3);
                if (w.size() > 4) expectPowerOfTwoPnm(dir + std::string(w[4]), 1);
            } else {
                ASSERT_EQ(w[2], "gaussian") << t;
                int c = std::stoi(std::string(w[3]));
                EXPECT_TRUE(c >= 0 && c <= 255);
            }
            ++seenTextures;
            continue;
        }
        ASSERT_EQ(w.size(), 9u) << t;
        EXPECT_TRUE(names.count(std::string(w[8]))) << "unknown texture in " << t;
        largest = std::max(largest, std::stod(std::string(w[3])));
        ++seenParticles;
    }
    EXPECT_EQ(seenParticles, particles);
    // Sizes hold at the reference scale 15, where the eye is 10^15.2 m from the Sun: the
    // widest glow spans tens of degrees there.
    EXPECT_EQ(exponent, 15.0f);
    EXPECT_GT(std::atan(largest / 2 / std::pow(10.0, 0.2)) / kDegree, 20.0);
}

TEST(TextureTree, StarImageAndFont) {
    if (!requireDataTree()) return;
    int w = 0, h = 0, c = 0;
    std::string star = dataRoot() + "/stardata/star.sgi";
    std::vector<unsigned char> pixels = read_sgi(star.c_str(), &w, &h, &c);
    ASSERT_EQ(pixels.size(), 64u * 64 * 3);
    EXPECT_EQ(pixels[(32 * 64 + 32) * 3], 255);  // bright centre
    EXPECT_EQ(pixels[0], 0);                     // dark corner

    std::string font = readFile(dataRoot() + "/texturedata/font.tga");
    ASSERT_GE(font.size(), 18u);
    int fw = static_cast<unsigned char>(font[12]) | static_cast<unsigned char>(font[13]) << 8;
    int fh = static_cast<unsigned char>(font[14]) | static_cast<unsigned char>(font[15]) << 8;
    EXPECT_EQ(font[1], 0);
    EXPECT_EQ(font[2], 2);
    EXPECT_EQ(font[16], 32);
    EXPECT_TRUE(isPowerOfTwo(fw) && fw == fh && fw <= 512);
    ASSERT_EQ(font.size(), 18u + std::size_t(fw) * fh * 4);
    // Coverage (alpha) summed over a glyph's cell; rows are stored bottom first.
    int cell = fw / 16;
    auto coverage = [&](int glyph) {
        long sum = 0;
        for (int y = 0; y < cell; ++y) {
            int row = fh - 1 - ((glyph / 16) * cell + y);
            for (int x = 0; x < cell; ++x) {
                std::size_t at = 18 + (std::size_t(row) * fw + (glyph % 16) * cell + x) * 4;
                sum += static_cast<unsigned char>(font[at + 3]);
            }
        }
        return sum;
    };
    EXPECT_GT(coverage('A'), 2000);
    EXPECT_GT(coverage(0xE9), 2000);  // e with an acute accent
    EXPECT_EQ(coverage(' '), 0);
    EXPECT_EQ(coverage(7), 0);
    EXPECT_GT(coverage('W'), coverage('.'));
}
