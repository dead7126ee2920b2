#include "common_package/math/src/random.h"

namespace {
std::uint32_t randomState = 1;
}

void seedRandom(std::uint32_t seed) { randomState = seed; }

int nextRandom() {
    randomState = randomState * 214013u + 2531011u;
    return static_cast<int>((randomState >> 16) & 32767u);
}
