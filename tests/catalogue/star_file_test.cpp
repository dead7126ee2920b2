// Reading .star dataset files: the data line format, every check and its message, the Sun
// record, sorting and merging, and files a user could really have that are wrong.

#include <gtest/gtest.h>

#include <cmath>
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

std::string lineOf(int fields) {
    std::string line;
    for (int i = 0; i < fields; ++i)
        line += (i ? " " : "") + kTokens[i];
    return line;
}

const char* const kInvalidFormat = "\tThis data line is of invalid data format!\n\n";

std::string invalidFormatMessage(int lineNo, const std::string& file, const std::string& line) {
    return "Error : Line " + std::to_string(lineNo) + " in [" + file + "]:\n\t[" + line + "]\n" +
           kInvalidFormat;
}

// Reads one file into a fresh list; returns the result and what was printed on stderr.
struct ReadResult {
    int status;
    std::string err;
};
ReadResult readInto(StarList& list, const std::string& path, int includeSun = 0, int quiet = 0) {
    ReadResult r{};
    r.err = stderrOf([&] { r.status = list.readStarFiles(path.c_str(), includeSun, quiet); });
    return r;
}

}  // namespace

TEST(StarFile, AcceptsEveryAllowedFieldCountAndFillsTheMissingFields) {
    ScratchDir dir;
    for (int n : {3, 4, 7, 10, 11, 12, 16, 17, 18, 19, 20, 21, 22}) {
        SCOPED_TRACE(n);
        std::string path = dir.write("s.star", starFile(1, lineOf(n) + "\n"));
        StarList list;
        ReadResult r = readInto(list, path);
        ASSERT_EQ(r.status, 1) << r.err;
        ASSERT_EQ(list.getNumStars(), 1);
        StarObj s;
        ASSERT_EQ(list.getStar(&s, 0), 1);
        EXPECT_DOUBLE_EQ(s.catalogPos.x, 3.0);
        EXPECT_DOUBLE_EQ(s.catalogPos.w, 16.4894f);
        EXPECT_NEAR(s.pos.w, 16.4894f + std::log10(5.0), 1e-9);
        EXPECT_FLOAT_EQ(s.distErr, n >= 4 ? 0.05f : 0.0f);
        EXPECT_DOUBLE_EQ(s.vel.z, n >= 7 ? 30.0 : 0.0);
        EXPECT_FLOAT_EQ(s.lum, n >= 12 ? 2.0f : 0.0f);
        EXPECT_FLOAT_EQ(s.fileColor[3], n >= 16 ? 0.8f : 0.8f);
        EXPECT_FLOAT_EQ(s.fileColor[0], n >= 16 ? 0.5f : 0.8f);
        EXPECT_STREQ(s.spectralClass, n >= 17 ? "G" : "---");
        EXPECT_STREQ(s.spectralType, n >= 19 ? "V" : "---");
        EXPECT_EQ(s.hd, n >= 20 ? 1234 : 0);
        EXPECT_EQ(s.hic, n >= 21 ? 5678 : 0);
        EXPECT_STREQ(s.commonName, n >= 22 ? "Alpha Centauri A" : "---");
        EXPECT_STREQ(s.constellationName, "---");
        EXPECT_STREQ(s.constellationCode, "---");
        EXPECT_EQ(s.numPlanets, 0);
        EXPECT_EQ(s.planets, nullptr);
        if (n == 3) {
            EXPECT_EQ(s.homeMag, 0.0f);
        }
    }
}

TEST(StarFile, RejectsTheFieldCountsBetweenTheAllowedOnes) {
    ScratchDir dir;
    for (int n : {1, 2, 5, 6, 8, 9, 13, 14, 15}) {
        SCOPED_TRACE(n);
        std::string path = dir.write("s.star", starFile(1, "# a comment\n" + lineOf(n) + "\n"));
        StarList list;
        ReadResult r = readInto(list, path);
        EXPECT_EQ(r.status, -1);
        EXPECT_EQ(r.err, invalidFormatMessage(4, path, lineOf(n)));
        EXPECT_EQ(list.getNumRecords(), 0);
    }
}

