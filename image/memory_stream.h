#pragma once
// A stdio stream over bytes held in memory: readable, writable and seekable like a temporary
// file opened for update, released when the stream is closed. It has no file descriptor
// (fileno gives -1); fseek/ftell measure it like any file.

#include <cstddef>
#include <cstdio>

namespace imageio {

// A growable byte buffer whose growth leaves the new bytes unset (they are about to be
// overwritten), with realloc growth.
class MemoryBytes {
  public:
    MemoryBytes() = default;
    ~MemoryBytes();
    MemoryBytes(MemoryBytes&& other) noexcept;
    MemoryBytes& operator=(MemoryBytes&& other) noexcept;
    MemoryBytes(const MemoryBytes&) = delete;
    MemoryBytes& operator=(const MemoryBytes&) = delete;

    unsigned char* data() { return data_; }
    std::size_t size() const { return size_; }
    // Both return false, changing nothing, when the memory cannot be had.
    bool reserve(std::size_t capacity);
    bool resize(std::size_t size);  // grows the capacity geometrically

  private:
    unsigned char* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

// A stream positioned at the start of bytes, which it owns from now on; nullptr when the
// stream cannot be made.
FILE* openMemoryStream(MemoryBytes bytes);

}  // namespace imageio
