// Builds the Sun's particle set, <data>/prtdata/SolarSystem/sun.prt, with its textures: a
// limb-darkened disk made from the solar surface map, and glow layers around it.
//
// The scene draws the set between log scales 5 and 15 with reference scale 15: below the
// reference the sprites keep the size they have there, so the set keeps one look on screen
// whatever the eye's distance from the Sun. Sizes are therefore chosen at scale 15, where
// the eye sits about 10^15.2 m from the Sun: the disk as the Sun looks from the Earth (half a
// degree across) and glow layers of about 1.5, 4, 10 and 25 degrees that add up to a glare.
#include <algorithm>
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
    double halfAngleDeg;  // radius of the visible glow
    double alpha;
};
const GlowLayer kGlow[] = {{1.5, 1.0}, {4.0, 1.0}, {10.0, 0.6}, {25.0, 0.3}};

constexpr double kReferenceScale = 15.0;      // log10 m of a drawing unit where sizes are true
constexpr double kEyeOffset = 0.2;            // the set is drawn 0.2 decades below the eye's scale
constexpr double kSolarHalfAngleDeg = 0.267;  // the Sun's radius seen from the Earth
constexpr int kGlowTexture = 128;             // texels across the glow texture
constexpr double kGlowExtent = 0.5;           // visible glow radius / sprite half-size

// The glow: white, with a bright centre and long wings as opacity (a Gaussian core and a
// Lorentzian wing, faded to nothing at the sprite's edge). White colour keeps the particle's
// own colour; the opacity alone shapes the light.
void makeGlow(Raster* rgb, Raster* alpha) {
    rgb->width = rgb->height = alpha->width = alpha->height = kGlowTexture;
    rgb->components = 3;
    alpha->components = 1;
    rgb->pixels.assign(std::size_t(kGlowTexture) * kGlowTexture * 3, 255);
    alpha->pixels.assign(std::size_t(kGlowTexture) * kGlowTexture, 0);
    const double centre = kGlowTexture / 2.0;
    for (int y = 0; y < kGlowTexture; ++y) {
        for (int x = 0; x < kGlowTexture; ++x) {
            double r = std::hypot(x + 0.5 - centre, y + 0.5 - centre) / centre;  // 0..1 at the edge
            double core = std::exp(-(r / 0.25) * (r / 0.25));
            double wing = 1.0 / (1.0 + (r / 0.12) * (r / 0.12));
            double fade = std::min(1.0, std::max(0.0, (1.0 - r) / 0.3));
            double v = (0.6 * core + 0.4 * wing) * fade;
            alpha->at(x, y, 0) = static_cast<unsigned char>(std::lround(255 * v));
        }
    }
}

// Full sprite width (units of 10^15 m) that shows a half-angle at the eye's distance.
double spriteSize(double halfAngleDeg, double radiusFraction) {
    double eyeDistanceUnits = std::pow(10.0, kEyeOffset);
    return 2.0 * std::tan(halfAngleDeg * kDegree) * eyeDistanceUnits / radiusFraction;
}

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
        Raster glow, glowAlpha;
        makeGlow(&glow, &glowAlpha);
        writePnmAtomically(dir + "/sun_glow.ppm", glow);
        writePnmAtomically(dir + "/sun_glow_alpha.pgm", glowAlpha);

        const int particles = 1 + int(sizeof kGlow / sizeof kGlow[0]);
        std::string text = format("PARTICLE %d 2 %.1f\n", particles, kReferenceScale);
        text += "# The Sun at the origin: its disk and glow layers. Sizes hold at the reference\n";
        text += "# scale 15 (units of 10^15 m), where the eye is 10^15.2 m away: disk 0.5 deg\n";
        text += "# across, glow 1.5 to 25 deg. x y z size red green blue alpha texture\n";
        text += "texture disk file sun_disk.ppm sun_disk_alpha.pgm\n";
        text += "texture glow file sun_glow.ppm sun_glow_alpha.pgm\n";
        double diskFraction = kDiskRadiusTexels / (kDiskTexture / 2.0);
        text += format("0 0 0 %.6f 1.0 1.0 1.0 1.0 disk\n",
                       spriteSize(kSolarHalfAngleDeg, diskFraction));
        for (const GlowLayer& g : kGlow) {
            text += format("0 0 0 %.6f 1.0 0.9 0.7 %.2f glow\n",
                           spriteSize(g.halfAngleDeg, kGlowExtent), g.alpha);
        }
        writeFileAtomically(dir + "/sun.prt", text);
        return kExitOk;
    });
}
