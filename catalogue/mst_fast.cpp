// The fast spanning tree: the tree primMST gives, edge for edge and in the same order, without
// its n^2 distance evaluations.
//
// How the very same tree comes out, ties included:
//
// 1. Points at exactly the same coordinates are grouped; the lowest index of a group stands
//    for it. Such points have identical distances to every other point, so in Prim's run a
//    group's other members are added right after its first member (their best distance drops
//    to zero), in index order, each joined to that first member. The one exception is the
//    group of point 0: its members are not eligible for the first step, so they follow the
//    first point added, interleaved by index with that point's own group.
//
// 2. Over the distinct points, Prim's rule is: add the outside point of smallest best
//    distance, the lowest index winning ties; a point's parent is the earliest-added tree
//    point at its best distance (parents change only on a strict improvement). Run with the
//    same rule over any subgraph that contains Prim's tree, the algorithm makes the same
//    choices at every step: the point Prim adds is reachable through its own tree edge, with
//    the same best distance and the same parent, and no other point can look nearer in a
//    subgraph than in the full graph.
//
// 3. The subgraph used is the union of all minimum spanning trees (every edge that is in at
//    least one of them), which contains Prim's tree whatever ties it met. It is found with
//    Boruvka's algorithm over a k-d tree, collecting for each component every outgoing edge of
//    the component's minimum length, not just one: every edge of the union is such an edge of
//    some component at some round. Components merge through their least edge in the order
//    (length, lower index, higher index), which keeps the rounds free of cycles.
//
// With distinct distances the union is the tree itself; with ties (points on a grid) it holds
// a few extra edges per point. Inputs where it would grow beyond a few edges per point (masses
// of equidistant points), distinct points whose squared distance underflows to zero, and
// non-finite coordinates go to primMST itself.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <queue>
#include <vector>

#include "catalogue/mst.h"
#include "catalogue/mst_kdtree.h"

namespace {

// Tied edges kept per distinct point before the exact tie set is given up for primMST.
constexpr std::size_t kTieEdgesPerPoint = 32;
constexpr std::size_t kTieEdgesSlack = 1024;
// Nearest neighbours kept per point for the searches of the later rounds.
constexpr int kNeighbours = 6;

struct TieEdge {
    int a, b;  // a < b, distinct-point ids
    double length;
};

class UnionFind {
  public:
    explicit UnionFind(int n) : parent_(n) { std::iota(parent_.begin(), parent_.end(), 0); }
    int find(int x) {
        while (parent_[x] != x) {
            parent_[x] = parent_[parent_[x]];
            x = parent_[x];
        }
        return x;
    }
    bool unite(int a, int b) {
        a = find(a);
        b = find(b);
        if (a == b) return false;
        if (a > b) std::swap(a, b);
        parent_[b] = a;
        return true;
    }

