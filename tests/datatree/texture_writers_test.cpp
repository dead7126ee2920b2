// Textures, colormaps and meshes as the converters write them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <set>

#include "image/sgi_file.h"
#include "tests/datatree/datatree_test_support.h"
#include "tools/datatree/core/colormaps.h"
#include "tools/datatree/core/mesh.h"
#include "tools/datatree/core/raster.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/text_input.h"

namespace {

// 4 x 2 picture whose pixels encode their place: (x, y, channel) -> 16 y + 4 x + c.
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

TEST(TextureWriters, SgiStoresTheBottomRowFirst) {
    ScratchDir dir;
    std::string path = dir.path() + "/t.sgi";
    writeSgiAtomically(path, numbered(3));
    int w, h, c;
    std::vector<unsigned char> back = read_sgi(path.c_str(), &w, &h, &c);
    ASSERT_EQ(back.size(), 24u);
    EXPECT_EQ(w, 4);
    EXPECT_EQ(h, 2);
    EXPECT_EQ(c, 3);
    EXPECT_EQ(back[0], 16);          // buffer row 0 = the picture's bottom row (y = 1)
    EXPECT_EQ(back[12 + 4], 4 + 1);  // top row, x = 1, green
}

TEST(TextureWriters, TgaIsBgraBottomUp) {
    ScratchDir dir;
    std::string path = dir.path() + "/t.tga";
    writeTgaAtomically(path, numbered(4));
    std::string b = readFile(path);
    ASSERT_EQ(b.size(), 18u + 4 * 2 * 4);
    EXPECT_EQ(b[0], 0);  // no identification field
    EXPECT_EQ(b[1], 0);  // no colour map
    EXPECT_EQ(b[2], 2);  // true colour, uncompressed
    EXPECT_EQ(b[12] | b[13] << 8, 4);
    EXPECT_EQ(b[14] | b[15] << 8, 2);
    EXPECT_EQ(b[16], 32);
    // First stored pixel: bottom-left (x 0, y 1) as B, G, R, A.
    EXPECT_EQ(b[18], 16 + 2);
    EXPECT_EQ(b[19], 16 + 1);
    EXPECT_EQ(b[20], 16 + 0);
    EXPECT_EQ(b[21], 16 + 3);
}

TEST(Colormaps, BvRampRunsFromBlueToRed) {
    const std::string text = formatBvColormap();
    auto lines = splitLines(text);
    std::vector<std::vector<double>> colours;
    int count = -1;
    for (const TextLine& l : lines) {
        if (l.text.empty() || l.text[0] == '#') continue;
        if (count < 0) {
            count = std::stoi(std::string(l.text));
            continue;
        }
        auto w = splitWords(l.text);
        ASSERT_EQ(w.size(), 4u);
        std::vector<double> c;
        for (auto v : w)
            c.push_back(std::stod(std::string(v)));
        for (double v : c) {
            EXPECT_GE(v, 0.0);
            EXPECT_LE(v, 1.0);
        }
        colours.push_back(c);
    }
    ASSERT_EQ(count, kBvColormapEntries);
    ASSERT_EQ(colours.size(), std::size_t(count));
    EXPECT_GT(colours.front()[2], colours.front()[0]);      // B-V -0.4: blue
    EXPECT_GT(colours.back()[0], colours.back()[2] + 0.3);  // B-V 2.0: red
}

TEST(Colormaps, SpectralEntriesInTheReadersForm) {
    std::set<char> classes;
    const std::string text = formatSpectralColormap();
    for (const TextLine& l : splitLines(text)) {
        std::string line(l.text);
        if (line.empty() || line[0] == '#') continue;
        char type[32];
        float x, y;
        int r, g, b;
        ASSERT_EQ(std::sscanf(line.c_str(), "%31s %f %f %d %d %d", type, &x, &y, &r, &g, &b), 6)
            << line;
        for (int v : {r, g, b}) {
            EXPECT_GE(v, 0);
            EXPECT_LE(v, 255);
        }
        std::string t = type;
        if (std::string("OBAFGKM").find(t[0]) != std::string::npos) {
            EXPECT_NE(t.find('('), std::string::npos) << t;
            EXPECT_NE(t.find(')'), std::string::npos) << t;
            classes.insert(t[0]);
        }
        if (t == "O5(V)") {
            EXPECT_GT(b, r);
        }
        if (t == "M8(V)") {
            EXPECT_GT(r, b);
        }
    }
    EXPECT_EQ(classes.size(), 7u);
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

TEST(Meshes, ObjTextListsEveryElement) {
    Mesh mesh;
    int t = mesh.addTexcoord(0.5, 0.5);
    mesh.groups.resize(1);
    mesh.groups[0].name = "tri";
    mesh.groups[0].material = "plain";
    addFlatTriangle(&mesh, &mesh.groups[0], {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, t);
    std::string obj = formatObj(mesh, "x.mtl", "a comment");
    EXPECT_EQ(obj.substr(0, 12), "# a comment\n");
    EXPECT_NE(obj.find("\nmtllib x.mtl\n"), std::string::npos);
    EXPECT_NE(obj.find("\ng tri\nusemtl plain\nf 1/1/1 2/1/1 3/1/1\n"), std::string::npos) << obj;
    EXPECT_NE(obj.find("vn 0.000000 0.000000 1.000000\n"), std::string::npos);
    MeshMaterial m;
    m.name = "plain";
    m.textureLine = "modulate t.ppm a.pgm";
    std::string mtl = formatMtl({m}, "c");
    EXPECT_NE(mtl.find("newmtl plain\nKa 0.2000 0.2000 0.2000 1.0000\n"), std::string::npos);
    EXPECT_NE(mtl.find("Td modulate t.ppm a.pgm\n"), std::string::npos);
}
