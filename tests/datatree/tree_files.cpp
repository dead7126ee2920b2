#include "tests/datatree/tree_files.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "tests/datatree/datatree_test_support.h"

std::string dataRoot() {
    return std::string(SKYRAMA_SOURCE_DIR) + "/data";
}

const std::vector<std::string>& generatedFiles() {
    static const std::vector<std::string> files = [] {
        std::istringstream names(
            "stardata/hipparcos.star stardata/nearby.star stardata/constellations.txt "
            "stardata/exoplanets.txt stardata/bv_colormap.txt stardata/spectral_colormap.txt "
            "stardata/star.sgi ephemerisdata/binp_all.405 texturedata/font.tga "
            "objdata/MilkyWayEnv.obj objdata/MilkyWayEnv.mtl objdata/milkyway.ppm "
            "objdata/earth.obj objdata/earth.mtl objdata/earth.ppm objdata/earthNight.obj "
            "objdata/earthNight.mtl objdata/earthNight.ppm objdata/earthCloud.obj "
            "objdata/earthCloud.mtl objdata/earthCloud.pgm objdata/earthCloudAlpha.pgm "
            "objdata/compass.obj objdata/compass.mtl objdata/arrow.obj objdata/arrow.mtl "
            "prtdata/SolarSystem/sun.prt prtdata/SolarSystem/sun_disk.ppm "
            "prtdata/SolarSystem/sun_disk_alpha.pgm prtdata/SolarSystem/sun_glow.ppm "
            "prtdata/SolarSystem/sun_glow_alpha.pgm");
        return std::vector<std::string>(std::istream_iterator<std::string>(names), {});
    }();
    return files;
}

bool requireDataTree() {
    std::string missing;
    for (const std::string& f : generatedFiles()) {
        if (!fileExists(dataRoot() + "/" + f)) missing += " " + f;
    }
    if (missing.empty()) return true;
    ADD_FAILURE() << "build the data tree first (cmake --build <build-dir> --target data); missing:"
                  << missing;
    return false;
}
