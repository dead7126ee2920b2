#include "image/pnm_file.h"

#include <cstring>
#include <new>

#include "image/data_file.h"
#include "image/file_util.h"

using imageio::FileHandle;

namespace {

constexpr int kPnmLineSize = 255;  // read_pnm reads its header lines through this buffer

bool isPnmWhiteSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// Reads lines into line until one passes keep; false at the end of the file.
template <class Keep>
bool readLineUntil(FILE* file, char (&line)[kPnmLineSize], Keep keep) {
    while (fgets(line, kPnmLineSize, file) != nullptr)
        if (keep(line)) return true;
    return false;
}

// Reads count bytes into a new buffer when the file still holds them; empty otherwise.
std::vector<unsigned char> readBytes(FILE* file, std::size_t count) {
    long long remaining = imageio::remainingBytes(file);
    if (remaining < 0 || static_cast<unsigned long long>(remaining) < count) return {};
    std::vector<unsigned char> data;
    try {
        data.resize(count);
    } catch (const std::bad_alloc&) {
        return {};
    }
    if (fread(data.data(), 1, count, file) != count) return {};
    return data;
}

}  // namespace

int write_pnm(const char* fileName, int width, int height, int components,
              const unsigned char* data) {
    if (components != 1 && components != 3) return 2;
    std::size_t bytes = 0;
    if (!imageio::imageByteCount(width, height, components, 1, &bytes)) return 1;
    if (data == nullptr && bytes > 0) return 1;
    FileHandle file(fopen(fileName, "wb"));
    if (!file) return 1;
    fprintf(file.get(), components == 1 ? "P5\n%d %d\n255\n" : "P6\n%d %d\n255\n", width, height);
    imageio::roomProbe(file.get(), bytes);
    if (bytes > 0 && fwrite(data, 1, bytes, file.get()) != bytes) return 1;
    return fclose(file.release()) == 0 ? 0 : 1;
}

// A file shorter than its header says gives no image: the caller then names the file as
// unreadable instead of showing a picture padded with whatever the buffer held.
std::vector<unsigned char> read_pnm(const char* fileName, int* width, int* height,
                                    int* components) {
    FileHandle file(openDataFile(fileName, "rb"));
    if (!file) return {};
    char line[kPnmLineSize];
    if (!readLineUntil(file.get(), line, [](const char* l) { return l[0] != '#'; })) return {};
    int channels;
    if (std::strncmp(line, "P6", 2) == 0)
        channels = 3;
    else if (std::strncmp(line, "P5", 2) == 0)
        channels = 1;
    else
        return {};
    if (!readLineUntil(file.get(), line,
                       [](const char* l) { return l[0] != '#' && !isPnmWhiteSpace(l[0]); }))
        return {};
    int w = 0, h = 0;
    if (std::sscanf(line, "%d %d", &w, &h) != 2 || w < 1 || h < 1) return {};
    if (!readLineUntil(file.get(), line, [](const char* l) { return l[0] != '#'; })) return {};
    int maxValue = 0;  // samples are bytes whatever the file's maximum value
    if (std::sscanf(line, "%d", &maxValue) != 1) return {};
    std::size_t bytes = 0;
    if (!imageio::imageByteCount(w, h, channels, 1, &bytes)) return {};
    std::vector<unsigned char> data = readBytes(file.get(), bytes);
    if (data.empty()) return {};
    *width = w;
    *height = h;
    *components = channels;
    return data;
}

int writePNM(const char* fileName, const char* type, int width, int height, int maxValue,
             const unsigned char* data) {
    FileHandle file(fopen(fileName, "wb"));
    if (!file) {
        fprintf(stderr, "Can't open file [%s]!\n", fileName);
        return -1;
    }
    fprintf(file.get(), "%s\n", type);
    fprintf(file.get(), "%d %d\n", width, height);
    fprintf(file.get(), "%d\n", maxValue);
    int channels;
    if (std::strcmp(type, "P6") == 0) {
        channels = 3;
    } else if (std::strcmp(type, "P5") == 0) {
        channels = 1;
    } else {
        fprintf(stderr, "writePNM : Wrong Type! Must be P6 or P5!\n");
        return -1;
    }
    std::size_t bytes = 0;
    if (!imageio::imageByteCount(width, height, channels, 1, &bytes) ||
        (data == nullptr && bytes > 0)) {
        fprintf(stderr, "writePNM : Wrong Size or no data! [%d x %d]\n", width, height);
        return -1;
    }
    imageio::roomProbe(file.get(), bytes);
    if ((bytes > 0 && fwrite(data, 1, bytes, file.get()) != bytes) || fclose(file.release()) != 0) {
        fprintf(stderr, "writePNM : Failed to write file [%s]!\n", fileName);
        return -1;
    }
    return 1;
}

int readPNM(const char* fileName, const char* type, int* width, int* height, int* maxValue,
            std::vector<unsigned char>* data) {
    FileHandle file(openDataFile(fileName, "rb"));
    if (!file) {
        fprintf(stderr, "Can't read file [%s]!\n", fileName);
        return -1;
    }
    imageio::skipRestOfLine(file.get());  // the magic line: the caller states the type
    int c;
    while ((c = getc(file.get())) == '#')
        imageio::skipRestOfLine(file.get());
    if (c != EOF) ungetc(c, file.get());
    int w = 0, h = 0, m = 0;
    bool headerRead = fscanf(file.get(), "%d %d", &w, &h) == 2 && fscanf(file.get(), "%d", &m) == 1;
    imageio::skipRestOfLine(file.get());
    int channels;
    if (std::strcmp(type, "P6") == 0) {
        channels = 3;
    } else if (std::strcmp(type, "P5") == 0) {
        channels = 1;
    } else {
        fprintf(stderr, "readPNM : Wrong Type! Must be P6 or P5!\n");
        return -1;
    }
    std::size_t bytes = 0;
    if (!headerRead || w < 1 || h < 1 || !imageio::imageByteCount(w, h, channels, 1, &bytes)) {
        fprintf(stderr, "readPNM : Bad header in file [%s]!\n", fileName);
        return -1;
    }
    std::vector<unsigned char> pixels = readBytes(file.get(), bytes);
    if (pixels.empty()) {
        fprintf(stderr, "readPNM : File [%s] holds less data than its %d x %d header says!\n",
                fileName, w, h);
        return -1;
    }
    *width = w;
    *height = h;
    *maxValue = m;
    *data = std::move(pixels);
    return 1;
}
