#pragma once
// The Euclidean minimum spanning tree of a point set: Prim's algorithm over a dense array of
// best distances (the reference), a fast builder that gives the very same tree, and the
// "MST-FILE" text files that keep a tree between runs.
//
// A tree of n points is an array of n - 1 edges, each a pair of int32 point indices
// (child, parent): the point added to the tree and the tree point it was joined to, in the
// order the points were added. Arrays are made and released through the allocate/release
// pair set with setMSTAllocator (the standard allocator until then); a tree of fewer than two
// points is a valid array that holds no edge.

#include <cstddef>
#include <cstdint>

using MSTAllocateFn = void* (*)(std::size_t);
using MSTReleaseFn = void (*)(void*);

// Sets the pair used for every array the routines below make or release. The StarList sets
// its own pair before each use.
void setMSTAllocator(MSTAllocateFn allocateFn, MSTReleaseFn releaseFn);
void releaseMSTArray(void* array);
// An array of the given size (at least one byte) from the current pair, or null.
void* allocateMSTArray(std::size_t bytes);

// Squared Euclidean distance of two points of k coordinates. Both builders measure with this
// one function, so that equal distances are equal to the last bit in both.
inline double mstDistance(const double* a, const double* b, int k) {
    if (k == 3) {
        const double dx = a[0] - b[0], dy = a[1] - b[1], dz = a[2] - b[2];
        return dx * dx + dy * dy + dz * dz;
    }
    double sum = 0.0;
    for (int j = 0; j < k; ++j) {
        const double d = a[j] - b[j];
        sum += d * d;
    }
    return sum;
}

// Prim's algorithm with an array of best distances (O(n^2)). Point 0 starts the tree; the
// first point added is the nearest one not at the position of point 0 (the first remaining
// point when all are there); after that the point of smallest best distance is added, the
// lowest index winning ties, and a point's parent changes only when a new tree point is
// strictly nearer. Returns null when memory runs out or the input is invalid.
std::int32_t* primMST(const double* points, int n, int k);

// The same tree as primMST (same edges, same order, ties included) in O(n log n) for points
// in general position; see mst_fast.cpp for how ties are kept. Falls back to primMST for
// inputs it cannot order exactly (non-finite coordinates, distinct points whose squared
// distance underflows to zero, or ties so dense that the set of tied edges grows beyond a
// few edges per point).
std::int32_t* fastMST(const double* points, int n, int k);

// Reads an "MST-FILE" tree. On success returns the edges and sets *n to the number of points;
// on failure prints why and returns null.
std::int32_t* load_MST(const char* fileName, int* n);

// Writes a tree of n points ("MST-FILE %d points" then one "child parent" line per edge).
// Returns 1, or -1 when the file cannot be written.
int save_MST(const char* fileName, const std::int32_t* edges, int n);
