#pragma once
// The planetary ephemeris of the data tree: the DE405 Chebyshev coefficients, read from the
// table that the casacore data package ships, written in the big-endian binary layout of
// skyrama's ephemeris reader.

#include <cstdint>
#include <string>
#include <vector>

constexpr int kDe405RecordValues = 1018;  // eight-byte values per record
constexpr int kDe405RecordBytes = kDe405RecordValues * 8;
constexpr int kEphemerisCoefficients = 1016;  // per data record, after the two dates
constexpr int kMaxEphemerisConstants = 400;
constexpr double kMjdToJd = 2400000.5;

struct EphemerisTable {
    int number = 0;  // DENUM
    // Row k covers [firstMjd + k recordDays, firstMjd + (k + 1) recordDays]. The table's MJD
    // column holds each row's start, MJD0 + (k + 1) dMJD, so firstMjd = MJD0 + dMJD.
    double firstMjd = 0.0, recordDays = 0.0;
    std::vector<std::string> constantNames;  // in source order, DENUM first
    std::vector<double> constantValues;
    double au = 0.0, emrat = 0.0;
    std::int32_t pointers[13][3] = {};      // 12 items and the librations: first, count, granules
    std::vector<std::vector<double>> rows;  // kEphemerisCoefficients coefficients each
};

// Reads table.dat (keywords: header constants, coefficient pointers) and table.f0i (rows) of
// the table directory. Checks the layout of both files and throws DataError naming the file.
EphemerisTable readEphemerisTable(const std::string& directory);

// Position (km, three components) of item 0..10 at Julian date jd, evaluated from the table
// directly (the record holding jd; jd on a boundary belongs to the earlier record).
void tablePosition(const EphemerisTable& table, int item, double jd, double out[3]);

// Largest jump (km) of any item's position across the boundaries between rows; the rows are
// in the right order and aligned with their dates when this is tiny (under a metre).
double largestBoundaryJump(const EphemerisTable& table);

// Angle in degrees between the heliocentric ecliptic longitude of the Earth-Moon barycentre
// in the table at J2000.0 and the one the low-precision solar theory (Meeus, chapter 25)
// gives. Row dates off by a whole record put this near 30 degrees; correct ones under 0.02.
double solarTheoryDeviation(const EphemerisTable& table);

// The binary file: header record, constants record, one data record per row.
std::vector<unsigned char> formatEphemerisFile(const EphemerisTable& table);
