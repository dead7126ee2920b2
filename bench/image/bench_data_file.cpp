// Throughput of reading a packed data file through openDataFile (inflate, check, then read the
// content back as a reader does), side by side with zlib's own raw inflate of the same data held
// in memory: the container's own chunks, and the whole content as one stream for comparison.
// The container read should keep at least 90 % of the raw rate of its chunks; the ratios are
// printed after the run.

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "image/data_file.h"

namespace {

constexpr std::size_t kPlainBytes = 4 << 20;

// Star-catalogue lines: number, RA, Dec, parallax, magnitude, colour, spectral type.
std::string catalogueText(std::size_t bytes) {
    static const char* const kTypes[] = {"G2V",    "K1V",     "M3.5Ve", "A0V",
                                         "F5IV-V", "B9.5III", "K0III"};
    std::string text = "# HIP  RA(deg)  Dec(deg)  plx(mas)  e_plx  Vmag  B-V  SpType\n";
    unsigned state = 9999;
    auto next = [&] {
        state = state * 214013u + 2531011u;
        return (state >> 16) & 32767;
    };
    char line[200];
    for (int hip = 1; text.size() < bytes; ++hip) {
        std::snprintf(line, sizeof line, "%6d %11.7f %+11.7f %8.2f %5.2f %6.2f %6.3f %s\n", hip,
                      next() * 360.0 / 32768, next() * 180.0 / 32768 - 90, next() / 200.0,
                      next() / 20000.0, next() / 2500.0 - 1.5, next() / 16384.0 - 0.3,
                      kTypes[next() % 7]);
        text += line;
    }
    text.resize(bytes);
    return text;
}

struct Fixture {
    std::string plain;
    std::string containerName;
    std::vector<std::vector<unsigned char>> chunks;  // each chunk's deflate stream, no trailer
    std::vector<unsigned char> wholeStream;          // the content as one raw deflate stream

