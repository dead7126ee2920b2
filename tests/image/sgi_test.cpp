// SGI images: verbatim and run-length encoded twins, channel interleaving, damaged files.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

// A picture of zsize channels, stored channel after channel, rows bottom first.
struct Planes {
    int xsize, ysize, zsize;
    Bytes data;  // data[(z * ysize + y) * xsize + x]
    unsigned char at(int x, int y, int z) const {
        return data[(std::size_t(z) * ysize + y) * xsize + x];
    }
};

Planes testPlanes(int xsize, int ysize, int zsize) {
    Planes p{xsize, ysize, zsize, Bytes(std::size_t(xsize) * ysize * zsize)};
    for (int z = 0; z < zsize; ++z)
        for (int y = 0; y < ysize; ++y)
            for (int x = 0; x < xsize; ++x)
                // Runs of equal bytes and stretches of changing ones.
                p.data[(std::size_t(z) * ysize + y) * xsize + x] =
                    static_cast<unsigned char>(x < xsize / 2 ? 40 * z + y : x * 3 + z);
    return p;
}

void put16(Bytes& b, std::size_t at, int v) {
    b[at] = static_cast<unsigned char>(v >> 8);
    b[at + 1] = static_cast<unsigned char>(v);
}
void put32(Bytes& b, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        b[at + i] = static_cast<unsigned char>(v >> (24 - 8 * i));
}

Bytes header(const Planes& p, bool runLength) {
    Bytes b(512, 0);
    put16(b, 0, 474);
    b[2] = runLength ? 1 : 0;
    b[3] = 1;
    put16(b, 4, p.zsize > 1 ? 3 : 2);
    put16(b, 6, p.xsize);
    put16(b, 8, p.ysize);
    put16(b, 10, p.zsize);
    return b;
}

Bytes verbatim(const Planes& p) {
    Bytes b = header(p, false);
    b.insert(b.end(), p.data.begin(), p.data.end());
    return b;
}

Bytes encodeRow(const unsigned char* row, int n) {
    Bytes out;
    int i = 0;
    while (i < n) {
        int run = 1;
        while (i + run < n && run < 127 && row[i + run] == row[i])
            ++run;
        if (run >= 3) {
            out.push_back(static_cast<unsigned char>(run));
            out.push_back(row[i]);
            i += run;
            continue;
        }
        int literal = 0;
        while (i + literal < n && literal < 127 &&
               !(i + literal + 2 < n && row[i + literal] == row[i + literal + 1] &&
                 row[i + literal] == row[i + literal + 2]))
            ++literal;
        out.push_back(static_cast<unsigned char>(0x80 | literal));
        out.insert(out.end(), row + i, row + i + literal);
        i += literal;
    }
    out.push_back(0);
    return out;
}

Bytes runLengthEncoded(const Planes& p) {
    Bytes b = header(p, true);
    const std::size_t rows = std::size_t(p.ysize) * p.zsize;
    b.resize(512 + rows * 8);
    for (std::size_t r = 0; r < rows; ++r) {
        const Bytes encoded = encodeRow(p.data.data() + r * p.xsize, p.xsize);
        put32(b, 512 + r * 4, static_cast<std::uint32_t>(b.size()));
        put32(b, 512 + rows * 4 + r * 4, static_cast<std::uint32_t>(encoded.size()));
        b.insert(b.end(), encoded.begin(), encoded.end());
    }
    return b;
}

struct ReadSgi {
    Bytes data;
    int width = -1, height = -1, components = -1;
};
ReadSgi readSgiBytes(const ScratchDir& dir, const Bytes& file) {
    writeFile(dir.file("t.sgi"), file);
    ReadSgi r;
    r.data = read_sgi(dir.file("t.sgi").c_str(), &r.width, &r.height, &r.components);
    return r;
}

}  // namespace

TEST(Sgi, RunLengthEncodedImagesEqualTheirVerbatimTwins) {
    ScratchDir dir;
    for (int zsize = 1; zsize <= 4; ++zsize) {
        SCOPED_TRACE(zsize);
        const Planes p = testPlanes(300, 7, zsize);
        const ReadSgi plain = readSgiBytes(dir, verbatim(p));
        const ReadSgi packed = readSgiBytes(dir, runLengthEncoded(p));
        ASSERT_EQ(plain.data.size(), std::size_t(300 * 7 * zsize));
        EXPECT_EQ(plain.width, 300);
        EXPECT_EQ(plain.height, 7);
        EXPECT_EQ(plain.components, zsize);
        EXPECT_EQ(packed.data, plain.data);
        // Interleaved: pixel (x, y) holds channel 0, 1, ... in turn; rows in stored order.
        for (int z = 0; z < zsize; ++z) {
            EXPECT_EQ(plain.data[(std::size_t(5) * 300 + 200) * zsize + z], p.at(200, 5, z));
            EXPECT_EQ(plain.data[std::size_t(z)], p.at(0, 0, z));
        }
    }
}

