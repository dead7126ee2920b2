#pragma once
// SGI images, verbatim or run-length encoded, one byte per channel.

#include <vector>

// Returns xsize * ysize * zsize bytes, channels interleaved (1 luminance, 2 luminance-alpha,
// 3 RGB, 4 or more RGBA from the first four channels), rows in stored order (bottom row
// first). Sets width = xsize, height = ysize, components = zsize. Returns an empty buffer,
// silently, when the file cannot be opened or read or its size, tables or runs are damaged.
std::vector<unsigned char> read_sgi(const char* fileName, int* width, int* height, int* components);
