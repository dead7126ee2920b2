// Geometry of models: bounds, unit size, scaling and transforms, winding, normals and
// generated texture coordinates.

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "common_package/glm/src/glm_internal.h"
#include "common_package/glm/src/glm_matrix.h"

namespace {

constexpr double kPi = 3.1415927;

void normalize3(GLfloat* v) {
    double length = std::sqrt(double(v[0]) * v[0] + double(v[1]) * v[1] + double(v[2]) * v[2]);
    if (length > 0.0 && std::isfinite(length)) {
        v[0] = static_cast<GLfloat>(v[0] / length);
        v[1] = static_cast<GLfloat>(v[1] / length);
        v[2] = static_cast<GLfloat>(v[2] / length);
    }
}

struct Bounds {
    GLfloat min[3], max[3];
};

Bounds bounds(const GLMmodel* model) {
    const GLfloat* v = model->vertices.data();
    Bounds b;
    for (int k = 0; k < 3; k++)
        b.min[k] = b.max[k] = v[3 + k];
    for (GLuint i = 2; i <= model->numvertices; i++) {
        for (int k = 0; k < 3; k++) {
            b.min[k] = std::min(b.min[k], v[3 * i + k]);
            b.max[k] = std::max(b.max[k], v[3 * i + k]);
        }
    }
    return b;
}

void translateToBoxCentre(GLMmodel* model) {
    Bounds b = bounds(model);
    GLfloat c[3];
    for (int k = 0; k < 3; k++)
        c[k] = (b.max[k] + b.min[k]) / 2.0f;
    for (GLuint i = 1; i <= model->numvertices; i++)
        for (int k = 0; k < 3; k++)
            model->vertices[3 * i + k] -= c[k];
}

// (v1 - v0) x (v2 - v0), normalised.
void triangleNormal(const GLMmodel* model, const GLMtriangle& t, GLfloat out[3]) {
    out[0] = out[1] = out[2] = 0.0f;
    for (int j = 0; j < 3; j++)
        if (t.vindices[j] < 1 || t.vindices[j] > model->numvertices) return;
    const GLfloat* v0 = &model->vertices[3 * t.vindices[0]];
    const GLfloat* v1 = &model->vertices[3 * t.vindices[1]];
    const GLfloat* v2 = &model->vertices[3 * t.vindices[2]];
    GLfloat u[3] = {v1[0] - v0[0], v1[1] - v0[1], v1[2] - v0[2]};
    GLfloat w[3] = {v2[0] - v0[0], v2[1] - v0[1], v2[2] - v0[2]};
    out[0] = u[1] * w[2] - u[2] * w[1];
    out[1] = u[2] * w[0] - u[0] * w[2];
    out[2] = u[0] * w[1] - u[1] * w[0];
    normalize3(out);
}

void negate(GlmVector<GLfloat>* values, GLuint count) {
    for (std::size_t i = 3; i < 3 * (static_cast<std::size_t>(count) + 1) && i < values->size();
         i++)
        (*values)[i] = -(*values)[i];
}

void reportMemory(const char* operation) {
    std::fprintf(stderr, "Err (%s): failed to allocate memory.\n", operation);
}

}  // namespace

GLfloat glmUnitize(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmUnitize")) return 1.0f;
    Bounds b = bounds(model);
    GLfloat w = std::fabs(b.max[0]) + std::fabs(b.min[0]);
    GLfloat h = std::fabs(b.max[1]) + std::fabs(b.min[1]);
    GLfloat d = std::fabs(b.max[2]) + std::fabs(b.min[2]);
    GLfloat c[3];
    for (int k = 0; k < 3; k++)
        c[k] = (b.max[k] + b.min[k]) / 2.0f;
    GLfloat largest = std::max(std::max(w, h), d);
    // A single point (or a model of nothing but zeros) keeps its size.
    GLfloat scale = largest > 0.0f && std::isfinite(largest) ? 2.0f / largest : 1.0f;
    for (GLuint i = 1; i <= model->numvertices; i++)
        for (int k = 0; k < 3; k++)
            model->vertices[3 * i + k] = (model->vertices[3 * i + k] - c[k]) * scale;
    return scale;
}

