// Subdividing every triangle into four, and welding vertices that lie close together.

#include <cmath>
#include <cstdint>
#include <limits>
#include <new>
#include <unordered_map>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_zsort.h"

namespace {

// An edge: its vertex, texture and normal index pairs, ordered together so that the edge of
// two neighbouring triangles (walked in opposite directions) is one key.
struct EdgeKey {
    GLuint v[2], t[2], n[2];
    bool operator==(const EdgeKey& o) const {
        return v[0] == o.v[0] && v[1] == o.v[1] && t[0] == o.t[0] && t[1] == o.t[1] &&
               n[0] == o.n[0] && n[1] == o.n[1];
    }
};

struct EdgeHash {
    std::size_t operator()(const EdgeKey& k) const {
        std::uint64_t h = 1469598103934665603ull;
        const GLuint parts[6] = {k.v[0], k.v[1], k.t[0], k.t[1], k.n[0], k.n[1]};
        for (GLuint p : parts)
            h = (h ^ p) * 1099511628211ull;
        return static_cast<std::size_t>(h);
    }
};

EdgeKey makeEdge(const GLMtriangle& tri, int a, int b) {
    EdgeKey k{{tri.vindices[a], tri.vindices[b]},
              {tri.tindices[a], tri.tindices[b]},
              {tri.nindices[a], tri.nindices[b]}};
    bool swap = k.v[0] > k.v[1] ||
                (k.v[0] == k.v[1] && (k.t[0] > k.t[1] || (k.t[0] == k.t[1] && k.n[0] > k.n[1])));
    if (swap) {
        std::swap(k.v[0], k.v[1]);
        std::swap(k.t[0], k.t[1]);
        std::swap(k.n[0], k.n[1]);
    }
    return k;
}

// The new vertex, texture and normal indices of an edge's midpoint (0 where there is none).
struct Midpoint {
    GLuint v = 0, t = 0, n = 0;
};

void failMemory() {
    std::fprintf(stderr, "Err (glmSubdivide4): failed to allocate memory.\n");
}

}  // namespace

