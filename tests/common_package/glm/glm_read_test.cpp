// Reading OBJ files and MTL libraries: face forms, fans, groups, materials, texture lines,
// and the files a user could get wrong.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "tests/common_package/glm/model_test_util.h"

using namespace modeltest;

namespace {

const std::string kNineVertices =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\nv 3 0 0\nv 3 1 0\nv 4 0 0\n";

// A triangle's corners as "vertex/texture/normal" indices.
std::string corners(const GLMmodel* m, GLuint i) {
    const GLMtriangle& t = m->triangles[i];
    std::string s;
    for (int j = 0; j < 3; j++)
        s += (j ? " " : "") + std::to_string(t.vindices[j]) + "/" + std::to_string(t.tindices[j]) +
             "/" + std::to_string(t.nindices[j]);
    return s;
}

// Every index a triangle holds points into its array, and the groups hold every triangle.
void expectIndicesInRange(const GLMmodel* m) {
    GLuint grouped = 0;
    for (const GLMgroup* g = m->groups; g != nullptr; g = g->next) {
        grouped += g->numtriangles;
        for (GLuint k = 0; k < g->numtriangles; k++)
            EXPECT_LT(g->triangles[k], m->numtriangles);
    }
    EXPECT_EQ(grouped, m->numtriangles);
    for (GLuint i = 0; i < m->numtriangles; i++) {
        const GLMtriangle& t = m->triangles[i];
        for (int j = 0; j < 3; j++) {
            EXPECT_GE(t.vindices[j], 1u);
            EXPECT_LE(t.vindices[j], m->numvertices);
            EXPECT_LE(t.nindices[j], m->numnormals);
            EXPECT_LE(t.tindices[j], m->numtexcoords);
        }
    }
}

}  // namespace

TEST(ObjFaces, FansAndEveryFaceForm) {
    std::string text = kNineVertices;
    for (int i = 0; i < 6; i++)
        text += "vn 0 0 1\n";
    for (int i = 0; i < 9; i++)
        text += "vt 0.5 0.25\n";
    text += "f 1 2 3 4\nf 1 2 3 4 5\nf 1//4 2//5 3//6\nf 1/7 2/8 3/9\nf 4/1/2 5/2/3 6/3/4 7/4/5\n";
    ScratchDir dir;
    ModelPtr m = readModel(dir, text);
    ASSERT_TRUE(m);
    EXPECT_EQ((std::vector<GLuint>{9, 6, 9}),
              (std::vector<GLuint>{m->numvertices, m->numnormals, m->numtexcoords}));
    const std::vector<std::string> expected = {
        "1/0/0 2/0/0 3/0/0", "1/0/0 3/0/0 4/0/0",                       // the quad
        "1/0/0 2/0/0 3/0/0", "1/0/0 3/0/0 4/0/0", "1/0/0 4/0/0 5/0/0",  // a fan of five
        "1/0/4 2/0/5 3/0/6", "1/7/0 2/8/0 3/9/0",                       // v//n and v/t
        "4/1/2 5/2/3 6/3/4", "4/1/2 6/3/4 7/4/5"};                      // v/t/n fan
    ASSERT_EQ(m->numtriangles, expected.size());
    for (GLuint i = 0; i < expected.size(); i++)
        EXPECT_EQ(corners(m.get(), i), expected[i]) << i;
    EXPECT_FLOAT_EQ(m->vertices[3 * 2], 1.0f);  // arrays are 1-based
    EXPECT_FLOAT_EQ(m->texcoords[2 * 9 + 1], 0.25f);
}

TEST(ObjGroups, NewestFirstWithTheirBlankAndTheirFaces) {
    ScratchDir dir;
    ModelPtr m = readModel(dir, kNineVertices +
                                    "f 1 2 3\ng sphere\nf 1 2 3 4\ng box\nf 2 3 4\n"
                                    "g sphere\nf 5 6 7\n");
    ASSERT_TRUE(m);
    std::vector<std::pair<std::string, GLuint>> groups;
    for (const GLMgroup* g = m->groups; g != nullptr; g = g->next)
        groups.emplace_back(g->name, g->numtriangles);
    EXPECT_EQ(groups, (std::vector<std::pair<std::string, GLuint>>{
                          {" box", 1}, {" sphere", 3}, {"default", 1}}));
    ASSERT_EQ(m->numgroups, 3u);
    EXPECT_EQ(corners(m.get(), m->groups->next->triangles[2]), "5/0/0 6/0/0 7/0/0");
    EXPECT_EQ(glmFindGroup(m.get(), " box"), m->groups);
    EXPECT_EQ(glmFindGroup(m.get(), "box"), nullptr);
}

