#pragma once
// The in-memory image: row-major bytes without row padding, with its size beside it.

#include <vector>

struct ImageBuffer {
    std::vector<unsigned char> pixels;  // width * height * components bytes; empty = no image
    int width = 0;
    int height = 0;
    int components = 0;  // 1 luminance, 2 luminance-alpha, 3 RGB, 4 RGBA

    bool empty() const { return pixels.empty(); }
};

// A row-major map of single-precision values (a depth map), with its size.
struct DepthMap {
    std::vector<float> depth;  // width * height values; empty = no map
    int width = 0;
    int height = 0;

    bool empty() const { return depth.empty(); }
};
