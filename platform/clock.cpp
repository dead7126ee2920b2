#include "platform/clock.h"

#include <chrono>

namespace platform {

std::int64_t frameClockTicks() {
    using Clock = std::chrono::steady_clock;
    std::int64_t ticks = 0;
    // The counter is read again while it reads 0 (a counter that is not yet running).
    for (int tries = 0; ticks == 0 && tries < 1000; ++tries) {
        ticks =
            std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch())
                .count();
    }
    return ticks == 0 ? 1 : ticks;
}

std::int64_t frameClockFrequency() {
    return 1000000000;
}

double wallClockSeconds() {
    using namespace std::chrono;
    const auto ms = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    return static_cast<double>(ms / 1000) + static_cast<double>(ms % 1000) * 0.001;
}

}  // namespace platform
