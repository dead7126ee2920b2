// What star drawing hands to GL, recorded without a window: which stars are drawn, in which
// point-size batch, with which alpha, where; the textured and pick passes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "catalogue/star_list.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"
#include "tests/starrender/starrender_test_util.h"

namespace {

using srtest::frameAt;
using srtest::kDegree;
using srtest::starAt;

struct Event {
    enum Kind { kBegin, kPoint, kEnd, kSprite, kNamed } kind;
    float size = 0.0f;
    double v[3] = {0, 0, 0};
    float rgba[4] = {0, 0, 0, 0};
    int name = -1;
    StarSprite sprite{};
};

class RecordingSink : public StarDrawSink {
  public:
    std::vector<Event> events;
    float openSize = -1.0f;

    void beginPoints(float size) override {
        EXPECT_LT(openSize, 0.0f) << "batch begun inside a batch";
        add(Event::kBegin, openSize = size, nullptr);
    }
    void point(const double v[3], const float rgba[4]) override {
        EXPECT_GE(openSize, 0.0f) << "point outside a batch";
        std::copy(rgba, rgba + 4, add(Event::kPoint, openSize, v).rgba);
    }
    void endPoints() override { add(Event::kEnd, openSize = -1.0f, nullptr); }
    void sprite(const StarSprite& s) override { add(Event::kSprite, 0, nullptr).sprite = s; }
    void namedPoint(int name, float size, const double* v) override {
        add(Event::kNamed, size, v).name = name;
    }

    std::vector<Event> points() const { return of(Event::kPoint); }
    std::vector<Event> of(Event::Kind kind) const {
        std::vector<Event> out;
        std::copy_if(events.begin(), events.end(), std::back_inserter(out),
                     [kind](const Event& e) { return e.kind == kind; });
        return out;
    }

  private:
    Event& add(Event::Kind kind, float size, const double* v) {
        events.push_back(Event{kind, size});
        if (v) std::copy(v, v + 3, events.back().v);
        return events.back();
    }
};

// Magnitude 4.6918 is 0.25 degrees in table A: at rpp = 0.25 deg / 1.3 it falls in bucket 3
// (point size 1.5) with alpha 200/255.
constexpr float kMidMag = 4.6918f;
const double kMidRpp = 0.25 * kDegree / 1.3;

class StarBatches : public ::testing::Test {
  protected:
    void load(int n, const std::string& lines, int includeSun = 0) {
        cattest::loadStars(list, dir, n, lines, includeSun);
    }
    RecordingSink draw(int flags, const Vec3& eye = Vec3{0, 0, 0}) {
        RecordingSink sink;
        list.drawStarsInto(frameAt(eye, kMidRpp), flags, sink);
        return sink;
    }
    cattest::ScratchDir dir;
    StarList list;
};

}  // namespace

TEST_F(StarBatches, OnlyVisibleStarsInFrontAreDrawnWithTheirBucketAndAlpha) {
    // Straight ahead, too faint, behind the eye.
    load(3,
         starAt(0, 0, -10, kMidMag, 1) + starAt(1, 0, -10, 10.2f, 2) + starAt(0, 0, 10, 2.0f, 3));
    RecordingSink sink = draw(kStarColorFile | kStarDepthWrite);
    std::vector<Event> pts = sink.points();
    ASSERT_EQ(pts.size(), 1u);
    EXPECT_FLOAT_EQ(pts[0].size, 1.5f);
    EXPECT_NEAR(pts[0].v[2], -10.0, 1e-6);
    EXPECT_NEAR(pts[0].v[0], 0.0, 1e-9);
    EXPECT_FLOAT_EQ(pts[0].rgba[3], 200.0f / 255.0f);
    EXPECT_FLOAT_EQ(pts[0].rgba[0], 1.0f);
    EXPECT_NEAR(cattest::byHD(list, 1).appMag, kMidMag, 1e-4);
    EXPECT_EQ(sink.of(Event::kBegin).size(), sink.of(Event::kEnd).size());

    ASSERT_EQ(list.setStarTextureScale(0.0), 1);
    RecordingSink none = draw(kStarColorFile);
    EXPECT_TRUE(none.events.empty());
    // The Sun is not drawn as a star, even from outside the solar system looking back.
    ASSERT_EQ(list.setStarTextureScale(1.0), 1);
    load(1, starAt(0, 0, -10, kMidMag, 1), 1);
    RecordingSink back = draw(kStarColorFile, Vec3{0, 0, 1});
    ASSERT_EQ(back.points().size(), 1u);
    EXPECT_NEAR(back.points()[0].v[2], -11.0, 1e-6);
}

