#include "tools/datatree/core/ephemeris_table.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/byte_order.h"
#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/text_input.h"

namespace {

// Field types of the table's keyword record.
constexpr std::int32_t kTypeDouble = 8;
constexpr std::int32_t kTypeString = 11;
constexpr std::size_t kF0iHeaderBytes = 12;     // version, file length
constexpr std::size_t kF0iRowHeaderBytes = 16;  // marker, reference count, ndim, length
constexpr int kPointerTriples = 13;

// Big-endian cursor over table.dat.
class BigEndianReader {
  public:
    BigEndianReader(const std::string& bytes, std::size_t at, const std::string& source)
        : b_(bytes), at_(at), source_(source) {}

    std::uint32_t u32() {
        need(4);
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i)
            v = v << 8 | static_cast<unsigned char>(b_[at_ + i]);
        at_ += 4;
        return v;
    }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
    double f64() {
        need(8);
        unsigned char raw[8];
        for (int i = 0; i < 8; ++i)
            raw[i] = static_cast<unsigned char>(b_[at_ + 7 - i]);
        at_ += 8;
        double v;
        std::memcpy(&v, raw, 8);
        return v;
    }
    std::string text() {
        std::uint32_t n = u32();
        if (n > 1u << 20) fail("implausible string length");
        need(n);
        std::string s = b_.substr(at_, n);
        at_ += n;
        return s;
    }
    [[noreturn]] void fail(const char* what) const {
        throw DataError(source_ + ": " + what + " at byte " + std::to_string(at_));
    }

  private:
    void need(std::size_t n) const {
        if (at_ + n > b_.size())
            throw DataError(source_ + ": truncated at byte " + std::to_string(at_));
    }
    const std::string& b_;
    std::size_t at_;
    const std::string& source_;
};

void readKeywords(const std::string& path, EphemerisTable* table) {
    std::string b = readWholeFile(path);
    std::size_t desc = b.find("RecordDesc");
    if (desc == std::string::npos)
        throw DataError(path + ": no keyword record (not a table description)");
    BigEndianReader in(b, desc + std::strlen("RecordDesc"), path);
    in.i32();  // version
    std::int32_t fields = in.i32();
    if (fields < 1 || fields > 10000) in.fail("implausible keyword count");
    std::vector<std::pair<std::string, std::int32_t>> layout;
    for (std::int32_t f = 0; f < fields; ++f) {
        std::string name = in.text();
        std::int32_t type = in.i32();
        in.text();  // comment
        if (type != kTypeDouble && type != kTypeString)
            in.fail("keyword of a type other than double or string");
        layout.emplace_back(name, type);
    }
    in.u32();
    bool constants = false;
    for (const auto& [name, type] : layout) {
        if (type == kTypeString) {
            in.text();
            continue;
        }
        double v = in.f64();
        if (name == "MJD0")
            table->firstMjd += v;
        else if (name == "dMJD") {
            table->recordDays = v;
            table->firstMjd += v;
        } else if (name == "DENUM")
            constants = true;
        if (!constants) continue;
        table->constantNames.push_back(name);
        table->constantValues.push_back(v);
        if (name == "DENUM") table->number = int(v);
        if (name == "AU") table->au = v;
        if (name == "EMRAT") table->emrat = v;
    }
    if (table->constantNames.empty()) throw DataError(path + ": no DENUM keyword");
    if (table->constantNames.size() > std::size_t(kMaxEphemerisConstants))
        throw DataError(path + ": more than 400 constants");
    if (table->recordDays <= 0 || table->au <= 0 || table->emrat <= 0)
        throw DataError(path + ": missing or bad dMJD, AU or EMRAT keyword");

    // The coefficient pointers: the "Description" keyword of column x, an Array<Int> of 39.
    std::size_t d = b.find("Description");
    std::size_t arr = d == std::string::npos ? d : b.find("Array<Int>", d);
    if (arr == std::string::npos) throw DataError(path + ": no coefficient pointers (Description)");
    BigEndianReader p(b, arr + std::strlen("Array<Int>"), path);
    p.i32();  // version
    if (p.i32() != 1 || p.i32() != 3 * kPointerTriples || p.i32() != 3 * kPointerTriples)
        throw DataError(path + ": the coefficient pointers are not 39 integers");
    std::int32_t values[3 * kPointerTriples];
    for (auto& v : values)
        v = p.i32();
    for (int i = 0; i < kPointerTriples; ++i) {
        for (int k = 0; k < 3; ++k)
            table->pointers[i][k] = values[k * kPointerTriples + i];
        int components = i == 11 ? 2 : 3;
        const std::int32_t* t = table->pointers[i];
        if (t[1] == 0) continue;  // item absent
        if (t[0] < 3 || t[1] < 1 || t[2] < 1 ||
            t[0] - 1 + std::int64_t(t[1]) * components * t[2] > kDe405RecordValues)
            throw DataError(path + ": coefficient pointer " + std::to_string(i) +
                            " out of the record");
    }
}

