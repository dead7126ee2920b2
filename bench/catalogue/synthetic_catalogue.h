#pragma once
// Synthetic star catalogues in the .star format, for benchmarks that must run before (or
// without) the data tree: full 22-field lines like the real catalogue's.

#include <string>

// n stars in parsecs, positions uniform in a ball of the given radius (or, with
// inFrontOnly, in a cone of 20 degrees around -z), luminosities log-uniform over
// 1e-3 .. 1e4, reproducible for a seed.
std::string syntheticStarText(int n, double radiusParsecs, unsigned seed, bool inFrontOnly = false);

// Writes the text to a new temporary file and returns its name ("" on failure).
std::string writeTempFile(const std::string& text, const char* suffix);
