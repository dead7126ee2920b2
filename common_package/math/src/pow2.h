#pragma once
// Texture sizes: the nearest power of two, the lower one winning a tie
// (300 -> 256, 384 -> 256, 400 -> 512).

inline int nearestPowerOfTwo(int n) {
    if (n <= 1) return 1;
    int lower = 1;
    while (lower * 2 <= n && lower < (1 << 30)) lower *= 2;
    if (lower == n || lower >= (1 << 30)) return lower;
    int upper = lower * 2;
    return (n - lower <= upper - n) ? lower : upper;
}

inline bool isPowerOfTwo(int n) { return n > 0 && (n & (n - 1)) == 0; }
