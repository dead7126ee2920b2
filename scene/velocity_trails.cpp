#include "scene/velocity_trails.h"

#include <GL/gl.h>

#include <cmath>
#include <cstring>

#include "common_package/math/src/phc.h"

namespace {

const float kTrailNear[4] = {0.4f, 0.9f, 0.6f, 0.8f};  // at the star
const float kTrailFar[4] = {0.4f, 0.9f, 0.6f, 0.1f};   // where the star will be
const float kErrorColour[4] = {0.9f, 0.4f, 0.3f, 0.6f};

}  // namespace

bool velocityTrail(const StarObj& star, double currLogScale, double years, TrailSegment& trail) {
    Phc p = star.pos;
    if (!phcNormalize(p)) return false;
    const double depth = p.w - currLogScale;
    if (!(depth > kTrailNearestDecades && depth < kTrailFarthestDecades)) return false;
    const Vec3 motion = star.motion.xyz();
    if (length(motion) == 0.0 || !std::isfinite(years)) return false;
    const double unit = std::pow(10.0, depth);
    const double motionUnit = std::pow(10.0, star.motion.w - currLogScale) * years;
    const Vec3 from = p.xyz() * unit;
    const Vec3 to = from + motion * motionUnit;
    trail = {{from.x, from.y, from.z}, {to.x, to.y, to.z}};
    return std::isfinite(to.x) && std::isfinite(to.y) && std::isfinite(to.z);
}

void velocityErrorCross(const StarObj& star, const TrailSegment& trail, double currLogScale,
                        double years, double errorScale, TrailSegment cross[3]) {
    // The motion's components carry the velocity's relative errors.
    const double motionUnit = std::pow(10.0, star.motion.w - currLogScale) * years * errorScale;
    const double half[3] = {std::fabs(star.motion.x * star.velErr.x) * motionUnit,
                            std::fabs(star.motion.y * star.velErr.y) * motionUnit,
                            std::fabs(star.motion.z * star.velErr.z) * motionUnit};
    for (int axis = 0; axis < 3; ++axis) {
        std::memcpy(cross[axis].from, trail.to, sizeof trail.to);
        std::memcpy(cross[axis].to, trail.to, sizeof trail.to);
        cross[axis].from[axis] -= half[axis];
        cross[axis].to[axis] += half[axis];
    }
}

void drawVelocityTrails(const StarList& stars, double currLogScale, int years, bool withErrors,
                        float errorScale) {
    const StarObj* all = stars.getStarArray();
    if (all == nullptr || years <= 0) return;
    int first = 0, last = -1;
    stars.getStarRange(&first, &last);
    if (stars.includesSun() && first == 0) first = 1;

    glPushAttrib(GL_ENABLE_BIT | GL_CURRENT_BIT | GL_LINE_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glBegin(GL_LINES);
    for (int i = last; i >= first; --i) {
        const StarObj& star = all[i];
        if (!stars.passesSptypeSelection(star) || !stars.passesAbsMagSelection(star) ||
            !stars.passesVMagSelection(star.appMag)) {
            continue;
        }
        TrailSegment trail;
        if (!velocityTrail(star, currLogScale, years, trail)) continue;
        glColor4fv(kTrailNear);
        glVertex3dv(trail.from);
        glColor4fv(kTrailFar);
        glVertex3dv(trail.to);
        if (withErrors) {
            TrailSegment cross[3];
            velocityErrorCross(star, trail, currLogScale, years, errorScale, cross);
            glColor4fv(kErrorColour);
            for (const TrailSegment& c : cross) {
                glVertex3dv(c.from);
                glVertex3dv(c.to);
            }
        }
    }
    glEnd();
    glPopAttrib();
}