TEST(ObjMaterials, LibraryColoursShininessAndGroupMaterials) {
    ScratchDir dir;
    writeText(dir.file("colours.mtl"),
              "# two materials\nnewmtl red\nKd 1 0 0\nKa 0.1 0.2 0.3 0.5\nNs 500\n"
              "newmtl blue\nKd 0 0 1 0.25\nKs 1 1 1\nKa 0.5\n");
    ModelPtr m;
    EXPECT_EQ(stderrOf([&] {
                  m = readModel(dir,
                                "mtllib colours.mtl\n" + kNineVertices +
                                    "g a\nusemtl blue\nf 1 2 3\ng b\nusemtl nosuch\nf 2 3 4\n");
              }),
              "glmReadMTL(): (line 9) Ka needs three or four values; line ignored.\n"
              "glmFindMaterial():  can't find material \"nosuch\".\n");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->mtllibname, "colours.mtl");
    ASSERT_EQ(m->nummaterials, 3u);
    EXPECT_TRUE(m->materials[0].name == "default" && m->materials[1].name == "red");
    EXPECT_FLOAT_EQ(m->materials[0].shininess, 65.0f);
    const GLMmaterial& red = m->materials[1];
    // Kd with three values: alpha 1; Ns 500 / 1000 x 128.
    EXPECT_EQ((std::vector<float>{red.diffuse[0], red.diffuse[3], red.ambient[3], red.shininess}),
              (std::vector<float>{1.0f, 1.0f, 0.5f, 64.0f}));
    EXPECT_FLOAT_EQ(m->materials[2].diffuse[3], 0.25f);
    EXPECT_FLOAT_EQ(m->materials[2].ambient[0], 0.2f);  // the bad Ka line changed nothing
    EXPECT_EQ(glmFindGroup(m.get(), " a")->material, 2u);
    EXPECT_EQ(glmFindGroup(m.get(), " b")->material, 0u);  // unknown name falls back to 0
}

TEST(ObjMaterials, TextureLineWithLutAndAlpha) {
    ScratchDir dir;
    writeText(dir.file("t.mtl"),
              "newmtl sky\nTd lut_ppm table.lut modulate tex.ppm alpha.pgm\n"
              "newmtl plain\nTd decal plain.sgi\n");
    ModelPtr m;
    EXPECT_EQ(stderrOf([&] { m = readModel(dir, "mtllib t.mtl\nv 0 0 0\n"); }),
              "- LUT option [2] using file [table.lut]\n");
    ASSERT_TRUE(m);
    const GLMmaterial &sky = m->materials[1], &plain = m->materials[2];
    EXPECT_EQ((std::vector<std::string>{sky.lutFile, sky.texEnvName, sky.textureFile, sky.alphaFile,
                                        sky.textureDir}),
              (std::vector<std::string>{"table.lut", "modulate", "tex.ppm", "alpha.pgm",
                                        dir.path() + "/"}));
    EXPECT_TRUE(sky.lutOption == 2 && sky.textureToLoad == 1);
    EXPECT_TRUE(plain.lutOption == 0 && plain.texEnvName == "decal" && plain.alphaFile.empty());
}

TEST(ObjDeathTest, ProcessEndingErrorsOfModelsAndLibraries) {
    ScratchDir dir;
    const std::string lib = "mtllib m.mtl\n";
    struct Case {
        std::string obj, mtl, message;
    } cases[] = {
        {"v 0 0 0\nvz 1 2 3\n", "", "glmFirstPass\\(\\): Unknown token \"vz\".\n"},
        {lib, "newmtl a\nTd Modulate tex.ppm\n",
         "Err \\(GLM\\): unknown tex env \\[Modulate\\] in material \\[m.mtl\\]\n"},
        {lib, "newmtl a\nTd lut_gif t.lut modulate tex.ppm\n",
         "Err \\(GLM\\): unknown lut option \\[lut_gif\\] in material \\[m.mtl\\]\n"},
        {lib, "newmtl a\nTd lut_pgm\n",
         "Err \\(GLM\\): missing lut file in material \\[m.mtl\\]\n"},
        {lib, "newmtl a\nTd\n", "Err \\(GLM\\): missing tex env in material \\[m.mtl\\].\n\n"},
        {lib, "newmtl a\nTd blend\n",
         "Err \\(GLM\\): missing texture file in material \\[m.mtl\\].\n\n"},
        {"mtllib missing.mtl\n", "",
         "glmReadMTL\\(\\) failed: can't open material file \"" + dir.file("missing.mtl") +
             "\".\n"},
    };
    for (const Case& c : cases) {
        writeText(dir.file("m.mtl"), c.mtl);
        writeText(dir.file("m.obj"), c.obj);
        EXPECT_EXIT(glmReadOBJ(dir.file("m.obj").c_str()), testing::ExitedWithCode(1), c.message)
            << c.obj << c.mtl;
    }
    // Missing memory: the message, except from the quiet reader.
    auto failing = [](std::size_t) -> void* { return nullptr; };
    writeText(dir.file("m.obj"), "v 0 0 0\n");
    EXPECT_EXIT(
        {
            glmSetAllocator(failing, std::free);
            glmReadOBJ(dir.file("m.obj").c_str());
        },
        testing::ExitedWithCode(1), "^Err: not enough memory!\n\n$");
    EXPECT_EXIT(
        {
            glmSetAllocator(failing, std::free);
            glmReadOBJQuiet(dir.file("m.obj").c_str());
        },
        testing::ExitedWithCode(1), "^$");
}

