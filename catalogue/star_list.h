#pragma once
// StarList: the one star catalogue of the scene. It owns every star that is drawn, the
// settings block, the colormaps, the selections, the point-size buckets and the star
// texture, and it is changed only through its setters.
//
// The methods are spread by concept over two libraries:
//   catalogue/   records and dataset files, the parameter file, selections, star motion,
//                colormaps, constellations, extrasolar planets;
//   starrender/  brightness and point sizing, drawing and picking, the sphere warp, star
//                textures.
// Operations return 1 on success and -1 on failure; rejected values print a message and
// keep the old setting.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <type_traits>
#include <vector>

#include "catalogue/colormap.h"
#include "catalogue/constellation.h"
#include "catalogue/extrasolar_planet.h"
#include "catalogue/star_obj.h"
#include "catalogue/star_parameter.h"
#include "common_package/math/src/phc.h"

class StarDrawSink;
struct StarFrame;

// What drawing reads of a star every frame: every star's position in plain coordinates
// (units of 10^16 metres), read for all stars, one array per coordinate so that they are read
// in order and several stars at a time; and the absolute magnitude and colour before alpha,
// read only for the stars in front of the eye.
struct StarDrawPositions {
    double* x = nullptr;
    double* y = nullptr;
    double* z = nullptr;
};
struct StarDrawLight {
    float absMag;
    float rgb[3];
};

// A star placed in the current frame: its drawn vertex, log10 of its distance from the eye in
// drawing units, its record and its packed size class (visible << 16 | bucket << 8 | coverage),
// with kSlotOnScreen set when its point can touch the viewport.
constexpr std::uint32_t kSlotOnScreen = 1u << 24;
struct StarDrawSlot {
    double vertex[3];
    double depth;
    std::int32_t index;
    std::uint32_t packedClass;
};

// A star's magnitude seen from the eye and its packed size class, and the generation of the
// eye (and size settings) they were worked out for.
struct StarEyeMagnitude {
    float appMag;
    std::uint32_t packedClass;
    std::uint32_t generation;
};

// While the eye stands still: a star's direction from the eye, in units of 1/32767 (zero for
// a star at the eye), and how it is drawn: its bucket (0 when it is not drawn) and coverage,
// with kStillWritten set once it is marked as seen by this eye. Eight bytes,
// so that a frame reads less than a megabyte for 10^5 stars.
struct StarStillView {
    std::int16_t dir[3];
    std::uint16_t draw;
};
constexpr std::uint16_t kStillBucketMask = 0x3f;  // buckets 0 .. 63
constexpr int kStillCoverageShift = 6;            // coverage 0 .. 255 above the bucket
constexpr std::uint16_t kStillWritten = 0x8000;

// Stars placed by drawing before their points are handed on.
constexpr int kDrawSlotBlock = 2048;

// A point waiting in a point-size bucket: eye-relative vertex and colour.
struct StarBucketEntry {
    double pos[3];
    float rgba[4];
};

constexpr int kNumPointBuckets = 64;  // bucket b draws points of b x 0.5 pixels
constexpr int kSqrtTableSize = 4096;

// Render flags of drawStars.
constexpr int kStarColorFile = 0x1;      // multiply by the file colour
constexpr int kStarColorMap = 0x2;       // multiply by the colormap colour
constexpr int kStarColorWhite = 0x4;     // start from the base colour only
constexpr int kStarColorDistance = 0x8;  // multiply by the distance colour
constexpr int kStarTextured = 0x10;      // large stars as textured sprites
constexpr int kStarDepthWrite = 0x20;    // keep depth writing on

class StarList {
  public:
    using AllocateFn = void* (*)(std::size_t);
    using ReleaseFn = void (*)(void*);
    // Maps an angle from the warp axis (radians) to its warped angle.
    using SphWarpFn = double (*)(double angle, double angleFrom, double angleTo);

    StarList();
    ~StarList();
    StarList(const StarList&) = delete;
    StarList& operator=(const StarList&) = delete;

    // Replaces the allocate/release pair. Refused (-1) while the list owns any array, so
    // that every array is released by the pair that made it.
    int setAllocator(AllocateFn allocateFn, ReleaseFn releaseFn);

