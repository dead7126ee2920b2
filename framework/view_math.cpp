#include "framework/view_math.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <cmath>

#include "common_package/math/src/mat3.h"

Mat4 operator*(const Mat4& a, const Mat4& b) {
    Mat4 r;
    for (int c = 0; c < 4; ++c) {
        for (int row = 0; row < 4; ++row) {
            double s = 0.0;
            for (int k = 0; k < 4; ++k)
                s += a.at(row, k) * b.at(k, c);
            r.m[c * 4 + row] = s;
        }
    }
    return r;
}

Mat4 translation4(const Vec3& t) {
    Mat4 r;
    r.m[12] = t.x;
    r.m[13] = t.y;
    r.m[14] = t.z;
    return r;
}

Mat4 rotation4(double angleDegrees, const Vec3& axis) {
    const Mat3 rot = rotationMatrix(angleDegrees, axis);
    Mat4 r;
    for (int row = 0; row < 3; ++row) {
        for (int c = 0; c < 3; ++c)
            r.m[c * 4 + row] = rot.m[row][c];
    }
    return r;
}

Vec3 translationPart(const Mat4& m) {
    return {m.m[12], m.m[13], m.m[14]};
}

View viewFromModelview(const Mat4& mv, double logScale, double fovyDegrees, double aspectRatio) {
    View v;
    const Vec3 t = translationPart(mv);
    // Eye = -R^T t: column c of R^T is row c of R.
    Vec3 eye;
    for (int c = 0; c < 3; ++c) {
        eye[c] = -(mv.at(0, c) * t.x + mv.at(1, c) * t.y + mv.at(2, c) * t.z);
    }
    v.viewPos = Phc{eye.x, eye.y, eye.z, logScale};
    v.viewDir = {-mv.at(2, 0), -mv.at(2, 1), -mv.at(2, 2)};
    v.viewUp = {mv.at(1, 0), mv.at(1, 1), mv.at(1, 2)};
    v.fovy = fovyDegrees;
    v.aspect = aspectRatio;
    return v;
}

double fieldOfViewStep(double f, double delta) {
    constexpr double kLinearFrom = 0.1;  // degrees; below it the control is logarithmic
    f = std::max(f, 1e-7);
    double u = f <= kLinearFrom ? 8.0 * std::log(f / kLinearFrom) : f - kLinearFrom;
    u += delta;
    if (u <= 0.0) return std::max(kLinearFrom * std::exp(u / 8.0), 1e-7);
    return std::min(u + kLinearFrom, 179.9);
}

Mat4 turnAboutOrigin(const Mat4& m, double angleDegrees, const Vec3& axis) {
    const Vec3 c = translationPart(m);
    return translation4(c) * rotation4(angleDegrees, axis) * translation4(-c) * m;
}

Mat4 turnAboutEye(const Mat4& m, double angleDegrees, const Vec3& axis) {
    return rotation4(angleDegrees, axis) * m;
}

DragEffect dragStep(const DragInput& in, Mat4& mv, double& fovyDegrees) {
    const int left = 1 << GLUT_LEFT_BUTTON;
    const int middle = 1 << GLUT_MIDDLE_BUTTON;
    const bool ctrl = (in.modifiers & GLUT_ACTIVE_CTRL) != 0;
    const bool alt = (in.modifiers & GLUT_ACTIVE_ALT) != 0;
    const bool shift = (in.modifiers & GLUT_ACTIVE_SHIFT) != 0;
    const double step = 0.01 * in.fovy / 90.0;  // translation per pixel

    if ((in.buttonMask & left) && (in.buttonMask & middle)) {
        mv = translation4({in.dx * step, 0.0, -(in.dy * step)}) * mv;
        return DragEffect::ModelviewChanged;
    }
    if (in.buttonMask & left) {
        if (ctrl) {
            if (!in.movieLoaded || in.dx == 0.0) return DragEffect::None;
            return in.dx > 0.0 ? DragEffect::NextFrame : DragEffect::PreviousFrame;
        }
        if (shift && !alt) {
            if (in.dx == 0.0) return DragEffect::None;
            mv = turnAboutEye(mv, in.dx * 0.5 * 0.3, {0.0, 0.0, 1.0});
            return DragEffect::ModelviewChanged;
        }
        const double length = std::sqrt(in.dx * in.dx + in.dy * in.dy);
        if (length == 0.0) return DragEffect::None;
        const Vec3 axis = normalized(Vec3{-in.dy, in.dx, 0.0});
        const double angle = length * 0.5 * in.fovy / 90.0;
        mv = alt ? turnAboutEye(mv, angle, axis) : turnAboutOrigin(mv, angle, axis);
        return DragEffect::ModelviewChanged;
    }
    if (in.buttonMask & middle) {
        if (alt) {
            const double delta = (in.dx - in.dy) * 10.0 / std::max(in.winHeight, 1);
            fovyDegrees = fieldOfViewStep(fovyDegrees, delta);
            return DragEffect::FieldOfViewChanged;
        }
        mv = translation4({in.dx * step, in.dy * step, 0.0}) * mv;
        return DragEffect::ModelviewChanged;
    }
    return DragEffect::None;
}

Flick flickFromDrag(int previousX, int previousY, int x, int y, double sensitivity,
                    double secondsSinceStep) {
    Flick f;
    const double vx = (x - previousX) * sensitivity;
    const double vy = -(y - previousY) * sensitivity;
    const double dist = std::sqrt(vx * vx + vy * vy);
    const double dt = std::max(secondsSinceStep, 0.001);
    const double speed = dist * 0.2 / dt / 100.0;
    if (dist > 0.0 && speed >= 1.0) {
        f.spin = true;
        f.axis = {vy / dist, vx / dist, 0.0};
        f.speed = speed;
    }
    return f;
}