void readRows(const std::string& path, EphemerisTable* table) {
    std::string b = readWholeFile(path);
    if (b.size() < kF0iHeaderBytes) throw DataError(path + ": truncated header");
    std::uint64_t declared = 0;
    for (int i = 7; i >= 0; --i)
        declared = declared << 8 | static_cast<unsigned char>(b[4 + i]);
    if (declared != b.size()) {
        throw DataError(path + ": truncated: the header announces " + std::to_string(declared) +
                        " bytes, the file holds " + std::to_string(b.size()));
    }
    const std::size_t rowBytes = kF0iRowHeaderBytes + std::size_t(kDe405RecordValues) * 8;
    std::size_t body = b.size() - kF0iHeaderBytes;
    if (body == 0 || body % rowBytes != 0) {
        throw DataError(path + ": " + std::to_string(body) +
                        " bytes of rows is not a whole number of " + std::to_string(rowBytes) +
                        "-byte rows");
    }
    auto i32le = [&](std::size_t at) {
        std::uint32_t v = 0;
        for (int i = 3; i >= 0; --i)
            v = v << 8 | static_cast<unsigned char>(b[at + i]);
        return static_cast<std::int32_t>(v);
    };
    std::size_t rows = body / rowBytes;
    table->rows.reserve(rows);
    for (std::size_t r = 0; r < rows; ++r) {
        std::size_t at = kF0iHeaderBytes + r * rowBytes;
        if (i32le(at + 8) != 1 || i32le(at + 12) != kDe405RecordValues) {
            throw DataError(path + ": row " + std::to_string(r) +
                            " is not a vector of 1018 values");
        }
        std::vector<double> row(kEphemerisCoefficients);
        std::memcpy(row.data(), b.data() + at + kF0iRowHeaderBytes,
                    row.size() * 8);  // host order (LE)
        table->rows.push_back(std::move(row));
    }
}

double rowStartJd(const EphemerisTable& t, std::size_t row) {
    return t.firstMjd + kMjdToJd + double(row) * t.recordDays;
}

// Item position (km) from one row at jd (outside the row's span the polynomial extends).
void evaluateRow(const EphemerisTable& t, std::size_t row, int item, double jd, double out[3]) {
    const std::int32_t* p = t.pointers[item];
    int n = p[1], g = p[2];
    double span = t.recordDays / g;
    double start = rowStartJd(t, row);
    int j = int(std::floor((jd - start) / span));
    j = std::min(std::max(j, 0), g - 1);
    // A time on a granule boundary belongs to the earlier granule.
    if (j > 0 && jd == start + j * span) --j;
    double tau = 2.0 * (jd - (start + j * span)) / span - 1.0;
    const double* c = t.rows[row].data() + (p[0] - 3) + std::size_t(j) * 3 * n;
    for (int k = 0; k < 3; ++k) {
        double t0 = 1.0, t1 = tau, sum = c[k * n] + (n > 1 ? c[k * n + 1] * tau : 0.0);
        for (int m = 2; m < n; ++m) {
            double t2 = 2.0 * tau * t1 - t0;
            sum += c[k * n + m] * t2;
            t0 = t1;
            t1 = t2;
        }
        out[k] = sum;
    }
}

}  // namespace

EphemerisTable readEphemerisTable(const std::string& directory) {
    EphemerisTable table;
    readKeywords(directory + "/table.dat", &table);
    readRows(directory + "/table.f0i", &table);
    return table;
}

void tablePosition(const EphemerisTable& table, int item, double jd, double out[3]) {
    double end0 = rowStartJd(table, 1);
    double k = std::ceil((jd - end0) / table.recordDays);
    std::size_t row = std::size_t(std::min(std::max(k, 0.0), double(table.rows.size() - 1)));
    evaluateRow(table, row, item, jd, out);
}

double largestBoundaryJump(const EphemerisTable& table) {
    double largest = 0.0;
    for (std::size_t r = 0; r + 1 < table.rows.size(); ++r) {
        double jd = rowStartJd(table, r + 1);
        for (int item = 0; item <= 10; ++item) {
            double a[3], b[3];
            evaluateRow(table, r, item, jd, a);
            evaluateRow(table, r + 1, item, jd, b);
            double d = std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                                 (a[2] - b[2]) * (a[2] - b[2]));
            largest = std::max(largest, d);
        }
    }
    return largest;
}

