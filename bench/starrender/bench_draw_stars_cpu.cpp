// The CPU side of drawing the stars: placement relative to the eye, magnitude,
// classification, colour and bucketing of every star, with the GL calls replaced by a sink
// that only counts. Target: at most 50 ns per catalogue star at 10^5 and 10^6 stars
// (reported as "per_star"). The last argument of each benchmark is 0 for an eye that stands
// still (what drawing keeps between frames is used) and 1 for an eye that moves a hundredth
// of a parsec every frame (every star that can reach the viewport is measured anew).

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "bench/starrender/star_bench_fixture.h"
#include "starrender/star_draw_sink.h"

namespace {

class CountingSink : public StarDrawSink {
  public:
    long long points = 0, batches = 0, sprites = 0;
    double checksum = 0.0;
    void beginPoints(float size) override {
        ++batches;
        checksum += size;
    }
    void point(const double v[3], const float rgba[4]) override {
        ++points;
        checksum += v[2] + rgba[3];
    }
    void endPoints() override {}
    void sprite(const StarSprite& s) override {
        ++sprites;
        checksum += s.corner[0][0];
    }
};

StarList& listOf(int n, bool inFront) {
    static std::map<std::pair<int, bool>, std::unique_ptr<StarList>> lists;
    auto& slot = lists[{n, inFront}];
    if (!slot) slot = makeBenchStarList(n, inFront);
    return *slot;
}

void runDraw(benchmark::State& state, StarList& list, int flags, bool eyeMoves) {
    StarFrame frames[8];
    for (int i = 0; i < 8; ++i)
        frames[i] = benchFrame(eyeMoves ? 0.01 * i : 0.0);
    CountingSink sink;
    int n = 0;
    for (auto _ : state) {
        list.drawStarsInto(frames[n], flags, sink);
        n = (n + 1) % 8;
        benchmark::DoNotOptimize(sink.checksum);
    }
    const double stars = list.getNumRecords();
    state.counters["per_star"] = benchmark::Counter(
        stars * state.iterations(), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["drawn"] = static_cast<double>(sink.points) / state.iterations();
    state.counters["batches"] = static_cast<double>(sink.batches) / state.iterations();
    state.counters["sprites"] = static_cast<double>(sink.sprites) / state.iterations();
}

// Stars all around the Sun: about half are behind the camera.
void BM_DrawStarsCpu(benchmark::State& state) {
    runDraw(state, listOf(static_cast<int>(state.range(0)), false), kSceneStarFlags,
            state.range(1) != 0);
}

// Every star in front of the camera: the full cost of each star.
void BM_DrawStarsCpuAllInView(benchmark::State& state) {
    runDraw(state, listOf(static_cast<int>(state.range(0)), true), kSceneStarFlags,
            state.range(1) != 0);
}

// Textured stars: the large ones become sprites, the rest wait for the point pass.
void BM_DrawStarsCpuTextured(benchmark::State& state) {
    StarList& list = listOf(static_cast<int>(state.range(0)), true);
    list.setStarTextureGauss(0.2f, 1.0f);
    runDraw(state, list, kSceneStarFlags | kStarTextured, state.range(1) != 0);
}

// The Hipparcos catalogue seen from the Sun, as points and textured as the scene draws it by
// default.
StarList& catalogueList() {
    static std::unique_ptr<StarList> list = makeCatalogueStarList();
    return *list;
}
void BM_DrawStarsCpuCatalogue(benchmark::State& state) {
    runDraw(state, catalogueList(), kSceneStarFlags, state.range(0) != 0);
}
void BM_DrawStarsCpuCatalogueTextured(benchmark::State& state) {
    catalogueList().setStarTextureGauss(0.2f, 1.0f);
    runDraw(state, catalogueList(), kSceneStarFlags | kStarTextured, state.range(0) != 0);
}

}  // namespace

BENCHMARK(BM_DrawStarsCpu)->ArgsProduct({{100000, 1000000}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawStarsCpuAllInView)
    ->ArgsProduct({{100000, 1000000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawStarsCpuTextured)
    ->ArgsProduct({{100000, 1000000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawStarsCpuCatalogue)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawStarsCpuCatalogueTextured)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
