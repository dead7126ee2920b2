#pragma once
// Star colormaps: an evenly spaced RGBA ramp over a B-V interval, and a table of spectral
// types with an RGB colour each. Reading and lookup only; StarList applies them.

#include <cstddef>
#include <cstdint>

constexpr int kColorMapPathSize = 512;
constexpr int kMaxBVColors = 100000;

struct BVColorMap {
    std::int32_t count;  // 1 .. 100000
    float* colors;       // count x RGBA
    float start;         // B-V of the first entry
    float end;           // B-V of the last entry
    char fileName[kColorMapPathSize];
};

struct SpColorEntry {
    unsigned char rgb[3];
    char spectralClass[3];  // one or two letters
    float spectralNumber;
    char luminosityType[12];  // at most 10 characters used
};
static_assert(sizeof(SpColorEntry) == 24, "spectral colormap entries are 24 bytes");

struct SpColorMap {
    std::int32_t count;
    SpColorEntry* entries;
    char fileName[kColorMapPathSize];
};

// Colour of a spectral class that the colormap does not know: opaque green.
constexpr float kColorNotFound[4] = {0.0f, 1.0f, 0.0f, 1.0f};

// Allocation used for the colormap structures and their arrays.
struct ColorMapAllocator {
    void* (*allocate)(std::size_t);
    void (*release)(void*);
};

// Readers: print their message and return null on failure. The result is released with
// releaseBVColorMap / releaseSpColorMap through the same allocator.
BVColorMap* readBVColorMap(const char* fileName, double bvStart, double bvEnd,
                           const ColorMapAllocator& alloc);
SpColorMap* readSpColorMap(const char* fileName, const ColorMapAllocator& alloc);
void releaseBVColorMap(BVColorMap* map, const ColorMapAllocator& alloc);
void releaseSpColorMap(SpColorMap* map, const ColorMapAllocator& alloc);

// Splits a spectral type word such as "G2(V)" or "DA3" into class, number and luminosity
// type. Returns false when an O, B, A, F, G, K or M class has no "(...)" luminosity type.
bool parseSpectralWord(const char* word, SpColorEntry* entry);

void lookupBV(const BVColorMap& map, float bv, float rgba[4]);
void lookupSpectral(const SpColorMap& map, const char* spectralClass, float spectralNumber,
                    const char* luminosityType, float rgba[4]);
