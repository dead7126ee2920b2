// Builds the Sun's particle set, <data>/prtdata/SolarSystem/sun.prt, with its textures: a
// limb-darkened disk made from the solar surface map, and glow layers of growing size (one
// decade apart) around it, so that from any distance between the scene's log scales 5 and 15
// some layers appear at a visible size and together fall off like the glare of a bright star.
#include <cmath>
#include <cstdio>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/raster.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/text_input.h"

namespace {

constexpr int kDiskTexture = 256;          // texels across the disk texture
constexpr double kDiskRadiusTexels = 120;  // the disk's edge, leaving a soft margin
constexpr double kLimbDarkening = 0.6;     // linear law: I = 1 - u (1 - mu)
constexpr double kSolarRadiusM = 6.957e8;
constexpr double kSizeExponent = 9.0;  // sizes in the file are in 10^9 m

// Orthographic view of the surface map (equirectangular, longitude 0 in the middle) onto a
// disk, with limb darkening; alpha 1 on the disk with a one-texel soft edge.
void makeDisk(const Raster& surface, Raster* rgb, Raster* alpha) {
    rgb->width = rgb->height = alpha->width = alpha->height = kDiskTexture;
    rgb->components = 3;
    alpha->components = 1;
    rgb->pixels.assign(std::size_t(kDiskTexture) * kDiskTexture * 3, 0);
    alpha->pixels.assign(std::size_t(kDiskTexture) * kDiskTexture, 0);
    const double centre = kDiskTexture / 2.0;
    for (int y = 0; y < kDiskTexture; ++y) {
        for (int x = 0; x < kDiskTexture; ++x) {
            double nx = (x + 0.5 - centre) / kDiskRadiusTexels;
            double ny = (centre - y - 0.5) / kDiskRadiusTexels;
            double r2 = nx * nx + ny * ny;
            double edge = (1.0 - std::sqrt(r2)) * kDiskRadiusTexels + 0.5;  // texels inside
            alpha->at(x, y, 0) =
                static_cast<unsigned char>(std::lround(255 * std::min(1.0, std::max(0.0, edge))));
            if (r2 >= 1.0) r2 = 0.999999;
            double mu = std::sqrt(1.0 - r2);
            double lon = std::atan2(nx, mu), lat = std::asin(ny);
            double sample[3];
            sampleBilinear(surface, 0.5 + lon / (2 * kPi), 0.5 - lat / kPi, true, sample);
            double darkening = 1.0 - kLimbDarkening * (1.0 - mu);
            for (int c = 0; c < 3; ++c) {
                rgb->at(x, y, c) =
                    static_cast<unsigned char>(std::lround(std::min(255.0, sample[c] * darkening)));
            }
        }
    }
}

struct GlowLayer {
    double sizeM;  // full width of the sprite
    double alpha;
};
// The glare: from a few solar radii out to well beyond Saturn's orbit.
const GlowLayer kGlow[] = {{4e9, 0.9}, {3e10, 0.6}, {2e11, 0.4}, {1.5e12, 0.25}, {1e13, 0.15}};

}  // namespace

int main(int argc, char** argv) {
    const char* program = "datatree_sun";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        std::string source = std::string(argv[1]) + "/usr/share/stellarium/textures/sun.png";
        Raster surface = decodePicture(source, 3);
        Raster disk, alpha;
        makeDisk(surface, &disk, &alpha);
        std::string dir = std::string(argv[2]) + "/prtdata/SolarSystem";
        writePnmAtomically(dir + "/sun_disk.ppm", disk);
        writePnmAtomically(dir + "/sun_disk_alpha.pgm", alpha);

        const int particles = 1 + int(sizeof kGlow / sizeof kGlow[0]);
        std::string text = format("PARTICLE %d 2 %.1f\n", particles, kSizeExponent);
        text += "# The Sun at the origin: its disk and glow layers; positions and sizes in\n";
        text += "# units of 10^9 m; x y z size red green blue alpha texture\n";
        text += "texture disk file sun_disk.ppm sun_disk_alpha.pgm\n";
        text += "texture glow gaussian 255 10.0\n";
        // The disk sprite is wider than the disk by the texture's margin.
        double diskSize = 2.0 * kSolarRadiusM * (kDiskTexture / 2.0) / kDiskRadiusTexels;
        text +=
            format("0 0 0 %.4f 1.0 1.0 1.0 1.0 disk\n", diskSize / std::pow(10.0, kSizeExponent));
        for (const GlowLayer& g : kGlow) {
            text += format("0 0 0 %.4f 1.0 0.85 0.55 %.2f glow\n",
                           g.sizeM / std::pow(10.0, kSizeExponent), g.alpha);
        }
        writeFileAtomically(dir + "/sun.prt", text);
        return kExitOk;
    });
}
