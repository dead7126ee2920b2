#pragma once
// Reading the text of OBJ and MTL files: white-space separated tokens with line numbers,
// the rest of a line, numbers.

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace glmdetail {

inline bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

class TextCursor {
  public:
    explicit TextCursor(std::string_view text) : text_(text) {}

    // The next white-space separated token; false at the end of the text.
    bool nextToken(std::string_view* token) {
        while (pos_ < text_.size() && isBlank(text_[pos_])) {
            if (text_[pos_] == '\n') line_++;
            pos_++;
        }
        if (pos_ >= text_.size()) return false;
        std::size_t start = pos_;
        while (pos_ < text_.size() && !isBlank(text_[pos_]))
            pos_++;
        *token = text_.substr(start, pos_ - start);
        return true;
    }

    // What is left of the current line, without its line end; moves to the next line.
    std::string_view restOfLine() {
        std::size_t start = pos_;
        std::size_t end = text_.find('\n', pos_);
        if (end == std::string_view::npos) {
            pos_ = text_.size();
            end = text_.size();
        } else {
            pos_ = end + 1;
            line_++;
        }
        std::string_view rest = text_.substr(start, end - start);
        if (!rest.empty() && rest.back() == '\r') rest.remove_suffix(1);
        return rest;
    }

    // Line number (from 1) of the last token read.
    int line() const { return line_; }

    void rewind() {
        pos_ = 0;
        line_ = 1;
    }

  private:
    std::string_view text_;
    std::size_t pos_ = 0;
    int line_ = 1;
};

// Splits a text into words at any of the delimiter characters.
inline std::vector<std::string_view> splitWords(std::string_view text,
                                                std::string_view delimiters = " \t\r\n\v\f") {
    std::vector<std::string_view> words;
    std::size_t pos = 0;
    while (pos < text.size()) {
        pos = text.find_first_not_of(delimiters, pos);
        if (pos == std::string_view::npos) break;
        std::size_t end = text.find_first_of(delimiters, pos);
        if (end == std::string_view::npos) end = text.size();
        words.push_back(text.substr(pos, end - pos));
        pos = end;
    }
    return words;
}

// The first word of a text, or an empty view.
inline std::string_view firstWord(std::string_view text) {
    std::vector<std::string_view> words = splitWords(text);
    return words.empty() ? std::string_view() : words.front();
}

// Reads a float at the start of text (after blanks) as scanf's "%f" would, and moves past it.
// A value too large for a float becomes an infinity.
inline bool parseFloat(std::string_view* text, float* value) {
    std::size_t i = 0;
    while (i < text->size() && isBlank((*text)[i]))
        i++;
    bool negative = false;
    if (i < text->size() && ((*text)[i] == '+' || (*text)[i] == '-')) {
        negative = (*text)[i] == '-';
        i++;
    }
    const char* first = text->data() + i;
    const char* last = text->data() + text->size();
    if (first < last && (*first == '+' || *first == '-')) return false;
    double parsed = 0.0;
    std::from_chars_result r = std::from_chars(first, last, parsed);
    if (r.ptr == first) return false;
    if (r.ec == std::errc::result_out_of_range) {
        // Overflow or underflow: tell them apart by the exponent's sign.
        std::string_view digits(first, r.ptr - first);
        std::size_t e = digits.find_first_of("eE");
        bool small = e != std::string_view::npos && e + 1 < digits.size() && digits[e + 1] == '-';
        parsed = small ? 0.0 : HUGE_VAL;
    }
    *value = static_cast<float>(negative ? -parsed : parsed);
    text->remove_prefix(r.ptr - text->data());
    return true;
}

// Reads up to maxCount floats; returns how many were read.
inline int parseFloats(std::string_view text, float* values, int maxCount) {
    int n = 0;
    while (n < maxCount && parseFloat(&text, &values[n]))
        n++;
    return n;
}

// Reads a decimal integer (optional sign) at the very start of text and moves past it.
inline bool parseInt(std::string_view* text, long long* value) {
    std::size_t i = 0;
    if (i < text->size() && (*text)[i] == '+') i++;
    const char* first = text->data() + i;
    const char* last = text->data() + text->size();
    if (first < last && *first == '+') return false;
    std::from_chars_result r = std::from_chars(first, last, *value);
    if (r.ptr == first || r.ec != std::errc()) return false;
    text->remove_prefix(r.ptr - text->data());
    return true;
}

}  // namespace glmdetail
