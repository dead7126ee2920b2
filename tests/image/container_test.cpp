// The "EZ" container: the layout written, reading through openDataFile, damaged containers.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <string>

#include "image/byte_order.h"
#include "image/data_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

std::uint32_t bigEndian32(const Bytes& b, std::size_t at) {
    return std::uint32_t(b[at]) << 24 | b[at + 1] << 16 | b[at + 2] << 8 | b[at + 3];
}
void setBigEndian32(Bytes& b, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        b[at + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

Bytes pack(const Bytes& plain, const std::string& name) {
    FILE* f = std::fopen(name.c_str(), "wb");
    EXPECT_EQ(WriteDeflateZip(f, plain.data(), plain.size()), 1);
    std::fclose(f);
    return readFile(name);
}

// The content read through openDataFile; report gets "opened" or what was printed instead.
Bytes readThroughDataFile(const std::string& name, std::string* report = nullptr) {
    FILE* f = nullptr;
    const std::string printed = stderrOf([&] { f = openDataFile(name.c_str(), "rb"); });
    if (report != nullptr) *report = f != nullptr ? "opened" : printed;
    const Bytes bytes = f != nullptr ? readAll(f) : Bytes{};
    if (f != nullptr) std::fclose(f);
    std::remove(name.c_str());  // rewriting a file in place is slow on some file systems
    return bytes;
}

std::string damageReport(const std::string& name, const char* what) {
    return std::string("\n") + program_invocation_short_name + ": " + name +
           ": invalid compressed data--" + what + "\n";
}

}  // namespace

TEST(Container, RoundTripsKeepChunkCountsAndContiguousTables) {
    ScratchDir dir;
    const std::size_t lengths[] = {0, 1, 32768, 65536, 65537};
    const std::uint32_t chunks[] = {0, 1, 1, 2, 3};
    for (int c = 0; c < 5; ++c) {
        const Bytes plain = bytesOf(catalogueText(lengths[c]));
        const Bytes packed = pack(plain, dir.file("chunks.ez"));
        ASSERT_GE(packed.size(), 6u);
        EXPECT_EQ(std::string(packed.begin(), packed.begin() + 2), "EZ");
        const std::uint32_t n = bigEndian32(packed, 2);
        EXPECT_EQ(n, chunks[c]) << lengths[c];
        // Chunks follow one another; each trailer ends with its plain length, LSB first.
        std::uint32_t end = 6 + 8 * n;
        for (std::uint32_t i = 0; i < n && packed.size() >= 6 + 8 * n; ++i) {
            EXPECT_EQ(bigEndian32(packed, 6 + 4 * i), end) << lengths[c] << " chunk " << i;
            end = bigEndian32(packed, 6 + 4 * i) + bigEndian32(packed, 6 + 4 * n + 4 * i);
            ASSERT_LE(end, packed.size());
            EXPECT_EQ(packed[end - 4] | packed[end - 3] << 8 | packed[end - 2] << 16,
                      i + 1 < n ? 32768 : int(lengths[c] - 32768 * i));
        }
        EXPECT_EQ(end, packed.size());
        EXPECT_EQ(readThroughDataFile(dir.file("chunks.ez")), plain);
    }
}

// Plain and packed files open alike: lines, then a write and a seek in the caller's mode.
TEST(Container, PackedFilesReadAsThePlainOnesAndPlainFilesComeBackUnchanged) {
    ScratchDir dir;
    const std::string text = catalogueText(200000);
    const std::string plain = dir.write("stars.txt", text), packed = dir.file("stars.ez");
    pack(bytesOf(text), packed);
    std::vector<std::string> lines[2];
    for (int i = 0; i < 2; ++i) {
        FILE* f = openDataFile(i == 0 ? plain.c_str() : packed.c_str(), "r+");
        ASSERT_NE(f, nullptr);
        for (char line[512]; std::fgets(line, sizeof line, f) != nullptr;)
            lines[i].emplace_back(line);
        ASSERT_EQ(std::fseek(f, 2, SEEK_SET), 0);
        std::fputs("XY", f);
        std::rewind(f);
        EXPECT_EQ(readAll(f), bytesOf(text.substr(0, 2) + "XY" + text.substr(4))) << i;
        std::fclose(f);
    }
    EXPECT_GT(lines[0].size(), 3000u);
    EXPECT_EQ(lines[1], lines[0]);
    EXPECT_EQ(readFile(plain).size(), text.size());    // the plain file was updated in place
    for (const std::string content : {"", "E", "EY"})  // too short for the magic, or half of it
        EXPECT_EQ(readThroughDataFile(dir.write("plain.txt", content)), bytesOf(content));
    EXPECT_EQ(openDataFile(dir.file("missing").c_str(), "rb"), nullptr);
    EXPECT_EQ(openDataFile(dir.path().c_str(), "rb"), nullptr);  // a folder
}

// Damage is reported with program and file names; ReadDeflateZip keeps the chunks before
// the first damage (none when the tables are wrong), also when two threads share the chunks.
TEST(Container, DamageIsReportedAndTheFirstDamageWins) {
    ScratchDir dir;
    const Bytes plain = bytesOf(catalogueText(20 * 32768 + 77));
    const Bytes packed = pack(plain, dir.file("good.ez"));
    const std::uint32_t n = bigEndian32(packed, 2);
    ASSERT_EQ(n, 21u);
    auto offset = [&](std::uint32_t i) { return bigEndian32(packed, 6 + 4 * i); };
    auto trailer = [&](std::uint32_t i) { return offset(i + 1) - 8; };  // chunk i's CRC-32
    auto setLength = [&](Bytes& b, std::uint32_t i, int change) {
        setBigEndian32(b, 6 + 4 * n + 4 * i, bigEndian32(b, 6 + 4 * n + 4 * i) + change);
    };
    const struct {
        std::function<void(Bytes&)> damage;
        const char* report;
        std::size_t kept;  // chunks whose content ReadDeflateZip keeps
    } cases[] = {
        {[&](Bytes& b) { b[trailer(1)] ^= 0x80; }, "crc error", 1},
        {[&](Bytes& b) { b[trailer(1) + 4] ^= 0x01; }, "length error", 1},
        {[&](Bytes& b) {
             b[trailer(15)] ^= 1;
             b[trailer(3)] ^= 1;
         },
         "crc error", 3},
        {[&](Bytes& b) { b[trailer(0)] ^= 0x80; }, "crc error", 0},
        {[&](Bytes& b) { b[offset(20)] = 0xFF; }, "format violated", 20},  // a reserved block
        {[&](Bytes& b) { setLength(b, 1, 2); }, "format violated", 0},     // overlaps chunk 2
        {[&](Bytes& b) { setBigEndian32(b, 2, 0xFFFFFFFF); }, "format violated", 0},
        {[&](Bytes& b) { setBigEndian32(b, 6, 20); }, "format violated", 0},  // in the tables
    };
    for (const auto& c : cases) {
        Bytes bytes = packed;
        c.damage(bytes);
        const std::string name = dir.write("bad.ez", bytes);
        FILE* f = std::fopen(name.c_str(), "rb");
        Bytes partial;
        EXPECT_EQ(stderrOf([&] { EXPECT_EQ(ReadDeflateZip(f, partial, "bad"), -1); }),
                  damageReport("bad", c.report));
        std::fclose(f);
        EXPECT_EQ(partial, Bytes(plain.begin(), plain.begin() + c.kept * 32768));
        std::string report;
        EXPECT_TRUE(readThroughDataFile(name, &report).empty());
        EXPECT_EQ(report, damageReport(name, c.report)) << &c - cases;
    }
}

// Cut short or with a byte flipped anywhere: the content or a report, never a bad access.
TEST(Container, TruncatedAndFlippedContainersAreHandled) {
    ScratchDir dir;
    const Bytes plain = bytesOf(catalogueText(70000));
    const Bytes packed = pack(plain, dir.file("good.ez"));
    for (std::size_t cut : {std::size_t(4), std::size_t(20), packed.size() - 1}) {
        std::string report;
        readThroughDataFile(dir.write("cut.ez", Bytes(packed.begin(), packed.begin() + cut)),
                            &report);
        EXPECT_EQ(report, damageReport(dir.file("cut.ez"), "format violated")) << cut;
    }
    int reported = 0;
    for (std::size_t at = 2; at < packed.size(); at += 11) {
        Bytes bytes = packed;
        bytes[at] ^= static_cast<unsigned char>(1u << (at % 8));
        std::string report;
        const Bytes content = readThroughDataFile(dir.write("flipped.ez", bytes), &report);
        reported += report != "opened";
        EXPECT_TRUE(report == "opened"
                        ? content == plain
                        : report.find(": invalid compressed data--") != std::string::npos)
            << at;
    }
    EXPECT_GT(reported, 0);
}

TEST(ContainerDeathTest, ReadingSomethingElseEndsTheProcess) {
    ScratchDir dir;
    const std::string name = dir.write("plain.txt", std::string("not a container"));
    Bytes plain;
    EXPECT_EXIT(ReadDeflateZip(std::fopen(name.c_str(), "rb"), plain), testing::ExitedWithCode(1),
                "\\[ReadDeflateZip\\]: input file is not in our zip file format\n");
    char buffer[4];
    EXPECT_EXIT(cp_fread(buffer, 0, 1, stdin), testing::ExitedWithCode(1),
                "\\[cp_fread\\]: fread size < 1\n");
    EXPECT_EXIT(cp_fwrite(buffer, 0, 1, stdout), testing::ExitedWithCode(1),
                "\\[cp_fwrite\\]: fwrite size < 1\n");
}
