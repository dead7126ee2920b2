// Reading the constellation file into the constellation table: names and codes, boundary
// polylines turned into galactic directions, figure lines between catalogue stars, member
// stars and the brightest member of each constellation.
//
// Within a section each kind of block is read in two passes, as the file is laid out: the
// blocks are first counted (with their lines) to size the arrays, then read from their start
// again. The data lines of the file are held in memory (their size is that of the file), so
// that going back is only an index. Line numbers in messages are those of the file.

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "catalogue/constellation_sky.h"
#include "catalogue/star_list.h"
#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"
#include "image/data_file.h"

namespace {

constexpr std::string_view kConstellationKey = "CONSTELLATION";
constexpr std::size_t kNameOffsetAfterKey = 5;  // " " + three-letter code + " "

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

struct DataLine {
    std::size_t offset, length;
    int number;  // line number in the file, from 1
};

// The non-blank, non-comment lines of a file.
class DataLines {
  public:
    explicit DataLines(std::FILE* file) {
        TextLineReader reader(file);
        std::string_view line;
        while (reader.next(line)) {
            if (!reader.lastTooLong() && (isCommentLine(line) || isBlankLine(line))) continue;
            lines_.push_back({text_.size(), line.size(), reader.lineNumber()});
            text_.append(line.data(), line.size());
        }
        totalLines_ = reader.lineNumber();
    }
    std::size_t size() const { return lines_.size(); }
    std::string_view text(std::size_t i) const {
        return std::string_view(text_).substr(lines_[i].offset, lines_[i].length);
    }
    int number(std::size_t i) const { return lines_[i].number; }
    int totalLines() const { return totalLines_; }

  private:
    std::string text_;
    std::vector<DataLine> lines_;
    int totalLines_ = 0;
};

// The words of a line as "%s %s %s" converts them: how many (up to three) and which.
struct Words {
    int count = 0;
    std::string_view word[3];
};

Words scanWords(std::string_view line) {
    Words w;
    TextScanner scan(line);
    while (w.count < 3 && scan.scanWord(w.word[w.count]))
        ++w.count;
    return w;
}

bool isBlockLine(std::string_view line, std::string_view kind, std::string_view which) {
    const Words w = scanWords(line);
    return w.count == 2 && w.word[0] == kind && w.word[1] == which;
}

std::string_view firstWord(std::string_view line) {
    std::string_view word;
    TextScanner(line).scanWord(word);
    return word;
}

void copyText(char* dest, std::size_t size, std::string_view text) {
    const std::size_t n = text.size() < size - 1 ? text.size() : size - 1;
    std::memcpy(dest, text.data(), n);
    dest[n] = '\0';
}

// "HD<number>", with a number that fits an int.
bool parseHDWord(std::string_view word, int& hd) {
    if (word.size() < 3 || word.substr(0, 2) != "HD") return false;
    const std::string_view digits = word.substr(2);
    TextScanner scan(digits);
    int value = 0;
    if (!scan.scanInt(value) || !scan.rest().empty()) return false;
    hd = value;
    return true;
}

// Thrown out of a section that cannot be read, after its message has been printed.
struct ConstellationSectionError {};

}  // namespace

