// Layout of the sky grids: how strongly each sphere shows at a field of view, the texts and
// places of the grid labels, and the sine/cosine tables of the wire sphere. Plain
// computations; the GL side is in overlays_grid.cpp.

#include "framework/overlays.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace {

// The sphere of 24 x 12 lines fades out between 40 and 25 degrees, the 72 x 36 sphere
// lives between 10 and 40 (fullest at 25), the 144 x 72 sphere fades in from 25 to 10.
constexpr double kWideFovy = 40.0;
constexpr double kMiddleFovy = 25.0;
constexpr double kNarrowFovy = 10.0;
constexpr double kFadeSpan = 15.0;

constexpr double kPi = 3.14159265358979323846;

std::string format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
std::string format(const char* fmt, ...) {
    char buffer[64];
    va_list args;
    va_start(args, fmt);
    std::vsnprintf(buffer, sizeof buffer, fmt, args);
    va_end(args);
    return buffer;
}

// A crossing that already carries a main label: a longitude label on the equator or a
// latitude label on the zero meridian. Angles in steps of 2.5 degrees.
bool hasMainLabel(int lonSteps, int latSteps) {
    return (lonSteps % 6 == 0 && latSteps == 0) || (lonSteps == 0 && latSteps % 6 == 0);
}

// Crossings every 15 degrees (f > 40): all in the label colour.
void addCoarseCrossings(int kind, std::vector<GridLabel>& labels) {
    for (int lon = 15; lon <= 345; lon += 15) {
        for (int lat = -75; lat <= 75; lat += 15) {
            if (lat == 0) continue;
            std::string text =
                kind == 1 ? format("(%dh,%d)", lon / 15, lat) : format("(%d,%d)", lon, lat);
            labels.push_back({double(lon), double(lat), text, true, 1.0});
        }
    }
}

// Crossings every 5 degrees (25 < f <= 40): the 15-degree ones major.
void addMediumCrossings(int kind, double fovy, std::vector<GridLabel>& labels) {
    double minorWeight = (kWideFovy - fovy) / kFadeSpan;
    for (int lon = 0; lon <= 355; lon += 5) {
        for (int lat = -85; lat <= 85; lat += 5) {
            if (hasMainLabel(lon * 2 / 5, lat * 2 / 5)) continue;
            std::string text;
            if (kind != 1) {
                text = format("(%d,%d)", lon, lat);
            } else if (lon % 15 == 0) {
                text = format("(%dh,%d)", lon / 15, lat);
            } else {
                text = format("(%.2fh,%d)", lon / 15.0, lat);
            }
            bool major = lon % 15 == 0 && lat % 15 == 0;
            labels.push_back({double(lon), double(lat), text, major, major ? 1.0 : minorWeight});
        }
    }
}

// Crossings every 2.5 degrees (f <= 25): the 5-degree ones major. Angles are counted in
// steps of 2.5 degrees so that "multiple of 5 / 15" tests are exact.
void addFineCrossings(int kind, double fovy, std::vector<GridLabel>& labels) {
    double minorWeight = fovy > kNarrowFovy ? (kMiddleFovy - fovy) / kFadeSpan : 1.0;
    for (int i = 0; i < 144; ++i) {
        double lon = i * 2.5;
        std::string lonText;
        if (kind == 1) {
            lonText = i % 6 == 0 ? format("(%dh", i / 6) : format("(%.2fh", lon / 15.0);
        } else {
            lonText = i % 2 == 0 ? format("(%d", i * 5 / 2) : format("(%.1f", lon);
        }
        for (int j = -35; j <= 35; ++j) {
            if (hasMainLabel(i, j)) continue;
            double lat = j * 2.5;
            std::string text = j % 2 == 0 ? format("%s,%d)", lonText.c_str(), j * 5 / 2)
                                          : format("%s,%.1f)", lonText.c_str(), lat);
            bool major = i % 2 == 0 && j % 2 == 0;
            labels.push_back({lon, lat, text, major, major ? 1.0 : minorWeight});
        }
    }
}

}  // namespace

