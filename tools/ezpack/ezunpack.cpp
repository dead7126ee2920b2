// ezunpack <in> <out>: writes the plain content of a data file, packed in the "EZ" container
// or not, to <out> (a plain input is copied unchanged).

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "image/data_file.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr,
                "usage: ezunpack <in> <out>\n  writes the plain content of data file <in> to "
                "<out>\n");
        return 2;
    }
    const char* inName = argv[1];
    const char* outName = argv[2];
    FILE* in = openDataFile(inName, "rb");
    if (in == nullptr) {
        // A damaged container has been reported already; say why when the file itself is the
        // trouble.
        FILE* probe = fopen(inName, "rb");
        if (probe == nullptr)
            fprintf(stderr, "ezunpack: cannot open [%s]: %s\n", inName, strerror(errno));
        else
            fclose(probe);
        fprintf(stderr, "ezunpack: failed to unpack [%s]\n", inName);
        return 1;
    }
    FILE* out = fopen(outName, "wb");
    if (out == nullptr) {
        fprintf(stderr, "ezunpack: cannot create [%s]: %s\n", outName, strerror(errno));
        fclose(in);
        return 1;
    }
    std::vector<char> buffer(1 << 16);
    bool ok = true;
    std::size_t n;
    while ((n = fread(buffer.data(), 1, buffer.size(), in)) > 0)
        if (fwrite(buffer.data(), 1, n, out) != n) ok = false;
    if (ferror(in)) ok = false;
    fclose(in);
    if (fclose(out) != 0) ok = false;
    if (!ok) {
        fprintf(stderr, "ezunpack: failed to write [%s]\n", outName);
        remove(outName);
        return 1;
    }
    return 0;
}
