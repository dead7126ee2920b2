#pragma once
// Two-dimensional complex FFT of single-precision values, in place.

#include <complex>

// Transforms every row, then every column, of a rows x cols array (row-major). Both sizes
// must be powers of two, otherwise it prints "complex_fft: input array must have dimensions
// a power of 2" and leaves the data alone. The forward transform uses exp(-2 pi i jk/n); the
// inverse uses exp(+2 pi i jk/n) and divides by n, so inverse(forward(x)) = x.
void complex_fft(std::complex<float>* data, int rows, int cols, int inverse);
