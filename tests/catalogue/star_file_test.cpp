// Reading .star dataset files: field counts, every check with its message, the Sun record,
// merging, the container, and files that are wrong in ways a user could really meet.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "catalogue/star_list.h"
#include "image/data_file.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;
using cattest::starFile;
using cattest::stderrOf;

namespace {

const std::vector<std::string> kTokens = {
    "3",   "4",   "0",   "0.05", "10",  "20", "30", "0.1", "0.2",  "0.3",  "0.65",
    "2.0", "0.5", "0.6", "0.7",  "0.8", "G",  "2",  "V",   "1234", "5678", "Alpha Centauri A"};

// The first `fields` tokens, with token `at` replaced by `with`.
std::string lineOf(int fields, int at = -1, const std::string& with = "") {
    std::string line;
    for (int i = 0; i < fields; ++i)
        line += (i ? " " : "") + (i == at ? with : kTokens[i]);
    return line;
}

std::string invalidFormat(int lineNo, const std::string& file, const std::string& line) {
    return "Error : Line " + std::to_string(lineNo) + " in [" + file + "]:\n\t[" + line +
           "]\n\tThis data line is of invalid data format!\n\n";
}

struct ReadResult {
    int status;
    std::string err;
};
ReadResult readInto(StarList& list, const std::string& path, int includeSun = 0, int quiet = 0) {
    ReadResult r{};
    r.err = stderrOf([&] { r.status = list.readStarFiles(path.c_str(), includeSun, quiet); });
    return r;
}

std::size_t largestAllocation = 0;
void* countingAllocate(std::size_t n) {
    if (n > largestAllocation) largestAllocation = n;
    return std::malloc(n);
}
void* failingAllocate(std::size_t) {
    return nullptr;
}

}  // namespace

TEST(StarFile, AcceptsEveryAllowedFieldCountAndFillsTheMissingFields) {
    ScratchDir dir;
    for (int n : {3, 4, 7, 10, 11, 12, 16, 17, 18, 19, 20, 21, 22}) {
        SCOPED_TRACE(n);
        StarList list;
        ReadResult r = readInto(list, dir.write("s.star", starFile(1, lineOf(n) + "\n")));
        ASSERT_EQ(r.status, 1) << r.err;
        StarObj s;
        ASSERT_EQ(list.getStar(&s, 0), 1);
        EXPECT_DOUBLE_EQ(s.catalogPos.x, 3.0);
        EXPECT_NEAR(s.pos.w, 16.4894f + std::log10(5.0), 1e-9);
        EXPECT_FLOAT_EQ(s.distErr, n >= 4 ? 0.05f : 0.0f);
        EXPECT_DOUBLE_EQ(s.vel.z, n >= 7 ? 30.0 : 0.0);
        EXPECT_FLOAT_EQ(s.lum, n >= 12 ? 2.0f : 0.0f);
        EXPECT_FLOAT_EQ(s.fileColor[0], n >= 16 ? 0.5f : 0.8f);
        EXPECT_STREQ(s.spectralClass, n >= 17 ? "G" : "---");
        EXPECT_STREQ(s.spectralType, n >= 19 ? "V" : "---");
        EXPECT_EQ(s.hd, n >= 20 ? 1234 : 0);
        EXPECT_EQ(s.hic, n >= 21 ? 5678 : 0);
        EXPECT_STREQ(s.commonName, n >= 22 ? "Alpha Centauri A" : "---");
    }
}