GLfloat glmUnitizeSphere(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmUnitizeSphere")) return 1.0f;
    translateToBoxCentre(model);
    double farthest = 0.0;
    for (GLuint i = 1; i <= model->numvertices; i++) {
        const GLfloat* v = &model->vertices[3 * i];
        farthest = std::max(
            farthest, std::sqrt(double(v[0]) * v[0] + double(v[1]) * v[1] + double(v[2]) * v[2]));
    }
    GLfloat scale =
        farthest > 0.0 && std::isfinite(farthest) ? static_cast<GLfloat>(1.0 / farthest) : 1.0f;
    glmScale(model, scale);
    return scale;
}

void glmCenter(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmCenter")) return;
    translateToBoxCentre(model);
}

void glmRange(GLMmodel* model, GLfloat rangeX[2], GLfloat rangeY[2], GLfloat rangeZ[2]) {
    if (!glmdetail::hasVertices(model, "glmRange")) return;
    Bounds b = bounds(model);
    rangeX[0] = b.min[0];
    rangeX[1] = b.max[0];
    rangeY[0] = b.min[1];
    rangeY[1] = b.max[1];
    rangeZ[0] = b.min[2];
    rangeZ[1] = b.max[2];
}

void glmDimensions(GLMmodel* model, GLfloat dimensions[3]) {
    if (!glmdetail::hasVertices(model, "glmDimensions")) return;
    Bounds b = bounds(model);
    for (int k = 0; k < 3; k++)
        dimensions[k] = std::fabs(b.max[k]) + std::fabs(b.min[k]);
}

void glmScale(GLMmodel* model, GLfloat factor) {
    if (!glmdetail::hasVertices(model, "glmScale")) return;
    for (GLuint i = 1; i <= model->numvertices; i++)
        for (int k = 0; k < 3; k++)
            model->vertices[3 * i + k] *= factor;
}

void glmTransform(GLMmodel* model, const GLfloat matrix[16]) {
    if (!glmdetail::hasVertices(model, "glmTransform")) return;
    const GLfloat* m = matrix;
    for (GLuint i = 1; i <= model->numvertices; i++) {
        GLfloat* v = &model->vertices[3 * i];
        double x = v[0], y = v[1], z = v[2];
        double out[4];
        for (int r = 0; r < 4; r++)
            out[r] = m[r] * x + m[4 + r] * y + m[8 + r] * z + m[12 + r];
        if (out[3] != 0.0)
            for (int r = 0; r < 3; r++)
                out[r] /= out[3];
        for (int r = 0; r < 3; r++)
            v[r] = static_cast<GLfloat>(out[r]);
    }

    if (model->numnormals == 0 && model->numfacetnorms == 0) return;
    double in[16], inverse[16];
    for (int i = 0; i < 16; i++)
        in[i] = m[i];
    if (!glmdetail::invertMatrix4(in, inverse)) {
        std::fprintf(stderr, "Err (glmTransform): singular matrix; normals are left unchanged.\n");
        return;
    }
    // Normals go through the inverse transpose: n'_r = sum_c inverse(c, r) n_c.
    auto transformNormals = [&inverse](GlmVector<GLfloat>* normals, GLuint count) {
        for (GLuint i = 1; i <= count && 3 * i + 2 < normals->size(); i++) {
            GLfloat* n = &(*normals)[3 * i];
            double out[3];
            for (int r = 0; r < 3; r++)
                out[r] = inverse[r * 4 + 0] * n[0] + inverse[r * 4 + 1] * n[1] +
                         inverse[r * 4 + 2] * n[2];
            for (int r = 0; r < 3; r++)
                n[r] = static_cast<GLfloat>(out[r]);
            normalize3(n);
        }
    };
    transformNormals(&model->normals, model->numnormals);
    transformNormals(&model->facetnorms, model->numfacetnorms);
}

