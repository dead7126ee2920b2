// Reading a movie script file into a MovieRecord.

#include <cmath>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "movie/guides.h"
#include "movie/movie_record.h"
#include "movie/script_lines.h"
#include "movie/session.h"
#include "movie/view_block.h"

namespace {

// Largest window a script may ask for, per side.
constexpr long long kMaxWindowSize = 16384;
// Largest keyframe frame number; keeps every frame count of a movie within an int.
constexpr double kMaxFrameNumber = 1000000000.0;
// No keyframe block can be written in fewer bytes (header, separator and five view lines),
// so a count beyond file size / this cannot be honest.
constexpr long long kMinKeyFrameBytes = 32;
// Keyframe indices are ints.
constexpr int kMaxKeyFrames = 2147483647;

struct InterpWord {
    const char* word;
    int method;
};
const InterpWord kInterpWords[] = {
    {"linear", INTERP_LINEAR},
    {"spline", INTERP_SPLINE},
    {"linear-quat", INTERP_LINEAR_QUAT},
    {"spline-quat", INTERP_SPLINE_QUAT},
    {"linear-fovy", INTERP_LINEAR_FOVY},
    {"spline-fovy", INTERP_SPLINE_FOVY},
    {"linear-aspect-ratio", INTERP_LINEAR_ASPECT},
    {"spline-aspect-ratio", INTERP_SPLINE_ASPECT},
};

struct FileCloser {
    void operator()(std::FILE* fp) const { std::fclose(fp); }
};

// Size of a regular file in bytes, or -1 when it cannot be told (a pipe, for instance).
long long fileSize(std::FILE* fp) {
    if (std::fseek(fp, 0, SEEK_END) != 0) return -1;
    long size = std::ftell(fp);
    if (std::fseek(fp, 0, SEEK_SET) != 0) return -1;
    return size;
}

}  // namespace

class ScriptLoader {
  public:
    ScriptLoader(MovieRecord& record, std::FILE* fp, long long size, bool quiet)
        : record_(record), lines_(fp), fileSize_(size), sessionReader_(quiet) {}

    int load();

  private:
    int readHeader();
    int readResolution();
    int readInterp();
    int readCount(long long& count);
    int readDefinitions(long long count, std::string& header);
    int readKeyFrame(const std::string& header, bool last, std::string& nextHeader);
    int readKeyFrameHeader(const std::string& line, KeyFrame& k);
    int readFactors(const std::vector<std::string>& tokens, std::size_t& next,
                    ChannelFactors& factors);
    int readSessionLines(const KeyFrame& k);
    // The next data line, with the end-of-file message; -1 at the end or on a bad line.
    int needDataLine(std::string& line);

    MovieRecord& record_;
    ScriptLines lines_;
    long long fileSize_;
    SessionReader sessionReader_;
};

int ScriptLoader::needDataLine(std::string& line) {
    LineStatus status = lines_.readDataLine(line);
    if (status == LineStatus::Failed) return -1;
    if (status == LineStatus::End) {
        std::fprintf(stderr, "Err : (line %d) Encounter EOF without the data.\n",
                     lines_.lineNumber());
        return -1;
    }
    return 1;
}

int ScriptLoader::readHeader() {
    std::string line;
    LineStatus status = lines_.readLine(line);
    if (status == LineStatus::Failed) return -1;
    if (status == LineStatus::End || line != "Movie Script") {
        std::fprintf(stderr, "Err : (line %d) Wrong/Missing script header [Movie Script]\n\n",
                     status == LineStatus::End ? 1 : lines_.lineNumber());
        return -1;
    }
    status = lines_.readLine(line);
    if (status == LineStatus::Failed) return -1;
    if (status == LineStatus::End || !isSeparatorLine(line)) {
        std::fprintf(stderr, "Err : (line %d) should be ----- after header [Movie Script]\n\n",
                     status == LineStatus::End ? 2 : lines_.lineNumber());
        return -1;
    }
    return 1;
}

