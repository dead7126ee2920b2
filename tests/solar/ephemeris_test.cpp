// The ephemeris reader on files the tests write themselves: header fields, positions,
// velocities and angles against the formulas the files encode, the record boundary rule,
// cache sizes, and every failure message.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "image/data_file.h"
#include "solar/ephemeris.h"
#include "tests/solar/ephemeris_test_file.h"

using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;
using namespace solartest;

namespace {

constexpr double kKm = 1000.0;  // metres

class EphemerisFile : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        smoothPath = testFilePath("smooth.405");
        ASSERT_TRUE(writeTestEphemeris(smoothPath));
        steppedPath = testFilePath("stepped.405");
        TestEphemerisSpec stepped;
        stepped.stepKmPerRecord = 1000.0;
        ASSERT_TRUE(writeTestEphemeris(steppedPath, stepped));
    }
    static void TearDownTestSuite() {
        std::remove(smoothPath.c_str());
        std::remove(steppedPath.c_str());
    }
    static std::string smoothPath, steppedPath;
};
std::string EphemerisFile::smoothPath, EphemerisFile::steppedPath;

// Writes bytes to a fresh file and returns its path.
std::string writeBytes(const std::string& name, const std::vector<unsigned char>& bytes) {
    std::string path = testFilePath(name);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    return path;
}

std::vector<unsigned char> readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void putBigEndianInt(std::vector<unsigned char>& bytes, std::size_t offset, int value) {
    for (int i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

// Opens path aloud and returns what the reader printed on standard error.
std::string openMessage(Ephemeris& ephemeris, const std::string& path, int* status = nullptr) {
    CaptureStderr();
    int result = ephemeris.open(path.c_str(), false);
    if (status != nullptr) *status = result;
    return GetCapturedStderr();
}

}  // namespace

TEST(EphemerisUnopened, ReportsNoDataAndRefusesEveryLookup) {
    Ephemeris ephemeris;
    EXPECT_EQ(ephemeris.dataSize(), -1);
    EXPECT_EQ(ephemeris.cacheSize(), 0);
    EXPECT_FALSE(ephemeris.isInitialized());

    double out[3] = {7.0, 7.0, 7.0};
    const std::string message = "\nErr: Ephemeris Data not initialized yet.\n";
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(kMars, 2451545.0, out), -1);
    EXPECT_EQ(GetCapturedStderr(), message);
    CaptureStderr();
    double velocity[3];
    EXPECT_EQ(ephemeris.stateAt(kMars, 2451545.0, out, velocity), -1);
    EXPECT_EQ(ephemeris.nutationsAt(2451545.0, out), -1);
    EXPECT_EQ(ephemeris.librationsAt(GmtTime{0}, out), -1);
    EXPECT_EQ(GetCapturedStderr(), message + message + message);
    EXPECT_EQ(out[0], 7.0);
}

TEST(EphemerisOpen, MissingFileIsReportedUnlessQuiet) {
    Ephemeris ephemeris;
    std::string path = testFilePath("does-not-exist.405");
    int status = 0;
    EXPECT_EQ(openMessage(ephemeris, path, &status),
              "Err: Unable to open ephemeris file: [" + path + "].\n");
    EXPECT_EQ(status, -1);

    CaptureStderr();
    EXPECT_EQ(ephemeris.open(path.c_str(), true), -1);
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_EQ(ephemeris.dataSize(), -1);
}

TEST(EphemerisOpen, LongNamesAreCutTo255Characters) {
    Ephemeris ephemeris;
    std::string path = "/nonexistent/" + std::string(300, 'x');
    std::string message = openMessage(ephemeris, path);
    EXPECT_EQ(message, "Err: Unable to open ephemeris file: [" + path.substr(0, 255) + "].\n");
}

TEST(EphemerisOpen, Ephemeris403IsRefused) {
    TestEphemerisSpec spec;
    spec.ephemerisNumber = 403;
    std::string path = testFilePath("de403.405");
    ASSERT_TRUE(writeTestEphemeris(path, spec));
    Ephemeris ephemeris;
    int status = 0;
    EXPECT_EQ(openMessage(ephemeris, path, &status),
              "\nErr: Opened wrong file: [" + path + "] for ephemeris: 405 != 403.");
    EXPECT_EQ(status, -1);
    EXPECT_FALSE(ephemeris.isInitialized());
    EXPECT_EQ(ephemeris.dataSize(), -1);

    CaptureStderr();
    EXPECT_EQ(ephemeris.open(path.c_str(), true), -1);
    EXPECT_EQ(GetCapturedStderr(), "");
    std::remove(path.c_str());
}

