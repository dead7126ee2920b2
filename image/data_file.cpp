#include "image/data_file.h"

#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <atomic>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "image/byte_order.h"
#include "image/memory_stream.h"

namespace {

constexpr std::size_t kTrailerSize = 8;  // CRC-32 and plain length, least-significant first
constexpr int kDeflateLevel = 6;
constexpr int kRawDeflateWindow = -15;  // raw deflate: no zlib or gzip wrapper
// Largest content inflated into room set aside at once; larger contents grow as they inflate.
constexpr std::size_t kExpectedContentLimit = std::size_t(64) << 20;
// Below this many chunks a second thread costs more than it saves.
constexpr std::uint32_t kChunksForTwoThreads = 8;

const char* const kFormatViolated = "invalid compressed data--format violated";
const char* const kCrcError = "invalid compressed data--crc error";
const char* const kLengthError = "invalid compressed data--length error";

void reportDamage(const char* inputName, const char* what) {
    fprintf(stderr, "\n%s: %s: %s\n", program_invocation_short_name, inputName, what);
}

[[noreturn]] void outOfMemory(const char* message) {
    fputs(message, stderr);
    exit(1);
}

template <class T>
std::vector<T> allocateOrExit(std::size_t count, const char* message) {
    try {
        return std::vector<T>(count);
    } catch (const std::bad_alloc&) {
        outOfMemory(message);
    }
}

std::uint32_t readLittleEndian32(const unsigned char* bytes) {
    return std::uint32_t(bytes[0]) | std::uint32_t(bytes[1]) << 8 | std::uint32_t(bytes[2]) << 16 |
           std::uint32_t(bytes[3]) << 24;
}

void writeLittleEndian32(unsigned char* bytes, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

// Length of a seekable file, leaving its position where it was; -1 when it cannot seek.
long long fileLength(FILE* file) {
    off_t here = ftello(file);
    if (here < 0 || fseeko(file, 0, SEEK_END) != 0) return -1;
    off_t end = ftello(file);
    if (fseeko(file, here, SEEK_SET) != 0) return -1;
    return end;
}

// One raw inflate stream, reset for every chunk.
class ChunkInflater {
  public:
    ChunkInflater() {
        std::memset(&stream_, 0, sizeof stream_);
        if (inflateInit2(&stream_, kRawDeflateWindow) != Z_OK)
            outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
    }
    ~ChunkInflater() { inflateEnd(&stream_); }
    ChunkInflater(const ChunkInflater&) = delete;
    ChunkInflater& operator=(const ChunkInflater&) = delete;

    // Inflates one chunk (deflate stream and trailer, length bytes) into out, which has room
    // for kEzChunkSize bytes, and checks the trailer. Returns nullptr and the plain size, or
    // the text of the damage found.
    const char* inflateChunk(const unsigned char* chunk, std::size_t length, unsigned char* out,
                             std::size_t* produced) {
        inflateReset(&stream_);
        stream_.next_in = const_cast<unsigned char*>(chunk);
        stream_.avail_in = static_cast<uInt>(length);
        stream_.next_out = out;
        stream_.avail_out = static_cast<uInt>(kEzChunkSize);
        int status = inflate(&stream_, Z_FINISH);
        if (status == Z_MEM_ERROR) outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
        // Anything but a complete stream (bad codes, a stream cut short, more than one chunk
        // of output) is a format violation.
        if (status != Z_STREAM_END) return kFormatViolated;
        *produced = kEzChunkSize - stream_.avail_out;
        if (stream_.avail_in != kTrailerSize) return kFormatViolated;
        const unsigned char* trailer = stream_.next_in;
        uLong crc = crc32(0L, Z_NULL, 0);
        crc = crc32(crc, out, static_cast<uInt>(*produced));
        if (readLittleEndian32(trailer) != crc) return kCrcError;
        if (readLittleEndian32(trailer + 4) != *produced) return kLengthError;
        return nullptr;
    }

  private:
    z_stream stream_;
};

std::uint32_t readBigEndian32(const unsigned char* bytes) {
    return std::uint32_t(bytes[0]) << 24 | std::uint32_t(bytes[1]) << 16 |
           std::uint32_t(bytes[2]) << 8 | std::uint32_t(bytes[3]);
}

// The chunks of a checked container, handed out in table order to whichever thread asks next;
// chunk i inflates into out + i * kEzChunkSize. A thread stops at the first damaged chunk it
// meets, and no chunk after a damage already found is handed out, so every chunk before the
// first damaged one has been inflated when the threads are done.
class ChunkQueue {
  public:
    ChunkQueue(const unsigned char* packed, const std::vector<std::uint32_t>& offsets,
               const std::vector<std::uint32_t>& lengths, unsigned char* out,
               std::vector<std::size_t>& produced)
        : packed_(packed),
          offsets_(offsets),
          lengths_(lengths),
          out_(out),
          produced_(produced),
          count_(static_cast<std::uint32_t>(offsets.size())),
          firstDamage_(count_) {}

    void work() {
        ChunkInflater inflater;
        for (;;) {
            const std::uint32_t i = next_.fetch_add(1);
            if (i >= count_ || i >= firstDamage_.load()) return;
            const char* damage =
                inflater.inflateChunk(packed_ + offsets_[i], lengths_[i],
                                      out_ + std::size_t(i) * kEzChunkSize, &produced_[i]);
            if (damage != nullptr) {
                std::lock_guard<std::mutex> lock(mutex_);
                if (i < firstDamage_.load()) {
                    firstDamage_.store(i);
                    damage_ = damage;
                }
                return;
            }
        }
    }

    // The first damaged chunk (the chunk count when none) and what was wrong with it.
    std::uint32_t firstDamage() const { return firstDamage_.load(); }
    const char* damage() const { return damage_; }

  private:
    const unsigned char* packed_;
    const std::vector<std::uint32_t>& offsets_;
    const std::vector<std::uint32_t>& lengths_;
    unsigned char* out_;
    std::vector<std::size_t>& produced_;
    const std::uint32_t count_;
    std::atomic<std::uint32_t> next_{0};
    std::atomic<std::uint32_t> firstDamage_;
    std::mutex mutex_;
    const char* damage_ = nullptr;
};

// Reads the container at the file's position into plain. Returns 1, or -1 after reporting
// damage; plain then holds the content of the chunks before the damaged one.
//
// The container, from its start to the end of the file, is read in one piece (its length is
// the file's, not a number read from it), and the tables are checked against it before any
// chunk is inflated: every chunk lies after the tables and inside the file, and chunks follow
// one another in table order without overlapping, as the writer lays them out. That bounds
// the content by what the file can hold.
//
// Chunks are independent, so a container of many chunks is inflated by two threads taking
// chunks in turn, each chunk into its place in the output; the output is then closed up in
// table order (only a chunk shorter than kEzChunkSize before the last one moves anything).
int inflateContainer(FILE* file, const char* inputName, imageio::MemoryBytes& plain) {
    const long long start = ftello(file);
    char magic[2] = {0, 0};
    if (fread(magic, 1, 2, file) != 2 || magic[0] != 'E' || magic[1] != 'Z') {
        fputs("[ReadDeflateZip]: input file is not in our zip file format\n", stderr);
        exit(1);
    }
    const long long end = fileLength(file);
    if (start < 0 || end < start + 2 || fseeko(file, start, SEEK_SET) != 0) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    std::vector<unsigned char> packed = allocateOrExit<unsigned char>(
        static_cast<std::size_t>(end - start), "[ReadDeflateZip]: No memory for inbuf\n");
    if (fread(packed.data(), 1, packed.size(), file) != packed.size() || packed.size() < 6) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    const std::uint32_t count = readBigEndian32(packed.data() + 2);
    const std::size_t tablesEnd = 6 + 8 * std::size_t(count);
    if (tablesEnd > packed.size()) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    std::vector<std::uint32_t> offsets =
        allocateOrExit<std::uint32_t>(count, "[ReadDeflateZip]: no memory for offset table\n");
    std::vector<std::uint32_t> lengths =
        allocateOrExit<std::uint32_t>(count, "[ReadDeflateZip]: no memory for chrunksize table\n");
    // Offsets count from the start of the file; they are kept relative to the container's.
    long long previousEnd = start + static_cast<long long>(tablesEnd);
    for (std::uint32_t i = 0; i < count; ++i) {
        const long long offset = readBigEndian32(packed.data() + 6 + 4 * std::size_t(i));
        const std::uint32_t length =
            readBigEndian32(packed.data() + 6 + 4 * (std::size_t(count) + i));
        if (length < kTrailerSize || length > kEzChunkBufferSize || offset < previousEnd ||
            offset + length > end) {
            reportDamage(inputName, kFormatViolated);
            return -1;
        }
        previousEnd = offset + length;
        offsets[i] = static_cast<std::uint32_t>(offset - start);
        lengths[i] = length;
    }

    // Room for every chunk at its place; a content beyond the limit grows chunk by chunk.
    const std::size_t base = plain.size();
    const std::size_t full = std::size_t(count) * kEzChunkSize;
    std::vector<std::size_t> produced;
    std::uint32_t good = count;
    const char* damage = nullptr;
    if (full <= kExpectedContentLimit) {
        produced = allocateOrExit<std::size_t>(count, "[ReadDeflateZip]: No memory for outbuf\n");
        if (!plain.resize(base + full)) outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
        ChunkQueue queue(packed.data(), offsets, lengths, plain.data() + base, produced);
        std::thread helper;
        if (count >= kChunksForTwoThreads && std::thread::hardware_concurrency() > 1) {
            try {
                helper = std::thread(&ChunkQueue::work, &queue);
            } catch (const std::system_error&) {
                // No thread to be had: this one does it all.
            }
        }
        queue.work();
        if (helper.joinable()) helper.join();
        good = queue.firstDamage();
        damage = queue.damage();
    } else {
        // Chunk by chunk at the running end of a buffer that grows as the content comes.
        ChunkInflater inflater;
        std::size_t used = base;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!plain.resize(used + kEzChunkSize))
                outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
            std::size_t size = 0;
            const char* chunkDamage = inflater.inflateChunk(packed.data() + offsets[i], lengths[i],
                                                            plain.data() + used, &size);
            if (chunkDamage != nullptr) {
                plain.resize(used);
                reportDamage(inputName, chunkDamage);
                return -1;
            }
            used += size;
        }
        plain.resize(used);
        return 1;
    }
    std::size_t used = base;
    for (std::uint32_t i = 0; i < good; ++i) {
        unsigned char* chunk = plain.data() + base + std::size_t(i) * kEzChunkSize;
        if (chunk != plain.data() + used) std::memmove(plain.data() + used, chunk, produced[i]);
        used += produced[i];
    }
    plain.resize(used);
    if (damage != nullptr) {
        reportDamage(inputName, damage);
        return -1;
    }
    return 1;
}

}  // namespace