    // ---- Star records and dataset files (catalogue/) ----
    int readStarFiles(int numFiles, const char* const* fileNames, int includeSun, int quiet);
    int readStarFiles(int numFiles, const char* const* fileNames);
    int readStarFiles(const char* fileName);
    int readStarFiles(const char* fileName, int includeSun, int quiet);
    // A new array made with the allocate function, or null after printing why.
    StarObj* readStarObj(const char* fileName, int* count, int quiet);
    // Orders the array by ascending w of the current position: a new array, or the same one
    // when it is already in order.
    void sortStarObj(StarObj** array, int count);
    void mergeStarObj(StarObj** array, int* count, StarObj* newArray, int newCount);
    StarObj makeSunRecord() const;

    int getNumStars() const;                     // the Sun not counted
    int getNumRecords() const { return count; }  // the Sun counted
    int includesSun() const { return includeSun; }
    // Read-only view of all records, nearest first (null when there are none), with the
    // magnitudes and per-frame fields of the last frames drawn in them.
    const StarObj* getStarArray() const {
        settleRecords();
        return stars;
    }
    int getStar(StarObj* record, int index) const;
    int getStarByHD(StarObj* record, int hd) const;
    int setStarPosition(int index, const Phc& position);
    void swapBytes(void* data, int count, int size) const;
    void getStarParameter(StarParameter* parameters) const;
    const StarParameter& getStarParameter() const { return param; }
    const char* getSpectralClassName(int classIndex) const;

    // ---- Star parameter file (catalogue/) ----
    int readStarParameter(const char* fileName, const char* dataDir = nullptr, int quiet = 0);
    // Writes through a temporary file in the same folder, renamed over the target at the end.
    int writeStarParameter(const char* fileName) const;
    // Writes to an open stream; standard output gets no NOTE lines.
    void writeStarParameter(std::FILE* out) const;

    // ---- Selections, star motion, local standard of rest (catalogue/) ----
    int setZRangeOn(double nearW, double farW);
    int setZRangeOff();
    int setVMagRangeOn(double minVMag, double maxVMag);
    int setVMagRangeOff();
    int setAbsMagRangeOn(double minAbsMag, double maxAbsMag);
    int setAbsMagRangeOff();
    int setSptypeRangeOn(int classIndex, float rangeMin, float rangeMax);
    int setSptypeRangeOff(int classIndex);
    int setStarAtYear(int year);
    int getStarAtYear() const { return param.starAtYear; }
    int setDatasetAtYear(int year);
    int getDatasetAtYear() const { return param.datasetAtYear; }
    int setLSR(const double* lsr);
    // Returns the number of stars averaged.
    int getAverageVelocity(int useVMag, int useZRange, int useSptype, double mean[3]) const;
    long findZRangeIndex(double w) const;
    // Index range visited by drawing and picking: all records, or the distance selection's
    // first..last. last < first means none.
    void getStarRange(int* first, int* last) const;
    // Index of the spectral class of a class text: O B A F G K M -> 0..6, anything else 7.
    static int spectralClassIndex(const char* spectralClass);
    bool passesSptypeSelection(const StarObj& star) const;
    bool passesAbsMagSelection(const StarObj& star) const;
    bool passesVMagSelection(float apparentMag) const;

    // ---- Colormaps (catalogue/) ----
    int loadColorMapBV(const char* fileName, double bvStart, double bvEnd);
    int loadColorMapSpType(const char* fileName);
    int setWhichColorMap(int mode);
    int getWhichColorMap() const { return param.colorMapMode; }
    bool hasColorMap() const { return bvColorMap != nullptr || spColorMap != nullptr; }
    void applyColorMap();

