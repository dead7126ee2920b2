// The ephemeris converter on a small synthetic table: the file it writes, read with the
// ephemeris reader, and the checks that refuse damaged or disordered tables.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "solar/ephemeris.h"
#include "tests/datatree/datatree_test_support.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/ephemeris_table.h"

namespace {

constexpr int kRows = 4;
constexpr double kVelocity = 1000.0;  // km/day along x for every item

// Pointers: two coefficients and one granule per item; nutations two components.
int firstCoefficient(int item) {
    return item < 12 ? 3 + 6 * item : 3 + 6 * 11 + 4;
}

std::string tableDat(double denum, bool withPointers = true, int badPointer = -1) {
    std::string b = "some table header bytes RecordDesc";
    putI32be(b, 2);
    const char* names[] = {"VS_TYPE", "MJD0", "dMJD", "DENUM", "AU", "EMRAT", "GM1"};
    putI32be(b, 7);
    for (const char* name : names) {  // name, type (a string, then doubles), comment
        putU32be(b, unsigned(std::strlen(name)));
        b += name;
        putI32be(b, name == names[0] ? 11 : 8);
        putU32be(b, 0);
    }
    putU32be(b, 1);
    putU32be(b, 3);
    b += "JPL";
    for (double v : {36880.0, 32.0, denum, 149597870.691, 81.30056, 4.9e-11})
        putF64be(b, v);
    if (withPointers) {  // a 3 x 13 array: first coefficients, coefficient counts, granules
        b += "....x....Description";
        putU32be(b, 10);
        b += "Array<Int>";
        for (int v : {3, 1, 39, 39})
            putI32be(b, v);
        for (int i = 0; i < 39; ++i)
            putI32be(b, i >= 13 ? (i < 26 ? 2 : 1) : i == badPointer ? 1015 : firstCoefficient(i));
    }
    return b;
}

// Rows where every item moves uniformly along x: continuous across the boundaries.
std::string tableF0i(int rows, int values = 1018, bool swapRows = false) {
    std::string body;
    for (int r0 = 0; r0 < rows; ++r0) {
        int r = swapRows && r0 < 2 ? 1 - r0 : r0;
        body += std::string(4, '\0');
        putU32le(body, 1);
        putU32le(body, 1);
        putU32le(body, unsigned(values));
        std::vector<double> x(1018, 0.0);
        for (int item = 0; item < 13; ++item) {
            int at = firstCoefficient(item) - 3;
            x[at] = kVelocity * (32.0 * r + 16.0);  // c0 of x at the record's middle
            x[at + 1] = kVelocity * 16.0;           // c1: half a record of motion
        }
        for (double v : x)
            putF64le(body, v);
    }
    std::string b;
    putU32le(b, 1);
    std::uint64_t length = 12 + body.size();
    putU32le(b, unsigned(length & 0xFFFFFFFFu));
    putU32le(b, unsigned(length >> 32));
    return b + body;
}

std::string writeTable(const ScratchDir& dir, const std::string& dat, const std::string& f0i) {
    std::string t = "usr/share/casacore/data/ephemerides/DE405/";
    dir.write(t + "table.dat", dat);
    dir.write(t + "table.f0i", f0i);
    return dir.path() + "/" + t;
}

}  // namespace

// The written file, read with the ephemeris reader: every item moves 1000 km a day along x.
TEST(EphemerisFile, WrittenFileReadsWithTheEphemerisReader) {
    const int rows = 4;
    ScratchDir source;
    std::vector<unsigned char> b =
        formatEphemerisFile(readEphemerisTable(writeTable(source, tableDat(405), tableF0i(rows))));
    ASSERT_EQ(b.size(), std::size_t(rows + 2) * 8144);
    EXPECT_EQ(std::string(b.begin(), b.begin() + 35), "JPL Planetary Ephemeris DE405/LE405");
    EXPECT_EQ(std::string(b.begin() + 252, b.begin() + 258), "DENUM ");
    ScratchDir dir;
    Ephemeris e;
    ASSERT_EQ(e.open(dir.write("binp_all.405", b).c_str()), 0);
    const EphemerisHeader& h = e.header();
    EXPECT_EQ((std::vector<double>{h.startJulianDate, h.endJulianDate, h.daysPerRecord,
                                   h.kilometresPerAu, h.earthMoonMassRatio, e.constants()[0]}),
              (std::vector<double>{2436912.5, 2436912.5 + 32.0 * rows, 32.0, 149597870.691,
                                   81.30056, 405.0}));
    // The nutations' pointer, and the librations' after their two components.
    EXPECT_EQ((std::vector<int>{h.ephemerisNumber, h.numConstants, e.numRecords(), h.pointers[0][0],
                                h.pointers[0][1], h.pointers[0][2], h.pointers[11][0],
                                h.librationPointer[0]}),
              (std::vector<int>{405, 4, rows, 3, 2, 1, 3 + 6 * 11, 3 + 6 * 11 + 4}));
    double p[3];  // metres, in the third record
    ASSERT_EQ(e.positionAt(3, 2436912.5 + 80.0, p), 0);
    EXPECT_NEAR(p[0], 1000.0 * 80.0 * 1000.0, 1e-3);
}

TEST(EphemerisTable, DamagedTablesAreRefused) {
    struct Case {
        const char* what;
        std::string dat, f0i;
        const char* message;
    };
    std::string good = tableF0i(kRows);
    const Case cases[] = {
        {"truncated rows", tableDat(405), good.substr(0, good.size() - 100),
         "table.f0i: truncated"},
        {"short row", tableDat(405), tableF0i(kRows, 1000), "is not a vector of 1018 values"},
        {"no pointers", tableDat(405, false), good, "no coefficient pointers"},
        {"pointer outside", tableDat(405, true, 4), good,
         "coefficient pointer 4 out of the record"},
        {"truncated keywords", tableDat(405).substr(0, 60), good, "table.dat: truncated"},
        {"no header", "nothing here", good, "no keyword record"},
    };
    for (const Case& c : cases) {
        ScratchDir dir;
        try {
            readEphemerisTable(writeTable(dir, c.dat, c.f0i));
            ADD_FAILURE() << c.what << " accepted";
        } catch (const DataError& e) {
            EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos)
                << c.what << ": " << e.what();
        }
    }
}

TEST(EphemerisConverter, RefusesOtherEphemeridesAndDisorderedRows) {
    std::string tool = DATATREE_EPHEMERIS_TOOL;
    struct Case {
        const char* what;
        std::string dat, f0i;
        const char* message;
    };
    const Case cases[] = {
        {"DE403", tableDat(403), tableF0i(kRows), "ephemeris number 403, expected 405"},
        {"rows out of order", tableDat(405), tableF0i(kRows, 1018, true), "positions jump by"},
        // Continuous rows whose dates do not put the Earth where the solar theory does.
        {"wrong dates", tableDat(405), tableF0i(kRows), "from where the solar theory puts it"},
    };
    for (const Case& c : cases) {
        ScratchDir dir, out;
        writeTable(dir, c.dat, c.f0i);
        RunResult r = runCommand({tool, dir.path(), out.path()});
        EXPECT_EQ(r.exitCode, 1) << c.what;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.what << ": " << r.err;
        EXPECT_FALSE(fileExists(out.path() + "/ephemerisdata/binp_all.405")) << c.what;
    }
}