int ReadDeflateZip(FILE* file, std::vector<unsigned char>& plain, const char* inputName) {
    imageio::MemoryBytes content;
    const int status = inflateContainer(file, inputName, content);
    try {
        plain.insert(plain.end(), content.data(), content.data() + content.size());
    } catch (const std::bad_alloc&) {
        outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
    }
    return status;
}

// The plain content of a container is handed back as a stream over memory rather than a file
// on disk: writing it out and reading it back would cost readers about a fifth of the time
// spent inflating. The stream reads, writes and seeks like a temporary file opened for update
// and frees its memory when closed; it has no file descriptor.
//
// A damaged container gives no stream at all rather than the content before the damage: a
// reader handed a silently shortened catalogue or model would go on with wrong data, while a
// failed open makes every caller name the file, after the damage report.
FILE* openDataFile(const char* fileName, const char* mode) {
    FILE* file = fopen(fileName, "rb");
    if (file == nullptr) return nullptr;
    // A folder opens for reading but holds no data: it is not a data file.
    struct stat info;
    if (fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode)) {
        fclose(file);
        errno = EISDIR;
        return nullptr;
    }
    char magic[2] = {0, 0};
    if (fread(magic, 1, 2, file) != 2 || magic[0] != 'E' || magic[1] != 'Z') {
        fclose(file);
        return fopen(fileName, mode);
    }
    rewind(file);
    imageio::MemoryBytes content;
    const int status = inflateContainer(file, fileName, content);
    fclose(file);
    if (status != 1) return nullptr;
    FILE* plain = imageio::openMemoryStream(std::move(content));
    if (plain == nullptr)
        fprintf(stderr, "[openDataFile]: cannot make a stream for the content of [%s]\n", fileName);
    return plain;
}

