#include "solar/earth.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "common_package/glm/src/glm.h"
#include "framework/overlays.h"
#include "solar/julian_date.h"
#include "solar/orrery_layout.h"
#include "solar/planet_table.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTropicLatitudeDegrees = 23.5;
constexpr double kLayerLift = 1.001;  // night lights and clouds sit just above the ground
// Below this radius on the screen (a globe under two pixels across) the three globe models,
// some 27,000 triangles, would cover a pixel or two at most: they are left out, and the
// axes and the latitude grid still mark the Earth.
constexpr double kMinGlobeRadiusPixels = 1.0;

// A circle of the given radius in the xy plane at height z.
void drawCircle(double radius, double z, int segments) {
    glBegin(GL_LINE_LOOP);
    for (int i = 0; i < segments; ++i) {
        double a = 2.0 * kPi * i / segments;
        glVertex3d(radius * std::cos(a), radius * std::sin(a), z);
    }
    glEnd();
}

void drawGlobeLayers(const EarthModels& models) {
    glEnable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    glEnable(GL_LIGHT3);
    glPushMatrix();
    if (models.day != nullptr) glmDraw(models.day, GLM_SMOOTH | GLM_TEXTURE | GLM_MATERIAL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    // The night lights are lit by the ambient light only, so they show on the dark side.
    glDisable(GL_LIGHT3);
    glScaled(kLayerLift, kLayerLift, kLayerLift);
    if (models.night != nullptr) glmDraw(models.night, GLM_SMOOTH | GLM_TEXTURE | GLM_COLOR);
    glEnable(GL_LIGHT3);
    glScaled(kLayerLift, kLayerLift, kLayerLift);
    if (models.cloud != nullptr) glmDraw(models.cloud, GLM_SMOOTH | GLM_TEXTURE | GLM_MATERIAL);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPopMatrix();
    glDisable(GL_LIGHT3);
    glEnable(GL_LIGHT0);
    glDisable(GL_LIGHTING);
}

// The radius in pixels of a sphere of the given radius at centre (current modelview), or
// infinity when it reaches to the eye or behind it, where the estimate does not hold.
double projectedRadiusPixels(const Vec3& centre, double radius) {
    double m[16], p[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    glGetDoublev(GL_PROJECTION_MATRIX, p);
    glGetIntegerv(GL_VIEWPORT, viewport);
    double eye[3];
    for (int r = 0; r < 3; ++r)
        eye[r] = m[r] * centre.x + m[4 + r] * centre.y + m[8 + r] * centre.z + m[12 + r];
    double scale = 0.0;  // the largest stretch of the modelview
    for (int c = 0; c < 3; ++c) {
        scale = std::max(scale, std::sqrt(m[4 * c] * m[4 * c] + m[4 * c + 1] * m[4 * c + 1] +
                                          m[4 * c + 2] * m[4 * c + 2]));
    }
    const double r = radius * scale;
    // Clip w of the centre; where the sphere comes near the eye plane, no estimate.
    const double w = p[3] * eye[0] + p[7] * eye[1] + p[11] * eye[2] + p[15];
    const double wReach = r * (std::fabs(p[3]) + std::fabs(p[7]) + std::fabs(p[11]));
    if (!(w > 2.0 * wReach) || !(w > 0.0)) return HUGE_VAL;
    const double pixelsPerUnit =
        std::max(std::fabs(p[0]) * viewport[2], std::fabs(p[5]) * viewport[3]) / 2.0;
    return r * pixelsPerUnit / (w - wReach);
}

void drawEarthGrid() {
    glDisable(GL_LIGHTING);
    glLineWidth(1.0f);
    glColor4f(0.8f, 0.8f, 0.2f, 0.4f);
    myGlutWireSphere(1.01, 24, 12);
    glLineWidth(4.0f);
    glColor4f(0.8f, 0.2f, 0.2f, 0.4f);
    drawCircle(1.02, 0.0, 24);
    glLineWidth(3.0f);
    glColor4f(0.2f, 0.2f, 0.8f, 0.4f);
    double tropic = kTropicLatitudeDegrees * kPi / 180.0;
    drawCircle(1.01 * std::cos(tropic), std::sin(tropic), 24);
    drawCircle(1.01 * std::cos(tropic), -std::sin(tropic), 24);
}

}  // namespace

void drawEarth(const Phc& earth, const Phc& sun, long long gmtSeconds, const EarthModels& models,
               const OrrerySettings& settings, double currLogScale) {
    Phc towardsSun = phcNormalized(phcSub(sun, earth));
    const GLfloat lightPosition[4] = {static_cast<GLfloat>(towardsSun.x),
                                      static_cast<GLfloat>(towardsSun.y),
                                      static_cast<GLfloat>(towardsSun.z), 0.0f};
    UtcDate date;
    if (!utcDateFromGmt(gmtSeconds, date)) {
        fputs(kEarthTooOldMessage, stderr);
        return;
    }
    const double spin = earthSpinAngle(date, towardsSun.xyz());
    const PlacedBody placed = placeBody(earth, currLogScale);
    const double globe =
        std::pow(10.0, earthGlobeLog10Scale(currLogScale, settings.showEarthThousandfold));

    // The models are of unit radius; the clouds, the outermost layer, lie 1.001^2 out.
    const bool globeShows =
        projectedRadiusPixels(placed.position, globe * kLayerLift * kLayerLift) >=
        kMinGlobeRadiusPixels;

    glPushMatrix();
    glTranslated(placed.position.x, placed.position.y, placed.position.z);
    glLightfv(GL_LIGHT3, GL_POSITION, lightPosition);
    const float* color = kPlanets[kEarthMoonBarycentre].color;
    glColor4f(0.8f * color[0], 0.8f * color[1], 0.8f * color[2], 0.8f);
    glScaled(globe, globe, globe);

    // The models have their poles along y; the turn about x puts them along the
    // equatorial frame's z.
    glPushMatrix();
    glRotated(90.0, 1.0, 0.0, 0.0);
    glRotated(spin, 0.0, 1.0, 0.0);
    glPushMatrix();
    glScaled(2.0, 2.0, 2.0);
    drawAxes(false, "", 1.0f);
    glPopMatrix();

    if (globeShows) drawGlobeLayers(models);

    glRotated(90.0, 1.0, 0.0, 0.0);
    drawEarthGrid();
    glPopMatrix();
    glPopMatrix();
}
