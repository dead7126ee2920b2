#include "tools/datatree/core/spectral_type.h"

#include <cstring>

namespace {

bool isClassLetter(char c) {
    return c != '\0' && std::strchr("OBAFGKMLTSCNRWD", c) != nullptr;
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Length of the Roman numeral I..V at text[i], or 0. Longest match first.
std::string romanAt(const std::string& t, std::size_t i) {
    static const char* const kNumerals[] = {"III", "II", "IV", "I", "V"};
    for (const char* n : kNumerals) {
        if (t.compare(i, std::strlen(n), n) == 0) return n;
    }
    return "";
}

}  // namespace

SpectralType parseSpectralType(const std::string& text) {
    SpectralType type;
    std::size_t i = 0;
    std::string prefixClass;
    bool metallic = false;

    // Metallic-line notation: take the hydrogen type.
    std::size_t h = text.find('h');
    if (!text.empty() && text[0] == 'k' && h != std::string::npos && h + 1 < text.size() &&
        isClassLetter(text[h + 1])) {
        i = h + 1;
        metallic = true;
    } else {
        // Old luminosity prefixes before the class letter.
        if (text.compare(0, 2, "sd") == 0) {
            prefixClass = "-";
            i = 2;
        } else if (!text.empty() && (text[0] == 'd' || text[0] == 'g' || text[0] == 'c') &&
                   text.size() > 1 && isClassLetter(text[1])) {
            prefixClass = text[0] == 'd' ? "V" : (text[0] == 'g' ? "III" : "I");
            i = 1;
        }
        while (i < text.size() && !isClassLetter(text[i]))
            ++i;
    }
    if (i >= text.size()) return type;

    std::string cls(1, text[i++]);
    if ((cls == "W" || cls == "D") && i < text.size() && text[i] >= 'A' && text[i] <= 'Z') {
        cls += text[i++];
    }
    type.spectralClass = cls;

    // Subclass: digits with an optional decimal part.
    std::size_t start = i;
    while (i < text.size() && isDigit(text[i]))
        ++i;
    if (i < text.size() && text[i] == '.' && i + 1 < text.size() && isDigit(text[i + 1])) {
        ++i;
        while (i < text.size() && isDigit(text[i]))
            ++i;
    }
    if (i > start) {
        double v = std::strtod(text.substr(start, i - start).c_str(), nullptr);
        if (v >= 0.0 && v <= 10.0) type.number = v;
    }

    // Luminosity class: a numeral right after the subclass (blanks, '(' or ':' allowed); in
    // the metallic-line notation it closes the string ("kA2hA5mA7V").
    if (metallic) {
        i = text.size();
        while (i > 0 && !isDigit(text[i - 1]))
            --i;
    }
    // Intermediate types after the subclass ("K2/3III", "G8/K0III", "F3-5V") are passed over.
    while (!metallic && i + 1 < text.size() && (text[i] == '/' || text[i] == '-') &&
           (isDigit(text[i + 1]) || isClassLetter(text[i + 1]))) {
        ++i;
        if (isClassLetter(text[i])) ++i;
        while (i < text.size() && (isDigit(text[i]) || text[i] == '.'))
            ++i;
    }
    while (i < text.size() &&
           (text[i] == ' ' || text[i] == '(' || text[i] == ':' || text[i] == '+'))
        ++i;
    std::string roman = romanAt(text, i);
    if (!roman.empty()) {
        std::size_t after = i + roman.size();
        char next = after < text.size() ? text[after] : '\0';
        // "VI"/"VII" (subdwarfs) and "I0"/"Ia0" hypergiant forms outside I..V are refused;
        // only letter suffixes such as a, ab, b and intermediate classes are allowed.
        bool longerNumeral = next == 'I' || next == 'V' || next == 'X';
        if (!longerNumeral) type.luminosityClass = roman;
    } else if (!prefixClass.empty() && prefixClass != "-") {
        type.luminosityClass = prefixClass;
    }
    return type;
}
