#include "tools/datatree/core/star_names.h"

#include <cstring>

namespace {

struct Spelling {
    unsigned codePoint;
    const char* ascii;
};

// Greek letters (lower and upper case) and the Latin-1 / Latin Extended-A letters met in
// star and constellation names.
const Spelling kSpellings[] = {
    {0x03B1, "Alpha"},   {0x03B2, "Beta"},  {0x03B3, "Gamma"},   {0x03B4, "Delta"},
    {0x03B5, "Epsilon"}, {0x03B6, "Zeta"},  {0x03B7, "Eta"},     {0x03B8, "Theta"},
    {0x03B9, "Iota"},    {0x03BA, "Kappa"}, {0x03BB, "Lambda"},  {0x03BC, "Mu"},
    {0x03BD, "Nu"},      {0x03BE, "Xi"},    {0x03BF, "Omicron"}, {0x03C0, "Pi"},
    {0x03C1, "Rho"},     {0x03C2, "Sigma"}, {0x03C3, "Sigma"},   {0x03C4, "Tau"},
    {0x03C5, "Upsilon"}, {0x03C6, "Phi"},   {0x03C7, "Chi"},     {0x03C8, "Psi"},
    {0x03C9, "Omega"},   {0x03D1, "Theta"}, {0x03D5, "Phi"},     {0x00E0, "a"},
    {0x00E1, "a"},       {0x00E2, "a"},     {0x00E3, "a"},       {0x00E4, "a"},
    {0x00E5, "a"},       {0x00E7, "c"},     {0x00E8, "e"},       {0x00E9, "e"},
    {0x00EA, "e"},       {0x00EB, "e"},     {0x00EC, "i"},       {0x00ED, "i"},
    {0x00EE, "i"},       {0x00EF, "i"},     {0x00F1, "n"},       {0x00F2, "o"},
    {0x00F3, "o"},       {0x00F4, "o"},     {0x00F5, "o"},       {0x00F6, "o"},
    {0x00F8, "o"},       {0x00F9, "u"},     {0x00FA, "u"},       {0x00FB, "u"},
    {0x00FC, "u"},       {0x00FD, "y"},     {0x00C0, "A"},       {0x00C1, "A"},
    {0x00C2, "A"},       {0x00C4, "A"},     {0x00C5, "A"},       {0x00C7, "C"},
    {0x00C9, "E"},       {0x00D1, "N"},     {0x00D3, "O"},       {0x00D6, "O"},
    {0x00DC, "U"},       {0x00DF, "ss"},    {0x0101, "a"},       {0x0113, "e"},
    {0x012B, "i"},       {0x014D, "o"},     {0x016B, "u"},       {0x0161, "s"},
    {0x0160, "S"},       {0x017E, "z"},     {0x017D, "Z"},       {0x010D, "c"},
    {0x010C, "C"},       {0x2018, "'"},     {0x2019, "'"},       {0x201C, "\""},
    {0x201D, "\""},      {0x2013, "-"},     {0x2014, "-"},       {0x00A0, " "},
    {0x2009, " "},       {0x02BB, "'"},     {0x02BC, "'"},
};

// Decodes one UTF-8 character at s[i]; advances i. Malformed bytes decode as 0xFFFD.
unsigned nextCodePoint(const std::string& s, std::size_t& i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
    if (extra < 0 || i + extra >= s.size()) {
        ++i;
        return 0xFFFD;
    }
    unsigned cp = extra == 0 ? c : (c & (0x3F >> extra));
    for (int k = 1; k <= extra; ++k) {
        unsigned char d = static_cast<unsigned char>(s[i + k]);
        if ((d & 0xC0) != 0x80) {
            ++i;
            return 0xFFFD;
        }
        cp = (cp << 6) | (d & 0x3F);
    }
    i += extra + 1;
    return cp;
}

}  // namespace

std::string toAscii(const std::string& utf8) {
    std::string out;
    std::size_t i = 0;
    while (i < utf8.size()) {
        unsigned cp = nextCodePoint(utf8, i);
        const char* piece = nullptr;
        char single[2] = {0, 0};
        if (cp >= 0x20 && cp < 0x7F) {
            single[0] = char(cp);
            piece = single;
        } else if (cp == '\t') {
            piece = " ";
        } else {
            for (const Spelling& s : kSpellings) {
                if (s.codePoint == cp) piece = s.ascii;
            }
        }
        if (!piece) continue;
        for (const char* p = piece; *p; ++p) {
            if (*p == ' ' && (out.empty() || out.back() == ' ')) continue;
            out += *p;
        }
    }
    while (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

std::string designationToAscii(const std::string& designation) {
    std::string text = toAscii(designation);
    for (char& c : text) {
        if (c == '_') c = ' ';
    }
    return text;
}

std::string fitStarName(const std::string& name) {
    std::string out = name.substr(0, kMaxStarNameLength);
    while (!out.empty() && (out.back() == ' ' || out.back() == '\t'))
        out.pop_back();
    return out;
}