TEST(ObjFiles, OpenFailureNameWarningAndQuietReading) {
    ScratchDir dir;
    std::string missing = dir.file("none.obj");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(glmReadOBJ(missing.c_str()), nullptr); }),
              "glmReadOBJ() failed: can't open objfile \"" + missing + "\".\n");
    EXPECT_EQ(stderrOf([&] { EXPECT_EQ(glmReadOBJQuiet(missing.c_str()), nullptr); }), "");
    ModelPtr m, q;
    EXPECT_EQ(stderrOf([&] { m = readModel(dir, "v 1 2 3\n", "model.txt"); }),
              "Warning: glmReadOBJ() : input file does not end with .obj\n\n");
    ASSERT_TRUE(m);
    EXPECT_TRUE(m->numvertices == 1u && m->pathname == dir.file("model.txt"));
    EXPECT_EQ(stderrOf([&] { q.reset(glmReadOBJQuiet(dir.file("model.txt").c_str())); }), "");
}

TEST(ObjFiles, ModelsUseTheAllocatorPairTheyWereMadeWith) {
    ScratchDir dir;
    writeText(dir.file("c.mtl"), "newmtl a\n");
    writeText(dir.file("c.obj"), "mtllib c.mtl\n" + kNineVertices + "g x\nf 1 2 3\n");
    glmSetAllocator(countingAllocate, countedRelease);
    GLMmodel* m = glmReadOBJ(dir.file("c.obj").c_str());
    glmSetAllocator(nullptr, nullptr);  // the model keeps releasing through its own pair
    ASSERT_NE(m, nullptr);
    glmFacetNormals(m);
    glmDelete(m);
    EXPECT_GT(allocations, 5);
    EXPECT_EQ(releases, allocations);
}

TEST(ObjBadInput, BadFacesAreRefusedWithAMessage) {
    ScratchDir dir;
    ModelPtr m;
    std::string err = stderrOf([&] {
        m = readModel(dir,
                      "v 0 0 0\nv 1 0 0\nv 1 1 0\n"
                      "f 1 2 3\n"
                      "f 1 2 4\n"           // vertex out of range
                      "f 0 1 2\n"           // index 0
                      "f -1 -2 -3\n"        // relative indices
                      "f 1//1 2//1 3//1\n"  // no normals in the file
                      "f 1/5 2/5 3/5\n"     // no texture coordinates
                      "f 1 2\n"             // too few vertices
                      "f 99999999999999999999999 1 2\n"
                      "f x y z\n"
                      "f 1 2 3 oops 4\n");  // a fan ends at a token of another form
    });
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numtriangles, 2u);
    EXPECT_EQ(corners(m.get(), 1), "1/0/0 2/0/0 3/0/0");
    expectIndicesInRange(m.get());
    EXPECT_NE(err.find("(line 5) face index out of range; face ignored."), std::string::npos);
    EXPECT_NE(err.find("(line 7) negative (relative) face indices are not supported"),
              std::string::npos);
    EXPECT_NE(err.find("(line 10) face with fewer than three vertices ignored."),
              std::string::npos);
}

TEST(ObjBadInput, ShortAndNonFiniteNumbersBecomeZero) {
    ScratchDir dir;
    ModelPtr m;
    std::string err = stderrOf(
        [&] { m = readModel(dir, "v nan 1 inf\nv 1 2\nv 1e99 -1e99 3\nvt 0.5\nf 1/1 2/1 3/1\n"); });
    ASSERT_TRUE(m);
    for (GLuint i = 3; i < m->vertices.size(); i++)
        EXPECT_TRUE(std::isfinite(m->vertices[i]));
    EXPECT_EQ((std::vector<float>{m->vertices[3 + 1], m->vertices[6 + 2], m->vertices[9 + 2]}),
              (std::vector<float>{1.0f, 0.0f, 3.0f}));
    EXPECT_EQ(m->numtriangles, 1u);
    EXPECT_NE(err.find("(line 1) number that is not finite set to 0."), std::string::npos);
    EXPECT_NE(err.find("(line 2) vertex with missing values"), std::string::npos);
    EXPECT_NE(err.find("(line 4) texture coordinate with missing values"), std::string::npos);
}

TEST(ObjBadInput, RandomFilesNeverReachOutOfRange) {
    // Random lines built from the pieces a damaged or hand-edited file holds.
    const char* pieces[] = {"v", "vn", "vt",  "f",    "g",    "usemtl", "s",    "#",     "1",
                            "2", "3",  "-1",  "0",    "7",    "1/2",    "1//3", "2/3/4", "3/1/1",
                            "/", "//", "nan", "1e40", "-0.5", "x",      "\t",   "\r",    " "};
    std::mt19937 random(1234);
    ScratchDir dir;
    for (int file = 0; file < 200; file++) {
        std::string text;
        for (int l = random() % 40; l > 0; l--) {
            for (int w = random() % 8; w > 0; w--)
                text += std::string(pieces[random() % (sizeof pieces / sizeof pieces[0])]) + " ";
            text += '\n';
        }
        ModelPtr m;
        stderrOf([&] { m = readModel(dir, text); });
        ASSERT_TRUE(m) << text;
        expectIndicesInRange(m.get());
    }
}
