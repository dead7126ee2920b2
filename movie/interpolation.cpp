// Frame numbers to segments, and segments to views.

#include <cmath>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/quaternion.h"
#include "movie/movie_record.h"
#include "movie/session.h"
#include "movie/timing.h"

namespace {
constexpr double kTiny = 1e-7;
constexpr double kAlmostOne = 0.999999;
}  // namespace

int MovieRecord::totalNumFrame() const {
    if (keyFrames_.empty()) return 0;
    // Frame numbers are bounded on loading, so the sum fits an int.
    int total = 1;
    for (std::size_t k = 1; k < keyFrames_.size(); ++k)
        total += keyFrames_[k].nFrames + 1;
    return total;
}

int MovieRecord::locate(double frame, int& segment, double& t) const {
    const int n = numKeyFrames();
    if (n == 0 || !(frame >= 0.0 && frame <= totalNumFrame() - 1.0)) return -1;
    if (n == 1) {
        segment = 0;
        t = 0.0;
        return 1;
    }
    double f = frame;
    for (int k = 0; k + 1 < n; ++k) {
        double len = keyFrames_[k + 1].nFrames + 1.0;
        if (f < len) {
            segment = k;
            t = f / len;
            return 1;
        }
        f -= len;
    }
    segment = n - 1;
    t = 0.0;
    return 1;
}

double MovieRecord::frameOfKeyFrame(int k) const {
    const int n = numKeyFrames();
    if (k < 0 || k >= n) return -1.0;
    if (n == 1) return 0.0;
    if (k == n - 1) return totalNumFrame() - 1.0;
    double frame = 0.0;
    for (int i = 1; i <= k; ++i)
        frame += keyFrames_[i].nFrames + 1.0;
    return frame;
}

int MovieRecord::evaluateFrame(double frame, View& out) const {
    int segment = 0;
    double t = 0.0;
    if (locate(frame, segment, t) < 0) return -1;
    return evaluateSegment(segment, t, out);
}

int MovieRecord::evaluateSegment(int segment, double t, View& out) const {
    const int n = numKeyFrames();
    if (segment < 0 || segment >= n || !(t >= 0.0 && t <= 1.0)) return -1;
    if (segment == n - 1) {
        if (t >= kTiny) return -1;
        out = keyFrames_[segment].view;
        return 1;
    }
    const KeyFrame& a = keyFrames_[segment];
    const KeyFrame& b = keyFrames_[segment + 1];
    if (t < kTiny) {
        out = a.view;
        return 1;
    }
    if (t > kAlmostOne) {
        out = b.view;
        return 1;
    }

    View v;
    // Position.
    if (a.interpMethod == INTERP_SPLINE) {
        double r = 1.0 - t;
        Phc first = phcAdd(phcScale(a.view.viewPos, r * r * r),
                           phcScale(a.guideOut.viewPos, 3.0 * t * r * r));
        Phc second = phcAdd(phcScale(b.guideIn.viewPos, 3.0 * t * t * r),
                            phcScale(b.view.viewPos, t * t * t));
        v.viewPos = phcAdd(first, second);
    } else {
        v.viewPos = phcAdd(phcScale(a.view.viewPos, 1.0 - t), phcScale(b.view.viewPos, t));
    }

    // Orientation.
    Quat qA = quatFromView(a.view.viewDir, a.view.viewUp);
    Quat qB = quatFromView(b.view.viewDir, b.view.viewUp);
    Quat q;
    if (a.interpMethodQuat == INTERP_SPLINE_QUAT) {
        Quat q1 = quatFromView(a.guideOut.viewDir, a.guideOut.viewUp);
        Quat q2 = quatFromView(b.guideIn.viewDir, b.guideIn.viewUp);
        if (quatDot(qA, q1) < 0.0) q1 = quatNegate(q1);
        if (quatDot(q1, q2) < 0.0) q2 = quatNegate(q2);
        if (quatDot(q2, qB) < 0.0) qB = quatNegate(qB);
        Quat r0 = quatSlerp(qA, q1, t), r1 = quatSlerp(q1, q2, t), r2 = quatSlerp(q2, qB, t);
        Quat s0 = quatSlerp(r0, r1, t), s1 = quatSlerp(r1, r2, t);
        q = quatSlerp(s0, s1, t);
    } else {
        if (quatDot(qA, qB) < 0.0) qB = quatNegate(qB);
        q = quatSlerp(qA, qB, t);
    }
    quatToView(q, v.viewDir, v.viewUp);

    // Field of view and aspect, on the warped parameter.
    const bool fovySpline = a.interpMethodFovy == INTERP_SPLINE_FOVY;
    const bool aspectSpline = a.interpMethodAspect == INTERP_SPLINE_ASPECT;
    double s = t;
    if (fovySpline || aspectSpline) {
        const KeyFrame* before = segment > 0 ? &keyFrames_[segment - 1] : nullptr;
        const KeyFrame* after = segment + 2 < n ? &keyFrames_[segment + 2] : nullptr;
        s = timingCurve(before, a, b, after, t);
    }
    v.fovy = fovySpline ? bezier1D(a.view.fovy, a.guideOut.fovy, b.guideIn.fovy, b.view.fovy, s)
                        : (1.0 - s) * a.view.fovy + s * b.view.fovy;
    v.aspect = aspectSpline
                   ? bezier1D(a.view.aspect, a.guideOut.aspect, b.guideIn.aspect, b.view.aspect, s)
                   : (1.0 - s) * a.view.aspect + s * b.view.aspect;

    applyConstraints(sessions_, a, v);
    out = v;
    return 1;
}