TEST(StarFile, HomeMagnitudeIsTheMagnitudeSeenFromTheSun) {
    ScratchDir dir;
    // Luminosity 1 (absolute magnitude 0) at 10 pc: V = 0 on the unshifted scale.
    std::string path = dir.write("s.star", starFile(1, "10 0 0 0 0 0 0 0 0 0 0.6 1\n"));
    StarList list;
    ASSERT_EQ(readInto(list, path).status, 1);
    StarObj s;
    list.getStar(&s, 0);
    EXPECT_NEAR(s.homeMag, 0.0f, 1e-4);
    EXPECT_NEAR(s.absMag, 0.0f, 1e-6);
}

TEST(StarFile, LuminosityClassMustBeOneOfTheFive) {
    ScratchDir dir;
    std::vector<std::string> base(kTokens.begin(), kTokens.begin() + 19);
    for (const char* type : {"I", "II", "III", "IV", "V", "---"}) {
        base[18] = type;
        std::string line;
        for (auto& t : base)
            line += t + " ";
        StarList list;
        EXPECT_EQ(readInto(list, dir.write("s.star", starFile(1, line + "\n"))).status, 1) << type;
    }
    for (const char* type : {"Ia", "IV-V", "VI", "v"}) {
        base[18] = type;
        std::string line;
        for (size_t i = 0; i < base.size(); ++i)
            line += (i ? " " : "") + base[i];
        std::string path = dir.write("s.star", starFile(1, line + "\n"));
        StarList list;
        ReadResult r = readInto(list, path);
        EXPECT_EQ(r.status, -1) << type;
        EXPECT_EQ(r.err,
                  "Err (line 3): undefined spectral sequence [I,II,III,IV,V] :\n\t[" + line + "]");
    }
}

TEST(StarFile, CommonNameKeepsBlanksDropsTrailingOnesAndIsCutAt31) {
    ScratchDir dir;
    std::string head = lineOf(21) + " ";
    std::string lines = head + "Alpha Centauri A   \t\r\n" + head +
                        "  A name that is far longer than thirty-one characters\n";
    std::string path = dir.write("s.star", starFile(2, lines));
    StarList list;
    ASSERT_EQ(readInto(list, path).status, 1);
    StarObj a, b;
    list.getStar(&a, 0);
    list.getStar(&b, 1);
    EXPECT_STREQ(a.commonName, "Alpha Centauri A");
    EXPECT_STREQ(b.commonName,
                 std::string("A name that is far longer than thirty-one").substr(0, 31).c_str());
    EXPECT_EQ(std::strlen(b.commonName), 31u);
    // The name is what follows the 21st word, even where a number stopped inside a word.
    std::string odd = lineOf(20) + " 34x Barnard's Star";
    path = dir.write("s.star", starFile(1, odd + "\n"));
    StarList other;
    ASSERT_EQ(readInto(other, path).status, 1);
    EXPECT_EQ(other.getStarArray()[0].hic, 34);
    EXPECT_STREQ(other.getStarArray()[0].commonName, "Barnard's Star");
}

TEST(StarFile, CommentAndBlankLinesAreSkippedButCountedInLineNumbers) {
    ScratchDir dir;
    std::string bad = "1 2 3 -0.5";
    std::string path = dir.write(
        "s.star", starFile(2, "# header comment\n\n   # indented\n1 1 1\n \t\n" + bad + "\n"));
    StarList list;
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err, "Error : Line 8 in [" + path + "]:\n\t[" + bad +
                         "]\n\tpercentage error in distance should be non-negative.\n");
}

