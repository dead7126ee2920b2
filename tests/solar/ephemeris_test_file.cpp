#include "tests/solar/ephemeris_test_file.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace solartest {

namespace {

constexpr int kRecordValues = 1018;
constexpr int kRecordBytes = 8144;
constexpr double kReferenceDate = kTestFirstJulianDate + 64.0;

int componentsOf(int item) {
    return item == 11 ? 2 : 3;
}

struct Quadratic {
    double a, b, c;  // value, per day, per day squared at the reference date
};

Quadratic quadraticOf(int item, int component) {
    if (item >= 11)  // nutations and librations, in radians
        return {0.001 * item + 1e-4 * component, 1e-6 * (component + 1), 1e-9};
    // Bodies 10^7 to 10^8 km out, moving some 7 x 10^4 km a day across their direction.
    return {1.0e7 * (item + 1) + 1.0e6 * component - 5.0e6, 5.0e4 * (component - 1) + 1.0e3 * item,
            0.5 * (component + 1) - 0.25 * item};
}

void putBigEndian(std::vector<unsigned char>& record, std::size_t offset, const void* value,
                  std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(value);
    for (std::size_t i = 0; i < size; ++i)
        record[offset + i] = bytes[size - 1 - i];
}

void putDouble(std::vector<unsigned char>& record, std::size_t offset, double value) {
    putBigEndian(record, offset, &value, sizeof value);
}

void putInt(std::vector<unsigned char>& record, std::size_t offset, std::int32_t value) {
    putBigEndian(record, offset, &value, sizeof value);
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
    // Pointer table: items one after another from value 3 (values 1 and 2 are the dates).
    int first[13];
    int next = 3;
    for (int i = 0; i < 13; ++i) {
        first[i] = next;
        next += spec.granules[i] * componentsOf(i == 12 ? 0 : i) * spec.coefficients[i];
    }
    if (next - 1 > kRecordValues) return false;

    std::vector<unsigned char> header(kRecordBytes, 0);
    std::memcpy(header.data(), "skyrama test ephemeris", 22);
    putDouble(header, 2656, spec.firstJulianDate);
    putDouble(header, 2664, spec.firstJulianDate + spec.records * spec.recordDays);
    putDouble(header, 2672, spec.recordDays);
    putInt(header, 2680, 156);
    putDouble(header, 2688, 149597870.691);
    putDouble(header, 2696, 81.30056);
    for (int i = 0; i < 12; ++i) {
        putInt(header, 2704 + 12 * i, first[i]);
        putInt(header, 2708 + 12 * i, spec.coefficients[i]);
        putInt(header, 2712 + 12 * i, spec.granules[i]);
    }
    putInt(header, 2848, spec.ephemerisNumber);
    putInt(header, 2852, first[12]);
    putInt(header, 2856, spec.coefficients[12]);
    putInt(header, 2860, spec.granules[12]);

    std::vector<unsigned char> constants(kRecordBytes, 0);
    for (int i = 0; i < 400; ++i)
        putDouble(constants, 8 * i, i + 0.5);

    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    bool ok = fwrite(header.data(), 1, header.size(), file) == header.size() &&
              fwrite(constants.data(), 1, constants.size(), file) == constants.size();

    std::vector<unsigned char> record(kRecordBytes);
    for (int k = 0; k < spec.records && ok; ++k) {
        std::fill(record.begin(), record.end(), 0);
        double start = spec.firstJulianDate + k * spec.recordDays;
        putDouble(record, 0, start);
        putDouble(record, 8, start + spec.recordDays);
        for (int i = 0; i < 13; ++i) {
            int g = spec.granules[i];
            int n = spec.coefficients[i];
            int components = componentsOf(i == 12 ? 0 : i);
            double h = spec.recordDays / g / 2.0;  // half a granule, days
            for (int j = 0; j < g; ++j) {
                double middle = start + (2 * j + 1) * h - kReferenceDate;
                for (int c = 0; c < components; ++c) {
                    Quadratic q = quadraticOf(i, c);
                    // a + b u + c u^2 with u = middle + h tau, in Chebyshev terms
                    // (tau^2 = (T2 + 1) / 2).
                    double c0 = q.a + q.b * middle + q.c * middle * middle + q.c * h * h / 2.0;
                    double c1 = q.b * h + 2.0 * q.c * middle * h;
                    double c2 = q.c * h * h / 2.0;
                    if (i < 11) c0 += k * spec.stepKmPerRecord;
                    int at = first[i] - 1 + (j * components + c) * n;
                    putDouble(record, 8 * at, c0);
                    putDouble(record, 8 * (at + 1), c1);
                    putDouble(record, 8 * (at + 2), c2);
                }
            }
        }
        ok = fwrite(record.data(), 1, record.size(), file) == record.size();
    }
    return fclose(file) == 0 && ok;
}

std::string testFilePath(const std::string& name) {
    const char* tmp = getenv("TMPDIR");
    std::string dir = tmp != nullptr && *tmp != '\0' ? tmp : "/tmp";
    return dir + "/skyrama-solar-" + std::to_string(getpid()) + "-" + name;
}

std::string realEphemerisPath() {
    const char* top = getenv("TOPDIR");
    for (std::string root :
         {std::string(top != nullptr ? top : ""), std::string(SKYRAMA_SOURCE_DIR)}) {
        if (root.empty()) continue;
        std::string path = root + "/data/ephemerisdata/binp_all.405";
        if (FILE* file = fopen(path.c_str(), "rb")) {
            fclose(file);
            return path;
        }
    }
    return "";
}

}  // namespace solartest
