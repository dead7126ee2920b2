// The BSP tree of a particle set: planes through the middle of far-apart particle pairs, with
// bounded depth whatever the positions are.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <new>
#include <vector>

#include "common_package/math/src/random.h"
#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"

namespace {

// Below this depth a node is split at the median of its widest axis instead, which halves it:
// the tree stays shallow even for positions that would give one-sided geometric splits.
constexpr int kMaxGeometricDepth = 48;
// Particles listed by the degenerate-split report.
constexpr int kMaxReportedParticles = 8;

double distance(const double a[3], const double b[3]) {
    double dx = a[0] - b[0], dy = a[1] - b[1], dz = a[2] - b[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

bool samePosition(const double a[3], const double b[3]) {
    return a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
}

// A random position in [0, n).
int randomBelow(int n) {
    unsigned value =
        (static_cast<unsigned>(nextRandom()) << 15) | static_cast<unsigned>(nextRandom());
    return static_cast<int>(value % static_cast<unsigned>(n));
}

}  // namespace

void ParticleList::BSPDelete(BSPNode* node) {
    if (node == nullptr) return;
    BSPDelete(node->front);
    BSPDelete(node->back);
    node->~BSPNode();
    release_(node);
}

BSPNode* ParticleList::BSPBuild(const int* indices, int count) {
    if (indices == nullptr || count <= 0) return nullptr;
    std::vector<int> valid;
    try {
        valid.reserve(count);
        for (int i = 0; i < count; i++) {
            if (indices[i] >= 0 && indices[i] < numParticles_) valid.push_back(indices[i]);
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err : ParticleList::BSPBuild : Can't allocate memory!\n");
        return nullptr;
    }
    if (static_cast<int>(valid.size()) != count)
        std::fprintf(stderr, "Err : ParticleList::BSPBuild : %d indices out of range ignored\n",
                     count - static_cast<int>(valid.size()));
    seedRandom(static_cast<std::uint32_t>(std::time(nullptr)));
    return buildNode(valid.data(), static_cast<int>(valid.size()), 0);
}

BSPNode* ParticleList::buildNode(int* indices, int n, int depth) {
    if (n <= 0) return nullptr;
    void* memory = allocate_(sizeof(BSPNode));
    if (memory == nullptr) {
        std::fprintf(stderr, "Err : ParticleList::BSPBuild : Can't allocate memory!\n");
        return nullptr;
    }
    BSPNode* node = new (memory) BSPNode();
    if (n == 1) {
        node->leaf = true;
        node->index = indices[0];
        return node;
    }

    std::vector<int> front, back;
    std::vector<double> metres;
    try {
        front.reserve(n);
        back.reserve(n);
        metres.resize(3 * static_cast<std::size_t>(n));
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err : ParticleList::BSPBuild : Can't allocate memory!\n");
        BSPDelete(node);
        return nullptr;
    }
    for (int k = 0; k < n; k++)
        particledetail::positionMetres(particles_[indices[k]], &metres[3 * k]);
    auto at = [&metres](int k) { return &metres[3 * k]; };

    int j = 1;
    while (j < n && samePosition(at(0), at(j)))
        j++;
    bool median = depth >= kMaxGeometricDepth;
    if (j == n) {
        // Every particle at one place: split alternately.
        for (int k = 0; k < n; k++)
            (k % 2 == 0 ? front : back).push_back(indices[k]);
    } else if (!median) {
        int i = 0;
        double pairDistance = distance(at(i), at(j));
        int tries = n > 2 ? std::min(n, 256) : 0;
        for (int t = 0; t < tries; t++) {
            int k = randomBelow(n);
            if (k == i || k == j) continue;
            double toI = distance(at(k), at(i)), toJ = distance(at(k), at(j));
            if (toI > pairDistance || toJ > pairDistance) {
                if (toI >= toJ) {
                    j = k;
                    pairDistance = toI;
                } else {
                    i = k;
                    pairDistance = toJ;
                }
            }
        }
        double normal[3], mid[3];
        for (int c = 0; c < 3; c++) {
            normal[c] = (at(j)[c] - at(i)[c]) / pairDistance;
            mid[c] = (at(i)[c] + at(j)[c]) / 2.0;
        }
        double d = normal[0] * mid[0] + normal[1] * mid[1] + normal[2] * mid[2];
        if (d < 0.0) {
            for (double& c : normal)
                c = -c;
            d = -d;
        }
        for (int c = 0; c < 3; c++)
            node->plane[c] = normal[c];
        node->plane[3] = d;
        for (int k = 0; k < n; k++) {
            const double* p = at(k);
            double side = normal[0] * p[0] + normal[1] * p[1] + normal[2] * p[2] - d;
            (side > 0.0 ? front : back).push_back(indices[k]);
        }
        if (front.empty() || back.empty()) {
            // Rounding (or positions beyond the range of doubles) put everything on one side.
            std::fprintf(stderr, "Something is wrong!\n");
            std::fprintf(stderr, "Partition Plane (%f %f %f) %f\n", normal[0], normal[1], normal[2],
                         d);
            std::fprintf(stderr, "Partition %d : %d\n", static_cast<int>(front.size()),
                         static_cast<int>(back.size()));
            for (int k = 0; k < n && k < kMaxReportedParticles; k++)
                dumpParticle(indices[k]);
            median = true;
        }
    }
    if (median) {
        // Median of the widest axis; the upper half lies on the plane's front side.
        double low[3], high[3];
        for (int c = 0; c < 3; c++)
            low[c] = high[c] = at(0)[c];
        for (int k = 1; k < n; k++)
            for (int c = 0; c < 3; c++) {
                low[c] = std::min(low[c], at(k)[c]);
                high[c] = std::max(high[c], at(k)[c]);
            }
        int axis = 0;
        for (int c = 1; c < 3; c++)
            if (high[c] - low[c] > high[axis] - low[axis]) axis = c;
        std::vector<int> order(n);
        for (int k = 0; k < n; k++)
            order[k] = k;
        int half = n / 2;
        std::nth_element(order.begin(), order.begin() + half, order.end(),
                         [&](int a, int b) { return at(a)[axis] < at(b)[axis]; });
        double split = at(order[half])[axis];
        for (int c = 0; c < 4; c++)
            node->plane[c] = 0.0;
        node->plane[axis] = split < 0.0 ? -1.0 : 1.0;
        node->plane[3] = std::fabs(split);
        front.clear();
        back.clear();
        // With a negated normal the lower half is the front.
        bool upperIsFront = split >= 0.0;
        for (int k = 0; k < n; k++) {
            bool upper = k >= half;
            ((upper == upperIsFront) ? front : back).push_back(indices[order[k]]);
        }
    }
    node->front = buildNode(front.data(), static_cast<int>(front.size()), depth + 1);
    node->back = buildNode(back.data(), static_cast<int>(back.size()), depth + 1);
    return node;
}

void ParticleList::rebuildTree() {
    BSPDelete(root_);
    root_ = nullptr;
    std::vector<int> indices;
    try {
        indices.resize(numParticles_);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err : ParticleList::read : Can't allocate memory!\n");
        return;
    }
    for (int i = 0; i < numParticles_; i++)
        indices[i] = i;
    std::fprintf(stderr, "- build the BSP tree\n");
    root_ = BSPBuild(indices.data(), numParticles_);
    std::fprintf(stderr, "  done!\n");
}
