// The "EZ" container: layout of written containers, reading through openDataFile, damage.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

#include <zlib.h>

#include "image/byte_order.h"
#include "image/data_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

std::uint32_t bigEndian32(const Bytes& b, std::size_t at) {
    return std::uint32_t(b[at]) << 24 | std::uint32_t(b[at + 1]) << 16 |
           std::uint32_t(b[at + 2]) << 8 | b[at + 3];
}
std::uint32_t littleEndian32(const Bytes& b, std::size_t at) {
    return std::uint32_t(b[at + 3]) << 24 | std::uint32_t(b[at + 2]) << 16 |
           std::uint32_t(b[at + 1]) << 8 | b[at];
}

void setBigEndian32(Bytes& b, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        b[at + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

Bytes pseudoRandomBytes(std::size_t n) {
    Bytes bytes(n);
    unsigned state = 2002;
    for (auto& b : bytes) {
        state = state * 214013u + 2531011u;
        b = static_cast<unsigned char>(state >> 16);
    }
    return bytes;
}

Bytes pack(const Bytes& plain, const std::string& name) {
    FILE* f = std::fopen(name.c_str(), "wb");
    EXPECT_NE(f, nullptr);
    EXPECT_EQ(WriteDeflateZip(f, plain.data(), plain.size()), 1);
    std::fclose(f);
    return readFile(name);
}

Bytes readThroughDataFile(const std::string& name, const char* mode = "rb") {
    FILE* f = openDataFile(name.c_str(), mode);
    EXPECT_NE(f, nullptr) << name;
    if (f == nullptr) return {};
    Bytes bytes = readAll(f);
    std::fclose(f);
    return bytes;
}

std::string damageReport(const std::string& name, const char* what) {
    return std::string("\n") + program_invocation_short_name + ": " + name +
           ": invalid compressed data--" + what + "\n";
}

}  // namespace

TEST(Container, RoundTripsKeepChunkCountsAndContiguousTables) {
    ScratchDir dir;
    const struct {
        std::size_t length;
        std::uint32_t chunks;
    } cases[] = {{0, 0}, {1, 1}, {32768, 1}, {65536, 2}, {65537, 3}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.length);
        const Bytes plain = pseudoRandomBytes(c.length);
        const std::string name = dir.file("chunks.ez");
        const Bytes packed = pack(plain, name);
        ASSERT_GE(packed.size(), 6u);
        EXPECT_EQ(packed[0], 'E');
        EXPECT_EQ(packed[1], 'Z');
        const std::uint32_t n = bigEndian32(packed, 2);
        EXPECT_EQ(n, c.chunks);
        ASSERT_EQ(packed.size() >= 6 + 8 * std::size_t(n), true);
        std::uint32_t expectedOffset = 6 + 8 * n;
        for (std::uint32_t i = 0; i < n; ++i) {
            const std::uint32_t offset = bigEndian32(packed, 6 + 4 * i);
            const std::uint32_t length = bigEndian32(packed, 6 + 4 * n + 4 * i);
            EXPECT_EQ(offset, expectedOffset) << "chunk " << i;
            expectedOffset = offset + length;
            // Trailer: the chunk's plain length, least-significant byte first.
            const std::size_t plainLength =
                i + 1 < n ? 32768 : c.length - std::size_t(n - 1) * 32768;
            ASSERT_LE(std::size_t(offset) + length, packed.size());
            EXPECT_EQ(littleEndian32(packed, offset + length - 4), plainLength);
        }
        EXPECT_EQ(expectedOffset, packed.size());
        EXPECT_EQ(readThroughDataFile(name), plain);

        FILE* f = std::fopen(name.c_str(), "rb");
        Bytes direct;
        EXPECT_EQ(ReadDeflateZip(f, direct, name.c_str()), 1);
        std::fclose(f);
        EXPECT_EQ(direct, plain);
    }
}

TEST(DataFile, PlainFilesComeBackUnchangedInTheCallersMode) {
    ScratchDir dir;
    const std::string name = dir.file("plain.txt");
    writeFile(name, std::string("Hello stars\n"));
    FILE* f = openDataFile(name.c_str(), "r+b");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(std::ftell(f), 0);
    // Opened for update as asked: the first byte can be overwritten.
    EXPECT_EQ(std::fputc('J', f), 'J');
    std::fclose(f);
    EXPECT_EQ(readFile(name), Bytes({'J', 'e', 'l', 'l', 'o', ' ', 's', 't', 'a', 'r', 's', '\n'}));

    // Files too short for the magic, or starting with only half of it, are plain.
    for (const std::string content : {"", "E", "EY", "Z"}) {
        writeFile(name, content);
        EXPECT_EQ(readThroughDataFile(name), Bytes(content.begin(), content.end())) << content;
    }
    EXPECT_EQ(openDataFile(dir.file("missing").c_str(), "rb"), nullptr);
    EXPECT_EQ(openDataFile(dir.file("").c_str(), "rb"), nullptr);  // a folder
}

