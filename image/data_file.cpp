#include "image/data_file.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "image/byte_order.h"

namespace {

constexpr std::size_t kTrailerSize = 8;  // CRC-32 and plain length, least-significant first
constexpr int kDeflateLevel = 6;
constexpr int kRawDeflateWindow = -15;  // raw deflate: no zlib or gzip wrapper

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

// Reads the container at the file's position and hands the plain bytes of each chunk to the
// sink: sink.room() gives kEzChunkSize bytes to inflate into, sink.commit(n) takes n of them
// and returns false when it cannot keep them. Returns 1, 0 when the sink failed, or -1 after
// reporting damage. The tables are checked against the file before anything is allocated for
// them: every chunk lies after the tables and inside the file, and chunks follow one another
// in table order without overlapping (as the writer lays them out), which also bounds the
// content by what the file can hold.
template <class Sink>
int inflateContainer(FILE* file, const char* inputName, Sink& sink) {
    long long start = ftello(file);
    char magic[2] = {0, 0};
    if (fread(magic, 1, 2, file) != 2 || magic[0] != 'E' || magic[1] != 'Z') {
        fputs("[ReadDeflateZip]: input file is not in our zip file format\n", stderr);
        exit(1);
    }
    long long end = fileLength(file);
    std::uint32_t count = 0;
    if (start < 0 || end < 0 || cp_fread(&count, 4, 1, file) != 1) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    const long long tablesEnd = start + 6 + 8LL * count;
    if (tablesEnd > end) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    std::vector<std::uint32_t> offsets =
        allocateOrExit<std::uint32_t>(count, "[ReadDeflateZip]: no memory for offset table\n");
    std::vector<std::uint32_t> lengths =
        allocateOrExit<std::uint32_t>(count, "[ReadDeflateZip]: no memory for chrunksize table\n");
    if (cp_fread(offsets.data(), 4, count, file) != count ||
        cp_fread(lengths.data(), 4, count, file) != count) {
        reportDamage(inputName, kFormatViolated);
        return -1;
    }
    std::vector<unsigned char> input = allocateOrExit<unsigned char>(
        kEzChunkBufferSize, "[ReadDeflateZip]: No memory for inbuf\n");
    ChunkInflater inflater;
    long long previousEnd = tablesEnd;
    for (std::uint32_t i = 0; i < count; ++i) {
        const long long offset = offsets[i];
        const std::size_t length = lengths[i];
        if (length < kTrailerSize || length > kEzChunkBufferSize || offset < previousEnd ||
            offset + static_cast<long long>(length) > end || fseeko(file, offset, SEEK_SET) != 0 ||
            fread(input.data(), 1, length, file) != length) {
            reportDamage(inputName, kFormatViolated);
            return -1;
        }
        previousEnd = offset + static_cast<long long>(length);
        std::size_t produced = 0;
        const char* damage = inflater.inflateChunk(input.data(), length, sink.room(), &produced);
        if (damage != nullptr) {
            reportDamage(inputName, damage);
            return -1;
        }
        if (!sink.commit(produced)) return 0;
    }
    return 1;
}

// Appends the content to a byte vector, inflating straight into its end.
class VectorSink {
  public:
    explicit VectorSink(std::vector<unsigned char>& plain) : plain_(plain), used_(plain.size()) {}
    ~VectorSink() { plain_.resize(used_); }
    unsigned char* room() {
        try {
            plain_.resize(used_ + kEzChunkSize);
        } catch (const std::bad_alloc&) {
            outOfMemory("[ReadDeflateZip]: No memory for outbuf\n");
        }
        return plain_.data() + used_;
    }
    bool commit(std::size_t n) {
        used_ += n;
        return true;
    }

  private:
    std::vector<unsigned char>& plain_;
    std::size_t used_;
};

// Writes the content to a file, one chunk at a time.
class FileSink {
  public:
    explicit FileSink(FILE* file)
        : file_(file),
          buffer_(allocateOrExit<unsigned char>(kEzChunkSize,
                                                "[ReadDeflateZip]: No memory for outbuf\n")) {}
    unsigned char* room() { return buffer_.data(); }
    bool commit(std::size_t n) { return cp_fwrite(buffer_.data(), 1, n, file_) == n; }

  private:
    FILE* file_;
    std::vector<unsigned char> buffer_;
};

}  // namespace

int ReadDeflateZip(FILE* file, std::vector<unsigned char>& plain, const char* inputName) {
    VectorSink sink(plain);
    return inflateContainer(file, inputName, sink) == 1 ? 1 : -1;
}

// A damaged container gives no file at all rather than the content before the damage: a
// reader handed a silently shortened catalogue or model would go on with wrong data, while
// a failed open makes every caller name the file, after the damage report.
FILE* openDataFile(const char* fileName, const char* mode) {
    FILE* file = fopen(fileName, "rb");
    if (file == nullptr) return nullptr;
    char magic[2] = {0, 0};
    if (fread(magic, 1, 2, file) != 2 || magic[0] != 'E' || magic[1] != 'Z') {
        fclose(file);
        return fopen(fileName, mode);
    }
    rewind(file);
    FILE* plain = tmpfile();
    if (plain == nullptr) {
        fprintf(stderr, "[openDataFile]: cannot create a temporary file for [%s]\n", fileName);
        fclose(file);
        return nullptr;
    }
    FileSink sink(plain);
    int status = inflateContainer(file, fileName, sink);
    fclose(file);
    if (status == 0 || fflush(plain) != 0) {
        fprintf(stderr, "[openDataFile]: cannot write the temporary file for [%s]\n", fileName);
        status = -1;
    }
    if (status != 1) {
        fclose(plain);
        return nullptr;
    }
    rewind(plain);
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
    if (fread(plain.data(), 1, plain.size(), inFile) != plain.size()) {
        fputs("[PackFromFile]: cannot read the input\n", stderr);
        return -1;
    }
    return WriteDeflateZip(outFile, plain.data(), plain.size());
}
