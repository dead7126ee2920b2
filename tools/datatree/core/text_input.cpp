#include "tools/datatree/core/text_input.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/datatree/core/data_error.h"

std::string readWholeFile(const std::string& path, std::size_t maxBytes) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) throw DataError("cannot open [" + path + "]: " + std::strerror(errno));
    std::string bytes;
    char buffer[1 << 16];
    std::size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        if (bytes.size() + n > maxBytes) {
            std::fclose(file);
            throw DataError("[" + path + "] is larger than " + std::to_string(maxBytes) + " bytes");
        }
        bytes.append(buffer, n);
    }
    bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed) throw DataError("cannot read [" + path + "]");
    return bytes;
}

std::vector<TextLine> splitLines(std::string_view text) {
    std::vector<TextLine> lines;
    std::size_t start = 0;
    int number = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
        if (end == std::string_view::npos) end = text.size();
        std::size_t stop = end;
        if (stop > start && text[stop - 1] == '\r') --stop;
        lines.push_back({++number, text.substr(start, stop - start)});
        start = next;
    }
    return lines;
}

std::vector<std::string_view> splitWords(std::string_view text) {
    std::vector<std::string_view> words;
    std::size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && (text[i] == ' ' || text[i] == '\t' || text[i] == '\r'))
            ++i;
        std::size_t start = i;
        while (i < text.size() && text[i] != ' ' && text[i] != '\t' && text[i] != '\r')
            ++i;
        if (i > start) words.push_back(text.substr(start, i - start));
    }
    return words;
}

std::vector<std::string_view> splitFields(std::string_view text, char separator) {
    std::vector<std::string_view> fields;
    std::size_t start = 0;
    for (;;) {
        std::size_t end = text.find(separator, start);
        if (end == std::string_view::npos) {
            fields.push_back(text.substr(start));
            return fields;
        }
        fields.push_back(text.substr(start, end - start));
        start = end + 1;
    }
}

std::string_view trim(std::string_view text) {
    std::size_t a = 0, b = text.size();
    while (a < b && (text[a] == ' ' || text[a] == '\t' || text[a] == '\r' || text[a] == '\n'))
        ++a;
    while (b > a && (text[b - 1] == ' ' || text[b - 1] == '\t' || text[b - 1] == '\r' ||
                     text[b - 1] == '\n'))
        --b;
    return text.substr(a, b - a);
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && text.substr(0, prefix.size()) == prefix;
}

std::string where(const std::string& file, int line) {
    return file + ": line " + std::to_string(line);
}

bool toDouble(std::string_view field, double* value) {
    field = trim(field);
    if (field.empty() || field.size() > 63) return false;
    char buffer[64];
    std::memcpy(buffer, field.data(), field.size());
    buffer[field.size()] = '\0';
    char* end = nullptr;
    errno = 0;
    double v = std::strtod(buffer, &end);
    if (end != buffer + field.size() || errno == ERANGE || v != v) return false;
    *value = v;
    return true;
}

bool toInt(std::string_view field, long long* value) {
    field = trim(field);
    if (field.empty() || field.size() > 30) return false;
    char buffer[32];
    std::memcpy(buffer, field.data(), field.size());
    buffer[field.size()] = '\0';
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(buffer, &end, 10);
    if (end != buffer + field.size() || errno == ERANGE) return false;
    *value = v;
    return true;
}

double needDouble(std::string_view field, const std::string& place, const char* what) {
    double v;
    if (!toDouble(field, &v)) {
        throw DataError(place + ": " + what + " is not a number: [" + std::string(field) + "]");
    }
    return v;
}

long long needInt(std::string_view field, const std::string& place, const char* what) {
    long long v;
    if (!toInt(field, &v)) {
        throw DataError(place + ": " + what + " is not an integer: [" + std::string(field) + "]");
    }
    return v;
}

std::string format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string out(n > 0 ? std::size_t(n) : 0, '\0');
    if (n > 0) std::vsnprintf(out.data(), out.size() + 1, fmt, args);
    va_end(args);
    return out;
}
