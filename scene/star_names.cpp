#include "scene/star_names.h"

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {

// Position just after the nearest separator at or after from, or npos.
std::size_t afterNextSeparator(std::string_view text, std::size_t from) {
    static constexpr std::string_view kSeparators[] = {" ", "(", "-", ".", "//"};
    std::size_t best = std::string_view::npos;
    std::size_t bestLength = 0;
    for (std::string_view sep : kSeparators) {
        const std::size_t at = text.find(sep, from);
        if (at != std::string_view::npos && (best == std::string_view::npos || at < best)) {
            best = at;
            bestLength = sep.size();
        }
    }
    return best == std::string_view::npos ? best : best + bestLength;
}

bool restMatches(std::string_view rest, std::string_view typed) {
    if (rest.empty()) return false;
    const std::size_t n = typed.size() < rest.size() ? typed.size() : rest.size();
    return rest.substr(0, n) == typed.substr(0, n);
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

}  // namespace

bool starNameMatches(std::string_view nameText, std::string_view typed) {
    if (typed.empty()) return false;
    std::size_t at = 0;
    while (at != std::string_view::npos && at <= nameText.size()) {
        if (restMatches(nameText.substr(at), typed)) return true;
        at = afterNextSeparator(nameText, at);
    }
    return false;
}

std::optional<int> parseWholeNumber(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return std::nullopt;
    const std::string s(text);
    char* end = nullptr;
    errno = 0;
    const long value = std::strtol(s.c_str(), &end, 10);
    if (end == s.c_str() || *end != '\0' || errno == ERANGE || value < INT_MIN || value > INT_MAX) {
        return std::nullopt;
    }
    return static_cast<int>(value);
}

std::optional<double> parseLeadingNumber(std::string_view text) {
    text = trimmed(text);
    if (text.empty()) return std::nullopt;
    const std::string s(text);
    char* end = nullptr;
    errno = 0;
    const double value = std::strtod(s.c_str(), &end);
    if (end == s.c_str() || errno == ERANGE || !std::isfinite(value)) return std::nullopt;
    // What follows the number may only be a unit ("km/s"), not more digits or signs.
    std::string_view rest = trimmed(std::string_view(end));
    if (!rest.empty() && !std::isalpha(static_cast<unsigned char>(rest.front())) &&
        rest.front() != '%') {
        return std::nullopt;
    }
    return value;
}
