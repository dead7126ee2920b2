#pragma once
// One data line of a .star file, converted as the C library would convert it with
// "%lf %lf %lf %lf %lf %lf %lf %lf %lf %lf %f %f %f %f %f %f %s %f %s %d %d %s".

#include <string_view>

#include "catalogue/star_obj.h"

// Fills the record's file fields (missing ones keep the values of makeEmptyStarObj) and
// returns the number of fields converted. nonFinite is set when a converted number is
// infinite, NaN or too large for its field.
int scanStarDataLine(std::string_view line, StarObj& star, bool& nonFinite);

// The field counts a data line may have: 3, 4, 7, 10, 11, 12, 16, 17, 18, 19, 20, 21, 22.
bool isAllowedFieldCount(int fields);

// The common name: the rest of the line after 21 words, trailing white space removed.
std::string_view commonNameOfLine(std::string_view line);

// True for the luminosity classes "I", "II", "III", "IV" and "V", and for "---" (none).
bool isKnownSpectralType(const char* type);
