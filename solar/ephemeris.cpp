#include "solar/ephemeris.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "image/byte_order.h"
#include "image/data_file.h"

// The file is big-endian and every multi-byte value is reversed as it is read, without
// asking the host: skyrama runs on little-endian machines only.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "the ephemeris reader reverses every value of its big-endian file");

namespace {

// Offsets of the used header fields, in bytes from the start of the header record. The
// writer of the file padded the constant names and the constant count to eight bytes.
constexpr long kTimeDataOffset = 2656;
constexpr long kNumConstantsOffset = 2680;
constexpr long kAuOffset = 2688;
constexpr long kMassRatioOffset = 2696;
constexpr long kPointersOffset = 2704;
constexpr long kEphemerisNumberOffset = 2848;
constexpr long kLibrationPointerOffset = 2852;

constexpr double kMetresPerKilometre = 1000.0;

// More data records than this would make dataSize overflow its int.
constexpr long kMaxRecords = INT_MAX / kEphemerisSlotBytes;

template <class T>
T takeReversed(unsigned char* record, long offset) {
    reverseElementBytes(record + offset, sizeof(T), 1);
    T value;
    std::memcpy(&value, record + offset, sizeof(T));
    return value;
}

// Components per item: three (x, y, z) for the bodies, two for the nutations.
int componentsOfItem(int item) {
    return item == kEphemerisNutationItem ? 2 : 3;
}

// Whether the coefficients of a pointer triple lie inside a data record. An item with no
// coefficients is absent and always fits; fewer than one granule is reported when the item
// is evaluated.
bool pointerFits(const int pointer[3], int components) {
    long long first = pointer[0], n = pointer[1], g = pointer[2];
    if (n == 0 || g < 1) return true;
    if (first < 3 || n < 0) return false;  // values 0 and 1 are the record's dates
    return (first - 1) + g * components * n <= kEphemerisRecordValues;
}

}  // namespace

void Ephemeris::Block::reset() {
    if (data != nullptr && release != nullptr) release(data);
    data = nullptr;
}

void Ephemeris::Block::swap(Block& other) noexcept {
    std::swap(data, other.data);
    std::swap(release, other.release);
}

Ephemeris::Ephemeris() : allocate_(std::malloc), release_(std::free) {}

Ephemeris::~Ephemeris() {
    close();
}

void Ephemeris::setAllocator(AllocateFunction allocate, ReleaseFunction release) {
    allocate_ = allocate != nullptr ? allocate : std::malloc;
    release_ = release != nullptr ? release : std::free;
}

Ephemeris::Block Ephemeris::allocate(std::size_t bytes, bool quiet) const {
    Block block;
    block.data = allocate_(bytes);
    block.release = release_;
    if (block.data == nullptr && !quiet)
        fprintf(stderr, "Err: cannot allocate so many memory [%d bytes].\n\n",
                bytes > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(bytes));
    return block;
}

void Ephemeris::close() {
    initialized_ = false;
    cacheBlock_.reset();
    indexBlock_.reset();
    cache_ = nullptr;
    index_ = nullptr;
    numRecords_ = 0;
    nextSlot_ = 0;
    if (file_ != nullptr) fclose(file_);
    file_ = nullptr;
}

int Ephemeris::open(const char* path, bool quiet) {
    close();
    fileName_.assign(path != nullptr ? path : "");
    if (fileName_.size() > static_cast<std::size_t>(kEphemerisNameLength))
        fileName_.resize(kEphemerisNameLength);

    file_ = openDataFile(fileName_.c_str(), "rb");
    if (file_ == nullptr) {
        if (!quiet)
            fprintf(stderr, "Err: Unable to open ephemeris file: [%s].\n", fileName_.c_str());
        return -1;
    }
    if (readHeaderRecords(quiet) != 0) {
        close();
        return -1;
    }
    if (header_.ephemerisNumber != kEphemerisNumber) {
        if (!quiet)
            fprintf(stderr, "\nErr: Opened wrong file: [%s] for ephemeris: %d != %d.",
                    fileName_.c_str(), kEphemerisNumber, header_.ephemerisNumber);
        close();
        return -1;
    }
    if (!pointersFitRecord()) {
        if (!quiet)
            fprintf(stderr, "Err: coefficient pointers point outside the records of [%s].\n",
                    fileName_.c_str());
        close();
        return -1;
    }

    long long fileSize = -1;
    if (fseeko(file_, 0, SEEK_END) == 0) fileSize = ftello(file_);
    if (fseeko(file_, 0, SEEK_SET) != 0) fileSize = -1;
    long long records = (fileSize - 2 * kEphemerisRecordBytes) / kEphemerisRecordBytes;
    if (fileSize < 0 || records < 1) {
        if (!quiet)
            fprintf(stderr, "Err: no data records in ephemeris file: [%s].\n", fileName_.c_str());
        close();
        return -1;
    }
    if (records > kMaxRecords) {
        if (!quiet)
            fprintf(stderr, "Err: too many data records [%lld] in ephemeris file: [%s].\n", records,
                    fileName_.c_str());
        close();
        return -1;
    }
    numRecords_ = static_cast<int>(records);

    indexBlock_ = allocate(static_cast<std::size_t>(numRecords_) * sizeof(CacheSlot*), quiet);
    if (indexBlock_.data == nullptr) {
        close();
        return -1;
    }
    index_ = static_cast<CacheSlot**>(indexBlock_.data);

    if (buildCache(slotCount_ > 0 ? slotCount_ : kEphemerisMaxSlots, quiet) != 0) {
        close();
        return -1;
    }
    initialized_ = true;
    return 0;
}