int WriteDeflateZip(FILE* file, const unsigned char* plain, std::size_t plainLength) {
    const std::uint64_t chunks = (plainLength + kEzChunkSize - 1) / kEzChunkSize;
    // Offsets are 32-bit; even the tables alone must fit below 4 GiB.
    if (chunks > (UINT32_MAX - 6) / 8) {
        fputs("[WriteDeflateZip]: content too large for the container\n", stderr);
        return -1;
    }
    std::uint32_t count = static_cast<std::uint32_t>(chunks);
    const off_t start = ftello(file);
    if (start < 0) {
        fputs("[WriteDeflateZip]: output file cannot seek\n", stderr);
        return -1;
    }
    std::vector<std::uint32_t> offsets =
        allocateOrExit<std::uint32_t>(count, "[WriteDeflateZip]: no memory for offset table\n");
    std::vector<std::uint32_t> lengths = allocateOrExit<std::uint32_t>(
        count, "[WriteDeflateZip]: no memory for chrunk size table\n");
    std::vector<unsigned char> output = allocateOrExit<unsigned char>(
        kEzChunkBufferSize, "[WriteDeflateZip]: Not enough memory.\n");

    bool written = fwrite("EZ", 1, 2, file) == 2 && cp_fwrite(&count, 4, 1, file) == 1 &&
                   cp_fwrite(offsets.data(), 4, count, file) == count &&
                   cp_fwrite(lengths.data(), 4, count, file) == count;

    z_stream stream;
    std::memset(&stream, 0, sizeof stream);
    if (deflateInit2(&stream, kDeflateLevel, Z_DEFLATED, kRawDeflateWindow, 8,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        outOfMemory("[WriteDeflateZip]: Not enough memory.\n");
    bool tooLarge = false;
    for (std::uint32_t i = 0; written && i < count; ++i) {
        const std::size_t pieceStart = std::size_t(i) * kEzChunkSize;
        const std::size_t pieceLength = std::min(kEzChunkSize, plainLength - pieceStart);
        deflateReset(&stream);
        stream.next_in = const_cast<unsigned char*>(plain + pieceStart);
        stream.avail_in = static_cast<uInt>(pieceLength);
        stream.next_out = output.data();
        stream.avail_out = static_cast<uInt>(kEzChunkBufferSize - kTrailerSize);
        // A 32768-byte piece always fits: deflate's worst case is a few bytes over its input.
        if (deflate(&stream, Z_FINISH) != Z_STREAM_END)
            outOfMemory("[WriteDeflateZip]: Not enough memory.\n");
        std::size_t compressed = kEzChunkBufferSize - kTrailerSize - stream.avail_out;
        uLong crc = crc32(0L, Z_NULL, 0);
        crc = crc32(crc, plain + pieceStart, static_cast<uInt>(pieceLength));
        writeLittleEndian32(output.data() + compressed, static_cast<std::uint32_t>(crc));
        writeLittleEndian32(output.data() + compressed + 4,
                            static_cast<std::uint32_t>(pieceLength));
        compressed += kTrailerSize;
        const off_t offset = ftello(file);
        if (offset < 0 || std::uint64_t(offset) + compressed > UINT32_MAX) {
            tooLarge = offset >= 0;
            written = false;
            break;
        }
        offsets[i] = static_cast<std::uint32_t>(offset);
        lengths[i] = static_cast<std::uint32_t>(compressed);
        written = fwrite(output.data(), 1, compressed, file) == compressed;
    }
    deflateEnd(&stream);
    if (tooLarge) {
        fputs("[WriteDeflateZip]: content too large for the container\n", stderr);
        return -1;
    }
    const off_t end = ftello(file);
    written = written && end >= 0 && fseeko(file, start + 2 + 4, SEEK_SET) == 0 &&
              cp_fwrite(offsets.data(), 4, count, file) == count &&
              cp_fwrite(lengths.data(), 4, count, file) == count &&
              fseeko(file, end, SEEK_SET) == 0 && fflush(file) == 0;
    if (!written) {
        fputs("[WriteDeflateZip]: failed to write the container\n", stderr);
        return -1;
    }
    return 1;
}

int PackFromFile(FILE* outFile, FILE* inFile) {
    if (fseeko(inFile, 0, SEEK_END) != 0) {
        fputs("[PackFromFile]: cannot measure the input\n", stderr);
        return -1;
    }
    const off_t length = ftello(inFile);
    if (length < 0 || fseeko(inFile, 0, SEEK_SET) != 0) {
        fputs("[PackFromFile]: cannot measure the input\n", stderr);
        return -1;
    }
    std::vector<unsigned char> plain = allocateOrExit<unsigned char>(
        static_cast<std::size_t>(length), "[PackFromFile]: no memory for zipping\n");
    if (!plain.empty() && fread(plain.data(), 1, plain.size(), inFile) != plain.size()) {
        fputs("[PackFromFile]: cannot read the input\n", stderr);
        return -1;
    }
    return WriteDeflateZip(outFile, plain.data(), plain.size());
}
