#include "image/sgi_file.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include "image/byte_order.h"
#include "image/data_file.h"
#include "image/file_util.h"

namespace {

constexpr long long kSgiDataStart = 512;         // image data (or the RLE tables) begin here
constexpr int kSgiChannelSlots = 4;              // at most R, G, B, A are read
constexpr std::size_t kScratchRowsFactor = 256;  // an encoded row may take xsize * 256 bytes
// Largest image the reader builds. Run-length tables may point many rows at the same bytes,
// so the file length alone does not bound the picture; textures stay far below this.
constexpr std::size_t kMaxSgiImageBytes = std::size_t(1) << 30;

struct SgiHeader {
    bool runLength = false;
    int xsize = 0;
    int ysize = 0;
    int zsize = 0;
};

bool readHeader(FILE* file, SgiHeader* header) {
    unsigned char bytes[12];
    if (fread(bytes, 1, sizeof bytes, file) != sizeof bytes) return false;
    auto field = [&](int at) { return (bytes[at] << 8) | bytes[at + 1]; };
    header->runLength = bytes[2] == 1;  // the low byte (bytes per channel) is taken as 1
    header->xsize = field(6);
    header->ysize = field(8);
    header->zsize = field(10);
    return true;
}

// Reads the rows of one picture, channel by channel, into row buffers.
class RowReader {
  public:
    RowReader(FILE* file, const SgiHeader& header, long long fileLength)
        : file_(file), header_(header), fileLength_(fileLength) {}

    // Verbatim rows need the whole stored picture in the file; encoded rows need their tables.
    bool prepare() {
        const long long rows = static_cast<long long>(header_.ysize) * header_.zsize;
        if (!header_.runLength) return kSgiDataStart + rows * header_.xsize <= fileLength_;
        if (kSgiDataStart + rows * 8 > fileLength_) return false;
        starts_.resize(rows);
        lengths_.resize(rows);
        scratch_.resize(std::size_t(header_.xsize) * kScratchRowsFactor);
        return fseeko(file_, kSgiDataStart, SEEK_SET) == 0 &&
               cp_fread(starts_.data(), 4, rows, file_) == std::size_t(rows) &&
               cp_fread(lengths_.data(), 4, rows, file_) == std::size_t(rows);
    }

    // Reads row y of channel z (xsize bytes) into row; false on damage.
    bool readRow(unsigned char* row, int y, int z) {
        const std::size_t width = header_.xsize;
        const long long index = y + static_cast<long long>(z) * header_.ysize;
        if (!header_.runLength) {
            return fseeko(file_, kSgiDataStart + index * header_.xsize, SEEK_SET) == 0 &&
                   fread(row, 1, width, file_) == width;
        }
        const long long start = starts_[index];
        const std::size_t length = lengths_[index];
        if (length > scratch_.size() || start + static_cast<long long>(length) > fileLength_ ||
            fseeko(file_, start, SEEK_SET) != 0 ||
            fread(scratch_.data(), 1, length, file_) != length)
            return false;
        return decodeRow(scratch_.data(), length, row, width);
    }

  private:
    // Runs: a count byte c, n = c & 0x7F; n = 0 ends the row; with c & 0x80 the next n bytes
    // are copied, otherwise the next byte is repeated n times. A run that would go past the
    // row or past the encoded bytes is damage. Bytes a row does not reach stay 0.
    static bool decodeRow(const unsigned char* in, std::size_t inLength, unsigned char* out,
                          std::size_t width) {
        std::fill(out, out + width, 0);
        std::size_t i = 0, o = 0;
        while (i < inLength) {
            const unsigned char c = in[i++];
            const std::size_t n = c & 0x7F;
            if (n == 0) return true;
            if (o + n > width) return false;
            if (c & 0x80) {
                if (i + n > inLength) return false;
                std::copy(in + i, in + i + n, out + o);
                i += n;
            } else {
                if (i >= inLength) return false;
                std::fill(out + o, out + o + n, in[i++]);
            }
            o += n;
        }
        return true;
    }

    FILE* file_;
    SgiHeader header_;
    long long fileLength_;
    std::vector<std::uint32_t> starts_;
    std::vector<std::uint32_t> lengths_;
    std::vector<unsigned char> scratch_;
};

std::vector<unsigned char> readPicture(FILE* file, const SgiHeader& header, long long length) {
    std::size_t bytes = 0;
    if (header.xsize < 1 || header.ysize < 1 || header.zsize < 1 ||
        !imageio::imageByteCount(header.xsize, header.ysize, header.zsize, 1, &bytes) ||
        bytes > kMaxSgiImageBytes)
        return {};
    RowReader reader(file, header, length);
    if (!reader.prepare()) return {};
    const int channels = std::min(header.zsize, kSgiChannelSlots);
    const std::size_t width = header.xsize;
    std::vector<unsigned char> rows(width * kSgiChannelSlots);
    std::vector<unsigned char> image(bytes);
    // With more than four channels each row holds R, G, B, A pixels at its start and the row
    // still advances by xsize * zsize bytes; the rest of the row stays 0.
    const std::size_t pixelStride = std::min(header.zsize, kSgiChannelSlots);
    for (int y = 0; y < header.ysize; ++y) {
        for (int z = 0; z < channels; ++z)
            if (!reader.readRow(rows.data() + z * width, y, z)) return {};
        unsigned char* out = image.data() + std::size_t(y) * width * header.zsize;
        for (std::size_t x = 0; x < width; ++x)
            for (int z = 0; z < channels; ++z)
                out[x * pixelStride + z] = rows[z * width + x];
    }
    return image;
}

}  // namespace

std::vector<unsigned char> read_sgi(const char* fileName, int* width, int* height,
                                    int* components) {
    imageio::FileHandle file(openDataFile(fileName, "rb"));
    if (!file) return {};
    SgiHeader header;
    if (!readHeader(file.get(), &header)) return {};
    const long long length = imageio::remainingBytes(file.get()) + 12;
    std::vector<unsigned char> image;
    try {
        image = readPicture(file.get(), header, length);
    } catch (const std::bad_alloc&) {
        return {};
    }
    if (image.empty()) return {};
    *width = header.xsize;
    *height = header.ysize;
    *components = header.zsize;
    return image;
}
