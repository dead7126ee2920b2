#pragma once
// Particle sets: textured sprites placed in log-scaled space (gas clouds, clusters, glows),
// read from PARTICLE files or made at random, kept in a BSP tree for ordered drawing and drawn
// as camera-facing blended squares.
//
// PARTICLE file (text; blank lines and "#" lines are skipped after the first line):
//   PARTICLE<anything> <numParticles> <numTextures> <exponent>
//   texture NAME gaussian C SIGMA          (C 0-255, SIGMA in texels)
//   texture NAME file IMAGE [ALPHA]        (RGB or RGBA, PNM or SGI; one-channel alpha)
//   x y z size r g b a TEXNAME             (one line per particle)
// Positions and sizes are in units of 10^exponent metres.

#include <cstddef>
#include <string>
#include <vector>

#include "common_package/glm/src/glm_allocator.h"

// Exponent of the eye distance of a particle that sits exactly at the eye.
constexpr double kParticleAtEye = -1.7976931348623157e308;

struct Particle {
    double pos[4] = {0.0, 0.0, 0.0, 0.0};  // x, y, z and the base-10 exponent w (metres)
    float color[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    double size[2] = {0.0, 0.0};  // size value and its exponent
    int texName = 0;              // OpenGL texture name, >= 1 when valid
    double reserved = 0.0;
    double currPos[4] = {0.0, 0.0, 0.0, 0.0};  // position used for drawing
    float texRatio = 1.0f;  // fraction of the sprite square covered by the texture (<= 1)
    double eyePos[4] = {0.0, 0.0, 0.0, 0.0};  // per frame: position relative to the eye
    double eyeDistExp = 0.0;                  // per frame: exponent of the eye distance
    unsigned char valid = 0;                  // the particle has a texture
};

struct BSPNode {
    double plane[4] = {0.0, 0.0, 0.0, 0.0};  // unit normal x, y, z and offset d >= 0 (metres)
    BSPNode* front = nullptr;
    BSPNode* back = nullptr;
    bool leaf = false;
    int index = -1;  // the particle of a leaf; -1 for inner nodes
};

// Drawing mode bits of ParticleList::render.
constexpr int PARTICLE_POINTS = 0;          // points in array order
constexpr int PARTICLE_POINTS_BSP = 1;      // points, back to front through the BSP tree
constexpr int PARTICLE_SPRITES_BSP = 2;     // textured sprites, BSP order
constexpr int PARTICLE_SPRITES_SORTED = 3;  // textured sprites sorted by eye distance
constexpr int PARTICLE_DEPTH_TEST = 4;      // depth test on (off without it)
constexpr int PARTICLE_NO_DEPTH_WRITE = 8;  // depth writes off (sprite and BSP paths)

// Capacities: a list holds at most this many particles and textures.
constexpr int kMaxParticles = 1 << 26;
constexpr int kMaxParticleTextures = 1 << 16;

class ParticleList {
  public:
    ParticleList();
    ~ParticleList();
    ParticleList(const ParticleList&) = delete;
    ParticleList& operator=(const ParticleList&) = delete;

    // Replaces the (allocate, release) pair of this list. Only allowed while the list is empty
    // (returns -1 otherwise); a null function restores the standard one.
    int setAllocator(GLMallocateFunc allocate, GLMreleaseFunc release);

    // Reads a PARTICLE file and appends its particles and textures (needs an OpenGL context).
    // Returns 1, or -1 with what was read so far kept in the list.
    int read(const char* fileName, bool quiet = false);
    // Replaces the particles by N repeatable random ones (seed 9999) named "Generic-Particles".
    int createRandomParticles(int N);

    int getNumParticles() const { return numParticles_; }
    int getNumTextures() const { return numTextures_; }
    const std::string& getName() const { return name_; }
    void setName(const std::string& name) { name_ = name; }

    // Copy one particle out or in (0 <= i < count). Return 1 or -1.
    int getParticle(int i, Particle* particle) const;
    int setParticle(int i, const Particle* particle);