    // ---- Constellations and extrasolar planets (catalogue/) ----
    int loadConstellations(const char* fileName);
    int setConstellationColors(const float lineColor[4], const float boundColor[4]);
    int setConstellationLineWidth(float lineWidth, float boundWidth);
    int setConstellationStipple(int lineStipple, int boundStipple);
    int setLabelScale(float labelScale);
    int loadExtrasolarPlanets(const char* fileName);
    int setExtrasolarPlanetOrbitScale(float orbitScale);
    int getNumConstellations() const { return numConstellations; }
    // The record of a constellation, or null for an index out of range.
    const Constellation* getConstellation(int id) const;
    const char* getConstellationName(int id) const;
    const char* getConstellationCode(int id) const;
    // 2 x count star indices, made with the allocate function; the caller gives it back with
    // releaseArray. Null on failure.
    std::int32_t* getConstellationLineSet(int id, int* count) const;
    void releaseArray(void* array) const;
    // Copy of the brightest star of the first constellation that matches: 1, or -1 with
    // nothing copied.
    int findConstellationByName(StarObj* star, const char* name) const;
    int findConstellationByCode(StarObj* star, const char* code) const;
    // The constellation a star belongs to (by its code), or -1.
    int findConstellationOfStar(const StarObj& star) const;
    double getBoundaryRadius() const { return boundaryRadius; }
    // Lines, names and boundaries of every constellation, or of one.
    void drawConstellations(double currLogScale, int showLines, int showNames, int showBounds);
    void drawConstellation(int id, double currLogScale, int showLines, int showNames,
                           int showBounds);
    int getNumPlanets() const { return numPlanets; }
    const ExtrasolarPlanet* getPlanet(int index) const;
    void drawPlanetOfStar(int starID, double currLogScale, int labelMode);
    void drawPlanetOfStar(const StarObj* starobj, double currLogScale, int labelMode);
    void drawPlanet(int planetID, double currLogScale, int labelMode);
    void drawPlanet(const ExtrasolarPlanet* planet, double currLogScale, int labelMode);
    void drawAllPlanets(double currLogScale, int labelMode);

    // ---- Minimum spanning tree of the stars (catalogue/) ----
    void buildMST(const char* saveFileName = nullptr);
    int loadMST(const char* fileName);
    // The (child, parent) pairs and their number; null when there is no tree for the
    // current records.
    const std::int32_t* getMSTEdges(int* numEdges) const;
    void drawMST(double currLogScale, int renderFlags);

    // ---- Star labels and star information (starrender/) ----
    void drawLabelOfStar(int starID, double currLogScale, int labelMode, int showError);
    void drawLabelOfStar(const StarObj* star, double currLogScale, int labelMode, int showError);
    // A marker record (the scene's anchor) or a star with a label text of its own.
    void drawLabelOfStar(const StarObj* star, double currLogScale, const char* text, int showError);
    void drawDistanceErrors(double currLogScale);
    void printStarInfo(const StarObj* record, std::FILE* out) const;
    int printStarsInfo(const StarObj* records, int n, std::FILE* out) const;
    static void printPlanetInfo(const ExtrasolarPlanet* planet, std::FILE* out);

    // ---- Brightness and point sizing (starrender/) ----
    // The V magnitude seen from 10^w metres, shifted so that vmagMin becomes 10.
    float apparentMagnitude(float absMag, double w) const {
        return static_cast<float>(absMag + 5.0 * ((w - 16.4894) - 1.0) + (10.0 - param.vmagMin));
    }
    void drawStars(double currLogScale, int renderFlags, int viewportWidth, int viewportHeight);
    // The CPU side of drawStars for a given frame: every star visited, classified, coloured,
    // placed and handed to the sink in the order drawStars draws them.
    void drawStarsInto(const StarFrame& frame, int renderFlags, StarDrawSink& sink);
    int pickStar(int x, int y, double currLogScale, StarObj* record, float pickSize,
                 const int* viewport = nullptr);
    void setPickMode(int on) { pickMode = on; }
    int getPickMode() const { return pickMode; }
    int setExposure(float exposure);
    int setTuneIntensity(float tuneIntensity);
    int setStarScale(float starScale);
    int setVMagMin(float vmagMin);
    int setPtFaint(float ptFaint);
    int setPtLarge(int ptLarge);
    int setPXsizeTex(int pxsizeTex);
    int setStarTextureScale(double texScale);
    int ptSizeRescaleHint(int flag, float fixedLum);
    void resetPtSize();
    float getPtFaint() const { return ptFaint; }
    int getPtLarge() const { return ptLarge; }
    int getBucketCapacity() const { return bucketCapacity; }

    // Sphere warp of star directions about an axis.
    int setSphWarp(const double direction[3], double angleFrom, double angleTo);
    int setSphWarpFunc(SphWarpFn warpFn);
    int setSphWarpOn();
    int setSphWarpOff();

    // ---- Star textures (starrender/) ----
    int setStarTextureFile(const char* fileName, double texSize);
    int setStarTextureAiry(float filterSize, float filterCutoff, float telescopeDiam);
    int setStarTextureGauss(float filterSize, float filterCutoff);
    int setStarTextureFFT(float filterSize, float filterExp, float filterCutoff, float filterOrder,
                          const float filterRGB[3], int filterType);
    int setStarTextureParaFilter(int minFilter, int magFilter);
    int createStarTexture();
    unsigned getStarTextureName() const { return textureName; }
    double getHalfLightRadius() const { return halfLightRadius; }

