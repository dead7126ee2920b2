// Star drawing over a run of frames, recorded without a window: what is kept from frame to
// frame while the eye stands still must not change what is drawn, and points that cannot
// reach the viewport are left out.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "catalogue/star_list.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"
#include "tests/starrender/starrender_test_util.h"

namespace {

using srtest::kDegree;

struct Drawn {
    float size;
    double v[3];
    float rgba[4];
    bool operator==(const Drawn& o) const {
        return size == o.size && std::equal(v, v + 3, o.v) && std::equal(rgba, rgba + 4, o.rgba);
    }
};

class PointSink : public StarDrawSink {
  public:
    std::vector<Drawn> points;
    float size = 0.0f;
    void beginPoints(float s) override { size = s; }
    void point(const double v[3], const float rgba[4]) override {
        points.push_back(Drawn{size, {v[0], v[1], v[2]}, {rgba[0], rgba[1], rgba[2], rgba[3]}});
    }
    void endPoints() override {}
};

// n moving stars scattered within 40 parsecs, bright enough that many are drawn in every size.
void loadScatter(StarList& list, const cattest::ScratchDir& dir, int n) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> u(-1.0, 1.0), mag(-4.0, 9.0);
    std::string lines;
    for (int i = 0; i < n; ++i) {
        Vec3 p;
        do {
            p = Vec3{u(random), u(random), u(random)};
        } while (dot(p, p) > 1.0 || dot(p, p) < 1e-4);
        lines += srtest::starAt(40 * p.x, 40 * p.y, 40 * p.z, mag(random), i + 1, "0.9 0.8 0.7");
    }
    cattest::loadStars(list, dir, n, lines);
    ASSERT_EQ(list.setStarAtYear(2000), 1);
}

StarFrame frameOf(const Vec3& eye, double turn, double fovy) {
    return srtest::frameOf(eye, turn, 1.0 / std::tan(fovy / 2 * kDegree));
}

std::vector<float> magnitudes(const StarList& list) {
    std::vector<float> m;
    for (int i = 0; i < list.getNumRecords(); ++i)
        m.push_back(list.getStarArray()[i].appMag);
    return m;
}

}  // namespace

TEST(StarFrames, AStillEyeTurningAndZoomingDrawsWhatAFreshEyeDraws) {
    cattest::ScratchDir dir;
    StarList still, fresh;
    loadScatter(still, dir, 3000);
    loadScatter(fresh, dir, 3000);
    const Vec3 sun{0, 0, 0}, away{3.0, -1.0, 2.0};
    struct Step {
        Vec3 eye;
        double turn, fovy;
        bool vmagRange;
    };
    // Turns that bring stars from behind into view, a zoom, a magnitude selection, a move.
    const std::vector<Step> steps = {
        {sun, 0, 60, false},    {sun, 0, 60, false},    {sun, 40, 60, false},
        {sun, 95, 60, false},   {sun, 95, 20, false},   {sun, 150, 20, true},
        {sun, 150, 20, true},   {sun, 200, 90, false},  {away, 200, 90, false},
        {away, 230, 90, false}, {away, 260, 45, false}, {away, 260, 45, false}};
    int drawnInAll = 0;
    for (std::size_t n = 0; n < steps.size(); ++n) {
        const Step& st = steps[n];
        for (StarList* list : {&still, &fresh}) {
            if (st.vmagRange) {
                ASSERT_EQ(list->setVMagRangeOn(2.0, 8.0), 1);
            } else {
                ASSERT_EQ(list->setVMagRangeOff(), 1);
            }
        }
        // The same positions again: nothing seen before counts for `fresh`.
        ASSERT_EQ(fresh.setStarAtYear(2000), 1);
        PointSink a, b;
        const StarFrame frame = frameOf(st.eye, st.turn, st.fovy);
        still.drawStarsInto(frame, kStarColorFile | kStarDepthWrite, a);
        fresh.drawStarsInto(frame, kStarColorFile | kStarDepthWrite, b);
        ASSERT_EQ(a.points.size(), b.points.size()) << "step " << n;
        for (std::size_t i = 0; i < a.points.size(); ++i)
            ASSERT_TRUE(a.points[i] == b.points[i]) << "step " << n << " point " << i;
        // Stars behind the eye keep the magnitude of the last eye that saw them, in both.
        ASSERT_EQ(magnitudes(still), magnitudes(fresh)) << "step " << n;
        drawnInAll += static_cast<int>(a.points.size());
    }
    EXPECT_GT(drawnInAll, 1000);
}

