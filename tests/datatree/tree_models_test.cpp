// The real models and images of the data tree: they read, and their textures line up.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "common_package/glm/src/glm.h"
#include "common_package/math/src/pow2.h"
#include "image/pnm_file.h"
#include "image/sgi_file.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"
#include "tools/datatree/core/sky_frames.h"

namespace {

// Calls visit with the vertex and texture coordinates of every triangle corner.
void forEachCorner(const std::string& name,
                   const std::function<void(const Vec3&, double, double)>& visit) {
    GLMmodel* m = glmReadOBJ((dataRoot() + "/objdata/" + name + ".obj").c_str());
    ASSERT_NE(m, nullptr) << name;
    for (GLuint i = 0; i < m->numtriangles; ++i) {
        for (int j = 0; j < 3; ++j) {
            const GLfloat* v = &m->vertices[3 * m->triangles[i].vindices[j]];
            const GLfloat* st = &m->texcoords[2 * m->triangles[i].tindices[j]];
            visit(Vec3{v[0], v[1], v[2]}, st[0], st[1]);
        }
    }
    glmDelete(m);
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
        GLMmodel* model = glmReadOBJ((dataRoot() + "/objdata/" + name + ".obj").c_str());
        ASSERT_NE(model, nullptr) << name;
        // Texture mode needs coordinates.
        EXPECT_TRUE(model->numtriangles > 0 && model->numtexcoords > 0 && model->numnormals > 0)
            << name;
        for (GLuint m = 1; m < model->nummaterials; ++m) {
            const GLMmaterial& material = model->materials[m];
            if (material.textureFile.empty()) continue;
            std::string file = dataRoot() + "/objdata/" + material.textureFile;
            expectPowerOfTwoPnm(file, file.substr(file.size() - 4) == ".pgm" ? 1 : 3);
            if (!material.alphaFile.empty())
                expectPowerOfTwoPnm(dataRoot() + "/objdata/" + material.alphaFile, 1);
        }
        glmDelete(model);
    }
}

TEST(ModelTree, MilkyWayLinesUpWithTheGalacticFrame) {
    if (!requireDataTree()) return;
    // The panorama is equatorial plate carree: s = 0.25 - RA / 360, t = (90 - Dec) / 180.
    int checked = 0;
    forEachCorner("MilkyWayEnv", [&](const Vec3& v, double s, double t) {
        double ra, dec;
        equatorialAngles(toEquatorial(normalized(v)), &ra, &dec);
        EXPECT_NEAR(t, (90.0 - dec) / 180.0, 1e-4);
        if (std::fabs(dec) > 89.9) return;  // right ascension is undefined at the poles
        EXPECT_LT(wrapDifference(s, 0.25 - ra / 360.0), 1e-4) << "RA " << ra << " Dec " << dec;
        ++checked;
    });
    EXPECT_GT(checked, 10000);
}

TEST(ModelTree, GlobesPutTheMapsOnTheirLongitudes) {
    if (!requireDataTree()) return;
    // Pole on +y, longitude 0 on -x, 90 east on +z; the maps start at longitude -180.
    for (const char* name : {"earth", "earthNight", "earthCloud"}) {
        forEachCorner(name, [&](const Vec3& v0, double s, double t) {
            Vec3 v = normalized(v0);
            double lat = std::asin(std::max(-1.0, std::min(1.0, v.y))) / kDegree;
            EXPECT_NEAR(t, (90.0 - lat) / 180.0, 1e-4) << name;
            if (std::fabs(lat) > 89.9) return;
            double lon = std::atan2(-v.z, v.x) / kDegree + 180.0;
            EXPECT_LT(wrapDifference(s, (lon + 180.0) / 360.0), 1e-4) << name;
        });
    }
}

TEST(TextureTree, StarImage) {
    if (!requireDataTree()) return;
    int w = 0, h = 0, c = 0;
    std::string star = dataRoot() + "/stardata/star.sgi";
    std::vector<unsigned char> pixels = read_sgi(star.c_str(), &w, &h, &c);
    ASSERT_EQ(pixels.size(), 64u * 64 * 3);
    EXPECT_TRUE(pixels[(32 * 64 + 32) * 3] == 255 && pixels[0] == 0);  // bright centre, dark corner
}