int Ephemeris::readHeaderRecords(bool quiet) {
    headerRecord_.fill(0);
    std::array<unsigned char, kEphemerisRecordBytes> constantsRecord{};
    if (fread(headerRecord_.data(), 1, headerRecord_.size(), file_) != headerRecord_.size() ||
        fread(constantsRecord.data(), 1, constantsRecord.size(), file_) != constantsRecord.size()) {
        if (!quiet)
            fprintf(stderr, "Err: ephemeris file [%s] is too short for its header records.\n",
                    fileName_.c_str());
        return -1;
    }
    unsigned char* h = headerRecord_.data();
    EphemerisHeader fields;
    fields.startJulianDate = takeReversed<double>(h, kTimeDataOffset);
    fields.endJulianDate = takeReversed<double>(h, kTimeDataOffset + 8);
    fields.daysPerRecord = takeReversed<double>(h, kTimeDataOffset + 16);
    fields.numConstants = takeReversed<std::int32_t>(h, kNumConstantsOffset);
    fields.kilometresPerAu = takeReversed<double>(h, kAuOffset);
    fields.earthMoonMassRatio = takeReversed<double>(h, kMassRatioOffset);
    for (int i = 0; i < kEphemerisPointerItems; ++i)
        for (int j = 0; j < 3; ++j)
            fields.pointers[i][j] =
                takeReversed<std::int32_t>(h, kPointersOffset + 4 * (3 * i + j));
    fields.ephemerisNumber = takeReversed<std::int32_t>(h, kEphemerisNumberOffset);
    for (int j = 0; j < 3; ++j)
        fields.librationPointer[j] = takeReversed<std::int32_t>(h, kLibrationPointerOffset + 4 * j);
    header_ = fields;

    std::memcpy(constants_.data(), constantsRecord.data(), sizeof(double) * constants_.size());
    reverseElementBytes(constants_.data(), sizeof(double), constants_.size());
    return 0;
}

bool Ephemeris::pointersFitRecord() const {
    for (int i = 0; i < kEphemerisPointerItems; ++i)
        if (!pointerFits(header_.pointers[i], componentsOfItem(i))) return false;
    return pointerFits(header_.librationPointer, 3);
}

int Ephemeris::buildCache(int slots, bool quiet) {
    Block block = allocate(static_cast<std::size_t>(slots) * sizeof(CacheSlot), quiet);
    if (block.data == nullptr) return -1;
    auto* cache = static_cast<CacheSlot*>(block.data);
    for (int s = 0; s < slots; ++s)
        cache[s].record = -1;

    // Record 0 goes into slot 0 and gives the dates and span every record is taken to have.
    if (fseeko(file_, 2 * kEphemerisRecordBytes, SEEK_SET) != 0 ||
        cp_fread(cache[0].values, sizeof(double), kEphemerisRecordValues, file_) !=
            static_cast<std::size_t>(kEphemerisRecordValues)) {
        if (!quiet) fprintf(stderr, "Err: reading from the ephemeris dataset.\n");
        return -1;
    }
    double start = cache[0].values[0];
    double end = cache[0].values[1];
    double span = end - start;
    if (!std::isfinite(start) || !std::isfinite(span) || span <= 0.0) {
        if (!quiet)
            fprintf(stderr, "Err: the first data record of [%s] spans no time [%g .. %g].\n",
                    fileName_.c_str(), start, end);
        return -1;
    }

    cacheBlock_ = std::move(block);
    cache_ = cache;
    slotCount_ = slots;
    for (int k = 0; k < numRecords_; ++k)
        index_[k] = nullptr;
    cache_[0].record = 0;
    index_[0] = &cache_[0];
    nextSlot_ = slots > 1 ? 1 : 0;
    recordStart_ = start;
    recordEnd_ = end;
    recordSpan_ = span;
    return 0;
}