double solarTheoryDeviation(const EphemerisTable& table) {
    const double jd = 2451545.0, T = 0.0;
    double emb[3], sun[3];
    tablePosition(table, 2, jd, emb);
    tablePosition(table, 10, jd, sun);
    double x = emb[0] - sun[0], y = emb[1] - sun[1], z = emb[2] - sun[2];
    const double deg = 3.14159265358979323846 / 180.0;
    const double obliquity = 23.4392911 * deg;  // J2000
    double lambda = std::atan2(y * std::cos(obliquity) + z * std::sin(obliquity), x) / deg;
    double L0 = 280.46646 + 36000.76983 * T, M = (357.52911 + 35999.05029 * T) * deg;
    double C = 1.914602 * std::sin(M) + 0.019993 * std::sin(2 * M) + 0.000289 * std::sin(3 * M);
    double earth = L0 + C + 180.0;
    double d = std::fmod(std::fabs(lambda - earth), 360.0);
    return d > 180.0 ? 360.0 - d : d;
}

namespace {

void putBigEndian(std::vector<unsigned char>& out, std::size_t at, const void* value,
                  std::size_t size) {
    unsigned char raw[8];
    std::memcpy(raw, value, size);
    reverseElementBytes(raw, size, 1);
    std::memcpy(out.data() + at, raw, size);
}
void putI32(std::vector<unsigned char>& out, std::size_t at, std::int32_t v) {
    putBigEndian(out, at, &v, 4);
}
void putF64(std::vector<unsigned char>& out, std::size_t at, double v) {
    putBigEndian(out, at, &v, 8);
}

// "1959 DEC 10 00:00:00" for a Julian date (Gregorian calendar).
std::string calendarText(double jd) {
    static const char* const kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                          "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    double z = std::floor(jd + 0.5), f = jd + 0.5 - z;
    double alpha = std::floor((z - 1867216.25) / 36524.25);
    double a = z + 1 + alpha - std::floor(alpha / 4);
    double b = a + 1524, c = std::floor((b - 122.1) / 365.25), d = std::floor(365.25 * c);
    double e = std::floor((b - d) / 30.6001);
    int day = int(b - d - std::floor(30.6001 * e));
    int month = int(e < 14 ? e - 1 : e - 13);
    int year = int(month > 2 ? c - 4716 : c - 4715);
    int seconds = int(std::lround(f * 86400.0));
    return format("%04d %s %02d %02d:%02d:%02d", year, kMonths[month - 1], day, seconds / 3600,
                  seconds / 60 % 60, seconds % 60);
}

}  // namespace

std::vector<unsigned char> formatEphemerisFile(const EphemerisTable& t) {
    const std::size_t R = kDe405RecordBytes;
    std::vector<unsigned char> out((2 + t.rows.size()) * R, 0);
    double first = rowStartJd(t, 0), last = rowStartJd(t, t.rows.size());

    // Header record.
    std::string titles[3] = {
        format("JPL Planetary Ephemeris DE%d/LE%d", t.number, t.number),
        format("Start Epoch: JED= %10.1f %s", first, calendarText(first).c_str()),
        format("Final Epoch: JED= %10.1f %s", last, calendarText(last).c_str())};
    for (int i = 0; i < 3; ++i) {
        std::string line = titles[i];
        line.resize(84, ' ');
        std::memcpy(out.data() + 84 * i, line.data(), 84);
    }
    for (int i = 0; i < kMaxEphemerisConstants; ++i) {
        std::string name = i < int(t.constantNames.size()) ? t.constantNames[i] : "";
        name.resize(6, ' ');
        std::memcpy(out.data() + 252 + 6 * i, name.data(), 6);
    }
    putF64(out, 2656, first);
    putF64(out, 2664, last);
    putF64(out, 2672, t.recordDays);
    putI32(out, 2680, std::int32_t(t.constantNames.size()));
    putF64(out, 2688, t.au);
    putF64(out, 2696, t.emrat);
    for (int i = 0; i < 12; ++i) {
        for (int k = 0; k < 3; ++k)
            putI32(out, 2704 + 4 * (3 * i + k), t.pointers[i][k]);
    }
    putI32(out, 2848, t.number);
    for (int k = 0; k < 3; ++k)
        putI32(out, 2852 + 4 * k, t.pointers[12][k]);

    // Constants record.
    for (std::size_t i = 0; i < t.constantValues.size(); ++i)
        putF64(out, R + 8 * i, t.constantValues[i]);

    // Data records: start and end date, then the coefficients.
    for (std::size_t r = 0; r < t.rows.size(); ++r) {
        std::size_t at = (2 + r) * R;
        putF64(out, at, rowStartJd(t, r));
        putF64(out, at + 8, rowStartJd(t, r + 1));
        for (int k = 0; k < kEphemerisCoefficients; ++k)
            putF64(out, at + 16 + 8 * k, t.rows[r][k]);
    }
    return out;
}
