#pragma once
// Small ephemeris files in the reader's binary layout whose items follow known quadratics in
// time (encoded exactly as Chebyshev coefficients), so tests can compare answers to formulas.

#include <string>

namespace solartest {

constexpr double kTestFirstJulianDate = 2451536.5;  // start of record 0
constexpr double kTestRecordDays = 32.0;

struct TestEphemerisSpec {
    int records = 4;
    int ephemerisNumber = 405;
    double stepKmPerRecord = 0.0;  // added k times to record k's positions
    int granules[13] = {4, 2, 2, 1, 1, 1, 1, 1, 1, 8, 2, 4, 4};
    int coefficients[13] = {14, 10, 13, 11, 8, 7, 6, 6, 6, 13, 11, 10, 10};
};

// Component c of item i (12: librations) at a Julian date, in the file's units, and its rate
// per day.
double testItemValue(int item, int component, double julianDate, double recordOffset = 0.0);
double testItemRate(int item, int component, double julianDate);

bool writeTestEphemeris(const std::string& path, const TestEphemerisSpec& spec = {});
// data/ephemerisdata/binp_all.405 under TOPDIR or the source tree; "" when absent.
std::string realEphemerisPath();

}  // namespace solartest
