// Reading a model of 100,000 triangles (target: under 0.2 s), and building the BSP tree of a
// random particle set.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common_package/glm/src/glm.h"
#include "common_package/particle/src/particle_list.h"

namespace {

// A textured, lit grid of n x n quads written as "f v/t/n" faces of four corners: 2 n^2
// triangles. n = 224 gives 100,352 triangles.
std::string writeGrid(int n) {
    char pattern[] = "/tmp/skyrama-bench-XXXXXX";
    std::string dir = mkdtemp(pattern);
    std::string name = dir + "/grid.obj";
    FILE* f = std::fopen(name.c_str(), "w");
    std::fprintf(f, "# %d x %d grid\n", n, n);
    for (int y = 0; y <= n; y++)
        for (int x = 0; x <= n; x++) {
            std::fprintf(f, "v %f %f %f\n", x / double(n), y / double(n), 0.01 * ((x * y) % 7));
            std::fprintf(f, "vt %f %f\n", x / double(n), y / double(n));
            std::fprintf(f, "vn 0.000000 0.000000 1.000000\n");
        }
    std::fprintf(f, "g grid\n");
    for (int y = 0; y < n; y++)
        for (int x = 0; x < n; x++) {
            int a = y * (n + 1) + x + 1, b = a + 1, c = a + n + 2, d = a + n + 1;
            std::fprintf(f, "f %d/%d/%d %d/%d/%d %d/%d/%d %d/%d/%d\n", a, a, a, b, b, b, c, c, c, d,
                         d, d);
        }
    std::fclose(f);
    return name;
}

// The grid file, removed with its folder when the program ends.
struct GridFile {
    std::string name = writeGrid(224);
    ~GridFile() {
        std::remove(name.c_str());
        std::remove(name.substr(0, name.rfind('/')).c_str());
    }
};

void BM_ReadObj100kTriangles(benchmark::State& state) {
    static const GridFile grid;
    const std::string& name = grid.name;
    for (auto _ : state) {
        GLMmodel* model = glmReadOBJQuiet(name.c_str());
        if (model == nullptr || model->numtriangles != 2u * 224 * 224) {
            state.SkipWithError("model not read");
            break;
        }
        state.counters["triangles"] = model->numtriangles;
        glmDelete(model);
    }
}
BENCHMARK(BM_ReadObj100kTriangles)->Unit(benchmark::kMillisecond);

void BM_RandomParticlesWithTree(benchmark::State& state) {
    for (auto _ : state) {
        ParticleList list;
        // The tree's progress lines are not part of the figure.
        std::fflush(stderr);
        int saved = dup(2);
        int quiet = open("/dev/null", O_WRONLY);
        dup2(quiet, 2);
        list.createRandomParticles(static_cast<int>(state.range(0)));
        dup2(saved, 2);
        close(quiet);
        close(saved);
        benchmark::DoNotOptimize(list.getBSPRoot());
    }
}
BENCHMARK(BM_RandomParticlesWithTree)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
