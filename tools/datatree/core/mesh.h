#pragma once
// Polygon models of the data tree and their OBJ and MTL text.

#include <functional>
#include <string>
#include <vector>

#include "common_package/math/src/vec3.h"

struct MeshCorner {
    int vertex = 0, texcoord = 0, normal = 0;  // 1-based indices as in OBJ
};

struct MeshGroup {
    std::string name;
    std::string material;
    std::vector<std::vector<MeshCorner>> faces;  // triangles
};

struct Mesh {
    std::vector<Vec3> vertices;
    std::vector<Vec3> normals;
    std::vector<std::pair<double, double>> texcoords;
    std::vector<MeshGroup> groups;

    int addVertex(const Vec3& v);
    int addNormal(const Vec3& n);
    int addTexcoord(double s, double t);
};

// A grid sphere of unit radius: vertex (i, j) for stack i = 0..stacks (t = i / stacks, top
// of the texture first) and slice j = 0..slices (s = j / slices) lies at direction(s, t).
// Texture coordinates are (s, t); normals point outwards, or inwards when inward is set,
// and the triangles face the same way. Triangles that collapse at the poles are left out.
void addGridSphere(Mesh* mesh, const std::string& group, const std::string& material, int slices,
                   int stacks, const std::function<Vec3(double, double)>& direction, bool inward);

// Adds a triangle with a flat normal and the texture coordinate index given.
void addFlatTriangle(Mesh* mesh, MeshGroup* group, const Vec3& a, const Vec3& b, const Vec3& c,
                     int texcoord);

struct MeshMaterial {
    std::string name;
    double ambient[4] = {0.2, 0.2, 0.2, 1.0};
    double diffuse[4] = {0.8, 0.8, 0.8, 1.0};
    double specular[4] = {0.0, 0.0, 0.0, 1.0};
    double shininess = 0.0;   // the MTL "Ns" value, 0..1000
    std::string textureLine;  // after "Td", e.g. "modulate earth.ppm"; empty for none
};

// OBJ text: a comment block, "mtllib", vertices, normals, texture coordinates, then per group
// "g", "usemtl" and "f v/t/n" faces.
std::string formatObj(const Mesh& mesh, const std::string& mtllib, const std::string& comment);
std::string formatMtl(const std::vector<MeshMaterial>& materials, const std::string& comment);
