// Reading B-V and spectral colormap files, and looking colours up in them.

#include "catalogue/colormap.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"
#include "image/data_file.h"

namespace {

// More entries than any spectral table holds; a larger count means a wrong file.
constexpr int kMaxSpColorEntries = 100000;

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

void copyName(char* dst, const char* src) {
    std::strncpy(dst, src, kColorMapPathSize - 1);
    dst[kColorMapPathSize - 1] = '\0';
}

void printFormatHint() {
    std::fprintf(stderr,
                 "      (lines follow the star colour table by spectral type: "
                 "<type> <number> <number> <red> <green> <blue>)\n");
}

}  // namespace

void releaseBVColorMap(BVColorMap* map, const ColorMapAllocator& alloc) {
    if (map == nullptr) return;
    if (map->colors != nullptr) alloc.release(map->colors);
    alloc.release(map);
}

void releaseSpColorMap(SpColorMap* map, const ColorMapAllocator& alloc) {
    if (map == nullptr) return;
    if (map->entries != nullptr) alloc.release(map->entries);
    alloc.release(map);
}

BVColorMap* readBVColorMap(const char* fileName, double bvStart, double bvEnd,
                           const ColorMapAllocator& alloc) {
    auto* map = static_cast<BVColorMap*>(alloc.allocate(sizeof(BVColorMap)));
    if (map == nullptr) {
        std::fprintf(stderr, "Err : cannot allocate memory for colormap!\n");
        return nullptr;
    }
    std::memset(map, 0, sizeof *map);
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        std::fprintf(stderr, "Err : opening colormap [%s]\n", fileName);
        releaseBVColorMap(map, alloc);
        return nullptr;
    }
    copyName(map->fileName, fileName);

    TextLineReader reader(in.file);
    std::string_view line;
    int n = 0;
    if (reader.nextDataLine(line)) {
        TextScanner scan(line);
        if (!scan.scanInt(n)) n = 0;
    }
    if (n < 1 || n > kMaxBVColors) {
        std::fprintf(stderr, "Err : number of color entry in [%s] = %d\n", fileName, n);
        std::fprintf(stderr, "      it is quite unreasonable!\n\n");
        releaseBVColorMap(map, alloc);
        return nullptr;
    }
    map->start = static_cast<float>(bvStart);
    map->end = static_cast<float>(bvEnd);
    map->colors =
        static_cast<float*>(alloc.allocate(sizeof(float) * 4 * static_cast<std::size_t>(n)));
    if (map->colors == nullptr) {
        std::fprintf(stderr, "Err : cannot allocate memory for colormap!\n");
        releaseBVColorMap(map, alloc);
        return nullptr;
    }
    map->count = n;
    for (int i = 0; i < n; ++i) {
        if (!reader.nextDataLine(line)) {
            std::fprintf(stderr, "Err : not enough color entries in file [%s]\n", fileName);
            releaseBVColorMap(map, alloc);
            return nullptr;
        }
        TextScanner scan(line);
        float* rgba = map->colors + 4 * i;
        bool ok = scan.scanFloat(rgba[0]) && scan.scanFloat(rgba[1]) && scan.scanFloat(rgba[2]) &&
                  scan.scanFloat(rgba[3]) && !scan.nonFinite();
        if (!ok) {
            std::fprintf(stderr, "Err : invalid color entry (line %d) in [%s]\n",
                         reader.lineNumber(), fileName);
            releaseBVColorMap(map, alloc);
            return nullptr;
        }
    }
    return map;
}

bool parseSpectralWord(const char* word, SpColorEntry* entry) {
    std::memset(entry->spectralClass, 0, sizeof entry->spectralClass);
    std::memset(entry->luminosityType, 0, sizeof entry->luminosityType);
    entry->spectralNumber = 0.0f;
    if (word == nullptr || word[0] == '\0') return false;

    int classLength = std::isalpha(static_cast<unsigned char>(word[1])) ? 2 : 1;
    std::memcpy(entry->spectralClass, word, static_cast<std::size_t>(classLength));

    std::string_view text(word);
    if (std::strchr("OBAFGKM", word[0]) != nullptr) {
        std::size_t open = text.find('(');
        if (open == std::string_view::npos) return false;
        std::size_t close = text.find(')', open + 1);
        if (close == std::string_view::npos) return false;
        std::string_view type = text.substr(open + 1, close - open - 1);
        if (type.size() > 10) type = type.substr(0, 10);
        std::memcpy(entry->luminosityType, type.data(), type.size());
        text = text.substr(0, open);
    }
    double number = 0.0;
    if (text.size() > static_cast<std::size_t>(classLength) &&
        wordToDouble(text.substr(static_cast<std::size_t>(classLength)), number)) {
        entry->spectralNumber = static_cast<float>(number);
    }
    return true;
}

