// Reading OBJ files and MTL libraries: face forms, fans, groups, materials, texture lines,
// and the files a user could get wrong.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "common_package/glm/src/glm.h"
#include "tests/common_package/glm/model_test_util.h"

using modeltest::ScratchDir;
using modeltest::writeText;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

namespace {

const char* kNineVertices =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv 2 0 0\nv 2 1 0\nv 3 0 0\nv 3 1 0\nv 4 0 0\n";

struct ModelDeleter {
    void operator()(GLMmodel* m) const { glmDelete(m); }
};
using ModelPtr = std::unique_ptr<GLMmodel, ModelDeleter>;

ModelPtr readModel(const ScratchDir& dir, const std::string& text,
                   const std::string& name = "model.obj") {
    writeText(dir.file(name), text);
    return ModelPtr(glmReadOBJ(dir.file(name).c_str()));
}

void expectTriangle(const GLMmodel* m, int i, GLuint a, GLuint b, GLuint c) {
    ASSERT_LT(static_cast<GLuint>(i), m->numtriangles);
    EXPECT_EQ(m->triangles[i].vindices[0], a);
    EXPECT_EQ(m->triangles[i].vindices[1], b);
    EXPECT_EQ(m->triangles[i].vindices[2], c);
}

// Every index a triangle holds points into its array.
void expectIndicesInRange(const GLMmodel* m) {
    for (GLuint i = 0; i < m->numtriangles; i++) {
        for (int j = 0; j < 3; j++) {
            const GLMtriangle& t = m->triangles[i];
            EXPECT_GE(t.vindices[j], 1u);
            EXPECT_LE(t.vindices[j], m->numvertices);
            EXPECT_LE(t.nindices[j], m->numnormals);
            EXPECT_LE(t.tindices[j], m->numtexcoords);
        }
    }
}

}  // namespace

TEST(ObjFaces, QuadAndPolygonBecomeFans) {
    ScratchDir dir;
    ModelPtr m = readModel(dir, std::string(kNineVertices) + "f 1 2 3 4\nf 1 2 3 4 5\n");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numvertices, 9u);
    ASSERT_EQ(m->numtriangles, 5u);
    expectTriangle(m.get(), 0, 1, 2, 3);
    expectTriangle(m.get(), 1, 1, 3, 4);
    expectTriangle(m.get(), 2, 1, 2, 3);
    expectTriangle(m.get(), 3, 1, 3, 4);
    expectTriangle(m.get(), 4, 1, 4, 5);
    // Index 0 of every array is the unused slot.
    EXPECT_EQ(m->vertices.size(), 3u * 10);
    EXPECT_FLOAT_EQ(m->vertices[3 * 2 + 0], 1.0f);
}

TEST(ObjFaces, EveryFaceFormStoresItsIndices) {
    std::string text = kNineVertices;
    for (int i = 0; i < 6; i++)
        text += "vn 0 0 1\n";
    for (int i = 0; i < 9; i++)
        text += "vt 0.5 0.25\n";
    text += "f 1//4 2//5 3//6\n";
    text += "f 1/7 2/8 3/9\n";
    text += "f 4/1/2 5/2/3 6/3/4 7/4/5\n";
    ScratchDir dir;
    ModelPtr m = readModel(dir, text);
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numnormals, 6u);
    EXPECT_EQ(m->numtexcoords, 9u);
    ASSERT_EQ(m->numtriangles, 4u);
    const GLMtriangle& vn = m->triangles[0];
    EXPECT_EQ(vn.nindices[0], 4u);
    EXPECT_EQ(vn.nindices[2], 6u);
    EXPECT_EQ(vn.tindices[0], 0u);
    const GLMtriangle& vt = m->triangles[1];
    EXPECT_EQ(vt.tindices[0], 7u);
    EXPECT_EQ(vt.tindices[2], 9u);
    EXPECT_EQ(vt.nindices[1], 0u);
    const GLMtriangle& fan = m->triangles[3];  // 4, 6, 7
    EXPECT_EQ(fan.vindices[0], 4u);
    EXPECT_EQ(fan.tindices[1], 3u);
    EXPECT_EQ(fan.nindices[2], 5u);
    EXPECT_FLOAT_EQ(m->texcoords[2 * 9 + 1], 0.25f);
}

