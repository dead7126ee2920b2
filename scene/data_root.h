#pragma once
// The data tree: its root comes from TOPDIR (default "../.."), and every data file is looked
// for first under its relative name (from the working folder), then under the root.

#include <string>

constexpr const char* kDefaultDataRoot = "../..";

// TOPDIR when it is set (even to an empty text), else "../..".
std::string dataRootFromEnvironment();

// "%s/%s" of the root and the relative name.
std::string underDataRoot(const std::string& root, const std::string& relative);

// True when a plain file of that name can be opened for reading.
bool readableFile(const std::string& path);

// The ephemeris cache after opening: twice the current cache when that is still smaller than
// the data, else the whole data (bytes).
int ephemerisCacheSizeFor(int dataSize, int cacheSize);
