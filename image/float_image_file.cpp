#include "image/float_image_file.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "image/byte_order.h"
#include "image/data_file.h"
#include "image/file_util.h"

using imageio::FileHandle;

namespace {

// What tells the float and the double layouts apart.
struct Layout {
    const char* type;    // "PF" or "PD"
    const char* writer;  // function name in messages
    const char* reader;
};
const Layout kFloatLayout{"PF", "writePFM", "readPFM"};
const Layout kDoubleLayout{"PD", "writePDM", "readPDM"};

template <class T>
int writeValues(const Layout& layout, const char* fileName, const char* type, int width, int height,
                T value, const T* data) {
    FileHandle file(fopen(fileName, "wb"));
    if (!file) {
        fprintf(stderr, "Can't open file [%s]!\n", fileName);
        return -1;
    }
    fprintf(file.get(), "%s\n", type);
    fprintf(file.get(), "%d %d\n", width, height);
    if (std::strcmp(type, layout.type) != 0) {
        fprintf(stderr, "%s : Wrong Type! Must be %s!\n", layout.writer, layout.type);
        return -1;
    }
    std::size_t bytes = 0;
    if (!imageio::imageByteCount(width, height, 1, sizeof(T), &bytes) ||
        (data == nullptr && bytes > 0)) {
        fprintf(stderr, "%s : Wrong Size or no data! [%d x %d]\n", layout.writer, width, height);
        return -1;
    }
    fprintf(file.get(), "%f\n", static_cast<double>(value));
    imageio::roomProbe(file.get(), bytes);
    // The caller's values stay untouched: they are reordered in a copy, a block at a time.
    const std::size_t count = bytes / sizeof(T);
    constexpr std::size_t kBlock = 8192;
    std::vector<T> block(std::min(count, kBlock));
    bool written = true;
    for (std::size_t done = 0; written && done < count; done += block.size()) {
        const std::size_t n = std::min(block.size(), count - done);
        std::copy(data + done, data + done + n, block.begin());
        written = cp_fwrite(block.data(), sizeof(T), n, file.get()) == n;
    }
    if (!written || fclose(file.release()) != 0) {
        fprintf(stderr, "%s : Failed to write file [%s]!\n", layout.writer, fileName);
        return -1;
    }
    return 1;
}

template <class T>
int readValues(const Layout& layout, const char* fileName, const char* type, int* width,
               int* height, T* value, std::vector<T>* data) {
    FileHandle file(openDataFile(fileName, "rb"));
    if (!file) {
        fprintf(stderr, "Can't read file [%s]!\n", fileName);
        return -1;
    }
    imageio::skipRestOfLine(file.get());
    int c;
    while ((c = getc(file.get())) == '#')
        imageio::skipRestOfLine(file.get());
    if (c != EOF) ungetc(c, file.get());
    int w = 0, h = 0;
    bool sizeRead = fscanf(file.get(), "%d %d", &w, &h) == 2;
    if (std::strcmp(type, layout.type) != 0) {
        fprintf(stderr, "%s : Wrong Type! Must be %s!\n", layout.reader, layout.type);
        return -1;
    }
    double headerValue = 0;
    bool valueRead = fscanf(file.get(), "%lf", &headerValue) == 1;
    imageio::skipRestOfLine(file.get());
    std::size_t bytes = 0;
    if (!sizeRead || !valueRead || w < 1 || h < 1 ||
        !imageio::imageByteCount(w, h, 1, sizeof(T), &bytes)) {
        fprintf(stderr, "%s : Bad header in file [%s]!\n", layout.reader, fileName);
        return -1;
    }
    long long remaining = imageio::remainingBytes(file.get());
    std::vector<T> values;
    if (remaining >= 0 && static_cast<unsigned long long>(remaining) >= bytes) {
        try {
            values.resize(bytes / sizeof(T));
        } catch (const std::bad_alloc&) {
            fprintf(stderr, "%s : Not enough memory for file [%s]!\n", layout.reader, fileName);
            return -1;
        }
    }
    if (values.empty() ||
        cp_fread(values.data(), sizeof(T), values.size(), file.get()) != values.size()) {
        fprintf(stderr, "%s : File [%s] holds less data than its %d x %d header says!\n",
                layout.reader, fileName, w, h);
        return -1;
    }
    *width = w;
    *height = h;
    *value = static_cast<T>(headerValue);
    *data = std::move(values);
    return 1;
}

}  // namespace

int writePFM(const char* fileName, const char* type, int width, int height, float value,
             const float* data) {
    return writeValues(kFloatLayout, fileName, type, width, height, value, data);
}

int writePDM(const char* fileName, const char* type, int width, int height, double value,
             const double* data) {
    return writeValues(kDoubleLayout, fileName, type, width, height, value, data);
}

int readPFM(const char* fileName, const char* type, int* width, int* height, float* value,
            std::vector<float>* data) {
    return readValues(kFloatLayout, fileName, type, width, height, value, data);
}

int readPDM(const char* fileName, const char* type, int* width, int* height, double* value,
            std::vector<double>* data) {
    return readValues(kDoubleLayout, fileName, type, width, height, value, data);
}
