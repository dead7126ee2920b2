// The spanning tree of the catalogue stars, as the scene builds it at every start: Prim's
// dense algorithm (the reference) against the fast builder, on the nearest 5,000 and 20,000
// stars and on the whole catalogue (~98,600 stars, Sun included), plus StarList::buildMST
// on the whole catalogue. Prim on the whole catalogue takes about half a minute; it runs only
// when SKYRAMA_BENCH_PRIM_WHOLE is set. Without the data tree a synthetic catalogue of the
// same size is used.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/catalogue/synthetic_catalogue.h"
#include "catalogue/mst.h"
#include "catalogue/star_list.h"

namespace {

constexpr int kCatalogueStars = 98600;

struct Catalogue {
    StarList list;
    std::vector<double> points;  // tree coordinates of every record, 10^15 metres
    std::string source;

    Catalogue() {
        const std::string real = std::string(SKYRAMA_SOURCE_DIR) + "/data/stardata/hipparcos.star";
        std::string file = real;
        source = "data/stardata/hipparcos.star";
        std::FILE* probe = std::fopen(real.c_str(), "rb");
        if (probe != nullptr) {
            std::fclose(probe);
        } else {
            file = writeTempFile(syntheticStarText(kCatalogueStars, 500.0, 7), ".star");
            source = "synthetic";
        }
        list.readStarFiles(file.c_str(), 1, 1);
        if (source == "synthetic") std::remove(file.c_str());
        for (int i = 0; i < list.getNumRecords(); ++i) {
            StarObj star;
            list.getStar(&star, i);
            const double f = std::pow(10.0, star.pos.w - 15.0);
            points.insert(points.end(), {star.pos.x * f, star.pos.y * f, star.pos.z * f});
        }
    }
    int size() const { return static_cast<int>(points.size() / 3); }
};

Catalogue& catalogue() {
    static Catalogue c;
    return c;
}

int starsFor(const benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    return n < catalogue().size() ? n : catalogue().size();
}

void BM_PrimMST(benchmark::State& state) {
    const int n = starsFor(state);
    for (auto _ : state) {
        std::int32_t* tree = primMST(catalogue().points.data(), n, 3);
        benchmark::DoNotOptimize(tree);
        releaseMSTArray(tree);
    }
    state.counters["stars"] = n;
    state.SetLabel(catalogue().source);
}

void BM_FastMST(benchmark::State& state) {
    const int n = starsFor(state);
    for (auto _ : state) {
        std::int32_t* tree = fastMST(catalogue().points.data(), n, 3);
        benchmark::DoNotOptimize(tree);
        releaseMSTArray(tree);
    }
    state.counters["stars"] = n;
    state.SetLabel(catalogue().source);
}

// Points uniform in a cube: the same count without the catalogue's structure.
void BM_FastMSTUniform(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    std::vector<double> points(3 * static_cast<std::size_t>(n));
    std::uint32_t seed = 12345;
    for (double& c : points) {
        seed = seed * 1664525u + 1013904223u;
        c = seed / 4294967296.0 * 1000.0;
    }
    for (auto _ : state) {
        std::int32_t* tree = fastMST(points.data(), n, 3);
        benchmark::DoNotOptimize(tree);
        releaseMSTArray(tree);
    }
    state.counters["points"] = n;
}

void BM_BuildMST(benchmark::State& state) {
    StarList& list = catalogue().list;
    for (auto _ : state)
        list.buildMST();
    state.counters["stars"] = list.getNumRecords();
    state.SetLabel(catalogue().source);
}

}  // namespace

BENCHMARK(BM_PrimMST)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(BM_FastMST)
    ->Arg(5000)
    ->Arg(20000)
    ->Arg(kCatalogueStars + 1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FastMSTUniform)->Arg(kCatalogueStars + 1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BuildMST)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    if (std::getenv("SKYRAMA_BENCH_PRIM_WHOLE") != nullptr) {
        benchmark::RegisterBenchmark("BM_PrimMST", BM_PrimMST)
            ->Arg(kCatalogueStars + 1)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
