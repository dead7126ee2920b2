// A full star frame on the software renderer: drawStars with the scene's flags over the
// ~98,600-star catalogue around the Sun, against bare programs that draw the very same points
// (positions, colours, sizes, the same GL state) with nothing else to do, which is the
// renderer's floor. Target: the star frame takes at most 1.2 times the fastest bare program.
//
// Frames cycle through eight views, each recorded once for the bare programs:
//   /0  the eye stands still at the Sun while the view turns a quarter degree a frame (what
//       the star drawing keeps from frame to frame is used);
//   /1  the eye moves a hundredth of a parsec a frame (nothing is kept: every star that can
//       reach the viewport is measured anew).
// The bare programs:
//   immediate    glBegin/glEnd, one batch per point size;
//   flushed      the same, handing the renderer every 4096 points (it rasterises on threads of
//                its own after a flush);
//   arrays       vertex arrays, one draw per point size;
//   sized        vertex arrays whose points carry their own sizes (the point-size program,
//                where the renderer has it), in pieces of 1024 points each flushed: the way
//                drawStars hands its points over.
// Each variant is timed every iteration, side by side, and the medians are compared (the
// machine is shared; medians keep a stray slow frame from deciding). Needs a display (run it
// with DISPLAY set, e.g. under Xvfb).

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

#include "bench/starrender/star_bench_fixture.h"
#include "starrender/point_size_program.h"
#include "starrender/star_draw_sink.h"
#include "tests/support/gl_test_window.h"

namespace {

constexpr int kViews = 8;
constexpr double kTurnDegrees = 0.25;  // per frame, with the eye still
constexpr double kStepParsecs = 0.01;  // per frame, with the eye moving
constexpr double kPi = 3.14159265358979323846;

struct Point {
    float v[3];
    float rgba[4];
    float size;
};

// Records what drawStars draws, in order and grouped by point size.
class RecordingSink : public StarDrawSink {
  public:
    std::vector<Point> inOrder;
    std::map<float, std::vector<Point>> bySize;
    float size = 1.0f;
    void beginPoints(float s) override { size = s; }
    void point(const double v[3], const float rgba[4]) override {
        Point p;
        for (int i = 0; i < 3; ++i)
            p.v[i] = static_cast<float>(v[i]);
        for (int i = 0; i < 4; ++i)
            p.rgba[i] = rgba[i];
        p.size = size;
        inOrder.push_back(p);
        bySize[size].push_back(p);
    }
    void endPoints() override {}
};

// The modelview of view number n: the camera at eye (parsecs) looking down -z turned by
// `turn` degrees about the y axis.
void loadView(double turnDegrees, const double eye[3]) {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotated(turnDegrees, 0, 1, 0);
    glTranslated(-eye[0], -eye[1], -eye[2]);
}

void setUpProjection() {
    glViewport(0, 0, kBenchViewport, kBenchViewport);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(kBenchFovy, 1.0, 0.01, 10000.0);
    glMatrixMode(GL_MODELVIEW);
    glClearColor(0, 0, 0, 0);
    glEnable(GL_DEPTH_TEST);
}

// The frame drawStars would see for the current matrices.
StarFrame currentFrame() {
    double modelview[16], projection[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    return makeStarFrame(modelview, projection, viewport, kBenchLogScale);
}

// The state drawStars draws its points in, with the rotation-only modelview it loads.
void beginBare(bool arrays) {
    const StarFrame frame = currentFrame();
    glPushMatrix();
    glLoadMatrixd(frame.rotation);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnable(GL_POINT_SMOOTH);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (arrays) {
        glEnableClientState(GL_VERTEX_ARRAY);
        glEnableClientState(GL_COLOR_ARRAY);
    }
}

void endBare() {
    glPopClientAttrib();
    glPopAttrib();
    glPopMatrix();
}

void drawImmediate(const RecordingSink& points, int flushEvery) {
    beginBare(false);
    int pending = 0;
    for (const auto& [size, list] : points.bySize) {
        glPointSize(size);
        glBegin(GL_POINTS);
        for (const Point& p : list) {
            glColor4fv(p.rgba);
            glVertex3fv(p.v);
            if (flushEvery > 0 && ++pending == flushEvery) {
                glEnd();
                glFlush();
                glBegin(GL_POINTS);
                pending = 0;
            }
        }
        glEnd();
    }
    endBare();
}

void drawArrays(const RecordingSink& points) {
    beginBare(true);
    for (const auto& [size, list] : points.bySize) {
        glPointSize(size);
        glVertexPointer(3, GL_FLOAT, sizeof(Point), list.data()->v);
        glColorPointer(4, GL_FLOAT, sizeof(Point), list.data()->rgba);
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(list.size()));
    }
    endBare();
}

// Points in the order drawStars draws them, each with its size; without the point-size
// program (another renderer) one draw per run of one size.
void drawSized(const RecordingSink& points, const PointSizeProgram& program) {
    constexpr std::size_t kPiece = 1024;
    beginBare(true);
    const std::vector<Point>& all = points.inOrder;
    const GLuint attribute = static_cast<GLuint>(program.sizeAttribute);
    if (program.program != 0) {
        glUseProgram(program.program);
        glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
        glEnableVertexAttribArray(attribute);
    }
    for (std::size_t i = 0; i < all.size();) {
        std::size_t n = std::min(kPiece, all.size() - i);
        if (program.program == 0) {
            std::size_t run = 1;
            while (run < n && all[i + run].size == all[i].size)
                ++run;
            n = run;
            glPointSize(all[i].size);
        } else {
            glVertexAttribPointer(attribute, 1, GL_FLOAT, GL_FALSE, sizeof(Point), &all[i].size);
        }
        glVertexPointer(3, GL_FLOAT, sizeof(Point), all[i].v);
        glColorPointer(4, GL_FLOAT, sizeof(Point), all[i].rgba);
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(n));
        glFlush();
        i += n;
    }
    if (program.program != 0) {
        glDisableVertexAttribArray(attribute);
        glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
        glUseProgram(0);
    }
    endBare();
}

