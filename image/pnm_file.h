#pragma once
// Binary PNM images: greyscale "P5" and colour "P6", one byte per sample.
// Rows are kept in file order (top row first).

#include <vector>

// Writes "P5" (components 1) or "P6" (components 3) with maximum value 255.
// Returns 0 on success, 1 when the file cannot be created (or the size is negative),
// 2 when components is neither 1 nor 3 (no file is opened). Prints nothing itself.
int write_pnm(const char* fileName, int width, int height, int components,
              const unsigned char* data);

// Reads a "P5" or "P6" file in the three-line header form (comment lines allowed between the
// lines). Returns width * height * components bytes and sets components to 1 or 3; returns an
// empty buffer, silently, when the file cannot be opened, is not P5/P6, has a bad size or is
// shorter than its header says.
std::vector<unsigned char> read_pnm(const char* fileName, int* width, int* height, int* components);

// Writes the header "<type>\n<width> <height>\n<maxValue>\n" and the data of a "P6"
// (3 bytes a pixel) or "P5" (1 byte a pixel) image. Returns 1, or -1 with a message: the file
// cannot be created, or the type is neither (the file then holds only the header).
int writePNM(const char* fileName, const char* type, int width, int height, int maxValue,
             const unsigned char* data);

// Reads a file of the stated type ("P6" or "P5"; the file's own magic line is skipped, not
// compared). Returns 1 and fills width, height, maxValue and data, or -1 with a message.
int readPNM(const char* fileName, const char* type, int* width, int* height, int* maxValue,
            std::vector<unsigned char>* data);
