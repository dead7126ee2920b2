#include "tools/datatree/core/json.h"

#include <cstdlib>
#include <cstring>

#include "tools/datatree/core/data_error.h"

const JsonValue* JsonValue::find(std::string_view name) const {
    for (const auto& member : members_) {
        if (member.first == name) return &member.second;
    }
    return nullptr;
}

class JsonParser {
  public:
    JsonParser(std::string_view text, const std::string& source) : text_(text), source_(source) {}

    JsonValue document() {
        JsonValue value = parseValue(0);
        skipSpace();
        if (pos_ != text_.size()) fail("text after the end of the document");
        return value;
    }

  private:
    [[noreturn]] void fail(const char* reason) const {
        throw DataError(source_ + ": bad JSON at byte " + std::to_string(pos_) + ": " + reason);
    }

    void skipSpace() {
        while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t' ||
                                       text_[pos_] == '\n' || text_[pos_] == '\r'))
            ++pos_;
    }

    bool take(char c) {
        skipSpace();
        if (pos_ < text_.size() && text_[pos_] == c) {
            ++pos_;
            return true;
        }
        return false;
    }

    void expect(char c, const char* reason) {
        if (!take(c)) fail(reason);
    }

    bool takeWord(const char* word) {
        std::size_t n = std::strlen(word);
        if (text_.substr(pos_, n) == word) {
            pos_ += n;
            return true;
        }
        return false;
    }

    JsonValue parseValue(int depth) {
        if (depth > kMaxJsonDepth) fail("nesting too deep");
        skipSpace();
        if (pos_ >= text_.size()) fail("unexpected end of text");
        JsonValue value;
        char c = text_[pos_];
        if (c == '{') {
            ++pos_;
            value.kind_ = JsonValue::Kind::kObject;
            if (take('}')) return value;
            do {
                skipSpace();
                if (pos_ >= text_.size() || text_[pos_] != '"') fail("expected a member name");
                std::string name = parseString();
                expect(':', "expected ':' after a member name");
                value.members_.emplace_back(std::move(name), parseValue(depth + 1));
            } while (take(','));
            expect('}', "expected ',' or '}' in an object");
        } else if (c == '[') {
            ++pos_;
            value.kind_ = JsonValue::Kind::kArray;
            if (take(']')) return value;
            do {
                value.items_.push_back(parseValue(depth + 1));
            } while (take(','));
            expect(']', "expected ',' or ']' in an array");
        } else if (c == '"') {
            value.kind_ = JsonValue::Kind::kString;
            value.string_ = parseString();
        } else if (takeWord("true")) {
            value.kind_ = JsonValue::Kind::kBool;
            value.boolean_ = true;
        } else if (takeWord("false")) {
            value.kind_ = JsonValue::Kind::kBool;
        } else if (takeWord("null")) {
            value.kind_ = JsonValue::Kind::kNull;
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            value.kind_ = JsonValue::Kind::kNumber;
            value.number_ = parseNumber();
        } else {
            fail("unexpected character");
        }
        return value;
    }

    double parseNumber() {
        std::size_t start = pos_;
        if (text_[pos_] == '-') ++pos_;
        auto digits = [&] {
            std::size_t from = pos_;
            while (pos_ < text_.size() && text_[pos_] >= '0' && text_[pos_] <= '9')
                ++pos_;
            return pos_ > from;
        };
        if (!digits()) fail("bad number");
        if (pos_ < text_.size() && text_[pos_] == '.') {
            ++pos_;
            if (!digits()) fail("bad number");
        }
        if (pos_ < text_.size() && (text_[pos_] == 'e' || text_[pos_] == 'E')) {
            ++pos_;
            if (pos_ < text_.size() && (text_[pos_] == '+' || text_[pos_] == '-')) ++pos_;
            if (!digits()) fail("bad number");
        }
        std::size_t n = pos_ - start;
        if (n > 63) fail("number too long");
        char buffer[64];
        std::memcpy(buffer, text_.data() + start, n);
        buffer[n] = '\0';
        return std::strtod(buffer, nullptr);
    }

    unsigned hex4() {
        if (pos_ + 4 > text_.size()) fail("short \\u escape");
        unsigned v = 0;
        for (int i = 0; i < 4; ++i) {
            char c = text_[pos_++];
            v <<= 4;
            if (c >= '0' && c <= '9')
                v |= unsigned(c - '0');
            else if (c >= 'a' && c <= 'f')
                v |= unsigned(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                v |= unsigned(c - 'A' + 10);
            else
                fail("bad \\u escape");
        }
        return v;
    }

    static void appendUtf8(std::string& out, unsigned cp) {
        if (cp < 0x80) {
            out += char(cp);
        } else if (cp < 0x800) {
            out += char(0xC0 | (cp >> 6));
            out += char(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            out += char(0xE0 | (cp >> 12));
            out += char(0x80 | ((cp >> 6) & 0x3F));
            out += char(0x80 | (cp & 0x3F));
        } else {
            out += char(0xF0 | (cp >> 18));
            out += char(0x80 | ((cp >> 12) & 0x3F));
            out += char(0x80 | ((cp >> 6) & 0x3F));
            out += char(0x80 | (cp & 0x3F));
        }
    }

    std::string parseString() {
        ++pos_;  // opening quote
        std::string out;
        for (;;) {
            if (pos_ >= text_.size()) fail("unterminated string");
            char c = text_[pos_++];
            if (c == '"') return out;
            if (static_cast<unsigned char>(c) < 0x20) fail("control character in a string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos_ >= text_.size()) fail("unterminated string");
            char e = text_[pos_++];
            switch (e) {
                case '"':
                    out += '"';
                    break;
                case '\\':
                    out += '\\';
                    break;
                case '/':
                    out += '/';
                    break;
                case 'b':
                    out += '\b';
                    break;
                case 'f':
                    out += '\f';
                    break;
                case 'n':
                    out += '\n';
                    break;
                case 'r':
                    out += '\r';
                    break;
                case 't':
                    out += '\t';
                    break;
                case 'u': {
                    unsigned cp = hex4();
                    if (cp >= 0xD800 && cp < 0xDC00 && text_.substr(pos_, 2) == "\\u") {
                        pos_ += 2;
                        unsigned low = hex4();
                        if (low >= 0xDC00 && low < 0xE000)
                            cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                    }
                    appendUtf8(out, cp);
                    break;
                }
                default:
                    fail("bad escape in a string");
            }
        }
    }

    std::string_view text_;
    const std::string& source_;
    std::size_t pos_ = 0;
};

JsonValue parseJson(std::string_view text, const std::string& source) {
    return JsonParser(text, source).document();
}