  private:
    template <typename T>
    T* allocateArray(std::size_t n) const;
    // Memory for n plain records that the caller assigns one by one before any is read.
    template <typename T>
    T* allocateRecords(std::size_t n) const;
    void releaseStars();
    void releaseColorMaps();
    void releaseBuckets();
    // Defined with the constellation and planet code; also called when the stars are replaced.
    void releaseConstellations();
    void releaseExtrasolarPlanets();
    void releaseMST();
    void releaseConstellation(Constellation& constellation);
    void resetConstellationNames();
    // Line width range of the GL implementation (a fixed range without a GL context).
    static void lineWidthRange(float range[2]);

    // Catalogue internals.
    int applyStarParameter(const StarParameter& next);
    void computeMotion();
    void placeStarsAtYear();
    void updateZRangeIndex();
    bool isSunRecord(int index) const;

    // Rendering internals.
    void rebuildBuckets();
    void applySphereWarp(StarObj& star) const;
    // A star's colour for the render flags, exposure and intensity applied, without alpha.
    void starColourRGB(const StarObj& star, int renderFlags, float rgb[3]) const;
    void deleteStarTexture();

    // ---- Members the catalogue owns, in this order at the start of the object ----
    AllocateFn allocate;
    ReleaseFn release;
    StarObj* stars = nullptr;
    std::int32_t count = 0;
    Constellation* constellations = nullptr;
    std::int32_t numConstellations = 0;
    ExtrasolarPlanet* planets = nullptr;
    std::int32_t numPlanets = 0;
    std::int32_t* mstEdges = nullptr;  // (child, parent) pairs, count - 1 of them
    std::int32_t pickMode = 0;
    std::int32_t includeSun = 0;

    // Settings block and its class names.
    StarParameter param;
    char spectralClassNames[kNumSpectralClasses][kSpectralClassNameSize];
    double boundaryRadius = 0.0;    // log10 metres: light travel distance since 1950
    std::int32_t mstNumPoints = 0;  // records the spanning tree was made for

    // Distance selection, valid while it is on.
    std::int32_t zRangeFirst = 0;
    std::int32_t zRangeLast = -1;
    bool sortedByW = true;  // false once motion has put the stars out of order

    // Colormaps.
    BVColorMap* bvColorMap = nullptr;
    SpColorMap* spColorMap = nullptr;