TEST(StarFile, ValueChecksComeInOrderWithTheirMessages) {
    ScratchDir dir;
    const char* channel[4] = {"Red", "Green", "Blue", "Alpha"};
    for (int c = 0; c < 4; ++c) {
        std::vector<std::string> t(kTokens.begin(), kTokens.begin() + 16);
        t[12 + c] = "1.5";
        t[3] = c == 3 ? "-1" : "0.1";  // a bad distance error is reported before any colour
        std::string line;
        for (auto& s : t)
            line += s + " ";
        std::string path = dir.write("s.star", starFile(1, line + "\n"));
        StarList list;
        ReadResult r = readInto(list, path);
        EXPECT_EQ(r.status, -1);
        if (c == 3) {
            EXPECT_NE(r.err.find("percentage error in distance"), std::string::npos) << r.err;
        } else {
            EXPECT_EQ(r.err, "Error : Line 3 in [" + path + "]\n\tThe " + channel[c] +
                                 " Channel is out of range [0,1]\n\n");
        }
    }
    std::vector<std::string> t(kTokens.begin(), kTokens.begin() + 18);
    t[17] = "10.5";
    std::string line;
    for (size_t i = 0; i < t.size(); ++i)
        line += (i ? " " : "") + t[i];
    std::string path = dir.write("s.star", starFile(1, line + "\n"));
    StarList list;
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.err,
              "Err (line 3): spectral number [10.500000] out of range [0,10] :\n\t[" + line + "]");
}

TEST(StarFile, HeaderProblemsAndWhatTheQuietFlagSilences) {
    ScratchDir dir;
    std::string noNum = dir.write("a.star", "STARS 3\nSIZE 1 16.4894\n1 1 1\n");
    std::string shortNum = dir.write("b.star", "NUM_STARS\nSIZE 1 16.4894\n1 1 1\n");
    std::string noSize = dir.write("c.star", "NUM_STARS 1\nSCALE 1 16.4894\n1 1 1\n");
    std::string shortSize = dir.write("d.star", "NUM_STARS 1\nSIZE 1\n1 1 1\n");
    std::string missing = dir.file("missing.star");
    for (int quiet : {0, 1}) {
        StarList list;
        ReadResult r = readInto(list, noNum, 0, quiet);
        EXPECT_EQ(r.status, -1);
        EXPECT_EQ(r.err, quiet
                             ? ""
                             : "Error : Line 1 in [" + noNum +
                                   "]\n\tIdentifier [NUM_STARS] missing, is it a .star file?\n\n");
        r = readInto(list, shortNum, 0, quiet);
        EXPECT_EQ(r.err, quiet ? "" : "Error : Line 1 in [" + shortNum + "]\n\tNot enough data!\n");
        r = readInto(list, missing, 0, quiet);
        EXPECT_EQ(r.err, quiet ? "" : "Err : can't read file [" + missing + "]!\n\n");
        // A wrong SIZE line is reported even to a quiet reader.
        r = readInto(list, noSize, 0, quiet);
        EXPECT_EQ(r.err, "Error : Line 2 in [" + noSize +
                             "]\n\tIdentifier [SIZE] missing, is it a .star file?\n\n");
        r = readInto(list, shortSize, 0, quiet);
        EXPECT_EQ(r.status, -1);
        EXPECT_EQ(r.err, "Error : Line 2 in [" + shortSize + "]\n\tNot enough data!\n");
    }
}

TEST(StarFile, FileEndingBeforeItsCountFailsWithNotEnoughData) {
    ScratchDir dir;
    std::string path = dir.write("s.star", starFile(3, "1 1 1\n# note\n2 2 2\n"));
    StarList list;
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err, "Error : Line 6 in [" + path + "]\n\tNot enough data!\n");
}

TEST(StarFile, TheSunIsRecordZeroAndTheFirstAfterMerging) {
    ScratchDir dir;
    std::string path = dir.write("s.star", starFile(2, "0.001 0 0\n2 0 0\n"));
    StarList list;
    ReadResult r = readInto(list, path, 1, 0);
    ASSERT_EQ(r.status, 1) << r.err;
    EXPECT_EQ(list.getNumRecords(), 3);
    EXPECT_EQ(list.getNumStars(), 2);
    StarObj sun;
    ASSERT_EQ(list.getStar(&sun, 0), 1);
    EXPECT_STREQ(sun.commonName, "Sun");
    EXPECT_STREQ(sun.spectralClass, "G");
    EXPECT_STREQ(sun.spectralType, "V");
    EXPECT_FLOAT_EQ(sun.bv, 0.63f);
    EXPECT_EQ(sun.pos.w, 11.0);
    EXPECT_EQ(sun.pos, sun.catalogPos);
    // Seen from its own record's distance the Sun has magnitude -26.75 on the shifted scale.
    EXPECT_NEAR(list.apparentMagnitude(-2.5f * std::log10(sun.lum), 11.0), -26.75f, 1e-3);
}

