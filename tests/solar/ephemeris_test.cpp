// The ephemeris reader on files the tests write: answers against the formulas the files
// encode, the record boundary rule, the cache, Julian dates, and the messages for bad calls
// and damaged files.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>

#include "solar/ephemeris.h"
#include "solar/julian_date.h"
#include "tests/solar/ephemeris_test_file.h"
#include "tests/support/scratch_files.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using namespace solartest;

namespace {

constexpr double kT0 = kTestFirstJulianDate;
constexpr int kSlot = 8152;

// A test file in a scratch folder, as a path and as bytes to damage.
struct TestFile {
    testsupport::ScratchDir dir;
    std::string path, bytes;
    explicit TestFile(const TestEphemerisSpec& spec = {}) : path(dir.file("test.405")) {
        EXPECT_TRUE(writeTestEphemeris(path, spec));
        bytes = testsupport::readFile(path);
    }
};

std::string withInt(std::string bytes, std::size_t offset, int value) {  // big-endian
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<char>(value >> (24 - 8 * i));
    return bytes;
}

// What opening prints on standard error; the status in *status.
std::string openMessage(Ephemeris& ephemeris, const std::string& path, int* status = nullptr) {
    CaptureStderr();
    const int result = ephemeris.open(path.c_str(), false);
    if (status != nullptr) *status = result;
    return GetCapturedStderr();
}

}  // namespace

TEST(JulianDate, FromCalendarDatesAndGmtSeconds) {
    const std::pair<CalendarDate, double> dates[] = {{{2000, 1, 1, 12, 0, 0.0}, 2451545.0},
                                                     {{1970, 1, 1, 0, 0, 0.0}, 2440587.5},
                                                     {{1600, 12, 31, 0, 0, 0.0}, 2305812.5},
                                                     {{2000, 2, 29, 0, 0, 0.0}, 2451603.5},
                                                     {{1900, 3, 1, 0, 0, 0.0}, 2415079.5}};
    for (const auto& [date, jd] : dates)
        EXPECT_EQ(julianDateFromCalendar(date), jd) << date.year << "-" << date.month;
    EXPECT_NEAR(julianDateFromCalendar(1957, 10, 4, 19, 26, 24.0), 2436116.31, 1e-9);
    EXPECT_EQ(julianDateFromGmt(0), 2440587.5);
    EXPECT_EQ(julianDateFromGmt(946728000 + 21600), 2451545.25);
    CaptureStderr();
    EXPECT_EQ(julianDateFromGmt(-1), 0.0);
    EXPECT_EQ(GetCapturedStderr(), "Err: gmtTime should not be negative!\n\n");
}

TEST(Ephemeris, UnopenedOrUnopenableReadersRefuseWithTheirMessages) {
    Ephemeris unopened;
    EXPECT_EQ(unopened.dataSize(), -1);
    double out[3] = {7.0, 7.0, 7.0}, v[3];
    CaptureStderr();
    EXPECT_EQ(unopened.positionAt(kMars, 2451545.0, out), -1);
    EXPECT_EQ(unopened.stateAt(kMars, 2451545.0, out, v), -1);
    EXPECT_EQ(unopened.librationsAt(GmtTime{0}, out), -1);
    const std::string message = "\nErr: Ephemeris Data not initialized yet.\n";
    EXPECT_EQ(GetCapturedStderr(), message + message + message);
    EXPECT_EQ(out[0], 7.0);

    TestEphemerisSpec de403;
    de403.ephemerisNumber = 403;
    const TestFile wrong(de403);
    const std::string missing = wrong.dir.file("missing.405");
    const std::string longName = "/nonexistent/" + std::string(300, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {missing, "Err: Unable to open ephemeris file: [" + missing + "].\n"},
        {longName, "Err: Unable to open ephemeris file: [" + longName.substr(0, 255) + "].\n"},
        {wrong.path, "\nErr: Opened wrong file: [" + wrong.path + "] for ephemeris: 405 != 403."},
    };
    for (const auto& [path, message] : cases) {
        Ephemeris ephemeris;
        int status = 0;
        EXPECT_EQ(openMessage(ephemeris, path, &status), message);
        EXPECT_EQ(status, -1);
        EXPECT_EQ(ephemeris.dataSize(), -1);
        CaptureStderr();
        EXPECT_EQ(ephemeris.open(path.c_str(), true), -1);
        EXPECT_EQ(GetCapturedStderr(), "");  // quiet
    }
}

