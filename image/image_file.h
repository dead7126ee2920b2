#pragma once
// Image files of the system: PNM, PF/PD, SGI and TGA, every reader opening its input through
// openDataFile so that any image may be stored in the "EZ" container.

#include <vector>

#include "image/byte_order.h"
#include "image/float_image_file.h"
#include "image/image_buffer.h"
#include "image/pnm_file.h"
#include "image/sgi_file.h"
#include "image/tga_file.h"

// The reader a texture file name asks for, chosen by its last four characters
// (case-sensitive): ".sgi" and ".rgb" are SGI images; ".ppm", ".pnm" and ".pgm" are PNM.
enum class ImageReader { kUnknown, kSgi, kPnm };
ImageReader imageReaderForName(const char* fileName);

// Reads the file with the reader its name asks for. Returns an empty buffer for an unknown
// ending (check imageReaderForName first to tell that apart) or a failed read.
std::vector<unsigned char> readImageByName(const char* fileName, int* width, int* height,
                                           int* components);
