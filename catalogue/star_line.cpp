#include "catalogue/star_line.h"

#include <cfloat>
#include <cmath>
#include <cstring>

#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

// Copies at most size - 1 characters and terminates.
void copyText(char* dst, std::size_t size, std::string_view text) {
    std::size_t n = text.size() < size - 1 ? text.size() : size - 1;
    std::memcpy(dst, text.data(), n);
    dst[n] = '\0';
}

bool fitsFloat(double v) {
    return std::fabs(v) <= FLT_MAX;
}

}  // namespace

StarObj makeEmptyStarObj() {
    StarObj s;
    std::memset(static_cast<void*>(&s), 0, sizeof s);
    s.catalogPos = Phc{};
    s.pos = Phc{};
    s.vel = Vec3{};
    s.velErr = Vec3{};
    s.motion = Phc{};
    s.eyePos = Phc{};
    for (float& c : s.fileColor)
        c = 0.8f;
    std::strcpy(s.commonName, "---");
    std::strcpy(s.constellationName, "---");
    std::strcpy(s.constellationCode, "---");
    std::strcpy(s.spectralClass, "---");
    std::strcpy(s.spectralType, "---");
    s.planets = nullptr;
    return s;
}

int scanStarDataLine(std::string_view line, StarObj& star, bool& nonFinite) {
    TextScanner scan(line);
    double d[10];
    int n = 0;
    for (; n < 10; ++n) {
        if (!scan.scanDouble(d[n])) break;
    }
    if (n >= 1) star.catalogPos.x = d[0];
    if (n >= 2) star.catalogPos.y = d[1];
    if (n >= 3) star.catalogPos.z = d[2];
    if (n >= 4) {
        if (!fitsFloat(d[3])) nonFinite = true;
        star.distErr = fitsFloat(d[3]) ? static_cast<float>(d[3]) : 0.0f;
    }
    if (n >= 5) star.vel.x = d[4];
    if (n >= 6) star.vel.y = d[5];
    if (n >= 7) star.vel.z = d[6];
    if (n >= 8) star.velErr.x = d[7];
    if (n >= 9) star.velErr.y = d[8];
    if (n >= 10) star.velErr.z = d[9];
    if (n < 10) {
        nonFinite = nonFinite || scan.nonFinite();
        return n;
    }

    float f[6];
    int nf = 0;
    for (; nf < 6; ++nf) {
        if (!scan.scanFloat(f[nf])) break;
    }
    n += nf;
    if (nf >= 1) star.bv = f[0];
    if (nf >= 2) star.lum = f[1];
    for (int c = 0; c < 4 && c + 2 < nf; ++c)
        star.fileColor[c] = f[c + 2];
    nonFinite = nonFinite || scan.nonFinite();
    if (nf < 6) return n;

    std::string_view word;
    if (!scan.scanWord(word)) return n;
    ++n;
    copyText(star.spectralClass, 3, word);  // the first two characters
    float number = 0.0f;
    if (!scan.scanFloat(number)) return n;
    ++n;
    star.spectralNumber = number;
    nonFinite = nonFinite || scan.nonFinite();
    if (!scan.scanWord(word)) return n;
    ++n;
    copyText(star.spectralType, 11, word);  // at most 10 characters
    int hd = 0, hic = 0;
    if (!scan.scanInt(hd)) return n;
    ++n;
    star.hd = hd;
    if (!scan.scanInt(hic)) return n;
    ++n;
    star.hic = hic;
    const bool aligned = scan.wordAligned();
    if (!scan.scanWord(word)) return n;
    ++n;
    // When every field was a whole word, the name starts at the 22nd word; otherwise count
    // the words again from the start of the line.
    std::string_view name =
        aligned
            ? trimTrailing(std::string_view(word.data(), line.data() + line.size() - word.data()))
            : commonNameOfLine(line);
    copyText(star.commonName, kStarNameSize, name);
    return n;
}

bool isAllowedFieldCount(int fields) {
    switch (fields) {
        case 3:
        case 4:
        case 7:
        case 10:
        case 11:
        case 12:
        case 16:
        case 17:
        case 18:
        case 19:
        case 20:
        case 21:
        case 22:
            return true;
        default:
            return false;
    }
}

std::string_view commonNameOfLine(std::string_view line) {
    std::size_t i = 0, n = line.size();
    while (i < n && isSpace(line[i]))
        ++i;
    for (int word = 0; word < 21; ++word) {
        while (i < n && !isSpace(line[i]))
            ++i;
        while (i < n && isSpace(line[i]))
            ++i;
    }
    return trimTrailing(line.substr(i));
}

bool isKnownSpectralType(const char* type) {
    // "---" is the catalogue's own mark of an absent field; a file that knows a star's
    // spectral class but not its luminosity class writes it in that place.
    return std::strcmp(type, "---") == 0 || std::strcmp(type, "I") == 0 ||
           std::strcmp(type, "II") == 0 || std::strcmp(type, "III") == 0 ||
           std::strcmp(type, "IV") == 0 || std::strcmp(type, "V") == 0;
}