int Ephemeris::dataSize() const {
    if (!initialized_) return -1;
    return numRecords_ * static_cast<int>(kEphemerisSlotBytes);
}

int Ephemeris::cacheSize() const {
    return slotCount_ * static_cast<int>(kEphemerisSlotBytes);
}

int Ephemeris::setCacheSize(int bytes) {
    long slots = bytes / kEphemerisSlotBytes;
    if (slots < 1) {
        fprintf(stderr,
                "Err (setCacheSize) : the cache must hold one record at least [%d bytes].\n",
                bytes);
        return -1;
    }
    // Asking for more than the cache's capacity is not an error: the scene asks for twice
    // the default, and the largest cache serves it.
    if (slots > kEphemerisMaxSlots) slots = kEphemerisMaxSlots;
    if (!initialized_) {
        slotCount_ = static_cast<int>(slots);
        return cacheSize();
    }
    if (buildCache(static_cast<int>(slots), false) != 0) return -1;
    return cacheSize();
}

int Ephemeris::recordNumberFor(double julianDate) const {
    if (numRecords_ < 1 || !(recordSpan_ > 0.0)) return 0;
    double k = std::ceil((julianDate - recordEnd_) / recordSpan_);
    if (!(k > 0.0)) return 0;  // NaN lands here too
    if (k >= numRecords_ - 1) return numRecords_ - 1;
    return static_cast<int>(k);
}

const Ephemeris::CacheSlot* Ephemeris::recordFor(double julianDate) {
    int k = recordNumberFor(julianDate);
    if (index_[k] != nullptr) return index_[k];

    CacheSlot* slot = &cache_[nextSlot_];
    if (slot->record >= 0) index_[slot->record] = nullptr;
    slot->record = -1;
    nextSlot_ = (nextSlot_ + 1) % slotCount_;
    if (fseeko(file_, static_cast<off_t>(k + 2) * kEphemerisRecordBytes, SEEK_SET) != 0)
        fprintf(stderr, "Err: reading from the ephemeris dataset.\n");
    if (cp_fread(slot->values, sizeof(double), kEphemerisRecordValues, file_) !=
        static_cast<std::size_t>(kEphemerisRecordValues)) {
        // A short read leaves the slot empty: better no position than one from half a record.
        fprintf(stderr, "Err: reading from the ephemeris dataset.\n");
        return nullptr;
    }
    slot->record = k;
    index_[k] = slot;
    return slot;
}

bool Ephemeris::checkInitialized() const {
    if (initialized_) return true;
    fprintf(stderr, "\nErr: Ephemeris Data not initialized yet.\n");
    return false;
}

// Sums the Chebyshev series of an item at a Julian date. position receives the components
// times scale; velocity (when asked for) their time derivatives per second.
int Ephemeris::evaluate(const int pointer[3], int components, double julianDate, double* position,
                        double* velocity, double scale, FILE* granuleStream) {
    const int first = pointer[0], n = pointer[1], g = pointer[2];
    if (g < 1) {
        fprintf(granuleStream, "\n Number of granules must be >= 1: check header data.\n");
        return -1;
    }
    const CacheSlot* slot = recordFor(julianDate);
    if (slot == nullptr) return -1;
    if (n < 1) {  // an item the file does not carry
        for (int c = 0; c < components; ++c)
            position[c] = 0.0;
        if (velocity != nullptr)
            for (int c = 0; c < components; ++c)
                velocity[c] = 0.0;
        return 0;
    }

    const double t0 = slot->values[0];
    double granuleStart = t0;
    double granuleLength = recordSpan_;
    int granule = 0;
    if (g > 1) {
        granuleLength = recordSpan_ / g;
        for (int j = g - 1; j >= 0; --j) {
            if (t0 + j * recordSpan_ / g < julianDate) {
                granule = j;
                break;
            }
        }
        granuleStart = t0 + granule * recordSpan_ / g;
    }
    const double tau = 2.0 * (julianDate - granuleStart) / granuleLength - 1.0;

    // T_k(tau) and, for velocities, V_k(tau) = d T_k / d tau.
    double t[kEphemerisRecordValues];
    double v[kEphemerisRecordValues];
    t[0] = 1.0;
    if (n > 1) t[1] = tau;
    for (int k = 2; k < n; ++k)
        t[k] = 2.0 * tau * t[k - 1] - t[k - 2];
    if (velocity != nullptr) {
        v[0] = 0.0;
        if (n > 1) v[1] = 1.0;
        if (n > 2) v[2] = 4.0 * tau;
        for (int k = 3; k < n; ++k)
            v[k] = 2.0 * t[k - 1] + 2.0 * tau * v[k - 1] - v[k - 2];
    }

    const double* coefficients = slot->values + (first - 1) + granule * components * n;
    for (int c = 0; c < components; ++c, coefficients += n) {
        double sum = 0.0;
        for (int k = n - 1; k >= 0; --k)
            sum += coefficients[k] * t[k];
        position[c] = sum * scale;
        if (velocity != nullptr) {
            double rate = 0.0;
            for (int k = n - 1; k >= 1; --k)
                rate += coefficients[k] * v[k];
            velocity[c] = g * 2.0 * (rate * scale) / (recordSpan_ * kSecondsPerDay);
        }
    }
    return 0;
}

