#include "tests/scene/scene_tree.h"

#include "tests/support/scratch_files.h"
#include "tests/solar/ephemeris_test_file.h"

namespace scenetest {

namespace {

using testsupport::writeFile;

const char* const kStars =
    "NUM_STARS 3\n"
    "SIZE 1 16.4894\n"
    "# x y z err vx vy vz evx evy evz bv lum r g b a class num type HD HIC name\n"
    "10 0 0 0.05 10 20 -5 0.1 0.2 0.3 0.65 100 0.8 0.8 0.8 1 G 2 V 1001 501 Alpha Testi\n"
    "0 10 0 0.02 -3 4 0 0.1 0.1 0.1 1.2 50 0.8 0.8 0.8 1 K 5 III 1002 502 Beta Testi\n"
    "0 0 -10 0.01 0 0 12 0.1 0.1 0.1 0.1 80 0.8 0.8 0.8 1 A 1 V 1003 503 Gamma (Ursa)-Minor\n";

const char* const kParameters =
    "Star Parameters\n"
    "---------------\n"
    "label_scale = 1.000000\n"
    "texture_source = Gauss\n"
    "LSR_KM = 1.000000 2.000000 3.000000\n";

const char* const kTriangle =
    "v -1 -1 0\nv 1 -1 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0.5 1\nvn 0 0 1\n"
    "f 1/1/1 2/2/1 3/3/1\n";

// One glow of 10^15 m, sized (as the real one) for the reference scale 15 it is drawn with.
const char* const kSun =
    "PARTICLE 1 1 15.0\n"
    "texture glow gaussian 255 10.0\n"
    "0 0 0 1.0 1.0 0.85 0.55 0.9 glow\n";

std::string script() {
    std::string s =
        "Movie Script\n"
        "------------\n"
        "resolution : " +
        std::to_string(kScriptWidth) + " x " + std::to_string(kScriptHeight) +
        "\n"
        "interp : linear\n"
        "nKeyFrames : 2\n";
    for (int k : {0, 2}) {
        s += "\nKeyFrame " + std::to_string(k) +
             "\n-----\n"
             "viewPos = 0 0 0 16\n"
             "viewDir = 1 0 0\n"
             "viewUp = 0 0 1\n"
             "fovy = 60\n"
             "aspect = 0.75\n";
    }
    return s;
}

}  // namespace

SceneTree writeSceneTree(const std::string& root, const std::string& starFileName,
                         int ephemerisRecords) {
    SceneTree t;
    t.root = root;
    t.starFile = root + "/data/stardata/" + starFileName;
    t.script = root + "/tour.scp";
    writeFile(t.starFile, kStars);
    writeFile(root + "/data/stardata/skyrama.txt", kParameters);
    for (const char* model : {"MilkyWayEnv", "earth", "earthCloud", "earthNight"})
        writeFile(root + "/data/objdata/" + model + ".obj", kTriangle);
    writeFile(root + "/data/prtdata/SolarSystem/sun.prt", kSun);
    writeFile(t.script, script());
    if (ephemerisRecords > 0) {
        solartest::TestEphemerisSpec layout;
        layout.records = ephemerisRecords;
        writeFile(root + "/data/ephemerisdata/.keep", "");
        solartest::writeTestEphemeris(root + "/data/ephemerisdata/binp_all.405", layout);
    }
    return t;
}

}  // namespace scenetest
