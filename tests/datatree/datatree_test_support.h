#pragma once
// Shared helpers of the data-tree tests: files, running a converter, binary inputs, stars.

#include <string>
#include <vector>

#include "catalogue/star_list.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

using testsupport::fileExists;
using testsupport::readFile;
using testsupport::RunResult;
using testsupport::ScratchDir;

// The text of a data file, inflated when it is packed in the "EZ" container; "" when it
// cannot be opened.
std::string readDataText(const std::string& path);

// Runs a tool with these words (the first the tool's path), its output captured.
RunResult runCommand(const std::vector<std::string>& words);

// Appends the size low bytes of v (a double's bits when isDouble), most-significant first
// when bigEndian: binary inputs for the converters.
void putBytes(std::string& b, double v, int size, bool bigEndian, bool isDouble = false);
inline void putU32le(std::string& b, unsigned v) {
    putBytes(b, v, 4, false);
}
inline void putU32be(std::string& b, unsigned v) {
    putBytes(b, v, 4, true);
}
inline void putI32be(std::string& b, int v) {
    putBytes(b, unsigned(v), 4, true);
}
inline void putF64be(std::string& b, double v) {
    putBytes(b, v, 8, true, true);
}
inline void putF64le(std::string& b, double v) {
    putBytes(b, v, 8, false, true);
}

// Reads a star dataset into the list with StarList::readStarFiles (no Sun); false when the
// reader refuses the file.
bool readStars(StarList& list, const std::string& path);
// The star of this HD number (a test failure and an empty record when there is none).
StarObj starByHd(const StarList& list, int hd);
// Distance in parsecs, galactic longitude and latitude in degrees, absolute V magnitude.
double parsecs(const StarObj& s);
void galacticLB(const StarObj& s, double* l, double* b);
double absoluteMagnitude(const StarObj& s);