int ScriptLoader::readResolution() {
    std::string line;
    if (needDataLine(line) < 0) return -1;
    const int n = lines_.lineNumber();
    std::vector<std::string> tokens = tokenize(line);
    if (tokens[0] != "resolution") {
        std::fprintf(stderr, "Err : (line %d) missing identifier [resolution]\n\n", n);
        return -1;
    }
    long long w = 0, h = 0;
    if (tokens.size() < 5 || tokens[1] != ":" || tokens[3] != "x" || !parseInteger(tokens[2], w) ||
        !parseInteger(tokens[4], h)) {
        std::fprintf(stderr, "Err : (line %d) format should be [resolution : <winW> x <winH>]\n\n",
                     n);
        return -1;
    }
    if (w <= 0 || h <= 0) {
        auto clampInt = [](long long v) {
            return static_cast<int>(v < -2147483647 ? -2147483647
                                                    : (v > 2147483647 ? 2147483647 : v));
        };
        std::fprintf(stderr, "Err : (line %d) Non-positive window sizes [%d x %d]\n\n", n,
                     clampInt(w), clampInt(h));
        return -1;
    }
    if (w > kMaxWindowSize || h > kMaxWindowSize) {
        std::fprintf(stderr, "Err : (line %d) window sizes too large [%s x %s] (max:%lld)\n\n", n,
                     tokens[2].c_str(), tokens[4].c_str(), kMaxWindowSize);
        return -1;
    }
    record_.width_ = static_cast<int>(w);
    record_.height_ = static_cast<int>(h);
    return 1;
}

int ScriptLoader::readInterp() {
    std::string line;
    if (needDataLine(line) < 0) return -1;
    const int n = lines_.lineNumber();
    std::vector<std::string> tokens = tokenize(line);
    if (tokens[0] != "interp") {
        std::fprintf(stderr, "Err : (line %d) missing identifier [interp]\n\n", n);
        return -1;
    }
    if (tokens.size() < 2 || tokens[1] != ":") {
        std::fprintf(stderr, "Err : (line %d) missing token [:] after [interp]\n\n", n);
        return -1;
    }
    for (std::size_t i = 2; i < tokens.size(); ++i) {
        if (tokens[i][0] == '#') break;  // trailing comment
        const InterpWord* found = nullptr;
        for (const InterpWord& w : kInterpWords)
            if (tokens[i] == w.word) found = &w;
        if (!found) {
            std::fprintf(stderr, "Err : (line %d) undefined interpolation method [%s]\n", n,
                         tokens[i].c_str());
            std::fprintf(stderr, "      valid interp method should be:\n");
            for (const InterpWord& w : kInterpWords)
                std::fprintf(stderr, "        - [%s]\n", w.word);
            return -1;
        }
        switch (found->method) {
            case INTERP_LINEAR:
            case INTERP_SPLINE:
                record_.interpMethod_ = found->method;
                break;
            case INTERP_LINEAR_QUAT:
            case INTERP_SPLINE_QUAT:
                record_.interpMethodQuat_ = found->method;
                break;
            case INTERP_LINEAR_FOVY:
            case INTERP_SPLINE_FOVY:
                record_.interpMethodFovy_ = found->method;
                break;
            default:
                record_.interpMethodAspect_ = found->method;
                break;
        }
    }
    return 1;
}

int ScriptLoader::readCount(long long& count) {
    std::string line;
    if (needDataLine(line) < 0) return -1;
    const int n = lines_.lineNumber();
    std::vector<std::string> tokens = tokenize(line);
    // The count is part of the three fields: a count that is not an integer leaves two.
    if (tokens.size() < 3 || !parseInteger(tokens[2], count)) {
        std::fprintf(stderr,
                     "Err : (line %d) the format should be [nKeyFrames : <# of keyframes>]\n\n", n);
        return -1;
    }
    if (tokens[0] != "nFrames" && tokens[0] != "nKeyFrames") {
        std::fprintf(stderr, "Err : (line %d) missing identifier [nFrames/nKeyFrames]\n\n", n);
        return -1;
    }
    if (tokens[1] != ":") {
        std::fprintf(stderr,
                     "Err : (line %d) the format should be [nKeyFrames : <# of keyframes>]\n\n", n);
        return -1;
    }
    if (count < 0) {
        std::fprintf(stderr, "Err : (line %d) number of keyframes should be positive\n\n", n);
        return -1;
    }
    if (fileSize_ >= 0 && count > fileSize_ / kMinKeyFrameBytes + 1) {
        std::fprintf(stderr,
                     "Err : (line %d) %s keyframes cannot fit in a script of %lld bytes\n\n", n,
                     tokens[2].c_str(), fileSize_);
        return -1;
    }
    if (count > kMaxKeyFrames) {
        std::fprintf(stderr, "Err : (line %d) too many keyframes [%s] (max:%d)\n\n", n,
                     tokens[2].c_str(), kMaxKeyFrames);
        return -1;
    }
    if (count == 0) std::fprintf(stderr, "warning: no keyframe in the scp file.\n");
    return 1;
}

