#pragma once
// The two clocks of the viewer: a high-resolution frame clock (frame rate, start of a movie
// dump) and the wall clock (real-time playback, mouse spin).

#include <cstdint>

namespace platform {

// Ticks of the monotonic high-resolution counter (never 0) and their rate per second.
std::int64_t frameClockTicks();
std::int64_t frameClockFrequency();
// Calendar time in seconds with millisecond resolution: seconds + milliseconds x 0.001.
double wallClockSeconds();

}  // namespace platform
