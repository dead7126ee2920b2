// PNM images: writers' bytes and codes, readers' header forms, bad files.

#include <gtest/gtest.h>

#include <string>
#include <tuple>

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

}  // namespace

TEST(Pnm, WritersCodesMessagesAndBytes) {
    ScratchDir dir;
    const Bytes data = ramp(3 * 2 * 3);
    const std::string u = dir.file("no/such/folder.ppm");
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(write_pnm(dir.file("g.pgm").c_str(), 3, 2, 1, data.data()), 0);
                  EXPECT_EQ(write_pnm(dir.file("c.ppm").c_str(), 3, 2, 3, data.data()), 0);
                  EXPECT_EQ(write_pnm(dir.file("a.ppm").c_str(), 3, 2, 4, data.data()), 2);
                  EXPECT_EQ(write_pnm(u.c_str(), 3, 2, 3, data.data()), 1);
              }),
              "");  // codes only
    EXPECT_EQ(readFile(dir.file("g.pgm")),
              concat("P5\n3 2\n255\n", Bytes(data.begin(), data.begin() + 6)));
    EXPECT_EQ(readFile(dir.file("c.ppm")), concat("P6\n3 2\n255\n", data));
    EXPECT_FALSE(fileExists(dir.file("a.ppm")));

    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(writePNM(dir.file("d.pgm").c_str(), "P5", 3, 2, 15, data.data()), 1);
                  EXPECT_EQ(writePNM(dir.file("p3.ppm").c_str(), "P3", 3, 2, 255, data.data()), -1);
                  EXPECT_EQ(writePNM(u.c_str(), "P6", 3, 2, 255, data.data()), -1);
              }),
              "writePNM : Wrong Type! Must be P6 or P5!\nCan't open file [" + u + "]!\n");
    EXPECT_EQ(readFile(dir.file("d.pgm")),
              concat("P5\n3 2\n15\n", Bytes(data.begin(), data.begin() + 6)));
    EXPECT_EQ(readFile(dir.file("p3.ppm")), bytesOf("P3\n3 2\n255\n"));
}

TEST(Pnm, ReadersTakeCommentsBlankLinesAndAnyMaximum) {
    ScratchDir dir;
    const Bytes pixels = ramp(4 * 2 * 3);
    Image r =
        readImage(read_pnm, dir.write("c.ppm", concat("# by hand\n#\nP6\n# size next\n\n   \n4 2\n"
                                                      "# maximum\n255\n",
                                                      pixels)));
    EXPECT_EQ(std::make_tuple(r.width, r.height, r.components), std::make_tuple(4, 2, 3));
    EXPECT_EQ(r.data, pixels);
    // Samples are bytes whatever the maximum says; data may start like a line end or comment.
    const Bytes grey = concat("\n# P", ramp(11));
    r = readImage(read_pnm, dir.write("g.pgm", concat("P5\n5 3\n15\n", grey)));
    EXPECT_EQ(std::make_tuple(r.width, r.height, r.components), std::make_tuple(5, 3, 1));
    EXPECT_EQ(r.data, grey);
    // The dumper's reader takes free-format numbers and the caller's type, not the magic.
    int w = 0, h = 0, m = 0;
    Bytes data;
    const std::string f =
        dir.write("f.pgm", concat("P6\n# comment\n3\n2\n200 more words\n", ramp(6)));
    EXPECT_EQ(readPNM(f.c_str(), "P5", &w, &h, &m, &data), 1);
    EXPECT_EQ(std::make_tuple(w, h, m, data), std::make_tuple(3, 2, 200, ramp(6)));
    const std::string missing = dir.file("missing.ppm");
    EXPECT_EQ(stderrOf([&] {
                  EXPECT_EQ(readPNM(f.c_str(), "P2", &w, &h, &m, &data), -1);
                  EXPECT_EQ(readPNM(missing.c_str(), "P6", &w, &h, &m, &data), -1);
              }),
              "readPNM : Wrong Type! Must be P6 or P5!\nCan't read file [" + missing + "]!\n");
    EXPECT_EQ(imageReaderForName("milkyway.rgb"), ImageReader::kSgi);  // by the name's end
    EXPECT_EQ(imageReaderForName("a.PPM"), ImageReader::kUnknown);
}

TEST(Pnm, BadFilesGiveNoImage) {
    ScratchDir dir;
    const std::string filler(100, 'x');
    const std::string cases[] = {
        "",
        "\x7f\x01\x02\xff binary junk" + filler,
        "P3\n2 2\n255\n1 2 3\n",
        "P6\n4 4\n255\n" + filler.substr(0, 47),  // one byte short
        "P6\n100000 100000\n255\n" + filler,
        "P6\n2147483647 2147483647\n255\n" + filler,
        "P5\n0 0\n255\n",
        "P5\n-4 4\n255\n" + filler,
        "P5\n2 2\n",
        "P5 2 2 255\n" + filler,  // fields on one line
    };
    for (const std::string& text : cases) {
        const std::string name = dir.write("bad.pnm", text), start = text.substr(0, 20);
        Image r;
        EXPECT_EQ(stderrOf([&] { r = readImage(read_pnm, name); }), "") << start;
        EXPECT_TRUE(r.data.empty() && r.width == -1) << start;
        int w = -1, h = -1, m = -1;
        Bytes data;
        const std::string message =
            stderrOf([&] { EXPECT_EQ(readPNM(name.c_str(), "P6", &w, &h, &m, &data), -1); });
        EXPECT_EQ(message.rfind("readPNM : ", 0), 0u) << message;
        EXPECT_TRUE(data.empty());
    }
}