TEST_F(EphemerisFile, HeaderFieldsAndSizes) {
    Ephemeris ephemeris;
    CaptureStderr();
    ASSERT_EQ(ephemeris.open(smoothPath.c_str(), false), 0);
    EXPECT_EQ(GetCapturedStderr(), "");
    const EphemerisHeader& h = ephemeris.header();
    EXPECT_EQ(h.ephemerisNumber, 405);
    EXPECT_EQ(h.startJulianDate, kTestFirstJulianDate);
    EXPECT_EQ(h.endJulianDate, kTestFirstJulianDate + 4 * kTestRecordDays);
    EXPECT_EQ(h.daysPerRecord, 32.0);
    EXPECT_EQ(h.numConstants, 156);
    EXPECT_EQ(h.kilometresPerAu, 149597870.691);
    EXPECT_EQ(h.earthMoonMassRatio, 81.30056);
    EXPECT_EQ(h.pointers[0][0], 3);
    EXPECT_EQ(h.pointers[0][1], 14);
    EXPECT_EQ(h.pointers[0][2], 4);
    EXPECT_EQ(h.pointers[11][2], 4);
    EXPECT_EQ(h.librationPointer[1], 10);
    EXPECT_EQ(ephemeris.constants()[0], 0.5);
    EXPECT_EQ(ephemeris.constants()[399], 399.5);

    EXPECT_EQ(ephemeris.numRecords(), 4);
    EXPECT_EQ(ephemeris.dataSize(), 4 * 8152);
    EXPECT_EQ(ephemeris.cacheSize(), 256 * 8152);
    EXPECT_EQ(ephemeris.firstRecordStart(), kTestFirstJulianDate);
    EXPECT_EQ(ephemeris.recordSpan(), 32.0);
}

TEST_F(EphemerisFile, PositionsVelocitiesAndAnglesFollowTheCoefficients) {
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(smoothPath.c_str(), true), 0);
    // Times inside records, on granule edges, and outside the file (the first and last
    // records' polynomials carry on beyond them).
    const double times[] = {kTestFirstJulianDate + 0.3,   kTestFirstJulianDate + 8.0,
                            kTestFirstJulianDate + 16.0,  2451545.0,
                            kTestFirstJulianDate + 127.9, kTestFirstJulianDate - 3.0,
                            kTestFirstJulianDate + 130.0};
    for (double t : times) {
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double p[3], q[3], v[3];
            ASSERT_EQ(ephemeris.positionAt(item, t, p), 0);
            ASSERT_EQ(ephemeris.stateAt(item, t, q, v), 0);
            for (int c = 0; c < 3; ++c) {
                double expected = testItemValue(item, c, t) * kKm;
                EXPECT_NEAR(p[c], expected, 1e-3) << "item " << item << " t " << t;
                EXPECT_EQ(q[c], p[c]);
                EXPECT_NEAR(v[c], testItemRate(item, c, t) * kKm / 86400.0, 1e-6)
                    << "item " << item << " t " << t;
            }
        }
        double nutations[2], librations[3];
        ASSERT_EQ(ephemeris.nutationsAt(t, nutations), 0);
        ASSERT_EQ(ephemeris.librationsAt(t, librations), 0);
        for (int c = 0; c < 2; ++c)
            EXPECT_NEAR(nutations[c], testItemValue(11, c, t), 1e-12);
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(librations[c], testItemValue(12, c, t), 1e-12);
    }
}