    int setParticleScale(double scale);
    double getParticleScale() const { return particleScale_; }
    // Sprites are drawn only while near <= logScale <= far; near < far. Turns the range on.
    int setZRange(double logScaleNear, double logScaleFar);
    void clearZRange() { useZRange_ = false; }
    // Drawing happens only while this flag is set (it is set at construction).
    void setDraw(bool draw) { draw_ = draw; }
    bool getDraw() const { return draw_; }
    // Tint multiplied into every sprite's colour, default (1, 1, 1, 1).
    void setTuneColor(float r, float g, float b, float a);
    // Sprites whose half size over their distance is below this are skipped (default 1e-5).
    void setMinApparentSize(double ratio) { minApparentSize_ = ratio; }

    // Texture names and ratios, one per texture.
    int getTexName(int i) const;
    float getTexRatio(int i) const;

    // Makes a Gaussian texture (64 x 64 RGBA, peak c in 0..255, width sigma texels > 0) under a
    // new texture name appended to the list; returns its index, or -1.
    int createTextureGauss(int c, float sigma);
    // Remakes the Gaussian texture in the list's existing texture name texName; 1 or -1.
    int createTextureGauss(int texName, int c, float sigma);
    // Loads an image file (PNM or SGI, RGB or RGBA, with an optional one-channel alpha image)
    // into texName; names are tried as given, then under dirName. Returns 1 or -1.
    int initTextureFile(int texName, const char* imageFile, const char* alphaFile,
                        const char* dirName);

    // Builds a BSP tree over the given particle indices; the caller owns it (BSPDelete).
    BSPNode* BSPBuild(const int* indices, int count);
    void BSPDelete(BSPNode* node);
    const BSPNode* getBSPRoot() const { return root_; }

    // Draws the set (lighting off). mode & 3 picks the path (PARTICLE_POINTS ...), plus
    // PARTICLE_DEPTH_TEST and PARTICLE_NO_DEPTH_WRITE. logScale: one unit of the current
    // modelview is 10^logScale metres. referenceLogScale: below it, sprites keep the size they
    // have at the reference scale, so a set does not swell to fill the view when the view
    // zooms in below it (pass -infinity, the default, for true sizes).
    void render(int mode, double logScale, double referenceLogScale = -1.0e308);
    // The sorted sprite path on its own.
    void qSortRender(double logScale, double referenceLogScale = -1.0e308);
    // A wire sphere around the set (at most 128 stacks and 128 slices).
    void render_boundsphere(double logScale, int stacks = 16, int slices = 16);

    // Prints every particle ("- pos     : ..." lines) to standard error.
    void dump() const;
    void dumpParticle(int i) const;

  private:
    template <class T>
    using Array = std::vector<T, FnAllocator<T>>;

    void releaseParticles();
    void rebuildTree();
    BSPNode* buildNode(int* indices, int count, int depth);
    void drawPoints(bool bspOrder, double logScale);
    void drawPointsBsp(const BSPNode* node, const double eye[3], double logScale);
    void drawSpritesBsp(const BSPNode* node, const double eye[3], const double rotation[16],
                        double logScale, double refScale);
    void drawSprite(int i, const double eye[3], const double rotation[16], double logScale,
                    double refScale);
    bool eyePosition(double logScale, double eye[3], double rotation[16]) const;
    bool appendTextureSlots(int count, std::vector<int>* names);

    GLMallocateFunc allocate_;
    GLMreleaseFunc release_;
    Array<Particle> particles_;
    int numParticles_ = 0;
    Array<int> sortedIndex_;  // kept between sorted draws
    BSPNode* root_ = nullptr;
    Array<int> texNames_;
    Array<float> texRatios_;
    int numTextures_ = 0;

    double particleScale_ = 1.0;
    double zNear_ = 0.0, zFar_ = 0.0;
    bool useZRange_ = false;
    bool draw_ = true;
    std::string name_;

    float tuneColor_[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    double minApparentSize_ = 1.0e-5;
    double lastSortEye_[3] = {0.0, 0.0, 0.0};
    bool sortValid_ = false;
};
