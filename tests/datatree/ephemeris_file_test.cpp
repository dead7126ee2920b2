// The ephemeris file written from the synthetic table of ephemeris_converter_test.cpp, read
// with the ephemeris reader: every item moves uniformly along x, 1000 km a day.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "solar/ephemeris.h"
#include "tests/datatree/datatree_test_support.h"

std::vector<unsigned char> syntheticEphemerisFile(int rows);

TEST(EphemerisFile, WrittenFileReadsWithTheEphemerisReader) {
    const int rows = 4;
    std::vector<unsigned char> b = syntheticEphemerisFile(rows);
    ASSERT_EQ(b.size(), std::size_t(rows + 2) * 8144);
    EXPECT_EQ(std::string(b.begin(), b.begin() + 35), "JPL Planetary Ephemeris DE405/LE405");
    EXPECT_EQ(std::string(b.begin() + 252, b.begin() + 258), "DENUM ");
    ScratchDir dir;
    Ephemeris e;
    ASSERT_EQ(e.open(dir.write("binp_all.405", b).c_str()), 0);
    const EphemerisHeader& h = e.header();
    EXPECT_EQ(h.ephemerisNumber, 405);
    EXPECT_DOUBLE_EQ(h.startJulianDate, 2436912.5);
    EXPECT_DOUBLE_EQ(h.endJulianDate, 2436912.5 + 32.0 * rows);
    EXPECT_DOUBLE_EQ(h.daysPerRecord, 32.0);
    EXPECT_EQ(h.numConstants, 4);
    EXPECT_DOUBLE_EQ(h.kilometresPerAu, 149597870.691);
    EXPECT_DOUBLE_EQ(h.earthMoonMassRatio, 81.30056);
    EXPECT_EQ(h.pointers[0][0], 3);  // two coefficients and one granule per item
    EXPECT_EQ(h.pointers[0][1], 2);
    EXPECT_EQ(h.pointers[0][2], 1);
    EXPECT_EQ(h.pointers[11][0], 3 + 6 * 11);          // the nutations
    EXPECT_EQ(h.librationPointer[0], 3 + 6 * 11 + 4);  // after their two components
    EXPECT_DOUBLE_EQ(e.constants()[0], 405.0);         // the constants record
    EXPECT_EQ(e.numRecords(), rows);
    double p[3];  // metres, in the third record
    ASSERT_EQ(e.positionAt(3, 2436912.5 + 80.0, p), 0);
    EXPECT_NEAR(p[0], 1000.0 * 80.0 * 1000.0, 1e-3);
}
