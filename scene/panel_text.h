#pragma once
// The text buffer behind one text field of the control panel: 300 characters with the
// terminator, edited in place by the panel.

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

constexpr std::size_t kPanelTextSize = 300;

struct PanelText {
    char text[kPanelTextSize] = "";

    // Copies at most 299 characters.
    void set(std::string_view s) {
        const std::size_t n = s.size() < kPanelTextSize - 1 ? s.size() : kPanelTextSize - 1;
        std::memcpy(text, s.data(), n);
        text[n] = '\0';
    }
    void clear() { text[0] = '\0'; }
    bool empty() const { return text[0] == '\0'; }
    const char* c_str() const { return text; }
    std::string str() const { return std::string(text); }
};

// snprintf into a panel text (cut at its size).
template <typename... Args>
void formatPanelText(PanelText& t, const char* format, Args... args) {
    std::snprintf(t.text, kPanelTextSize, format, args...);
}
