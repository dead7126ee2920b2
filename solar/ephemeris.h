#pragma once
// The planetary ephemeris reader: positions and velocities of the Sun, the Moon and the
// nine planets, nutations and lunar librations, from a binary development ephemeris
// (number 405) of big-endian records of Chebyshev coefficients. Whole records are kept in a
// small round-robin cache so that a frame's many lookups seldom touch the file.

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

#include "solar/julian_date.h"

// Item numbers of the position operations.
enum EphemerisItem {
    kMercury = 0,
    kVenus = 1,
    kEarthMoonBarycentre = 2,  // the orrery's Earth
    kMars = 3,
    kJupiter = 4,
    kSaturn = 5,
    kUranus = 6,
    kNeptune = 7,
    kPluto = 8,
    kMoon = 9,  // relative to the Earth
    kSun = 10,
};
constexpr int kEphemerisBodyCount = 11;     // items 0 .. 10 have positions
constexpr int kEphemerisNutationItem = 11;  // two angles
constexpr int kEphemerisPointerItems = 12;  // pointer triples in the header before librations

constexpr int kEphemerisNumber = 405;         // the only development ephemeris accepted
constexpr int kEphemerisRecordValues = 1018;  // eight-byte values per record
constexpr long kEphemerisRecordBytes = 8144;  // 1018 x 8
constexpr long kEphemerisSlotBytes = 8152;    // one cached record and its record number
constexpr int kEphemerisMaxSlots = 256;       // cache capacity
constexpr int kEphemerisConstantCount = 400;  // doubles kept from the constants record
constexpr int kEphemerisNameLength = 255;     // characters of the file name kept

// The used fields of the header record, byte-reversed, as laid out in the file from byte
// 2656 on (the part before holds titles and constant names).
struct EphemerisHeader {
    double startJulianDate = 0.0;  // of the file
    double endJulianDate = 0.0;
    double daysPerRecord = 0.0;
    int numConstants = 0;
    double kilometresPerAu = 0.0;
    double earthMoonMassRatio = 0.0;
    // For each of the 12 items: first coefficient (1-based index of a value in a data
    // record), coefficients per component, granules (sub-intervals) per record.
    int pointers[kEphemerisPointerItems][3] = {};
    int ephemerisNumber = 0;
    int librationPointer[3] = {};
};

class Ephemeris {
  public:
    using AllocateFunction = void* (*)(std::size_t bytes);
    using ReleaseFunction = void (*)(void* block);

    Ephemeris();
    ~Ephemeris();
    Ephemeris(const Ephemeris&) = delete;
    Ephemeris& operator=(const Ephemeris&) = delete;

    // Closes any file already open, then opens and checks path. Returns 0, or -1 with a
    // message on standard error unless quiet is set; the reader is then uninitialised.
    int open(const char* path, bool quiet = false);
    // Releases the record index and the cache and closes the file. The cache's slot count
    // is remembered for the next open.
    void close();
    bool isInitialized() const { return initialized_; }

    // Position of item 0 .. 10 in metres (relative to the solar-system barycentre; the Moon
    // relative to the Earth). Returns 0, or -1 with a message and nothing written.
    int positionAt(int item, double julianDate, double position[3]);
    int positionAt(int item, const CalendarDate& date, double position[3]);
    int positionAt(int item, GmtTime gmt, double position[3]);

    // Position in metres and velocity in metres per second.
    int stateAt(int item, double julianDate, double position[3], double velocity[3]);
    int stateAt(int item, const CalendarDate& date, double position[3], double velocity[3]);
    int stateAt(int item, GmtTime gmt, double position[3], double velocity[3]);

    // The two nutation angles and the three libration angles, in radians.
    int nutationsAt(double julianDate, double nutations[2]);
    int nutationsAt(const CalendarDate& date, double nutations[2]);
    int nutationsAt(GmtTime gmt, double nutations[2]);
    int librationsAt(double julianDate, double librations[3]);
    int librationsAt(const CalendarDate& date, double librations[3]);
    int librationsAt(GmtTime gmt, double librations[3]);

    // Number of data records x 8152 bytes, or -1 when no file is open.
    int dataSize() const;
    // Number of cache slots x 8152 bytes.
    int cacheSize() const;
    // Makes bytes / 8152 slots (at most 256) and refills the cache as on opening; returns
    // the new cacheSize. Fewer than one slot is refused with a message and -1, keeping the
    // old cache; so is a failed allocation. Without an open file the slot count is kept
    // for the next open.
    int setCacheSize(int bytes);

    // The allocation pair for the record index and the cache (malloc and free by default).
    // Takes effect at the next allocation; blocks already held are released by the
    // function that goes with them.
    void setAllocator(AllocateFunction allocate, ReleaseFunction release);

    const EphemerisHeader& header() const { return header_; }
    const std::array<double, kEphemerisConstantCount>& constants() const { return constants_; }
    const std::string& fileName() const { return fileName_; }
    int numRecords() const { return numRecords_; }
    // Start, end and span in days of the first data record; every record is taken to span
    // as long as the first.
    double firstRecordStart() const { return recordStart_; }
    double firstRecordEnd() const { return recordEnd_; }
    double recordSpan() const { return recordSpan_; }
    // The data record that holds a Julian date: a time on a boundary between two records
    // belongs to the earlier one; times outside the file use the first or last record.
    int recordNumberFor(double julianDate) const;

  private:
    struct CacheSlot {
        double values[kEphemerisRecordValues];
        long long record;  // -1 when empty
    };
    static_assert(sizeof(CacheSlot) == kEphemerisSlotBytes, "a slot is one record and its number");

    // A block from the allocation pair, released with the function it came from.
    struct Block {
        void* data = nullptr;
        ReleaseFunction release = nullptr;
        Block() = default;
        Block(const Block&) = delete;
        Block& operator=(const Block&) = delete;
        Block(Block&& other) noexcept { swap(other); }
        Block& operator=(Block&& other) noexcept {
            swap(other);
            return *this;
        }
        ~Block() { reset(); }
        void reset();
        void swap(Block& other) noexcept;
    };

    bool checkInitialized() const;
    Block allocate(std::size_t bytes, bool quiet) const;
    int readHeaderRecords(bool quiet);
    bool pointersFitRecord() const;
    int buildCache(int slots, bool quiet);
    const CacheSlot* recordFor(double julianDate);
    int evaluate(const int pointer[3], int components, double julianDate, double* position,
                 double* velocity, double scale, FILE* granuleStream);

    bool initialized_ = false;
    std::string fileName_;
    FILE* file_ = nullptr;
    std::array<unsigned char, kEphemerisRecordBytes> headerRecord_{};
    EphemerisHeader header_;
    std::array<double, kEphemerisConstantCount> constants_{};
    int numRecords_ = 0;
    double recordStart_ = 0.0;
    double recordEnd_ = 0.0;
    double recordSpan_ = 0.0;

    Block indexBlock_;  // one slot pointer per data record
    Block cacheBlock_;  // the slots
    CacheSlot** index_ = nullptr;
    CacheSlot* cache_ = nullptr;
    int slotCount_ = 0;
    int nextSlot_ = 0;

    AllocateFunction allocate_;
    ReleaseFunction release_;
};
