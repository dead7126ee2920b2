#include "solar/planet_table.h"

#include <cmath>

const std::array<PlanetInfo, kPlanetCount> kPlanets = {{
    {"Mercury", {0.4f, 0.9f, 0.7f}, 5.791e10, 7.0, 2.0},
    {"Venus", {0.8f, 0.8f, 0.3f}, 1.082e11, 3.4, 8.0},
    {"Earth", {0.5f, 0.5f, 1.0f}, 1.496e11, 0.0, 8.0},
    {"Mars", {1.0f, 0.5f, 0.1f}, 2.2794e11, 1.9, 8.0},
    {"Jupiter", {1.0f, 0.8f, 0.1f}, 7.7833e11, 1.3, 32.0},
    {"Saturn", {0.9f, 0.9f, 0.6f}, 1.427e12, 2.5, 128.0},
    {"Uranus", {0.2f, 0.7f, 0.9f}, 2.871e12, 0.8, 128.0},
    {"Neptune", {0.3f, 0.3f, 1.0f}, 4.504e12, 1.8, 512.0},
    {"Pluto", {0.6f, 0.2f, 0.8f}, 5.9135e12, 17.1, 512.0},
}};

double planetOrbitLog10Radius(int planet) {
    static const std::array<double, kPlanetCount> log10Radii = [] {
        std::array<double, kPlanetCount> r{};
        for (int i = 0; i < kPlanetCount; ++i)
            r[i] = std::log10(kPlanets[i].orbitRadiusMetres);
        return r;
    }();
    return planet >= 0 && planet < kPlanetCount ? log10Radii[planet] : 0.0;
}
