// Builds the colormaps of the data tree:
//   <data>/stardata/bv_colormap.txt        black-body colours over B-V -0.4 .. 2.0
//   <data>/stardata/spectral_colormap.txt  colours by spectral type and luminosity class
#include <cstdio>

#include "tools/datatree/core/colormaps.h"
#include "tools/datatree/core/data_error.h"

int main(int argc, char** argv) {
    const char* program = "datatree_colormaps";
    if (argc != 2) return usage(program, "<data-dir>");
    return runConverter(program, [&] {
        std::string data = argv[1];
        writeFileAtomically(data + "/stardata/bv_colormap.txt", formatBvColormap());
        writeFileAtomically(data + "/stardata/spectral_colormap.txt", formatSpectralColormap());
        return kExitOk;
    });
}
