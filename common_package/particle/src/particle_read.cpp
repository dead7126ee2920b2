// Reading PARTICLE files; a file's particles and textures are appended to the list.

#include <GL/gl.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "common_package/glm/src/glm.h"
#include "common_package/particle/src/particle_internal.h"
#include "common_package/particle/src/particle_list.h"
#include "image/data_file.h"

namespace {

constexpr std::size_t kLineSize = 512;  // line buffer, terminating byte included
constexpr const char* kIdentifier = "PARTICLE";
// The shortest lines a file can hold: "texture a file b" and "0 0 0 0 0 0 0 0 a".
constexpr long long kShortestTextureLine = 17;
constexpr long long kShortestParticleLine = 18;

// The lines of a file, each cut at the line buffer's size, numbered from 1.
class LineReader {
  public:
    explicit LineReader(std::string text) : text_(std::move(text)) {}

    bool next(std::string* line) {
        if (pos_ >= text_.size()) return false;
        std::size_t end = text_.find('\n', pos_);
        if (end == std::string::npos) end = text_.size();
        *line = text_.substr(pos_, std::min(end - pos_, kLineSize - 1));
        if (!line->empty() && line->back() == '\r') line->pop_back();
        pos_ = end + 1;
        number_++;
        return true;
    }
    // The next line that is neither blank nor a comment.
    bool nextData(std::string* line) {
        while (next(line)) {
            std::size_t first = line->find_first_not_of(" \t\r\v\f");
            if (first != std::string::npos && (*line)[first] != '#') return true;
        }
        return false;
    }
    int number() const { return number_; }

  private:
    std::string text_;
    std::size_t pos_ = 0;
    int number_ = 0;
};

std::vector<std::string> words(const std::string& line) {
    std::vector<std::string> out;
    std::size_t pos = 0;
    while ((pos = line.find_first_not_of(" \t\r\v\f", pos)) != std::string::npos) {
        std::size_t end = line.find_first_of(" \t\r\v\f", pos);
        if (end == std::string::npos) end = line.size();
        out.push_back(line.substr(pos, end - pos));
        pos = end;
    }
    return out;
}

// "%d" and "%f" on one word: a number at its start; values beyond an int are clamped.
bool wordInt(const std::string& word, int* value) {
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(word.c_str(), &end, 10);
    if (end == word.c_str()) return false;
    if (v > 2147483647LL) v = 2147483647LL;
    if (v < -2147483647LL) v = -2147483647LL;
    *value = static_cast<int>(v);
    return true;
}

bool wordDouble(const std::string& word, double* value) {
    char* end = nullptr;
    *value = std::strtod(word.c_str(), &end);
    return end != word.c_str();
}

// How many leading words of a line convert as numbers (like the count scanf returns).
int leadingNumbers(const std::vector<std::string>& w, double* values, int count) {
    int n = 0;
    while (n < count && n < static_cast<int>(w.size()) && wordDouble(w[n], &values[n]))
        n++;
    return n;
}

}  // namespace

