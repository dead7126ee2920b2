// Loading the star catalogue: readStarFiles on the ~98,600-star Hipparcos catalogue (the
// data tree's packed file, and the same text unpacked), with the Sun, sorting, merging and
// every derived value. Target: at least 50 MB/s of catalogue text. Without the data tree a
// synthetic catalogue of the same size in the same format is used.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/catalogue/synthetic_catalogue.h"
#include "catalogue/star_list.h"
#include "image/data_file.h"

namespace {

constexpr int kCatalogueStars = 98600;

struct Catalogue {
    std::string plainFile;
    std::string packedFile;
    std::size_t textBytes = 0;
    std::string source;
    std::vector<std::string> temporary;

    Catalogue() {
        const std::string real = std::string(SKYRAMA_SOURCE_DIR) + "/data/stardata/hipparcos.star";
        std::string text;
        if (FILE* f = openDataFile(real.c_str(), "rb")) {
            char buf[1 << 16];
            std::size_t got;
            while ((got = std::fread(buf, 1, sizeof buf, f)) > 0)
                text.append(buf, got);
            std::fclose(f);
            packedFile = real;
            source = "data/stardata/hipparcos.star";
        }
        if (text.empty()) {
            text = syntheticStarText(kCatalogueStars, 500.0, 1);
            source = "synthetic";
        }
        textBytes = text.size();
        plainFile = writeTempFile(text, ".star");
        temporary.push_back(plainFile);
        if (packedFile.empty()) {
            packedFile = writeTempFile("", ".star");
            temporary.push_back(packedFile);
            FILE* out = std::fopen(packedFile.c_str(), "wb");
            WriteDeflateZip(out, reinterpret_cast<const unsigned char*>(text.data()), text.size());
            std::fclose(out);
        }
    }
    ~Catalogue() {
        for (const std::string& name : temporary)
            std::remove(name.c_str());
    }
};

const Catalogue& catalogue() {
    static const Catalogue c;
    return c;
}

// readStarFiles prints one progress line per file; keep it out of the benchmark's report.
int readQuietly(StarList& list, const std::string& file) {
    std::fflush(stdout);
    const int saved = dup(1);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    const int status = list.readStarFiles(file.c_str(), 1, 0);
    std::fflush(stdout);
    dup2(saved, 1);
    close(null);
    close(saved);
    return status;
}

void loadCatalogue(benchmark::State& state, const std::string& file) {
    const Catalogue& c = catalogue();
    int stars = 0;
    for (auto _ : state) {
        StarList list;
        if (readQuietly(list, file) != 1) {
            state.SkipWithError("the catalogue did not load");
            return;
        }
        stars = list.getNumStars();
        benchmark::DoNotOptimize(list.getStarArray());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * c.textBytes);
    state.counters["stars"] = stars;
    state.counters["text_MB"] = c.textBytes / 1e6;
    state.SetLabel(c.source);
}

void BM_LoadCataloguePlain(benchmark::State& state) {
    loadCatalogue(state, catalogue().plainFile);
}
void BM_LoadCataloguePacked(benchmark::State& state) {
    loadCatalogue(state, catalogue().packedFile);
}

}  // namespace

BENCHMARK(BM_LoadCataloguePlain)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK(BM_LoadCataloguePacked)->Unit(benchmark::kMillisecond)->MinTime(2.0)->UseRealTime();
BENCHMARK_MAIN();
