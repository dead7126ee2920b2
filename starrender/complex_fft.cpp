#include "starrender/complex_fft.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kPi = 3.14159265358979323846;

bool isPowerOfTwoSize(int n) {
    return n > 0 && (n & (n - 1)) == 0;
}

// Iterative radix-2 transform of n values (n a power of two), in double precision.
void fft1d(std::complex<double>* a, int n, bool inverse) {
    for (int i = 1, j = 0; i < n; ++i) {
        int bit = n >> 1;
        for (; j & bit; bit >>= 1)
            j ^= bit;
        j ^= bit;
        if (i < j) std::swap(a[i], a[j]);
    }
    const double sign = inverse ? 1.0 : -1.0;
    for (int len = 2; len <= n; len <<= 1) {
        const double angle = sign * 2.0 * kPi / len;
        const std::complex<double> step(std::cos(angle), std::sin(angle));
        for (int start = 0; start < n; start += len) {
            std::complex<double> w(1.0, 0.0);
            for (int k = 0; k < len / 2; ++k) {
                const std::complex<double> u = a[start + k];
                const std::complex<double> v = a[start + k + len / 2] * w;
                a[start + k] = u + v;
                a[start + k + len / 2] = u - v;
                w *= step;
            }
        }
    }
    if (inverse) {
        for (int i = 0; i < n; ++i)
            a[i] /= static_cast<double>(n);
    }
}

}  // namespace

void complex_fft(std::complex<float>* data, int rows, int cols, int inverse) {
    if (!isPowerOfTwoSize(rows) || !isPowerOfTwoSize(cols)) {
        std::fprintf(stderr, "complex_fft: input array must have dimensions a power of 2");
        return;
    }
    const int n = rows > cols ? rows : cols;
    auto* work = static_cast<std::complex<double>*>(std::malloc(sizeof(std::complex<double>) * n));
    if (work == nullptr) {
        std::fprintf(stderr, "Insufficient storage for fft buffers");
        return;
    }
    const bool inv = inverse != 0;
    if (cols > 1) {
        for (int r = 0; r < rows; ++r) {
            std::complex<float>* row = data + static_cast<std::size_t>(r) * cols;
            for (int c = 0; c < cols; ++c)
                work[c] = row[c];
            fft1d(work, cols, inv);
            for (int c = 0; c < cols; ++c)
                row[c] = std::complex<float>(work[c]);
        }
    }
    if (rows > 1) {
        for (int c = 0; c < cols; ++c) {
            for (int r = 0; r < rows; ++r)
                work[r] = data[static_cast<std::size_t>(r) * cols + c];
            fft1d(work, rows, inv);
            for (int r = 0; r < rows; ++r) {
                data[static_cast<std::size_t>(r) * cols + c] = std::complex<float>(work[r]);
            }
        }
    }
    std::free(work);
}