TEST(StarFile, EachBadDataLineHasItsMessageInLineOrder) {
    ScratchDir dir;
    const std::string f = dir.file("s.star");
    const std::string head = "Error : Line 3 in [" + f + "]";
    struct Case {
        std::string lines, message;
        int n = 1;
    };
    std::vector<Case> cases;
    for (int n : {1, 2, 5, 6, 8, 9, 13, 14, 15})
        cases.push_back({"# a comment\n" + lineOf(n) + "\n", invalidFormat(4, f, lineOf(n))});
    for (const char* type : {"Ia", "IV-V", "VI", "v"})
        cases.push_back({lineOf(19, 18, type) + "\n",
                         "Err (line 3): undefined spectral sequence [I,II,III,IV,V] :\n\t[" +
                             lineOf(19, 18, type) + "]"});
    const char* channel[3] = {"Red", "Green", "Blue"};
    for (int c = 0; c < 3; ++c)
        cases.push_back({lineOf(16, 12 + c, "1.5") + "\n",
                         head + "\n\tThe " + channel[c] + " Channel is out of range [0,1]\n\n"});
    // A bad distance error is reported before a bad colour; blank and comment lines count.
    const std::string bad = "3 4 0 -1 10 20 30 0.1 0.2 0.3 0.65 2.0 0.5 0.6 0.7 1.5";
    cases.push_back({"# header\n\n   # indented\n1 1 1\n \t\n" + bad + "\n",
                     "Error : Line 8 in [" + f + "]:\n\t[" + bad +
                         "]\n\tpercentage error in distance should be non-negative.\n",
                     2});
    cases.push_back({lineOf(18, 17, "10.5") + "\n",
                     "Err (line 3): spectral number [10.500000] out of range [0,10] :\n\t[" +
                         lineOf(18, 17, "10.5") + "]"});
    for (const char* line : {"nan 1 1", "1 inf 1", "1 1 1e400", "1 1 1 0.1 0 0 0 0 0 0 0.5 nan",
                             "1 1 1 1e50", "the quick brown fox"})
        cases.push_back({std::string(line) + "\n", invalidFormat(3, f, line)});
    cases.push_back(
        {"1 1 1\n# note\n2 2 2\n", "Error : Line 6 in [" + f + "]\n\tNot enough data!\n", 3});
    for (const Case& c : cases) {
        dir.write("s.star", starFile(c.n, c.lines));
        StarList list;
        ReadResult r = readInto(list, f);
        EXPECT_EQ(r.status, -1) << c.lines;
        EXPECT_EQ(r.err, c.message);
        EXPECT_EQ(list.getNumRecords(), 0);
    }
    for (const char* type : {"I", "II", "III", "IV", "V", "---"}) {
        StarList list;
        EXPECT_EQ(
            readInto(list, dir.write("s.star", starFile(1, lineOf(19, 18, type) + "\n"))).status, 1)
            << type;
    }
}

TEST(StarFile, CommonNameKeepsBlanksDropsTrailingOnesAndIsCutAt31) {
    ScratchDir dir;
    // Nearest first: the names come in this order.
    const std::string lines = lineOf(21, 0, "1") + " Alpha Centauri A   \t\r\n" +
                              lineOf(21, 0, "2") +
                              "   A name that is far longer than thirty-one characters\n" +
                              lineOf(20, 0, "30") + " 34x Barnard's Star\n";
    StarList list;
    ASSERT_EQ(readInto(list, dir.write("s.star", starFile(3, lines))).status, 1);
    EXPECT_STREQ(list.getStarArray()[0].commonName, "Alpha Centauri A");
    EXPECT_STREQ(list.getStarArray()[1].commonName, "A name that is far longer than ");
    // The name is what follows the 21st word, even where a number stopped inside a word.
    EXPECT_EQ(list.getStarArray()[2].hic, 34);
    EXPECT_STREQ(list.getStarArray()[2].commonName, "Barnard's Star");
}

