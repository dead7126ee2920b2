// Builds <data>/stardata/star.sgi: the image of a star as a telescope shows it, a bright core
// with a soft halo and four faint diffraction spikes, white on black (64 x 64, RGB).
#include <algorithm>
#include <cmath>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/raster.h"

namespace {

constexpr int kSize = 64;
constexpr double kCoreSigma = 2.2;  // texels
constexpr double kHaloWidth = 4.0;  // Moffat scale, texels
constexpr double kHaloBeta = 2.5;   // Moffat exponent
constexpr double kHaloWeight = 0.35;
constexpr double kSpikeWeight = 0.25;
constexpr double kSpikeWidth = 0.7;  // texels

double profile(double dx, double dy) {
    double r2 = dx * dx + dy * dy;
    double core = std::exp(-r2 / (2 * kCoreSigma * kCoreSigma));
    double halo = kHaloWeight * std::pow(1.0 + r2 / (kHaloWidth * kHaloWidth), -kHaloBeta);
    double spikes = 0.0;
    for (auto [along, across] : {std::pair{dx, dy}, std::pair{dy, dx}}) {
        spikes += kSpikeWeight * std::exp(-across * across / (2 * kSpikeWidth * kSpikeWidth)) *
                  std::pow(1.0 + std::fabs(along) / 3.0, -1.6);
    }
    // Fade to black at the border so the sprite has no visible edge.
    double border = std::min(1.0, std::max(0.0, (kSize / 2.0 - std::sqrt(r2)) / 4.0));
    return (core + halo + spikes) * border;
}

}  // namespace

int main(int argc, char** argv) {
    const char* program = "datatree_star_texture";
    if (argc != 2) return usage(program, "<data-dir>");
    return runConverter(program, [&] {
        Raster image;
        image.width = image.height = kSize;
        image.components = 3;
        image.pixels.resize(kSize * kSize * 3);
        double peak = profile(0.5, 0.5);
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) {
                double v = profile(x + 0.5 - kSize / 2.0, y + 0.5 - kSize / 2.0) / peak;
                auto byte = static_cast<unsigned char>(std::lround(255 * std::min(1.0, v)));
                for (int c = 0; c < 3; ++c)
                    image.at(x, y, c) = byte;
            }
        }
        writeSgiAtomically(std::string(argv[1]) + "/stardata/star.sgi", image);
        return kExitOk;
    });
}