int ScriptLoader::readDefinitions(long long count, std::string& header) {
    for (;;) {
        LineStatus status = lines_.readDataLine(header);
        if (status == LineStatus::Failed) return -1;
        if (status == LineStatus::End) {
            if (count == 0) return 0;
            std::fprintf(stderr, "Err: (line %d) no more keyframe to read?\n\n",
                         lines_.lineNumber());
            return -1;
        }
        std::vector<std::string> tokens = tokenize(header);
        if (tokens[0] != "define") return 1;
        if (record_.definitions_.readDefinition(header, tokens, lines_.lineNumber()) < 0) return -1;
    }
}

int ScriptLoader::readFactors(const std::vector<std::string>& tokens, std::size_t& next,
                              ChannelFactors& factors) {
    const int n = lines_.lineNumber();
    const char* id = tokens[next - 1].c_str();
    double v[3];
    for (int i = 0; i < 3; ++i) {
        if (next >= tokens.size() || !parseNumber(tokens[next], v[i])) {
            std::fprintf(stderr, "Err : (line %d) failed to read 3 arguments after [%s].\n", n, id);
            return -1;
        }
        ++next;
    }
    if (!(v[0] >= 0.0 && v[0] <= 10.0)) {
        std::fprintf(stderr, "Err : (line %d) level-factor (1st arg. of %s) ranges [%.1f,%.1f]\n",
                     n, id, 0.0, 10.0);
        return -1;
    }
    // Factors scale tangents: an infinite one would turn the whole path into infinities.
    if (!(v[1] > 0.0) || std::isinf(v[1])) {
        std::fprintf(stderr, "Err : (line %d) in-factor (2nd arg. of %s) should be positive\n", n,
                     id);
        return -1;
    }
    if (!(v[2] > 0.0) || std::isinf(v[2])) {
        std::fprintf(stderr, "Err : (line %d) out-factor (3rd arg. of %s) should be positive\n", n,
                     id);
        return -1;
    }
    factors = {v[0], v[1], v[2]};
    return 1;
}

int ScriptLoader::readKeyFrameHeader(const std::string& line, KeyFrame& k) {
    const int n = lines_.lineNumber();
    std::vector<std::string> tokens = tokenize(line);
    if (tokens[0] != "KeyFrame") {
        std::fprintf(stderr, "Err : (line %d) Wrong keyframe header [%s]\n", n, tokens[0].c_str());
        return -1;
    }
    double frame = 0.0;
    if (tokens.size() < 2 || !parseNumber(tokens[1], frame)) {
        std::fprintf(stderr, "Err : (line %d) Missing frame number after [KeyFrame]\n", n);
        return -1;
    }
    const double previous =
        record_.keyFrames_.empty() ? -1.0 : record_.keyFrames_.back().frameNumber;
    if (!(frame > previous)) {
        std::fprintf(stderr, "Err : (line %d) incorrect frame number.\n", n);
        return -1;
    }
    if (frame > kMaxFrameNumber) {
        std::fprintf(stderr, "Err : (line %d) frame number [%s] too large (max:%.0f).\n", n,
                     tokens[1].c_str(), kMaxFrameNumber);
        return -1;
    }
    // Frames are whole: a fractional keyframe would make the frame counts of its segments
    // disagree with the numbers written in the script.
    if (frame != std::floor(frame)) {
        std::fprintf(stderr, "Err : (line %d) frame number [%s] should be a whole number.\n", n,
                     tokens[1].c_str());
        return -1;
    }
    k.frameNumber = frame;
    k.nFrames = static_cast<int>(frame - previous - 1.0);

    for (std::size_t next = 2; next < tokens.size();) {
        const std::string& id = tokens[next++];
        if (id[0] == '#') break;
        if (id == "Break") {
            k.isBreak = 1;
        } else if (id == "FPos") {
            if (readFactors(tokens, next, k.posFactors) < 0) return -1;
        } else if (id == "FQuat") {
            if (readFactors(tokens, next, k.quatFactors) < 0) return -1;
        } else if (id == "FFov") {
            if (readFactors(tokens, next, k.fovyFactors) < 0) return -1;
        } else if (id == "FAspect") {
            if (readFactors(tokens, next, k.aspectFactors) < 0) return -1;
        } else {
            std::fprintf(stderr, "Err : (line %d) unknown identifiers [%s] after [KeyFrame %%d].\n",
                         n, id.c_str());
            std::fprintf(stderr, "       valid subID are [Break],\n");
            std::fprintf(stderr, "                       [FPos],\n");
            std::fprintf(stderr, "                       [FQuat],\n");
            std::fprintf(stderr, "                       [FFov],\n");
            std::fprintf(stderr, "                    OR [FAspect].\n");
            return -1;
        }
    }
    return 1;
}

