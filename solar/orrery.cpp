#include "solar/orrery.h"

#include <GL/freeglut.h>
#include <GL/gl.h>

#include <cmath>

#include "framework/overlays.h"
#include "solar/earth.h"
#include "solar/orrery_layout.h"
#include "solar/planet_table.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kFallbackOrbitPoints = 180;
constexpr float kPlanetShade = 0.9f;       // planets and trails at 0.9 of their colour
constexpr float kFallbackShade = 0.6f;     // fallback orbits at 0.6, ...
constexpr float kFallbackAlpha = 0.4f;     // ... 0.4 opaque
constexpr float kLabelTextScale = 0.012f;  // label text size per label size

void drawPlanetLabel(int planet, const PlanetLayout& layout) {
    glDepthFunc(GL_LESS);
    glPushMatrix();
    glTranslated(layout.position.x, layout.position.y, layout.position.z);
    glutWireCube(layout.labelSize);
    drawBillboardText(kPlanets[planet].name, static_cast<float>(layout.labelSize) * kLabelTextScale,
                      1, 2.0f);
    glDepthFunc(GL_ALWAYS);
    glPopMatrix();
}

void drawPlanetTrail(const float color[3], const PlanetLayout& layout) {
    glDepthFunc(GL_LESS);
    glBegin(GL_LINE_STRIP);
    for (const TrailVertex& v : layout.trail) {
        glColor4f(color[0], color[1], color[2], v.alpha);
        glVertex3d(v.position.x, v.position.y, v.position.z);
    }
    glEnd();
}

void drawEphemerisOrrery(Ephemeris& ephemeris, const OrrerySettings& settings,
                         const EarthModels& models, double currLogScale, long long moment) {
    // Reused from frame to frame, so a frame allocates nothing once the trails have grown.
    static OrreryLayout layout;
    layOutOrrery(ephemeris, settings, moment, currLogScale, layout);

    glLineWidth(1.5f);
    for (int i = 0; i < kPlanetCount; ++i) {
        const PlanetLayout& planet = layout.planets[i];
        const float color[3] = {kPlanetShade * kPlanets[i].color[0],
                                kPlanetShade * kPlanets[i].color[1],
                                kPlanetShade * kPlanets[i].color[2]};
        glColor4f(color[0], color[1], color[2], 1.0f);
        if (settings.showPlanetLabels && planet.placed) drawPlanetLabel(i, planet);
        drawPlanetTrail(color, planet);
    }
    if (layout.bodiesPlaced) {
        glDepthFunc(GL_LESS);
        drawEarth(layout.earth, layout.sun, moment, models, settings, currLogScale);
    }
}

}  // namespace

void drawFallbackOrbits(double currLogScale) {
    glDepthFunc(GL_LEQUAL);
    glLineWidth(2.0f);
    for (int i = 0; i < kPlanetCount; ++i) {
        const float* c = kPlanets[i].color;
        glColor4f(kFallbackShade * c[0], kFallbackShade * c[1], kFallbackShade * c[2],
                  kFallbackAlpha);
        glPushMatrix();
        double scale = std::pow(10.0, planetOrbitLog10Radius(i) - currLogScale);
        glScaled(scale, scale, scale);
        glRotated(kPlanets[i].inclinationDegrees, 1.0, 0.0, 0.0);
        glBegin(GL_LINE_LOOP);
        for (int k = 0; k < kFallbackOrbitPoints; ++k) {
            double a = static_cast<double>(k) / kFallbackOrbitPoints * 2.0 * kPi;
            glVertex3d(std::cos(a), std::sin(a), 0.0);
        }
        glEnd();
        glPopMatrix();
    }
    glDepthFunc(GL_LESS);
}

void drawOrreryAt(Ephemeris* ephemeris, const OrrerySettings& settings, const EarthModels& models,
                  double currLogScale, long long moment) {
    glPushMatrix();
    glRotated(kEphemerisToGalacticZ1Degrees, 0.0, 0.0, 1.0);
    glRotated(kEphemerisToGalacticXDegrees, 1.0, 0.0, 0.0);
    glRotated(kEphemerisToGalacticZ2Degrees, 0.0, 0.0, 1.0);
    glPushAttrib(GL_TEXTURE_BIT | GL_ENABLE_BIT | GL_LIGHTING_BIT);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glEnable(GL_COLOR_MATERIAL);

    if (ephemeris != nullptr && ephemeris->isInitialized()) {
        drawEphemerisOrrery(*ephemeris, settings, models, currLogScale, moment);
    } else {
        drawFallbackOrbits(currLogScale);
    }

    glPopAttrib();
    glDisable(GL_LINE_STIPPLE);
    glLineWidth(1.0f);
    glPopMatrix();
}

void drawOrrery(Ephemeris* ephemeris, const OrrerySettings& settings, const EarthModels& models,
                double currLogScale, int /*renderMode*/, double /*frame*/) {
    drawOrreryAt(ephemeris, settings, models, currLogScale, orreryMomentNow(settings));
}