TEST(StarFrames, PointsOffTheViewportAreLeftOutAndTheRestKeepTheirSizeAndOrderBySize) {
    cattest::ScratchDir dir;
    StarList list;
    loadScatter(list, dir, 3000);
    const StarFrame frame = frameOf(Vec3{0, 0, 0}, 30, 40);
    // Without a viewport to go by, every visible star in front of the eye is handed on.
    StarFrame everyPoint = frame;
    everyPoint.viewport[2] = everyPoint.viewport[3] = 0;
    PointSink all, culled;
    list.drawStarsInto(everyPoint, kStarColorFile, all);
    list.drawStarsInto(frame, kStarColorFile, culled);
    ASSERT_LT(culled.points.size(), all.points.size() / 2);
    ASSERT_GT(culled.points.size(), 50u);

    // Window position of a drawn vertex: the frame's rotation and projection.
    auto window = [&](const Drawn& d, double* x, double* y) {
        const double* m = frame.rotation;
        double e[3];
        for (int r = 0; r < 3; ++r)
            e[r] = m[r] * d.v[0] + m[4 + r] * d.v[1] + m[8 + r] * d.v[2];
        const double f = 1.0 / std::tan(20 * kDegree);
        *x = 400.0 + 400.0 * (f * 0.75 * e[0] / -e[2]);
        *y = 300.0 + 300.0 * (f * e[1] / -e[2]);
    };
    // Points of one size come in the same order as among all points (farthest first), and
    // each point left out lies beyond the viewport by more than its radius.
    std::map<float, std::vector<Drawn>> culledBySize;
    for (const Drawn& d : culled.points)
        culledBySize[d.size].push_back(d);
    std::map<float, std::size_t> next;
    for (const Drawn& d : all.points) {
        const std::vector<Drawn>& same = culledBySize[d.size];
        std::size_t& n = next[d.size];
        if (n < same.size() && d == same[n]) {
            ++n;
            continue;
        }
        double x, y;
        window(d, &x, &y);
        const double radius = d.size / 2.0;
        EXPECT_TRUE(x < -radius || x > 800 + radius || y < -radius || y > 600 + radius)
            << "left out at (" << x << ", " << y << ") size " << d.size;
    }
    for (const auto& [size, same] : culledBySize)
        EXPECT_EQ(next[size], same.size()) << "size " << size;
}

TEST(StarFrames, RecordsHoldTheMagnitudeOfTheLastEyeThatSawEachStar) {
    cattest::ScratchDir dir;
    StarList list;
    loadScatter(list, dir, 400);
    const int n = list.getNumRecords();
    std::vector<StarObj> records(list.getStarArray(), list.getStarArray() + n);
    std::vector<float> expected(records.size(), std::nanf(""));
    // What a frame from eye turned by turn degrees sees: the magnitude of each star in front.
    auto see = [&](const Vec3& eye, double turn) {
        const Vec3 view{std::sin(turn * kDegree), 0.0, -std::cos(turn * kDegree)};
        for (int i = 0; i < n; ++i) {
            const Phc& q = records[i].pos;
            const double scale = std::pow(10.0, q.w - srtest::kParsecLog);
            const Vec3 p{q.x * scale - eye.x, q.y * scale - eye.y, q.z * scale - eye.z};
            if (dot(p, view) < 0.0) continue;
            const double w = std::log10(std::sqrt(dot(p, p))) + srtest::kParsecLog;
            expected[i] = list.apparentMagnitude(records[i].absMag, w);
        }
    };
    auto check = [&](const char* when) {
        int seen = 0;
        for (int i = 0; i < n; ++i) {
            if (std::isnan(expected[i])) continue;
            ASSERT_NEAR(list.getStarArray()[i].appMag, expected[i], 1e-4) << when << " star " << i;
            ++seen;
        }
        EXPECT_GT(seen, n / 2) << when;
    };
    PointSink sink;
    // The view turns about for 100 frames and then looks one way: the stars behind were
    // last seen by eyes that the list had to give up.
    auto eyeOf = [](int k) { return Vec3{0.002 * k, 0.0, 0.001 * k}; };
    auto turnOf = [](int k) { return k < 100 ? k * 37.0 : 0.0; };
    auto draw = [&](int k) {
        list.drawStarsInto(frameOf(eyeOf(k), turnOf(k), 40), kStarColorFile, sink);
    };
    // More frames between two reads than the eyes kept for them, each seeing another part of
    // the sky, the stars off the viewport too.
    for (int k = 0; k < 5000; ++k) {
        draw(k);
        see(eyeOf(k), turnOf(k));
    }
    check("after 5000 frames");
    // Stars that move: a frame sees them where they are now, the records of the others keep
    // what the frames before saw where they were.
    for (int k = 5000; k < 5010; ++k) {
        draw(k);
        see(eyeOf(k), turnOf(k));
    }
    ASSERT_EQ(list.setStarAtYear(60000), 1);
    draw(5010);
    for (int i = 0; i < n; ++i)
        records[i].pos = list.getStarArray()[i].pos;
    see(eyeOf(5010), turnOf(5010));
    check("after the stars moved");
}

