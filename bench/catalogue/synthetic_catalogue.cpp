#include "bench/catalogue/synthetic_catalogue.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// A small linear congruential generator of uniform numbers in [0, 1).
struct Uniform {
    unsigned long long state;
    double operator()() {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<double>(state >> 11) / 9007199254740992.0;
    }
};

const char* const kClasses[] = {"O", "B", "A", "F", "G", "K", "M", "DA"};
const char* const kTypes[] = {"V", "IV", "III", "II", "I", "---"};

}  // namespace

std::string syntheticStarText(int n, double radius, unsigned seed, bool inFrontOnly) {
    Uniform u{seed * 2654435761ull + 1};
    std::string text = "NUM_STARS " + std::to_string(n) + "\nSIZE 1 16.4894\n";
    text +=
        "# synthetic catalogue: x y z err vx vy vz ex ey ez B-V L RGBA class num type HD HIC "
        "name\n";
    text.reserve(text.size() + static_cast<std::size_t>(n) * 170);
    char line[320];
    for (int i = 0; i < n; ++i) {
        double x, y, z;
        if (inFrontOnly) {
            // Inside a cone of 20 degrees around -z, distance uniform in volume.
            const double d = radius * std::cbrt(u()) + 0.5;
            const double cosT = 1.0 - u() * (1.0 - std::cos(20.0 * M_PI / 180.0));
            const double sinT = std::sqrt(1.0 - cosT * cosT), phi = 2 * M_PI * u();
            x = d * sinT * std::cos(phi);
            y = d * sinT * std::sin(phi);
            z = -d * cosT;
        } else {
            do {
                x = 2 * u() - 1, y = 2 * u() - 1, z = 2 * u() - 1;
            } while (x * x + y * y + z * z > 1.0);
            x *= radius, y *= radius, z *= radius;
        }
        const double lum = std::pow(10.0, -3.0 + 7.0 * u());
        const double bv = -0.3 + 2.2 * u();
        const int cls = static_cast<int>(u() * 8);
        const int type = static_cast<int>(u() * 6);
        std::snprintf(
            line, sizeof line,
            "%.6f %.6f %.6f %.6f %.4f %.4f %.4f %.4f %.4f %.4f %.3f %.6g %.4f %.4f %.4f 1.0000 "
            "%s %.1f %s %d %d Star %d\n",
            x, y, z, 0.001 + 0.2 * u(), 60 * u() - 30, 60 * u() - 30, 60 * u() - 30, u(), u(), u(),
            bv, lum, 0.6 + 0.4 * u(), 0.6 + 0.4 * u(), 0.6 + 0.4 * u(), kClasses[cls],
            static_cast<int>(u() * 100) / 10.0, kTypes[type], 1 + i, 100000 + i, i);
        text += line;
    }
    return text;
}

std::string writeTempFile(const std::string& text, const char* suffix) {
    std::string pattern = std::string("/tmp/skyrama-bench-stars-XXXXXX") + suffix;
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int fd = mkstemps(name.data(), static_cast<int>(std::string(suffix).size()));
    if (fd < 0) return "";
    FILE* f = fdopen(fd, "wb");
    if (f == nullptr) return "";
    const bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size();
    std::fclose(f);
    return ok ? std::string(name.data()) : "";
}