std::array<double, 3> skyGridSphereWeights(double fovy) {
    double f = fovy;
    std::array<double, 3> w{0.0, 0.0, 0.0};
    if (f >= kWideFovy) {
        w[0] = 1.0;
    } else if (f > kMiddleFovy) {
        w[0] = (f - kMiddleFovy) / kFadeSpan;
    }
    if (f > kNarrowFovy && f < kWideFovy) {
        w[1] = f <= kMiddleFovy ? (f - kNarrowFovy) / kFadeSpan : (kWideFovy - f) / kFadeSpan;
    }
    if (f <= kNarrowFovy) {
        w[2] = 1.0;
    } else if (f < kMiddleFovy) {
        w[2] = (kMiddleFovy - f) / kFadeSpan;
    }
    return w;
}

std::vector<GridLabel> skyGridMainLabels(int kind) {
    std::vector<GridLabel> labels;
    for (int lat = -90; lat <= 90; lat += 15) {
        labels.push_back({0.0, double(lat), format("%d", lat), true, 1.0});
    }
    for (int lon = 15; lon <= 345; lon += 15) {
        std::string text = kind == 1 ? format("%dh", lon / 15) : format("%d", lon);
        labels.push_back({double(lon), 0.0, text, true, 1.0});
    }
    return labels;
}

std::vector<GridLabel> skyGridCrossingLabels(int kind, double fovy) {
    std::vector<GridLabel> labels;
    if (std::isnan(fovy)) return labels;
    if (fovy > kWideFovy) {
        addCoarseCrossings(kind, labels);
    } else if (fovy > kMiddleFovy) {
        addMediumCrossings(kind, fovy, labels);
    } else {
        addFineCrossings(kind, fovy, labels);
    }
    return labels;
}

bool limitWireSphereCounts(int& slices, int& stacks) {
    if (stacks > kWireSphereMaxCount) {
        std::fprintf(stderr, "warning (myGlutWireSphere): too many stacks.\n");
        stacks = kWireSphereMaxCount;
    }
    if (slices > kWireSphereMaxCount) {
        std::fprintf(stderr, "warning (myGlutWireSphere): too many slices.\n");
        slices = kWireSphereMaxCount;
    }
    bool drawable = true;
    if (stacks < 1) {
        std::fprintf(stderr, "warning (myGlutWireSphere): too few stacks.\n");
        drawable = false;
    }
    if (slices < 1) {
        std::fprintf(stderr, "warning (myGlutWireSphere): too few slices.\n");
        drawable = false;
    }
    return drawable;
}

bool WireSphereTable::update(double newRadius, int newSlices, int newStacks) {
    // Keyed on the radius as well as the counts, so that spheres of different sizes that
    // share a count are never drawn from a stale table.
    newSlices = std::clamp(newSlices, 0, kWireSphereMaxCount);
    newStacks = std::clamp(newStacks, 0, kWireSphereMaxCount);
    bool built = sliceSin.size() == static_cast<size_t>(slices) + 1 &&
                 stackSin.size() == static_cast<size_t>(stacks) + 1;
    if (built && newRadius == radius && newSlices == slices && newStacks == stacks) {
        return false;
    }
    radius = newRadius;
    slices = newSlices;
    stacks = newStacks;
    sliceSin.resize(slices + 1);
    sliceCos.resize(slices + 1);
    for (int i = 0; i <= slices; ++i) {
        double angle = slices == 0 ? 0.0 : 2.0 * kPi * i / slices;
        sliceSin[i] = std::sin(angle);
        sliceCos[i] = std::cos(angle);
    }
    stackSin.resize(stacks + 1);
    stackCos.resize(stacks + 1);
    for (int j = 0; j <= stacks; ++j) {
        double latitude = stacks == 0 ? 0.0 : kPi * (0.5 - double(j) / stacks);
        stackSin[j] = std::sin(latitude) * radius;
        stackCos[j] = std::cos(latitude) * radius;
    }
    return true;
}
