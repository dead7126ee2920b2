#pragma once
// Shared helpers of the data-tree tests: scratch folders, small files, running a converter
// and capturing what it says.

#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"

// A fresh folder under the temporary folder, removed with everything in it when it goes.
using testsupport::fileExists;
using testsupport::ScratchDir;

// The whole file; a DataError when it cannot be read.
std::string readFile(const std::string& path);
// The text of a data file, inflated when it is packed in the "EZ" container; "" when it
// cannot be opened.
std::string readDataText(const std::string& path);

// Runs a tool with these words (the first the tool's path), its output captured.
using testsupport::RunResult;
RunResult runCommand(const std::vector<std::string>& words);

// Little-endian and big-endian byte helpers for building binary inputs.
void putU32le(std::string& b, unsigned v);
void putI32be(std::string& b, int v);
void putU32be(std::string& b, unsigned v);
void putF64be(std::string& b, double v);
void putF64le(std::string& b, double v);