  private:
    std::vector<int> parent_;
};

// Groups of points at identical coordinates: for each distinct point (in index order) its
// lowest index, and the other members of its group in index order.
struct PointGroups {
    std::vector<int> first;                // global index of each distinct point
    std::vector<std::vector<int>> others;  // the rest of each group
};

PointGroups groupEqualPoints(const double* points, int n, int k) {
    std::vector<int> order(n);
    std::iota(order.begin(), order.end(), 0);
    auto less = [points, k](int a, int b) {
        const double* pa = points + static_cast<std::size_t>(a) * k;
        const double* pb = points + static_cast<std::size_t>(b) * k;
        for (int j = 0; j < k; ++j) {
            if (pa[j] < pb[j]) return true;
            if (pb[j] < pa[j]) return false;
        }
        return a < b;
    };
    std::sort(order.begin(), order.end(), less);
    auto same = [points, k](int a, int b) {
        const double* pa = points + static_cast<std::size_t>(a) * k;
        const double* pb = points + static_cast<std::size_t>(b) * k;
        for (int j = 0; j < k; ++j) {
            if (pa[j] != pb[j]) return false;
        }
        return true;
    };
    std::vector<int> leader(n);
    for (int s = 0; s < n;) {
        int e = s + 1;
        while (e < n && same(order[s], order[e]))
            ++e;
        for (int t = s; t < e; ++t)
            leader[order[t]] = order[s];  // the lowest index: ties sort by index
        s = e;
    }
    PointGroups groups;
    std::vector<int> slot(n, -1);
    for (int i = 0; i < n; ++i) {
        if (leader[i] == i) {
            slot[i] = static_cast<int>(groups.first.size());
            groups.first.push_back(i);
            groups.others.emplace_back();
        } else {
            groups.others[slot[leader[i]]].push_back(i);
        }
    }
    return groups;
}

// Every edge of the union of all minimum spanning trees of m distinct points, by Boruvka
// rounds that keep all tied minimum edges. False when the exact set cannot be had (see the
// file comment).
//
// Each point's few nearest neighbours, found once, answer most searches for the nearest point
// outside its component; a full search is made only when they all lie inside it or a tie may
// reach past them. A point whose nearest outside point was farther than its component's least
// length so far (a distance that only grows) is not searched again.
bool tiedSpanningEdges(const double* original, int m, int k, std::vector<TieEdge>& edges) {
    const std::size_t cap = kTieEdgesPerPoint * static_cast<std::size_t>(m) + kTieEdgesSlack;
    MSTKdTree tree(original, m, k);
    const double inf = std::numeric_limits<double>::infinity();

    // Neighbour lists, point by point in tree order.
    std::vector<double> nearDistance(static_cast<std::size_t>(m) * kNeighbours);
    std::vector<int> nearPoint(static_cast<std::size_t>(m) * kNeighbours);
    std::vector<int> nearCount(m);
    {
        std::vector<std::pair<double, int>> list;
        for (int a = 0; a < m; ++a) {
            tree.nearestNeighbours(a, kNeighbours, list);
            nearCount[a] = static_cast<int>(list.size());
            for (std::size_t j = 0; j < list.size(); ++j) {
                nearDistance[static_cast<std::size_t>(a) * kNeighbours + j] = list[j].first;
                nearPoint[static_cast<std::size_t>(a) * kNeighbours + j] = list[j].second;
            }
        }
    }

    UnionFind forest(m);
    std::vector<int> comp(m);
    std::vector<double> compBest(m);
    std::vector<double> lower(m, 0.0);
    std::vector<int> found;
    struct Candidate {
        int comp, a, b;
        double length;
    };
    std::vector<Candidate> candidates;
    std::vector<int> chosen(m);

    int components = m;
    while (components > 1) {
        for (int i = 0; i < m; ++i)
            comp[i] = forest.find(i);
        tree.labelComponents(comp);
        std::fill(compBest.begin(), compBest.end(), inf);
        candidates.clear();

        for (int a = 0; a < m; ++a) {
            const int c = comp[a];
            double bound = compBest[c];
            if (lower[a] > bound) continue;  // cannot reach the component's least length
            const std::size_t base = static_cast<std::size_t>(a) * kNeighbours;
            const int listed = nearCount[a];
            int first = 0;
            while (first < listed && comp[nearPoint[base + first]] == c)
                ++first;
            found.clear();
            if (first < listed) {
                const double d0 = nearDistance[base + first];
                lower[a] = d0;
                if (d0 > bound) continue;
                const bool complete = listed < kNeighbours || nearDistance[base + listed - 1] > d0;
                if (complete) {
                    bound = d0;
                    for (int j = first; j < listed && nearDistance[base + j] == d0; ++j) {
                        if (comp[nearPoint[base + j]] != c) found.push_back(nearPoint[base + j]);
                    }
                } else {
                    bound = d0;
                    if (!tree.nearestOutside(a, comp, bound, found, cap)) return false;
                }
            } else {
                // Every listed neighbour is inside: the nearest outside point is no nearer
                // than the last of them.
                if (listed > 0 && nearDistance[base + listed - 1] > lower[a]) {
                    lower[a] = nearDistance[base + listed - 1];
                }
                if (lower[a] > bound) continue;
                if (!tree.nearestOutside(a, comp, bound, found, cap)) return false;
                if (found.empty()) continue;
                lower[a] = bound;
            }
            if (found.empty()) continue;
            if (bound < compBest[c]) compBest[c] = bound;
            for (int b : found)
                candidates.push_back({c, a, b, bound});
            if (candidates.size() + edges.size() > cap) return false;
        }

        // Keep the candidates at their component's final minimum; pick each component's least.
        std::fill(chosen.begin(), chosen.end(), -1);
        std::size_t kept = 0;
        for (const Candidate& cand : candidates) {
            if (cand.length != compBest[cand.comp]) continue;
            if (cand.length == 0.0) return false;  // distinct points at distance zero
            candidates[kept] = cand;
            int& best = chosen[cand.comp];
            if (best < 0) {
                best = static_cast<int>(kept);
            } else {
                const Candidate& o = candidates[best];
                const int lo = std::min(cand.a, cand.b), hi = std::max(cand.a, cand.b);
                const int olo = std::min(o.a, o.b), ohi = std::max(o.a, o.b);
                if (lo < olo || (lo == olo && hi < ohi)) best = static_cast<int>(kept);
            }
            ++kept;
        }
        candidates.resize(kept);
        for (const Candidate& cand : candidates) {
            const int a = tree.originalIndex(cand.a), b = tree.originalIndex(cand.b);
            edges.push_back({std::min(a, b), std::max(a, b), cand.length});
        }

        int merged = 0;
        for (int c = 0; c < m; ++c) {
            if (chosen[c] < 0) continue;
            const Candidate& e = candidates[chosen[c]];
            if (forest.unite(e.a, e.b)) ++merged;
        }
        if (merged == 0) return false;  // cannot happen with finite distances
        components -= merged;
    }
    // An edge may have been found from both of its ends, or in two rounds.
    std::sort(edges.begin(), edges.end(), [](const TieEdge& x, const TieEdge& y) {
        return x.a != y.a ? x.a < y.a : x.b < y.b;
    });
    edges.erase(
        std::unique(edges.begin(), edges.end(),
                    [](const TieEdge& x, const TieEdge& y) { return x.a == y.a && x.b == y.b; }),
        edges.end());
    return true;
}

// Prim's rule run over the given edges of m distinct points from point 0. Writes, for each
// step, the point added and its parent.
void primOverEdges(int m, const std::vector<TieEdge>& edges, std::vector<int>& added,
                   std::vector<int>& parentOf) {
    std::vector<int> start(m + 1, 0);
    for (const TieEdge& e : edges) {
        ++start[e.a + 1];
        ++start[e.b + 1];
    }
    for (int i = 0; i < m; ++i)
        start[i + 1] += start[i];
    std::vector<int> next(start.begin(), start.end() - 1);
    std::vector<int> neighbour(start[m]);
    std::vector<double> length(start[m]);
    for (const TieEdge& e : edges) {
        neighbour[next[e.a]] = e.b;
        length[next[e.a]++] = e.length;
        neighbour[next[e.b]] = e.a;
        length[next[e.b]++] = e.length;
    }

    const double inf = std::numeric_limits<double>::infinity();
    std::vector<double> best(m, inf);
    std::vector<int> parent(m, -1);
    std::vector<char> inTree(m, 0);
    using Entry = std::pair<double, int>;  // (best distance, index): lexicographic, least first
    std::priority_queue<Entry, std::vector<Entry>, std::greater<Entry>> queue;

    auto join = [&](int v) {
        inTree[v] = 1;
        for (int s = start[v]; s < start[v + 1]; ++s) {
            const int i = neighbour[s];
            if (inTree[i]) continue;
            if (parent[i] < 0 || length[s] < best[i]) {
                best[i] = length[s];
                parent[i] = v;
                queue.push({best[i], i});
            }
        }
    };
    join(0);
    added.clear();
    parentOf.clear();
    while (!queue.empty()) {
        const Entry top = queue.top();
        queue.pop();
        const int v = top.second;
        if (inTree[v] || top.first != best[v]) continue;  // superseded entry
        added.push_back(v);
        parentOf.push_back(parent[v]);
        join(v);
    }
}

}  // namespace

