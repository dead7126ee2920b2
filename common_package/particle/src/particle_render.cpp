// Drawing a particle set: points in array or BSP order, textured sprites in BSP order or
// sorted by their distance from the eye.

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>

#include "common_package/glm/src/glm_matrix.h"
#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"

namespace {

constexpr double kFarCompressionStart = 3.5;    // log10 units beyond which depth is compressed
constexpr double kFarCompression = 72.0;        // compression of depth beyond it
constexpr double kNearCompressionStart = -1.5;  // log10 units below which depth is compressed
constexpr double kNearCompression = 720.0;
constexpr double kMaxSizeExponent = 3.5;  // sprites are never larger than 10^3.5 units
constexpr double kBehindDot = -0.9;       // sprites this far behind the view are skipped
constexpr int kMaxSphereDivisions = 128;

}  // namespace

// The eye in metres and the eye's frame (right, up, view direction, eye position in drawing
// units) in model coordinates, from the current modelview matrix.
bool ParticleList::eyePosition(double logScale, double eye[3], double frame[16]) const {
    double modelview[16], inverse[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    if (!glmdetail::invertMatrix4(modelview, inverse)) return false;
    const double unit = std::pow(10.0, logScale);
    for (int k = 0; k < 16; k++)
        frame[k] = inverse[k];
    for (int k = 0; k < 3; k++)
        eye[k] = inverse[12 + k] * unit;
    return true;
}

void ParticleList::drawPoints(bool bspOrder, double logScale) {
    Array<int>(FnAllocator<int>(allocate_, release_)).swap(sortedIndex_);
    sortValid_ = false;
    glDisable(GL_TEXTURE_2D);
    if (bspOrder) {
        double eye[3], frame[16];
        if (!eyePosition(logScale, eye, frame)) return;
        glBegin(GL_POINTS);
        drawPointsBsp(root_, eye, logScale);
        glEnd();
        return;
    }
    glBegin(GL_POINTS);
    for (int i = 0; i < numParticles_; i++) {
        const Particle& p = particles_[i];
        if (!p.valid) continue;
        double scale = std::pow(10.0, p.currPos[3] - logScale);
        glColor4f(p.color[0] * tuneColor_[0], p.color[1] * tuneColor_[1],
                  p.color[2] * tuneColor_[2], p.color[3] * tuneColor_[3]);
        glVertex3d(p.currPos[0] * scale, p.currPos[1] * scale, p.currPos[2] * scale);
    }
    glEnd();
}

void ParticleList::drawPointsBsp(const BSPNode* node, const double eye[3], double logScale) {
    if (node == nullptr) return;
    if (node->leaf) {
        const Particle& p = particles_[node->index];
        if (!p.valid) return;
        double scale = std::pow(10.0, p.currPos[3] - logScale);
        glColor4f(p.color[0] * tuneColor_[0], p.color[1] * tuneColor_[1],
                  p.color[2] * tuneColor_[2], p.color[3] * tuneColor_[3]);
        glVertex3d(p.currPos[0] * scale, p.currPos[1] * scale, p.currPos[2] * scale);
        return;
    }
    // The half that holds the eye is drawn last.
    const double* n = node->plane;
    bool eyeInFront = n[0] * eye[0] + n[1] * eye[1] + n[2] * eye[2] - n[3] > 0.0;
    drawPointsBsp(eyeInFront ? node->back : node->front, eye, logScale);
    drawPointsBsp(eyeInFront ? node->front : node->back, eye, logScale);
}

void ParticleList::drawSpritesBsp(const BSPNode* node, const double eye[3], const double frame[16],
                                  double logScale, double refScale) {
    if (node == nullptr) return;
    if (node->leaf) {
        drawSprite(node->index, eye, frame, logScale, refScale);
        return;
    }
    const double* n = node->plane;
    bool eyeInFront = n[0] * eye[0] + n[1] * eye[1] + n[2] * eye[2] - n[3] > 0.0;
    drawSpritesBsp(eyeInFront ? node->back : node->front, eye, frame, logScale, refScale);
    drawSpritesBsp(eyeInFront ? node->front : node->back, eye, frame, logScale, refScale);
}

void ParticleList::drawSprite(int i, const double eye[3], const double frame[16], double logScale,
                              double refScale) {
    const Particle& p = particles_[i];
    if (!p.valid || !(p.texRatio > 0.0f)) return;
    double position[3], rel[3];
    double scale = std::pow(10.0, p.currPos[3]);
    for (int k = 0; k < 3; k++) {
        position[k] = p.currPos[k] * scale;
        rel[k] = position[k] - eye[k];
    }
    double dist = std::sqrt(rel[0] * rel[0] + rel[1] * rel[1] + rel[2] * rel[2]);
    if (!(dist > 0.0) || !std::isfinite(dist)) return;  // at the eye, or out of reach
    double dir[3] = {rel[0] / dist, rel[1] / dist, rel[2] / dist};
    // The view direction in model coordinates is minus the frame's third column.
    double view[3] = {-frame[8], -frame[9], -frame[10]};
    double viewLength = std::sqrt(view[0] * view[0] + view[1] * view[1] + view[2] * view[2]);
    if (viewLength > 0.0 &&
        (dir[0] * view[0] + dir[1] * view[1] + dir[2] * view[2]) / viewLength < kBehindDot)
        return;

    double e = std::log10(dist) - logScale;
    double z = p.size[1] - std::max(logScale, refScale);
    double compressed = e;
    if (e >= kFarCompressionStart)
        compressed = (e - kFarCompressionStart) / kFarCompression + kFarCompressionStart;
    else if (e < kNearCompressionStart)
        compressed = (e - kNearCompressionStart) / kNearCompression + kNearCompressionStart;
    z += compressed - e;
    z = std::min(z, kMaxSizeExponent);
    double placed = std::pow(10.0, compressed);
    double h = std::pow(10.0, z) * p.size[0] * particleScale_ / 2.0 / p.texRatio;
    if (!(h / placed >= minApparentSize_)) return;

    glColor4f(p.color[0] * tuneColor_[0], p.color[1] * tuneColor_[1], p.color[2] * tuneColor_[2],
              p.color[3] * tuneColor_[3]);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(p.texName));
    // Sprite frame: z towards the eye, x across the eye's up direction.
    double zAxis[3] = {-dir[0], -dir[1], -dir[2]};
    double up[3] = {frame[4], frame[5], frame[6]};
    double xAxis[3] = {up[1] * zAxis[2] - up[2] * zAxis[1], up[2] * zAxis[0] - up[0] * zAxis[2],
                       up[0] * zAxis[1] - up[1] * zAxis[0]};
    double xLength = std::sqrt(xAxis[0] * xAxis[0] + xAxis[1] * xAxis[1] + xAxis[2] * xAxis[2]);
    if (!(xLength > 1e-12)) {  // looking straight along up: use the eye's right instead
        for (int k = 0; k < 3; k++)
            xAxis[k] = frame[k];
        xLength = std::sqrt(xAxis[0] * xAxis[0] + xAxis[1] * xAxis[1] + xAxis[2] * xAxis[2]);
        if (!(xLength > 1e-12)) return;
    }
    for (double& c : xAxis)
        c /= xLength;
    double yAxis[3] = {zAxis[1] * xAxis[2] - zAxis[2] * xAxis[1],
                       zAxis[2] * xAxis[0] - zAxis[0] * xAxis[2],
                       zAxis[0] * xAxis[1] - zAxis[1] * xAxis[0]};
    const double eyeUnits[3] = {frame[12], frame[13], frame[14]};
    const double m[16] = {xAxis[0],
                          xAxis[1],
                          xAxis[2],
                          0.0,
                          yAxis[0],
                          yAxis[1],
                          yAxis[2],
                          0.0,
                          zAxis[0],
                          zAxis[1],
                          zAxis[2],
                          0.0,
                          eyeUnits[0] + dir[0] * placed,
                          eyeUnits[1] + dir[1] * placed,
                          eyeUnits[2] + dir[2] * placed,
                          1.0};
    glPushMatrix();
    glMultMatrixd(m);
    glBegin(GL_QUAD_STRIP);
    glTexCoord2f(0.0f, 0.0f);
    glVertex3d(-h, -h, 0.0);
    glTexCoord2f(1.0f, 0.0f);
    glVertex3d(h, -h, 0.0);
    glTexCoord2f(0.0f, 1.0f);
    glVertex3d(-h, h, 0.0);
    glTexCoord2f(1.0f, 1.0f);
    glVertex3d(h, h, 0.0);
    glEnd();
    glPopMatrix();
}

