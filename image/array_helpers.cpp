#include "image/array_helpers.h"

#include <algorithm>

namespace {

template <class T>
bool minMax(const T* data, std::size_t count, T* minimum, T* maximum) {
    if (count == 0) return false;
    auto [low, high] = std::minmax_element(data, data + count);
    *minimum = *low;
    *maximum = *high;
    return true;
}

template <class T>
T belowMaximum(const T* data, std::size_t count) {
    if (count == 0) return 0;
    const T maximum = *std::max_element(data, data + count);
    bool found = false;
    T best = maximum;
    for (std::size_t i = 0; i < count; ++i) {
        if (data[i] < maximum && (!found || data[i] > best)) {
            best = data[i];
            found = true;
        }
    }
    return best;
}

template <class T>
void clampAll(T* data, std::size_t count, T low, T high) {
    if (low > high) return;
    for (std::size_t i = 0; i < count; ++i)
        data[i] = std::clamp(data[i], low, high);
}

template <class T>
void normalizeAll(T* data, std::size_t count) {
    T minimum, maximum;
    if (!minMax(data, count, &minimum, &maximum)) return;
    const T range = maximum - minimum;
    for (std::size_t i = 0; i < count; ++i)
        data[i] = range > 0 ? (data[i] - minimum) / range : T(0);
}

}  // namespace

bool arrayMinMax(const float* data, std::size_t count, float* minimum, float* maximum) {
    return minMax(data, count, minimum, maximum);
}
bool arrayMinMax(const double* data, std::size_t count, double* minimum, double* maximum) {
    return minMax(data, count, minimum, maximum);
}
float largestBelowMaximum(const float* data, std::size_t count) {
    return belowMaximum(data, count);
}
double largestBelowMaximum(const double* data, std::size_t count) {
    return belowMaximum(data, count);
}
void clampArray(float* data, std::size_t count, float low, float high) {
    clampAll(data, count, low, high);
}
void clampArray(double* data, std::size_t count, double low, double high) {
    clampAll(data, count, low, high);
}
void normalizeArray(float* data, std::size_t count) {
    normalizeAll(data, count);
}
void normalizeArray(double* data, std::size_t count) {
    normalizeAll(data, count);
}

double meanBlueLevel(const unsigned char* rgb, std::size_t pixelCount) {
    if (pixelCount == 0) return 0;
    double sum = 0;
    for (std::size_t p = 0; p < pixelCount; ++p)
        sum += rgb[p * 3 + 2];
    return sum / double(pixelCount) / 255.0;
}

std::size_t countBytesEqual(const unsigned char* data, std::size_t count, unsigned char value) {
    return static_cast<std::size_t>(std::count(data, data + count, value));
}

long findInterval(const int* sorted, std::size_t count, int value) {
    if (count == 0 || value > sorted[count - 1]) return -1;
    if (value < sorted[0]) return 0;
    // The last element not greater than value.
    const int* at = std::upper_bound(sorted, sorted + count, value) - 1;
    return static_cast<long>(at - sorted);
}
