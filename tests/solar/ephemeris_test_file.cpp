#include "tests/solar/ephemeris_test_file.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/support/scratch_files.h"

namespace solartest {

namespace {

constexpr int kRecordBytes = 8144;
constexpr double kReferenceDate = kTestFirstJulianDate + 64.0;

struct Quadratic {
    double a, b, c;  // value, per day, per day squared at the reference date
};

Quadratic quadraticOf(int item, int component) {
    if (item >= 11) return {0.001 * item + 1e-4 * component, 1e-6 * (component + 1), 1e-9};
    return {1.0e7 * (item + 1) + 1.0e6 * component - 5.0e6, 5.0e4 * (component - 1) + 1.0e3 * item,
            0.5 * (component + 1) - 0.25 * item};
}

template <typename T>
void put(std::string& record, std::size_t offset, T value) {  // most significant byte first
    const auto* bytes = reinterpret_cast<const char*>(&value);
    for (std::size_t i = 0; i < sizeof value; ++i)
        record[offset + i] = bytes[sizeof value - 1 - i];
}

}  // namespace

double testItemValue(int item, int component, double julianDate, double recordOffset) {
    Quadratic q = quadraticOf(item, component);
    double u = julianDate - kReferenceDate;
    return q.a + recordOffset + q.b * u + q.c * u * u;
}

double testItemRate(int item, int component, double julianDate) {
    Quadratic q = quadraticOf(item, component);
    return q.b + 2.0 * q.c * (julianDate - kReferenceDate);
}

bool writeTestEphemeris(const std::string& path, const TestEphemerisSpec& spec) {
    auto componentsOf = [](int item) { return item == 11 ? 2 : 3; };
    int first[13], next = 3;  // values 1 and 2 are the record's dates
    for (int i = 0; i < 13; ++i) {
        first[i] = next;
        next += spec.granules[i] * componentsOf(i) * spec.coefficients[i];
    }
    if (next - 1 > kRecordBytes / 8) return false;

    std::string header(kRecordBytes, '\0'), constants(kRecordBytes, '\0');
    header.replace(0, 22, "skyrama test ephemeris");
    put(header, 2656, kTestFirstJulianDate);
    put(header, 2664, kTestFirstJulianDate + spec.records * kTestRecordDays);
    put(header, 2672, kTestRecordDays);
    put(header, 2680, std::int32_t{156});
    put(header, 2688, 149597870.691);
    put(header, 2696, 81.30056);
    for (int i = 0; i < 13; ++i) {
        std::size_t at = i < 12 ? 2704 + 12 * i : 2852;
        put(header, at, std::int32_t{first[i]});
        put(header, at + 4, std::int32_t{spec.coefficients[i]});
        put(header, at + 8, std::int32_t{spec.granules[i]});
    }
    put(header, 2848, std::int32_t{spec.ephemerisNumber});
    for (int i = 0; i < 400; ++i)
        put(constants, 8 * i, i + 0.5);

    std::string file = header + constants;
    for (int k = 0; k < spec.records; ++k) {
        std::string record(kRecordBytes, '\0');
        double start = kTestFirstJulianDate + k * kTestRecordDays;
        put(record, 0, start);
        put(record, 8, start + kTestRecordDays);
        for (int i = 0; i < 13; ++i) {
            int g = spec.granules[i], n = spec.coefficients[i];
            double h = kTestRecordDays / g / 2.0;  // half a granule, days
            for (int j = 0; j < g; ++j) {
                double m = start + (2 * j + 1) * h - kReferenceDate;
                for (int c = 0; c < componentsOf(i); ++c) {
                    // a + b u + c u^2 with u = m + h tau, in Chebyshev terms.
                    Quadratic q = quadraticOf(i, c);
                    int at = first[i] - 1 + (j * componentsOf(i) + c) * n;
                    double offset = i < 11 ? k * spec.stepKmPerRecord : 0.0;
                    put(record, 8 * at, q.a + q.b * m + q.c * m * m + q.c * h * h / 2.0 + offset);
                    put(record, 8 * (at + 1), q.b * h + 2.0 * q.c * m * h);
                    put(record, 8 * (at + 2), q.c * h * h / 2.0);
                }
            }
        }
        file += record;
    }
    return testsupport::writeFile(path, file);
}

std::string realEphemerisPath() {
    const char* top = getenv("TOPDIR");
    for (std::string root :
         {std::string(top != nullptr ? top : ""), std::string(SKYRAMA_SOURCE_DIR)}) {
        std::string path = root + "/data/ephemerisdata/binp_all.405";
        if (FILE* file = root.empty() ? nullptr : fopen(path.c_str(), "rb")) {
            fclose(file);
            return path;
        }
    }
    return "";
}

}  // namespace solartest