TEST(ObjGroups, NewestFirstWithTheirBlankAndTheirFaces) {
    std::string text = std::string(kNineVertices) +
                       "f 1 2 3\n"
                       "g sphere\nf 1 2 3 4\n"
                       "g box\nf 2 3 4\n"
                       "g sphere\nf 5 6 7\n";
    ScratchDir dir;
    ModelPtr m = readModel(dir, text);
    ASSERT_TRUE(m);
    ASSERT_EQ(m->numgroups, 3u);
    GLMgroup* g = m->groups;
    EXPECT_EQ(g->name, " box");
    EXPECT_EQ(g->numtriangles, 1u);
    g = g->next;
    EXPECT_EQ(g->name, " sphere");
    ASSERT_EQ(g->numtriangles, 3u);
    expectTriangle(m.get(), g->triangles[2], 5, 6, 7);
    g = g->next;
    EXPECT_EQ(g->name, "default");
    EXPECT_EQ(g->numtriangles, 1u);
    EXPECT_EQ(glmFindGroup(m.get(), " box"), m->groups);
    EXPECT_EQ(glmFindGroup(m.get(), "box"), nullptr);
}

TEST(ObjMaterials, LibraryColoursShininessAndGroupMaterials) {
    ScratchDir dir;
    writeText(dir.file("colours.mtl"),
              "# two materials\n"
              "newmtl red\nKd 1 0 0\nKa 0.1 0.2 0.3 0.5\nNs 500\n"
              "newmtl blue\nKd 0 0 1 0.25\nKs 1 1 1\nKa 0.5\n");
    CaptureStderr();
    ModelPtr m = readModel(dir, std::string("mtllib colours.mtl\n") + kNineVertices +
                                    "g a\nusemtl blue\nf 1 2 3\ng b\nusemtl nosuch\nf 2 3 4\n");
    EXPECT_EQ(GetCapturedStderr(),
              "glmReadMTL(): (line 9) Ka needs three or four values; line ignored.\n"
              "glmFindMaterial():  can't find material \"nosuch\".\n");
    ASSERT_TRUE(m);
    EXPECT_FLOAT_EQ(m->materials[2].ambient[0], 0.2f);
    EXPECT_EQ(m->mtllibname, "colours.mtl");
    ASSERT_EQ(m->nummaterials, 3u);
    EXPECT_EQ(m->materials[0].name, "default");
    EXPECT_FLOAT_EQ(m->materials[0].diffuse[0], 0.8f);
    EXPECT_FLOAT_EQ(m->materials[0].shininess, 65.0f);
    const GLMmaterial& red = m->materials[1];
    EXPECT_EQ(red.name, "red");
    EXPECT_FLOAT_EQ(red.diffuse[0], 1.0f);
    EXPECT_FLOAT_EQ(red.diffuse[3], 1.0f);
    EXPECT_FLOAT_EQ(red.ambient[3], 0.5f);
    EXPECT_FLOAT_EQ(red.shininess, 64.0f);
    EXPECT_FLOAT_EQ(m->materials[2].diffuse[3], 0.25f);
    EXPECT_FLOAT_EQ(m->materials[2].specular[3], 1.0f);
    EXPECT_EQ(glmFindMaterial(m.get(), "blue"), 2u);
    EXPECT_EQ(glmFindGroup(m.get(), " a")->material, 2u);
    EXPECT_EQ(glmFindGroup(m.get(), " b")->material, 0u);  // unknown name falls back to 0

    CaptureStderr();
    EXPECT_EQ(glmFindMaterial(m.get(), "green"), 0u);
    EXPECT_EQ(GetCapturedStderr(), "glmFindMaterial():  can't find material \"green\".\n");
}

TEST(ObjMaterials, TextureLineWithLutAndAlpha) {
    ScratchDir dir;
    writeText(dir.file("t.mtl"),
              "newmtl sky\nTd lut_ppm table.lut modulate tex.ppm alpha.pgm\n"
              "newmtl plain\nTd decal plain.sgi\n");
    CaptureStderr();
    ModelPtr m = readModel(dir, "mtllib t.mtl\nv 0 0 0\n");
    EXPECT_EQ(GetCapturedStderr(), "- LUT option [2] using file [table.lut]\n");
    ASSERT_TRUE(m);
    const GLMmaterial& sky = m->materials[1];
    EXPECT_EQ(sky.lutOption, 2);
    EXPECT_EQ(sky.lutFile, "table.lut");
    EXPECT_EQ(sky.texEnvName, "modulate");
    EXPECT_EQ(sky.textureFile, "tex.ppm");
    EXPECT_EQ(sky.alphaFile, "alpha.pgm");
    EXPECT_EQ(sky.textureDir, dir.path() + "/");
    EXPECT_EQ(sky.textureToLoad, 1);
    EXPECT_EQ(sky.textureName, 0u);
    const GLMmaterial& plain = m->materials[2];
    EXPECT_EQ(plain.lutOption, 0);
    EXPECT_EQ(plain.texEnvName, "decal");
    EXPECT_EQ(plain.alphaFile, "");
}