void ParticleList::qSortRender(double logScale, double referenceLogScale) {
    double eye[3], frame[16];
    if (!eyePosition(logScale, eye, frame)) return;
    bool moved = !sortValid_ || eye[0] != lastSortEye_[0] || eye[1] != lastSortEye_[1] ||
                 eye[2] != lastSortEye_[2];
    if (moved || static_cast<int>(sortedIndex_.size()) != numParticles_) {
        try {
            sortedIndex_.resize(numParticles_);
        } catch (const std::bad_alloc&) {
            std::fprintf(stderr, "qSortRender : Ouch! No memory left for me\n\n");
            std::fflush(stdout);
            std::exit(1);
        }
        for (int i = 0; i < numParticles_; i++) {
            Particle& p = particles_[i];
            double rel[3], position[3];
            double scale = std::pow(10.0, p.currPos[3]);
            for (int k = 0; k < 3; k++) {
                position[k] = p.currPos[k] * scale;
                rel[k] = position[k] - eye[k];
            }
            double dist = std::sqrt(rel[0] * rel[0] + rel[1] * rel[1] + rel[2] * rel[2]);
            if (dist > 0.0 && std::isfinite(dist)) {
                for (int k = 0; k < 3; k++)
                    p.eyePos[k] = rel[k] / dist;
                p.eyePos[3] = p.eyeDistExp = std::log10(dist);
            } else {
                for (int k = 0; k < 4; k++)
                    p.eyePos[k] = 0.0;
                // A particle out of reach sorts as the farthest; one at the eye as the nearest.
                p.eyeDistExp = dist > 0.0 ? std::numeric_limits<double>::max() : kParticleAtEye;
                p.eyePos[3] = p.eyeDistExp;
            }
            sortedIndex_[i] = i;
        }
        std::sort(sortedIndex_.begin(), sortedIndex_.end(), [this](int a, int b) {
            return particles_[a].eyeDistExp > particles_[b].eyeDistExp;
        });
        for (int k = 0; k < 3; k++)
            lastSortEye_[k] = eye[k];
        sortValid_ = true;
    }
    glEnable(GL_TEXTURE_2D);
    for (int i : sortedIndex_)
        drawSprite(i, eye, frame, logScale, referenceLogScale);
}