std::int32_t* fastMST(const double* points, int n, int k) {
    if ((points == nullptr && n > 0) || n < 0 || k < 1) return nullptr;
    for (std::size_t i = 0; i < static_cast<std::size_t>(n) * k; ++i) {
        if (!std::isfinite(points[i])) return primMST(points, n, k);
    }
    if (n < 2) return primMST(points, n, k);

    const PointGroups groups = groupEqualPoints(points, n, k);
    const int m = static_cast<int>(groups.first.size());
    std::vector<int> added, parentOf;  // distinct-point ids
    if (m > 1) {
        std::vector<double> distinct(static_cast<std::size_t>(m) * k);
        for (int i = 0; i < m; ++i) {
            std::memcpy(&distinct[static_cast<std::size_t>(i) * k],
                        points + static_cast<std::size_t>(groups.first[i]) * k, sizeof(double) * k);
        }
        std::vector<TieEdge> edges;
        if (!tiedSpanningEdges(distinct.data(), m, k, edges)) return primMST(points, n, k);
        primOverEdges(m, edges, added, parentOf);
        if (static_cast<int>(added.size()) != m - 1) return primMST(points, n, k);
    }

    const std::size_t numEdges = static_cast<std::size_t>(n) - 1;
    auto* out = static_cast<std::int32_t*>(allocateMSTArray(numEdges * 2 * sizeof(std::int32_t)));
    if (out == nullptr) return nullptr;
    std::size_t w = 0;
    auto emit = [&](int child, int parent) {
        out[2 * w] = child;
        out[2 * w + 1] = parent;
        ++w;
    };

    const std::vector<int>& rootGroup = groups.others[0];
    if (m == 1) {
        for (int i : rootGroup)
            emit(i, 0);
        return out;
    }
    // First step, then the two zero-distance groups it leaves, by index.
    const int first = added[0];
    const int firstPoint = groups.first[first];
    emit(firstPoint, 0);
    const std::vector<int>& firstGroup = groups.others[first];
    std::size_t r = 0, f = 0;
    while (r < rootGroup.size() || f < firstGroup.size()) {
        if (f == firstGroup.size() || (r < rootGroup.size() && rootGroup[r] < firstGroup[f])) {
            emit(rootGroup[r++], 0);
        } else {
            emit(firstGroup[f++], firstPoint);
        }
    }
    for (std::size_t s = 1; s < added.size(); ++s) {
        const int point = groups.first[added[s]];
        emit(point, groups.first[parentOf[s]]);
        for (int i : groups.others[added[s]])
            emit(i, point);
    }
    return out;
}
