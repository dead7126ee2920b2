#include "image/image_file.h"

#include <cstring>

ImageReader imageReaderForName(const char* fileName) {
    const std::size_t length = std::strlen(fileName);
    if (length < 4) return ImageReader::kUnknown;
    const char* ending = fileName + length - 4;
    if (std::strcmp(ending, ".sgi") == 0 || std::strcmp(ending, ".rgb") == 0)
        return ImageReader::kSgi;
    if (std::strcmp(ending, ".ppm") == 0 || std::strcmp(ending, ".pnm") == 0 ||
        std::strcmp(ending, ".pgm") == 0)
        return ImageReader::kPnm;
    return ImageReader::kUnknown;
}

std::vector<unsigned char> readImageByName(const char* fileName, int* width, int* height,
                                           int* components) {
    switch (imageReaderForName(fileName)) {
        case ImageReader::kSgi:
            return read_sgi(fileName, width, height, components);
        case ImageReader::kPnm:
            return read_pnm(fileName, width, height, components);
        case ImageReader::kUnknown:
            break;
    }
    return {};
}