int ScriptLoader::readSessionLines(const KeyFrame& k) {
    const int index = record_.numKeyFrames();
    std::string line;
    for (;;) {
        if (needDataLine(line) < 0) return -1;
        if (isSeparatorLine(line)) return 1;
        if (sessionReader_.readSessionLine(tokenize(line), lines_.lineNumber(), index,
                                           k.frameNumber, record_.sessions_) < 0)
            return -1;
    }
}

int ScriptLoader::readKeyFrame(const std::string& header, bool last, std::string& nextHeader) {
    KeyFrame k;
    k.interpMethod = record_.interpMethod_;
    k.interpMethodQuat = record_.interpMethodQuat_;
    k.interpMethodFovy = record_.interpMethodFovy_;
    k.interpMethodAspect = record_.interpMethodAspect_;
    if (readKeyFrameHeader(header, k) < 0) return -1;
    if (readSessionLines(k) < 0) return -1;
    if (readViewBlock(lines_, k.view) < 0) return -1;
    k.guideIn = k.view;
    k.guideOut = k.view;

    for (;;) {
        LineStatus status = lines_.readDataLine(nextHeader);
        if (status == LineStatus::Failed) return -1;
        if (status == LineStatus::End) {
            if (last) break;
            std::fprintf(stderr, "Err : (line %d) Encounter EOF without the data.\n",
                         lines_.lineNumber());
            return -1;
        }
        std::vector<std::string> tokens = tokenize(nextHeader);
        if (tokens[0] == "KeyFrame") break;
        if (tokens[0] == "GuideFrame" && tokens.size() >= 2 &&
            (tokens[1] == "In" || tokens[1] == "Out")) {
            bool in = tokens[1] == "In";
            if (readViewBlock(lines_, in ? k.guideIn : k.guideOut) < 0) return -1;
            (in ? k.guideInGiven : k.guideOutGiven) = 1;
            continue;
        }
        if (last) break;  // text after the last keyframe is not read
        std::fprintf(stderr, "Err : (line %d) unknown identifier in [%s].\n", lines_.lineNumber(),
                     nextHeader.c_str());
        return -1;
    }

    k.index = record_.numKeyFrames();
    try {
        record_.keyFrames_.push_back(k);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr,
                     "Err : (line %d) MovieRecord::loadRecord : Can't allocate memory for "
                     "KeyFrames!\n",
                     lines_.lineNumber());
        return -1;
    }
    return 1;
}

int ScriptLoader::load() {
    if (readHeader() < 0 || readResolution() < 0 || readInterp() < 0) return -1;
    long long count = 0;
    if (readCount(count) < 0) return -1;
    std::string header;
    int found = readDefinitions(count, header);
    if (found < 0) return -1;
    for (long long i = 0; i < count; ++i) {
        std::string nextHeader;
        if (readKeyFrame(header, i == count - 1, nextHeader) < 0) return -1;
        header.swap(nextHeader);
    }
    if (sessionReader_.checkAllClosed() < 0) return -1;

    std::vector<KeyFrame>& keys = record_.keyFrames_;
    const std::size_t n = keys.size();
    for (std::size_t i = 0; i < n; ++i) {
        applySessions(record_.sessions_, keys[i]);
        computeGuides(keys[i], i > 0 ? &keys[i - 1] : nullptr, i + 1 < n ? &keys[i + 1] : nullptr);
    }
    return 1;
}

int MovieRecord::loadRecord(const char* fileName, int quiet) {
    clear();
    if (!fileName) fileName = "";
    std::unique_ptr<std::FILE, FileCloser> fp(std::fopen(fileName, "r"));
    if (!fp) {
        std::fprintf(stderr, "Err : Can't open [%s]\n", fileName);
        return -1;
    }
    if (!quiet) std::printf("loading movie script [%s]...\n", fileName);
    ScriptLoader loader(*this, fp.get(), fileSize(fp.get()), quiet != 0);
    if (loader.load() < 0) return -1;
    if (!quiet)
        std::printf("  %d x %d, %d keyframes, %d frames, %d sessions, %d definitions\n", width_,
                    height_, numKeyFrames(), totalNumFrame(), numSessions(), definitions_.count());
    return 1;
}
