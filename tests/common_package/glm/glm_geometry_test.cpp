// Geometry operations: unit size, transforms and their normals, winding, normals, texture
// coordinates, subdivision, welding, material setters.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "common_package/math/src/vec3.h"
#include "tests/common_package/glm/model_test_util.h"

using namespace modeltest;

namespace {

ModelPtr modelFrom(const std::string& text) {
    ScratchDir dir;
    writeText(dir.file("m.obj"), text);
    return ModelPtr(glmReadOBJQuiet(dir.file("m.obj").c_str()));
}

// Two triangles folded at 90 degrees along the edge 1-2 (the x axis).
const char* kFold = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 -1\nf 1 2 3\nf 2 1 4\n";

Vec3 vec(const GLfloat* p) {
    return {p[0], p[1], p[2]};
}
Vec3 vertex(const GLMmodel* m, GLuint i) {
    return vec(&m->vertices[3 * i]);
}

}  // namespace

TEST(ModelGeometry, UnitizeDimensionsAndRange) {
    ModelPtr m = modelFrom("v 0 0 0\nv 4 2 1\nv -2 1 0\n");
    ASSERT_TRUE(m);
    GLfloat dims[3], x[2], y[2], z[2];
    glmDimensions(m.get(), dims);
    glmRange(m.get(), x, y, z);
    EXPECT_EQ((std::vector<float>{dims[0], dims[1], x[0], z[1]}),
              (std::vector<float>{6.0f, 2.0f, -2.0f, 1.0f}));  // abs(max) + abs(min)

    EXPECT_FLOAT_EQ(glmUnitize(m.get()), 2.0f / 6.0f);
    EXPECT_FLOAT_EQ(vertex(m.get(), 2).x, 1.0f);  // (4 - 1) / 3
    EXPECT_FLOAT_EQ(vertex(m.get(), 1).y, -1.0f / 3.0f);

    glmUnitizeSphere(m.get());
    double farthest = 0.0;
    for (GLuint i = 1; i <= m->numvertices; i++)
        farthest = std::max(farthest, length(vertex(m.get(), i)));
    EXPECT_NEAR(farthest, 1.0, 1e-6);
}

TEST(ModelGeometry, TransformKeepsNormalsPerpendicularToTheSurface) {
    ModelPtr m = modelFrom(kFold);
    ASSERT_TRUE(m);
    glmFacetNormals(m.get());
    glmVertexNormals(m.get(), 30.0f);
    // Non-uniform scale, shear and translation, column-major.
    const GLfloat matrix[16] = {3, 0, 0, 0, 1, 0.5f, 0, 0, 0, 2, 1, 0, 5, -1, 2, 1};
    glmTransform(m.get(), matrix);
    EXPECT_FLOAT_EQ(vertex(m.get(), 2).x, 8.0f);   // (1,0,0) -> (3+5, -1, 2)
    EXPECT_FLOAT_EQ(vertex(m.get(), 3).y, -0.5f);  // (0,1,0) -> (1+5, 0.5-1, 2)
    for (const GLMtriangle& t : m->triangles) {
        const Vec3 a = vertex(m.get(), t.vindices[0]), e1 = vertex(m.get(), t.vindices[1]) - a,
                   e2 = vertex(m.get(), t.vindices[2]) - a,
                   facet = vec(&m->facetnorms[3 * t.findex]);
        EXPECT_NEAR(length(facet), 1.0, 1e-5);
        EXPECT_NEAR(std::abs(dot(facet, e1)) + std::abs(dot(facet, e2)), 0.0, 1e-5);
        // Still on the outward side: the same orientation as the transformed cross product.
        EXPECT_GT(dot(facet, cross(e1, e2)), 0.0);
        for (int j = 0; j < 3; j++)  // not averaged at 30 degrees: copies of the facet normal
            EXPECT_NEAR(dot(vec(&m->normals[3 * t.nindices[j]]), e1), 0.0, 1e-5);
    }

    // A projective matrix divides by w; a singular one leaves the normals alone.
    const GLfloat halve[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2};
    glmTransform(m.get(), halve);
    EXPECT_FLOAT_EQ(vertex(m.get(), 2).x, 4.0f);
    const GLfloat singular[16] = {0};
    EXPECT_EQ(stderrOf([&] { glmTransform(m.get(), singular); }),
              "Err (glmTransform): singular matrix; normals are left unchanged.\n");
}

