// Drawing star labels, marker records and distance-error bars with GL.

#include <GL/freeglut.h>

#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "catalogue/star_list.h"
#include "framework/overlays.h"
#include "starrender/label_strokes.h"
#include "starrender/star_labels.h"
#include "starrender/star_labels_gl.h"

namespace {

constexpr float kErrorBarColor[3] = {0.8f, 0.2f, 0.2f};
constexpr float kErrorBarEndSize = 4.0f;
constexpr float kDistanceErrorsColor[4] = {0.8f, 0.2f, 0.2f, 0.5f};
constexpr float kDistanceErrorsPointSize = 2.0f;

}  // namespace

EyeRelativeScope::EyeRelativeScope(double currLogScale) {
    double modelview[16], projection[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    frame_ = makeStarFrame(modelview, projection, viewport, currLogScale);
    glPushAttrib(GL_CURRENT_BIT | GL_ENABLE_BIT | GL_LINE_BIT | GL_POINT_BIT | GL_DEPTH_BUFFER_BIT |
                 GL_COLOR_BUFFER_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadMatrixd(frame_.rotation);
}

EyeRelativeScope::~EyeRelativeScope() {
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopAttrib();
}

void drawLabelText(const LabelPlacement& label, const char* text) {
    if (text == nullptr || text[0] == '\0' || !(label.size > 0.0)) return;
    glPushMatrix();
    glTranslated(label.position.x, label.position.y, label.position.z);
    // Billboard text, left-aligned with no offset (so starting at the label), drawn in one go.
    glPushMatrix();
    double modelview[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    const std::array<double, 16> facing =
        billboardMatrix(modelview, static_cast<float>(kLabelCharSize * label.size), 0.0);
    glLoadMatrixd(facing.data());
    glDepthFunc(GL_LEQUAL);
    const bool drawn = drawStrokeTextSegments(text);
    glDepthFunc(GL_LESS);
    glPopMatrix();
    if (!drawn) drawBillboardText(text, static_cast<float>(kLabelCharSize * label.size), 1, 0.0f);
    glPopMatrix();
}

void drawLabelMarker(const LabelPlacement& label, bool axisCross) {
    if (!(label.size > 0.0)) return;
    glPushMatrix();
    glTranslated(label.position.x, label.position.y, label.position.z);
    if (axisCross) {
        const double h = label.size / 2.0;
        glBegin(GL_LINES);
        glVertex3d(-h, 0.0, 0.0);
        glVertex3d(h, 0.0, 0.0);
        glVertex3d(0.0, -h, 0.0);
        glVertex3d(0.0, h, 0.0);
        glVertex3d(0.0, 0.0, -h);
        glVertex3d(0.0, 0.0, h);
        glEnd();
    } else {
        glutWireCube(label.size);
    }
    glPopMatrix();
}

void drawErrorBar(const ErrorBar& bar) {
    glColor3fv(kErrorBarColor);
    glBegin(GL_LINES);
    glVertex3d(bar.from.x, bar.from.y, bar.from.z);
    glVertex3d(bar.to.x, bar.to.y, bar.to.z);
    glEnd();
    glPointSize(kErrorBarEndSize);
    glBegin(GL_POINTS);
    glVertex3d(bar.from.x, bar.from.y, bar.from.z);
    glVertex3d(bar.to.x, bar.to.y, bar.to.z);
    glEnd();
    glPointSize(1.0f);
}

void StarList::drawLabelOfStar(int starID, double currLogScale, int labelMode, int showError) {
    if (starID < 0 || starID >= count) {
        std::fprintf(stderr, "Err (drawLabelOfStar): starID out of range\n");
        return;
    }
    drawLabelOfStar(&stars[starID], currLogScale, labelMode, showError);
}

void StarList::drawLabelOfStar(const StarObj* star, double currLogScale, int labelMode,
                               int showError) {
    if (star == nullptr) {
        std::fprintf(stderr, "Err (drawLabelOfStar): NULL input parameter\n");
        return;
    }
    const std::optional<std::string> text = starLabelText(*star, labelMode);
    if (!text) return;
    drawLabelOfStar(star, currLogScale, text->c_str(), showError);
}

void StarList::drawLabelOfStar(const StarObj* star, double currLogScale, const char* text,
                               int showError) {
    if (star == nullptr || text == nullptr) {
        std::fprintf(stderr, "Err (drawLabelOfStar): NULL input parameter\n");
        return;
    }
    EyeRelativeScope scope(currLogScale);
    const LabelPlacement label = labelPlacement(scope.frame(), star->pos, param.labelScale);
    if (text[0] != '\0') {
        drawLabelMarker(label, star->hd == -2);
        drawLabelText(label, text);
    }
    ErrorBar bar;
    if (showError && labelErrorBar(label, star->distErr, bar)) drawErrorBar(bar);
}

void StarList::drawDistanceErrors(double currLogScale) {
    int first = 0, last = -1;
    getStarRange(&first, &last);
    if (first == 0 && isSunRecord(0)) first = 1;
    if (last < first) return;
    if (param.vmagRangeOn) settleMagnitudes();

    glPushAttrib(GL_CURRENT_BIT | GL_ENABLE_BIT | GL_POINT_BIT | GL_LINE_BIT);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glColor4fv(kDistanceErrorsColor);
    glPointSize(kDistanceErrorsPointSize);
    glBegin(GL_LINES);
    for (int i = last; i >= first; --i) {
        const StarObj& star = stars[i];
        if (!passesSptypeSelection(star) || !passesAbsMagSelection(star) ||
            !passesVMagSelection(star.appMag)) {
            continue;
        }
        ErrorBar bar;
        if (!distanceErrorBar(star.pos, currLogScale, star.distErr, bar)) continue;
        glVertex3d(bar.from.x, bar.from.y, bar.from.z);
        glVertex3d(bar.to.x, bar.to.y, bar.to.z);
    }
    glEnd();
    glPopAttrib();
}
