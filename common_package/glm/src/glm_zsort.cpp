#include "common_package/glm/src/glm_zsort.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <utility>

namespace glmdetail {

void computeCentroids(GLMmodel* model) {
    for (GLMtriangle& t : model->triangles) {
        GLfloat sum[3] = {0.0f, 0.0f, 0.0f};
        for (int j = 0; j < 3; j++) {
            GLuint v = t.vindices[j];
            if (v < 1 || v > model->numvertices || 3 * v + 2 >= model->vertices.size()) continue;
            for (int k = 0; k < 3; k++)
                sum[k] += model->vertices[3 * v + k];
        }
        for (int k = 0; k < 3; k++)
            t.centroid[k] = sum[k] * 0.33333334f;
    }
    for (GLMgroup* g = model->groups; g != nullptr; g = g->next) {
        GLfloat sum[3] = {0.0f, 0.0f, 0.0f};
        GLuint n = 0;
        for (GLuint k = 0; k < g->numtriangles && k < g->triangles.size(); k++) {
            if (g->triangles[k] >= model->triangles.size()) continue;
            const GLMtriangle& t = model->triangles[g->triangles[k]];
            for (int c = 0; c < 3; c++)
                sum[c] += t.centroid[c];
            n++;
        }
        for (int c = 0; c < 3; c++)
            g->centroid[c] = n > 0 ? sum[c] / n : 0.0f;
    }
    model->centroidsValid = 1;
}

namespace {

void siftDown(GLfloat* keys, GLuint* values, std::size_t root, std::size_t count) {
    while (2 * root + 1 < count) {
        std::size_t child = 2 * root + 1;
        if (child + 1 < count && keys[child] < keys[child + 1]) child++;
        if (!(keys[root] < keys[child])) return;
        std::swap(keys[root], keys[child]);
        std::swap(values[root], values[child]);
        root = child;
    }
}

}  // namespace

void heapSortPairs(GLfloat* keys, GLuint* values, std::size_t count) {
    if (count < 2) return;
    for (std::size_t i = count / 2; i-- > 0;)
        siftDown(keys, values, i, count);
    for (std::size_t end = count - 1; end > 0; end--) {
        std::swap(keys[0], keys[end]);
        std::swap(values[0], values[end]);
        siftDown(keys, values, 0, end);
    }
}

bool sortGroup(GLMgroup* group, const GLMmodel* model, const GLfloat eye[3]) {
    std::size_t n = std::min<std::size_t>(group->numtriangles, group->triangles.size());
    if (group->sortOrder.size() != n || group->sortDistances.size() != n) {
        try {
            group->sortDistances.assign(n, 0.0f);
            group->sortOrder.assign(group->triangles.begin(), group->triangles.begin() + n);
        } catch (const std::bad_alloc&) {
            group->sortDistances.clear();
            group->sortOrder.clear();
            std::fprintf(stderr,
                         "Critical Err: failed to allocate memory (for ZSort) in GLM library.\n");
            return false;
        }
    }
    if (n < 2) return true;
    for (std::size_t i = 0; i < n; i++) {
        GLuint t = group->sortOrder[i];
        if (t >= model->triangles.size()) {
            group->sortDistances[i] = 0.0f;
            continue;
        }
        const GLfloat* c = model->triangles[t].centroid;
        GLfloat dx = c[0] - eye[0], dy = c[1] - eye[1], dz = c[2] - eye[2];
        group->sortDistances[i] = dx * dx + dy * dy + dz * dz;
    }
    heapSortPairs(group->sortDistances.data(), group->sortOrder.data(), n);
    return true;
}

}  // namespace glmdetail