TEST(ModelGeometry, FacetNormalsAndReverseWinding) {
    ModelPtr m = modelFrom(kFold);
    ASSERT_TRUE(m);
    glmFacetNormals(m.get());
    ASSERT_EQ(m->numfacetnorms, 2u);
    EXPECT_EQ(m->triangles[1].findex, 2u);
    EXPECT_FLOAT_EQ(m->facetnorms[3 * 1 + 2], 1.0f);   // (1,0,0) x (0,1,0)
    EXPECT_FLOAT_EQ(m->facetnorms[3 * 2 + 1], -1.0f);  // (-1,0,0) x (-1,0,-1)
    glmReverseWinding(m.get());
    EXPECT_TRUE(m->triangles[0].vindices[0] == 3u && m->triangles[0].vindices[2] == 1u);
    EXPECT_FLOAT_EQ(m->facetnorms[3 * 1 + 2], -1.0f);
}

TEST(ModelGeometry, VertexNormalsAverageWithinTheAngle) {
    ModelPtr m = modelFrom(std::string(kFold) + "v 9 9 9\n");
    ASSERT_TRUE(m);
    EXPECT_EQ(stderrOf([&] { glmVertexNormals(m.get(), 90.0f); }),
              "Err (glmVertexNormals): missing face normals for vertex normal computation.\n");
    glmFacetNormals(m.get());
    EXPECT_EQ(stderrOf([&] { glmVertexNormals(m.get(), 100.0f); }),
              "glmVertexNormals(): vertex w/o a triangle\n");
    EXPECT_FLOAT_EQ(m->smoothingAngle, 100.0f);
    // The shared edge's vertices get one averaged normal, the others their facet normal.
    EXPECT_EQ(m->numnormals, 4u);
    const GLfloat* shared = &m->normals[3 * m->triangles[0].nindices[0]];
    EXPECT_NEAR(shared[1], -std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(shared[2], std::sqrt(0.5), 1e-6);
    EXPECT_EQ(m->triangles[0].nindices[0], m->triangles[1].nindices[1]);

    stderrOf([&] { glmVertexNormals(m.get(), 45.0f); });
    EXPECT_EQ(m->numnormals, 6u);  // nothing averaged across the fold
    EXPECT_FLOAT_EQ(m->normals[3 * m->triangles[1].nindices[1] + 1], -1.0f);
}

TEST(ModelGeometry, LinearTextureScalesByTheLargestDimension) {
    ModelPtr m = modelFrom("v -2 0 -2\nv 2 0 2\nv 0 5 0\nf 1 2 3\n");
    ASSERT_TRUE(m);
    glmLinearTexture(m.get());
    ASSERT_EQ(m->numtexcoords, 3u);
    EXPECT_FLOAT_EQ(m->texcoords[2 * 1 + 0], 0.1f);  // (-2 x 2/5 + 1) / 2: y's 5 is the largest
    EXPECT_EQ(m->triangles[0].tindices[2], 3u);
}

TEST(ModelGeometry, SubdivideSplitsSharedEdgesOnce) {
    ModelPtr m = modelFrom(
        "vn 0 0 1\nvn 0 0 1\nvn 0 0 1\nvn 0 0 1\nv 0 0 0\nv 2 0 0\nv 0 2 0\n"
        "v 2 2 0\nf 1//1 2//2 3//3\nf 2//2 4//4 3//3\n");
    ASSERT_TRUE(m);
    glmFacetNormals(m.get());
    glmSubdivide4(m.get(), 0.0f);
    EXPECT_EQ((std::vector<GLuint>{8, 9, 9, 8, 8}),  // 4 + 5 distinct edges
              (std::vector<GLuint>{m->numtriangles, m->numvertices, m->numnormals, m->numfacetnorms,
                                   m->groups->numtriangles}));
    // Corner at v0, corner at v1, corner at v2, middle.
    const GLMtriangle& corner0 = m->triangles[0];
    EXPECT_EQ(corner0.vindices[0], 1u);
    EXPECT_FLOAT_EQ(vertex(m.get(), corner0.vindices[1]).x, 1.0f);  // midpoint of 1-2
    EXPECT_TRUE(m->triangles[1].vindices[1] == 2u && m->triangles[2].vindices[2] == 3u &&
                m->triangles[3].vindices[0] == corner0.vindices[1]);
    for (GLuint i = 0; i < m->numtriangles; i++)  // winding kept: every facet faces +z
        EXPECT_FLOAT_EQ(m->facetnorms[3 * m->triangles[i].findex + 2], 1.0f);

    // With a bulge, new vertices move along their normals by bulge x edge length.
    ModelPtr b = modelFrom("vn 0 0 1\nv 0 0 0\nv 2 0 0\nv 0 2 0\nf 1//1 2//1 3//1\n");
    glmSubdivide4(b.get(), 0.5f);
    EXPECT_FLOAT_EQ(vertex(b.get(), 4).z, 1.0f);  // edge 1-2 of length 2

    ModelPtr d = modelFrom("v 0 0 0\nv 1 0 0\nf 1 1 2\n");
    EXPECT_EQ(stderrOf([&] { glmSubdivide4(d.get(), 0.0f); }),
              "Critical Error (glmSubdivide4): degenerated edge!\n");
    EXPECT_EQ(d->numtriangles, 1u);
    EXPECT_EQ(stderrOf([] { glmSubdivide4(nullptr, 0.0f); }),
              "Warning (glmSubdivide4): input model is NULL.\n");
}

TEST(ModelGeometry, WeldAndModelsWithoutVertices) {
    ModelPtr m = modelFrom(
        "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1.0001 0 0\nv 0 1 0\nv 5 5 5\n"
        "f 1 2 3\nf 4 5 6\n");
    ASSERT_TRUE(m);
    m->vertices[3 * 6] = std::nanf("");  // never merged, never hashed
    EXPECT_EQ(glmWeld(m.get(), 0.001f), 4u);
    const GLuint* welded = m->triangles[1].vindices;
    EXPECT_EQ((std::vector<GLuint>{m->numvertices, welded[0], welded[1], welded[2]}),
              (std::vector<GLuint>{4, 2, 3, 4}));

    ModelPtr empty = modelFrom("# nothing\n");
    ASSERT_TRUE(empty);
    EXPECT_EQ(stderrOf([&] {
                  glmUnitize(empty.get());
                  glmFacetNormals(empty.get());
              }),
              "Err (glmUnitize): the model has no vertices.\n"
              "Err (glmFacetNormals): the model has no vertices.\n");
}

TEST(ModelMaterials, SettersCheckTheMaterialID) {
    ScratchDir dir;
    writeText(dir.file("m.mtl"), "newmtl a\nnewmtl b\n");
    ModelPtr m = readModel(dir, "mtllib m.mtl\nv 0 0 0\n");
    ASSERT_TRUE(m);
    const GLfloat grey[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    EXPECT_EQ(glmSetMaterialSpecular(m.get(), -1, grey), 1);
    for (GLuint i = 0; i < m->nummaterials; i++)
        EXPECT_FLOAT_EQ(m->materials[i].specular[0], 0.5f);
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(glmSetMaterialAmbient(m.get(), 3, grey), -1);
                  EXPECT_EQ(glmSetMaterialAmbient(m.get(), -2, grey), -1);
              }),
              "Err: materialID is out of range.\nErr: materialID is out of range.\n");
    EXPECT_FLOAT_EQ(m->materials[2].ambient[0], 0.2f);
}
