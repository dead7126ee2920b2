// Planet positions from the ephemeris once the records are cached: the orrery asks for
// hundreds per frame, so a lookup must cost well under a microsecond (target: at least
// 5 million positions per second).

#include <benchmark/benchmark.h>

#include "bench/solar/bench_ephemeris_file.h"
#include "solar/ephemeris.h"

namespace {

constexpr double kJ2000 = 2451545.0;

// Positions of every body at times spread over one record, the record already cached.
void BM_PositionAtWarmCache(benchmark::State& state) {
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), false) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    double p[3];
    ephemeris.positionAt(kMars, kJ2000, p);  // warm the record
    const double start =
        ephemeris.firstRecordStart() + ephemeris.recordNumberFor(kJ2000) * ephemeris.recordSpan();
    int i = 0;
    for (auto _ : state) {
        double t = start + 0.5 + (i % 61) * 0.5;
        ephemeris.positionAt(i % kEphemerisBodyCount, t, p);
        benchmark::DoNotOptimize(p);
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PositionAtWarmCache);

// The same with velocities.
void BM_StateAtWarmCache(benchmark::State& state) {
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), false) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    double p[3], v[3];
    int i = 0;
    for (auto _ : state) {
        ephemeris.stateAt(i % kEphemerisBodyCount, kJ2000 + (i % 29) * 0.25, p, v);
        benchmark::DoNotOptimize(v);
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_StateAtWarmCache);

// Positions over a century with a one-slot cache: every lookup reads a record from the file.
void BM_PositionAtColdRecord(benchmark::State& state) {
    Ephemeris ephemeris;
    if (ephemeris.open(benchEphemerisPath().c_str(), false) != 0) {
        state.SkipWithError("no ephemeris");
        return;
    }
    ephemeris.setCacheSize(static_cast<int>(kEphemerisSlotBytes));
    double p[3];
    int i = 0;
    for (auto _ : state) {
        ephemeris.positionAt(kEarthMoonBarycentre, kJ2000 + (i % 2 == 0 ? -1000.0 : 1000.0), p);
        benchmark::DoNotOptimize(p);
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PositionAtColdRecord);

}  // namespace

BENCHMARK_MAIN();
