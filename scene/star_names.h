#pragma once
// Finding a star by what the user types: a catalogue number, or the beginning of any of the
// names in a star's name text ("Alpha Centauri A", "Rigil Kent.(Alpha Cen)").

#include <optional>
#include <string_view>

// True when typed matches nameText: at the start of the text, or just after any separator
// (" ", "(", "-", ".", "//"), the first min(typed length, rest length) characters of the
// rest equal typed's. An empty typed text or an empty rest never matches.
bool starNameMatches(std::string_view nameText, std::string_view typed);

// The whole text as a decimal integer (blanks around it allowed), or nothing for text that is
// not one or does not fit in an int.
std::optional<int> parseWholeNumber(std::string_view text);

// The whole text as a decimal floating-point number (blanks around it allowed, trailing unit
// words such as "km/s" too), or nothing.
std::optional<double> parseLeadingNumber(std::string_view text);
