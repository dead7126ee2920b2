#include "starrender/star_texture_image.h"

#include <cmath>
#include <complex>
#include <cstdio>

#include "common_package/math/src/pow2.h"
#include "image/pnm_file.h"
#include "image/sgi_file.h"
#include "starrender/complex_fft.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kN = kStarTextureSize;
constexpr int kC = kStarTextureCentre;
// Wavelengths (metres) of the red, green and blue channels of the Airy texture.
constexpr double kAiryWavelength[3] = {6.5e-07, 5.425e-07, 4.35e-07};
constexpr double kAiryAngleScale = 3e-6;  // radians at r = 32 pixels for filterSize 0

unsigned char clampByte(double v) {
    if (!(v > 0.0)) return 0;
    if (v >= 255.0) return 255;
    return static_cast<unsigned char>(v);
}

// 255 above the cutoff, else the value scaled so that the cutoff maps to 255.
unsigned char cutoffByte(double v, double cutoff) {
    if (v > cutoff) return 255;
    if (!(cutoff > 0.0)) return 0;
    return clampByte(std::trunc(v / cutoff * 255.0));
}

// For each destination index, the source indices it covers and their weights (the
// destination pixel's footprint on the source axis, normalised).
struct Footprint {
    std::vector<int> first;  // per destination: index into taps
    std::vector<int> count;
    std::vector<int> index;
    std::vector<double> weight;
};

Footprint footprint(int from, int to) {
    Footprint f;
    const double scale = static_cast<double>(from) / to;
    for (int d = 0; d < to; ++d) {
        double a = d * scale, b = (d + 1) * scale;
        f.first.push_back(static_cast<int>(f.index.size()));
        int n = 0;
        for (int s = static_cast<int>(std::floor(a)); s < b && s < from; ++s) {
            double overlap = std::fmin(b, s + 1.0) - std::fmax(a, static_cast<double>(s));
            if (overlap <= 0.0) continue;
            f.index.push_back(s);
            f.weight.push_back(overlap / (b - a));
            ++n;
        }
        f.count.push_back(n);
    }
    return f;
}

}  // namespace

std::vector<unsigned char> gaussStarImage(float filterSize, float filterCutoff) {
    std::vector<unsigned char> img(kN * kN * 4);
    const double width = kN * static_cast<double>(filterSize);
    for (int i = 0; i < kN; ++i) {
        for (int j = 0; j < kN; ++j) {
            const double di = i + 0.5 - kC, dj = j + 0.5 - kC;
            const double r2 = di * di + dj * dj;
            const double intensity = width > 0.0 ? std::exp(-r2 / (width * width)) : 0.0;
            const unsigned char v = cutoffByte(intensity, filterCutoff);
            unsigned char* p = &img[(i * kN + j) * 4];
            p[0] = p[1] = p[2] = p[3] = v;
        }
    }
    return img;
}

std::vector<unsigned char> airyStarImage(float filterSize, float filterCutoff,
                                         float telescopeDiam) {
    std::vector<double> amplitude(kN * kN * 3);
    double largest = 0.0;
    for (int i = 0; i < kN; ++i) {
        for (int j = 0; j < kN; ++j) {
            const double r =
                std::sqrt(static_cast<double>((i - kC) * (i - kC) + (j - kC) * (j - kC)));
            const double theta = (2.0 * filterSize + 1.0) * (r / kC) * kAiryAngleScale;
            for (int c = 0; c < 3; ++c) {
                const double x = kPi * telescopeDiam * std::fmax(theta, 1e-12) / kAiryWavelength[c];
                const double a = std::cyl_bessel_j(1.0, x) / x;
                amplitude[(i * kN + j) * 3 + c] = a;
                if ((i == 0 && j == 0 && c == 0) || a > largest) largest = a;
            }
        }
    }
    std::vector<unsigned char> img(kN * kN * 4);
    for (int p = 0; p < kN * kN; ++p) {
        int sum = 0;
        for (int c = 0; c < 3; ++c) {
            const double v = largest > 0.0 ? amplitude[p * 3 + c] / largest : 0.0;
            img[p * 4 + c] = cutoffByte(v, filterCutoff);
            sum += img[p * 4 + c];
        }
        img[p * 4 + 3] = static_cast<unsigned char>(sum / 3);
    }
    return img;
}