TEST_F(StarBatches, PickModeNamesEveryStarInFrontFaintOnesAsHalfPixelPoints) {
    load(3, starAt(0, 0, -10, 12.0f, 1) + starAt(0, 0, 10, 2.0f, 2) + starAt(0, 1, -20, kMidMag, 3),
         1);
    list.setPickMode(1);
    RecordingSink sink = draw(0, Vec3{0, 0, 0.5});
    list.setPickMode(0);
    std::vector<Event> named = sink.of(Event::kNamed);
    ASSERT_EQ(named.size(), 3u);  // the Sun, the faint star and the mid star; not the one behind
    EXPECT_TRUE(sink.points().empty());
    for (const Event& e : named) {
        const StarObj& s = list.getStarArray()[e.name];
        if (s.hd == 1) {
            EXPECT_FLOAT_EQ(e.size, 0.5f);
        }
        EXPECT_NE(s.hd, 2);
    }
    // Farthest first.
    EXPECT_EQ(list.getStarArray()[named.front().name].hd, 3);
    EXPECT_EQ(named.back().name, 0);
}

TEST_F(StarBatches, AFullBucketIsFlushedAndLaterStarsOfItsSizeGoStraightIntoTheOpenBatch) {
    std::string lines;
    const int n = 40;  // bucket capacity is 16 (40 / 20 is below the minimum)
    for (int i = 0; i < n; ++i)
        lines += starAt(0.01 * i, 0, -10, kMidMag, i + 1);
    load(n, lines);
    ASSERT_EQ(list.getBucketCapacity(), 16);
    RecordingSink sink = draw(kStarColorFile);
    std::vector<Event>& ev = sink.events;
    // begin(1.0) with nothing, then the 17th star flushes: end, begin(1.5), 17 points, and
    // the remaining 23 stars are drawn in that batch at once; nothing is left at the end.
    ASSERT_GE(ev.size(), 4u);
    EXPECT_EQ(ev[0].kind, Event::kBegin);
    EXPECT_FLOAT_EQ(ev[0].size, 1.0f);
    EXPECT_EQ(ev[1].kind, Event::kEnd);
    EXPECT_EQ(ev[2].kind, Event::kBegin);
    EXPECT_FLOAT_EQ(ev[2].size, 1.5f);
    for (int i = 0; i < n; ++i) {
        ASSERT_EQ(ev[3 + i].kind, Event::kPoint) << i;
        EXPECT_FLOAT_EQ(ev[3 + i].size, 1.5f);
    }
    EXPECT_EQ(ev[3 + n].kind, Event::kEnd);
    EXPECT_EQ(ev.size(), static_cast<size_t>(4 + n));
    // The stored stars come first, in the order they were visited (farthest first).
    EXPECT_GT(ev[3].v[0], ev[4].v[0]);
}

TEST_F(StarBatches, StoredBucketsAreDrawnAtTheEndOneBatchPerSize) {
    // Two sizes: bucket 3 (1.5 px) and a brighter one, three stars each.
    std::string lines;
    for (int i = 0; i < 3; ++i)
        lines += starAt(0.1 * i, 0, -10, kMidMag, i + 1);
    for (int i = 0; i < 3; ++i)
        lines += starAt(0.1 * i, 1, -10, 2.0f, i + 11);
    load(6, lines);
    RecordingSink sink = draw(kStarColorFile);
    std::vector<float> sizes;
    for (const Event& e : sink.of(Event::kBegin))
        sizes.push_back(e.size);
    ASSERT_EQ(sizes.size(), 3u);
    EXPECT_FLOAT_EQ(sizes[0], 1.0f);
    EXPECT_FLOAT_EQ(sizes[1], 1.5f);
    EXPECT_GT(sizes[2], 1.5f);
    EXPECT_EQ(sink.points().size(), 6u);
}

TEST_F(StarBatches, FarStarsAreDepthCompressed) {
    load(2, starAt(0, 0, -1e6, -20.0f, 1) + starAt(0, 0, -1000, 0.0f, 2));
    RecordingSink sink = draw(kStarColorFile);
    ASSERT_EQ(sink.points().size(), 2u);
    std::vector<double> depths;
    for (const Event& e : sink.points())
        depths.push_back(-e.v[2]);
    std::sort(depths.begin(), depths.end());
    EXPECT_NEAR(depths[0], 1000.0, 1e-6);                                    // inside 10^3.5: as is
    EXPECT_NEAR(depths[1], std::pow(10.0, (6.0 - 3.5) / 72.0 + 3.5), 1e-3);  // compressed
}