void glmSubdivide4(GLMmodel* model, GLfloat bulge) {
    if (model == nullptr) {
        std::fprintf(stderr, "Warning (glmSubdivide4): input model is NULL.\n");
        return;
    }
    if (model->numtriangles == 0 || model->triangles.empty()) return;
    if (!glmdetail::hasVertices(model, "glmSubdivide4")) return;
    const std::size_t numtriangles =
        std::min<std::size_t>(model->numtriangles, model->triangles.size());
    for (std::size_t i = 0; i < numtriangles; i++)
        for (int j = 0; j < 3; j++) {
            GLuint v = model->triangles[i].vindices[j];
            if (v < 1 || v > model->numvertices) {
                std::fprintf(stderr,
                             "Err (glmSubdivide4): triangle %zu refers to a missing vertex.\n", i);
                return;
            }
        }
    if (numtriangles > std::numeric_limits<GLuint>::max() / 4) {
        failMemory();
        return;
    }
    const bool withNormals = model->numnormals > 0;
    const bool withTexture = model->numtexcoords > 0;
    auto validNormal = [&](GLuint n) { return withNormals && n >= 1 && n <= model->numnormals; };
    auto validTexture = [&](GLuint t) { return withTexture && t >= 1 && t <= model->numtexcoords; };

    try {
        std::unordered_map<EdgeKey, Midpoint, EdgeHash> edges;
        std::vector<Midpoint> triangleEdges(3 * numtriangles);
        GlmVector<GLfloat> vertices(model->vertices);
        GlmVector<GLfloat> normals(model->normals);
        GlmVector<GLfloat> texcoords(model->texcoords);
        GLuint numvertices = model->numvertices, numnormals = model->numnormals,
               numtexcoords = model->numtexcoords;

        for (std::size_t i = 0; i < numtriangles; i++) {
            const GLMtriangle& tri = model->triangles[i];
            for (int e = 0; e < 3; e++) {
                EdgeKey key = makeEdge(tri, e, (e + 1) % 3);
                if (key.v[0] == key.v[1] && key.t[0] == key.t[1]) {
                    std::fprintf(stderr, "Critical Error (glmSubdivide4): degenerated edge!\n");
                    return;
                }
                auto found = edges.find(key);
                if (found == edges.end()) {
                    Midpoint m;
                    const GLfloat* a = &model->vertices[3 * key.v[0]];
                    const GLfloat* b = &model->vertices[3 * key.v[1]];
                    GLfloat p[3];
                    for (int k = 0; k < 3; k++)
                        p[k] = (a[k] + b[k]) / 2.0f;
                    if (validNormal(key.n[0]) && validNormal(key.n[1])) {
                        const GLfloat* na = &model->normals[3 * key.n[0]];
                        const GLfloat* nb = &model->normals[3 * key.n[1]];
                        double s[3] = {double(na[0]) + nb[0], double(na[1]) + nb[1],
                                       double(na[2]) + nb[2]};
                        double length = std::sqrt(s[0] * s[0] + s[1] * s[1] + s[2] * s[2]);
                        if (length > 0.0)
                            for (double& c : s)
                                c /= length;
                        if (std::fabs(bulge) > 1e-7) {
                            double dx = double(b[0]) - a[0], dy = double(b[1]) - a[1],
                                   dz = double(b[2]) - a[2];
                            double edgeLength = std::sqrt(dx * dx + dy * dy + dz * dz);
                            for (int k = 0; k < 3; k++)
                                p[k] += static_cast<GLfloat>(bulge * edgeLength * s[k]);
                        }
                        m.n = ++numnormals;
                        for (double c : s)
                            normals.push_back(static_cast<GLfloat>(c));
                    }
                    if (validTexture(key.t[0]) && validTexture(key.t[1])) {
                        const GLfloat* ta = &model->texcoords[2 * key.t[0]];
                        const GLfloat* tb = &model->texcoords[2 * key.t[1]];
                        m.t = ++numtexcoords;
                        texcoords.push_back((ta[0] + tb[0]) / 2.0f);
                        texcoords.push_back((ta[1] + tb[1]) / 2.0f);
                    }
                    if (numvertices == std::numeric_limits<GLuint>::max()) throw std::bad_alloc();
                    m.v = ++numvertices;
                    vertices.insert(vertices.end(), p, p + 3);
                    found = edges.emplace(key, m).first;
                }
                triangleEdges[3 * i + e] = found->second;
            }
        }

        // Corner triangles at v0, v1, v2, then the middle one, in place of each triangle.
        GlmVector<GLMtriangle> triangles(model->allocator);
        triangles.resize(4 * numtriangles);
        for (std::size_t i = 0; i < numtriangles; i++) {
            const GLMtriangle& tri = model->triangles[i];
            Midpoint corner[3];
            for (int j = 0; j < 3; j++)
                corner[j] = {tri.vindices[j], tri.tindices[j], tri.nindices[j]};
            const Midpoint& m01 = triangleEdges[3 * i + 0];
            const Midpoint& m12 = triangleEdges[3 * i + 1];
            const Midpoint& m20 = triangleEdges[3 * i + 2];
            const Midpoint* parts[4][3] = {{&corner[0], &m01, &m20},
                                           {&m01, &corner[1], &m12},
                                           {&m20, &m12, &corner[2]},
                                           {&m01, &m12, &m20}};
            for (int q = 0; q < 4; q++) {
                GLMtriangle& out = triangles[4 * i + q];
                for (int j = 0; j < 3; j++) {
                    out.vindices[j] = parts[q][j]->v;
                    out.tindices[j] = parts[q][j]->t;
                    out.nindices[j] = parts[q][j]->n;
                }
            }
        }
        std::vector<GlmVector<GLuint>> groupTriangles;
        for (GLMgroup* g = model->groups; g != nullptr; g = g->next) {
            GlmVector<GLuint> list(model->allocator);
            list.reserve(4 * static_cast<std::size_t>(g->numtriangles));
            for (GLuint k = 0; k < g->numtriangles && k < g->triangles.size(); k++)
                for (GLuint q = 0; q < 4; q++)
                    list.push_back(4 * g->triangles[k] + q);
            groupTriangles.push_back(std::move(list));
        }

        // Nothing can fail from here on.
        std::size_t gi = 0;
        for (GLMgroup* g = model->groups; g != nullptr; g = g->next, gi++) {
            g->triangles = std::move(groupTriangles[gi]);
            g->numtriangles = static_cast<GLuint>(g->triangles.size());
            g->sortDistances.clear();
            g->sortOrder.clear();
        }
        model->vertices = std::move(vertices);
        model->normals = std::move(normals);
        model->texcoords = std::move(texcoords);
        model->numvertices = numvertices;
        model->numnormals = numnormals;
        model->numtexcoords = numtexcoords;
        model->triangles = std::move(triangles);
        model->numtriangles = static_cast<GLuint>(4 * numtriangles);
    } catch (const std::bad_alloc&) {
        failMemory();
        return;
    }
    if (model->numfacetnorms > 0) glmFacetNormals(model);
    model->centroidsValid = 0;
    glmdetail::computeCentroids(model);
}

