// Colour lookup tables: reading, identity, applying to images, printing.

#include "common_package/glm/src/glm_lut.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int kLineSize = 512;  // text buffer of one LUT line

// Reads one line into buffer (cut at its size, the rest of a longer line skipped) without its
// line end. False at the end of the file with nothing read.
bool readLine(FILE* file, char* buffer, int size) {
    if (std::fgets(buffer, size, file) == nullptr) {
        buffer[0] = '\0';
        return false;
    }
    std::size_t length = std::strlen(buffer);
    if (length > 0 && buffer[length - 1] == '\n') {
        buffer[--length] = '\0';
    } else {
        int c;
        while ((c = std::fgetc(file)) != EOF && c != '\n') {
        }
    }
    if (length > 0 && buffer[length - 1] == '\r') buffer[--length] = '\0';
    return true;
}

// Reads up to count integers ("%d" style); returns how many were read. Values beyond the range
// of int keep their low bits, which is all a table entry uses.
int parseInts(const char* text, int* values, int count) {
    int n = 0;
    const char* p = text;
    while (n < count) {
        char* end = nullptr;
        errno = 0;
        long long v = std::strtoll(p, &end, 10);
        if (end == p) break;
        values[n++] = static_cast<int>(static_cast<unsigned long long>(v) & 0xFFFFFFFFull);
        p = end;
    }
    return n;
}

std::unique_ptr<LUT> allocateLUT(const char* caller) {
    std::unique_ptr<LUT> lut(new (std::nothrow) LUT);
    if (!lut) std::fprintf(stderr, "Err (%s): failed to allocate memory.\n", caller);
    return lut;
}

}  // namespace

std::unique_ptr<LUT> readLUT(const char* fileName, bool quiet) {
    if (fileName == nullptr || fileName[0] == '\0') {
        if (!quiet) std::fprintf(stderr, "Err (readLUT): invalid input.\n");
        return nullptr;
    }
    FILE* file = std::fopen(fileName, "rb");
    if (file == nullptr) {
        if (!quiet)
            std::fprintf(stderr, "Err (readLUT): cannot open [%s] for reading.\n", fileName);
        return nullptr;
    }
    std::unique_ptr<LUT> lut = allocateLUT("readLUT");
    if (!lut) {
        std::fclose(file);
        return nullptr;
    }
    char line[kLineSize];
    for (int i = 0; i < LUT_SIZE; i++) {
        if (!readLine(file, line, kLineSize) || line[0] == '\0') {
            std::fprintf(stderr, "No data read in line %d [%s]\n", i + 1, line);
            std::fclose(file);
            return nullptr;
        }
        int values[4];
        int n = parseInts(line, values, 4);
        if (n < 3) {
            std::fprintf(stderr, "No enough data (R G B) in line %d [%s]\n", i + 1, line);
            std::fclose(file);
            return nullptr;
        }
        lut->red[i] = values[0];
        lut->green[i] = values[1];
        lut->blue[i] = values[2];
        lut->alpha[i] = n >= 4 ? values[3] : i;
    }
    std::fclose(file);
    return lut;
}

std::unique_ptr<LUT> initLUT() {
    std::unique_ptr<LUT> lut = allocateLUT("initLUT");
    if (!lut) return nullptr;
    for (int i = 0; i < LUT_SIZE; i++)
        lut->red[i] = lut->green[i] = lut->blue[i] = lut->alpha[i] = i;
    return lut;
}

int applyLUT(const LUT* lut, unsigned char* image, int width, int height, int components,
             bool quiet) {
    if (lut == nullptr || image == nullptr || width < 1 || height < 1 || components < 1) {
        if (!quiet) std::fprintf(stderr, "Err (applyLUT): invalid input.\n");
        return -1;
    }
    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto map = [](const int* table, unsigned char v) {
        return static_cast<unsigned char>(table[v] & 0xFF);
    };
    unsigned char* p = image;
    switch (components) {
        case 2:
            for (std::size_t i = 0; i < pixels; i++, p += 2) {
                p[0] = map(lut->red, p[0]);
                p[1] = map(lut->alpha, p[1]);
            }
            break;
        case 3:
            for (std::size_t i = 0; i < pixels; i++, p += 3) {
                p[0] = map(lut->red, p[0]);
                p[1] = map(lut->green, p[1]);
                p[2] = map(lut->blue, p[2]);
            }
            break;
        case 4:
            for (std::size_t i = 0; i < pixels; i++, p += 4) {
                p[0] = map(lut->red, p[0]);
                p[1] = map(lut->green, p[1]);
                p[2] = map(lut->blue, p[2]);
                p[3] = map(lut->alpha, p[3]);
            }
            break;
        default: {
            const std::size_t bytes = pixels * static_cast<std::size_t>(components);
            for (std::size_t i = 0; i < bytes; i++)
                p[i] = map(lut->red, p[i]);
            break;
        }
    }
    return 1;
}

void printLUT(const LUT* lut) {
    if (lut == nullptr) {
        std::fprintf(stderr, "Err (printLUT): invalid input.\n");
        return;
    }
    for (int i = 0; i < LUT_SIZE; i++)
        std::fprintf(stderr, " %3d %3d %3d %3d\n", lut->red[i], lut->green[i], lut->blue[i],
                     lut->alpha[i]);
}