TEST(StarFile, HeaderProblemsCountsAndWhatTheQuietFlagSilences) {
    ScratchDir dir;
    const std::string missing = dir.file("missing.star");
    struct Case {
        std::string text;
        int line;
        std::string what;  // "" for a missing file
        bool loud;         // printed even to a quiet reader
    };
    const std::string numMissing = "\tIdentifier [NUM_STARS] missing, is it a .star file?\n\n";
    const std::string notEnough = "\tNot enough data!\n";
    const std::vector<Case> cases = {
        {"STARS 3\nSIZE 1 16.4894\n1 1 1\n", 1, numMissing, false},
        {"NUM_STARS\nSIZE 1 16.4894\n1 1 1\n", 1, notEnough, false},
        {"NUM_STARS 99999999999\nSIZE 1 16.4894\n", 1, notEnough, false},
        {"NUM_STARS 1\nSCALE 1 16.4894\n1 1 1\n", 2,
         "\tIdentifier [SIZE] missing, is it a .star file?\n\n", true},
        {"NUM_STARS 1\nSIZE 1\n1 1 1\n", 2, notEnough, true},
        {"", 0, "", false},
    };
    for (int quiet : {0, 1}) {
        for (const Case& c : cases) {
            const std::string path = c.what.empty() ? missing : dir.write("s.star", c.text);
            StarList list;
            ReadResult r = readInto(list, path, 0, quiet);
            EXPECT_EQ(r.status, -1) << c.text;
            const std::string message =
                c.what.empty()
                    ? "Err : can't read file [" + missing + "]!\n\n"
                    : "Error : Line " + std::to_string(c.line) + " in [" + path + "]\n" + c.what;
            EXPECT_EQ(r.err, quiet && !c.loud ? "" : message) << c.text;
        }
    }
    StarList list;
    const std::string negative = dir.write("s.star", "NUM_STARS -4\nSIZE 1 16.4894\n");
    EXPECT_EQ(readInto(list, negative).err.rfind("Error : Line 1 in [" + negative + "]\n", 0), 0u);
    for (const char* text : {"NUM_STARS 1\nSIZE 1e38 16.4894\n1e300 0 0\n",
                             "NUM_STARS 1\nSIZE nan 16.4894\n1 0 0\n", ""})
        EXPECT_EQ(readInto(list, dir.write("s.star", text)).status, -1) << text;
}

TEST(StarFile, TheSunIsRecordZeroAndFilesMergeByDistanceNewStarFirstOnTies) {
    ScratchDir dir;
    StarList one;
    ASSERT_EQ(readInto(one, dir.write("s.star", starFile(2, "0.001 0 0\n2 0 0\n")), 1).status, 1);
    EXPECT_EQ(one.getNumRecords(), 3);
    EXPECT_EQ(one.getNumStars(), 2);
    const StarObj& sun = one.getStarArray()[0];
    EXPECT_STREQ(sun.commonName, "Sun");
    EXPECT_STREQ(sun.spectralClass, "G");
    EXPECT_STREQ(sun.spectralType, "V");
    EXPECT_FLOAT_EQ(sun.bv, 0.63f);
    EXPECT_EQ(sun.pos.w, 11.0);
    // Seen from its own record's distance the Sun has magnitude -26.75 on the shifted scale.
    EXPECT_NEAR(one.apparentMagnitude(-2.5f * std::log10(sun.lum), 11.0), -26.75f, 1e-3);

    const std::string a =
        dir.write("a.star", starFile(3,
                                     "4 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 1\n"
                                     "1 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 2\n"
                                     "9 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 3\n"));
    const std::string b =
        dir.write("b.star", starFile(2,
                                     "0 4 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 10\n"
                                     "0 0 2 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 20\n"));
    StarList list;
    const char* files[2] = {a.c_str(), b.c_str()};
    std::string out = cattest::stdoutOf([&] { EXPECT_EQ(list.readStarFiles(2, files), 1); });
    EXPECT_EQ(out, "    3 star objects from [" + a + "]\n    2 star objects from [" + b + "]\n");
    std::vector<int> hd;
    for (int i = 0; i < list.getNumRecords(); ++i)
        hd.push_back(list.getStarArray()[i].hd);
    EXPECT_EQ(hd, (std::vector<int>{2, 20, 10, 1, 3}));
    StarObj s;
    EXPECT_EQ(list.getStarByHD(&s, 7), -1);
    EXPECT_EQ(list.getStar(&s, 5), -1);

    // A bad file after a good one keeps the good one and adds nothing.
    const std::string bad = dir.write("c.star", starFile(2, "1 0 0\n2 0 0 0 0\n"));
    const char* twoFiles[2] = {a.c_str(), bad.c_str()};
    StarList kept;
    std::string err = stderrOf([&] { EXPECT_EQ(kept.readStarFiles(2, twoFiles, 1, 0), -1); });
    EXPECT_EQ(kept.getNumRecords(), 4);
    EXPECT_NE(err.find("invalid data format"), std::string::npos);
}

