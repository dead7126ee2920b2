#include "catalogue/mst_kdtree.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "catalogue/mst.h"

namespace {

constexpr int kLeafSize = 8;

}  // namespace

MSTKdTree::MSTKdTree(const double* points, int m, int k) : m_(m > 0 ? m : 0), k_(k) {
    std::vector<int> ids(m_);
    for (int i = 0; i < m_; ++i)
        ids[i] = i;
    if (m_ == 0) return;
    nodes_.reserve(static_cast<std::size_t>(2 * (m_ / kLeafSize + 1)));
    build(points, ids, 0, m_);
    coords_.resize(static_cast<std::size_t>(m_) * k_);
    for (int s = 0; s < m_; ++s) {
        std::copy_n(points + static_cast<std::size_t>(ids[s]) * k_, k_,
                    &coords_[static_cast<std::size_t>(s) * k_]);
    }
    original_ = std::move(ids);
    parent_.assign(nodes_.size(), -1);
    leafOf_.assign(m_, -1);
    for (int n = 0; n < static_cast<int>(nodes_.size()); ++n) {
        const Node& node = nodes_[n];
        if (node.left >= 0) {
            parent_[node.left] = n;
            parent_[node.right] = n;
        } else {
            for (int s = node.begin; s < node.end; ++s)
                leafOf_[s] = n;
        }
    }
}

int MSTKdTree::build(const double* points, std::vector<int>& ids, int begin, int end) {
    const int index = static_cast<int>(nodes_.size());
    nodes_.push_back(Node{begin, end, -1, -1, -1});
    lo_.resize(lo_.size() + k_);
    hi_.resize(hi_.size() + k_);
    double* lo = &lo_[static_cast<std::size_t>(index) * k_];
    double* hi = &hi_[static_cast<std::size_t>(index) * k_];
    for (int j = 0; j < k_; ++j) {
        lo[j] = hi[j] = points[static_cast<std::size_t>(ids[begin]) * k_ + j];
    }
    for (int s = begin + 1; s < end; ++s) {
        const double* p = points + static_cast<std::size_t>(ids[s]) * k_;
        for (int j = 0; j < k_; ++j) {
            lo[j] = std::min(lo[j], p[j]);
            hi[j] = std::max(hi[j], p[j]);
        }
    }
    if (end - begin <= kLeafSize) return index;

    int axis = 0;
    for (int j = 1; j < k_; ++j) {
        if (hi[j] - lo[j] > hi[axis] - lo[axis]) axis = j;
    }
    const int mid = begin + (end - begin) / 2;
    const int k = k_;
    std::nth_element(ids.begin() + begin, ids.begin() + mid, ids.begin() + end,
                     [points, k, axis](int a, int b) {
                         return points[static_cast<std::size_t>(a) * k + axis] <
                                points[static_cast<std::size_t>(b) * k + axis];
                     });
    const int left = build(points, ids, begin, mid);
    const int right = build(points, ids, mid, end);
    nodes_[index].left = left;
    nodes_[index].right = right;
    return index;
}

void MSTKdTree::labelComponents(const std::vector<int>& comp) {
    // Children are stored after their parent, so a backward pass sees them first.
    for (int n = static_cast<int>(nodes_.size()) - 1; n >= 0; --n) {
        Node& node = nodes_[n];
        if (node.left < 0) {
            int label = comp[node.begin];
            for (int s = node.begin + 1; s < node.end && label >= 0; ++s) {
                if (comp[s] != label) label = -1;
            }
            node.label = label;
        } else {
            const int a = nodes_[node.left].label;
            node.label = (a >= 0 && a == nodes_[node.right].label) ? a : -1;
        }
    }
}

// Each axis gap is the difference of the query and a box face, which are coordinates of the
// same points the distances are taken between; rounding is monotonic, so the gaps, their
// squares and their sum (in the same order as mstDistance) never exceed a true distance.
// K is the number of coordinates when known at compile time (0: k_).
template <int K>
double MSTKdTree::boxDistance(const double* q, int node) const {
    const int k = K > 0 ? K : k_;
    const double* lo = &lo_[static_cast<std::size_t>(node) * k];
    const double* hi = &hi_[static_cast<std::size_t>(node) * k];
    double sum = 0.0;
    for (int j = 0; j < k; ++j) {
        double gap = 0.0;
        if (q[j] < lo[j]) {
            gap = lo[j] - q[j];
        } else if (q[j] > hi[j]) {
            gap = q[j] - hi[j];
        }
        sum += gap * gap;
    }
    return sum;
}

bool MSTKdTree::nearestOutside(int query, const std::vector<int>& comp, double& bound,
                               std::vector<int>& found, std::size_t maxFound) const {
    found.clear();
    if (m_ == 0) return true;
    return k_ == 3 ? search<3>(query, comp, bound, found, maxFound)
                   : search<0>(query, comp, bound, found, maxFound);
}

void MSTKdTree::nearestNeighbours(int query, int count,
                                  std::vector<std::pair<double, int>>& out) const {
    out.clear();
    if (m_ == 0 || count <= 0) return;
    if (k_ == 3) {
        knn<3>(query, count, out);
    } else {
        knn<0>(query, count, out);
    }
}

