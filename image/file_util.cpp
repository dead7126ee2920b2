#include "image/file_util.h"

#include <cstdint>

namespace imageio {

long long remainingBytes(FILE* file) {
    off_t here = ftello(file);
    if (here < 0 || fseeko(file, 0, SEEK_END) != 0) return -1;
    off_t end = ftello(file);
    if (fseeko(file, here, SEEK_SET) != 0 || end < here) return -1;
    return end - here;
}

bool imageByteCount(long long width, long long height, long long components, long long elementSize,
                    std::size_t* bytes) {
    if (width < 0 || height < 0 || components < 0 || elementSize < 0) return false;
    unsigned __int128 product = static_cast<unsigned __int128>(width) * height;
    product *= components;
    product *= elementSize;
    if (product > static_cast<unsigned __int128>(PTRDIFF_MAX)) return false;
    *bytes = static_cast<std::size_t>(product);
    return true;
}

void roomProbe(FILE* file, std::size_t bytes) {
    off_t here = ftello(file);
    if (static_cast<unsigned long long>(bytes) > static_cast<unsigned long long>(INT64_MAX) ||
        fseeko(file, static_cast<off_t>(bytes), SEEK_CUR) != 0)
        fprintf(stderr, "Disk Full? Failed to fseek in write_pnm.\n\n");
    if (here < 0 || fseeko(file, here, SEEK_SET) != 0)
        fprintf(stderr, "Disaster? Failed to fseek back.\n\n");
}

void skipRestOfLine(FILE* file) {
    int c;
    do {
        c = getc(file);
    } while (c != '\n' && c != EOF);
}

}  // namespace imageio
