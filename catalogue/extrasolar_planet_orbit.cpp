#include "catalogue/extrasolar_planet_orbit.h"

#include <cmath>
#include <limits>

#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr float kPlanetValueLimit = 1e7f;

std::string_view column(std::string_view line, std::size_t first, std::size_t width) {
    if (first >= line.size()) return {};
    return line.substr(first, width);
}

std::string_view trimmed(std::string_view text) {
    text = trimTrailing(text);
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    return text;
}

float floatOf(std::string_view field) {
    float v = 0.0f;
    TextScanner scan(trimmed(field));
    if (!scan.scanFloat(v)) return std::numeric_limits<float>::quiet_NaN();
    return v;
}

}  // namespace

PlanetLineKind parsePlanetLine(std::string_view line, PlanetLine& planet) {
    planet = PlanetLine{};
    TextScanner numberScan(column(line, kPlanetNumberColumn.first, kPlanetNumberColumn.width));
    if (!numberScan.scanInt(planet.number) || planet.number <= 0) return PlanetLineKind::Ignored;

    const std::string_view massField =
        trimmed(column(line, kPlanetMassColumn.first, kPlanetMassColumn.width));
    if (massField == "Not a Planet") return PlanetLineKind::Ignored;
    planet.mass = floatOf(massField);
    if (planet.mass <= 0.0f) return PlanetLineKind::Ignored;

    if (countWords(line, kPlanetLineMinWords) < kPlanetLineMinWords ||
        line.size() < kPlanetLineMinLength) {
        return PlanetLineKind::TooShort;
    }

    int hd = 0;
    TextScanner hdScan(trimmed(column(line, kPlanetHDColumn.first, kPlanetHDColumn.width)));
    planet.hd = (hdScan.scanInt(hd) && hd >= 1) ? hd : -1;
    const std::string_view name =
        trimmed(column(line, kPlanetNameColumn.first, kPlanetNameColumn.width));
    planet.starName.assign(name.substr(0, kPlanetStarNameSize - 1));
    planet.period = floatOf(column(line, kPlanetPeriodColumn.first, kPlanetPeriodColumn.width));
    planet.semimajorAxis = floatOf(column(line, kPlanetAxisColumn.first, kPlanetAxisColumn.width));
    planet.eccentricity =
        floatOf(column(line, kPlanetEccentricityColumn.first, kPlanetEccentricityColumn.width));
    planet.k = floatOf(column(line, kPlanetKFirstColumn, std::string_view::npos));
    return PlanetLineKind::Planet;
}

const char* planetValueError(const PlanetLine& p) {
    if (!(p.mass > 0.0f)) return "mass of planet should be positive.";
    if (!(p.mass < kPlanetValueLimit)) return "mass of planet is exceptionally large.";
    if (!(p.period > 0.0f)) return "orbiting period of planet should be positive.";
    if (!(p.period < kPlanetValueLimit)) return "orbiting period is exceptionally large.";
    if (!(p.semimajorAxis > 0.0f)) return "orbiting radius of planet should be positive.";
    if (!(p.semimajorAxis < kPlanetValueLimit)) return "orbiting radius is exceptionally large.";
    if (!(p.eccentricity >= 0.0f && p.eccentricity < 1.0f)) {
        return "eccentricity of planet should be within [0,1).";
    }
    if (!(p.k >= 0.0f)) return "K (m/s) of planet should be positive.";
    return nullptr;
}

std::array<Vec3, kOrbitVertices> planetOrbitVertices(const ExtrasolarPlanet& planet,
                                                     const Vec3& center, double radius) {
    // Rotation by the phase about the orbit normal (Rodrigues).
    const Vec3 n =
        normalized(Vec3{planet.orbitNormal[0], planet.orbitNormal[1], planet.orbitNormal[2]});
    const double angle = planet.phase * kPi / 180.0;
    const double c = std::cos(angle), s = std::sin(angle);
    auto rotate = [&](const Vec3& v) {
        return v * c + cross(n, v) * s + n * (dot(n, v) * (1.0 - c));
    };
    std::array<Vec3, kOrbitVertices> out;
    const double e = planet.eccentricity;
    const double b = planet.axisRatio;
    for (int i = 0; i < kOrbitVertices; ++i) {
        const double t = i * (2.0 * kPi / kOrbitVertices);
        const Vec3 local{0.0, radius * std::cos(t) + e * radius, radius * b * std::sin(t)};
        out[i] = center + rotate(local);
    }
    return out;
}

double planetOrbitRadius(const ExtrasolarPlanet& planet, double currLogScale, double orbitScale,
                         double hostDepth, double drawnDepth) {
    return kOrbitSizeFactor * orbitScale *
           std::pow(10.0, planet.logOrbitSize - currLogScale + drawnDepth - hostDepth);
}
