// PNM images: the writers' exact bytes and codes, the readers' header forms and bad files.

#include <gtest/gtest.h>

#include <string>

#include "image/data_file.h"
#include "image/image_file.h"
#include "tests/image/image_test_util.h"

using namespace imagetest;

namespace {

Bytes ramp(std::size_t n) {
    Bytes bytes(n);
    for (std::size_t i = 0; i < n; ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + 1);
    return bytes;
}

struct ReadPnm {
    Bytes data;
    int width = -1, height = -1, components = -1;
};
ReadPnm readPnmFile(const std::string& name) {
    ReadPnm r;
    r.data = read_pnm(name.c_str(), &r.width, &r.height, &r.components);
    return r;
}

}  // namespace

TEST(WritePnm, CodesAndExactBytes) {
    ScratchDir dir;
    const Bytes grey = ramp(6);
    EXPECT_EQ(write_pnm(dir.file("g.pgm").c_str(), 3, 2, 1, grey.data()), 0);
    EXPECT_EQ(readFile(dir.file("g.pgm")), concat("P5\n3 2\n255\n", grey));
    const Bytes colour = ramp(18);
    EXPECT_EQ(write_pnm(dir.file("c.ppm").c_str(), 3, 2, 3, colour.data()), 0);
    EXPECT_EQ(readFile(dir.file("c.ppm")), concat("P6\n3 2\n255\n", colour));

    const Bytes rgba = ramp(24);
    testing::internal::CaptureStderr();
    EXPECT_EQ(write_pnm(dir.file("a.ppm").c_str(), 3, 2, 4, rgba.data()), 2);
    EXPECT_EQ(write_pnm(dir.file("no/such/folder.ppm").c_str(), 3, 2, 3, colour.data()), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");  // codes only
    EXPECT_FALSE(fileExists(dir.file("a.ppm")));
}

TEST(WritePnm, DumperFormWritesHeaderThenData) {
    ScratchDir dir;
    const Bytes colour = ramp(2 * 2 * 3);
    EXPECT_EQ(writePNM(dir.file("d.ppm").c_str(), "P6", 2, 2, 255, colour.data()), 1);
    EXPECT_EQ(readFile(dir.file("d.ppm")), concat("P6\n2 2\n255\n", colour));
    EXPECT_EQ(writePNM(dir.file("d.pgm").c_str(), "P5", 2, 2, 15, colour.data()), 1);
    EXPECT_EQ(readFile(dir.file("d.pgm")),
              concat("P5\n2 2\n15\n", Bytes(colour.begin(), colour.begin() + 4)));

    testing::internal::CaptureStderr();
    EXPECT_EQ(writePNM(dir.file("p3.ppm").c_str(), "P3", 2, 2, 255, colour.data()), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "writePNM : Wrong Type! Must be P6 or P5!\n");
    EXPECT_EQ(readFile(dir.file("p3.ppm")), concat("P3\n2 2\n255\n", {}));

    const std::string unwritable = dir.file("no/such/folder.ppm");
    testing::internal::CaptureStderr();
    EXPECT_EQ(writePNM(unwritable.c_str(), "P6", 2, 2, 255, colour.data()), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Can't open file [" + unwritable + "]!\n");
}

TEST(ReadPnm, CommentsBlankLinesAndMaximumValues) {
    ScratchDir dir;
    const Bytes pixels = ramp(4 * 2 * 3);
    writeFile(dir.file("c.ppm"), concat("# made by hand\n#\nP6\n# size next\n\n   \n4 2\n"
                                        "# maximum\n255\n",
                                        pixels));
    ReadPnm r = readPnmFile(dir.file("c.ppm"));
    EXPECT_EQ(r.width, 4);
    EXPECT_EQ(r.height, 2);
    EXPECT_EQ(r.components, 3);
    EXPECT_EQ(r.data, pixels);

    // Samples are bytes whatever the maximum value says, even when they exceed it.
    const Bytes grey = ramp(5 * 3);
    writeFile(dir.file("g.pgm"), concat("P5\n5 3\n15\n", grey));
    r = readPnmFile(dir.file("g.pgm"));
    EXPECT_EQ(r.components, 1);
    EXPECT_EQ(r.data, grey);

    // Data may themselves start with bytes that look like a newline or a "#".
    const Bytes tricky = {'\n', '#', ' ', 'P'};
    writeFile(dir.file("t.pgm"), concat("P5\n2 2\n255\n", tricky));
    EXPECT_EQ(readPnmFile(dir.file("t.pgm")).data, tricky);
}

TEST(ReadPnm, WrittenImagesReadBackAlsoFromTheContainer) {
    ScratchDir dir;
    const Bytes pixels = ramp(64 * 48 * 3);
    ASSERT_EQ(write_pnm(dir.file("w.ppm").c_str(), 64, 48, 3, pixels.data()), 0);
    FILE* in = std::fopen(dir.file("w.ppm").c_str(), "rb");
    FILE* out = std::fopen(dir.file("w.ez.ppm").c_str(), "wb");
    ASSERT_EQ(PackFromFile(out, in), 1);
    std::fclose(in);
    std::fclose(out);
    for (const char* name : {"w.ppm", "w.ez.ppm"}) {
        SCOPED_TRACE(name);
        ReadPnm r = readPnmFile(dir.file(name));
        EXPECT_EQ(r.width, 64);
        EXPECT_EQ(r.height, 48);
        EXPECT_EQ(r.data, pixels);
        int w = 0, h = 0, m = 0;
        Bytes data;
        EXPECT_EQ(readPNM(dir.file(name).c_str(), "P6", &w, &h, &m, &data), 1);
        EXPECT_EQ(w, 64);
        EXPECT_EQ(h, 48);
        EXPECT_EQ(m, 255);
        EXPECT_EQ(data, pixels);
    }
}

TEST(ReadPnm, DumperFormReadsFreeFormatNumbersAndTheStatedType) {
    ScratchDir dir;
    const Bytes pixels = ramp(3 * 2);
    // The magic line is skipped, not compared: the caller's type decides.
    writeFile(dir.file("f.pgm"), concat("P6\n# comment\n3\n2\n200 trailing words\n", pixels));
    int w = 0, h = 0, m = 0;
    Bytes data;
    EXPECT_EQ(readPNM(dir.file("f.pgm").c_str(), "P5", &w, &h, &m, &data), 1);
    EXPECT_EQ(w, 3);
    EXPECT_EQ(h, 2);
    EXPECT_EQ(m, 200);
    EXPECT_EQ(data, pixels);

    testing::internal::CaptureStderr();
    EXPECT_EQ(readPNM(dir.file("f.pgm").c_str(), "P2", &w, &h, &m, &data), -1);
    const std::string missing = dir.file("missing.ppm");
    EXPECT_EQ(readPNM(missing.c_str(), "P6", &w, &h, &m, &data), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "readPNM : Wrong Type! Must be P6 or P5!\nCan't read file [" + missing + "]!\n");
}

// Bad files give no image and never an allocation the file cannot back.
TEST(ReadPnm, BadFilesGiveNoImage) {
    ScratchDir dir;
    const std::vector<std::pair<const char*, Bytes>> cases = {
        {"empty", {}},
        {"garbage", concat("\x7f\x45LF\x02\x01\x01 binary junk", ramp(40))},
        {"text P3", concat("P3\n2 2\n255\n1 2 3\n", {})},
        {"truncated", concat("P6\n4 4\n255\n", ramp(47))},
        {"huge header", concat("P6\n100000 100000\n255\n", ramp(100))},
        {"overflowing header", concat("P6\n2147483647 2147483647\n255\n", ramp(100))},
        {"zero size", concat("P5\n0 0\n255\n", {})},
        {"negative size", concat("P5\n-4 4\n255\n", ramp(16))},
        {"no size", concat("P5\n# only comments\n", {})},
        {"no maximum", concat("P5\n2 2\n", {})},
        {"size on magic line", concat("P5 2 2 255\n", ramp(4))},
    };
    for (const auto& [label, bytes] : cases) {
        SCOPED_TRACE(label);
        const std::string name = dir.file("bad.pnm");
        writeFile(name, bytes);
        testing::internal::CaptureStderr();
        ReadPnm r = readPnmFile(name);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_TRUE(r.data.empty());
        EXPECT_EQ(r.width, -1);  // outputs untouched

        int w = -1, h = -1, m = -1;
        Bytes data;
        testing::internal::CaptureStderr();
        EXPECT_EQ(readPNM(name.c_str(), "P6", &w, &h, &m, &data), -1);
        const std::string message = testing::internal::GetCapturedStderr();
        EXPECT_EQ(message.rfind("readPNM : ", 0), 0u) << message;
        EXPECT_TRUE(data.empty());
    }
    EXPECT_TRUE(readPnmFile(dir.file("missing.pnm")).data.empty());
}

TEST(ImageReaderChoice, LastFourCharactersCaseSensitive) {
    EXPECT_EQ(imageReaderForName("data/stardata/star.sgi"), ImageReader::kSgi);
    EXPECT_EQ(imageReaderForName("milkyway.rgb"), ImageReader::kSgi);
    EXPECT_EQ(imageReaderForName("a.ppm"), ImageReader::kPnm);
    EXPECT_EQ(imageReaderForName("a.pnm"), ImageReader::kPnm);
    EXPECT_EQ(imageReaderForName("a.pgm"), ImageReader::kPnm);
    EXPECT_EQ(imageReaderForName(".pgm"), ImageReader::kPnm);
    EXPECT_EQ(imageReaderForName("a.SGI"), ImageReader::kUnknown);
    EXPECT_EQ(imageReaderForName("a.tga"), ImageReader::kUnknown);
    EXPECT_EQ(imageReaderForName("a.sgi.gz"), ImageReader::kUnknown);
    EXPECT_EQ(imageReaderForName("sgi"), ImageReader::kUnknown);
    EXPECT_EQ(imageReaderForName(""), ImageReader::kUnknown);

    ScratchDir dir;
    const Bytes grey = ramp(4);
    writeFile(dir.file("t.pgm"), concat("P5\n2 2\n255\n", grey));
    writeFile(dir.file("t.tga"), concat("P5\n2 2\n255\n", grey));
    int w = 0, h = 0, c = 0;
    EXPECT_EQ(readImageByName(dir.file("t.pgm").c_str(), &w, &h, &c), grey);
    EXPECT_TRUE(readImageByName(dir.file("t.tga").c_str(), &w, &h, &c).empty());
}