std::vector<unsigned char> fftStarImage(float filterSize, float filterExp, float filterCutoff,
                                        float filterOrder, const float filterRGB[3],
                                        int filterType) {
    std::vector<std::complex<float>> aperture(kN * kN, std::complex<float>(0.0f, 0.0f));
    aperture[kC * kN + kC] = 255.0f;
    std::vector<float> filter(kN * kN, 0.0f);
    const double rf = filterSize * static_cast<double>(kC);
    if (filterType == 1) {
        std::printf("fft texture (_FILTER_SQUARE)!\n");
    } else if (filterType == 2) {
        std::printf("fft texture (_FILTER_CIRCULAR)!\n");
    } else {
        std::printf("fft texture (_FILTER_BUTTERWORTH)!\n");
    }
    for (int i = 0; i < kN; ++i) {
        for (int j = 0; j < kN; ++j) {
            const double rho =
                std::sqrt(static_cast<double>((i - kC) * (i - kC) + (j - kC) * (j - kC)));
            double f;
            if (filterType == 1) {
                f = (std::abs(i - kC) < rf && std::abs(j - kC) < rf) ? 1.0 : 0.0;
            } else if (filterType == 2) {
                f = std::fmin(1.0, std::fmax(0.0, rf - rho));
            } else if (rf > 0.0) {
                f = 1.0 / (std::pow(rho / rf, 2.0 * filterOrder) * 0.414 + 1.0);
            } else {
                f = rho == 0.0 ? 1.0 : 0.0;
            }
            filter[i * kN + j] = static_cast<float>(f);
        }
    }
    complex_fft(aperture.data(), kN, kN, 0);
    for (int p = 0; p < kN * kN; ++p)
        aperture[p] *= filter[p];
    complex_fft(aperture.data(), kN, kN, 1);

    std::vector<double> power(kN * kN);
    double largest = 0.0;
    for (int p = 0; p < kN * kN; ++p) {
        power[p] = std::norm(std::complex<double>(aperture[p]));
        if (power[p] > largest) largest = power[p];
    }
    const double limit = largest * filterCutoff;
    std::vector<unsigned char> img(kN * kN * 4);
    for (int p = 0; p < kN * kN; ++p) {
        double g = 0.0;
        if (limit > 0.0) {
            const double v = std::fmin(power[p], limit) / limit;
            g = std::trunc(std::pow(v, static_cast<double>(filterExp)) * 255.0);
        } else if (power[p] > 0.0) {
            g = 255.0;
        }
        const unsigned char gb = clampByte(g);
        for (int c = 0; c < 3; ++c)
            img[p * 4 + c] = clampByte(std::trunc(gb * static_cast<double>(filterRGB[c])));
        img[p * 4 + 3] = 255;
    }
    return img;
}

std::vector<unsigned char> rescaleRGBA(const std::vector<unsigned char>& src, int width, int height,
                                       int newWidth, int newHeight) {
    const Footprint fx = footprint(width, newWidth);
    const Footprint fy = footprint(height, newHeight);
    std::vector<double> rows(static_cast<std::size_t>(height) * newWidth * 4, 0.0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < newWidth; ++x) {
            double acc[4] = {0, 0, 0, 0};
            for (int t = fx.first[x]; t < fx.first[x] + fx.count[x]; ++t) {
                const unsigned char* s =
                    &src[(static_cast<std::size_t>(y) * width + fx.index[t]) * 4];
                for (int c = 0; c < 4; ++c)
                    acc[c] += s[c] * fx.weight[t];
            }
            for (int c = 0; c < 4; ++c)
                rows[(static_cast<std::size_t>(y) * newWidth + x) * 4 + c] = acc[c];
        }
    }
    std::vector<unsigned char> out(static_cast<std::size_t>(newWidth) * newHeight * 4);
    for (int y = 0; y < newHeight; ++y) {
        for (int x = 0; x < newWidth; ++x) {
            double acc[4] = {0, 0, 0, 0};
            for (int t = fy.first[y]; t < fy.first[y] + fy.count[y]; ++t) {
                const double* s = &rows[(static_cast<std::size_t>(fy.index[t]) * newWidth + x) * 4];
                for (int c = 0; c < 4; ++c)
                    acc[c] += s[c] * fy.weight[t];
            }
            for (int c = 0; c < 4; ++c) {
                out[(static_cast<std::size_t>(y) * newWidth + x) * 4 + c] =
                    clampByte(std::round(acc[c]));
            }
        }
    }
    return out;
}

