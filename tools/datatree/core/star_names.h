#pragma once
// Star names as the star files carry them: plain ASCII, at most 31 characters.

#include <string>

constexpr std::size_t kMaxStarNameLength = 31;

// A designation as written in the name tables ("alpha1_Cen" with a Greek letter,
// "9_CMa", "V0822_Cas") in ASCII: "Alpha1 Cen", "9 CMa", "V0822 Cas".
std::string designationToAscii(const std::string& designation);

// Latin letters with accents lose them, Greek letters are spelled out, typographic quotes
// become ASCII ones, anything else outside ASCII is dropped; runs of blanks are folded.
std::string toAscii(const std::string& utf8);

// Cuts to kMaxStarNameLength characters and drops trailing blanks.
std::string fitStarName(const std::string& name);
