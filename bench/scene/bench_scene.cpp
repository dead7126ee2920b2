// The star scene on the real data tree (build it first with the "data" target):
//
//   BM_ProgramToFirstFrame   the skyrama program with the tour and the 98,600-star catalogue,
//                            from its start to its first drawn frame with the panel
//                            (target: under 2 s);
//   BM_StartUpToFirstFrame   the same in this process: initScene and the first frame;
//   BM_DefaultSceneFrame     one frame of the default scene at 1024 x 768 on the tour's first
//                            view (stars, constellation lines and names, both sky grids, the
//                            orrery): whole, without the stars, and the stars alone (target:
//                            the layers other than the stars under 20 % of the frame); and the
//                            two layers that fill the view, the Milky Way and the Sun's glow.
//
// Needs an X display (run under Xvfb).

#include <benchmark/benchmark.h>

#include <GL/freeglut.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "framework/framework_state.h"
#include "framework/view_control.h"
#include "movie/movie_record.h"
#include "scene/scene.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "tests/support/gl_test_window.h"

extern char** environ;

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;
const std::string kRoot = SKYRAMA_SOURCE_DIR;
const char* const kCatalogues[] = {"data/stardata/nearby.star", "data/stardata/hipparcos.star"};

bool haveDataTree() {
    return std::filesystem::exists(kRoot + "/data/stardata/hipparcos.star") &&
           std::filesystem::exists(kRoot + "/data/movies/tour.scp");
}

// Runs f with the standard output and error streams sent to /dev/null.
template <typename F>
auto quietly(F&& f) {
    std::fflush(stdout);
    std::fflush(stderr);
    const int out = dup(1), err = dup(2);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    dup2(null, 2);
    auto result = f();
    std::fflush(stdout);
    std::fflush(stderr);
    dup2(out, 1);
    dup2(err, 2);
    close(null);
    close(out);
    close(err);
    return result;
}

// The tour's first view, applied to the test window.
void tourView() {
    MovieRecord tour;
    View v;
    if (tour.loadRecord((kRoot + "/data/movies/tour.scp").c_str(), 1) == 1 &&
        tour.evaluateFrame(0.0, v) == 1) {
        v.aspect = static_cast<double>(kWidth) / kHeight;
        applyView(v);
    }
}

bool loadScene(const char* catalogue) {
    std::filesystem::current_path(kRoot);
    setenv("TOPDIR", kRoot.c_str(), 1);
    quitScene();
    std::string file = catalogue;
    char* argv[] = {file.data(), nullptr};
    return quietly([&] { return initScene(1, argv); }) == 0;
}

void drawOneFrame() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_LIGHTING);
    glPushMatrix();
    drawScene(0.0, 1, renderFlagsWord(), currLogScale, 0);
    glPopMatrix();
    glPopAttrib();
    glFinish();
}

