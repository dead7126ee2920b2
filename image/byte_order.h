#pragma once
// Byte order of the system's own binary files: every value larger than one byte is stored
// most-significant byte first, whatever the machine.

#include <cstddef>
#include <cstdio>

// Writes count elements of elementSize bytes. Elements larger than one byte are byte-reversed
// in place for the write and reversed back afterwards, so the caller's buffer ends unchanged.
// Returns the number of elements written, as fwrite does. An element size of 0 prints
// "[cp_fwrite]: fwrite size < 1\n" and ends the process with status 1.
std::size_t cp_fwrite(void* buffer, std::size_t elementSize, std::size_t count, FILE* file);

// Reads up to count elements of elementSize bytes and byte-reverses every element read.
// Returns the number of elements read, as fread does. An element size of 0 prints
// "[cp_fread]: fread size < 1\n" and ends the process with status 1.
std::size_t cp_fread(void* buffer, std::size_t elementSize, std::size_t count, FILE* file);

// Reverses the bytes of each of count elements of elementSize bytes, in place.
void reverseElementBytes(void* buffer, std::size_t elementSize, std::size_t count);
