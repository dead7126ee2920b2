#pragma once
// The process-wide pseudo-random generator: a linear congruential generator whose values
// run 0 .. 32767. Parts that need repeatable sequences seed it (planets 2002, particles 9999).

#include <cstdint>

constexpr int kRandomMax = 32767;

void seedRandom(std::uint32_t seed);
// state = state x 214013 + 2531011 (mod 2^32); value = (state >> 16) & 32767.
int nextRandom();