using ObjDeathTest = testing::Test;

TEST_F(ObjDeathTest, ProcessEndingErrorsOfMaterialLibraries) {
    ScratchDir dir;
    struct Case {
        const char* mtl;
        const char* message;
    } cases[] = {
        {"newmtl a\nTd Modulate tex.ppm\n",
         "Err \\(GLM\\): unknown tex env \\[Modulate\\] in material \\[m.mtl\\]\n"},
        {"newmtl a\nTd lut_gif t.lut modulate tex.ppm\n",
         "Err \\(GLM\\): unknown lut option \\[lut_gif\\] in material \\[m.mtl\\]\n"},
        {"newmtl a\nTd lut_pgm\n", "Err \\(GLM\\): missing lut file in material \\[m.mtl\\]\n"},
        {"newmtl a\nTd\n", "Err \\(GLM\\): missing tex env in material \\[m.mtl\\].\n\n"},
        {"newmtl a\nTd blend\n",
         "Err \\(GLM\\): missing texture file in material \\[m.mtl\\].\n\n"},
    };
    for (const Case& c : cases) {
        writeText(dir.file("m.mtl"), c.mtl);
        writeText(dir.file("m.obj"), "mtllib m.mtl\nv 0 0 0\n");
        EXPECT_EXIT(glmReadOBJ(dir.file("m.obj").c_str()), testing::ExitedWithCode(1), c.message)
            << c.mtl;
    }
    writeText(dir.file("lost.obj"), "mtllib missing.mtl\n");
    std::string path = dir.file("missing.mtl");
    EXPECT_EXIT(glmReadOBJ(dir.file("lost.obj").c_str()), testing::ExitedWithCode(1),
                "glmReadMTL\\(\\) failed: can't open material file \"" + path + "\".\n");
}

TEST_F(ObjDeathTest, UnknownVertexTokenEndsTheProcess) {
    ScratchDir dir;
    writeText(dir.file("vz.obj"), "v 0 0 0\nvz 1 2 3\n");
    EXPECT_EXIT(glmReadOBJ(dir.file("vz.obj").c_str()), testing::ExitedWithCode(1),
                "glmFirstPass\\(\\): Unknown token \"vz\".\n");
}

namespace {
void* failingAllocate(std::size_t) {
    return nullptr;
}
void countingRelease(void* p) {
    std::free(p);
}
}  // namespace

TEST_F(ObjDeathTest, MissingMemoryEndsTheProcessWithItsMessage) {
    ScratchDir dir;
    writeText(dir.file("a.obj"), "v 0 0 0\n");
    std::string name = dir.file("a.obj");
    EXPECT_EXIT(
        {
            glmSetAllocator(failingAllocate, countingRelease);
            glmReadOBJ(name.c_str());
        },
        testing::ExitedWithCode(1), "^Err: not enough memory!\n\n$");
    EXPECT_EXIT(
        {
            glmSetAllocator(failingAllocate, countingRelease);
            glmReadOBJQuiet(name.c_str());
        },
        testing::ExitedWithCode(1), "^$");
}

TEST(ObjFiles, OpenFailureAndNameWarningsAndQuietReading) {
    ScratchDir dir;
    std::string missing = dir.file("none.obj");
    CaptureStderr();
    EXPECT_EQ(glmReadOBJ(missing.c_str()), nullptr);
    EXPECT_EQ(GetCapturedStderr(),
              "glmReadOBJ() failed: can't open objfile \"" + missing + "\".\n");
    CaptureStderr();
    EXPECT_EQ(glmReadOBJQuiet(missing.c_str()), nullptr);
    EXPECT_EQ(GetCapturedStderr(), "");

    writeText(dir.file("model.txt"), "v 1 2 3\n");
    CaptureStderr();
    ModelPtr m(glmReadOBJ(dir.file("model.txt").c_str()));
    EXPECT_EQ(GetCapturedStderr(), "Warning: glmReadOBJ() : input file does not end with .obj\n\n");
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numvertices, 1u);
    EXPECT_EQ(m->pathname, dir.file("model.txt"));
    CaptureStderr();
    ModelPtr q(glmReadOBJQuiet(dir.file("model.txt").c_str()));
    EXPECT_EQ(GetCapturedStderr(), "");
}

