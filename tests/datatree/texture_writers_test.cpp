// Textures, colormaps and meshes as the converters write them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "catalogue/colormap.h"
#include "common_package/glm/src/glm.h"
#include "image/sgi_file.h"
#include "tests/datatree/datatree_test_support.h"
#include "tools/datatree/core/colormaps.h"
#include "tools/datatree/core/mesh.h"
#include "tools/datatree/core/raster.h"
#include "tools/datatree/core/sky_frames.h"

namespace {

// 4 x 2 picture: (x, y, channel) holds 16 y + 4 x + c.
Raster numbered(int components) {
    Raster r;
    r.width = 4;
    r.height = 2;
    r.components = components;
    r.pixels.resize(4 * 2 * components);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            for (int c = 0; c < components; ++c)
                r.at(x, y, c) = static_cast<unsigned char>(16 * y + 4 * x + c);
    return r;
}

}  // namespace

TEST(TextureWriters, SgiAndTgaStoreTheBottomRowFirst) {
    ScratchDir dir;
    writeSgiAtomically(dir.file("t.sgi"), numbered(3));
    int w, h, c;
    std::vector<unsigned char> back = read_sgi(dir.file("t.sgi").c_str(), &w, &h, &c);
    ASSERT_EQ(back.size(), 24u);
    EXPECT_EQ(w * 100 + h * 10 + c, 423);
    // Buffer row 0 = the picture's bottom row (y = 1); then the top row, x = 1, green.
    EXPECT_TRUE(back[0] == 16 && back[12 + 4] == 4 + 1);

    writeTgaAtomically(dir.file("t.tga"), numbered(4));
    std::string b = readFile(dir.file("t.tga"));
    ASSERT_EQ(b.size(), 18u + 4 * 2 * 4);
    // Header: no id, no colour map, type 2, 4 x 2, 32 bits; then pixel (0, 1) as B, G, R, A.
    EXPECT_EQ(b.substr(0, 3) + b.substr(12, 5) + b.substr(18, 4),
              std::string({0, 0, 2, 4, 0, 2, 0, 32, 16 + 2, 16 + 1, 16 + 0, 16 + 3}));
}

TEST(Colormaps, BvRampAndSpectralTypesReadWithTheCatalogueReaders) {
    ScratchDir dir;
    const ColorMapAllocator alloc{std::malloc, std::free};
    BVColorMap* bv =
        readBVColorMap(dir.write("bv.txt", formatBvColormap()).c_str(), -0.4, 2.0, alloc);
    ASSERT_NE(bv, nullptr);
    EXPECT_EQ(bv->count, kBvColormapEntries);
    float blue[4], red[4];
    lookupBV(*bv, -0.4f, blue);
    lookupBV(*bv, 2.0f, red);
    EXPECT_GT(blue[2], blue[0]);
    EXPECT_GT(red[0], red[2] + 0.3f);
    releaseBVColorMap(bv, alloc);

    SpColorMap* sp = readSpColorMap(dir.write("sp.txt", formatSpectralColormap()).c_str(), alloc);
    ASSERT_NE(sp, nullptr);
    int count = 0;
    spectralTemperatures(&count);
    EXPECT_EQ(sp->count, count);
    for (const char* cls : {"O", "B", "A", "F", "G", "K", "M"}) {
        float rgba[4];
        lookupSpectral(*sp, cls, 5, "V", rgba);
        EXPECT_FALSE(rgba[0] == 0.0f && rgba[1] == 1.0f && rgba[2] == 0.0f) << cls;  // found
        EXPECT_TRUE(cls[0] != 'O' || rgba[2] > rgba[0]) << cls;  // blue O, red M
        EXPECT_TRUE(cls[0] != 'M' || rgba[2] < rgba[0]) << cls;
    }
    releaseSpColorMap(sp, alloc);
}

TEST(Meshes, GridSpheresFaceTheRightWay) {
    for (bool inward : {false, true}) {
        Mesh mesh;
        addGridSphere(
            &mesh, "g", "m", 12, 6,
            [](double s, double t) {
                double lon = s * 2 * kPi, lat = (0.5 - t) * kPi;
                return Vec3{std::cos(lat) * std::cos(lon), std::cos(lat) * std::sin(lon),
                            std::sin(lat)};
            },
            inward);
        ASSERT_EQ(mesh.groups.size(), 1u);
        // 12 x 6 quads, less one triangle per quad in the two pole rows.
        EXPECT_EQ(mesh.groups[0].faces.size(), std::size_t(12 * 6 * 2 - 2 * 12));
        for (const auto& f : mesh.groups[0].faces) {
            const Vec3& a = mesh.vertices[f[0].vertex - 1];
            const Vec3& b = mesh.vertices[f[1].vertex - 1];
            const Vec3& c = mesh.vertices[f[2].vertex - 1];
            double facing = dot(cross(b - a, c - a), a + b + c);
            EXPECT_EQ(facing < 0, inward);
            EXPECT_EQ(dot(mesh.normals[f[0].normal - 1], a) < 0, inward);
        }
    }
}

TEST(Meshes, ObjAndMtlTextReadWithTheModelLibrary) {
    Mesh mesh;
    mesh.addTexcoord(0, 0);  // so that texture and normal indices differ
    int t = mesh.addTexcoord(0.5, 0.25);
    mesh.groups.resize(1);
    mesh.groups[0].name = "tri";
    mesh.groups[0].material = "plain";
    addFlatTriangle(&mesh, &mesh.groups[0], {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, t);
    MeshMaterial material;
    material.name = "plain";
    material.textureLine = "modulate t.ppm a.pgm";
    ScratchDir dir;
    dir.write("x.mtl", formatMtl({material}, "c"));
    std::string obj = formatObj(mesh, "x.mtl", "a comment");
    EXPECT_EQ(obj.substr(0, 12), "# a comment\n");
    GLMmodel* m = glmReadOBJ(dir.write("x.obj", obj).c_str());
    ASSERT_NE(m, nullptr);
    ASSERT_EQ(m->numtriangles, 1u);
    const GLMtriangle& tri = m->triangles[0];
    for (int j = 0; j < 3; ++j)
        EXPECT_TRUE(tri.vindices[j] == GLuint(j + 1) && tri.tindices[j] == 2u &&
                    m->normals[3 * tri.nindices[j] + 2] == 1.0f)
            << j;
    EXPECT_TRUE(m->vertices[3 * 2] == 1.0f && m->texcoords[2 * 2 + 1] == 0.25f);
    const GLuint plain = glmFindMaterial(m, "plain");
    const GLMmaterial& read = m->materials[plain];
    EXPECT_EQ(glmFindGroup(m, " tri")->material, plain);
    EXPECT_TRUE(read.ambient[0] == 0.2f && read.texEnvName == "modulate" &&
                read.alphaFile == "a.pgm");
    glmDelete(m);
}
