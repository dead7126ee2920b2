#pragma once
// Where star drawing sends what it draws. drawStars hands it to GL; tests and benchmarks
// record or count it.

struct StarBucketEntry;

// One textured star: a camera-facing square around the star.
struct StarSprite {
    double corner[4][3];  // quad strip order: (-hw,-h), (hw,-h), (-hw,h), (hw,h)
    float texMin;         // texture coordinates run from texMin to 1
    float rgba[4];
    int starIndex;
};

class StarDrawSink {
  public:
    virtual ~StarDrawSink() = default;
    // A batch of points of one size.
    virtual void beginPoints(float pointSize) = 0;
    virtual void point(const double vertex[3], const float rgba[4]) = 0;
    // n points of the open batch at once; by default one point() each.
    virtual void points(const StarBucketEntry* entries, int n);
    virtual void endPoints() = 0;
    // Textured mode: the sprites come between these two calls, before any point.
    virtual void beginSprites() {}
    virtual void sprite(const StarSprite& /*sprite*/) {}
    virtual void endSprites() {}
    // Pick mode: one named point per star.
    virtual void namedPoint(int /*name*/, float /*pointSize*/, const double* /*vertex*/) {}
};
