// A full star frame on the software renderer: drawStars with the scene's flags over the
// ~98,600-star catalogue seen from the Sun, against a bare program that draws the very same
// points (positions, colours, sizes, one batch per size, the same GL state) with nothing else
// to do, which is the renderer's floor. The two are drawn alternately in one run; the target
// is a ratio of at most 1.2. Needs a display (run it with DISPLAY set, e.g. under Xvfb).

#include <GL/glu.h>
#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>
#include <vector>

#include "bench/starrender/star_bench_fixture.h"
#include "starrender/star_draw_sink.h"
#include "tests/support/gl_test_window.h"

namespace {

struct Point {
    double v[3];
    float rgba[4];
};

// Records what drawStars draws, grouped by point size.
class RecordingSink : public StarDrawSink {
  public:
    std::map<float, std::vector<Point>> bySize;
    float size = 1.0f;
    void beginPoints(float s) override { size = s; }
    void point(const double v[3], const float rgba[4]) override {
        Point p;
        for (int i = 0; i < 3; ++i)
            p.v[i] = v[i];
        for (int i = 0; i < 4; ++i)
            p.rgba[i] = rgba[i];
        bySize[size].push_back(p);
    }
    void endPoints() override {}
};

void setUpView() {
    glViewport(0, 0, kBenchViewport, kBenchViewport);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(kBenchFovy, 1.0, 0.01, 10000.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glClearColor(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
}

// The bare program: the recorded points, size by size, in the state drawStars uses; with
// flushEvery > 0 it also hands the renderer each so many points, as drawStars does.
void drawBare(const RecordingSink& points, int flushEvery) {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glEnable(GL_POINT_SMOOTH);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    int pending = 0;
    for (const auto& [size, list] : points.bySize) {
        glPointSize(size);
        glBegin(GL_POINTS);
        for (const Point& p : list) {
            glColor4fv(p.rgba);
            glVertex3dv(p.v);
            if (flushEvery > 0 && ++pending == flushEvery) {
                glEnd();
                glFlush();
                glBegin(GL_POINTS);
                pending = 0;
            }
        }
        glEnd();
    }
    glPopAttrib();
}

// The bare program with vertex arrays: one draw per point size.
void drawBareArrays(const RecordingSink& points) {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnable(GL_POINT_SMOOTH);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    for (const auto& [size, list] : points.bySize) {
        glPointSize(size);
        glVertexPointer(3, GL_DOUBLE, sizeof(Point), list.data()->v);
        glColorPointer(4, GL_FLOAT, sizeof(Point), list.data()->rgba);
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(list.size()));
    }
    glPopClientAttrib();
    glPopAttrib();
}

double seconds(std::chrono::steady_clock::time_point a, std::chrono::steady_clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

struct Scene {
    std::unique_ptr<StarList> list = makeCatalogueStarList();
    RecordingSink points;
    Scene() { list->drawStarsInto(benchFrame(), kSceneStarFlags, points); }
    long long numPoints() const {
        long long n = 0;
        for (const auto& entry : points.bySize)
            n += static_cast<long long>(entry.second.size());
        return n;
    }
};

Scene& scene() {
    static Scene s;
    return s;
}

void BM_StarFrameAgainstBarePoints(benchmark::State& state) {
    if (!testsupport::openTestWindow(kBenchViewport, kBenchViewport)) {
        state.SkipWithError("no display");
        return;
    }
    Scene& s = scene();
    setUpView();
    double starTime = 0.0, bareTime = 0.0, flushedTime = 0.0, arraysTime = 0.0;
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glFinish();
        const auto t0 = std::chrono::steady_clock::now();
        s.list->drawStars(kBenchLogScale, kSceneStarFlags, -1, -1);
        glFinish();
        const auto t1 = std::chrono::steady_clock::now();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glFinish();
        const auto t2 = std::chrono::steady_clock::now();
        drawBare(s.points, 0);
        glFinish();
        const auto t3 = std::chrono::steady_clock::now();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glFinish();
        const auto t4 = std::chrono::steady_clock::now();
        drawBare(s.points, 4096);
        glFinish();
        const auto t5 = std::chrono::steady_clock::now();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glFinish();
        const auto t6 = std::chrono::steady_clock::now();
        drawBareArrays(s.points);
        glFinish();
        const auto t7 = std::chrono::steady_clock::now();
        arraysTime += seconds(t6, t7);
        starTime += seconds(t0, t1);
        bareTime += seconds(t2, t3);
        flushedTime += seconds(t4, t5);
        state.SetIterationTime(seconds(t0, t1));
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["star_frame_ms"] = starTime / n * 1e3;
    state.counters["bare_points_ms"] = bareTime / n * 1e3;
    state.counters["ratio"] = starTime / bareTime;
    // The bare program handing its points over in the same pieces as drawStars does.
    state.counters["bare_flushed_ms"] = flushedTime / n * 1e3;
    state.counters["ratio_flushed"] = starTime / flushedTime;
    // The bare program drawing each size's points with one vertex-array call.
    state.counters["bare_arrays_ms"] = arraysTime / n * 1e3;
    state.counters["ratio_arrays"] = starTime / arraysTime;
    state.counters["points"] = static_cast<double>(s.numPoints());
    state.counters["stars"] = s.list->getNumRecords();
}

}  // namespace

BENCHMARK(BM_StarFrameAgainstBarePoints)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0);
BENCHMARK_MAIN();
