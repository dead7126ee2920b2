// The reference spanning tree: Prim's algorithm with a dense array of best distances.

#include <cstdlib>

#include "catalogue/mst.h"

namespace {

MSTAllocateFn mstAllocate = std::malloc;
MSTReleaseFn mstRelease = std::free;

}  // namespace

void setMSTAllocator(MSTAllocateFn allocateFn, MSTReleaseFn releaseFn) {
    if (allocateFn == nullptr || releaseFn == nullptr) return;
    mstAllocate = allocateFn;
    mstRelease = releaseFn;
}

void releaseMSTArray(void* array) {
    if (array != nullptr) mstRelease(array);
}

// Declared for the other tree files; an allocation of at least one byte.
void* allocateMSTArray(std::size_t bytes) {
    return mstAllocate(bytes > 0 ? bytes : 1);
}

std::int32_t* primMST(const double* points, int n, int k) {
    if ((points == nullptr && n > 0) || n < 0 || k < 1) return nullptr;
    const std::size_t numEdges = n >= 2 ? static_cast<std::size_t>(n) - 1 : 0;
    auto* edges = static_cast<std::int32_t*>(allocateMSTArray(numEdges * 2 * sizeof(std::int32_t)));
    if (edges == nullptr) return nullptr;
    if (n < 2) return edges;

    const std::size_t count = static_cast<std::size_t>(n);
    auto* best = static_cast<double*>(allocateMSTArray(count * sizeof(double)));
    auto* parent = static_cast<std::int32_t*>(allocateMSTArray(count * sizeof(std::int32_t)));
    auto* outside = static_cast<unsigned char*>(allocateMSTArray(count));
    if (best == nullptr || parent == nullptr || outside == nullptr) {
        releaseMSTArray(best);
        releaseMSTArray(parent);
        releaseMSTArray(outside);
        releaseMSTArray(edges);
        return nullptr;
    }

    const double* p0 = points;
    for (int i = 0; i < n; ++i) {
        best[i] = mstDistance(p0, points + static_cast<std::size_t>(i) * k, k);
        parent[i] = 0;
        outside[i] = 1;
    }
    outside[0] = 0;

    // The first point is the nearest one that is not where point 0 is.
    int v = -1;
    for (int i = 1; i < n; ++i) {
        if (best[i] > 0.0 && (v < 0 || best[i] < best[v])) v = i;
    }
    if (v < 0) v = 1;  // every point is at the position of point 0

    for (int step = 0; step < n - 2; ++step) {
        edges[2 * step] = v;
        edges[2 * step + 1] = parent[v];
        outside[v] = 0;
        const double* pv = points + static_cast<std::size_t>(v) * k;
        int next = -1;
        for (int i = 1; i < n; ++i) {
            if (!outside[i]) continue;
            const double d = mstDistance(pv, points + static_cast<std::size_t>(i) * k, k);
            if (d < best[i]) {
                best[i] = d;
                parent[i] = v;
            }
            if (next < 0 || best[i] < best[next]) next = i;
        }
        v = next;
    }
    edges[2 * (n - 2)] = v;
    edges[2 * (n - 2) + 1] = parent[v];
    outside[v] = 0;

    releaseMSTArray(best);
    releaseMSTArray(parent);
    releaseMSTArray(outside);
    return edges;
}
