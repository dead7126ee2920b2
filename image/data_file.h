#pragma once
// Data files, plain or packed in the chunked "EZ" container.
//
// Container layout (table entries are 32-bit unsigned, most-significant byte first):
//   0        2      "EZ"
//   2        4      chunk count N
//   6        4N     file offset of each chunk, from the start of the file
//   6 + 4N   4N     length in bytes of each chunk (deflate stream and trailer)
//   6 + 8N   ...    the chunks
// The plain content is cut into chunks of kEzChunkSize bytes (the last one holds the rest).
// Each chunk is a raw deflate stream followed by the CRC-32 of its plain bytes and its plain
// length, 4 bytes each, least-significant byte first.

#include <cstddef>
#include <cstdio>
#include <vector>

constexpr std::size_t kEzChunkSize = 32768;        // plain bytes per chunk
constexpr std::size_t kEzChunkBufferSize = 65536;  // largest compressed chunk, trailer included

// Opens a data file for reading. A plain file (one whose first two bytes are not "EZ") is
// reopened with the caller's mode and returned at its start. A container is inflated into an
// anonymous temporary stream held in memory (readable, writable and seekable like a file opened
// for update, freed when closed; it has no file descriptor, so measure it with fseek/ftell, not
// fstat) and returned at its start; the caller's mode is then not used. Returns nullptr when
// the file cannot be opened, and also when the container is damaged: the damage has then been
// reported on standard error ("\n<program>: <file>: invalid compressed data--...\n") and no
// partial content is handed on.
FILE* openDataFile(const char* fileName, const char* mode);

// Reads a container from the file's current position and appends its content to plain.
// inputName is the name shown in damage reports. Returns 1 when every chunk inflated and
// checked, -1 after reporting the first damaged chunk or table ("format violated", "crc error",
// "length error"); plain then holds the content of the chunks before it. A file that does not
// start with "EZ" prints "[ReadDeflateZip]: input file is not in our zip file format\n" and
// ends the process with status 1.
int ReadDeflateZip(FILE* file, std::vector<unsigned char>& plain, const char* inputName = "-");

// Writes plainLength bytes as a container at the file's current position and leaves the
// position at the end of the data. Returns 1, or -1 (with a message) when the content is too
// large for the container's 32-bit tables or the file cannot be written.
int WriteDeflateZip(FILE* file, const unsigned char* plain, std::size_t plainLength);

// Packs the whole of inFile (a file that can seek) into outFile as a container.
// Returns 1, or -1 (with a message) when the input cannot be read or the output written.
int PackFromFile(FILE* outFile, FILE* inFile);
