#include "imagereg/measurement.h"

#include <cstdio>

namespace {

void notAvailable() {
    std::fprintf(stderr, "image measurement is not available in this build\n");
}

}  // namespace

void computeImageDifference(double frame, int starDrawingFlags, int viewportWidth,
                            int viewportHeight, float noiseCutoff) {
    (void)frame;
    (void)starDrawingFlags;
    (void)viewportWidth;
    (void)viewportHeight;
    (void)noiseCutoff;
    notAvailable();
}

void exportImageDifference() {
    notAvailable();
}

int jitterStep() {
    notAvailable();
    return 0;
}

void measureStars(bool extract, const char* starListFile) {
    (void)extract;
    (void)starListFile;
    notAvailable();
}