SpColorMap* readSpColorMap(const char* fileName, const ColorMapAllocator& alloc) {
    auto* map = static_cast<SpColorMap*>(alloc.allocate(sizeof(SpColorMap)));
    if (map == nullptr) {
        std::fprintf(stderr, "Err : cannot allocate memory for spectral colormap!\n");
        return nullptr;
    }
    std::memset(map, 0, sizeof *map);
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        std::fprintf(stderr, "Err : opening spectral colormap [%s]\n", fileName);
        releaseSpColorMap(map, alloc);
        return nullptr;
    }
    copyName(map->fileName, fileName);

    int n = 0;
    {
        TextLineReader counter(in.file);
        std::string_view line;
        while (counter.nextDataLine(line) && n <= kMaxSpColorEntries)
            ++n;
    }
    if (n == 0) {
        std::fprintf(stderr, "Err: no spectral color entry found in [%s].\n", fileName);
        releaseSpColorMap(map, alloc);
        return nullptr;
    }
    if (n > kMaxSpColorEntries) {
        std::fprintf(stderr, "Err : number of spectral color entries in [%s] is above %d\n",
                     fileName, kMaxSpColorEntries);
        std::fprintf(stderr, "      it is quite unreasonable!\n\n");
        releaseSpColorMap(map, alloc);
        return nullptr;
    }
    map->entries = static_cast<SpColorEntry*>(alloc.allocate(sizeof(SpColorEntry) * n));
    if (map->entries == nullptr) {
        std::fprintf(stderr, "Err : cannot allocate memory for spectral colormap!\n");
        releaseSpColorMap(map, alloc);
        return nullptr;
    }
    std::memset(map->entries, 0, sizeof(SpColorEntry) * n);
    map->count = n;
    std::rewind(in.file);

    TextLineReader reader(in.file);
    std::string_view line;
    for (int i = 0; i < n; ++i) {
        if (!reader.nextDataLine(line)) break;  // the file changed under us; keep what we have
        TextScanner scan(line);
        std::string_view word;
        float unused1 = 0.0f, unused2 = 0.0f;
        int rgb[3] = {0, 0, 0};
        bool ok = scan.scanWord(word) && scan.scanFloat(unused1) && scan.scanFloat(unused2) &&
                  scan.scanInt(rgb[0]) && scan.scanInt(rgb[1]) && scan.scanInt(rgb[2]);
        if (!ok) {
            std::fprintf(stderr, "Err (line %d in [%s]) - not enough argument.\n",
                         reader.lineNumber(), fileName);
            printFormatHint();
            releaseSpColorMap(map, alloc);
            return nullptr;
        }
        std::string wordText(word);
        SpColorEntry& e = map->entries[i];
        if (!parseSpectralWord(wordText.c_str(), &e)) {
            std::fprintf(stderr, "Err (line %d in [%s]) - format of spectral type incorrect.\n",
                         reader.lineNumber(), fileName);
            printFormatHint();
            releaseSpColorMap(map, alloc);
            return nullptr;
        }
        for (int c = 0; c < 3; ++c) {
            int v = rgb[c] < 0 ? 0 : (rgb[c] > 255 ? 255 : rgb[c]);
            e.rgb[c] = static_cast<unsigned char>(v);
        }
    }
    return map;
}

// A map whose start equals its end (or of one colour) has no ramp: every B-V gets the
// first colour.
void lookupBV(const BVColorMap& map, float bv, float rgba[4]) {
    const float* first = map.colors;
    const float* last = map.colors + 4 * (map.count - 1);
    const float span = map.end - map.start;
    if (map.count <= 1 || span == 0.0f) {
        std::memcpy(rgba, first, 4 * sizeof(float));
        return;
    }
    double x = (static_cast<double>(bv) - map.start) / span * (map.count - 1);
    if (!(x > 0.0)) {
        std::memcpy(rgba, first, 4 * sizeof(float));
        return;
    }
    if (x >= map.count - 1) {
        std::memcpy(rgba, last, 4 * sizeof(float));
        return;
    }
    int i = static_cast<int>(std::floor(x));
    double f = x - i;
    const float* a = map.colors + 4 * i;
    const float* b = a + 4;
    for (int c = 0; c < 4; ++c)
        rgba[c] = static_cast<float>(a[c] * (1.0 - f) + b[c] * f);
}

// Between two entries of one class the nearest entry's colour is used, without
// interpolation.
void lookupSpectral(const SpColorMap& map, const char* spectralClass, float spectralNumber,
                    const char* /*luminosityType*/, float rgba[4]) {
    int best = -1;
    float bestDistance = 0.0f;
    for (int i = 0; i < map.count; ++i) {
        const SpColorEntry& e = map.entries[i];
        if (std::strncmp(e.spectralClass, spectralClass, 2) != 0) continue;
        float d = std::fabs(e.spectralNumber - spectralNumber);
        if (best < 0 || d < bestDistance) {
            best = i;
            bestDistance = d;
        }
    }
    if (best < 0) {
        std::memcpy(rgba, kColorNotFound, 4 * sizeof(float));
        return;
    }
    const SpColorEntry& e = map.entries[best];
    rgba[0] = e.rgb[0] / 255.0f;
    rgba[1] = e.rgb[1] / 255.0f;
    rgba[2] = e.rgb[2] / 255.0f;
    rgba[3] = 1.0f;
}