TEST(StarFile, FilesAreMergedByDistanceAndEqualDistancesPutTheNewStarFirst) {
    ScratchDir dir;
    std::string a = dir.write("a.star", starFile(3,
                                                 "4 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 1\n"
                                                 "1 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 2\n"
                                                 "9 0 0 0 0 0 0 0 0 0 0 0 1 1 1 1 A 1 V 3\n"));
    std::string b = dir.write("b.star", starFile(2,
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
}

TEST(StarFile, FailureKeepsTheEarlierFilesAndAddsNothingFromTheBadOne) {
    ScratchDir dir;
    std::string good = dir.write("a.star", starFile(2, "1 0 0\n2 0 0\n"));
    std::string bad = dir.write("b.star", starFile(2, "1 0 0\n2 0 0 0 0\n"));
    StarList list;
    const char* files[2] = {good.c_str(), bad.c_str()};
    int status = 0;
    std::string err = stderrOf([&] { status = list.readStarFiles(2, files, 1, 0); });
    EXPECT_EQ(status, -1);
    EXPECT_EQ(list.getNumRecords(), 3);  // the Sun and the good file
    EXPECT_NE(err.find(kInvalidFormat), std::string::npos);
}

TEST(StarFile, AccessorsFindCopyAndMoveRecords) {
    ScratchDir dir;
    std::string path = dir.write(
        "s.star", starFile(2, lineOf(20) + "\n" + "5 0 0 0 0 0 0 0 0 0 0 1 1 1 1 1 K 3 III 99\n"));
    StarList list;
    ASSERT_EQ(readInto(list, path).status, 1);
    StarObj s;
    EXPECT_EQ(list.getStar(&s, -1), -1);
    EXPECT_EQ(list.getStar(&s, 2), -1);
    ASSERT_EQ(list.getStarByHD(&s, 99), 1);
    EXPECT_STREQ(s.spectralType, "III");
    EXPECT_EQ(list.getStarByHD(&s, 7), -1);
    Phc p{0, 1, 0, 17.0};
    EXPECT_EQ(list.setStarPosition(1, p), 1);
    EXPECT_EQ(list.setStarPosition(2, p), -1);
    list.getStar(&s, 1);
    EXPECT_EQ(s.pos, p);
    EXPECT_EQ(s.catalogPos, p);

    unsigned char data[6] = {1, 2, 3, 4, 5, 6};
    list.swapBytes(data, 2, 3);
    EXPECT_EQ(std::vector<unsigned char>(data, data + 6),
              (std::vector<unsigned char>{3, 2, 1, 6, 5, 4}));
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
    EXPECT_EQ(list.getNumStars(), 2);
    EXPECT_FLOAT_EQ(list.getStarArray()[1].distErr, 0.1f);
}

// ---- Files that are wrong in ways a user could really meet ----

namespace {

std::size_t largestAllocation = 0;
void* countingAllocate(std::size_t n) {
    if (n > largestAllocation) largestAllocation = n;
    return std::malloc(n);
}
void* failingAllocate(std::size_t) {
    return nullptr;
}

}  // namespace

TEST(StarFileBadInput, HugeCountInASmallFileAllocatesLittleAndFails) {
    ScratchDir dir;
    std::string path = dir.write("s.star", "NUM_STARS 2000000000\nSIZE 1 16.4894\n1 1 1\n2 2 2\n");
    StarList list;
    largestAllocation = 0;
    ASSERT_EQ(list.setAllocator(countingAllocate, std::free), 1);
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err, "Error : Line 5 in [" + path + "]\n\tNot enough data!\n");
    EXPECT_LT(largestAllocation, 100000u);
}

TEST(StarFileBadInput, CountsThatDoNotFitOrAreNegative) {
    ScratchDir dir;
    StarList list;
    std::string path = dir.write("s.star", "NUM_STARS 99999999999\nSIZE 1 16.4894\n");
    EXPECT_EQ(readInto(list, path).err, "Error : Line 1 in [" + path + "]\n\tNot enough data!\n");
    path = dir.write("s.star", "NUM_STARS -4\nSIZE 1 16.4894\n");
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err.rfind("Error : Line 1 in [" + path + "]\n", 0), 0u) << r.err;
}