GLuint glmWeld(GLMmodel* model, GLfloat epsilon) {
    if (!glmdetail::hasVertices(model, "glmWeld")) return 0;
    const GLuint numvertices = model->numvertices;
    double eps = std::isfinite(epsilon) && epsilon > 0.0f ? epsilon : 0.0;

    struct Cell {
        std::int64_t x, y, z;
        bool operator==(const Cell& o) const { return x == o.x && y == o.y && z == o.z; }
    };
    struct CellHash {
        std::size_t operator()(const Cell& c) const {
            std::uint64_t h = static_cast<std::uint64_t>(c.x) * 73856093ull ^
                              static_cast<std::uint64_t>(c.y) * 19349663ull ^
                              static_cast<std::uint64_t>(c.z) * 83492791ull;
            return static_cast<std::size_t>(h);
        }
    };
    // Vertices are hashed into cubes of side epsilon; a match lies in a neighbouring cube.
    // Non-finite or far-out coordinates are never merged.
    double cellSize = eps > 0.0 ? eps : 1e-30;
    auto cellOf = [cellSize](const GLfloat* p, Cell* cell) {
        double c[3];
        for (int k = 0; k < 3; k++) {
            c[k] = std::floor(double(p[k]) / cellSize);
            if (!std::isfinite(c[k]) || std::fabs(c[k]) > 4.0e18) return false;
        }
        *cell = {static_cast<std::int64_t>(c[0]), static_cast<std::int64_t>(c[1]),
                 static_cast<std::int64_t>(c[2])};
        return true;
    };

    try {
        std::unordered_map<Cell, std::vector<GLuint>, CellHash> cells;
        std::vector<GLuint> newIndex(static_cast<std::size_t>(numvertices) + 1, 0);
        GlmVector<GLfloat> vertices(model->allocator);
        vertices.assign(3, 0.0f);
        GLuint count = 0;
        for (GLuint i = 1; i <= numvertices; i++) {
            const GLfloat* p = &model->vertices[3 * i];
            Cell cell;
            bool hashed = cellOf(p, &cell);
            GLuint match = 0;
            if (hashed) {
                for (int dx = -1; dx <= 1 && match == 0; dx++)
                    for (int dy = -1; dy <= 1 && match == 0; dy++)
                        for (int dz = -1; dz <= 1 && match == 0; dz++) {
                            auto found = cells.find({cell.x + dx, cell.y + dy, cell.z + dz});
                            if (found == cells.end()) continue;
                            for (GLuint j : found->second) {
                                const GLfloat* q = &vertices[3 * j];
                                if (std::fabs(double(p[0]) - q[0]) <= eps &&
                                    std::fabs(double(p[1]) - q[1]) <= eps &&
                                    std::fabs(double(p[2]) - q[2]) <= eps) {
                                    match = j;
                                    break;
                                }
                            }
                        }
            }
            if (match == 0) {
                match = ++count;
                vertices.insert(vertices.end(), p, p + 3);
                if (hashed) cells[cell].push_back(match);
            }
            newIndex[i] = match;
        }
        for (GLMtriangle& t : model->triangles)
            for (int j = 0; j < 3; j++)
                t.vindices[j] = t.vindices[j] <= numvertices ? newIndex[t.vindices[j]] : 0;
        model->vertices = std::move(vertices);
        model->numvertices = count;
        model->centroidsValid = 0;
        return count;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err: failed to allocate temporary memory.\n");
        return numvertices;
    }
}