TEST(StarFile, ReadsFilesPackedInTheContainer) {
    ScratchDir dir;
    std::string text = starFile(2, "# packed\n1 0 0\n0 3 0 0.1\n");
    std::string packed = dir.file("packed.star");
    std::FILE* out = std::fopen(packed.c_str(), "wb");
    ASSERT_NE(out, nullptr);
    ASSERT_EQ(
        WriteDeflateZip(out, reinterpret_cast<const unsigned char*>(text.data()), text.size()), 1);
    std::fclose(out);
    StarList list;
    ReadResult r = readInto(list, packed);
    ASSERT_EQ(r.status, 1) << r.err;
    EXPECT_FLOAT_EQ(list.getStarArray()[1].distErr, 0.1f);
    unsigned char data[6] = {1, 2, 3, 4, 5, 6};
    list.swapBytes(data, 2, 3);
    EXPECT_EQ(std::vector<unsigned char>(data, data + 6),
              (std::vector<unsigned char>{3, 2, 1, 6, 5, 4}));
}

TEST(StarFileBadInput, HugeCountsLongLinesBinaryContentAndFailedAllocations) {
    ScratchDir dir;
    StarList list;
    largestAllocation = 0;
    ASSERT_EQ(list.setAllocator(countingAllocate, std::free), 1);
    std::string path = dir.write("s.star", "NUM_STARS 2000000000\nSIZE 1 16.4894\n1 1 1\n2 2 2\n");
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err, "Error : Line 5 in [" + path + "]\n\tNot enough data!\n");
    EXPECT_LT(largestAllocation, 100000u);

    std::string longLine = "1 2 3 " + std::string(600, 'x');
    path = dir.write("s.star", starFile(2, longLine + "\n1 1 1\n"));
    r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(
        r.err.rfind("Error : Line 3 in [" + path + "]:\n\t[" + longLine.substr(0, 511) + "]\n", 0),
        0u);
    EXPECT_NE(r.err.find("longer than 511 characters"), std::string::npos);

    std::string binary = "NUM_STARS 3\nSIZE 1 16.4894\n";
    for (int i = 0; i < 4000; ++i)
        binary += static_cast<char>((i * 7919) % 256);
    r = readInto(list, dir.write("s.star", binary));
    EXPECT_EQ(r.status, -1);
    EXPECT_FALSE(r.err.empty());
    std::string withNul = "NUM_STARS 1\nSIZE 1 16.4894\n1 2";
    withNul += '\0';
    EXPECT_EQ(readInto(list, dir.write("s.star", withNul + " 3\n")).status, -1);

    // An allocator that fails, and one set on a list that already holds stars.
    path = dir.write("s.star", starFile(2, "1 1 1\n2 2 2\n"));
    StarList failing;
    ASSERT_EQ(failing.setAllocator(failingAllocate, std::free), 1);
    int count = 7;
    std::string err =
        stderrOf([&] { EXPECT_EQ(failing.readStarObj(path.c_str(), &count, 0), nullptr); });
    EXPECT_EQ(err, "Error (StarList::readStarObj) allocating memory [720] to obj.\n");
    err = stderrOf([&] { EXPECT_EQ(failing.readStarFiles(path.c_str(), 1, 0), -1); });
    EXPECT_EQ(err, "Err: StarList::readStarFiles : Can't allocate memory.\n");
    StarList filled;
    ASSERT_EQ(readInto(filled, path).status, 1);
    EXPECT_EQ(filled.setAllocator(countingAllocate, std::free), -1);
}