TEST_F(EphemerisFile, CalendarAndGmtFormsMatchTheJulianDateForm) {
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(smoothPath.c_str(), true), 0);
    double byJd[3], byCalendar[3], byGmt[3];
    ASSERT_EQ(ephemeris.positionAt(kVenus, 2451545.0, byJd), 0);
    ASSERT_EQ(ephemeris.positionAt(kVenus, CalendarDate{2000, 1, 1, 12, 0, 0.0}, byCalendar), 0);
    ASSERT_EQ(ephemeris.positionAt(kVenus, GmtTime{946728000}, byGmt), 0);
    for (int c = 0; c < 3; ++c) {
        EXPECT_EQ(byCalendar[c], byJd[c]);
        EXPECT_EQ(byGmt[c], byJd[c]);
    }
    double v1[3], v2[3], p[3];
    ASSERT_EQ(ephemeris.stateAt(kSun, GmtTime{946728000}, p, v1), 0);
    ASSERT_EQ(ephemeris.stateAt(kSun, CalendarDate{2000, 1, 1, 12, 0, 0.0}, p, v2), 0);
    EXPECT_EQ(v1[2], v2[2]);
    double n1[2], n2[2];
    ASSERT_EQ(ephemeris.nutationsAt(GmtTime{946728000}, n1), 0);
    ASSERT_EQ(ephemeris.nutationsAt(CalendarDate{2000, 1, 1, 12, 0, 0.0}, n2), 0);
    EXPECT_EQ(n1[1], n2[1]);
    double l1[3], l2[3];
    ASSERT_EQ(ephemeris.librationsAt(GmtTime{946728000}, l1), 0);
    ASSERT_EQ(ephemeris.librationsAt(CalendarDate{2000, 1, 1, 12, 0, 0.0}, l2), 0);
    EXPECT_EQ(l1[0], l2[0]);

    // A GMT time before 1970 is refused with a message and read at Julian date 0, which
    // lies before the file and so falls to its first record.
    CaptureStderr();
    ASSERT_EQ(ephemeris.positionAt(kVenus, GmtTime{-1}, byGmt), 0);
    EXPECT_EQ(GetCapturedStderr(), "Err: gmtTime should not be negative!\n\n");
    EXPECT_NEAR(byGmt[0], testItemValue(kVenus, 0, 0.0) * kKm, 1.0);
}

TEST_F(EphemerisFile, TimeOnARecordBoundaryBelongsToTheEarlierRecord) {
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(steppedPath.c_str(), true), 0);
    for (int k = 0; k < 3; ++k) {
        double boundary = kTestFirstJulianDate + (k + 1) * kTestRecordDays;
        EXPECT_EQ(ephemeris.recordNumberFor(boundary), k);
        EXPECT_EQ(ephemeris.recordNumberFor(boundary + 1e-6), k + 1);
        for (int item : {kMercury, kMoon, kPluto}) {  // 4, 8 and 1 granules
            double at[3], after[3];
            ASSERT_EQ(ephemeris.positionAt(item, boundary, at), 0);
            ASSERT_EQ(ephemeris.positionAt(item, boundary + 1.0 / 1024, after), 0);
            // The records differ by 1000 km: the boundary reads record k, just after k + 1.
            EXPECT_NEAR(at[1], testItemValue(item, 1, boundary, k * 1000.0) * kKm, 1e-3);
            EXPECT_NEAR(after[1],
                        testItemValue(item, 1, boundary + 1.0 / 1024, (k + 1) * 1000.0) * kKm,
                        1e-3);
        }
    }
    // Outside the file and for a time that is not a number: the first or last record.
    EXPECT_EQ(ephemeris.recordNumberFor(kTestFirstJulianDate - 1000.0), 0);
    EXPECT_EQ(ephemeris.recordNumberFor(1e300), 3);
    EXPECT_EQ(ephemeris.recordNumberFor(NAN), 0);
    double p[3];
    EXPECT_EQ(ephemeris.positionAt(kMars, NAN, p), 0);
    EXPECT_EQ(ephemeris.positionAt(kMars, -1e300, p), 0);
}

TEST_F(EphemerisFile, OneSlotCacheGivesTheSameAnswersAsAFullOne) {
    Ephemeris full, single;
    ASSERT_EQ(full.open(steppedPath.c_str(), true), 0);
    ASSERT_EQ(single.open(steppedPath.c_str(), true), 0);
    EXPECT_EQ(single.setCacheSize(8152), 8152);
    EXPECT_EQ(single.cacheSize(), 8152);
    for (int round = 0; round < 6; ++round) {
        // Alternate between the first and last records, so every lookup reloads the slot.
        double t = round % 2 == 0 ? kTestFirstJulianDate + 5.0 : kTestFirstJulianDate + 120.0;
        for (int item = 0; item < kEphemerisBodyCount; ++item) {
            double a[3], b[3];
            ASSERT_EQ(full.positionAt(item, t, a), 0);
            ASSERT_EQ(single.positionAt(item, t, b), 0);
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(a[c], b[c]);
        }
    }
}