TEST_F(StarBatches, VMagnitudeSelectionUsesTheMagnitudeFromTheEye) {
    load(2, starAt(0, 0, -10, 3.0f, 1) + starAt(0, 0.5, -10, 6.0f, 2));
    ASSERT_EQ(list.setVMagRangeOn(2.0, 5.0), 1);
    RecordingSink sink = draw(kStarColorFile);
    ASSERT_EQ(sink.points().size(), 1u);
    EXPECT_NEAR(sink.points()[0].v[1], 0.0, 1e-9);
    // Moving the eye 5 parsecs closer brightens the second star by 1.5 magnitudes.
    RecordingSink closer = draw(kStarColorFile, Vec3{0, 0, -5});
    ASSERT_EQ(closer.points().size(), 1u);
    EXPECT_NEAR(closer.points()[0].v[1], 0.5, 1e-9);
    EXPECT_NEAR(list.getStarArray()[1].appMag,
                6.0 - 5 * std::log10(std::sqrt(100.25) / std::sqrt(25.25)), 1e-4);
}

TEST_F(StarBatches, ColourSourcesExposureAndIntensity) {
    load(1,
         "0 0 -10 0 0 0 0 0 0 0 0.6 0.3 0.5 0.25 1 1 G 2 V 1\n");  // (0.5, 0.25, 1)
    struct Case {
        int flags;
        float exposure, tune, red, green;
    };
    const Case cases[] = {
        {kStarColorFile, 1, 1, 0.5f, 0.25f},
        {kStarColorWhite, 1, 1, 1, 1},
        {0, 1, 1, 0, 0},                                      // no source: the plain colour
        {kStarColorMap | kStarColorFile, 1, 1, 0.5f, 0.25f},  // no colormap loaded
        {kStarColorFile, 2, 1, 0.25f, 0.0625f},               // colour to the power of exposure
        {kStarColorFile, 1, 3, 1, 0.75f},
    };
    for (const Case& c : cases) {
        ASSERT_EQ(list.setExposure(c.exposure), 1);
        ASSERT_EQ(list.setTuneIntensity(c.tune), 1);
        RecordingSink sink = draw(c.flags);
        ASSERT_EQ(sink.points().size(), 1u);
        EXPECT_FLOAT_EQ(sink.points()[0].rgba[0], c.red) << c.flags << " " << c.exposure;
        EXPECT_FLOAT_EQ(sink.points()[0].rgba[1], c.green) << c.flags << " " << c.exposure;
    }
}

TEST_F(StarBatches, TexturedModeDrawsLargeStarsAsSpritesAndTheRestAsPoints) {
    load(2, starAt(0, 1, -10, kMidMag, 1) + starAt(0, 0, -10, -10.0f, 2));
    ASSERT_EQ(list.setStarTextureGauss(0.2f, 1.0f), 1);
    RecordingSink sink = draw(kStarColorFile | kStarTextured);
    std::vector<Event> sprites = sink.of(Event::kSprite);
    ASSERT_EQ(sprites.size(), 1u);
    EXPECT_EQ(list.getStarArray()[sprites[0].sprite.starIndex].hd, 2);
    ASSERT_EQ(sink.points().size(), 1u);
    EXPECT_FLOAT_EQ(sink.points()[0].size, 1.5f);
    EXPECT_FLOAT_EQ(sink.points()[0].rgba[3], 200.0f / 255.0f);
    // The sprite is a square around the star (aspect 1 here), centred on it.
    const StarSprite& s = sprites[0].sprite;
    double cx = 0, cy = 0;
    for (auto& c : s.corner) {
        cx += c[0] / 4;
        cy += c[1] / 4;
    }
    EXPECT_NEAR(cx, 0.0, 1e-9);
    EXPECT_NEAR(cy, 0.0, 1e-9);
    EXPECT_NEAR(std::fabs(s.corner[1][0] - s.corner[0][0]), s.corner[2][1] - s.corner[0][1], 1e-9);
    // Half height tan(bucket 32 x 0.25 x rpp) x distance / half-light radius (0.5 before any
    // texture is made) / 2.
    EXPECT_NEAR(s.corner[2][1] - s.corner[0][1], 2 * std::tan(8 * kMidRpp) * 10 / 0.5 / 2, 1e-9);
    EXPECT_EQ(s.texMin, 0.0f);
    // pxsizeTex above every bucket: no sprites at all.
    ASSERT_EQ(list.setPXsizeTex(64), 1);
    RecordingSink points = draw(kStarColorFile | kStarTextured);
    EXPECT_TRUE(points.of(Event::kSprite).empty());
    EXPECT_EQ(points.points().size(), 2u);
}