double median(std::vector<double> v) {
    if (v.empty()) return 0.0;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

template <typename F>
double timed(F&& draw) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glFinish();
    const auto start = std::chrono::steady_clock::now();
    draw();
    glFinish();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

StarList& catalogue() {
    static std::unique_ptr<StarList> list = makeCatalogueStarList();
    return *list;
}

void BM_StarFrameAgainstBarePoints(benchmark::State& state) {
    if (!testsupport::openTestWindow(kBenchViewport, kBenchViewport)) {
        state.SkipWithError("no display");
        return;
    }
    const bool eyeMoves = state.range(0) == 1;
    StarList& list = catalogue();
    setUpProjection();
    const PointSizeProgram program = pointSizeProgram();

    double turns[kViews], eyes[kViews][3];
    std::vector<RecordingSink> recorded(kViews);
    for (int v = 0; v < kViews; ++v) {
        turns[v] = eyeMoves ? 0.0 : v * kTurnDegrees;
        eyes[v][0] = eyeMoves ? v * kStepParsecs : 0.0;
        eyes[v][1] = eyes[v][2] = 0.0;
        loadView(turns[v], eyes[v]);
        list.drawStarsInto(currentFrame(), kSceneStarFlags, recorded[v]);
    }

    enum { kStar, kImmediate, kFlushed, kArrays, kSized, kVariants };
    std::vector<double> times[kVariants];
    int v = 0;
    for (auto _ : state) {
        loadView(turns[v], eyes[v]);
        const RecordingSink& points = recorded[v];
        const double star = timed([&] { list.drawStars(kBenchLogScale, kSceneStarFlags, -1, -1); });
        times[kStar].push_back(star);
        times[kImmediate].push_back(timed([&] { drawImmediate(points, 0); }));
        times[kFlushed].push_back(timed([&] { drawImmediate(points, 4096); }));
        times[kArrays].push_back(timed([&] { drawArrays(points); }));
        times[kSized].push_back(timed([&] { drawSized(points, program); }));
        state.SetIterationTime(star);
        v = (v + 1) % kViews;
    }

    const char* const names[kVariants] = {"star_frame", "bare_immediate", "bare_flushed",
                                          "bare_arrays", "bare_sized"};
    double medians[kVariants];
    for (int i = 0; i < kVariants; ++i) {
        medians[i] = median(times[i]);
        state.counters[std::string(names[i]) + "_ms"] = medians[i] * 1e3;
    }
    double floor = medians[kImmediate];
    for (int i = kImmediate; i < kVariants; ++i) {
        floor = std::min(floor, medians[i]);
        state.counters[std::string("ratio_") + (names[i] + 5)] = medians[kStar] / medians[i];
    }
    state.counters["ratio"] = medians[kStar] / floor;  // against the fastest bare program
    long long points = 0;
    for (const RecordingSink& r : recorded)
        points += static_cast<long long>(r.inOrder.size());
    state.counters["points"] = static_cast<double>(points) / kViews;
    state.counters["stars"] = list.getNumRecords();
    state.counters["sized_program"] = program.program != 0 ? 1 : 0;
    state.SetLabel(eyeMoves ? "eye moving" : "eye still, view turning");
}

}  // namespace

BENCHMARK(BM_StarFrameAgainstBarePoints)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->MinTime(3.0);
BENCHMARK_MAIN();
