// Drawing extrasolar planets: each orbit as a closed ellipse around its host star, with the
// host's label. A star's label is drawn once, with the first of its planets drawn in a row.

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "catalogue/extrasolar_planet_orbit.h"
#include "catalogue/star_list.h"
#include "starrender/star_labels.h"
#include "starrender/star_labels_gl.h"

namespace {

// One planet in an open eye-relative scope.
void drawPlanetIn(const StarFrame& frame, const ExtrasolarPlanet& planet, int labelMode,
                  double labelScale, double orbitScale) {
    if (planet.hostStar == nullptr) return;
    const StarObj& host = *planet.hostStar;
    const LabelPlacement at = labelPlacement(frame, host.pos, labelScale);
    if (!(at.size > 0.0) && !(orbitScale > 0.0)) return;
    const double drawnDepth = at.depth > kLabelMaxDepth ? kLabelMaxDepth : at.depth;
    const double radius =
        planetOrbitRadius(planet, frame.currLogScale, orbitScale, at.depth, drawnDepth);
    if (std::isfinite(radius) && radius > 0.0) {
        const auto vertices = planetOrbitVertices(planet, at.position, radius);
        glBegin(GL_LINE_LOOP);
        for (const Vec3& v : vertices)
            glVertex3d(v.x, v.y, v.z);
        glEnd();
    }
    if (labelMode == kLabelCommonName || labelMode == kLabelHD) {
        const std::optional<std::string> text = starLabelText(host, labelMode);
        if (text) drawLabelText(at, text->c_str());
    }
}

}  // namespace

void StarList::drawPlanet(int planetID, double currLogScale, int labelMode) {
    if (planetID < 0 || planetID >= numPlanets) {
        std::fprintf(stderr, "Err (drawPlanet): planetID out of range\n");
        return;
    }
    drawPlanet(&planets[planetID], currLogScale, labelMode);
}

void StarList::drawPlanet(const ExtrasolarPlanet* planet, double currLogScale, int labelMode) {
    if (planet == nullptr) {
        std::fprintf(stderr, "Err (drawPlanet): input parameter planet is NULL\n");
        return;
    }
    EyeRelativeScope scope(currLogScale);
    drawPlanetIn(scope.frame(), *planet, labelMode, param.labelScale,
                 param.extrasolarPlanetOrbitScale);
}

void StarList::drawPlanetOfStar(int starID, double currLogScale, int labelMode) {
    if (starID < 0 || starID >= count) {
        std::fprintf(stderr, "Err (drawPlanetOfStar): starID out of range\n");
        return;
    }
    drawPlanetOfStar(&stars[starID], currLogScale, labelMode);
}

void StarList::drawPlanetOfStar(const StarObj* starobj, double currLogScale, int labelMode) {
    if (starobj == nullptr) {
        std::fprintf(stderr, "Err (drawPlanetOfStar): input parameter starobj is NULL\n");
        return;
    }
    if (starobj->numPlanets <= 0 || starobj->planets == nullptr) return;
    EyeRelativeScope scope(currLogScale);
    int mode = labelMode;
    for (int i = 0; i < starobj->numPlanets; ++i) {
        const ExtrasolarPlanet* planet = starobj->planets[i];
        if (planet == nullptr) continue;
        // The star given may be a copy (the picked star): place the orbits at it.
        ExtrasolarPlanet atStar = *planet;
        atStar.hostStar = const_cast<StarObj*>(starobj);
        drawPlanetIn(scope.frame(), atStar, mode, param.labelScale,
                     param.extrasolarPlanetOrbitScale);
        mode = kLabelNone;
    }
}

void StarList::drawAllPlanets(double currLogScale, int labelMode) {
    if (numPlanets <= 0) return;
    EyeRelativeScope scope(currLogScale);
    const StarObj* labelled = nullptr;
    for (int i = 0; i < numPlanets; ++i) {
        const ExtrasolarPlanet& planet = planets[i];
        if (planet.hostStar == nullptr) continue;
        const int mode = planet.hostStar == labelled ? kLabelNone : labelMode;
        labelled = planet.hostStar;
        drawPlanetIn(scope.frame(), planet, mode, param.labelScale,
                     param.extrasolarPlanetOrbitScale);
    }
}