void glmReverseWinding(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmReverseWinding")) return;
    for (GLMtriangle& t : model->triangles) {
        std::swap(t.vindices[0], t.vindices[2]);
        std::swap(t.nindices[0], t.nindices[2]);
        std::swap(t.tindices[0], t.tindices[2]);
    }
    glmNegateNormals(model);
}

void glmFacetNormals(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmFacetNormals")) return;
    try {
        model->facetnorms.assign(3 * (static_cast<std::size_t>(model->numtriangles) + 1), 0.0f);
    } catch (const std::bad_alloc&) {
        reportMemory("glmFacetNormals");
        return;
    }
    model->numfacetnorms = model->numtriangles;
    for (GLuint i = 0; i < model->numtriangles && i < model->triangles.size(); i++) {
        GLMtriangle& t = model->triangles[i];
        t.findex = i + 1;
        triangleNormal(model, t, &model->facetnorms[3 * t.findex]);
    }
}

void glmVertexNormals(GLMmodel* model, GLfloat angle) {
    if (!glmdetail::hasVertices(model, "glmVertexNormals")) return;
    if (model->numfacetnorms == 0 || model->facetnorms.empty()) {
        std::fprintf(stderr,
                     "Err (glmVertexNormals): missing face normals for vertex normal "
                     "computation.\n");
        return;
    }
    double cosAngle = std::cos(angle * kPi / 180.0);
    model->smoothingAngle = angle;

    const GLuint numvertices = model->numvertices;
    const std::size_t numtriangles =
        std::min<std::size_t>(model->numtriangles, model->triangles.size());
    struct Use {
        GLuint triangle;
        int corner;
    };
    std::vector<std::size_t> first;
    std::vector<Use> uses;
    GlmVector<GLfloat> normals(model->allocator);
    try {
        // The uses of each vertex, newest triangle first.
        first.assign(static_cast<std::size_t>(numvertices) + 2, 0);
        for (std::size_t i = 0; i < numtriangles; i++)
            for (int j = 0; j < 3; j++) {
                GLuint v = model->triangles[i].vindices[j];
                if (v >= 1 && v <= numvertices) first[v + 1]++;
            }
        for (std::size_t v = 1; v < first.size(); v++)
            first[v] += first[v - 1];
        uses.resize(first.back());
        std::vector<std::size_t> fill(first.begin(), first.end() - 1);
        for (std::size_t i = numtriangles; i-- > 0;)
            for (int j = 0; j < 3; j++) {
                GLuint v = model->triangles[i].vindices[j];
                if (v >= 1 && v <= numvertices) uses[fill[v]++] = {static_cast<GLuint>(i), j};
            }
        normals.assign(3 * (3 * numtriangles + 1), 0.0f);
    } catch (const std::bad_alloc&) {
        reportMemory("glmVertexNormals");
        return;
    }

    auto facet = [model](GLuint triangle) -> const GLfloat* {
        static const GLfloat zero[3] = {0.0f, 0.0f, 0.0f};
        GLuint f = model->triangles[triangle].findex;
        if (f > model->numfacetnorms || 3 * f + 2 >= model->facetnorms.size()) return zero;
        return &model->facetnorms[3 * f];
    };

    GLuint numnormals = 1;
    std::vector<char> averaged;
    for (GLuint v = 1; v <= numvertices; v++) {
        std::size_t begin = first[v], end = first[v + 1];
        if (begin == end) {
            std::fprintf(stderr, "glmVertexNormals(): vertex w/o a triangle\n");
            continue;
        }
        const GLfloat* reference = facet(uses[begin].triangle);
        averaged.assign(end - begin, 0);
        GLfloat average[3] = {0.0f, 0.0f, 0.0f};
        bool any = false;
        for (std::size_t u = begin; u < end; u++) {
            const GLfloat* f = facet(uses[u].triangle);
            double d = double(f[0]) * reference[0] + double(f[1]) * reference[1] +
                       double(f[2]) * reference[2];
            if (d > cosAngle) {
                averaged[u - begin] = 1;
                any = true;
                for (int k = 0; k < 3; k++)
                    average[k] += f[k];
            }
        }
        GLuint averageIndex = 0;
        if (any) {
            normalize3(average);
            averageIndex = numnormals++;
            for (int k = 0; k < 3; k++)
                normals[3 * averageIndex + k] = average[k];
        }
        for (std::size_t u = begin; u < end; u++) {
            GLMtriangle& t = model->triangles[uses[u].triangle];
            if (averaged[u - begin]) {
                t.nindices[uses[u].corner] = averageIndex;
            } else {
                const GLfloat* f = facet(uses[u].triangle);
                for (int k = 0; k < 3; k++)
                    normals[3 * numnormals + k] = f[k];
                t.nindices[uses[u].corner] = numnormals++;
            }
        }
    }
    normals.resize(3 * static_cast<std::size_t>(numnormals));
    normals.shrink_to_fit();
    // Corners of triangles that were skipped above point at no normal.
    for (std::size_t i = 0; i < numtriangles; i++)
        for (int j = 0; j < 3; j++) {
            GLMtriangle& t = model->triangles[i];
            if (t.vindices[j] < 1 || t.vindices[j] > numvertices) t.nindices[j] = 0;
        }
    model->normals = std::move(normals);
    model->numnormals = numnormals - 1;
}

