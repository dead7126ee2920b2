#include "movie/guides.h"

#include <algorithm>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/quaternion.h"
#include "movie/timing.h"

namespace {

Phc guidePosition(const KeyFrame& p, const KeyFrame& k, const KeyFrame& n, bool wantIn) {
    const Phc& posK = k.view.viewPos;
    const double level = k.posFactors.level;
    const double fi = k.posFactors.in;
    const double fo = k.posFactors.out;
    Phc d = phcSub(n.view.viewPos, p.view.viewPos);

    if (phcEqual(posK, p.view.viewPos) || phcEqual(posK, n.view.viewPos)) {
        return wantIn ? phcAdd(posK, phcScale(d, -fi / 6.0)) : phcAdd(posK, phcScale(d, fo / 6.0));
    }

    // Tangent at k: perpendicular to the bisector of the directions towards p and n, pointing
    // towards p, as long as the nearer neighbour is far.
    Phc u1 = phcNormalized(phcSub(p.view.viewPos, posK));
    Phc u2 = phcNormalized(phcSub(n.view.viewPos, posK));
    Vec3 w = normalized(u1.xyz() + u2.xyz());
    Vec3 t = normalized(u1.xyz() - dot(u1.xyz(), w) * w);
    Phc tm = Phc::from(t, std::min(u1.w, u2.w));
    if (wantIn)
        return phcAdd(phcAdd(posK, phcScale(tm, (1.0 - level) * fi / 2.0)),
                      phcScale(d, -(fi / 6.0) * level));
    return phcAdd(phcAdd(posK, phcScale(tm, -(1.0 - level) * fo / 2.0)),
                  phcScale(d, (fo / 6.0) * level));
}

void guideOrientation(const KeyFrame& p, const KeyFrame& k, const KeyFrame& n, bool wantIn,
                      View& out) {
    Quat qP = quatFromView(p.view.viewDir, p.view.viewUp);
    Quat qK = quatFromView(k.view.viewDir, k.view.viewUp);
    Quat qN = quatFromView(n.view.viewDir, n.view.viewUp);
    if (quatDot(qP, qK) < 0.0) qK = quatNegate(qK);
    if (quatDot(qK, qN) < 0.0) qN = quatNegate(qN);
    Quat r = quatMultiply(quatConjugate(qP), qN);
    Quat q = wantIn ? quatMultiply(qK, quatPower(quatConjugate(r), k.quatFactors.in / 6.0))
                    : quatMultiply(qK, quatPower(r, k.quatFactors.out / 6.0));
    quatToView(q, out.viewDir, out.viewUp);
}

double guideValue(double p, double k, double n, const ChannelFactors& f, bool wantIn) {
    return wantIn ? controlValueBefore(p, k, n, f.level, f.in)
                  : controlValueAfter(p, k, n, f.level, f.out);
}

}  // namespace

View guideView(const KeyFrame& p, const KeyFrame& k, const KeyFrame& n, bool wantIn) {
    View g;
    g.viewPos = guidePosition(p, k, n, wantIn);
    guideOrientation(p, k, n, wantIn, g);
    g.fovy = guideValue(p.view.fovy, k.view.fovy, n.view.fovy, k.fovyFactors, wantIn);
    g.aspect = guideValue(p.view.aspect, k.view.aspect, n.view.aspect, k.aspectFactors, wantIn);
    return g;
}

void computeGuides(KeyFrame& k, const KeyFrame* prev, const KeyFrame* next) {
    if (!prev && !next) {
        if (!k.guideInGiven) k.guideIn = k.view;
        if (!k.guideOutGiven) k.guideOut = k.view;
        return;
    }
    // At a break each side sees only its own neighbour, as at the ends of the path.
    if (prev && !k.guideInGiven)
        k.guideIn = guideView(*prev, k, (next && !k.isBreak) ? *next : k, true);
    if (next && !k.guideOutGiven)
        k.guideOut = guideView((prev && !k.isBreak) ? *prev : k, k, *next, false);
}