template <int K>
bool MSTKdTree::search(int query, const std::vector<int>& comp, double& bound,
                       std::vector<int>& found, std::size_t maxFound) const {
    const int k = K > 0 ? K : k_;
    const double* q = &coords_[static_cast<std::size_t>(query) * k];
    const int own = comp[query];
    double limit = bound;
    // Nodes still to visit with their box distances; the nearer child is visited first. The
    // stack holds at most one node per level of the tree and the one in hand.
    struct Pending {
        int node;
        double distance;
    };
    Pending stack[kMaxDepth + 2];
    int top = 0;
    if (nodes_[0].label != own) stack[top++] = {0, boxDistance<K>(q, 0)};
    while (top > 0) {
        const Pending item = stack[--top];
        if (item.distance > limit) continue;
        const Node& node = nodes_[item.node];
        if (node.left < 0) {
            for (int s = node.begin; s < node.end; ++s) {
                if (comp[s] == own) continue;
                const double d = mstDistance(q, &coords_[static_cast<std::size_t>(s) * k], k);
                if (d < limit) {
                    limit = d;
                    found.clear();
                    found.push_back(s);
                } else if (d == limit) {
                    if (found.size() >= maxFound) {
                        bound = limit;
                        return false;
                    }
                    found.push_back(s);
                }
            }
            continue;
        }
        const bool leftOpen = nodes_[node.left].label != own;
        const bool rightOpen = nodes_[node.right].label != own;
        const double dl = leftOpen ? boxDistance<K>(q, node.left) : 0.0;
        const double dr = rightOpen ? boxDistance<K>(q, node.right) : 0.0;
        if (leftOpen && rightOpen) {
            if (dl <= dr) {
                stack[top++] = {node.right, dr};
                stack[top++] = {node.left, dl};
            } else {
                stack[top++] = {node.left, dl};
                stack[top++] = {node.right, dr};
            }
        } else if (leftOpen) {
            stack[top++] = {node.left, dl};
        } else if (rightOpen) {
            stack[top++] = {node.right, dr};
        }
    }
    bound = limit;
    return true;
}

// Starts in the query's own leaf and climbs: at each ancestor the other child is searched
// (nearest first) while it may hold a nearer point, and the climb stops once every point
// outside the ancestor's box is at least as far as the current last neighbour. The bound of
// that test is one axis gap squared, a lower bound of the true distances like boxDistance.
template <int K>
void MSTKdTree::knn(int query, int count, std::vector<std::pair<double, int>>& out) const {
    const int k = K > 0 ? K : k_;
    const double* q = &coords_[static_cast<std::size_t>(query) * k];
    const double inf = std::numeric_limits<double>::infinity();
    double worst = inf;  // distance of the last neighbour once count are held
    // out stays sorted by (distance, point); the lists are short, so insertion is cheapest.
    auto consider = [&](int s) {
        if (s == query) return;
        const double d = mstDistance(q, &coords_[static_cast<std::size_t>(s) * k], k);
        const std::pair<double, int> entry{d, s};
        if (static_cast<int>(out.size()) < count) {
            out.push_back(entry);
        } else if (d < worst) {
            out.back() = entry;
        } else {
            return;
        }
        for (std::size_t i = out.size() - 1; i > 0 && out[i] < out[i - 1]; --i)
            std::swap(out[i], out[i - 1]);
        if (static_cast<int>(out.size()) == count) worst = out.back().first;
    };
    struct Pending {
        int node;
        double distance;
    };
    Pending stack[kMaxDepth + 2];
    auto descend = [&](int start, double startDistance) {
        int top = 0;
        stack[top++] = {start, startDistance};
        while (top > 0) {
            const Pending item = stack[--top];
            if (item.distance > worst) continue;
            const Node& node = nodes_[item.node];
            if (node.left < 0) {
                for (int s = node.begin; s < node.end; ++s)
                    consider(s);
                continue;
            }
            const double dl = boxDistance<K>(q, node.left);
            const double dr = boxDistance<K>(q, node.right);
            if (dl <= dr) {
                stack[top++] = {node.right, dr};
                stack[top++] = {node.left, dl};
            } else {
                stack[top++] = {node.left, dl};
                stack[top++] = {node.right, dr};
            }
        }
    };

    int node = leafOf_[query];
    for (int s = nodes_[node].begin; s < nodes_[node].end; ++s)
        consider(s);
    while (node != 0) {
        // Everything outside this node's box is at least one axis gap away.
        if (worst < inf) {
            const double* lo = &lo_[static_cast<std::size_t>(node) * k];
            const double* hi = &hi_[static_cast<std::size_t>(node) * k];
            double gap = inf;
            for (int j = 0; j < k; ++j) {
                gap = std::min(gap, std::min(q[j] - lo[j], hi[j] - q[j]));
            }
            if (gap * gap >= worst) break;
        }
        const int up = parent_[node];
        const int sibling = nodes_[up].left == node ? nodes_[up].right : nodes_[up].left;
        const double d = boxDistance<K>(q, sibling);
        if (d <= worst) descend(sibling, d);
        node = up;
    }
}
