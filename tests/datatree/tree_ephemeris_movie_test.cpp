// The real ephemeris file, read with a small Chebyshev evaluator of its own and with the
// ephemeris reader; the default movie scripts, read with the movie loader.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "movie/movie_record.h"
#include "solar/ephemeris.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"

namespace {

constexpr std::size_t kRecord = 8144;
constexpr double kAu = 149597870.691;

class BigEndianFile {
  public:
    explicit BigEndianFile(const std::string& path) : b_(readFile(path)) {}
    std::size_t size() const { return b_.size(); }
    std::uint64_t bytes(std::size_t at, int n) const {
        std::uint64_t v = 0;
        for (int i = 0; i < n; ++i)
            v = v << 8 | static_cast<unsigned char>(b_[at + i]);
        return v;
    }
    int i32(std::size_t at) const { return int(std::uint32_t(bytes(at, 4))); }
    double f64(std::size_t at) const {
        std::uint64_t raw = bytes(at, 8);
        double v;
        std::memcpy(&v, &raw, 8);
        return v;
    }

    // Position (km) of item 0..10 at Julian date jd: the record by its own dates, the
    // granule, the Chebyshev series.
    void position(int item, double jd, double out[3]) const {
        for (std::size_t r = 0; r + 2 < size() / kRecord; ++r) {
            std::size_t at = (r + 2) * kRecord;
            double start = f64(at), end = f64(at + 8);
            if (jd < start || jd > end) continue;
            int first = i32(2704 + 12 * item), n = i32(2708 + 12 * item), g = i32(2712 + 12 * item);
            double span = (end - start) / g;
            int j = std::min(int((jd - start) / span), g - 1);
            double tau = 2.0 * (jd - start - j * span) / span - 1.0;
            for (int c = 0; c < 3; ++c) {
                std::size_t coefficient = at + 8 * std::size_t(first - 1 + (3 * j + c) * n);
                double t0 = 1.0, t1 = tau, sum = f64(coefficient) + f64(coefficient + 8) * tau;
                for (int k = 2; k < n; ++k) {
                    double t2 = 2 * tau * t1 - t0;
                    sum += f64(coefficient + 8 * k) * t2;
                    t0 = t1;
                    t1 = t2;
                }
                out[c] = sum;
            }
            return;
        }
        ADD_FAILURE() << "no record holds JD " << jd;
    }

  private:
    std::string b_;
};

double distance(const double a[3], const double b[3]) {
    return std::sqrt((a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                     (a[2] - b[2]) * (a[2] - b[2]));
}

}  // namespace

TEST(EphemerisTree, HeaderAndPositionsOfDe405) {
    if (!requireDataTree()) return;
    BigEndianFile file(dataRoot() + "/ephemerisdata/binp_all.405");
    ASSERT_EQ(file.size(), 9324880u);
    EXPECT_EQ(file.i32(2848), 405);
    EXPECT_NEAR(file.f64(2688), kAu, 1e-6);
    EXPECT_NEAR(file.f64(2696), 81.30056, 1e-9);
    EXPECT_DOUBLE_EQ(file.f64(2656), 2436912.5);
    EXPECT_DOUBLE_EQ(file.f64(2672), 32.0);

    const double jd = 2451545.0;
    double emb[3], sun[3], mars[3], moon[3];
    file.position(2, jd, emb);
    file.position(10, jd, sun);
    file.position(3, jd, mars);
    file.position(9, jd, moon);
    EXPECT_NEAR(distance(emb, sun) / kAu, 0.983310, 1e-6);
    EXPECT_NEAR((emb[0] - sun[0]) / kAu, -0.177158788, 1e-8);
    EXPECT_NEAR((mars[0] - sun[0]) / kAu, 1.390715922, 1e-8);
    const double zero[3] = {0, 0, 0};
    EXPECT_NEAR(distance(moon, zero), 402448.6, 0.5);  // the Moon's record is geocentric

    // The ephemeris reader agrees (metres).
    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open((dataRoot() + "/ephemerisdata/binp_all.405").c_str(), false), 0);
    double e[3];
    ASSERT_EQ(ephemeris.positionAt(2, jd, e), 0);
    EXPECT_NEAR(e[0] / 1000.0, emb[0], 1e-3);
}

TEST(MovieTree, DefaultScriptsLoad) {
    struct Script {
        const char* name;
        int frames, width, height;
    };
    for (const Script& s : {Script{"tour.scp", 591, 640, 640}, Script{"short.scp", 21, 320, 320}}) {
        MovieRecord record;
        std::string path = dataRoot() + "/movies/" + s.name;
        ASSERT_EQ(record.loadRecord(path.c_str(), 1), 1) << s.name;
        EXPECT_EQ(record.totalNumFrame(), s.frames) << s.name;
        int w = 0, h = 0;
        record.getResolution(w, h);
        EXPECT_EQ(w, s.width);
        EXPECT_EQ(h, s.height);
        // Every frame of the path is a usable camera.
        for (int f = 0; f < record.totalNumFrame(); ++f) {
            View v;
            ASSERT_EQ(record.evaluateFrame(f, v), 1) << s.name << " frame " << f;
            ASSERT_TRUE(std::isfinite(v.viewPos.w) && std::isfinite(v.viewDir.x) && v.fovy > 0)
                << s.name << " frame " << f;
            ASSERT_NEAR(length(v.viewDir), 1.0, 1e-6) << s.name << " frame " << f;
        }
    }
}
