// The spanning tree of the StarList: built from the stars' current positions, or read from
// an "MST-FILE".

#include <cmath>
#include <cstdio>

#include "catalogue/mst.h"
#include "catalogue/star_list.h"

namespace {

constexpr double kMSTUnitLog10 = 15.0;  // tree points are in units of 10^15 metres

}  // namespace

void StarList::releaseMST() {
    if (mstEdges != nullptr) release(mstEdges);
    mstEdges = nullptr;
    mstNumPoints = 0;
}

void StarList::buildMST(const char* saveFileName) {
    releaseMST();
    setMSTAllocator(allocate, release);
    const std::size_t n = static_cast<std::size_t>(count > 0 ? count : 0);
    auto* points = static_cast<double*>(allocate(n > 0 ? n * 3 * sizeof(double) : 1));
    if (points == nullptr) {
        std::fprintf(stderr, "Err: StarList::buildMST : Can't allocate memory.\n");
        return;
    }
    for (std::size_t i = 0; i < n; ++i) {
        const Phc& p = stars[i].pos;
        const double f = std::pow(10.0, p.w - kMSTUnitLog10);
        points[3 * i] = p.x * f;
        points[3 * i + 1] = p.y * f;
        points[3 * i + 2] = p.z * f;
    }
    mstEdges = fastMST(points, count, 3);
    release(points);
    if (mstEdges == nullptr) {
        std::fprintf(stderr, "Err: StarList::buildMST : Can't allocate memory.\n");
        return;
    }
    mstNumPoints = count;
    if (saveFileName != nullptr) save_MST(saveFileName, mstEdges, count);
}

int StarList::loadMST(const char* fileName) {
    releaseMST();
    setMSTAllocator(allocate, release);
    int n = 0;
    std::int32_t* edges = load_MST(fileName, &n);
    if (edges == nullptr) return -1;
    if (n != count) {
        std::fprintf(stderr,
                     "Err (loadMST): number of points in [%s] does not match the number points I "
                     "have.\n",
                     fileName);
        release(edges);
        return -1;
    }
    mstEdges = edges;
    mstNumPoints = n;
    return 1;
}

const std::int32_t* StarList::getMSTEdges(int* numEdges) const {
    const bool current = mstEdges != nullptr && mstNumPoints == count && count >= 2;
    if (numEdges != nullptr) *numEdges = current ? count - 1 : 0;
    return current ? mstEdges : nullptr;
}
