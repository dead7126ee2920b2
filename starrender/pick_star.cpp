// Picking the star under a window position with the GL selection buffer.

#include <GL/gl.h>
#include <GL/glu.h>

#include "catalogue/star_list.h"

namespace {

constexpr int kSelectBufferSize = 1024;
constexpr double kPickBoxPixels = 5.0;  // the pick box is pickSize x 5 pixels a side

}  // namespace

int StarList::pickStar(int x, int y, double currLogScale, StarObj* record, float pickSize,
                       const int* viewport) {
    int vp[4];
    if (viewport != nullptr) {
        for (int i = 0; i < 4; ++i)
            vp[i] = viewport[i];
    } else {
        glGetIntegerv(GL_VIEWPORT, vp);
    }
    GLuint select[kSelectBufferSize];
    pickMode = 1;
    glSelectBuffer(kSelectBufferSize, select);
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);

    double projection[16];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    const double box = pickSize * kPickBoxPixels;
    gluPickMatrix(x, vp[3] - y, box, box, vp);
    glMultMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);

    int current[4];
    glGetIntegerv(GL_VIEWPORT, current);
    drawStars(currLogScale, 0, current[2], current[3]);

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glFlush();
    int hits = glRenderMode(GL_RENDER);
    pickMode = 0;

    // On overflow GL reports -1; the records that fit are still whole, so use those.
    GLuint used = 0;
    int records = 0;
    GLuint bestDepth = 0;
    int bestName = -1;
    while (used + 3 <= static_cast<GLuint>(kSelectBufferSize) && (hits < 0 || records < hits)) {
        const GLuint names = select[used];
        if (names == 0 || used + 3 + names > static_cast<GLuint>(kSelectBufferSize)) break;
        const GLuint minDepth = select[used + 1];
        const int name = static_cast<int>(select[used + 3 + names - 1]);
        if (bestName < 0 || minDepth < bestDepth) {
            bestDepth = minDepth;
            bestName = name;
        }
        used += 3 + names;
        ++records;
    }
    if (hits < 0) hits = records;
    if (hits > 0 && bestName >= 0 && bestName < count && record != nullptr) {
        settleRecord(bestName);
        *record = stars[bestName];
    }
    return hits;
}