TEST_F(EphemerisFile, CacheSizeIsSetInWholeSlotsUpTo256) {
    Ephemeris ephemeris;
    // Before opening, the size is kept for the open.
    EXPECT_EQ(ephemeris.setCacheSize(3 * 8152 + 100), 3 * 8152);
    ASSERT_EQ(ephemeris.open(smoothPath.c_str(), true), 0);
    EXPECT_EQ(ephemeris.cacheSize(), 3 * 8152);
    EXPECT_EQ(ephemeris.setCacheSize(2 * 256 * 8152), 256 * 8152);

    CaptureStderr();
    EXPECT_EQ(ephemeris.setCacheSize(8151), -1);
    EXPECT_EQ(ephemeris.setCacheSize(-5), -1);
    EXPECT_EQ(GetCapturedStderr(),
              "Err (setCacheSize) : the cache must hold one record at least [8151 bytes].\n"
              "Err (setCacheSize) : the cache must hold one record at least [-5 bytes].\n");
    EXPECT_EQ(ephemeris.cacheSize(), 256 * 8152);

    // What the scene does at start-up with a small file: the whole file is cached.
    int dataSize = ephemeris.dataSize();
    int wanted = 2 * ephemeris.cacheSize() < dataSize ? 2 * ephemeris.cacheSize() : dataSize;
    EXPECT_EQ(ephemeris.setCacheSize(wanted), 4 * 8152);

    // Reopening keeps the slot count.
    ASSERT_EQ(ephemeris.open(steppedPath.c_str(), true), 0);
    EXPECT_EQ(ephemeris.cacheSize(), 4 * 8152);
    double p[3];
    EXPECT_EQ(ephemeris.positionAt(kSun, kTestFirstJulianDate + 100.0, p), 0);
}

