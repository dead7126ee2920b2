// ezpack <in> <out>: packs a file into the chunked "EZ" container read by every data reader.

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "image/data_file.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr,
                "usage: ezpack <in> <out>\n  packs file <in> into the EZ container <out>\n");
        return 2;
    }
    const char* inName = argv[1];
    const char* outName = argv[2];
    FILE* in = fopen(inName, "rb");
    if (in == nullptr) {
        fprintf(stderr, "ezpack: cannot open [%s] for reading: %s\n", inName, strerror(errno));
        return 1;
    }
    FILE* out = fopen(outName, "wb");
    if (out == nullptr) {
        fprintf(stderr, "ezpack: cannot create [%s]: %s\n", outName, strerror(errno));
        fclose(in);
        return 1;
    }
    int status = PackFromFile(out, in);
    fclose(in);
    if (fclose(out) != 0) status = -1;
    if (status != 1) {
        fprintf(stderr, "ezpack: failed to pack [%s] into [%s]\n", inName, outName);
        remove(outName);
        return 1;
    }
    return 0;
}
