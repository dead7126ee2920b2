// Drawing the constellations: figure lines between the stars as the stars are drawn, boundary
// polylines on the sphere of the boundary radius, and names at the brightest member star.
//
// Colours, widths and stipples come from the star parameters when they are given there;
// otherwise the lines take the colour and width the caller has set (the scene sets them
// before drawing). Names are drawn in the line colour and width, at the size of star labels.

#include <GL/gl.h>

#include "catalogue/star_list.h"
#include "framework/overlays.h"
#include "starrender/star_labels.h"
#include "starrender/star_labels_gl.h"

namespace {

struct LineStyle {
    bool colourGiven;
    const float* colour;
    bool widthGiven;
    float width;
    int stipple;
};

// The caller's colour and width, to come back to between the two styles.
struct CallerStyle {
    float colour[4];
    float width;
};

void applyStyle(const LineStyle& style, const CallerStyle& caller) {
    glColor4fv(style.colourGiven ? style.colour : caller.colour);
    glLineWidth(style.widthGiven ? style.width : caller.width);
    if (style.stipple != 0) {
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(1, static_cast<GLushort>(style.stipple));
    } else {
        glDisable(GL_LINE_STIPPLE);
    }
}

}  // namespace

void StarList::drawConstellations(double currLogScale, int showLines, int showNames,
                                  int showBounds) {
    if (numConstellations <= 0) return;
    for (int c = 0; c < numConstellations; ++c)
        drawConstellation(c, currLogScale, showLines, showNames, showBounds);
}

void StarList::drawConstellation(int id, double currLogScale, int showLines, int showNames,
                                 int showBounds) {
    if (id < 0 || id >= numConstellations || !(showLines || showNames || showBounds)) return;
    const Constellation& con = constellations[id];

    CallerStyle caller;
    glGetFloatv(GL_CURRENT_COLOR, caller.colour);
    glGetFloatv(GL_LINE_WIDTH, &caller.width);
    EyeRelativeScope scope(currLogScale);
    const StarFrame& frame = scope.frame();
    const LineStyle lineStyle{param.constellationColorsGiven, param.constellationLineColor,
                              param.constellationWidthsGiven, param.constellationLineWidth,
                              param.constellationLineStipple};
    const LineStyle boundStyle{param.constellationColorsGiven, param.constellationBoundColor,
                               param.constellationWidthsGiven, param.constellationBoundWidth,
                               param.constellationBoundStipple};

    if (showBounds && con.numBoundaries > 0) {
        applyStyle(boundStyle, caller);
        for (int b = 0; b < con.numBoundaries; ++b) {
            glBegin(GL_LINE_STRIP);
            for (int v = 0; v < con.boundaryVertexCounts[b]; ++v) {
                const Vec3 p = eyeRelativeVertex(frame, con.boundaries[b][v]);
                glVertex3d(p.x, p.y, p.z);
            }
            glEnd();
        }
    }
    if (showLines && con.numLines > 0) {
        applyStyle(lineStyle, caller);
        glBegin(GL_LINES);
        for (int i = 0; i < con.numLines; ++i) {
            const Vec3 a = eyeRelativeVertex(frame, con.lines[i].from->pos);
            const Vec3 b = eyeRelativeVertex(frame, con.lines[i].to->pos);
            glVertex3d(a.x, a.y, a.z);
            glVertex3d(b.x, b.y, b.z);
        }
        glEnd();
    }
    if (showNames && con.brightestStar != nullptr) {
        LineStyle nameStyle = lineStyle;
        nameStyle.stipple = 0;
        applyStyle(nameStyle, caller);
        const StarObj& star = (con.brightestIndex >= 0 && con.brightestIndex < count)
                                  ? stars[con.brightestIndex]
                                  : *con.brightestStar;
        const LabelPlacement label = labelPlacement(frame, star.pos, param.labelScale);
        const std::string text = std::string(" ") + con.name;
        drawLabelText(label, text.c_str());
    }
}
