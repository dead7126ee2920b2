// "MST-FILE" text files: a header "MST-FILE <n> points", then n - 1 lines "child parent".

#include <cstdio>
#include <cstring>
#include <vector>

#include "catalogue/mst.h"
#include "catalogue/text_scan.h"
#include "image/data_file.h"

namespace {

constexpr int kMSTLineSize = 1024;  // 1023 characters and the terminator

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

// Reads one line of at most 1023 characters (the rest of a longer line is skipped); false at
// the end of the file.
bool readLine(std::FILE* file, char (&line)[kMSTLineSize]) {
    if (std::fgets(line, kMSTLineSize, file) == nullptr) return false;
    std::size_t len = std::strlen(line);
    if (len > 0 && line[len - 1] == '\n') return true;
    if (len == kMSTLineSize - 1) {
        int c;
        while ((c = std::fgetc(file)) != EOF && c != '\n') {
        }
    }
    return true;
}

}  // namespace

std::int32_t* load_MST(const char* fileName, int* n) {
    if (n != nullptr) *n = 0;
    if (fileName == nullptr) fileName = "";
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        std::fprintf(stderr, "Err (load_MST): opening file [%s].\n", fileName);
        return nullptr;
    }

    char line[kMSTLineSize];
    int numPoints = 0;
    std::string_view identifier;
    if (!readLine(in.file, line) || !TextScanner(line).scanWord(identifier)) {
        std::fprintf(stderr, "Err (load_MST): no header line in [%s].\n", fileName);
        return nullptr;
    }
    TextScanner header(line);
    header.scanWord(identifier);  // not checked
    if (!header.scanInt(numPoints) || numPoints < 1) {
        std::fprintf(stderr, "Err (load_MST): invalid number of points in [%s].\n", fileName);
        return nullptr;
    }

    // The edges grow with the lines actually read, so a huge count in a short file costs
    // nothing before the missing lines are found.
    const int wanted = numPoints - 1;
    std::vector<std::int32_t> edges;
    for (int i = 0; i < wanted; ++i) {
        if (!readLine(in.file, line)) {
            std::fprintf(stderr, "Err (load_MST): not enough edges in [%s] (%d/%d edges read).\n",
                         fileName, i, wanted);
            return nullptr;
        }
        TextScanner scan(line);
        int child = 0, parent = 0;
        if (!scan.scanInt(child) || !scan.scanInt(parent)) {
            std::fprintf(stderr, "Err (load_MST): invalid edge %d in [%s].\n", i + 1, fileName);
            return nullptr;
        }
        for (int vertex : {child, parent}) {
            if (vertex < 0 || vertex > wanted) {
                std::fprintf(stderr,
                             "Err (load_MST): there is a vertex [%d] in [%s], which out of range "
                             "[0,%d]\n",
                             vertex, fileName, wanted);
                return nullptr;
            }
        }
        edges.push_back(child);
        edges.push_back(parent);
    }

    auto* out = static_cast<std::int32_t*>(allocateMSTArray(edges.size() * sizeof(std::int32_t)));
    if (out == nullptr) {
        std::fprintf(stderr, "Err (load_MST): allocating memory to edges.\n");
        return nullptr;
    }
    if (!edges.empty()) std::memcpy(out, edges.data(), edges.size() * sizeof(std::int32_t));
    if (n != nullptr) *n = numPoints;
    return out;
}

int save_MST(const char* fileName, const std::int32_t* edges, int n) {
    if (fileName == nullptr) fileName = "";
    std::FILE* out = std::fopen(fileName, "w");
    if (out == nullptr) {
        std::fprintf(stderr, "Err (save_MST): opening file [%s]\n", fileName);
        return -1;
    }
    std::fprintf(out, "%s %d points\n", "MST-FILE", n);
    if (edges != nullptr) {
        for (int i = 0; i + 1 < n; ++i)
            std::fprintf(out, "%d %d\n", edges[2 * i], edges[2 * i + 1]);
    }
    const bool written = std::ferror(out) == 0;
    return (std::fclose(out) == 0 && written) ? 1 : -1;
}
