#include "catalogue/text_scan.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t kMaxNumberText = 511;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// Converts with the C library when the fast conversion reports a value out of range, so
// that overflow gives an infinity and underflow a tiny or zero value, as formatted input does.
template <typename T>
T slowConvert(const char* begin, const char* end) {
    char buf[kMaxNumberText + 1];
    std::size_t n = static_cast<std::size_t>(end - begin);
    if (n > kMaxNumberText) n = kMaxNumberText;
    std::memcpy(buf, begin, n);
    buf[n] = '\0';
    if constexpr (sizeof(T) == sizeof(float)) {
        return std::strtof(buf, nullptr);
    } else {
        return std::strtod(buf, nullptr);
    }
}

}  // namespace

void TextScanner::skipSpace() {
    while (p_ < end_ && isSpace(*p_))
        ++p_;
}

void TextScanner::checkWordEnd() {
    if (p_ < end_ && !isSpace(*p_)) wordAligned_ = false;
}

template <typename T>
static bool scanReal(const char*& p, const char* end, T& value, bool& nonFinite) {
    const char* s = p;
    if (s < end && *s == '+') {
        ++s;
        if (s < end && (*s == '-' || *s == '+')) return false;
    }
    T v{};
    auto result = std::from_chars(s, end, v, std::chars_format::general);
    if (result.ec == std::errc::invalid_argument) return false;
    if (result.ec == std::errc::result_out_of_range) v = slowConvert<T>(p, result.ptr);
    if (!std::isfinite(v)) nonFinite = true;
    value = v;
    p = result.ptr;
    return true;
}

bool TextScanner::scanDouble(double& value) {
    skipSpace();
    if (!scanReal(p_, end_, value, nonFinite_)) return false;
    checkWordEnd();
    return true;
}

bool TextScanner::scanFloat(float& value) {
    skipSpace();
    if (!scanReal(p_, end_, value, nonFinite_)) return false;
    checkWordEnd();
    return true;
}

bool TextScanner::scanInt(int& value) {
    skipSpace();
    const char* s = p_;
    if (s < end_ && *s == '+') {
        ++s;
        if (s < end_ && *s == '-') return false;
    }
    int v = 0;
    auto result = std::from_chars(s, end_, v, 10);
    if (result.ec != std::errc()) return false;
    value = v;
    p_ = result.ptr;
    checkWordEnd();
    return true;
}

bool TextScanner::scanHex(unsigned& value) {
    skipSpace();
    const char* s = p_;
    if (end_ - s >= 3 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X') &&
        std::isxdigit(static_cast<unsigned char>(s[2]))) {
        s += 2;
    }
    unsigned long long v = 0;
    auto result = std::from_chars(s, end_, v, 16);
    if (result.ec != std::errc() || v > 0xFFFFFFFFull) return false;
    value = static_cast<unsigned>(v);
    p_ = result.ptr;
    checkWordEnd();
    return true;
}

bool TextScanner::scanWord(std::string_view& word) {
    skipSpace();
    if (p_ == end_) return false;
    const char* s = p_;
    while (p_ < end_ && !isSpace(*p_))
        ++p_;
    word = std::string_view(s, static_cast<std::size_t>(p_ - s));
    return true;
}

int countWords(std::string_view text, int max) {
    TextScanner scan(text);
    std::string_view word;
    int n = 0;
    while (n < max && scan.scanWord(word))
        ++n;
    return n;
}

bool wordToDouble(std::string_view word, double& value) {
    TextScanner scan(word);
    double v = 0.0;
    if (!scan.scanDouble(v) || scan.nonFinite()) return false;
    value = v;
    return true;
}

bool wordToInt(std::string_view word, int& value) {
    TextScanner scan(word);
    return scan.scanInt(value);
}