bool fileStarImage(const char* fileName, std::vector<unsigned char>& rgba, int* outWidth,
                   int* outHeight) {
    int width = 0, height = 0, channels = 0;
    std::vector<unsigned char> pixels = read_pnm(fileName, &width, &height, &channels);
    if (pixels.empty()) pixels = read_sgi(fileName, &width, &height, &channels);
    if (pixels.empty()) {
        std::fprintf(stderr, "Err : reading [%s]\n", fileName);
        return false;
    }
    if (channels != 3 && channels != 4) {
        std::fprintf(stderr, "ERR : texFile [%s] should have three or four channels\n\n", fileName);
        return false;
    }
    if (width < 1 || height < 1 || width > kMaxStarTextureFileSide ||
        height > kMaxStarTextureFileSide) {
        std::fprintf(stderr,
                     "ERR : texFile [%s] of %d x %d pixels is too large (at most %d a side)\n\n",
                     fileName, width, height, kMaxStarTextureFileSide);
        return false;
    }
    const std::size_t numPixels = static_cast<std::size_t>(width) * height;
    rgba.assign(numPixels * 4, 0);
    for (std::size_t p = 0; p < numPixels; ++p) {
        const unsigned char* s = &pixels[p * channels];
        unsigned char* d = &rgba[p * 4];
        d[0] = s[0];
        d[1] = s[1];
        d[2] = s[2];
        if (channels == 4) {
            d[3] = s[3];
        } else {
            const double len =
                std::sqrt(static_cast<double>(s[0] * s[0] + s[1] * s[1] + s[2] * s[2]));
            d[3] = static_cast<unsigned char>(std::fmin(255.0, len));
        }
    }
    const int w2 = nearestPowerOfTwo(width), h2 = nearestPowerOfTwo(height);
    if (w2 != width || h2 != height) {
        rgba = rescaleRGBA(rgba, width, height, w2, h2);
        width = w2;
        height = h2;
    }
    *outWidth = width;
    *outHeight = height;
    return true;
}

double halfLightRadius(const unsigned char* image, int width, int height, int channels,
                       double fraction) {
    const std::size_t n = static_cast<std::size_t>(width) * height;
    std::vector<double> intensity(n), rho(n);
    double total = 0.0;
    for (int row = 0; row < height; ++row) {
        for (int col = 0; col < width; ++col) {
            const std::size_t p = static_cast<std::size_t>(row) * width + col;
            double sum = 0.0;
            for (int c = 0; c < channels; ++c)
                sum += image[p * channels + c];
            intensity[p] = sum / channels;
            total += intensity[p];
            const double x = (col - (width - 1) / 2.0) / width;
            const double y = (row - (height - 1) / 2.0) / height;
            rho[p] = std::sqrt(x * x + y * y);
        }
    }
    // An image without light has all of it (none) inside any radius.
    auto inside = [&](double r) {
        if (!(total > 0.0)) return 0.0;
        double in = 0.0;
        for (std::size_t p = 0; p < n; ++p) {
            if (rho[p] < r) in += intensity[p];
        }
        return in / total;
    };
    double lo = 0.0, hi = std::sqrt(0.5);
    double r = (lo + hi) / 2.0;
    double q = inside(r);
    const double stop = 1.0 / (width > height ? width : height);
    while (hi - lo >= stop) {
        if (q <= fraction) {
            lo = r;
        } else {
            hi = r;
        }
        r = (lo + hi) / 2.0;
        q = inside(r);
    }
    return r;
}

void applyAlphaRamp(unsigned char* rgba, int width, int height) {
    const std::size_t n = static_cast<std::size_t>(width) * height;
    for (std::size_t p = 0; p < n; ++p) {
        unsigned char* px = &rgba[p * 4];
        const int m = (px[0] + px[1] + px[2]) / 3;
        int alpha;
        if (m > 223) {
            alpha = 255;
        } else if (m < 32) {
            alpha = 0;
        } else {
            alpha = (m - 32) * 255 / 191;
            alpha = alpha < 0 ? 0 : (alpha > 255 ? 255 : alpha);
        }
        px[3] = static_cast<unsigned char>(alpha);
    }
}