int ParticleList::read(const char* fileName, bool quiet) {
    const char* name = fileName != nullptr ? fileName : "";
    FILE* file = openDataFile(name, "r");
    if (file == nullptr) {
        if (!quiet) std::fprintf(stderr, "Err : can't open [%s] for reading\n", name);
        return -1;
    }
    std::string text;
    {
        char buffer[65536];
        std::size_t n;
        try {
            while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0)
                text.append(buffer, n);
        } catch (const std::bad_alloc&) {
            std::fclose(file);
            std::fprintf(stderr, "Err : can't open [%s] for reading\n", name);
            return -1;
        }
        std::fclose(file);
    }
    const long long fileBytes = static_cast<long long>(text.size());
    LineReader lines(std::move(text));

    // Line 1: identifier, particle count, texture count, exponent.
    std::string line;
    lines.next(&line);
    std::vector<std::string> head = words(line);
    int numParticles = 0, numTextures = 0;
    double exponent = 0.0;
    int fields = 0;
    if (!head.empty()) {
        fields = 1;
        if (head.size() > 1 && wordInt(head[1], &numParticles)) {
            fields = 2;
            if (head.size() > 2 && wordInt(head[2], &numTextures)) {
                fields = 3;
                if (head.size() > 3 && wordDouble(head[3], &exponent)) fields = 4;
            }
        }
    }
    if (head.empty() || head[0].compare(0, std::strlen(kIdentifier), kIdentifier) != 0) {
        if (!quiet) {
            std::fprintf(stderr, "Err : wrong identifier (line %d)\n", 1);
            std::fprintf(stderr, "      [%s] may not be particle file\n", name);
            std::fprintf(stderr, "      Particle file must start with [%s]\n", kIdentifier);
        }
        return -1;
    }
    if (fields < 4) {
        std::fprintf(stderr, "Err : not enough argument (line %d)\n", 1);
        return -1;
    }
    if (numParticles < 1) {
        std::fprintf(stderr, "Err : no particles to read in [%s]\n", name);
        return -1;
    }
    if (numTextures < 1) {
        std::fprintf(stderr, "Err : no textures defined in [%s]\n", name);
        return -1;
    }
    if (!std::isfinite(exponent)) {
        std::fprintf(stderr, "Err : invalid exponent (line %d)\n", 1);
        return -1;
    }
    // Counts are checked against what the file can hold before anything is allocated.
    if (numParticles * kShortestParticleLine + numTextures * kShortestTextureLine > fileBytes + 1 ||
        numParticles > kMaxParticles - numParticles_ ||
        numTextures > kMaxParticleTextures - numTextures_) {
        std::fprintf(stderr, "Err : [%s] is too short for %d particles and %d textures\n", name,
                     numParticles, numTextures);
        return -1;
    }

    std::vector<std::string> texStr;
    try {
        texStr.reserve(numTextures);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "Err : fail to allocate memory for texStr\n");
        return -1;
    }
    const bool appending = numParticles_ > 0 || numTextures_ > 0;
    try {
        particles_.reserve(numParticles_ + numParticles);
        texNames_.reserve(numTextures_ + numTextures);
        texRatios_.reserve(numTextures_ + numTextures);
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, appending ? "Err : fail to allocate memory for tmpPt/tmpTex/tmpTexR\n"
                                       : "Err : fail to allocate memory for particles/texNames/"
                                         "texRatio\n");
        return -1;
    }
    Array<int>(FnAllocator<int>(allocate_, release_)).swap(sortedIndex_);
    sortValid_ = false;

    std::vector<GLuint> newNames(numTextures, 0);
    glGenTextures(numTextures, newNames.data());
    for (GLuint n : newNames) {
        if (n == 0) {
            std::fprintf(stderr,
                         "Err (read) : cannot generate texture before OpenGL initializes!\n");
            std::fprintf(stderr,
                         "             please call particleList::read after OpenGL "
                         "initialized.\n\n");
            std::fflush(stdout);
            std::exit(1);
        }
    }
    const int firstNewTexture = numTextures_;
    auto releaseUnused = [&](int made) {
        if (made < numTextures) glDeleteTextures(numTextures - made, newNames.data() + made);
    };

    const std::string dir = glmDirName(name);
    for (int t = 0; t < numTextures; t++) {
        if (!lines.nextData(&line)) {
            std::fprintf(stderr, "Err : cannot find enough textures\n");
            std::fprintf(stderr, "      till the end of files\n");
            releaseUnused(t);
            return -1;
        }
        const int lineNumber = lines.number();
        std::vector<std::string> w = words(line);
        if (w.size() < 3) {
            std::fprintf(stderr, "Err : line %d does not have enough parameters\n\n", lineNumber);
            releaseUnused(t);
            return -1;
        }
        if (w[0].compare(0, 7, "texture") != 0) {
            std::fprintf(stderr, "Err : line %d\n", lineNumber);
            std::fprintf(stderr, "      Invalid identifier [%s]\n", w[0].c_str());
            releaseUnused(t);
            return -1;
        }
        const int texName = static_cast<int>(newNames[t]);
        float ratio = 1.0f;
        if (w[2] == "gaussian") {
            int c = 0;
            double sigma = 0.0;
            if (w.size() < 5 || !wordInt(w[3], &c) || !wordDouble(w[4], &sigma)) {
                std::fprintf(stderr, "Err : line %d does not have enough parameters\n\n",
                             lineNumber);
                releaseUnused(t);
                return -1;
            }
            if (c < 0 || c > 255) {
                std::fprintf(stderr, "Err : line %d\n", lineNumber);
                std::fprintf(stderr, "      c is out of range [0,255]\n");
                releaseUnused(t);
                return -1;
            }
            if (!(sigma > 0.0) || !std::isfinite(static_cast<float>(sigma))) {
                std::fprintf(stderr, "Err : line %d\n", lineNumber);
                std::fprintf(stderr, "      sigma should be a positive number\n");
                releaseUnused(t);
                return -1;
            }
            try {
                std::vector<unsigned char> pixels =
                    particledetail::gaussTextureImage(c, static_cast<float>(sigma));
                particledetail::uploadRGBA(texName, particledetail::kGaussSize,
                                           particledetail::kGaussSize, pixels.data());
            } catch (const std::bad_alloc&) {
                std::fprintf(stderr, "Err : allocate memory for texture!\n");
                releaseUnused(t);
                return -1;
            }
            ratio = static_cast<float>(std::min(sigma, 1.0));
        } else if (w[2] == "file") {
            if (w.size() < 4) {
                std::fprintf(stderr, "Err : line %d does not have enough parameters\n\n",
                             lineNumber);
                releaseUnused(t);
                return -1;
            }
            const char* alpha = w.size() > 4 ? w[4].c_str() : nullptr;
            if (initTextureFile(texName, w[3].c_str(), alpha, dir.c_str()) != 1) {
                std::fprintf(stderr, "Err : line %d\n", lineNumber);
                std::fprintf(stderr, "      reading ppm file [%s]\n", w[3].c_str());
                releaseUnused(t);
                return -1;
            }
        } else {
            std::fprintf(stderr, "Err : line %d\n", lineNumber);
            std::fprintf(stderr, "      Unknown identifier [%s] after [texture %s]\n", w[2].c_str(),
                         w[1].c_str());
            releaseUnused(t);
            return -1;
        }
        texStr.push_back(w[1]);
        texNames_.push_back(texName);
        texRatios_.push_back(ratio);
        numTextures_++;
    }

    for (int i = 0; i < numParticles; i++) {
        if (!lines.nextData(&line)) {
            std::fprintf(stderr, "Err : cannot find enough particles\n");
            return -1;
        }
        const int lineNumber = lines.number();
        std::vector<std::string> w = words(line);
        double v[8];
        if (leadingNumbers(w, v, 8) < 8 || w.size() < 9) {
            std::fprintf(stderr, "Err : not enough parameters (line %d)\n\n", lineNumber);
            return -1;
        }
        int texture = -1;
        for (int t = 0; t < static_cast<int>(texStr.size()) && texture < 0; t++)
            if (texStr[t] == w[8]) texture = t;
        if (texture < 0) {
            std::fprintf(stderr, "Err : line %d\n", lineNumber);
            std::fprintf(stderr, "      Unknown texture name [%s]\n", w[8].c_str());
            return -1;
        }
        bool finite = true;
        for (double value : v)
            finite = finite && std::isfinite(value);
        if (!finite) {
            std::fprintf(stderr, "Err : line %d\n", lineNumber);
            std::fprintf(stderr, "      numbers should be finite\n");
            return -1;
        }
        Particle p;
        p.pos[0] = v[0];
        p.pos[1] = v[1];
        p.pos[2] = v[2];
        p.pos[3] = exponent;
        for (int k = 0; k < 4; k++)
            p.currPos[k] = p.pos[k];
        p.size[0] = v[3];
        p.size[1] = exponent;
        for (int k = 0; k < 4; k++)
            p.color[k] = static_cast<float>(v[4 + k]);
        p.texName = texNames_[firstNewTexture + texture];
        p.texRatio = texRatios_[firstNewTexture + texture];
        p.valid = 1;
        particles_.push_back(p);  // room reserved above
        numParticles_++;
    }

    rebuildTree();
    return 1;
}