TEST(ObjBadInput, BadFacesAreRefusedWithAMessage) {
    ScratchDir dir;
    CaptureStderr();
    ModelPtr m = readModel(dir,
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
    std::string err = GetCapturedStderr();
    ASSERT_TRUE(m);
    EXPECT_EQ(m->numtriangles, 2u);
    expectTriangle(m.get(), 1, 1, 2, 3);
    expectIndicesInRange(m.get());
    EXPECT_EQ(m->groups->numtriangles, 2u);
    EXPECT_NE(err.find("(line 5) face index out of range; face ignored."), std::string::npos);
    EXPECT_NE(err.find("(line 7) negative (relative) face indices are not supported"),
              std::string::npos);
    EXPECT_NE(err.find("(line 10) face with fewer than three vertices ignored."),
              std::string::npos);
}

TEST(ObjBadInput, ShortAndNonFiniteNumbersBecomeZero) {
    ScratchDir dir;
    CaptureStderr();
    ModelPtr m = readModel(dir, "v nan 1 inf\nv 1 2\nv 1e99 -1e99 3\nvt 0.5\nf 1/1 2/1 3/1\n");
    std::string err = GetCapturedStderr();
    ASSERT_TRUE(m);
    for (GLuint i = 3; i < m->vertices.size(); i++)
        EXPECT_TRUE(std::isfinite(m->vertices[i]));
    EXPECT_FLOAT_EQ(m->vertices[3 + 1], 1.0f);
    EXPECT_FLOAT_EQ(m->vertices[6 + 2], 0.0f);
    EXPECT_FLOAT_EQ(m->vertices[9 + 2], 3.0f);
    EXPECT_NE(err.find("(line 1) number that is not finite set to 0."), std::string::npos);
    EXPECT_NE(err.find("(line 2) vertex with missing values"), std::string::npos);
    EXPECT_NE(err.find("(line 4) texture coordinate with missing values"), std::string::npos);
    EXPECT_EQ(m->numtriangles, 1u);
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
        int lines = random() % 40;
        for (int l = 0; l < lines; l++) {
            int words = random() % 8;
            for (int w = 0; w < words; w++) {
                text += pieces[random() % (sizeof(pieces) / sizeof(pieces[0]))];
                text += ' ';
            }
            text += '\n';
        }
        CaptureStderr();
        ModelPtr m = readModel(dir, text);
        GetCapturedStderr();
        ASSERT_TRUE(m) << text;
        expectIndicesInRange(m.get());
        GLuint counted = 0;
        for (GLMgroup* g = m->groups; g != nullptr; g = g->next) {
            counted += g->numtriangles;
            for (GLuint k = 0; k < g->numtriangles; k++)
                EXPECT_LT(g->triangles[k], m->numtriangles);
        }
        EXPECT_EQ(counted, m->numtriangles);
    }
}

TEST(ObjFiles, DirectoryNames) {
    EXPECT_EQ(glmDirName("data/objdata/earth.obj"), "data/objdata/");
    EXPECT_EQ(glmDirName("C:\\models\\earth.obj"), "C:\\models\\");
    EXPECT_EQ(glmDirName("earth.obj"), "");
    EXPECT_EQ(glmDirName("/"), "/");
}

using modeltest::allocations;
using modeltest::countedRelease;
using modeltest::countingAllocate;
using modeltest::releases;

TEST(ObjFiles, ModelsUseTheAllocatorPairTheyWereMadeWith) {
    ScratchDir dir;
    writeText(dir.file("c.mtl"), "newmtl a\n");
    writeText(dir.file("c.obj"), std::string("mtllib c.mtl\n") + kNineVertices + "g x\nf 1 2 3\n");
    glmSetAllocator(countingAllocate, countedRelease);
    GLMmodel* m = glmReadOBJ(dir.file("c.obj").c_str());
    glmSetAllocator(nullptr, nullptr);  // the model keeps releasing through its own pair
    ASSERT_NE(m, nullptr);
    glmFacetNormals(m);
    glmDelete(m);
    EXPECT_GT(allocations, 5);
    EXPECT_EQ(releases, allocations);
}
