// The real ephemeris file: its header bytes, and the Earth-Moon barycentre where the reader
// finds it (the positions against published values are the solar tests' business); the default
// movie scripts, read with the movie loader.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>

#include "movie/movie_record.h"
#include "solar/ephemeris.h"
#include "tests/datatree/datatree_test_support.h"
#include "tests/datatree/tree_files.h"

TEST(EphemerisTree, HeaderAndTheEarthMoonBarycentreOfDe405) {
    if (!requireDataTree()) return;
    const std::string path = dataRoot() + "/ephemerisdata/binp_all.405";
    const std::string b = readFile(path);
    ASSERT_EQ(b.size(), 9324880u);
    auto bigEndian = [&](std::size_t at, int n) {
        std::uint64_t v = 0;
        for (int i = 0; i < n; ++i)
            v = v << 8 | static_cast<unsigned char>(b[at + i]);
        return v;
    };
    auto f64 = [&](std::size_t at) {
        const std::uint64_t raw = bigEndian(at, 8);
        double v;
        std::memcpy(&v, &raw, 8);
        return v;
    };
    EXPECT_EQ(bigEndian(2848, 4), 405u);
    EXPECT_EQ((std::vector<double>{f64(2688), f64(2696), f64(2656), f64(2672)}),
              (std::vector<double>{149597870.691, 81.30056, 2436912.5, 32.0}));

    Ephemeris ephemeris;
    ASSERT_EQ(ephemeris.open(path.c_str(), false), 0);
    double emb[3], sun[3];
    ASSERT_EQ(ephemeris.positionAt(kEarthMoonBarycentre, 2451545.0, emb), 0);
    ASSERT_EQ(ephemeris.positionAt(kSun, 2451545.0, sun), 0);
    const double d[3] = {emb[0] - sun[0], emb[1] - sun[1], emb[2] - sun[2]};
    EXPECT_NEAR(std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]) / 149597870691.0, 0.983310,
                1e-6);
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
        EXPECT_TRUE(w == s.width && h == s.height) << s.name;
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