// With SKYRAMA_BENCH_SHOTS set to a folder, the first frame of each case is also written there
// as a binary PPM (for comparing what is drawn before and after a change).
void writeShot(const std::string& name) {
    const char* folder = std::getenv("SKYRAMA_BENCH_SHOTS");
    if (folder == nullptr) return;
    std::vector<unsigned char> rgb(static_cast<std::size_t>(kWidth) * kHeight * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    std::ofstream out(std::string(folder) + "/" + name + ".ppm", std::ios::binary);
    out << "P6\n" << kWidth << " " << kHeight << "\n255\n";
    for (int y = kHeight - 1; y >= 0; --y)
        out.write(reinterpret_cast<const char*>(&rgb[static_cast<std::size_t>(y) * kWidth * 3]),
                  kWidth * 3);
}

bool openWindow() {
    return testsupport::openTestWindow(kWidth, kHeight);
}

void BM_StartUpToFirstFrame(benchmark::State& state) {
    if (!haveDataTree() || !openWindow()) {
        state.SkipWithError("needs the data tree and a display");
        return;
    }
    for (auto _ : state) {
        if (!loadScene(kCatalogues[1])) {
            state.SkipWithError("the scene did not start");
            return;
        }
        glViewport(0, 0, kWidth, kHeight);
        panelEmbedded = false;
        tourView();
        drawOneFrame();
    }
}
BENCHMARK(BM_StartUpToFirstFrame)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

// The default scene is stars, constellation lines and names, both sky grids and the
// orrery; the layers other than the stars are also timed one by one, and the Milky Way
// surround and the Sun's glow, which fill the whole view with texture, on their own.
enum Layers {
    kDefaultScene,
    kDefaultWithoutStars,
    kStarsOnly,
    kMilkyWayOnly,
    kSunOnly,
    kOrreryOnly,
    kConstellationsOnly,
    kGridsOnly,
    kNothing
};
const char* const kLayerNames[] = {" default scene",
                                   " default scene without the stars",
                                   " stars only",
                                   " Milky Way only",
                                   " Sun only",
                                   " orrery only",
                                   " constellation lines and names only",
                                   " grids only",
                                   " empty frame"};

void sceneSettingsFor(int layers) {
    SceneSettings& s = sceneSettings;
    s = SceneSettings{};
    s.showMilkyWay = s.showSun = false;
    s.showConstellationLines = s.showConstellationNames = true;
    s.showEquatorialGrid = s.showGalacticGrid = true;
    if (layers == kDefaultScene) return;
    s.showStars = false;
    if (layers == kDefaultWithoutStars) return;
    s.showConstellationLines = s.showConstellationNames = layers == kConstellationsOnly;
    s.showEquatorialGrid = s.showGalacticGrid = layers == kGridsOnly;
    s.showSolarSystem = layers == kOrreryOnly;
    s.showStars = layers == kStarsOnly;
    s.showMilkyWay = layers == kMilkyWayOnly;
    s.showSun = layers == kSunOnly;
}

void BM_DefaultSceneFrame(benchmark::State& state) {
    if (!haveDataTree() || !openWindow()) {
        state.SkipWithError("needs the data tree and a display");
        return;
    }
    const char* catalogue = kCatalogues[state.range(0)];
    if (sceneObjects.firstStarFile != catalogue && !loadScene(catalogue)) {
        state.SkipWithError("the scene did not start");
        return;
    }
    glViewport(0, 0, kWidth, kHeight);
    winWidth = kWidth;
    winHeight = kHeight;
    panelEmbedded = false;
    tourView();
    sceneSettingsFor(static_cast<int>(state.range(1)));
    quietly([] {
        drawOneFrame();  // textures load on the first frame
        return 0;
    });
    drawOneFrame();
    writeShot(std::to_string(state.range(0)) + "_" + std::to_string(state.range(1)));
    for (auto _ : state)
        drawOneFrame();
    state.SetLabel(std::string(catalogue).substr(14) + kLayerNames[state.range(1)]);
}
BENCHMARK(BM_DefaultSceneFrame)
    ->ArgsProduct({{0, 1},
                   {kDefaultScene, kDefaultWithoutStars, kStarsOnly, kMilkyWayOnly, kSunOnly,
                    kOrreryOnly, kConstellationsOnly, kGridsOnly, kNothing}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The program from its start to its first frame: the panel's first echo on standard output
// comes from inside the first drawn frame.
void BM_ProgramToFirstFrame(benchmark::State& state) {
    if (!haveDataTree() || std::getenv("DISPLAY") == nullptr) {
        state.SkipWithError("needs the data tree and a display");
        return;
    }
    const std::string out = std::filesystem::temp_directory_path() / "bench_scene_first_frame.out";
    for (auto _ : state) {
        std::vector<std::string> words{SKYRAMA_BINARY_DIR "/skyrama", "data/movies/tour.scp",
                                       kCatalogues[1]};
        std::vector<char*> argv;
        for (std::string& w : words)
            argv.push_back(w.data());
        argv.push_back(nullptr);
        setenv("SKYRAMA_PANEL_TRACE", "1", 1);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                         0644);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addchdir_np(&actions, kRoot.c_str());
        const auto start = std::chrono::steady_clock::now();
        pid_t pid = -1;
        posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        unsetenv("SKYRAMA_PANEL_TRACE");
        bool drawn = false;
        while (!drawn && std::chrono::steady_clock::now() - start < std::chrono::seconds(30)) {
            std::ifstream in(out);
            std::stringstream text;
            text << in.rdbuf();
            drawn = text.str().find("panel rollouts:") != std::string::npos;
            if (!drawn) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (pid > 0) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
        if (!drawn) {
            state.SkipWithError("no first frame within 30 s");
            break;
        }
        state.SetIterationTime(seconds);
    }
    std::filesystem::remove(out);
}
BENCHMARK(BM_ProgramToFirstFrame)->Unit(benchmark::kMillisecond)->Iterations(3)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
