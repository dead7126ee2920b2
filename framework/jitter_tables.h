#pragma once
// Sub-pixel offsets of the jittered (anti-aliased) passes of a frame.

#include <vector>

struct JitterOffset {
    double jx, jy;  // offsets in pixels, both between 0 and 1
};

// The offsets for a jitter size in pass order, or null for a size without a table
// (supported sizes: 2, 3, 4, 5, 6, 8, 9, 12, 16).
const JitterOffset* jitterTableFor(int size);

// Every size that has a table, ascending.
const std::vector<int>& supportedJitterSizes();