TEST(EphemerisItems, OutOfRangeItemsAreRefusedWithTheirMessages) {
    std::string path = testFilePath("items.405");
    ASSERT_TRUE(writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    double p[3] = {1.0, 2.0, 3.0}, v[3] = {4.0, 5.0, 6.0};
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(11, 2451545.0, p), -1);
    EXPECT_EQ(ephemeris.positionAt(-1, 2451545.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(),
              "\nErr: This function does not compute nutations or librations.\n"
              "\nErr: This function does not compute nutations or librations.\n");
    CaptureStderr();
    EXPECT_EQ(ephemeris.stateAt(12, 2451545.0, p, v), -1);
    EXPECT_EQ(GetCapturedStderr(), "\n This function does not compute nutations or librations.\n");
    EXPECT_EQ(p[0], 1.0);
    EXPECT_EQ(v[2], 6.0);
    std::remove(path.c_str());
}

TEST(EphemerisItems, FewerThanOneGranuleIsReportedWhereTheItemIsUsed) {
    TestEphemerisSpec spec;
    std::string path = testFilePath("granules.405");
    ASSERT_TRUE(writeTestEphemeris(path, spec));
    std::vector<unsigned char> bytes = readBytes(path);
    putBigEndianInt(bytes, 2704 + 12 * kJupiter + 8, 0);  // Jupiter's granules
    putBigEndianInt(bytes, 2704 + 12 * 11 + 8, 0);        // the nutations' granules
    std::string broken = writeBytes("granules0.405", bytes);

    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(broken.c_str(), true), 0);
    const std::string message = "\n Number of granules must be >= 1: check header data.\n";
    double p[3];
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(kJupiter, 2451545.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(), message);
    CaptureStdout();
    CaptureStderr();
    EXPECT_EQ(ephemeris.nutationsAt(2451545.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(), "");
    EXPECT_EQ(GetCapturedStdout(), message);
    EXPECT_EQ(ephemeris.positionAt(kSaturn, 2451545.0, p), 0);  // other items still work
    std::remove(path.c_str());
    std::remove(broken.c_str());
}

TEST(EphemerisMemory, FailedAllocationsAreReportedWithTheirSize) {
    std::string path = testFilePath("memory.405");
    ASSERT_TRUE(writeTestEphemeris(path));
    static int allocationsLeft;
    auto failingAllocate = [](std::size_t bytes) -> void* {
        return allocationsLeft-- > 0 ? std::malloc(bytes) : nullptr;
    };

    Ephemeris ephemeris;
    ephemeris.setAllocator(failingAllocate, std::free);
    allocationsLeft = 0;  // the record index (4 pointers) fails
    EXPECT_EQ(openMessage(ephemeris, path), "Err: cannot allocate so many memory [32 bytes].\n\n");
    EXPECT_FALSE(ephemeris.isInitialized());
    allocationsLeft = 1;  // the 256-slot cache fails
    EXPECT_EQ(openMessage(ephemeris, path),
              "Err: cannot allocate so many memory [2086912 bytes].\n\n");
    EXPECT_EQ(ephemeris.dataSize(), -1);

    allocationsLeft = 2;
    int status = 0;
    EXPECT_EQ(openMessage(ephemeris, path, &status), "");
    ASSERT_EQ(status, 0);
    // A failed resize keeps the cache it had.
    CaptureStderr();
    EXPECT_EQ(ephemeris.setCacheSize(10 * 8152), -1);
    EXPECT_EQ(GetCapturedStderr(), "Err: cannot allocate so many memory [81520 bytes].\n\n");
    EXPECT_EQ(ephemeris.cacheSize(), 256 * 8152);
    double p[3];
    EXPECT_EQ(ephemeris.positionAt(kEarthMoonBarycentre, kTestFirstJulianDate + 70.0, p), 0);
    std::remove(path.c_str());
}

// Files a user could really have in place of the ephemeris: each is refused with a message
// and leaves the reader uninitialised.
TEST(EphemerisDamagedFiles, AreRefusedWithAMessage) {
    std::string goodPath = testFilePath("good.405");
    ASSERT_TRUE(writeTestEphemeris(goodPath));
    const std::vector<unsigned char> good = readBytes(goodPath);

    struct Case {
        const char* name;
        std::vector<unsigned char> bytes;
        std::string message;  // after the file name
    };
    std::vector<Case> cases;
    cases.push_back({"empty.405", {}, "] is too short for its header records.\n"});
    cases.push_back({"header-only.405",
                     std::vector<unsigned char>(good.begin(), good.begin() + 8144 + 100),
                     "] is too short for its header records.\n"});
    cases.push_back({"no-data.405",
                     std::vector<unsigned char>(good.begin(), good.begin() + 2 * 8144 + 8000),
                     "no data records"});
    std::vector<unsigned char> pointers = good;
    putBigEndianInt(pointers, 2704 + 12 * kMoon, 1000);  // Moon's coefficients past the end
    cases.push_back({"pointers.405", pointers, "coefficient pointers"});
    std::vector<unsigned char> negative = good;
    putBigEndianInt(negative, 2704 + 12 * kSun + 4, -3);
    cases.push_back({"negative.405", negative, "coefficient pointers"});
    std::vector<unsigned char> span = good;
    std::fill(span.begin() + 2 * 8144 + 8, span.begin() + 2 * 8144 + 16, 0);  // end date 0
    cases.push_back({"span.405", span, "spans no time"});
    std::vector<unsigned char> text(20000, 'a');
    cases.push_back({"text.405", text, "for ephemeris: 405 != 1633771873."});

    for (const Case& c : cases) {
        std::string path = writeBytes(c.name, c.bytes);
        Ephemeris ephemeris;
        int status = 0;
        std::string message = openMessage(ephemeris, path, &status);
        EXPECT_EQ(status, -1) << c.name;
        EXPECT_NE(message.find(path), std::string::npos) << c.name << ": " << message;
        EXPECT_NE(message.find(c.message), std::string::npos) << c.name << ": " << message;
        EXPECT_FALSE(ephemeris.isInitialized());
        CaptureStderr();
        EXPECT_EQ(ephemeris.open(path.c_str(), true), -1);
        EXPECT_EQ(GetCapturedStderr(), "") << c.name;
        std::remove(path.c_str());
    }

    // A directory in place of the file.
    Ephemeris ephemeris;
    int status = 0;
    openMessage(ephemeris, "/tmp", &status);
    EXPECT_EQ(status, -1);

    // A last record cut short is left out; the whole records before it are read.
    std::vector<unsigned char> cut(good.begin(), good.end() - 100);
    std::string cutPath = writeBytes("cut.405", cut);
    ASSERT_EQ(ephemeris.open(cutPath.c_str(), true), 0);
    EXPECT_EQ(ephemeris.numRecords(), 3);
    double p[3];
    EXPECT_EQ(ephemeris.positionAt(kMars, kTestFirstJulianDate + 127.0, p), 0);
    EXPECT_NEAR(p[0], testItemValue(kMars, 0, kTestFirstJulianDate + 127.0) * kKm, 1e-3);
    std::remove(cutPath.c_str());
    std::remove(goodPath.c_str());
}

TEST(EphemerisDamagedFiles, FileShrunkAfterOpeningGivesAMessageNotAPosition) {
    std::string path = testFilePath("shrinks.405");
    ASSERT_TRUE(writeTestEphemeris(path));
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), true), 0);
    ASSERT_EQ(truncate(path.c_str(), 3 * 8144), 0);  // only record 0 is left
    double p[3] = {9.0, 9.0, 9.0};
    CaptureStderr();
    EXPECT_EQ(ephemeris.positionAt(kMars, kTestFirstJulianDate + 100.0, p), -1);
    EXPECT_EQ(GetCapturedStderr(), "Err: reading from the ephemeris dataset.\n");
    EXPECT_EQ(p[0], 9.0);
    EXPECT_EQ(ephemeris.positionAt(kMars, kTestFirstJulianDate + 1.0, p), 0);  // cached
    std::remove(path.c_str());
}

