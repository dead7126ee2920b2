#include "image/image_arithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>

#include "image/file_util.h"

namespace {

// Grey levels of a value map: 0 .. 254 for the data, 255 for the background (values at or above
// the background, such as the far plane, and anything that is not a number).
template <class T>
std::vector<unsigned char> valuesToImage(const T* data, std::size_t count, T background,
                                         const char* message) {
    std::vector<unsigned char> image;
    try {
        image.resize(count);
    } catch (const std::bad_alloc&) {
        fputs(message, stderr);
        return {};
    }
    T minimum = std::numeric_limits<T>::infinity();
    T maximum = -std::numeric_limits<T>::infinity();
    for (std::size_t i = 0; i < count; ++i) {
        minimum = std::min(minimum, data[i]);
        if (data[i] < background) maximum = std::max(maximum, data[i]);
    }
    const T range = maximum - minimum;
    for (std::size_t i = 0; i < count; ++i) {
        const T v = data[i];
        if (!(v <= maximum)) {
            image[i] = 255;
            continue;
        }
        // A map with one data value (no range) puts it at 0.
        double level = range > 0 ? double(v - minimum) / double(range) * 254.0 + 0.5 : 0.0;
        level = std::clamp(std::isnan(level) ? 0.0 : level, 0.0, 254.0);
        image[i] = static_cast<unsigned char>(level);
    }
    return image;
}

// Argument checks shared by the difference measures; true when they may go on.
bool differenceArgumentsValid(const void* a, const void* b, const void* out, int width, int height,
                              int components) {
    if (a == nullptr || b == nullptr || out == nullptr) {
        fprintf(stderr, "Err (rmsImgs): <NULL> input encountered.\n");
        return false;
    }
    if (width < 1 || height < 1 || components < 1 || components > 4) {
        fprintf(stderr, "Err (rmsImgs): with imgW, imgH, or imgComp.\n");
        return false;
    }
    return true;
}

// Sums over the component pairs that take part (either value above the integer threshold):
// a^2 into signal and (a - b)^2 into noise, per component.
void sumDifferences(const unsigned char* a, const unsigned char* b, int width, int height,
                    int components, double threshold, double signal[4], double noise[4]) {
    const int t = std::isnan(threshold) ? -1 : static_cast<int>(std::clamp(threshold, -1.0, 256.0));
    std::fill(signal, signal + 4, 0.0);
    std::fill(noise, noise + 4, 0.0);
    const std::size_t pixels = std::size_t(width) * height;
    for (std::size_t p = 0; p < pixels; ++p) {
        for (int c = 0; c < components; ++c) {
            const int va = a[p * components + c];
            const int vb = b[p * components + c];
            if (va <= t && vb <= t) continue;
            signal[c] += double(va) * va;
            noise[c] += double(va - vb) * (va - vb);
        }
    }
}

}  // namespace

std::vector<unsigned char> floatToImage(const float* data, std::size_t count, float background) {
    return valuesToImage(data, count, background,
                         "floatToImage : Not enough memory to allocate for dataOut!\n\n");
}

std::vector<unsigned char> doubleToImage(const double* data, std::size_t count, double background) {
    return valuesToImage(data, count, background,
                         "doubleToImage : Not enough memory to allocate for dataOut!\n\n");
}

std::vector<double> floatToDouble(const float* data, std::size_t count) {
    try {
        return std::vector<double>(data, data + count);
    } catch (const std::bad_alloc&) {
        fputs("floatToDouble : Not enough memory to allocate for dataOut!\n\n", stderr);
        return {};
    }
}

std::vector<unsigned char> cropImage(const unsigned char* image, int width, int height,
                                     int components, int x, int y, int cropWidth, int cropHeight) {
    std::size_t bytes = 0;
    if (cropWidth < 1 || cropHeight < 1 || components < 1 ||
        !imageio::imageByteCount(cropWidth, cropHeight, components, 1, &bytes))
        return {};
    std::vector<unsigned char> crop;
    try {
        crop.resize(bytes);
    } catch (const std::bad_alloc&) {
        return {};
    }
    if (image == nullptr) return crop;
    const long long left = std::max(x, 0);
    const long long top = std::max(y, 0);
    const long long right = std::min<long long>(static_cast<long long>(x) + cropWidth, width);
    const long long bottom = std::min<long long>(static_cast<long long>(y) + cropHeight, height);
    for (long long row = top; row < bottom && left < right; ++row) {
        const unsigned char* from = image + (row * width + left) * components;
        std::copy(from, from + (right - left) * components,
                  crop.data() + (row - top) * cropWidth * components);
    }
    return crop;
}

void pasteImage(unsigned char* dest, int width, int height, int components,
                const unsigned char* src, int srcWidth, int srcHeight, int x, int y) {
    if (dest == nullptr || src == nullptr || components < 1) return;
    const long long left = std::max(x, 0);
    const long long top = std::max(y, 0);
    const long long right = std::min<long long>(static_cast<long long>(x) + srcWidth, width);
    const long long bottom = std::min<long long>(static_cast<long long>(y) + srcHeight, height);
    for (long long row = top; row < bottom && left < right; ++row) {
        const unsigned char* from = src + ((row - y) * srcWidth + (left - x)) * components;
        std::copy(from, from + (right - left) * components,
                  dest + (row * width + left) * components);
    }
}

std::vector<unsigned char> diffImgs(const unsigned char* a, const unsigned char* b, int width,
                                    int height, int components) {
    if (!differenceArgumentsValid(a, b, a, width, height, components)) return {};
    const std::size_t bytes = std::size_t(width) * height * components;
    std::vector<unsigned char> difference;
    try {
        difference.resize(bytes);
    } catch (const std::bad_alloc&) {
        fprintf(stderr, "Err (rmsImgs): cannot allocate memory to imgDiff.\n");
        return {};
    }
    for (std::size_t i = 0; i < bytes; ++i)
        difference[i] = static_cast<unsigned char>(std::abs(int(a[i]) - int(b[i])));
    return difference;
}

void rmsImgs(const unsigned char* a, const unsigned char* b, int width, int height, int components,
             double* rms, double threshold) {
    if (!differenceArgumentsValid(a, b, rms, width, height, components)) return;
    double signal[4], noise[4];
    sumDifferences(a, b, width, height, components, threshold, signal, noise);
    const double pixels = double(width) * height;
    for (int c = 0; c < components; ++c)
        rms[c] = std::sqrt(noise[c] / pixels);
}

void snrImgs(const unsigned char* a, const unsigned char* b, int width, int height, int components,
             double* snr, double threshold) {
    if (!differenceArgumentsValid(a, b, snr, width, height, components)) return;
    double signal[4], noise[4];
    sumDifferences(a, b, width, height, components, threshold, signal, noise);
    for (int c = 0; c < components; ++c) {
        if (noise[c] > 0)
            snr[c] = signal[c] / noise[c];
        else
            snr[c] = signal[c] > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    }
}

void directionAngles(const double vector[3], double* longitude, double* latitude) {
    constexpr double kDegreesPerRadian = 180.0 / 3.141592653589793;
    const double length =
        std::sqrt(vector[0] * vector[0] + vector[1] * vector[1] + vector[2] * vector[2]);
    if (!(length > 0)) {
        *longitude = 0;
        *latitude = 0;
        return;
    }
    const double x = vector[0] / length, y = vector[1] / length, z = vector[2] / length;
    *longitude = std::atan2(y, x) * kDegreesPerRadian;
    if (*longitude < 0) *longitude += 360.0;
    *latitude = std::asin(std::clamp(z, -1.0, 1.0)) * kDegreesPerRadian;
}
