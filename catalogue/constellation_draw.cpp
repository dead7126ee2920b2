// Drawing the constellations: figure lines between the stars as the stars are drawn, boundary
// polylines on the sphere of the boundary radius, and names at the brightest member star.
//
// Colours, widths and stipples come from the star parameters when they are given there;
// otherwise the lines take the colour and width the caller has set (the scene sets them
// before drawing). Names are drawn in the line colour and width, at the size of star labels.

#include <GL/gl.h>

#include <string>

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

// One call's drawing of constellations: the eye-relative frame, the caller's style and depth
// test, the two line styles and what is shown.
struct ConstellationPass {
    StarFrame frame;
    CallerStyle caller;
    GLint callerDepthFunc;
    LineStyle lineStyle;
    LineStyle boundStyle;
    bool showLines, showNames, showBounds;
};

// A constellation's boundaries, figure lines and name (at nameStar, when there is one).
void drawOneConstellation(const ConstellationPass& pass, const Constellation& con,
                          const StarObj* nameStar, double labelScale) {
    const StarFrame& frame = pass.frame;
    if (pass.showBounds && con.numBoundaries > 0) {
        applyStyle(pass.boundStyle, pass.caller);
        for (int b = 0; b < con.numBoundaries; ++b) {
            glBegin(GL_LINE_STRIP);
            for (int v = 0; v < con.boundaryVertexCounts[b]; ++v) {
                const Vec3 p = eyeRelativeVertex(frame, con.boundaries[b][v]);
                glVertex3d(p.x, p.y, p.z);
            }
            glEnd();
        }
    }
    if (pass.showLines && con.numLines > 0) {
        applyStyle(pass.lineStyle, pass.caller);
        glBegin(GL_LINES);
        for (int i = 0; i < con.numLines; ++i) {
            const Vec3 a = eyeRelativeVertex(frame, con.lines[i].from->pos);
            const Vec3 b = eyeRelativeVertex(frame, con.lines[i].to->pos);
            glVertex3d(a.x, a.y, a.z);
            glVertex3d(b.x, b.y, b.z);
        }
        glEnd();
    }
    if (pass.showNames && nameStar != nullptr) {
        LineStyle nameStyle = pass.lineStyle;
        nameStyle.stipple = 0;
        applyStyle(nameStyle, pass.caller);
        const LabelPlacement label = labelPlacement(frame, nameStar->pos, labelScale);
        const std::string text = std::string(" ") + con.name;
        drawLabelText(label, text.c_str());
        // Text leaves the depth test at GL_LESS; the next constellation starts from the caller's.
        glDepthFunc(static_cast<GLenum>(pass.callerDepthFunc));
    }
}

// Draws constellations first .. last - 1 in one eye-relative scope, each in turn.
void drawConstellationRun(const Constellation* constellations, int first, int last,
                          const StarParameter& param, const StarObj* stars, int count,
                          double currLogScale, int showLines, int showNames, int showBounds) {
    CallerStyle caller;
    glGetFloatv(GL_CURRENT_COLOR, caller.colour);
    glGetFloatv(GL_LINE_WIDTH, &caller.width);
    GLint depthFunc = GL_LESS;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunc);
    EyeRelativeScope scope(currLogScale);
    const ConstellationPass pass{
        scope.frame(),
        caller,
        depthFunc,
        LineStyle{param.constellationColorsGiven, param.constellationLineColor,
                  param.constellationWidthsGiven, param.constellationLineWidth,
                  param.constellationLineStipple},
        LineStyle{param.constellationColorsGiven, param.constellationBoundColor,
                  param.constellationWidthsGiven, param.constellationBoundWidth,
                  param.constellationBoundStipple},
        showLines != 0,
        showNames != 0,
        showBounds != 0};
    for (int c = first; c < last; ++c) {
        const Constellation& con = constellations[c];
        const StarObj* nameStar = nullptr;
        if (con.brightestStar != nullptr) {
            nameStar = (con.brightestIndex >= 0 && con.brightestIndex < count)
                           ? &stars[con.brightestIndex]
                           : con.brightestStar;
        }
        drawOneConstellation(pass, con, nameStar, param.labelScale);
    }
}

}  // namespace

// All constellations share one eye-relative scope: the matrices, the caller's style and the GL
// state are read and saved once, not once per constellation.
void StarList::drawConstellations(double currLogScale, int showLines, int showNames,
                                  int showBounds) {
    if (numConstellations <= 0 || !(showLines || showNames || showBounds)) return;
    drawConstellationRun(constellations, 0, numConstellations, param, stars, count, currLogScale,
                         showLines, showNames, showBounds);
}

void StarList::drawConstellation(int id, double currLogScale, int showLines, int showNames,
                                 int showBounds) {
    if (id < 0 || id >= numConstellations || !(showLines || showNames || showBounds)) return;
    drawConstellationRun(constellations, id, id + 1, param, stars, count, currLogScale, showLines,
                         showNames, showBounds);
}
