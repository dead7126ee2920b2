#pragma once
// The built data tree, for the tests that check the real files.

#include <string>
#include <vector>

// <repo>/data
std::string dataRoot();

// Every file the "data" target writes, relative to the data root.
const std::vector<std::string>& generatedFiles();

// Fails the current test with "build the data tree first ..." unless every generated file is
// there; returns whether the tree is complete.
bool requireDataTree();
