#pragma once
// Helpers shared by the image readers and writers: sizes checked before anything is allocated,
// the room probe before image data are written, file handles that close themselves.

#include <cstddef>
#include <cstdio>
#include <memory>

namespace imageio {

// Closes the file when it goes out of scope.
struct FileCloser {
    void operator()(FILE* file) const {
        if (file != nullptr) fclose(file);
    }
};
using FileHandle = std::unique_ptr<FILE, FileCloser>;

// Bytes from the current position to the end of a seekable file; -1 when it cannot seek.
long long remainingBytes(FILE* file);

// width * height * components * elementSize, false when a factor is negative or the product
// does not fit in memory addresses.
bool imageByteCount(long long width, long long height, long long components, long long elementSize,
                    std::size_t* bytes);

// Seeks forward by the bytes about to be written and back again, so that a file system without
// room says so before the data go out: "Disk Full? Failed to fseek in write_pnm.\n\n" or
// "Disaster? Failed to fseek back.\n\n"; the write goes on either way.
void roomProbe(FILE* file, std::size_t bytes);

// Skips the rest of the current line, newline included.
void skipRestOfLine(FILE* file);

}  // namespace imageio
