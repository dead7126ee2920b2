// Converting the real star sources: reading every source file, joining the 118,000 stars on
// HIP, and formatting the two datasets. The sources are those the "data" target unpacks
// into <repo>/.cache/datatree/root.
#include <benchmark/benchmark.h>

#include <sys/stat.h>

#include "tools/datatree/core/star_catalogue.h"

namespace {

std::string sourceRoot() {
    return std::string(SKYRAMA_SOURCE_DIR) + "/.cache/datatree/root";
}

bool haveSources() {
    struct stat s;
    return stat((sourceRoot() + "/" + StarSourceFiles::kPositions).c_str(), &s) == 0;
}

void BM_LoadStarSources(benchmark::State& state) {
    if (!haveSources()) {
        state.SkipWithError("no unpacked sources: build the data target first");
        return;
    }
    for (auto _ : state) {
        StarSources sources = loadStarSources(sourceRoot());
        benchmark::DoNotOptimize(sources.positions.size());
    }
}
BENCHMARK(BM_LoadStarSources)->Unit(benchmark::kMillisecond);

void BM_JoinAndFormatStars(benchmark::State& state) {
    if (!haveSources()) {
        state.SkipWithError("no unpacked sources: build the data target first");
        return;
    }
    StarSources sources = loadStarSources(sourceRoot());
    std::size_t stars = 0;
    for (auto _ : state) {
        std::vector<StarRecord> records = buildStarRecords(sources, nullptr);
        std::string text = formatStarFile(records, "benchmark");
        stars = records.size();
        benchmark::DoNotOptimize(text.size());
    }
    state.counters["stars"] = double(stars);
}
BENCHMARK(BM_JoinAndFormatStars)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
