#pragma once
// Small helpers on float and double arrays, byte images and sorted int arrays.

#include <cstddef>

// Smallest and largest element; false (outputs untouched) for an empty array.
bool arrayMinMax(const float* data, std::size_t count, float* minimum, float* maximum);
bool arrayMinMax(const double* data, std::size_t count, double* minimum, double* maximum);

// The largest element strictly below the maximum; the maximum itself when every element
// equals it; 0 for an empty array.
float largestBelowMaximum(const float* data, std::size_t count);
double largestBelowMaximum(const double* data, std::size_t count);

// Clamps every element into [low, high]; does nothing when low > high.
void clampArray(float* data, std::size_t count, float low, float high);
void clampArray(double* data, std::size_t count, double low, double high);

// Rescales to [0, 1] by (v - min) / (max - min); a constant array becomes all 0.
void normalizeArray(float* data, std::size_t count);
void normalizeArray(double* data, std::size_t count);

// The mean of the third byte (blue) of each RGB pixel, divided by 255; 0 for no pixels.
double meanBlueLevel(const unsigned char* rgb, std::size_t pixelCount);

// The number of bytes equal to value.
std::size_t countBytesEqual(const unsigned char* data, std::size_t count, unsigned char value);

// Binary search in an ascending array: the index of value, or of the interval
// [sorted[i], sorted[i+1]) holding it; 0 below the first element, -1 above the last
// (and -1 for an empty array).
long findInterval(const int* sorted, std::size_t count, int value);
