// CPU cost of one orrery frame: nine planet trails of up to 151 samples each, placed at a
// log scale (target: under 1 ms), and, when a display is there, the whole frame drawn.

#include <benchmark/benchmark.h>

#include "bench/solar/bench_ephemeris_file.h"
#include "solar/orrery.h"
#include "solar/orrery_layout.h"
#include "tests/support/gl_test_window.h"

#include <GL/gl.h>

namespace {

constexpr long long kJ2000Gmt = 946728000;

// Trail lengths: the default 150 days (Mercury 76 vertices, the others 51), and 302 days,
// which gives Mercury 151 vertices and every planet its longest trail below the step limits.
void BM_OrreryLayout(benchmark::State& state) {
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), true) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    ephemeris.setCacheSize(2 * ephemeris.cacheSize());
    OrrerySettings settings;
    settings.orbitLengthDays = static_cast<double>(state.range(0));
    OrreryLayout layout;
    long long samples = 0;
    long long moment = kJ2000Gmt;
    for (auto _ : state) {
        layOutOrrery(ephemeris, settings, moment, 11.0, layout);
        moment += 600;  // the clock moves on between frames
        for (const PlanetLayout& planet : layout.planets)
            samples += planet.trail.size();
    }
    state.counters["samples/frame"] = static_cast<double>(samples) / state.iterations();
}
BENCHMARK(BM_OrreryLayout)->Arg(150)->Arg(302)->Unit(benchmark::kMicrosecond);

// 9 x 151 positions through the GMT form, as a frame of the orrery asks for them.
void BM_NineTimes151Positions(benchmark::State& state) {
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), true) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    double p[3];
    for (auto _ : state) {
        for (int planet = 0; planet < 9; ++planet)
            for (int k = 0; k <= 150; ++k) {
                ephemeris.positionAt(planet, GmtTime{kJ2000Gmt - k * 86400LL}, p);
                benchmark::DoNotOptimize(p);
            }
    }
    state.SetItemsProcessed(state.iterations() * 9 * 151);
}
BENCHMARK(BM_NineTimes151Positions)->Unit(benchmark::kMicrosecond);

// The whole frame drawn in a small window (skipped without a display). The time includes
// the software renderer's work on the calling thread.
void BM_OrreryFrameDrawn(benchmark::State& state) {
    if (!testsupport::openTestWindow(256, 256)) {
        state.SkipWithError("no display");
        return;
    }
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), true) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    OrrerySettings settings;
    settings.orbitLengthDays = 302.0;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-2, 2, -2, 2, -1e4, 1e4);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_BLEND);
    for (auto _ : state) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        drawOrreryAt(&ephemeris, settings, EarthModels(), 11.5, kJ2000Gmt);
        glFinish();
    }
}
BENCHMARK(BM_OrreryFrameDrawn)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