TEST(DataFile, TextReadThroughTheContainerEqualsThePlainFile) {
    ScratchDir dir;
    const std::string text = catalogueText(200000);
    const std::string plainName = dir.file("stars.txt");
    const std::string packedName = dir.file("stars.ez");
    writeFile(plainName, text);
    pack(Bytes(text.begin(), text.end()), packedName);
    auto lines = [](const std::string& name) {
        std::vector<std::string> result;
        FILE* f = openDataFile(name.c_str(), "r");
        EXPECT_NE(f, nullptr);
        if (f == nullptr) return result;
        char line[512];
        while (std::fgets(line, sizeof line, f) != nullptr)
            result.emplace_back(line);
        std::fclose(f);
        return result;
    };
    const std::vector<std::string> plainLines = lines(plainName);
    EXPECT_GT(plainLines.size(), 3000u);
    EXPECT_EQ(lines(packedName), plainLines);
}

// Damage in a chunk: the report names the program and the file, openDataFile hands back no
// file, and ReadDeflateZip keeps the content of the chunks before the first damaged one, also
// when the chunks are shared out between two threads.
TEST(DataFile, DamagedChunksAreReportedAndTheFirstDamageWins) {
    ScratchDir dir;
    const std::string text = catalogueText(20 * 32768 + 77);
    const Bytes plain(text.begin(), text.end());
    const Bytes packed = pack(plain, dir.file("good.ez"));
    const std::uint32_t n = bigEndian32(packed, 2);
    ASSERT_EQ(n, 21u);
    auto offset = [&](std::uint32_t i) { return bigEndian32(packed, 6 + 4 * i); };
    auto length = [&](std::uint32_t i) { return bigEndian32(packed, 6 + 4 * n + 4 * i); };
    auto crcAt = [&](std::uint32_t i) { return std::size_t(offset(i)) + length(i) - 8; };

    enum Kind { kCrc, kTrailerLength, kLongerInTable, kShorterInTable, kStream };
    const struct {
        std::vector<std::uint32_t> chunks;
        Kind kind;
        const char* report;
    } cases[] = {
        {{1}, kCrc, "crc error"},
        {{1}, kTrailerLength, "length error"},
        {{1}, kLongerInTable, "format violated"},   // overlaps the next chunk
        {{1}, kShorterInTable, "format violated"},  // cuts the trailer off
        {{1}, kStream, "format violated"},          // a reserved block type
        {{15}, kCrc, "crc error"},
        {{3, 15}, kCrc, "crc error"},
        {{10, 11}, kCrc, "crc error"},
        {{0}, kCrc, "crc error"},
        {{20}, kStream, "format violated"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.chunks.front()) + " " + c.report);
        Bytes bytes = packed;
        for (std::uint32_t i : c.chunks) {
            if (c.kind == kCrc) bytes[crcAt(i)] ^= 0x80;
            if (c.kind == kTrailerLength) bytes[crcAt(i) + 4] ^= 0x01;
            if (c.kind == kLongerInTable) setBigEndian32(bytes, 6 + 4 * n + 4 * i, length(i) + 2);
            if (c.kind == kShorterInTable) setBigEndian32(bytes, 6 + 4 * n + 4 * i, length(i) - 9);
            if (c.kind == kStream) bytes[offset(i)] = bytes[offset(i) + 1] = 0xFF;
        }
        const std::string name = dir.file("bad.ez");
        writeFile(name, bytes);
        testing::internal::CaptureStderr();
        FILE* f = openDataFile(name.c_str(), "rb");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), damageReport(name, c.report));
        EXPECT_EQ(f, nullptr);
        if (f != nullptr) std::fclose(f);

        f = std::fopen(name.c_str(), "rb");
        Bytes partial;
        testing::internal::CaptureStderr();
        EXPECT_EQ(ReadDeflateZip(f, partial, "bad"), -1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), damageReport("bad", c.report));
        std::fclose(f);
        // Tables are checked before anything inflates: an overlap there gives nothing.
        const std::size_t kept = c.kind == kLongerInTable ? 0 : c.chunks.front() * 32768;
        EXPECT_EQ(partial, Bytes(plain.begin(), plain.begin() + kept));
    }
}