TEST(Sgi, TwoChannelsReadAsLuminanceAlphaPairs) {
    ScratchDir dir;
    Planes p{2, 1, 2, Bytes{10, 20, 200, 100}};  // luminance 10, 20; alpha 200, 100
    EXPECT_EQ(readSgiBytes(dir, verbatim(p)).data, Bytes({10, 200, 20, 100}));
    EXPECT_EQ(readSgiBytes(dir, runLengthEncoded(p)).data, Bytes({10, 200, 20, 100}));
}

TEST(Sgi, RowsMayShareEncodedBytes) {
    ScratchDir dir;
    Planes p{4, 3, 1, Bytes(12, 9)};
    Bytes file = runLengthEncoded(p);
    // Point every row at the first row's bytes, as some writers do for equal rows.
    for (int r = 1; r < 3; ++r) {
        std::copy(file.begin() + 512, file.begin() + 516, file.begin() + 512 + 4 * r);
    }
    EXPECT_EQ(readSgiBytes(dir, file).data, Bytes(12, 9));
}

TEST(Sgi, DamagedFilesGiveNoImage) {
    ScratchDir dir;
    const Planes p = testPlanes(16, 4, 3);
    const Bytes good = runLengthEncoded(p);
    const std::size_t rows = 4 * 3;
    const std::size_t lengths = 512 + rows * 4;

    std::vector<std::pair<const char*, Bytes>> cases;
    cases.push_back({"empty", {}});
    cases.push_back({"header only", Bytes(good.begin(), good.begin() + 12)});
    Bytes zero = verbatim(p);
    put16(zero, 8, 0);
    cases.push_back({"zero height", zero});
    Bytes zeroChannels = verbatim(p);
    put16(zeroChannels, 10, 0);
    cases.push_back({"zero channels", zeroChannels});
    Bytes huge = verbatim(p);
    put16(huge, 6, 65535);
    put16(huge, 8, 65535);
    put16(huge, 10, 4);
    cases.push_back({"huge verbatim", huge});
    Bytes hugeRle = good;
    put16(hugeRle, 8, 65535);
    cases.push_back({"huge rle tables", hugeRle});
    Bytes truncated = verbatim(p);
    truncated.pop_back();
    cases.push_back({"truncated verbatim", truncated});
    Bytes pastEnd = good;
    put32(pastEnd, 512 + 4 * 5, static_cast<std::uint32_t>(good.size()) - 2);
    cases.push_back({"row past end", pastEnd});
    Bytes longRow = good;
    put32(longRow, lengths, 16 * 256 + 1);
    cases.push_back({"row longer than scratch", longRow});
    // A run that would write past the row's end.
    Bytes overrun = header(p, true);
    overrun.resize(512 + rows * 8);
    for (std::size_t r = 0; r < rows; ++r) {
        const Bytes row = r == 2 ? Bytes{0x10, 7, 0x01, 7, 0} : Bytes{0x10, 7, 0};
        put32(overrun, 512 + r * 4, static_cast<std::uint32_t>(overrun.size()));
        put32(overrun, lengths + r * 4, static_cast<std::uint32_t>(row.size()));
        overrun.insert(overrun.end(), row.begin(), row.end());
    }
    cases.push_back({"run past row end", overrun});
    Bytes literalPastData = overrun;
    literalPastData[literalPastData.size() - 3] = 0x85;  // copy 5 bytes, 2 left
    cases.push_back({"literal past data", literalPastData});

    for (const auto& [label, bytes] : cases) {
        SCOPED_TRACE(label);
        testing::internal::CaptureStderr();
        const ReadSgi r = readSgiBytes(dir, bytes);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(r.data.empty());
        EXPECT_EQ(r.width, -1);
    }
    int w, h, c;
    EXPECT_TRUE(read_sgi(dir.file("missing.sgi").c_str(), &w, &h, &c).empty());
}