    // Brightness model and drawing state.
    std::int32_t exposureActive = 0;
    std::int32_t tuneIntensityActive = 0;
    std::int32_t ptLarge = 16;
    std::int32_t largeLimit = 16 * 1024 * 16;
    float ptFaint = 0.05f;
    float baseColor[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    float plainColor[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    StarBucketEntry* buckets[kNumPointBuckets] = {};
    std::int32_t bucketCapacity = 16;
    std::int32_t bucketCounts[kNumPointBuckets] = {};
    std::int32_t lumNormMode = 2;  // 1 = brightest star, 2 = fixed luminosity
    float lumNormFixed = 200000.0f;

    // Sphere warp.
    bool sphWarpOn = false;
    double sphWarpDir[3] = {0.0, 0.0, 1.0};
    double sphWarpAngleFrom = 0.0;
    double sphWarpAngleTo = 0.0;
    SphWarpFn sphWarpFn = nullptr;

    // Star texture.
    unsigned textureName = 0;
    double halfLightRadius = 0.5;

    // Per-star values that drawing needs every frame but that change only with the stars'
    // positions or colour settings, made again when their epoch falls behind.
    StarDrawPositions drawPositions;      // one per record
    StarDrawLight* drawLights = nullptr;  // one per record
    // The frame's placed stars: one per record and one more, then a block's worth.
    StarDrawSlot* drawSlots = nullptr;
    // Each star's magnitude seen from the eye and its size class, worked out the first time
    // the star is in front of an eye: while the eye stands still (the view may turn) they are
    // not worked out again, nor the magnitude written again into the record. A new eye
    // position, scale, pixel size, size setting or star position starts a new generation.
    StarEyeMagnitude* eyeMagnitudes = nullptr;  // one per record
    // The apparent magnitudes that frames have seen and the records do not hold yet. A frame
    // marks each star it sees in front of its eye with that eye (one plus its index in
    // seenEyes; 0: the record holds the star's latest magnitude). The records are brought up
    // to date, from the positions the eyes saw, whenever they are read from outside drawing
    // and before those positions are replaced, so that a frame pays for the magnitudes of
    // the stars it draws and not for those of the others.
    struct SeenEye {
        Vec3 eyeDrawing;
        double cacheToDrawing;
        double magnitudeShift;  // apparentMagnitude's shift at the frame's scale
    };
    static constexpr std::size_t kMaxSeenEyes = 4096;
    std::uint16_t* magnitudeEye = nullptr;  // one per record
    mutable std::vector<SeenEye> seenEyes;
    // The mark of the frame's eye, added to seenEyes when it is new.
    std::uint16_t seenEyeFor(const StarFrame& frame, double magnitudeShift);
    // Writes every pending magnitude into its record; for one record, only its own.
    void settleMagnitudes() const;
    void settleMagnitude(int index) const;
    // The per-frame fields of the last textured frame (draw bucket, draw coverage, eye
    // position), brought into the records in the same way: every star of its range has draw
    // bucket 0 but those it kept for its point pass, which are drawSlots[0, kept). A textured
    // frame of the same range replaces a pending one; one of another range settles it first.
    struct TexturedFrame {
        bool pending = false;
        std::int32_t first = 0, last = -1;
        std::int32_t kept = 0;
        double currLogScale = 0.0;
    };
    mutable TexturedFrame texturedFrame;
    void settleTexturedFrame() const;
    // All that frames left for the records to hold; for one record, its magnitude and the
    // textured frame.
    void settleRecords() const {
        settleMagnitudes();
        settleTexturedFrame();
    }
    void settleRecord(int index) const {
        settleMagnitude(index);
        settleTexturedFrame();
    }
    std::uint32_t eyeGeneration = 0;
    std::uint32_t lastFrameGeneration = 0;  // the generation of the frame before
    static constexpr int kEyeKeySize = 12;
    // Eye in drawing units, currLogScale, vmagMin, radians per pixel, starScale, texScale,
    // the large limit and the V-magnitude selection.
    double eyeKey[kEyeKeySize] = {};
    std::uint32_t eyeKeyEpoch = 0;  // positions the generation was made for
    bool eyeKeyValid = false;
    std::int32_t drawCacheCount = 0;  // records the caches were made for
    std::uint32_t positionEpoch = 1, cartesianEpoch = 0;
    std::uint32_t colourEpoch = 1, colourCacheEpoch = 0;
    std::int32_t colourCacheFlags = -1;
    void touchPositions() {
        ++positionEpoch;
        ++colourEpoch;  // the distance colour follows the positions
    }
    void touchColours() { ++colourEpoch; }
    void releaseDrawCaches();
    bool refreshDrawCaches(int renderFlags);
    // The generation of the frame's eye: the current one while the eye, the scale, the size
    // settings and the positions are as they were, else a new one. *still tells whether the
    // frame before had the same one (an eye that moves every frame gains nothing from
    // keeping what it saw).
    std::uint32_t eyeGenerationFor(const StarFrame& frame, bool* still);
    void forgetEyeMagnitudes() { eyeKeyValid = false; }
    // For frames of a still eye (views that only turn): every star's direction and class,
    // made for one generation, so that a frame tells which stars are in front and which reach
    // the viewport from a few floats a star.
    StarStillView* stillView = nullptr;     // one per record
    std::uint32_t stillViewGeneration = 0;  // 0: not made
    bool makeStillView(const StarFrame& frame, std::uint32_t generation);
    // The point pass of drawStarsInto for stars first .. last when the still view is made.
    void drawStillEye(const StarFrame& frame, std::uint32_t generation, std::uint16_t seenEye,
                      int first, int last, StarDrawSink& sink);
};

template <typename T>
T* StarList::allocateArray(std::size_t n) const {
    if (n == 0) n = 1;
    if (n > static_cast<std::size_t>(-1) / sizeof(T)) return nullptr;
    void* memory = allocate(n * sizeof(T));
    if (memory == nullptr) return nullptr;
    T* items = static_cast<T*>(memory);
    for (std::size_t i = 0; i < n; ++i)
        new (items + i) T();
    return items;
}

template <typename T>
T* StarList::allocateRecords(std::size_t n) const {
    static_assert(std::is_trivially_copyable<T>::value, "records are copied as plain bytes");
    if (n == 0) n = 1;
    if (n > static_cast<std::size_t>(-1) / sizeof(T)) return nullptr;
    return static_cast<T*>(allocate(n * sizeof(T)));
}