int StarList::loadConstellations(const char* fileName) {
    if (fileName == nullptr) fileName = "";
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        std::fprintf(stderr, "ERR : reading [%s]\n", fileName);
        return -1;
    }
    if (fileName != param.constellationFile) {
        std::strncpy(param.constellationFile, fileName, kStarParameterPathSize - 1);
        param.constellationFile[kStarParameterPathSize - 1] = '\0';
    }
    const DataLines lines(in.file);

    releaseConstellations();
    resetConstellationNames();

    std::size_t numHeaders = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (firstWord(lines.text(i)) == kConstellationKey) ++numHeaders;
    }
    if (numHeaders == 0 && lines.size() > 0) {
        // Data without a single section is not a constellation file.
        std::fprintf(stderr, "Err (line %d): missing identifier [CONSTELLATION]\n",
                     lines.number(0));
        return -1;
    }
    Constellation* table = allocateArray<Constellation>(numHeaders);
    if (table == nullptr) {
        std::fprintf(stderr, "Err: Failed to allocate memory for constellation.\n\n");
        return -1;
    }
    constellations = table;
    numConstellations = 0;

    // The first star of each HD number.
    std::unordered_map<int, int> starOfHD;
    starOfHD.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        if (stars[i].hd > 0) starOfHD.emplace(stars[i].hd, i);
    }

    auto invalid = [&](std::size_t i) {
        const std::string text(lines.text(i));
        std::fprintf(stderr, "Err (line %d): invalid data\n", lines.number(i));
        std::fprintf(stderr, "[%s]\n", text.c_str());
        return ConstellationSectionError{};
    };
    auto notEnough = [&]() {
        std::fprintf(stderr, "Err (line %d): not enough data\n", lines.totalLines());
        return ConstellationSectionError{};
    };
    // Counts the blocks of one kind from line p: the number of lines in each.
    auto countBlocks = [&](std::size_t p, std::string_view kind, std::vector<int>& sizes) {
        sizes.clear();
        while (p < lines.size() && isBlockLine(lines.text(p), kind, "BEGIN")) {
            ++p;
            int n = 0;
            for (;;) {
                if (p >= lines.size()) throw notEnough();
                if (isBlockLine(lines.text(p++), kind, "END")) break;
                ++n;
            }
            sizes.push_back(n);
        }
    };

    std::size_t pos = 0;
    std::vector<int> sizes;
    for (std::size_t c = 0; c < numHeaders && pos < lines.size(); ++c) {
        Constellation& con = table[c];
        con.brightestIndex = -1;
        numConstellations = static_cast<std::int32_t>(c + 1);
        try {
            // Header.
            const std::string_view header = lines.text(pos);
            const Words head = scanWords(header);
            if (head.count < 1 || head.word[0] != kConstellationKey) {
                std::fprintf(stderr, "Err (line %d): missing identifier [CONSTELLATION]\n",
                             lines.number(pos));
                throw ConstellationSectionError{};
            }
            if (head.count < 2) throw invalid(pos);
            copyText(con.code, sizeof con.code, head.word[1]);
            const std::size_t nameAt =
                static_cast<std::size_t>(head.word[0].data() - header.data()) +
                kConstellationKey.size() + kNameOffsetAfterKey;
            copyText(con.name, sizeof con.name,
                     nameAt < header.size() ? trimTrailing(header.substr(nameAt)) : "");
            ++pos;

            // Boundary blocks: count, then read.
            countBlocks(pos, "BOUNDARY", sizes);
            if (!sizes.empty()) {
                con.boundaries = allocateArray<Phc*>(sizes.size());
                con.boundaryVertexCounts = allocateArray<std::int32_t>(sizes.size());
                if (con.boundaries == nullptr || con.boundaryVertexCounts == nullptr) {
                    std::fprintf(stderr,
                                 "Err: Failed to allocate memory for constellation "
                                 "boundaries.\n\n");
                    throw ConstellationSectionError{};
                }
            }
            for (std::size_t b = 0; b < sizes.size(); ++b) {
                ++pos;  // BOUNDARY BEGIN
                Phc* vertices = allocateArray<Phc>(static_cast<std::size_t>(sizes[b]));
                if (vertices == nullptr) {
                    std::fprintf(stderr, "Err: failed to allocate memory.\n\n");
                    throw ConstellationSectionError{};
                }
                con.boundaries[b] = vertices;
                con.boundaryVertexCounts[b] = sizes[b];
                con.numBoundaries = static_cast<std::int32_t>(b + 1);
                for (int v = 0; v < sizes[b]; ++v, ++pos) {
                    TextScanner scan(lines.text(pos));
                    double ra = 0.0, dec = 0.0;
                    std::string_view neighbour;
                    if (!scan.scanDouble(ra) || !scan.scanDouble(dec) ||
                        !scan.scanWord(neighbour) || scan.nonFinite()) {
                        throw invalid(pos);
                    }
                    vertices[v] = skyDirection(ra, dec, boundaryRadius);
                }
                ++pos;  // BOUNDARY END
            }

            // Figure blocks: count the star lines, then read.
            countBlocks(pos, "LINE", sizes);
            std::size_t starLines = 0;
            for (int n : sizes)
                starLines += static_cast<std::size_t>(n);
            if (!sizes.empty()) {
                con.lines = allocateArray<ConstellationLine>(starLines);
                if (con.lines == nullptr) {
                    std::fprintf(stderr,
                                 "Err: Failed to allocate memory for constellation lines.\n\n");
                    throw ConstellationSectionError{};
                }
            }
            for (int n : sizes) {
                ++pos;  // LINE BEGIN
                StarObj* previous = nullptr;
                for (int s = 0; s < n; ++s, ++pos) {
                    const Words w = scanWords(lines.text(pos));
                    int hd = 0;
                    const bool shared = w.count == 2 && w.word[1] == "SHARED";
                    if (!(w.count == 1 || shared) || !parseHDWord(w.word[0], hd)) {
                        throw invalid(pos);
                    }
                    const auto found = starOfHD.find(hd);
                    StarObj* star = found != starOfHD.end() ? &stars[found->second] : nullptr;
                    if (star != nullptr && previous != nullptr) {
                        con.lines[con.numLines++] = ConstellationLine{previous, star};
                    }
                    previous = star;
                    if (star == nullptr || shared) continue;

                    // A member star.
                    copyText(star->constellationName, sizeof star->constellationName, con.name);
                    copyText(star->constellationCode, sizeof star->constellationCode, con.code);
                    if (con.brightestStar == nullptr) {
                        con.brightestStar = allocateArray<StarObj>(1);
                        if (con.brightestStar == nullptr) {
                            std::fprintf(stderr,
                                         "Err: Failed to allocate memory for constellation.\n\n");
                            throw ConstellationSectionError{};
                        }
                    } else if (!(star->homeMag < con.brightestStar->homeMag)) {
                        continue;
                    }
                    *con.brightestStar = *star;
                    con.brightestStar->numPlanets = 0;
                    con.brightestStar->planets = nullptr;
                    con.brightestIndex = static_cast<std::int32_t>(found->second);
                }
                ++pos;  // LINE END
            }

            // The section ends at the next header or at the end of the file.
            if (pos < lines.size() && firstWord(lines.text(pos)) != kConstellationKey) {
                throw invalid(pos);
            }
        } catch (const ConstellationSectionError&) {
            // Keep the sections read completely before this one.
            releaseConstellation(con);
            numConstellations = static_cast<std::int32_t>(c);
            return -1;
        }
    }
    return 1;
}
