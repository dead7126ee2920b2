// Cost of one frame of a movie: locating the segment and evaluating the four channels.
// Playback evaluates one frame per display, so this must stay far below a frame time.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "movie/movie_record.h"

namespace {

const std::string kScript = std::string(SKYRAMA_SOURCE_DIR) + "/tests/movie/data/full_featured.scp";

void evaluateEveryFrame(benchmark::State& state) {
    MovieRecord record;
    if (record.loadRecord(kScript.c_str(), 1) < 0) {
        state.SkipWithError("cannot load the movie script");
        return;
    }
    const int total = record.totalNumFrame();
    double frame = 0.0;
    for (auto _ : state) {
        View v;
        benchmark::DoNotOptimize(record.evaluateFrame(frame, v));
        benchmark::DoNotOptimize(v);
        frame += 0.5;
        if (frame > total - 1) frame = 0.0;
    }
}
BENCHMARK(evaluateEveryFrame);

void loadScript(benchmark::State& state) {
    for (auto _ : state) {
        MovieRecord record;
        benchmark::DoNotOptimize(record.loadRecord(kScript.c_str(), 1));
    }
}
BENCHMARK(loadScript);

}  // namespace

BENCHMARK_MAIN();
