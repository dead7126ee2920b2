#include "scene/picking.h"

#include <GL/freeglut.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "framework/framework_state.h"
#include "framework/overlays.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"
#include "platform/panel_host.h"
#include "scene/catalogue_layers.h"
#include "scene/control_panel.h"
#include "scene/look_at.h"
#include "scene/panel_state.h"
#include "scene/pick_state.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/star_names.h"

namespace {

void pickRecord(const StarObj& star) {
    pickState.pickedStar = star;
    pickState.starPicked = true;
    showPickedStar();
}

// After a failed search the fields describe the picked star again.
void restoreFields() {
    if (somethingPicked()) showPickedStar();
}

bool findByNumber(const StarList& stars, const char* text, int field) {
    const char* what = field == kFindByHD ? "HD" : "HIC";
    const std::optional<int> number = parseWholeNumber(text);
    if (!number) {
        std::fprintf(stderr, "Err (findStar): %s number [%s] is not a whole number.\n", what, text);
        restoreFields();
        return false;
    }
    const StarObj* all = stars.getStarArray();
    for (int i = 0; *number > 0 && all != nullptr && i < stars.getNumRecords(); ++i) {
        const int n = field == kFindByHD ? all[i].hd : all[i].hic;
        if (n > 0 && n == *number) {
            pickRecord(all[i]);
            return true;
        }
    }
    std::fprintf(stderr, "Err (findStar): no star has %s number [%d].\n", what, *number);
    restoreFields();
    return false;
}

bool findByName(const StarList& stars, const char* text) {
    if (text[0] == '\0') {
        std::fprintf(stderr, "Err (findStar): no name given.\n");
        restoreFields();
        return false;
    }
    const StarObj* all = stars.getStarArray();
    for (int i = 0; all != nullptr && i < stars.getNumRecords(); ++i) {
        const std::string_view name(all[i].commonName, strnlen(all[i].commonName, kStarNameSize));
        if (starNameMatches(name, text)) {
            pickRecord(all[i]);
            return true;
        }
    }
    std::fprintf(stderr, "Err (findStar): no star is named [%s].\n", text);
    restoreFields();
    return false;
}

}  // namespace

void sceneViewport(int viewport[4]) {
    if (panelEmbedded && platform::panelExists()) {
        platform::freeViewportArea(viewport[0], viewport[1], viewport[2], viewport[3]);
    } else {
        glGetIntegerv(GL_VIEWPORT, viewport);
    }
}

void pickAt(int x, int y) {
    StarList* stars = sceneStars();
    if (stars == nullptr) return;
    int viewport[4];
    sceneViewport(viewport);
    StarObj hit = makeEmptyStarObj();
    if (stars->pickStar(x, y, currLogScale, &hit, 1.0f, viewport) > 0) {
        pickRecord(hit);
    } else {
        pickState.starPicked = false;
        placeAnchor(x, y);
    }
    refreshPanel();
}

void placeAnchor(int x, int y) {
    if (x >= 0) {
        double modelview[16], projection[16];
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        glGetDoublev(GL_PROJECTION_MATRIX, projection);
        modelview[12] = modelview[13] = modelview[14] = 0.0;  // directions only
        int viewport[4];
        sceneViewport(viewport);
        double ox = 0.0, oy = 0.0, oz = 0.0;
        if (gluUnProject(x, viewport[3] - y - 1, 0.0, modelview, projection, viewport, &ox, &oy,
                         &oz) == GL_TRUE) {
            const Vec3 direction = normalized(Vec3{ox, oy, oz});
            if (length(direction) > 0.0) {
                const Phc at{direction.x, direction.y, direction.z,
                             panelState.logScale + kAnchorDepthDecades};
                pickState.anchor.pos = at;
                pickState.anchor.catalogPos = at;
            }
        }
    }
    pickState.pickedStar = pickState.anchor;
    showPickedStar();  // the anchor's record leaves the catalogue fields empty
    const PickedStarTexts& t = pickState.texts;
    pickState.anchorLabel =
        std::string(" (") + t.galacticL.c_str() + "," + t.galacticB.c_str() + ")";
}

void showPickedStar() {
    const StarList* stars = sceneStars();
    const double noLSR[3] = {0.0, 0.0, 0.0};
    const double* lsr = stars != nullptr ? stars->getStarParameter().lsr : noLSR;
    fillPickedStarTexts(pickState.texts, pickState.pickedStar, lsr, sceneSettings.showRaDec);
    refreshPanel();
}