// A container whose chunks are not all full (not what the writer makes, but readable) reads as
// the chunks' contents one after another.
TEST(DataFile, ShortChunksInTheMiddleCloseUp) {
    const std::vector<std::size_t> sizes = {32768, 32768, 100,   32768, 0,    32768,
                                            32768, 32768, 32768, 5,     32768};
    const std::string text = catalogueText(400000);
    Bytes plain;
    std::vector<Bytes> chunks;
    std::size_t at = 0;
    for (std::size_t size : sizes) {
        Bytes piece(text.begin() + at, text.begin() + at + size);
        at += size;
        plain.insert(plain.end(), piece.begin(), piece.end());
        z_stream s{};
        deflateInit2(&s, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
        Bytes chunk(65536);
        s.next_in = piece.data();
        s.avail_in = static_cast<uInt>(piece.size());
        s.next_out = chunk.data();
        s.avail_out = static_cast<uInt>(chunk.size());
        ASSERT_EQ(deflate(&s, Z_FINISH), Z_STREAM_END);
        chunk.resize(s.total_out);
        deflateEnd(&s);
        const uLong crc = crc32(crc32(0, Z_NULL, 0), piece.data(), static_cast<uInt>(size));
        for (int i = 0; i < 4; ++i)
            chunk.push_back(static_cast<unsigned char>(crc >> (8 * i)));
        for (int i = 0; i < 4; ++i)
            chunk.push_back(static_cast<unsigned char>(size >> (8 * i)));
        chunks.push_back(chunk);
    }
    const std::uint32_t n = static_cast<std::uint32_t>(chunks.size());
    Bytes file = {'E', 'Z'};
    file.resize(6 + 8 * n);
    setBigEndian32(file, 2, n);
    for (std::uint32_t i = 0; i < n; ++i) {
        setBigEndian32(file, 6 + 4 * i, static_cast<std::uint32_t>(file.size()));
        setBigEndian32(file, 6 + 4 * n + 4 * i, static_cast<std::uint32_t>(chunks[i].size()));
        file.insert(file.end(), chunks[i].begin(), chunks[i].end());
    }
    ScratchDir dir;
    writeFile(dir.file("short.ez"), file);
    EXPECT_EQ(readThroughDataFile(dir.file("short.ez")), plain);
}

TEST(DataFile, ContainerStreamsSeekAndTakeWritesLikeFiles) {
    ScratchDir dir;
    const std::string text = catalogueText(50000);
    const std::string name = dir.file("seek.ez");
    pack(Bytes(text.begin(), text.end()), name);
    FILE* f = openDataFile(name.c_str(), "r");
    ASSERT_NE(f, nullptr);
    ASSERT_EQ(std::fseek(f, 0, SEEK_END), 0);
    EXPECT_EQ(std::ftell(f), 50000);
    ASSERT_EQ(std::fseek(f, 40000, SEEK_SET), 0);
    char line[64];
    ASSERT_NE(std::fgets(line, 8, f), nullptr);
    EXPECT_EQ(std::string(line), text.substr(40000, 7));
    // Opened for update: writes land in the content, past the end leave zeros.
    ASSERT_EQ(std::fseek(f, 2, SEEK_SET), 0);
    EXPECT_EQ(std::fputs("XY", f), 1);
    ASSERT_EQ(std::fseek(f, 50003, SEEK_SET), 0);
    EXPECT_EQ(std::fputc('!', f), '!');
    std::rewind(f);
    const Bytes content = readAll(f);
    std::fclose(f);
    ASSERT_EQ(content.size(), 50004u);
    EXPECT_EQ(content[2], 'X');
    EXPECT_EQ(content[3], 'Y');
    EXPECT_EQ(content[50000], 0);
    EXPECT_EQ(content[50003], '!');
}

TEST(DataFile, BrokenHeadersAndTablesAreFormatViolations) {
    ScratchDir dir;
    const Bytes plain = pseudoRandomBytes(100000);
    const Bytes packed = pack(plain, dir.file("good.ez"));
    const std::string name = dir.file("bad.ez");
    std::vector<std::pair<const char*, Bytes>> cases;
    cases.push_back({"magic only", Bytes{'E', 'Z'}});
    cases.push_back({"short count", Bytes{'E', 'Z', 0, 0}});
    cases.push_back({"2^32-1 chunks", Bytes{'E', 'Z', 0xFF, 0xFF, 0xFF, 0xFF}});
    cases.push_back({"one chunk, no tables", Bytes{'E', 'Z', 0, 0, 0, 1, 0, 0}});
    Bytes pastEnd = packed;
    pastEnd[6 + 4] = 0x7F;  // chunk 1 starts beyond the end of the file
    cases.push_back({"offset past end", pastEnd});
    Bytes intoTables = packed;
    intoTables[6 + 3] = 2;  // chunk 0 starts inside the tables
    cases.push_back({"offset inside tables", intoTables});
    cases.push_back({"truncated", Bytes(packed.begin(), packed.end() - 5000)});
    cases.push_back({"truncated in tables", Bytes(packed.begin(), packed.begin() + 20)});
    for (const auto& [label, bytes] : cases) {
        SCOPED_TRACE(label);
        writeFile(name, bytes);
        testing::internal::CaptureStderr();
        FILE* f = openDataFile(name.c_str(), "rb");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), damageReport(name, "format violated"));
        EXPECT_EQ(f, nullptr);
        if (f != nullptr) std::fclose(f);
    }
}