void glmLinearTexture(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmLinearTexture")) return;
    GLfloat dimensions[3];
    glmDimensions(model, dimensions);
    GLfloat largest = std::fabs(std::max(std::max(dimensions[0], dimensions[1]), dimensions[2]));
    GLfloat k = largest > 0.0f && std::isfinite(largest) ? 2.0f / largest : 1.0f;
    try {
        model->texcoords.assign(2 * (static_cast<std::size_t>(model->numvertices) + 1), 0.0f);
    } catch (const std::bad_alloc&) {
        reportMemory("glmLinearTexture");
        return;
    }
    model->numtexcoords = model->numvertices;
    for (GLuint i = 1; i <= model->numvertices; i++) {
        GLfloat x = model->vertices[3 * i + 0] * k;
        GLfloat z = model->vertices[3 * i + 2] * k;
        model->texcoords[2 * i + 0] = (x + 1.0f) / 2.0f;
        model->texcoords[2 * i + 1] = (z + 1.0f) / 2.0f;
    }
    for (GLMtriangle& t : model->triangles)
        for (int j = 0; j < 3; j++)
            t.tindices[j] = t.vindices[j];
}

void glmSpheremapTexture(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmSpheremapTexture")) return;
    if (model->numnormals == 0) {
        std::fprintf(stderr, "Err (glmSpheremapTexture): the model has no normals.\n");
        return;
    }
    try {
        model->texcoords.assign(2 * (static_cast<std::size_t>(model->numnormals) + 1), 0.0f);
    } catch (const std::bad_alloc&) {
        reportMemory("glmSpheremapTexture");
        return;
    }
    model->numtexcoords = model->numnormals;
    // Longitude around y from atan2(x, z), latitude from asin(y), both mapped to [0, 1].
    for (GLuint i = 1; i <= model->numnormals && 3 * i + 2 < model->normals.size(); i++) {
        const GLfloat* n = &model->normals[3 * i];
        double y = std::max(-1.0, std::min(1.0, double(n[1])));
        double s = 0.5 + std::atan2(double(n[0]), double(n[2])) / (2.0 * kPi);
        double t = 0.5 + std::asin(y) / kPi;
        model->texcoords[2 * i + 0] = static_cast<GLfloat>(s);
        model->texcoords[2 * i + 1] = static_cast<GLfloat>(t);
    }
    for (GLMtriangle& t : model->triangles)
        for (int j = 0; j < 3; j++)
            t.tindices[j] = t.nindices[j];
}

void glmNegateFacetNormals(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmNegateFacetNormals")) return;
    negate(&model->facetnorms, model->numfacetnorms);
}

void glmNegateVertexNormals(GLMmodel* model) {
    if (!glmdetail::hasVertices(model, "glmNegateVertexNormals")) return;
    negate(&model->normals, model->numnormals);
}

void glmNegateNormals(GLMmodel* model) {
    glmNegateFacetNormals(model);
    glmNegateVertexNormals(model);
}
