#pragma once
// What one frame of star drawing needs to know about the camera, taken from the GL
// matrices, and the eye-relative placement of a star in that frame.

#include <cmath>

#include "common_package/math/src/phc.h"
#include "common_package/math/src/vec3.h"

// Beyond this many drawing units from the eye, star depths are compressed so that far stars
// stay inside the far plane.
constexpr double kDepthCompressStart = 3.5;
constexpr double kDepthCompressFactor = 72.0;
// Drawing keeps star positions as plain coordinates in units of 10^kDrawCacheLog metres.
constexpr double kDrawCacheLog = 16.0;

struct StarFrame {
    double currLogScale = 0.0;
    Phc eye;                      // camera position, normalised (w in log10 metres)
    Vec3 eyeDrawing;              // camera position in drawing units (10^currLogScale metres)
    bool eyeAtOrigin = false;     // the camera sits at the origin (eye cannot be normalised)
    double eyeScale = 1.0;        // 10^(eye.w - currLogScale): the eye's distance in drawing units
    double cacheToDrawing = 1.0;  // 10^(kDrawCacheLog - currLogScale)
    Vec3 viewDir{0, 0, -1};       // unit viewing direction
    Vec3 up{0, 1, 0};             // camera up direction, unit
    double rotation[16] = {1, 0, 0, 0, 0, 1, 0, 0,
                           0, 0, 1, 0, 0, 0, 0, 1};  // modelview, no translation
    int viewport[4] = {0, 0, 1, 1};
    double radiansPerPixel = 1e-3;
    double aspect = 1.0;
    // Rows x, y and w of projection x rotation: the clip coordinates of an eye-relative
    // vertex v are row . (v, 1). With no constant terms (every perspective projection, picking
    // and jitter shifts included) a vertex's direction alone decides where it lands.
    double clipRows[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}};
    bool clipScaleFree = false;
};

// Tells the points that can touch the viewport from those that cannot. GL drops a point
// whose centre lies outside the clip volume; a point is kept here while its centre lies
// within the volume's sides widened by the point's radius and one pixel more, so what is left
// out could not have drawn a pixel even on a renderer that draws wide points partly outside.
// Depth is not tested.
class PointViewportTest {
  public:
    explicit PointViewportTest(const StarFrame& frame);
    // A point of bucket b (b x 0.5 pixels) at the drawn vertex v.
    bool mayShow(const double v[3], int bucket) const {
        const auto& r = rows_;
        const double x = r[0][0] * v[0] + r[0][1] * v[1] + r[0][2] * v[2] + r[0][3];
        const double y = r[1][0] * v[0] + r[1][1] * v[1] + r[1][2] * v[2] + r[1][3];
        const double w = r[2][0] * v[0] + r[2][1] * v[1] + r[2][2] * v[2] + r[2][3];
        // Without a branch: stars come in no order of direction.
        return keepAll_ |
               ((std::fabs(x) <= w * widenX_[bucket]) & (std::fabs(y) <= w * widenY_[bucket]));
    }
    // With a scale-free projection, mayShow gives the same answer for the vertex scaled by
    // any positive factor, so the undrawn eye-relative position can be tested.
    bool scaleFree() const { return scaleFree_; }
    // What mayShow goes by, for passes that test several points at a time.
    double row(int r, int c) const { return rows_[r][c]; }
    double widenX(int bucket) const { return widenX_[bucket]; }
    double widenY(int bucket) const { return widenY_[bucket]; }
    bool keepAll() const { return keepAll_; }

  private:
    static constexpr int kBuckets = 64;
    double rows_[3][4];
    double widenX_[kBuckets], widenY_[kBuckets];
    bool scaleFree_;
    bool keepAll_;  // no viewport to go by
};

// The frame of a modelview and projection (column-major, as glGetDoublev gives them) and a
// viewport: eye = -R^T t at w = currLogScale, viewing direction = minus the third row of R,
// up = its second row, radiansPerPixel = 1 / (height x 0.5 x P[5]) (at least 1e-7),
// aspect = (height / width) (P[5] / P[0]).
StarFrame makeStarFrame(const double modelview[16], const double projection[16],
                        const int viewport[4], double currLogScale);

// A star placed relative to the eye.
struct EyePlacement {
    Phc rel;           // star minus eye, normalised (w = lowest double when at the eye)
    double vertex[3];  // drawn position: the direction times 10^(depth-compressed w - scale)
};

// Places a star whose current position is normalised. Returns false for a star behind the
// eye (dot(p, viewing direction) < 0), which is not drawn.
bool placeStar(const StarFrame& frame, const Phc& starPos, EyePlacement& out);
