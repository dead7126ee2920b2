// How much a movie dump adds to rendering: the same frames are drawn once by the display
// callback alone and once by the movie dump (render, read back, flip, write the PNM). The
// target is at most 10 % of the dump's time beyond rendering.
//
// The scene draws 100 000 smooth blended points of 2 pixels, the star scene's load with a
// catalogue of that size (about 70 ms a frame on Mesa's software renderer). Needs an
// X display: with DISPLAY unset the benchmark starts its own Xvfb.

#include <benchmark/benchmark.h>

#include <GL/freeglut.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "common_package/math/src/random.h"
#include "framework/dumps.h"
#include "framework/frame_loop.h"
#include "framework/framework_state.h"
#include "framework/gl_setup.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"

extern char** environ;

namespace {

constexpr int kFrames = 8;
constexpr int kPoints = 100000;

std::vector<float> points;
std::string workDir;

void drawPoints(double, int, int, double, int) {
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_POINT_SMOOTH);
    glEnable(GL_BLEND);
    glPointSize(2.0f);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glVertexPointer(3, GL_FLOAT, 6 * sizeof(float), points.data());
    glColorPointer(3, GL_FLOAT, 6 * sizeof(float), points.data() + 3);
    glDrawArrays(GL_POINTS, 0, kPoints);
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
}

std::string writeScript(int width, int height) {
    const std::string name = workDir + "/bench.scp";
    std::ofstream out(name);
    out << "Movie Script\n-----\nresolution : " << width << " x " << height
        << "\ninterp : spline spline-quat\nnKeyFrames : 2\n\n";
    const char* views[2] = {"viewPos = 0 0 3 0\nviewDir = 0 0 -1\n",
                            "viewPos = 2 0 2 0\nviewDir = -1 0 -1\n"};
    for (int k = 0; k < 2; ++k) {
        out << "KeyFrame " << k * (kFrames - 1) << "\n-----\n"
            << views[k]
            << "viewUp = 0 1 0\nfovy = 50\naspect = " << static_cast<double>(width) / height
            << "\n\n";
    }
    return name;
}

// The framework's window and state for one resolution.
void setUpViewer(int width, int height) {
    static bool glutReady = false;
    if (!glutReady) {
        int argc = 1;
        char name[] = "bench_movie_dump";
        char* argv[] = {name, nullptr};
        glutInit(&argc, argv);
        glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH | GLUT_RGBA);
        glutInitWindowSize(width, height);
        mainWindow = glutCreateWindow("bench");
        glutDisplayFunc([] {});
        setUpGLState();
        SceneEntryPoints scene;
        scene.drawScene = drawPoints;
        setActiveScene(scene);
        seedRandom(7);
        for (int i = 0; i < kPoints; ++i) {
            for (int c = 0; c < 3; ++c)
                points.push_back(nextRandom() / 32767.0f * 2.0f - 1.0f);
            for (int c = 0; c < 3; ++c)
                points.push_back(nextRandom() / 32767.0f);
        }
        glutReady = true;
    }
    glutSetWindow(mainWindow);
    glutReshapeWindow(width, height);
    for (int i = 0; i < 20; ++i)
        glutMainLoopEvent();
    glViewport(0, 0, width, height);
    winWidth = width;
    winHeight = height;
    movie = std::make_unique<MovieRecord>();
    movie->loadRecord(writeScript(width, height).c_str(), 1);
    setMovieFileHead(workDir + "/frame");
    jitterSize = 1;
    gzipFrames = false;
    frameSkip = 0;
    frameNumOffset = 0;
}

double seconds(std::chrono::steady_clock::time_point a, std::chrono::steady_clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

void BM_MovieDumpOverhead(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    const int height = static_cast<int>(state.range(1));
    setUpViewer(width, height);
    // The dump's progress lines are not what is measured here.
    const int savedErr = dup(2);
    const int devNull = open("/dev/null", O_WRONLY);
    // The machine is shared: the fastest of the runs of each kind is the measure.
    double render = 1e30, dump = 1e30;
    for (auto _ : state) {
        dup2(devNull, 2);
        auto t0 = std::chrono::steady_clock::now();
        for (int f = 0; f < kFrames; ++f) {
            currFrame = f;
            View v;
            if (movie->evaluateFrame(currFrame, v) == 1) applyView(v);
            displayCallback();
            glFinish();  // as the dump, which reads each frame back, waits for it
        }
        glFinish();
        auto t1 = std::chrono::steady_clock::now();
        dumpMovie(true);
        glFinish();
        auto t2 = std::chrono::steady_clock::now();
        dup2(savedErr, 2);
        render = std::min(render, seconds(t0, t1));
        dump = std::min(dump, seconds(t1, t2));
    }
    close(devNull);
    close(savedErr);
    const double frames = kFrames;
    state.counters["render_ms_per_frame"] = render / frames * 1000.0;
    state.counters["dump_ms_per_frame"] = dump / frames * 1000.0;
    state.counters["overhead_percent"] = dump > 0.0 ? (dump - render) / dump * 100.0 : 0.0;
}
BENCHMARK(BM_MovieDumpOverhead)
    ->Args({640, 480})
    ->Args({1920, 1080})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(7);

bool fileExists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

// A private Xvfb on the first free display from :90 on; DISPLAY is set to it.
pid_t startXvfb() {
    for (int n = 90; n < 130; ++n) {
        const std::string lock = "/tmp/.X" + std::to_string(n) + "-lock";
        const std::string socket = "/tmp/.X11-unix/X" + std::to_string(n);
        if (fileExists(lock) || fileExists(socket)) continue;
        const std::string display = ":" + std::to_string(n);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        char* argv[] = {const_cast<char*>("Xvfb"),         const_cast<char*>(display.c_str()),
                        const_cast<char*>("-screen"),      const_cast<char*>("0"),
                        const_cast<char*>("2048x1536x24"), const_cast<char*>("-nolisten"),
                        const_cast<char*>("tcp"),          nullptr};
        pid_t pid = -1;
        const int rc = posix_spawnp(&pid, "Xvfb", &actions, nullptr, argv, environ);
        posix_spawn_file_actions_destroy(&actions);
        if (rc != 0) return -1;
        for (int wait = 0; wait < 100 && !fileExists(socket); ++wait)
            usleep(30000);
        if (fileExists(socket)) {
            setenv("DISPLAY", display.c_str(), 1);
            return pid;
        }
        kill(pid, SIGTERM);
        waitpid(pid, nullptr, 0);
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv) {
    pid_t xvfb = -1;
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || *display == '\0') {
        xvfb = startXvfb();
        if (xvfb < 0) {
            std::fprintf(stderr, "bench_movie_dump: no DISPLAY and no Xvfb to start\n");
            return 1;
        }
    }
    char dir[] = "/tmp/skyrama-dump-bench.XXXXXX";
    if (mkdtemp(dir) == nullptr) return 1;
    workDir = dir;

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    const std::string clean = "rm -rf '" + workDir + "'";
    if (std::system(clean.c_str()) != 0) std::fprintf(stderr, "could not remove %s\n", dir);
    if (xvfb > 0) {
        kill(xvfb, SIGTERM);
        waitpid(xvfb, nullptr, 0);
    }
    return 0;
}
