#pragma once
// Raw floating-point maps in PNM layout: "PF" (4-byte floats) and "PD" (8-byte doubles),
// values stored most-significant byte first, rows in buffer order. The header value on the
// third line is the caller's business.

#include <vector>

// Returns 1, or -1 with a message (file cannot be created, type not "PF").
int writePFM(const char* fileName, const char* type, int width, int height, float value,
             const float* data);
// Returns 1, or -1 with a message (file cannot be created, type not "PD").
int writePDM(const char* fileName, const char* type, int width, int height, double value,
             const double* data);

// Readers of the same layouts. Return 1 and fill the outputs, or -1 with a message.
int readPFM(const char* fileName, const char* type, int* width, int* height, float* value,
            std::vector<float>* data);
int readPDM(const char* fileName, const char* type, int* width, int* height, double* value,
            std::vector<double>* data);
