#pragma once
// Depth sorting of a group's triangles by the distance of their centroids from the eye.

#include "common_package/glm/src/glm.h"

namespace glmdetail {

// Triangle centroids ((v0 + v1 + v2) x 0.33333334) and group centroids (the mean of their
// triangles' centroids); marks them valid.
void computeCentroids(GLMmodel* model);

// Orders group->sortOrder by ascending squared distance from eye to the triangle centroids,
// starting from the order kept from the last call. Makes the arrays on the first call; false
// (with a message) when they cannot be made.
bool sortGroup(GLMgroup* group, const GLMmodel* model, const GLfloat eye[3]);

// Sorts the pairs (keys[i], values[i]) by ascending key with a heap sort.
void heapSortPairs(GLfloat* keys, GLuint* values, std::size_t count);

}  // namespace glmdetail
