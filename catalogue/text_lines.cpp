#include "catalogue/text_lines.h"

#include <cstring>

namespace {

constexpr std::size_t kReadChunk = 1 << 16;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

}  // namespace

bool isCommentLine(std::string_view line) {
    for (char c : line) {
        if (isSpace(c)) continue;
        return c == '#';
    }
    return false;
}

bool isBlankLine(std::string_view line) {
    for (char c : line) {
        if (!isSpace(c)) return false;
    }
    return true;
}

std::string_view trimTrailing(std::string_view line) {
    std::size_t n = line.size();
    while (n > 0 && isSpace(line[n - 1]))
        --n;
    return line.substr(0, n);
}

TextLineReader::TextLineReader(std::FILE* file) : file_(file), buffer_(kReadChunk) {}

bool TextLineReader::fill() {
    if (eof_) return false;
    if (begin_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ == buffer_.size()) return false;
    std::size_t got = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_);
    if (got == 0) {
        eof_ = true;
        return false;
    }
    end_ += got;
    return true;
}

bool TextLineReader::next(std::string_view& line) {
    tooLong_ = false;
    const char* start = nullptr;
    std::size_t len = 0;
    std::size_t scanned = 0;  // bytes of the current line already searched for its end
    for (;;) {
        const char* base = buffer_.data() + begin_;
        std::size_t avail = end_ - begin_;
        const void* nl = std::memchr(base + scanned, '\n', avail - scanned);
        if (nl != nullptr) {
            start = base;
            len = static_cast<const char*>(nl) - base;
            begin_ += len + 1;
            consumed_ += static_cast<long long>(len) + 1;
            break;
        }
        scanned = avail;
        if (avail > static_cast<std::size_t>(kMaxTextLine) + 1) {
            // Keep the first characters and skip the rest of the physical line.
            longLine_.assign(base, base + kMaxTextLine);
            consumed_ += static_cast<long long>(avail);
            begin_ = end_;
            for (;;) {
                if (!fill()) break;
                const void* end = std::memchr(buffer_.data(), '\n', end_);
                if (end != nullptr) {
                    std::size_t skip = static_cast<const char*>(end) - buffer_.data() + 1;
                    begin_ = skip;
                    consumed_ += static_cast<long long>(skip);
                    break;
                }
                consumed_ += static_cast<long long>(end_);
                begin_ = end_;
            }
            tooLong_ = true;
            ++lineNumber_;
            line = std::string_view(longLine_.data(), longLine_.size());
            if (const void* nul = std::memchr(line.data(), '\0', line.size())) {
                line = line.substr(0, static_cast<const char*>(nul) - line.data());
            }
            return true;
        }
        std::size_t before = end_ - begin_;
        if (!fill()) {
            if (begin_ == end_) return false;
            start = buffer_.data() + begin_;
            len = end_ - begin_;
            consumed_ += static_cast<long long>(len);
            begin_ = end_;
            break;
        }
        scanned = before;
    }
    if (len > 0 && start[len - 1] == '\r') --len;
    if (len > static_cast<std::size_t>(kMaxTextLine)) {
        tooLong_ = true;
        len = kMaxTextLine;
    }
    if (const void* nul = std::memchr(start, '\0', len)) {
        len = static_cast<const char*>(nul) - start;
    }
    ++lineNumber_;
    line = std::string_view(start, len);
    return true;
}

bool TextLineReader::nextDataLine(std::string_view& line) {
    while (next(line)) {
        if (!lastTooLong() && (isCommentLine(line) || isBlankLine(line))) continue;
        return true;
    }
    return false;
}

long long remainingFileBytes(std::FILE* file) {
    long here = std::ftell(file);
    if (here < 0) return -1;
    if (std::fseek(file, 0, SEEK_END) != 0) return -1;
    long end = std::ftell(file);
    std::fseek(file, here, SEEK_SET);
    if (end < here) return -1;
    return static_cast<long long>(end - here);
}