// Random damage to the header's numbers: whatever the reader accepts it must evaluate
// without reading outside its records.
TEST(EphemerisDamagedFiles, RandomHeaderDamageNeverReadsOutsideARecord) {
    std::string goodPath = testFilePath("fuzz-good.405");
    ASSERT_TRUE(writeTestEphemeris(goodPath));
    const std::vector<unsigned char> good = readBytes(goodPath);
    std::string path = testFilePath("fuzz.405");
    unsigned state = 12345;
    auto next = [&state] { return (state = state * 1103515245u + 12345u) >> 8; };
    for (int round = 0; round < 300; ++round) {
        std::vector<unsigned char> bytes = good;
        int hits = 1 + next() % 4;
        for (int i = 0; i < hits; ++i)
            bytes[2656 + next() % (2864 - 2656)] = next() & 0xff;
        writeBytes("fuzz.405", bytes);
        Ephemeris ephemeris;
        CaptureStderr();
        CaptureStdout();
        if (ephemeris.open(path.c_str(), true) == 0) {
            double a[3], v[3];
            for (int item = 0; item < kEphemerisBodyCount; ++item) {
                ephemeris.positionAt(item, 2451545.0 + item * 10.0, a);
                ephemeris.stateAt(item, 2451545.0 - item * 10.0, a, v);
            }
            ephemeris.nutationsAt(2451545.0, a);
            ephemeris.librationsAt(2451600.0, a);
        }
        GetCapturedStdout();
        GetCapturedStderr();
    }
    std::remove(path.c_str());
    std::remove(goodPath.c_str());
}

TEST(EphemerisContainer, PackedFileReadsLikeThePlainOne) {
    std::string plainPath = testFilePath("plain.405");
    ASSERT_TRUE(writeTestEphemeris(plainPath));
    std::vector<unsigned char> plain = readBytes(plainPath);
    std::string packedPath = testFilePath("packed.405");
    FILE* out = fopen(packedPath.c_str(), "wb");
    ASSERT_NE(out, nullptr);
    ASSERT_EQ(WriteDeflateZip(out, plain.data(), plain.size()), 1);
    fclose(out);

    Ephemeris a, b;
    ASSERT_EQ(a.open(plainPath.c_str(), true), 0);
    ASSERT_EQ(b.open(packedPath.c_str(), true), 0);
    double pa[3], pb[3];
    ASSERT_EQ(a.positionAt(kNeptune, kTestFirstJulianDate + 90.0, pa), 0);
    ASSERT_EQ(b.positionAt(kNeptune, kTestFirstJulianDate + 90.0, pb), 0);
    EXPECT_EQ(pa[2], pb[2]);
    std::remove(plainPath.c_str());
    std::remove(packedPath.c_str());
}
