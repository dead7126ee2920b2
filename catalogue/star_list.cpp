// StarList: construction, ownership and the plain accessors.

#include "catalogue/star_list.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

constexpr double kJulianYearSeconds = 31557600.0;
constexpr double kLightYearMetres = 9.461e15;

const char* const kSpectralClassNames[kNumSpectralClasses] = {"O", "B", "A", "F",
                                                              "G", "K", "M", "Other"};

// log10 of the distance in metres that light has travelled since 1950.
double boundaryRadiusNow() {
    double years = static_cast<double>(std::time(nullptr)) / kJulianYearSeconds + 1970.0 - 1950.0;
    if (years < 1.0) years = 1.0;
    return std::log10(years * kLightYearMetres);
}

}  // namespace

StarList::StarList() : allocate(std::malloc), release(std::free), param(defaultStarParameter()) {
    for (int i = 0; i < kNumSpectralClasses; ++i) {
        std::memset(spectralClassNames[i], 0, kSpectralClassNameSize);
        std::strcpy(spectralClassNames[i], kSpectralClassNames[i]);
    }
    boundaryRadius = boundaryRadiusNow();
}

StarList::~StarList() {
    deleteStarTexture();
    releaseConstellations();
    releaseExtrasolarPlanets();
    releaseStars();
    releaseColorMaps();
    releaseBuckets();
    if (mstEdges != nullptr) {
        release(mstEdges);
        mstEdges = nullptr;
    }
}

int StarList::setAllocator(AllocateFn allocateFn, ReleaseFn releaseFn) {
    if (allocateFn == nullptr || releaseFn == nullptr) return -1;
    bool ownsArrays = stars != nullptr || constellations != nullptr || planets != nullptr ||
                      mstEdges != nullptr || bvColorMap != nullptr || spColorMap != nullptr;
    for (StarBucketEntry* bucket : buckets)
        ownsArrays = ownsArrays || bucket != nullptr;
    if (ownsArrays) return -1;
    allocate = allocateFn;
    release = releaseFn;
    return 1;
}

void StarList::releaseStars() {
    releaseDrawCaches();
    touchPositions();
    if (stars != nullptr) {
        for (int i = 0; i < count; ++i) {
            if (stars[i].planets != nullptr) release(stars[i].planets);
        }
        release(stars);
    }
    stars = nullptr;
    count = 0;
    zRangeFirst = 0;
    zRangeLast = -1;
    sortedByW = true;
}

int StarList::getNumStars() const {
    return includeSun ? count - 1 : count;
}

int StarList::getStar(StarObj* record, int index) const {
    if (record == nullptr || index < 0 || index >= count) return -1;
    settleRecord(index);
    *record = stars[index];
    return 1;
}

int StarList::getStarByHD(StarObj* record, int hd) const {
    if (record == nullptr) return -1;
    for (int i = 0; i < count; ++i) {
        if (stars[i].hd == hd) {
            settleRecord(i);
            *record = stars[i];
            return 1;
        }
    }
    return -1;
}

int StarList::setStarPosition(int index, const Phc& position) {
    if (index < 0 || index >= count) return -1;
    stars[index].pos = position;
    stars[index].catalogPos = position;
    touchPositions();
    return 1;
}

void StarList::swapBytes(void* data, int numElements, int size) const {
    if (data == nullptr || numElements <= 0 || size <= 1) return;
    unsigned char* scratch = static_cast<unsigned char*>(allocate(static_cast<std::size_t>(size)));
    if (scratch == nullptr) {
        std::fprintf(stderr, "Err: StarList::swapBytes : Can't allocate memory.\n");
        return;
    }
    unsigned char* bytes = static_cast<unsigned char*>(data);
    for (int i = 0; i < numElements; ++i) {
        unsigned char* element = bytes + static_cast<std::size_t>(i) * size;
        for (int b = 0; b < size; ++b)
            scratch[b] = element[size - 1 - b];
        std::memcpy(element, scratch, static_cast<std::size_t>(size));
    }
    release(scratch);
}

void StarList::getStarParameter(StarParameter* parameters) const {
    if (parameters != nullptr) *parameters = param;
}

const char* StarList::getSpectralClassName(int classIndex) const {
    if (classIndex < 0 || classIndex >= kNumSpectralClasses) return "";
    return spectralClassNames[classIndex];
}

bool StarList::isSunRecord(int index) const {
    return includeSun && index == 0 && count > 0 && std::strcmp(stars[0].commonName, "Sun") == 0;
}
