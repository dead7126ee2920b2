#pragma once
// A small JSON reader for the catalogue sources (GeoJSON star lists, star names, the planet
// catalogue). Objects keep their members in file order; lookups are linear, which suits the
// small objects of these files (the big ones are iterated, not searched).

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class JsonValue {
  public:
    enum class Kind { kNull, kBool, kNumber, kString, kArray, kObject };

    Kind kind() const { return kind_; }
    bool isNull() const { return kind_ == Kind::kNull; }
    bool isNumber() const { return kind_ == Kind::kNumber; }
    bool isString() const { return kind_ == Kind::kString; }
    bool isArray() const { return kind_ == Kind::kArray; }
    bool isObject() const { return kind_ == Kind::kObject; }

    double number() const { return number_; }
    bool boolean() const { return boolean_; }
    const std::string& string() const { return string_; }
    const std::vector<JsonValue>& items() const { return items_; }
    const std::vector<std::pair<std::string, JsonValue>>& members() const { return members_; }

    // The member of that name, or nullptr (also for non-objects).
    const JsonValue* find(std::string_view name) const;

  private:
    friend class JsonParser;
    Kind kind_ = Kind::kNull;
    bool boolean_ = false;
    double number_ = 0.0;
    std::string string_;
    std::vector<JsonValue> items_;
    std::vector<std::pair<std::string, JsonValue>> members_;
};

// Parses a whole document; throws DataError "<source>: bad JSON at byte <n>: <reason>".
// Nesting deeper than kMaxJsonDepth is refused.
constexpr int kMaxJsonDepth = 64;
JsonValue parseJson(std::string_view text, const std::string& source);
