#include "tools/datatree/core/mesh.h"

#include "tools/datatree/core/text_input.h"

int Mesh::addVertex(const Vec3& v) {
    vertices.push_back(v);
    return int(vertices.size());
}
int Mesh::addNormal(const Vec3& n) {
    normals.push_back(normalized(n));
    return int(normals.size());
}
int Mesh::addTexcoord(double s, double t) {
    texcoords.emplace_back(s, t);
    return int(texcoords.size());
}

void addGridSphere(Mesh* mesh, const std::string& groupName, const std::string& material,
                   int slices, int stacks, const std::function<Vec3(double, double)>& direction,
                   bool inward) {
    int firstVertex = int(mesh->vertices.size()) + 1;
    int firstTexcoord = int(mesh->texcoords.size()) + 1;
    int firstNormal = int(mesh->normals.size()) + 1;
    for (int i = 0; i <= stacks; ++i) {
        for (int j = 0; j <= slices; ++j) {
            double s = double(j) / slices, t = double(i) / stacks;
            Vec3 d = normalized(direction(s, t));
            mesh->addVertex(d);
            mesh->addTexcoord(s, t);
            mesh->addNormal(inward ? -d : d);
        }
    }
    MeshGroup group;
    group.name = groupName;
    group.material = material;
    auto corner = [&](int i, int j) {
        int k = i * (slices + 1) + j;
        return MeshCorner{firstVertex + k, firstTexcoord + k, firstNormal + k};
    };
    auto add = [&](MeshCorner a, MeshCorner b, MeshCorner c) {
        const Vec3& pa = mesh->vertices[a.vertex - 1];
        const Vec3& pb = mesh->vertices[b.vertex - 1];
        const Vec3& pc = mesh->vertices[c.vertex - 1];
        Vec3 n = cross(pb - pa, pc - pa);
        if (length(n) < 1e-12) return;  // collapsed at a pole
        Vec3 centre = pa + pb + pc;
        bool facesOut = dot(n, centre) > 0;
        if (facesOut == inward) std::swap(b, c);
        group.faces.push_back({a, b, c});
    };
    for (int i = 0; i < stacks; ++i) {
        for (int j = 0; j < slices; ++j) {
            add(corner(i, j), corner(i + 1, j), corner(i + 1, j + 1));
            add(corner(i, j), corner(i + 1, j + 1), corner(i, j + 1));
        }
    }
    mesh->groups.push_back(std::move(group));
}

void addFlatTriangle(Mesh* mesh, MeshGroup* group, const Vec3& a, const Vec3& b, const Vec3& c,
                     int texcoord) {
    int n = mesh->addNormal(cross(b - a, c - a));
    int va = mesh->addVertex(a), vb = mesh->addVertex(b), vc = mesh->addVertex(c);
    group->faces.push_back({{va, texcoord, n}, {vb, texcoord, n}, {vc, texcoord, n}});
}

std::string formatObj(const Mesh& mesh, const std::string& mtllib, const std::string& comment) {
    std::string out;
    for (std::string_view line : splitFields(comment, '\n'))
        out += "# " + std::string(line) + "\n";
    out += "\nmtllib " + mtllib + "\n\n";
    out += format("# %zu vertices\n", mesh.vertices.size());
    for (const Vec3& v : mesh.vertices)
        out += format("v %.6f %.6f %.6f\n", v.x, v.y, v.z);
    out += format("\n# %zu vertex normals\n", mesh.normals.size());
    for (const Vec3& n : mesh.normals)
        out += format("vn %.6f %.6f %.6f\n", n.x, n.y, n.z);
    out += format("\n# %zu texcoords\n", mesh.texcoords.size());
    for (const auto& t : mesh.texcoords)
        out += format("vt %.6f %.6f\n", t.first, t.second);
    for (const MeshGroup& g : mesh.groups) {
        out += format("\ng %s\nusemtl %s\n", g.name.c_str(), g.material.c_str());
        for (const auto& face : g.faces) {
            out += "f";
            for (const MeshCorner& c : face)
                out += format(" %d/%d/%d", c.vertex, c.texcoord, c.normal);
            out += "\n";
        }
    }
    return out;
}

std::string formatMtl(const std::vector<MeshMaterial>& materials, const std::string& comment) {
    std::string out;
    for (std::string_view line : splitFields(comment, '\n'))
        out += "# " + std::string(line) + "\n";
    for (const MeshMaterial& m : materials) {
        out += "\nnewmtl " + m.name + "\n";
        out += format("Ka %.4f %.4f %.4f %.4f\n", m.ambient[0], m.ambient[1], m.ambient[2],
                      m.ambient[3]);
        out += format("Kd %.4f %.4f %.4f %.4f\n", m.diffuse[0], m.diffuse[1], m.diffuse[2],
                      m.diffuse[3]);
        out += format("Ks %.4f %.4f %.4f %.4f\n", m.specular[0], m.specular[1], m.specular[2],
                      m.specular[3]);
        out += format("Ns %.1f\n", m.shininess);
        if (!m.textureLine.empty()) out += "Td " + m.textureLine + "\n";
    }
    return out;
}