TEST(Ephemeris, PositionsVelocitiesAndAnglesFollowTheCoefficients) {
    const TestFile file;
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(file.path.c_str(), true), 0);
    EXPECT_EQ(ephemeris.dataSize(), 4 * kSlot);
    EXPECT_EQ(ephemeris.cacheSize(), 256 * kSlot);
    // Inside records, on granule edges, and beyond the file on either side.
    for (double t : {kT0 + 0.3, kT0 + 8.0, 2451545.0, kT0 + 127.9, kT0 - 3.0, kT0 + 130.0}) {
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double p[3], q[3], v[3];
            ASSERT_EQ(ephemeris.positionAt(item, t, p), 0);
            ASSERT_EQ(ephemeris.stateAt(item, t, q, v), 0);
            for (int c = 0; c < 3; ++c) {
                EXPECT_NEAR(p[c], testItemValue(item, c, t) * 1000.0, 1e-3) << item << " " << t;
                EXPECT_EQ(q[c], p[c]);
                EXPECT_NEAR(v[c], testItemRate(item, c, t) / 86.4, 1e-6) << item;
            }
        }
        double nutations[2], librations[3];
        ASSERT_EQ(ephemeris.nutationsAt(t, nutations), 0);
        ASSERT_EQ(ephemeris.librationsAt(t, librations), 0);
        EXPECT_NEAR(nutations[1], testItemValue(11, 1, t), 1e-12);
        EXPECT_NEAR(librations[2], testItemValue(12, 2, t), 1e-12);
    }
    double byJd[3], byCalendar[3], byGmt[3];
    ASSERT_EQ(ephemeris.positionAt(kVenus, 2451545.0, byJd), 0);
    ASSERT_EQ(ephemeris.positionAt(kVenus, CalendarDate{2000, 1, 1, 12, 0, 0.0}, byCalendar), 0);
    ASSERT_EQ(ephemeris.positionAt(kVenus, GmtTime{946728000}, byGmt), 0);
    EXPECT_TRUE(byCalendar[1] == byJd[1] && byGmt[1] == byJd[1]);
}

TEST(Ephemeris, BoundaryTimesBelongToTheEarlierRecordAndOneSlotAgrees) {
    TestEphemerisSpec spec;
    spec.stepKmPerRecord = 1000.0;  // neighbouring records disagree by 1000 km
    const TestFile file(spec);
    Ephemeris ephemeris, single;
    ASSERT_EQ(ephemeris.open(file.path.c_str(), true), 0);
    for (int k = 0; k < 3; ++k) {
        double boundary = kT0 + (k + 1) * kTestRecordDays, after = boundary + 1.0 / 1024;
        for (int item : {kMercury, kMoon, kPluto}) {  // 4, 8 and 1 granules
            double at[3], next[3];
            ASSERT_EQ(ephemeris.positionAt(item, boundary, at), 0);
            ASSERT_EQ(ephemeris.positionAt(item, after, next), 0);
            EXPECT_NEAR(at[1], testItemValue(item, 1, boundary, k * 1000.0) * 1000.0, 1e-3);
            EXPECT_NEAR(next[1], testItemValue(item, 1, after, (k + 1) * 1000.0) * 1000.0, 1e-3);
        }
    }
    EXPECT_EQ(ephemeris.recordNumberFor(1e300), 3);
    EXPECT_EQ(ephemeris.recordNumberFor(NAN), 0);
    ASSERT_EQ(single.open(file.path.c_str(), true), 0);
    EXPECT_EQ(single.setCacheSize(kSlot), kSlot);
    for (int round = 0; round < 6; ++round) {  // alternating between the first and last records
        double t = round % 2 == 0 ? kT0 + 5.0 : kT0 + 120.0;
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double a[3], b[3];
            ASSERT_EQ(ephemeris.positionAt(item, t, a), 0);
            ASSERT_EQ(single.positionAt(item, t, b), 0);
            EXPECT_EQ(a[2], b[2]);
        }
    }
}

TEST(Ephemeris, CacheHoldsWholeSlotsUpTo256AndFailedAllocationsLoseNothing) {
    const TestFile file;
    Ephemeris ephemeris;
    EXPECT_EQ(ephemeris.setCacheSize(3 * kSlot + 100), 3 * kSlot);  // kept for the open
    ASSERT_EQ(ephemeris.open(file.path.c_str(), true), 0);
    EXPECT_EQ(ephemeris.cacheSize(), 3 * kSlot);
    EXPECT_EQ(ephemeris.setCacheSize(2 * 256 * kSlot), 256 * kSlot);
    CaptureStderr();
    EXPECT_EQ(ephemeris.setCacheSize(kSlot - 1), -1);
    EXPECT_EQ(GetCapturedStderr(),
              "Err (setCacheSize) : the cache must hold one record at least [8151 bytes].\n");
    ASSERT_EQ(ephemeris.open(file.path.c_str(), true), 0);  // reopening keeps the slot count
    EXPECT_EQ(ephemeris.cacheSize(), 256 * kSlot);

    static int allocationsLeft;
    ephemeris.setAllocator(
        [](std::size_t n) { return allocationsLeft-- > 0 ? std::malloc(n) : nullptr; }, std::free);
    allocationsLeft = 0;
    CaptureStderr();
    EXPECT_EQ(ephemeris.setCacheSize(10 * kSlot), -1);
    EXPECT_EQ(GetCapturedStderr(), "Err: cannot allocate so many memory [81520 bytes].\n\n");
    double p[3];
    EXPECT_EQ(ephemeris.positionAt(kSun, kT0 + 70.0, p), 0);
    EXPECT_EQ(openMessage(ephemeris, file.path),
              "Err: cannot allocate so many memory [32 bytes].\n\n");
    allocationsLeft = 1;  // the index, not the cache
    EXPECT_EQ(openMessage(ephemeris, file.path),
              "Err: cannot allocate so many memory [2086912 bytes].\n\n");
    EXPECT_EQ(ephemeris.dataSize(), -1);
}

