#include "catalogue/constellation_sky.h"

#include <cmath>
#include <cstring>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180.0;

Vec3 rotateZ(const Vec3& v, double a) {
    const double c = std::cos(a), s = std::sin(a);
    return {v.x * c - v.y * s, v.x * s + v.y * c, v.z};
}

Vec3 rotateX(const Vec3& v, double a) {
    const double c = std::cos(a), s = std::sin(a);
    return {v.x, v.y * c - v.z * s, v.y * s + v.z * c};
}

}  // namespace

Vec3 equatorialToGalactic(const Vec3& v) {
    return rotateZ(
        rotateX(rotateZ(v, kEquatorialToGalacticZ1Radians), kEquatorialToGalacticXRadians),
        kEquatorialToGalacticZ2Radians);
}

Vec3 galacticToEquatorial(const Vec3& v) {
    return rotateZ(
        rotateX(rotateZ(v, -kEquatorialToGalacticZ2Radians), -kEquatorialToGalacticXRadians),
        -kEquatorialToGalacticZ1Radians);
}

Phc skyDirection(double raHours, double decDegrees, double w) {
    const double ra = raHours * 15.0 * kDegree;
    const double dec = decDegrees * kDegree;
    const Vec3 eq{std::cos(dec) * std::cos(ra), std::cos(dec) * std::sin(ra), std::sin(dec)};
    return Phc::from(equatorialToGalactic(eq), w);
}

double longitudeDegrees(const Vec3& v) {
    if (v.x == 0.0 && v.y == 0.0) return 0.0;  // a pole or no direction: not 180 for -0
    double l = std::atan2(v.y, v.x) / kDegree;
    if (l < 0.0) l += 360.0;
    return l + 0.0;  // no negative zero
}

double latitudeDegrees(const Vec3& v) {
    double z = v.z > 1.0 ? 1.0 : (v.z < -1.0 ? -1.0 : v.z);
    return std::asin(z) / kDegree + 0.0;  // no negative zero
}

bool constellationNameMatches(const char* name, const char* query) {
    if (name == nullptr || query == nullptr) return false;
    static const char* const kSeparators[] = {" ", "(", "-", ".", "//"};
    const std::size_t queryLength = std::strlen(query);
    const char* p = name;
    for (;;) {
        if (queryLength <= std::strlen(p) && std::strncmp(p, query, queryLength) == 0) {
            return true;
        }
        // Move just after the earliest separator in the rest of the name.
        const char* next = nullptr;
        std::size_t skip = 0;
        for (const char* sep : kSeparators) {
            const char* at = std::strstr(p, sep);
            if (at != nullptr && (next == nullptr || at < next)) {
                next = at;
                skip = std::strlen(sep);
            }
        }
        if (next == nullptr) return false;
        p = next + skip;
    }
}
