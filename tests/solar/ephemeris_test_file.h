#pragma once
// Small ephemeris files in the reader's binary layout, written by the tests themselves so
// that they do not depend on the data tree. Every item's components follow a known
// quadratic in time, encoded exactly as Chebyshev coefficients, so a test can compare the
// reader's answers with the formula.

#include <string>

namespace solartest {

constexpr double kTestFirstJulianDate = 2451536.5;  // start of record 0 (1999-12-24 00:00)
constexpr double kTestRecordDays = 32.0;

struct TestEphemerisSpec {
    int records = 4;
    int ephemerisNumber = 405;
    double firstJulianDate = kTestFirstJulianDate;
    double recordDays = kTestRecordDays;
    // Adds record k x stepKm to every coefficient c0, so neighbouring records disagree by a
    // known amount and a lookup can be seen to use one record or the other.
    double stepKmPerRecord = 0.0;
    // Granules of items 0 .. 11 and of the librations (the pointer table is built from them).
    int granules[13] = {4, 2, 2, 1, 1, 1, 1, 1, 1, 8, 2, 4, 4};
    int coefficients[13] = {14, 10, 13, 11, 8, 7, 6, 6, 6, 13, 11, 10, 10};
};

// Component c of item i (0 .. 11, 12 for the librations) at Julian date t, in the file's
// units (kilometres, or radians for nutations and librations), for record k's offset.
double testItemValue(int item, int component, double julianDate, double recordOffset = 0.0);
// Its rate of change per day.
double testItemRate(int item, int component, double julianDate);

// Writes the file; returns false when it cannot be written.
bool writeTestEphemeris(const std::string& path, const TestEphemerisSpec& spec = {});

// A fresh path in the test's temporary folder.
std::string testFilePath(const std::string& name);

// The data tree's real ephemeris, data/ephemerisdata/binp_all.405 under TOPDIR when it is set,
// else in the source tree; "" when neither has it.
std::string realEphemerisPath();

}  // namespace solartest