TEST(StarFrames, TexturedFramesLeaveTheirDrawBucketsCoveragesAndEyePositionsInTheRecords) {
    // Two lists see the same frames; one is read after every frame, the other only at the
    // end, and their records must then agree field for field.
    cattest::ScratchDir dir;
    StarList readEachFrame, readAtEnd;
    for (StarList* list : {&readEachFrame, &readAtEnd}) {
        loadScatter(*list, dir, 400);
        ASSERT_EQ(list->setPXsizeTex(6), 1);
    }
    const int n = readAtEnd.getNumRecords();
    const double nearW = srtest::kParsecLog + 1.0, farW = srtest::kParsecLog + std::log10(30.0);
    struct Frame {
        Vec3 eye;
        double turn;
        int flags;
        bool zRange;
    };
    // Textured frames replace each other's fields; a point frame leaves them be; the last
    // frame's distance selection covers only some of the stars, the others keep what the
    // frame before it left.
    const Frame frames[] = {{{1, 0, 0}, 90, kStarColorFile | kStarTextured, false},
                            {{0, 2, 1}, 0, kStarColorFile | kStarTextured, false},
                            {{0, 0, 0}, 180, kStarColorFile, false},
                            {{-1, 0, 3}, 200, kStarColorFile | kStarTextured, true}};
    PointSink sink;
    for (const Frame& f : frames) {
        for (StarList* list : {&readEachFrame, &readAtEnd}) {
            if (f.zRange) {
                ASSERT_EQ(list->setZRangeOn(nearW, farW), 1);
            }
            list->drawStarsInto(frameOf(f.eye, f.turn, 40), f.flags, sink);
        }
        readEachFrame.getStarArray();
    }
    const StarObj* each = readEachFrame.getStarArray();
    const StarObj* atEnd = readAtEnd.getStarArray();
    int kept = 0, keptBefore = 0;
    for (int i = 0; i < n; ++i) {
        SCOPED_TRACE("star " + std::to_string(i));
        const StarObj& s = atEnd[i];
        EXPECT_EQ(s.drawBucket, each[i].drawBucket);
        if (s.drawBucket == 0) continue;
        EXPECT_EQ(s.drawCoverage, each[i].drawCoverage);
        for (double Phc::*c : {&Phc::x, &Phc::y, &Phc::z, &Phc::w})
            EXPECT_EQ(s.eyePos.*c, each[i].eyePos.*c);
        EXPECT_LT(s.drawBucket, 6);
        const bool inLastRange = s.pos.w >= nearW && s.pos.w <= farW;
        (inLastRange ? kept : keptBefore) += 1;
        // The eye position is the direction and distance from the eye of the frame that
        // kept the star.
        const Vec3 eye = inLastRange ? frames[3].eye : frames[1].eye;
        const double scale = std::pow(10.0, s.pos.w - srtest::kParsecLog);
        const Vec3 p{s.pos.x * scale - eye.x, s.pos.y * scale - eye.y, s.pos.z * scale - eye.z};
        const double len = std::sqrt(dot(p, p));
        EXPECT_NEAR(s.eyePos.w, std::log10(len) + srtest::kParsecLog, 1e-9);
        EXPECT_NEAR(s.eyePos.x, p.x / len, 1e-9);
        EXPECT_NEAR(s.eyePos.z, p.z / len, 1e-9);
    }
    EXPECT_GT(kept, 10);
    EXPECT_GT(keptBefore, 10);
}