int Ephemeris::positionAt(int item, double julianDate, double position[3]) {
    if (!checkInitialized()) return -1;
    if (item < 0 || item >= kEphemerisBodyCount) {
        fprintf(stderr, "\nErr: This function does not compute nutations or librations.\n");
        return -1;
    }
    double p[3];
    if (evaluate(header_.pointers[item], 3, julianDate, p, nullptr, kMetresPerKilometre, stderr) !=
        0)
        return -1;
    for (int c = 0; c < 3; ++c)
        position[c] = p[c];
    return 0;
}

int Ephemeris::stateAt(int item, double julianDate, double position[3], double velocity[3]) {
    if (!checkInitialized()) return -1;
    if (item < 0 || item >= kEphemerisBodyCount) {
        fprintf(stderr, "\n This function does not compute nutations or librations.\n");
        return -1;
    }
    double p[3], v[3];
    if (evaluate(header_.pointers[item], 3, julianDate, p, v, kMetresPerKilometre, stderr) != 0)
        return -1;
    for (int c = 0; c < 3; ++c) {
        position[c] = p[c];
        velocity[c] = v[c];
    }
    return 0;
}

int Ephemeris::nutationsAt(double julianDate, double nutations[2]) {
    if (!checkInitialized()) return -1;
    double a[2];
    if (evaluate(header_.pointers[kEphemerisNutationItem], 2, julianDate, a, nullptr, 1.0,
                 stdout) != 0)
        return -1;
    nutations[0] = a[0];
    nutations[1] = a[1];
    return 0;
}

int Ephemeris::librationsAt(double julianDate, double librations[3]) {
    if (!checkInitialized()) return -1;
    double a[3];
    if (evaluate(header_.librationPointer, 3, julianDate, a, nullptr, 1.0, stdout) != 0) return -1;
    for (int c = 0; c < 3; ++c)
        librations[c] = a[c];
    return 0;
}

int Ephemeris::positionAt(int item, const CalendarDate& date, double position[3]) {
    return positionAt(item, julianDateFromCalendar(date), position);
}
int Ephemeris::positionAt(int item, GmtTime gmt, double position[3]) {
    return positionAt(item, julianDateFromGmt(gmt.seconds), position);
}
int Ephemeris::stateAt(int item, const CalendarDate& date, double position[3], double velocity[3]) {
    return stateAt(item, julianDateFromCalendar(date), position, velocity);
}
int Ephemeris::stateAt(int item, GmtTime gmt, double position[3], double velocity[3]) {
    return stateAt(item, julianDateFromGmt(gmt.seconds), position, velocity);
}
int Ephemeris::nutationsAt(const CalendarDate& date, double nutations[2]) {
    return nutationsAt(julianDateFromCalendar(date), nutations);
}
int Ephemeris::nutationsAt(GmtTime gmt, double nutations[2]) {
    return nutationsAt(julianDateFromGmt(gmt.seconds), nutations);
}
int Ephemeris::librationsAt(const CalendarDate& date, double librations[3]) {
    return librationsAt(julianDateFromCalendar(date), librations);
}
int Ephemeris::librationsAt(GmtTime gmt, double librations[3]) {
    return librationsAt(julianDateFromGmt(gmt.seconds), librations);
}
