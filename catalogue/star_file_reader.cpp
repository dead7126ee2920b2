// Reading one .star dataset file into a new array of records.

#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

#include "catalogue/star_line.h"
#include "catalogue/star_list.h"
#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"
#include "image/data_file.h"

namespace {

constexpr long long kStarObjReportedSize = 360;  // record size named in allocation messages
// The shortest data line, "0 0 0", and the line end that separates it from the next one.
constexpr long long kMinDataLineBytes = 6;
// Records made at a time when the file size cannot be measured.
constexpr int kUnmeasuredChunk = 65536;

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

void printLine(const char* format, int lineNumber, const char* fileName, std::string_view line) {
    std::string text(line);
    std::fprintf(stderr, format, lineNumber, fileName, text.c_str());
}

}  // namespace

StarObj* StarList::readStarObj(const char* fileName, int* outCount, int quiet) {
    if (outCount != nullptr) *outCount = 0;
    if (fileName == nullptr) fileName = "";
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        if (!quiet) std::fprintf(stderr, "Err : can't read file [%s]!\n\n", fileName);
        return nullptr;
    }
    const long long fileBytes = remainingFileBytes(in.file);
    TextLineReader reader(in.file);
    std::string_view line;

    // Line 1: "NUM_STARS n".
    bool haveLine = reader.next(line);
    TextScanner head(haveLine ? line : std::string_view());
    std::string_view word;
    int numStars = 0;
    bool haveWord = head.scanWord(word);
    if (!haveWord || word != "NUM_STARS") {
        if (!quiet) {
            std::fprintf(stderr, "Error : Line %d in [%s]\n", 1, fileName);
            std::fprintf(stderr, "\tIdentifier [NUM_STARS] missing, is it a .star file?\n\n");
        }
        return nullptr;
    }
    if (!head.scanInt(numStars)) {
        if (!quiet) {
            std::fprintf(stderr, "Error : Line %d in [%s]\n", 1, fileName);
            std::fprintf(stderr, "\tNot enough data!\n");
        }
        return nullptr;
    }
    if (numStars < 0) {
        std::fprintf(stderr, "Error : Line %d in [%s]\n", 1, fileName);
        std::fprintf(stderr, "\tThe number of stars [%d] should be non-negative!\n\n", numStars);
        return nullptr;
    }

    // Line 2: "SIZE scale unit".
    haveLine = reader.next(line);
    TextScanner size(haveLine ? line : std::string_view());
    if (!size.scanWord(word) || word != "SIZE") {
        std::fprintf(stderr, "Error : Line %d in [%s]\n", 2, fileName);
        std::fprintf(stderr, "\tIdentifier [SIZE] missing, is it a .star file?\n\n");
        return nullptr;
    }
    float scale = 0.0f, unit = 0.0f;
    if (!size.scanFloat(scale) || !size.scanFloat(unit)) {
        std::fprintf(stderr, "Error : Line %d in [%s]\n", 2, fileName);
        std::fprintf(stderr, "\tNot enough data!\n");
        return nullptr;
    }
    if (size.nonFinite()) {
        std::fprintf(stderr, "Error : Line %d in [%s]\n", 2, fileName);
        std::fprintf(stderr, "\tThe scale and the unit should be finite numbers!\n\n");
        return nullptr;
    }

    // Never make more records than the rest of the file can hold: a data line takes at
    // least kMinDataLineBytes, so a huge count in a small file fails on its missing lines
    // without a huge allocation.
    long long rest = fileBytes < 0 ? -1 : fileBytes - reader.bytesConsumed();
    int capacity = numStars;
    if (rest >= 0) {
        long long fileLimit = (rest + 1) / kMinDataLineBytes;
        if (fileLimit < capacity) capacity = static_cast<int>(fileLimit);
    } else if (capacity > kUnmeasuredChunk) {
        capacity = kUnmeasuredChunk;
    }
    StarObj* records = allocateRecords<StarObj>(capacity > 0 ? capacity : 1);
    if (records == nullptr) {
        std::fprintf(stderr, "Error (StarList::readStarObj) allocating memory [%lld] to obj.\n",
                     static_cast<long long>(numStars) * kStarObjReportedSize);
        return nullptr;
    }
    auto fail = [&]() -> StarObj* {
        release(records);
        return nullptr;
    };

    const StarObj empty = makeEmptyStarObj();
    for (int i = 0; i < numStars; ++i) {
        if (!reader.nextDataLine(line) || (i >= capacity && rest >= 0)) {
            std::fprintf(stderr, "Error : Line %d in [%s]\n", reader.lineNumber() + 1, fileName);
            std::fprintf(stderr, "\tNot enough data!\n");
            return fail();
        }
        const int lineNo = reader.lineNumber();
        if (reader.lastTooLong()) {
            printLine("Error : Line %d in [%s]:\n\t[%s]\n", lineNo, fileName, line);
            std::fprintf(stderr, "\tThis data line is longer than %d characters!\n\n",
                         kMaxTextLine);
            return fail();
        }
        if (i >= capacity) {  // unmeasured file: grow
            int grown = capacity > numStars / 2 ? numStars : capacity * 2;
            StarObj* more = allocateRecords<StarObj>(grown);
            if (more == nullptr) {
                std::fprintf(stderr,
                             "Error (StarList::readStarObj) allocating memory [%lld] to obj.\n",
                             static_cast<long long>(numStars) * kStarObjReportedSize);
                return fail();
            }
            std::memcpy(static_cast<void*>(more), records, sizeof(StarObj) * capacity);
            release(records);
            records = more;
            capacity = grown;
        }

        StarObj& star = records[i];
        star = empty;
        bool nonFinite = false;
        int fields = scanStarDataLine(line, star, nonFinite);
        star.catalogPos.x *= scale;
        star.catalogPos.y *= scale;
        star.catalogPos.z *= scale;
        star.catalogPos.w = unit;
        if (!std::isfinite(star.catalogPos.x) || !std::isfinite(star.catalogPos.y) ||
            !std::isfinite(star.catalogPos.z)) {
            nonFinite = true;
        }
        if (!isAllowedFieldCount(fields) || nonFinite) {
            printLine("Error : Line %d in [%s]:\n\t[%s]\n", lineNo, fileName, line);
            std::fprintf(stderr, "\tThis data line is of invalid data format!\n\n");
            return fail();
        }
        if (star.distErr < 0.0f) {
            printLine("Error : Line %d in [%s]:\n\t[%s]\n", lineNo, fileName, line);
            std::fprintf(stderr, "\tpercentage error in distance should be non-negative.\n");
            return fail();
        }
        static const char* const kChannelMessages[4] = {
            "\tThe Red Channel is out of range [0,1]\n\n",
            "\tThe Green Channel is out of range [0,1]\n\n",
            "\tThe Blue Channel is out of range [0,1]\n\n",
            "\tThe Alpha Channel is out of range [0,1]\n\n",
        };
        for (int c = 0; c < 4; ++c) {
            if (star.fileColor[c] < 0.0f || star.fileColor[c] > 1.0f) {
                std::fprintf(stderr, "Error : Line %d in [%s]\n", lineNo, fileName);
                std::fputs(kChannelMessages[c], stderr);
                return fail();
            }
        }
        if (star.spectralNumber < 0.0f || star.spectralNumber > 10.0f) {
            std::string text(line);
            std::fprintf(stderr,
                         "Err (line %d): spectral number [%f] out of range [0,10] :\n\t[%s]",
                         lineNo, star.spectralNumber, text.c_str());
            return fail();
        }
        if (fields >= 19 && !isKnownSpectralType(star.spectralType)) {
            std::string text(line);
            std::fprintf(stderr,
                         "Err (line %d): undefined spectral sequence [I,II,III,IV,V] :\n\t[%s]",
                         lineNo, text.c_str());
            return fail();
        }

        star.pos = star.catalogPos;
        phcNormalize(star.pos);
        if (fields >= 4) {
            star.homeMag = apparentMagnitude(-2.5f * std::log10(star.lum), star.pos.w);
        } else {
            star.homeMag = 0.0f;
        }
    }
    if (outCount != nullptr) *outCount = numStars;
    return records;
}