// Every single-byte change of a small container either reads back the content or is reported;
// nothing reads or writes out of bounds (checked under the sanitizers).
TEST(DataFile, EveryFlippedByteIsHandled) {
    ScratchDir dir;
    const std::string text = catalogueText(70000);
    const Bytes packed = pack(Bytes(text.begin(), text.end()), dir.file("good.ez"));
    const std::string name = dir.file("flipped.ez");
    int reported = 0;
    for (std::size_t at = 2; at < packed.size(); at += 7) {
        Bytes bytes = packed;
        bytes[at] ^= static_cast<unsigned char>(1u << (at % 8));
        writeFile(name, bytes);
        testing::internal::CaptureStderr();
        FILE* f = openDataFile(name.c_str(), "rb");
        const std::string report = testing::internal::GetCapturedStderr();
        if (f == nullptr) {
            ++reported;
            EXPECT_NE(report.find(": invalid compressed data--"), std::string::npos) << at;
        } else {
            EXPECT_EQ(readAll(f), Bytes(text.begin(), text.end())) << at;
            std::fclose(f);
        }
    }
    EXPECT_GT(reported, 0);
}

TEST(DataFileDeathTest, ReadingSomethingElseAsAContainerEndsTheProcess) {
    ScratchDir dir;
    const std::string name = dir.file("plain.txt");
    writeFile(name, std::string("not a container"));
    EXPECT_EXIT(
        {
            FILE* f = std::fopen(name.c_str(), "rb");
            Bytes plain;
            ReadDeflateZip(f, plain, "plain.txt");
        },
        testing::ExitedWithCode(1),
        "\\[ReadDeflateZip\\]: input file is not in our zip file format\n");
}

TEST(ByteOrder, ValuesGoToDiskMostSignificantByteFirst) {
    ScratchDir dir;
    const std::string name = dir.file("order.bin");
    FILE* f = std::fopen(name.c_str(), "w+b");
    std::uint32_t words[2] = {0x01020304u, 0xA0B0C0D0u};
    double value = 1.0;
    EXPECT_EQ(cp_fwrite(words, 4, 2, f), 2u);
    EXPECT_EQ(cp_fwrite(&value, 8, 1, f), 1u);
    EXPECT_EQ(words[0], 0x01020304u);  // the caller's buffer is unchanged
    EXPECT_EQ(value, 1.0);
    std::rewind(f);
    std::uint32_t back[2] = {0, 0};
    EXPECT_EQ(cp_fread(back, 4, 2, f), 2u);
    EXPECT_EQ(back[1], 0xA0B0C0D0u);
    double valueBack = 0;
    EXPECT_EQ(cp_fread(&valueBack, 8, 1, f), 1u);
    EXPECT_EQ(valueBack, 1.0);
    EXPECT_EQ(cp_fread(&valueBack, 8, 1, f), 0u);
    std::fclose(f);
    EXPECT_EQ(readFile(name),
              Bytes({1, 2, 3, 4, 0xA0, 0xB0, 0xC0, 0xD0, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0}));
}

TEST(ByteOrderDeathTest, ElementSizeZeroEndsTheProcess) {
    char buffer[4];
    EXPECT_EXIT(cp_fread(buffer, 0, 1, stdin), testing::ExitedWithCode(1),
                "\\[cp_fread\\]: fread size < 1\n");
    EXPECT_EXIT(cp_fwrite(buffer, 0, 1, stdout), testing::ExitedWithCode(1),
                "\\[cp_fwrite\\]: fwrite size < 1\n");
}
