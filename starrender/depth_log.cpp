#include "starrender/depth_log.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace depthlog {
namespace {

struct Table {
    Entry entries[kTableSize];
    Table() {
        for (int i = 0; i < kTableSize; ++i) {
            // The piece's ends, as the bits of z run from one to the next.
            const std::uint64_t lowBits =
                kOffset + (static_cast<std::uint64_t>(i) << (52 - kTableBits));
            const std::uint64_t highBits = lowBits + (1ULL << (52 - kTableBits));
            double low, high;
            std::memcpy(&low, &lowBits, sizeof low);
            std::memcpy(&high, &highBits, sizeof high);
            const double invC = 2.0 / (low + high);
            entries[i].invC = invC;
            entries[i].log10C = static_cast<double>(-std::log10(static_cast<long double>(invC)));
        }
    }
};

const Table table;

}  // namespace

const Entry* const kTable = table.entries;

}  // namespace depthlog