TEST(StarFileBadInput, NonFiniteNumbersAreAnInvalidFormat) {
    ScratchDir dir;
    for (const char* line :
         {"nan 1 1", "1 inf 1", "1 1 1e400", "1 1 1 0.1 0 0 0 0 0 0 0.5 nan", "1 1 1 1e50"}) {
        std::string path = dir.write("s.star", starFile(1, std::string(line) + "\n"));
        StarList list;
        ReadResult r = readInto(list, path);
        EXPECT_EQ(r.status, -1) << line;
        EXPECT_EQ(r.err, invalidFormatMessage(3, path, line));
    }
    // A scale that overflows the positions is caught too.
    std::string path = dir.write("s.star", "NUM_STARS 1\nSIZE 1e38 16.4894\n1e300 0 0\n");
    StarList list;
    EXPECT_EQ(readInto(list, path).status, -1);
    path = dir.write("s.star", "NUM_STARS 1\nSIZE nan 16.4894\n1 0 0\n");
    EXPECT_EQ(readInto(list, path).status, -1);
}

TEST(StarFileBadInput, OverLongLinesGarbageAndBinaryContent) {
    ScratchDir dir;
    std::string longLine = "1 2 3 " + std::string(600, 'x');
    std::string path = dir.write("s.star", starFile(2, longLine + "\n1 1 1\n"));
    StarList list;
    ReadResult r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(
        r.err.rfind("Error : Line 3 in [" + path + "]:\n\t[" + longLine.substr(0, 511) + "]\n", 0),
        0u);
    EXPECT_NE(r.err.find("longer than 511 characters"), std::string::npos);

    path = dir.write("s.star", starFile(1, "the quick brown fox\n"));
    EXPECT_EQ(readInto(list, path).err, invalidFormatMessage(3, path, "the quick brown fox"));

    std::string binary = "NUM_STARS 3\nSIZE 1 16.4894\n";
    for (int i = 0; i < 4000; ++i)
        binary += static_cast<char>((i * 7919) % 256);
    path = dir.write("s.star", binary);
    r = readInto(list, path);
    EXPECT_EQ(r.status, -1);
    EXPECT_FALSE(r.err.empty());

    path = dir.write("s.star", "");
    EXPECT_EQ(readInto(list, path).status, -1);
    std::string withNul = "NUM_STARS 1\nSIZE 1 16.4894\n1 2";
    withNul += '\0';
    withNul += " 3\n";
    path = dir.write("s.star", withNul);
    EXPECT_EQ(readInto(list, path).status, -1);
}

TEST(StarFileBadInput, AllocationFailureIsReportedWithTheRequestedSize) {
    ScratchDir dir;
    std::string path = dir.write("s.star", starFile(2, "1 1 1\n2 2 2\n"));
    StarList list;
    ASSERT_EQ(list.setAllocator(failingAllocate, std::free), 1);
    int count = 7;
    std::string err =
        stderrOf([&] { EXPECT_EQ(list.readStarObj(path.c_str(), &count, 0), nullptr); });
    EXPECT_EQ(err, "Error (StarList::readStarObj) allocating memory [720] to obj.\n");
    err = stderrOf([&] { EXPECT_EQ(list.readStarFiles(path.c_str(), 1, 0), -1); });
    EXPECT_EQ(err, "Err: StarList::readStarFiles : Can't allocate memory.\n");
}

TEST(StarFileBadInput, AllocatorCannotBeSwappedWhileArraysAreOwned) {
    ScratchDir dir;
    StarList list;
    ASSERT_EQ(readInto(list, dir.write("s.star", starFile(1, "1 1 1\n"))).status, 1);
    EXPECT_EQ(list.setAllocator(countingAllocate, std::free), -1);
}
