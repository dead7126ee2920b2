#include "bench/starrender/star_bench_fixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>

#include "bench/catalogue/synthetic_catalogue.h"

namespace {

// Runs f with standard output sent to /dev/null (readStarFiles reports each file read).
template <typename F>
void quietly(F&& f) {
    std::fflush(stdout);
    const int saved = dup(1);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    f();
    std::fflush(stdout);
    dup2(saved, 1);
    close(null);
    close(saved);
}

void dress(StarList& list) {
    const std::string bv = std::string(SKYRAMA_SOURCE_DIR) + "/data/stardata/bv_colormap.txt";
    if (list.loadColorMapBV(bv.c_str(), -0.4, 2.0) < 0) {
        const std::string text = "2\n0.6 0.7 1 1\n1 0.6 0.4 1\n";
        const std::string name = writeTempFile(text, ".txt");
        list.loadColorMapBV(name.c_str(), -0.4, 2.0);
        std::remove(name.c_str());
    }
    list.setExposure(0.9f);
}

}  // namespace

std::unique_ptr<StarList> makeBenchStarList(int n, bool inFrontOnly) {
    auto list = std::make_unique<StarList>();
    const std::string name = writeTempFile(syntheticStarText(n, 300.0, 7, inFrontOnly), ".star");
    quietly([&] { list->readStarFiles(name.c_str(), 1, 0); });
    std::remove(name.c_str());
    dress(*list);
    return list;
}

std::unique_ptr<StarList> makeCatalogueStarList() {
    auto list = std::make_unique<StarList>();
    const std::string real = std::string(SKYRAMA_SOURCE_DIR) + "/data/stardata/hipparcos.star";
    int status = -1;
    quietly([&] { status = list->readStarFiles(real.c_str(), 1, 1); });
    if (status != 1) return makeBenchStarList(98600, false);
    dress(*list);
    return list;
}

StarFrame benchFrame(double eyeX) {
    const double modelview[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -eyeX, 0, 0, 1};
    double projection[16] = {0};
    const double f = 1.0 / std::tan(kBenchFovy / 2 * M_PI / 180);
    projection[0] = f;
    projection[5] = f;
    projection[10] = -1.0;
    projection[11] = -1.0;
    projection[14] = -0.02;
    const int viewport[4] = {0, 0, kBenchViewport, kBenchViewport};
    return makeStarFrame(modelview, projection, viewport, kBenchLogScale);
}
