// The particle set's life cycle, accessors, random sets and dumps.

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <new>

#include "common_package/math/src/random.h"
#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"

namespace particledetail {

void positionMetres(const Particle& p, double out[3]) {
    double scale = std::pow(10.0, p.pos[3]);
    for (int k = 0; k < 3; k++) {
        out[k] = p.pos[k] * scale;
        if (std::isnan(out[k])) out[k] = 0.0;
    }
}

}  // namespace particledetail

ParticleList::ParticleList()
    : allocate_(glmdetail::standardAllocate),
      release_(glmdetail::standardRelease),
      particles_(FnAllocator<Particle>(allocate_, release_)),
      sortedIndex_(FnAllocator<int>(allocate_, release_)),
      texNames_(FnAllocator<int>(allocate_, release_)),
      texRatios_(FnAllocator<float>(allocate_, release_)) {}

ParticleList::~ParticleList() {
    BSPDelete(root_);
    root_ = nullptr;
    for (int i = 0; i < numTextures_; i++) {
        GLuint name = static_cast<GLuint>(texNames_[i]);
        if (name != 0) glDeleteTextures(1, &name);
    }
}

int ParticleList::setAllocator(GLMallocateFunc allocate, GLMreleaseFunc release) {
    if (numParticles_ > 0 || numTextures_ > 0 || root_ != nullptr) {
        std::fprintf(stderr,
                     "Err (ParticleList::setAllocator): the list must be empty to change its "
                     "allocator.\n");
        return -1;
    }
    allocate_ = allocate != nullptr ? allocate : glmdetail::standardAllocate;
    release_ = release != nullptr ? release : glmdetail::standardRelease;
    particles_ = Array<Particle>(FnAllocator<Particle>(allocate_, release_));
    sortedIndex_ = Array<int>(FnAllocator<int>(allocate_, release_));
    texNames_ = Array<int>(FnAllocator<int>(allocate_, release_));
    texRatios_ = Array<float>(FnAllocator<float>(allocate_, release_));
    return 1;
}

void ParticleList::releaseParticles() {
    BSPDelete(root_);
    root_ = nullptr;
    Array<Particle>(FnAllocator<Particle>(allocate_, release_)).swap(particles_);
    Array<int>(FnAllocator<int>(allocate_, release_)).swap(sortedIndex_);
    numParticles_ = 0;
    sortValid_ = false;
}

int ParticleList::getParticle(int i, Particle* particle) const {
    if (i < 0 || i >= numParticles_) {
        std::fprintf(stderr, "Err (ParticleList::getParticle): input i out of range [0,%d]\n",
                     numParticles_ - 1);
        return -1;
    }
    if (particle == nullptr) {
        std::fprintf(stderr, "Err (ParticleList::getParticle): input particle is NULL\n");
        return -1;
    }
    *particle = particles_[i];
    return 1;
}

int ParticleList::setParticle(int i, const Particle* particle) {
    if (i < 0 || i >= numParticles_) {
        std::fprintf(stderr, "Err (ParticleList::setParticle): input i out of range [0,%d]\n",
                     numParticles_ - 1);
        return -1;
    }
    if (particle == nullptr) {
        std::fprintf(stderr, "Err (ParticleList::setParticle): input particle is NULL\n");
        return -1;
    }
    if (!(particle->size[0] > 0.0)) {
        std::fprintf(stderr,
                     "Err (ParticleList::setParticle): input particle size should be positive\n");
        return -1;
    }
    // 0 means no texture; anything else must be one of this list's textures.
    bool known = particle->texName == 0;
    for (int t = 0; t < numTextures_ && !known; t++)
        known = texNames_[t] == particle->texName;
    if (!known) {
        std::fprintf(stderr,
                     "Err (ParticleList::setParticle): input particle texName is invalid\n");
        return -1;
    }
    particles_[i] = *particle;
    particles_[i].valid = particle->texName != 0;
    sortValid_ = false;
    return 1;
}

int ParticleList::setParticleScale(double scale) {
    if (!(scale > 0.0)) {
        std::fprintf(stderr, "Err (setParticleScale): inParticleScale should be positive.\n\n");
        return -1;
    }
    particleScale_ = scale;
    return 1;
}

int ParticleList::setZRange(double logScaleNear, double logScaleFar) {
    if (!(logScaleNear < logScaleFar)) {
        std::fprintf(stderr,
                     "Err (ParticleList::setZRange): inLogScaleNear should be smaller than "
                     "inLogScaleFar\n\n");
        return -1;
    }
    zNear_ = logScaleNear;
    zFar_ = logScaleFar;
    useZRange_ = true;
    return 1;
}

void ParticleList::setTuneColor(float r, float g, float b, float a) {
    tuneColor_[0] = r;
    tuneColor_[1] = g;
    tuneColor_[2] = b;
    tuneColor_[3] = a;
}

int ParticleList::getTexName(int i) const {
    return i >= 0 && i < numTextures_ ? texNames_[i] : 0;
}

float ParticleList::getTexRatio(int i) const {
    return i >= 0 && i < numTextures_ ? texRatios_[i] : 0.0f;
}

int ParticleList::createRandomParticles(int N) {
    if (N < 1) {
        std::fprintf(stderr,
                     "Err (ParticleList::createRandomParticles): input N should be positive.\n");
        return -1;
    }
    if (N > kMaxParticles) {
        std::fprintf(stderr,
                     "Err (ParticleList::createRandomParticles): input N should be at most %d.\n",
                     kMaxParticles);
        return -1;
    }
    releaseParticles();
    name_ = "Generic-Particles";
    try {
        particles_.resize(N);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err (ParticleList): failed to allocate memory.\n");
        return -1;
    }
    const bool textured = numTextures_ > 0;
    seedRandom(9999);
    auto unit = [] { return static_cast<double>(nextRandom()) / kRandomMax; };
    for (Particle& p : particles_) {
        for (int k = 0; k < 3; k++)
            p.pos[k] = 2.0 * unit() - 1.0;
        p.pos[3] = 0.0;
        for (int k = 0; k < 4; k++)
            p.color[k] = static_cast<float>(unit());
        p.size[0] = unit() * 0.02 + 0.03;
        p.size[1] = 0.0;
        p.texName = textured ? texNames_[0] : 0;
        p.texRatio = textured ? texRatios_[0] : 0.0f;
        for (int k = 0; k < 4; k++)
            p.currPos[k] = p.pos[k];
        p.valid = textured ? 1 : 0;
    }
    numParticles_ = N;
    rebuildTree();
    return 1;
}

void ParticleList::dumpParticle(int i) const {
    if (i < 0 || i >= numParticles_) return;
    const Particle& p = particles_[i];
    std::fprintf(stderr, "- pos     : %f %f %f (%f)\n", p.pos[0], p.pos[1], p.pos[2], p.pos[3]);
    std::fprintf(stderr, "- currPos : %f %f %f (%f)\n", p.currPos[0], p.currPos[1], p.currPos[2],
                 p.currPos[3]);
    std::fprintf(stderr, "- color   : %f %f %f (%f)\n", p.color[0], p.color[1], p.color[2],
                 p.color[3]);
    std::fprintf(stderr, "- size    : %f (%f)\n", p.size[0], p.size[1]);
    std::fprintf(stderr, "- texName : %d\n", p.texName);
    std::fprintf(stderr, p.valid ? "- valid   : true\n" : "- valid   : false\n");
}

void ParticleList::dump() const {
    for (int i = 0; i < numParticles_; i++)
        dumpParticle(i);
}