TEST(Ephemeris, BadItemsAndGranulesAreRefusedWithTheirMessages) {
    const TestFile file;  // no granules for Jupiter nor for the nutations
    testsupport::writeFile(file.path, withInt(withInt(file.bytes, 2704 + 12 * kJupiter + 8, 0),
                                              2704 + 12 * 11 + 8, 0));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(file.path.c_str(), true), 0);
    double p[3] = {1.0, 2.0, 3.0}, v[3];
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(11, 2451545.0, p), -1);
    EXPECT_EQ(ephemeris.stateAt(-1, 2451545.0, p, v), -1);
    EXPECT_EQ(ephemeris.positionAt(kJupiter, 2451545.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(),
              "\nErr: This function does not compute nutations or librations.\n"
              "\n This function does not compute nutations or librations.\n"
              "\n Number of granules must be >= 1: check header data.\n");
    EXPECT_EQ(p[0], 1.0);
    testing::internal::CaptureStdout();
    EXPECT_EQ(ephemeris.nutationsAt(2451545.0, p), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\n Number of granules must be >= 1: check header data.\n");
    EXPECT_EQ(ephemeris.positionAt(kSaturn, 2451545.0, p), 0);
}

TEST(Ephemeris, DamagedFilesAreRefusedWithAMessageAndNeverReadOutsideARecord) {
    const TestFile file;
    const std::string& good = file.bytes;
    std::string span = good;
    std::fill(span.begin() + 2 * 8144 + 8, span.begin() + 2 * 8144 + 16, 0);  // end date 0
    const std::pair<std::string, std::string> cases[] = {
        {"", "too short for its header records"},
        {good.substr(0, 2 * 8144 + 8000), "no data records"},
        {withInt(good, 2704 + 12 * kMoon, 1000), "coefficient pointers"},
        {withInt(good, 2704 + 12 * kSun + 4, -3), "coefficient pointers"},
        {span, "spans no time"},
        {std::string(20000, 'a'), "for ephemeris: 405 != 1633771873."},
    };
    const std::string path = file.dir.file("damaged.405");
    for (const auto& [bytes, message] : cases) {
        testsupport::writeFile(path, bytes);
        Ephemeris ephemeris;
        int status = 0;
        const std::string printed = openMessage(ephemeris, path, &status);
        EXPECT_EQ(status, -1);
        EXPECT_NE(printed.find("[" + path + "]"), std::string::npos) << printed;
        EXPECT_NE(printed.find(message), std::string::npos) << printed;
    }

    // A last record cut short is left out; a file shrunk after opening gives a message.
    testsupport::writeFile(path, good.substr(0, good.size() - 100));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    EXPECT_EQ(ephemeris.numRecords(), 3);
    ASSERT_EQ(truncate(path.c_str(), 3 * 8144), 0);
    double p[3] = {9.0, 9.0, 9.0};
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(kMars, kT0 + 70.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(), "Err: reading from the ephemeris dataset.\n");
    EXPECT_EQ(p[0], 9.0);

    // Random damage to the header's numbers: whatever is accepted is evaluated in bounds
    // (the sanitizer build watches).
    unsigned state = 12345;
    auto next = [&state] { return (state = state * 1103515245u + 12345u) >> 8; };
    for (int round = 0; round < 300; ++round) {
        std::string bytes = good;
        for (int i = 1 + next() % 4; i > 0; --i)
            bytes[2656 + next() % (2864 - 2656)] = static_cast<char>(next() & 0xff);
        testsupport::writeFile(path, bytes);
        Ephemeris fuzzed;
        CaptureStderr();
        testing::internal::CaptureStdout();
        if (fuzzed.open(path.c_str(), true) == 0) {
            double a[3], v[3];
            for (int item = 0; item < kEphemerisBodyCount; ++item)
                fuzzed.stateAt(item, 2451545.0 + item * 10.0, a, v);
            fuzzed.nutationsAt(2451545.0, a);
            fuzzed.librationsAt(2451600.0, a);
        }
        testing::internal::GetCapturedStdout();
        GetCapturedStderr();
    }
}
