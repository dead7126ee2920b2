#include "image/byte_order.h"

#include <algorithm>
#include <cstdlib>

void reverseElementBytes(void* buffer, std::size_t elementSize, std::size_t count) {
    if (elementSize < 2) return;
    auto* bytes = static_cast<unsigned char*>(buffer);
    for (std::size_t i = 0; i < count; ++i, bytes += elementSize)
        std::reverse(bytes, bytes + elementSize);
}

std::size_t cp_fwrite(void* buffer, std::size_t elementSize, std::size_t count, FILE* file) {
    if (elementSize < 1) {
        fprintf(stderr, "[cp_fwrite]: fwrite size < 1\n");
        exit(1);
    }
    if (count == 0) return 0;
    reverseElementBytes(buffer, elementSize, count);
    std::size_t written = fwrite(buffer, elementSize, count, file);
    reverseElementBytes(buffer, elementSize, count);
    return written;
}

std::size_t cp_fread(void* buffer, std::size_t elementSize, std::size_t count, FILE* file) {
    if (elementSize < 1) {
        fprintf(stderr, "[cp_fread]: fread size < 1\n");
        exit(1);
    }
    if (count == 0) return 0;
    std::size_t read = fread(buffer, elementSize, count, file);
    reverseElementBytes(buffer, elementSize, read);
    return read;
}
