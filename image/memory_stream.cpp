#include "image/memory_stream.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace imageio {

MemoryBytes::~MemoryBytes() {
    std::free(data_);
}

MemoryBytes::MemoryBytes(MemoryBytes&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

MemoryBytes& MemoryBytes::operator=(MemoryBytes&& other) noexcept {
    if (this != &other) {
        std::free(data_);
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
        capacity_ = std::exchange(other.capacity_, 0);
    }
    return *this;
}

bool MemoryBytes::reserve(std::size_t capacity) {
    if (capacity <= capacity_) return true;
    void* grown = std::realloc(data_, capacity);
    if (grown == nullptr) return false;
    data_ = static_cast<unsigned char*>(grown);
    capacity_ = capacity;
    return true;
}

bool MemoryBytes::resize(std::size_t size) {
    if (size > capacity_ && !reserve(std::max(size, capacity_ + capacity_ / 2))) return false;
    size_ = size;
    return true;
}

namespace {

struct MemoryFile {
    MemoryBytes bytes;
    std::size_t position = 0;
};

ssize_t readMemory(void* cookie, char* buffer, std::size_t size) {
    auto* file = static_cast<MemoryFile*>(cookie);
    if (file->position >= file->bytes.size()) return 0;
    const std::size_t n = std::min(size, file->bytes.size() - file->position);
    std::memcpy(buffer, file->bytes.data() + file->position, n);
    file->position += n;
    return static_cast<ssize_t>(n);
}

ssize_t writeMemory(void* cookie, const char* buffer, std::size_t size) {
    auto* file = static_cast<MemoryFile*>(cookie);
    const std::size_t oldSize = file->bytes.size();
    const std::size_t end = file->position + size;
    if (end > oldSize) {
        if (end < file->position || !file->bytes.resize(end)) {
            errno = ENOSPC;
            return -1;
        }
        // Writing past the end after a seek leaves a hole of zeros, as a file does.
        if (file->position > oldSize)
            std::memset(file->bytes.data() + oldSize, 0, file->position - oldSize);
    }
    if (size > 0) std::memcpy(file->bytes.data() + file->position, buffer, size);
    file->position = end;
    return static_cast<ssize_t>(size);
}

int seekMemory(void* cookie, off64_t* offset, int whence) {
    auto* file = static_cast<MemoryFile*>(cookie);
    long long base = 0;
    if (whence == SEEK_CUR)
        base = static_cast<long long>(file->position);
    else if (whence == SEEK_END)
        base = static_cast<long long>(file->bytes.size());
    else if (whence != SEEK_SET) {
        errno = EINVAL;
        return -1;
    }
    const long long target = base + *offset;
    if (target < 0) {
        errno = EINVAL;
        return -1;
    }
    file->position = static_cast<std::size_t>(target);
    *offset = target;
    return 0;
}

int closeMemory(void* cookie) {
    delete static_cast<MemoryFile*>(cookie);
    return 0;
}

}  // namespace

FILE* openMemoryStream(MemoryBytes bytes) {
    auto* file = new (std::nothrow) MemoryFile;
    if (file == nullptr) return nullptr;
    file->bytes = std::move(bytes);
    cookie_io_functions_t functions{readMemory, writeMemory, seekMemory, closeMemory};
    FILE* stream = fopencookie(file, "r+", functions);
    if (stream == nullptr) delete file;
    return stream;
}

}  // namespace imageio