    Fixture() : plain(catalogueText(kPlainBytes)) {
        char name[] = "/tmp/skyrama-bench-XXXXXX";
        int fd = mkstemp(name);
        containerName = name;
        FILE* f = fdopen(fd, "w+b");
        WriteDeflateZip(f, reinterpret_cast<const unsigned char*>(plain.data()), plain.size());
        // Take the chunks back out of the written container.
        std::fseek(f, 0, SEEK_END);
        std::vector<unsigned char> file(std::ftell(f));
        std::rewind(f);
        if (std::fread(file.data(), 1, file.size(), f) != file.size()) std::abort();
        std::fclose(f);
        auto be32 = [&](std::size_t at) {
            return std::uint32_t(file[at]) << 24 | std::uint32_t(file[at + 1]) << 16 |
                   std::uint32_t(file[at + 2]) << 8 | file[at + 3];
        };
        const std::uint32_t n = be32(2);
        for (std::uint32_t i = 0; i < n; ++i) {
            const std::uint32_t offset = be32(6 + 4 * i), length = be32(6 + 4 * n + 4 * i);
            chunks.emplace_back(file.begin() + offset, file.begin() + offset + length - 8);
        }
        z_stream s{};
        deflateInit2(&s, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
        wholeStream.resize(deflateBound(&s, plain.size()));
        s.next_in = reinterpret_cast<Bytef*>(plain.data());
        s.avail_in = static_cast<uInt>(plain.size());
        s.next_out = wholeStream.data();
        s.avail_out = static_cast<uInt>(wholeStream.size());
        deflate(&s, Z_FINISH);
        wholeStream.resize(s.total_out);
        deflateEnd(&s);
    }
    ~Fixture() { std::remove(containerName.c_str()); }
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

void BM_ZlibRawInflateChunks(benchmark::State& state) {
    Fixture& f = fixture();
    std::vector<unsigned char> out(f.plain.size());
    z_stream s{};
    inflateInit2(&s, -15);
    for (auto _ : state) {
        std::size_t produced = 0;
        for (auto& chunk : f.chunks) {
            inflateReset(&s);
            s.next_in = chunk.data();
            s.avail_in = static_cast<uInt>(chunk.size());
            s.next_out = out.data() + produced;
            s.avail_out = static_cast<uInt>(out.size() - produced);
            inflate(&s, Z_FINISH);
            produced = out.size() - s.avail_out;
        }
        if (produced != f.plain.size()) state.SkipWithError("raw inflate gave a wrong size");
        benchmark::DoNotOptimize(out.data());
    }
    inflateEnd(&s);
    state.SetBytesProcessed(int64_t(state.iterations()) * f.plain.size());
}
BENCHMARK(BM_ZlibRawInflateChunks)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ZlibRawInflateWholeStream(benchmark::State& state) {
    Fixture& f = fixture();
    std::vector<unsigned char> out(f.plain.size());
    z_stream s{};
    inflateInit2(&s, -15);
    for (auto _ : state) {
        inflateReset(&s);
        s.next_in = f.wholeStream.data();
        s.avail_in = static_cast<uInt>(f.wholeStream.size());
        s.next_out = out.data();
        s.avail_out = static_cast<uInt>(out.size());
        if (inflate(&s, Z_FINISH) != Z_STREAM_END) state.SkipWithError("raw inflate failed");
        benchmark::DoNotOptimize(out.data());
    }
    inflateEnd(&s);
    state.SetBytesProcessed(int64_t(state.iterations()) * f.plain.size());
}
BENCHMARK(BM_ZlibRawInflateWholeStream)->Unit(benchmark::kMillisecond)->UseRealTime();

// What a reader pays: open the packed file, read all of it, close it.
void BM_OpenDataFileRead(benchmark::State& state) {
    Fixture& f = fixture();
    std::vector<unsigned char> out(f.plain.size() + 1);
    for (auto _ : state) {
        FILE* file = openDataFile(f.containerName.c_str(), "rb");
        if (file == nullptr) {
            state.SkipWithError("openDataFile failed");
            break;
        }
        const std::size_t n = std::fread(out.data(), 1, out.size(), file);
        std::fclose(file);
        if (n != f.plain.size()) state.SkipWithError("openDataFile gave a wrong size");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * f.plain.size());
}
BENCHMARK(BM_OpenDataFileRead)->Unit(benchmark::kMillisecond)->UseRealTime();

// ReadDeflateZip alone, into memory.
void BM_ReadDeflateZip(benchmark::State& state) {
    Fixture& f = fixture();
    std::vector<unsigned char> plain;
    plain.reserve(f.plain.size() + kEzChunkSize);
    for (auto _ : state) {
        FILE* file = std::fopen(f.containerName.c_str(), "rb");
        plain.clear();
        if (ReadDeflateZip(file, plain, "bench") != 1) state.SkipWithError("ReadDeflateZip failed");
        std::fclose(file);
        benchmark::DoNotOptimize(plain.data());
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * f.plain.size());
}
BENCHMARK(BM_ReadDeflateZip)->Unit(benchmark::kMillisecond)->UseRealTime();

// Keeps each benchmark's throughput for the ratio printed at the end.
class RateReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            // With repetitions, the mean stands for the benchmark.
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "mean") continue;
            auto it = run.counters.find("bytes_per_second");
            if (it != run.counters.end() && !run.error_occurred)
                rates[run.run_name.function_name] = it->second.value;
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> rates;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    RateReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    auto rate = [&](const char* name) {
        auto it = reporter.rates.find(name);
        return it == reporter.rates.end() ? 0.0 : it->second;
    };
    const double container = rate("BM_OpenDataFileRead");
    for (const char* baseline : {"BM_ZlibRawInflateChunks", "BM_ZlibRawInflateWholeStream"}) {
        if (container > 0 && rate(baseline) > 0)
            std::printf("openDataFile read / %s: %.1f %% (target >= 90 %%)\n", baseline,
                        100.0 * container / rate(baseline));
    }
    return 0;
}
