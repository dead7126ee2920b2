#pragma once
// A k-d tree over distinct points for the fast spanning tree. The points are renumbered in the
// tree's storage order (spatially coherent); every index below is such a number, and
// originalIndex() gives back the caller's. Each node knows the bounding box of its points and
// whether they all lie in one component of the growing forest, so that the search for a
// point's nearest neighbours outside its own component skips whole subtrees.

#include <cstddef>
#include <vector>

class MSTKdTree {
  public:
    // Builds over m points of k coordinates (copied). m may be 0.
    MSTKdTree(const double* points, int m, int k);

    int size() const { return m_; }
    int originalIndex(int i) const { return original_[i]; }
    const double* point(int i) const { return &coords_[static_cast<std::size_t>(i) * k_]; }

    // Marks every node whose points all carry the same component label (comp[i]).
    void labelComponents(const std::vector<int>& comp);

    // The points outside component comp[query] nearest to point `query`: distances are
    // mstDistance values; bound is the largest distance of interest on entry and the distance
    // found on exit. Every point at exactly the final bound is listed in found (cleared
    // whenever a nearer point turns up). Returns false when found would exceed maxFound
    // entries (the search then stops).
    bool nearestOutside(int query, const std::vector<int>& comp, double& bound,
                        std::vector<int>& found, std::size_t maxFound) const;

    // Up to count nearest other points of `query`, nearest first: every point nearer than the
    // last one listed is listed (points as far as the last one may be left out).
    void nearestNeighbours(int query, int count, std::vector<std::pair<double, int>>& out) const;

  private:
    struct Node {
        int begin = 0, end = 0;     // range of points
        int left = -1, right = -1;  // children, -1 for a leaf
        int label = -1;             // the one component of all its points, or -1
    };
    // Deepest level of the tree: median splits of int-sized sets down to small leaves.
    static constexpr int kMaxDepth = 40;

    int build(const double* points, std::vector<int>& ids, int begin, int end);
    // Lower bound of mstDistance from q to any point in the node's box.
    template <int K>
    double boxDistance(const double* q, int node) const;
    template <int K>
    bool search(int query, const std::vector<int>& comp, double& bound, std::vector<int>& found,
                std::size_t maxFound) const;
    template <int K>
    void knn(int query, int count, std::vector<std::pair<double, int>>& out) const;

    int m_, k_;
    std::vector<double> coords_;  // by point number
    std::vector<int> original_;   // caller's index of each point
    std::vector<Node> nodes_;
    std::vector<double> lo_, hi_;  // node boxes, k values each
    std::vector<int> parent_;      // parent of each node (-1 for the root)
    std::vector<int> leafOf_;      // leaf holding each point
};