void ParticleList::render(int mode, double logScale, double referenceLogScale) {
    if (!draw_ || numParticles_ == 0) return;
    const int path = mode & 3;
    const bool sprites = path == PARTICLE_SPRITES_BSP || path == PARTICLE_SPRITES_SORTED;
    if (sprites && useZRange_ && !(logScale >= zNear_ && logScale <= zFar_)) return;
    glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_CURRENT_BIT | GL_TEXTURE_BIT);
    glDisable(GL_LIGHTING);
    if (mode & PARTICLE_DEPTH_TEST)
        glEnable(GL_DEPTH_TEST);
    else
        glDisable(GL_DEPTH_TEST);
    if (path != PARTICLE_POINTS && (mode & PARTICLE_NO_DEPTH_WRITE)) glDepthMask(GL_FALSE);
    switch (path) {
        case PARTICLE_POINTS:
            drawPoints(false, logScale);
            break;
        case PARTICLE_POINTS_BSP:
            drawPoints(true, logScale);
            break;
        case PARTICLE_SPRITES_BSP: {
            Array<int>(FnAllocator<int>(allocate_, release_)).swap(sortedIndex_);
            sortValid_ = false;
            double eye[3], frame[16];
            if (eyePosition(logScale, eye, frame)) {
                glEnable(GL_TEXTURE_2D);
                drawSpritesBsp(root_, eye, frame, logScale, referenceLogScale);
            }
            break;
        }
        default:
            qSortRender(logScale, referenceLogScale);
            break;
    }
    glPopAttrib();
}

void ParticleList::render_boundsphere(double logScale, int stacks, int slices) {
    if (numParticles_ == 0) return;
    if (stacks > kMaxSphereDivisions) {
        std::fprintf(stderr, "warning (ParticleList::render_boundsphere): too many stacks.\n");
        stacks = kMaxSphereDivisions;
    }
    if (slices > kMaxSphereDivisions) {
        std::fprintf(stderr, "warning (ParticleList::render_boundsphere): too many slices.\n");
        slices = kMaxSphereDivisions;
    }
    stacks = std::max(stacks, 2);
    slices = std::max(slices, 3);
    double centre[3] = {0.0, 0.0, 0.0};
    std::vector<double> metres(3 * static_cast<std::size_t>(numParticles_));
    for (int i = 0; i < numParticles_; i++) {
        particledetail::positionMetres(particles_[i], &metres[3 * i]);
        for (int k = 0; k < 3; k++)
            centre[k] += metres[3 * i + k] / numParticles_;
    }
    double radius = 0.0;
    for (int i = 0; i < numParticles_; i++) {
        double d[3] = {metres[3 * i] - centre[0], metres[3 * i + 1] - centre[1],
                       metres[3 * i + 2] - centre[2]};
        radius = std::max(radius, std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]));
    }
    const double unit = std::pow(10.0, -logScale);
    GLUquadric* quadric = gluNewQuadric();
    if (quadric == nullptr) return;
    gluQuadricDrawStyle(quadric, GLU_LINE);
    glPushMatrix();
    glTranslated(centre[0] * unit, centre[1] * unit, centre[2] * unit);
    gluSphere(quadric, radius * unit, slices, stacks);
    glPopMatrix();
    gluDeleteQuadric(quadric);
}
