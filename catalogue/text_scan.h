#pragma once
// A fast scanner with the conversions of the C library's formatted input: white space is
// skipped before each item, a number is the longest numeric prefix, a word runs to the next
// white space, and scanning stops at the first item that does not convert.

#include <string_view>

class TextScanner {
  public:
    explicit TextScanner(std::string_view text)
        : p_(text.data()), end_(text.data() + text.size()) {}

    // "%lf" / "%f": false when no number starts here. Infinite and NaN values convert (like
    // the C library) but set nonFinite(), so that readers can reject them.
    bool scanDouble(double& value);
    bool scanFloat(float& value);
    // "%d": false when no integer starts here or it does not fit in an int.
    bool scanInt(int& value);
    // "%x": optional 0x prefix, hexadecimal digits; false when none or above 0xFFFFFFFF.
    bool scanHex(unsigned& value);
    // "%s": false at the end of the text.
    bool scanWord(std::string_view& word);

    bool nonFinite() const { return nonFinite_; }
    // True while every conversion so far ended at white space or at the end of the text, so
    // that the items converted are exactly the words of the text.
    bool wordAligned() const { return wordAligned_; }
    // What is left after the last converted item.
    std::string_view rest() const {
        return std::string_view(p_, static_cast<std::size_t>(end_ - p_));
    }

  private:
    void skipSpace();
    void checkWordEnd();

    const char* p_;
    const char* end_;
    bool nonFinite_ = false;
    bool wordAligned_ = true;
};

// Counts the words of a text ("%s %s %s ...") up to max.
int countWords(std::string_view text, int max);

// The number at the start of a word, as a whole-word conversion: true when the word starts
// with a finite number (any trailing characters are ignored, like atof), false otherwise.
bool wordToDouble(std::string_view word, double& value);
bool wordToInt(std::string_view word, int& value);
