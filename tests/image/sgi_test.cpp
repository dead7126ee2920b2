// SGI images: run-length and verbatim twins, channel interleaving, damaged files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>

#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

// A picture stored channel after channel, rows bottom first: planes[(z * ysize + y) * xsize + x].
struct Planes {
    int xsize, ysize, zsize;
    Bytes data;
};

// Runs of equal bytes on the left half, changing bytes on the right.
Planes testPlanes(int xsize, int ysize, int zsize) {
    Planes p{xsize, ysize, zsize, {}};
    for (int z = 0; z < zsize; ++z)
        for (int y = 0; y < ysize; ++y)
            for (int x = 0; x < xsize; ++x)
                p.data.push_back(
                    static_cast<unsigned char>(x < xsize / 2 ? 40 * z + y : x * 3 + z));
    return p;
}

void put(Bytes& b, std::size_t at, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i)
        b[at + i] = static_cast<unsigned char>(value >> (8 * (size - 1 - i)));
}

Bytes header(const Planes& p, bool runLength) {
    Bytes b(512, 0);  // magic, storage, dimension, sizes
    const int fields[] = {474, runLength ? 0x0101 : 0x0001, 3, p.xsize, p.ysize, p.zsize};
    for (int i = 0; i < 6; ++i)
        put(b, 2 * i, fields[i], 2);
    return b;
}

Bytes verbatim(const Planes& p) {
    Bytes b = header(p, false);
    b.insert(b.end(), p.data.begin(), p.data.end());
    return b;
}

// Each row of testPlanes as repeat runs over its constant left half, then literal stretches.
Bytes runLengthEncoded(const Planes& p, const Bytes* rowOverride = nullptr, std::size_t row = 0) {
    Bytes b = header(p, true);
    const std::size_t rows = std::size_t(p.ysize) * p.zsize;
    b.resize(512 + rows * 8);
    for (std::size_t r = 0; r < rows; ++r) {
        const unsigned char* in = p.data.data() + r * p.xsize;
        Bytes out;
        for (int i = 0, half = p.xsize / 2, n; i < p.xsize; i += n) {
            n = std::min(127, (i < half ? half : p.xsize) - i);
            out.push_back(static_cast<unsigned char>(i < half ? n : 0x80 | n));
            out.insert(out.end(), in + i, in + (i < half ? i + 1 : i + n));
        }
        out.push_back(0);
        if (rowOverride != nullptr && r == row) out = *rowOverride;
        put(b, 512 + r * 4, static_cast<std::uint32_t>(b.size()), 4);
        put(b, 512 + rows * 4 + r * 4, static_cast<std::uint32_t>(out.size()), 4);
        b.insert(b.end(), out.begin(), out.end());
    }
    return b;
}

Image readSgi(const ScratchDir& dir, const Bytes& file) {
    return readImage(read_sgi, dir.write("t.sgi", file));
}

}  // namespace

TEST(Sgi, RunLengthEncodedImagesEqualTheirVerbatimTwins) {
    ScratchDir dir;
    for (int zsize = 1; zsize <= 4; ++zsize) {
        const Planes p = testPlanes(300, 7, zsize);
        const Image plain = readSgi(dir, verbatim(p));
        EXPECT_EQ(std::make_tuple(plain.width, plain.height, plain.components),
                  std::make_tuple(300, 7, zsize));
        EXPECT_EQ(readSgi(dir, runLengthEncoded(p)).data, plain.data) << zsize;
        // Pixel (x, y) holds channel 0, 1, ... in turn; rows in stored order.
        ASSERT_EQ(plain.data.size(), std::size_t(300 * 7 * zsize));
        for (int z = 0; z < zsize; ++z)
            EXPECT_EQ(plain.data[(5 * 300 + 200) * zsize + z], p.data[(z * 7 + 5) * 300 + 200])
                << zsize;
    }
}

TEST(Sgi, DamagedFilesGiveNoImage) {
    ScratchDir dir;
    const Planes p = testPlanes(16, 4, 3);
    const Bytes good = runLengthEncoded(p);
    auto changed = [](Bytes b, std::size_t at, std::uint32_t value, int size) {
        put(b, at, value, size);
        return b;
    };
    const std::size_t lengths = 512 + 12 * 4;  // the row length table
    const Bytes runPastRow = {0x10, 7, 0x01, 7, 0}, literalPastData = {0x85, 7, 0};
    Bytes truncated = verbatim(p);
    truncated.pop_back();
    const Bytes cases[] = {
        {},
        Bytes(good.begin(), good.begin() + 12),
        changed(verbatim(p), 8, 0, 2),                            // no rows
        changed(verbatim(p), 10, 0, 2),                           // no channels
        changed(changed(verbatim(p), 6, 65535, 2), 8, 65535, 2),  // far more than the file holds
        changed(good, 8, 65535, 2),                               // tables beyond the file
        truncated,
        changed(good, 512 + 4 * 5, static_cast<std::uint32_t>(good.size()) - 2, 4),  // row past end
        changed(good, lengths, 16 * 256 + 1, 4),  // row longer than the decoder's buffer
        runLengthEncoded(p, &runPastRow, 2),
        runLengthEncoded(p, &literalPastData, 2),
    };
    for (const Bytes& bytes : cases) {
        Image r;
        EXPECT_EQ(stderrOf([&] { r = readSgi(dir, bytes); }), "");
        EXPECT_TRUE(r.data.empty() && r.width == -1) << &bytes - cases;
    }
    // Rows may share encoded bytes, as some writers do for equal rows.
    Bytes shared = runLengthEncoded(Planes{4, 3, 1, Bytes(12, 9)});
    for (int r = 1; r < 3; ++r)
        std::copy(shared.begin() + 512, shared.begin() + 516, shared.begin() + 512 + 4 * r);
    EXPECT_EQ(readSgi(dir, shared).data, Bytes(12, 9));
}