bool findStar(const char* text, int field) {
    if (text == nullptr) return false;
    if (std::strcmp(text, "anchor") == 0) {
        pickState.starPicked = false;
        placeAnchor(-1, -1);
        sceneSettings.showAnchor = true;
        refreshPanel();
        return true;
    }
    const StarList* stars = sceneStars();
    if (stars == nullptr) return false;
    if (field == kFindByHD || field == kFindByHIC) return findByNumber(*stars, text, field);
    return findByName(*stars, text);
}

bool findConstellation(const char* text, bool byCode) {
    const StarList* stars = sceneStars();
    if (stars == nullptr || text == nullptr) return false;
    StarObj star = makeEmptyStarObj();
    if (text[0] != '\0' && findConstellationStar(*stars, text, byCode, &star)) {
        pickRecord(star);
        return true;
    }
    std::fprintf(stderr,
                 byCode ? "Err (findStar): no constellation has the code [%s].\n"
                        : "Err (findStar): no constellation is named [%s].\n",
                 text);
    restoreFields();
    return false;
}

void printPickedStar() {
    const StarList* stars = sceneStars();
    if (!pickState.starPicked && !pickState.texts.hdNumber.empty())
        findStar(pickState.texts.hdNumber.c_str(), kFindByHD);
    if (stars == nullptr || !pickState.starPicked) {
        std::printf("Please pick a star and press the button again.\n");
        std::fflush(stdout);
        return;
    }
    std::printf("\n");
    printStarInformation(*stars, pickState.pickedStar, stdout);
    std::fflush(stdout);
}

void lookAtPickedStar() {
    if (sceneSettings.lockView) {
        std::fprintf(stderr, "Screen locked.\n");
        return;
    }
    if (!somethingPicked()) {
        std::printf("Please pick a star and press the button again.\n");
        std::fflush(stdout);
        return;
    }
    double modelview[16];
    {
        WindowScope scope(mainWindow);
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    }
    const LookAtTurn turn =
        lookAtTurn(currentView(), modelviewRotation(modelview), pickState.pickedStar.pos);
    if (turn.start) startTurn(turn.axisEye, turn.angle, turn.speed, TurnCentre::Eye);
}

void drawStarInfo(bool withPlanets) {
    if (!somethingPicked()) return;
    const StarObj& star = pickState.pickedStar;
    const bool planets = pickedStarHasPlanets();
    const float first = sceneSettings.lockView ? 0.12f : 0.05f;
    float height = 0.19f;
    if (planets) height += withPlanets ? 0.03f + star.numPlanets * 0.12f : 0.03f;
    const float fill[4] = {0.1f, 0.1f, 0.1f, 0.5f};
    const float border[4] = {0.8f, 0.8f, 0.8f, 0.8f};
    drawScreenBox(0.01f, first - 0.03f, 0.265f, height, fill, true, border);

    Phc p = star.pos;
    phcNormalize(p);
    glLineWidth(1.5f);
    glColor4f(0.8f, 0.4f, 0.8f, 0.9f);
    float y = first;
    for (const std::string& line :
         starInfoLines(pickState.texts, p.xyz(), p.w, sceneSettings.showRaDec)) {
        drawScreenText(line.c_str(), 0.02f, y, 0.00018f, 1, 0);
        y += 0.03f;
    }
    if (!planets) return;
    char text[96];
    std::snprintf(text, sizeof text, "Extrasolar planets: %d", star.numPlanets);
    drawScreenText(text, 0.02f, y, 0.00018f, 1, 0);
    y += 0.03f;
    if (!withPlanets) return;
    glColor4f(0.4f, 0.4f, 0.6f, 0.7f);
    for (int i = 0; i < star.numPlanets; ++i) {
        const ExtrasolarPlanet* planet = star.planets[i];
        if (planet == nullptr) continue;
        const char* formats[4] = {"mass: %.2f jupiter", "orbit period: %.2f d",
                                  "semimajor: %.2f AU", "eccentricity: %.2f"};
        const double values[4] = {planet->mass, planet->period, planet->semimajorAxis,
                                  planet->eccentricity};
        for (int k = 0; k < 4; ++k) {
            std::snprintf(text, sizeof text, formats[k], values[k]);
            drawScreenText(text, 0.02f, y, 0.00015f, 1, 0);
            y += 0.03f;
        }
    }
}
