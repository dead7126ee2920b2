#include "starrender/star_frame.h"

#include <cfloat>
#include <cmath>

namespace {

constexpr double kMinRadiansPerPixel = 1e-7;

}  // namespace

StarFrame makeStarFrame(const double m[16], const double p[16], const int viewport[4],
                        double currLogScale) {
    StarFrame f;
    f.currLogScale = currLogScale;
    const double t[3] = {m[12], m[13], m[14]};
    for (int j = 0; j < 3; ++j) {
        f.eyeDrawing[j] = -(m[j * 4 + 0] * t[0] + m[j * 4 + 1] * t[1] + m[j * 4 + 2] * t[2]);
    }
    f.eye = Phc::from(f.eyeDrawing, currLogScale);
    f.eyeAtOrigin = !phcNormalize(f.eye);
    f.eyeScale = f.eyeAtOrigin ? 0.0 : length(f.eyeDrawing);
    f.cacheToDrawing = std::pow(10.0, kDrawCacheLog - currLogScale);
    f.viewDir = normalized(Vec3{-m[2], -m[6], -m[10]});
    f.up = normalized(Vec3{m[1], m[5], m[9]});
    for (int i = 0; i < 16; ++i)
        f.rotation[i] = m[i];
    f.rotation[12] = f.rotation[13] = f.rotation[14] = 0.0;
    for (int i = 0; i < 4; ++i)
        f.viewport[i] = viewport[i];

    // Row r of P R, column c: sum over k of P[r][k] R[k][c] (column-major, R without
    // translation, so the constant column is P's own).
    const int rowOf[3] = {0, 1, 3};
    for (int i = 0; i < 3; ++i) {
        const int r = rowOf[i];
        for (int c = 0; c < 3; ++c) {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k)
                sum += p[k * 4 + r] * f.rotation[c * 4 + k];
            f.clipRows[i][c] = sum;
        }
        f.clipRows[i][3] = p[12 + r];
    }
    f.clipScaleFree = f.clipRows[0][3] == 0.0 && f.clipRows[1][3] == 0.0 && f.clipRows[2][3] == 0.0;

    const double height = viewport[3], width = viewport[2];
    double rpp = 1.0 / (height * 0.5 * p[5]);
    if (!(rpp >= kMinRadiansPerPixel)) rpp = kMinRadiansPerPixel;
    f.radiansPerPixel = rpp;
    f.aspect = (width > 0.0 && p[0] != 0.0) ? (height / width) * (p[5] / p[0]) : 1.0;
    return f;
}

PointViewportTest::PointViewportTest(const StarFrame& frame) {
    for (int i = 0; i < 3; ++i) {
        for (int c = 0; c < 4; ++c)
            rows_[i][c] = frame.clipRows[i][c];
    }
    scaleFree_ = frame.clipScaleFree;
    const double width = frame.viewport[2], height = frame.viewport[3];
    keepAll_ = !(width >= 1.0 && height >= 1.0);
    for (int b = 0; b < kBuckets; ++b) {
        // Half the point size and a pixel, as a share of half the viewport.
        const double reach = b * 0.25 + 1.0;
        widenX_[b] = keepAll_ ? 1.0 : 1.0 + reach * 2.0 / width;
        widenY_[b] = keepAll_ ? 1.0 : 1.0 + reach * 2.0 / height;
    }
}

bool placeStar(const StarFrame& frame, const Phc& s, EyePlacement& out) {
    const Phc& e = frame.eye;
    double px, py, pz, pw;
    // Drawing units per unit of (px, py, pz): 10^(pw - currLogScale).
    double toDrawing;
    // Current positions are normalised: unit length, or zero for a star at the origin.
    const bool starAtOrigin = s.x * s.x + s.y * s.y + s.z * s.z < kPhcZero * kPhcZero;
    if (frame.eyeAtOrigin) {
        px = s.x, py = s.y, pz = s.z, pw = s.w;
        toDrawing = std::pow(10.0, s.w - frame.currLogScale);
    } else if (starAtOrigin || e.w > s.w + kPhcDecadesKept) {
        px = -e.x, py = -e.y, pz = -e.z, pw = e.w;
        toDrawing = frame.eyeScale;
    } else if (s.w > e.w + kPhcDecadesKept) {
        px = s.x, py = s.y, pz = s.z, pw = s.w;
        toDrawing = std::pow(10.0, s.w - frame.currLogScale);
    } else if (s.w > e.w) {
        // Both at the eye's exponent.
        const double f = std::pow(10.0, s.w - e.w);
        px = s.x * f - e.x, py = s.y * f - e.y, pz = s.z * f - e.z, pw = e.w;
        toDrawing = frame.eyeScale;
    } else {
        // Both at the star's exponent.
        const double f = std::pow(10.0, e.w - s.w);
        px = s.x - e.x * f, py = s.y - e.y * f, pz = s.z - e.z * f, pw = s.w;
        toDrawing = frame.eyeScale / f;
    }
    if (px * frame.viewDir.x + py * frame.viewDir.y + pz * frame.viewDir.z < 0.0) return false;

    const double len = std::sqrt(px * px + py * py + pz * pz);
    if (len < kPhcZero) {
        out.rel = Phc{px, py, pz, -DBL_MAX};
        out.vertex[0] = out.vertex[1] = out.vertex[2] = 0.0;
        return true;
    }
    const double inv = 1.0 / len;
    out.rel = Phc{px * inv, py * inv, pz * inv, pw + std::log10(len)};
    double depth = out.rel.w - frame.currLogScale;
    if (depth > kDepthCompressStart) {
        depth = (depth - kDepthCompressStart) / kDepthCompressFactor + kDepthCompressStart;
        const double r = std::pow(10.0, depth);
        out.vertex[0] = out.rel.x * r;
        out.vertex[1] = out.rel.y * r;
        out.vertex[2] = out.rel.z * r;
    } else {
        out.vertex[0] = px * toDrawing;
        out.vertex[1] = py * toDrawing;
        out.vertex[2] = pz * toDrawing;
    }
    return true;
}
