// The star parameter file: the written layout, reading it back, every kind of bad line with
// its message, and that nothing is applied from a file with an error.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "catalogue/star_list.h"
#include "tests/catalogue/catalogue_test_util.h"

using cattest::ScratchDir;
using cattest::stderrOf;
using cattest::stdoutOf;

namespace {

const std::string kHeader = "Star Parameters\n---------------\n";

const char* const kDefaultBlock =
    "Star Parameters\n"
    "---------------\n"
    "\n"
    "# constellation lines\n"
    "# - file for the constellation information\n"
    "# - color for constellation line and boundary:\t   <RGBA> <RGBA>\n"
    "# - linewidth for constellation line and boundary: %d %d\n"
    "# - stipple for constellation line and boundary:   off/<0x\?\?\?\?> off/<0x\?\?\?\?>\n"
    "constellation_file    = \n"
    "constellation_colors  =\n"
    "constellation_width =\n"
    "constellation_stipple = off off\n"
    "\n"
    "# label scale (scale factor for text label in constellation, extrasolar planet, etc)\n"
    "label_scale = 1.000000\n"
    "\n"
    "# extrasolar Planet Catalog\n"
    "extrasolar_planet_file        = \n"
    "extrasolar_planet_orbit_scale = 50000.000000\n"
    "\n"
    "# star selection criteria [on/off] followed by the range\n"
    "zRange_selection     = off\n"
    "Vmag_Range_selection = off\n"
    "Absmag_Range_selection = off\n"
    "Sptype_selection     = off O\n"
    "Sptype_selection     = off B\n"
    "Sptype_selection     = off A\n"
    "Sptype_selection     = off F\n"
    "Sptype_selection     = off G\n"
    "Sptype_selection     = off K\n"
    "Sptype_selection     = off M\n"
    "Sptype_selection     = off Other\n"
    "\n"
    "# color Map\n"
    "# - [no_colormap] or\n"
    "# - [bv_colormap <file> <bv-start> <bv-end>] or\n"
    "# - [sp_colormap <file>]\n"
    "color_map = no_colormap\n"
    "\n"
    "# stars with pixel size < pxsizeTex will be rendered as AA point,\n"
    "# else textured star\n"
    "pxsizeTex = 4\n"
    "\n"
    "# Parameter for textured stars\n"
    "texSize          = 1.000000 (no in use)\n"
    "texScale         = 1.000000\n"
    "texParaMinFilter = GL_LINEAR_MIPMAP_LINEAR\n"
    "texParaMagFilter = GL_LINEAR\n"
    "\n"
    "# parameters to generate star texture (or profile) automatically\n"
    "filterSize    = 1.000000\n"
    "filterExp     = 1.000000\n"
    "filterCutoff  = 1.000000\n"
    "filterOrder   = 1.000000\n"
    "filterRGB     = 1.000000 1.000000 1.000000\n"
    "telescopeDiam = 0.100000\n"
    "filterType    = circular\n"
    "\n"
    "# What kinds of texture for star\n"
    "texture_source = No\n"
    "\n"
    "# exposure and intensity tuning\n"
    "exposure      = 1.000000\n"
    "tuneIntensity = 1.000000\n"
    "\n"
    "# more parameters to tune the star size\n"
    "starScale = 1.000000\n"
    "vmagMin   = 10.000000\n"
    "\n"
    "# what time to put our stars and which year the data is taken\n"
    "starAtYear    = 1991\n"
    "datasetAtYear = 1991\n"
    "\n"
    "# Local Standard of Rest (in km/s) or ((l,b)+speed) where (l,b) are degrees\n"
    "LSR_KM       = 0.000000 0.000000 0.000000\n"
    "LSR_LB_SPEED = 0.000000 0.000000 0.000000\n"
    "\n";

std::string blockText(const StarList& list) {
    return stdoutOf([&] { list.writeStarParameter(stdout); });
}

struct ReadResult {
    int status;
    std::string err;
};

ReadResult readParameters(StarList& list, const ScratchDir& dir, const std::string& body,
                          const char* dataDir = nullptr) {
    std::string path = dir.write("p.txt", kHeader + body);
    ReadResult r{};
    r.err = stderrOf([&] { r.status = list.readStarParameter(path.c_str(), dataDir, 0); });
    return r;
}

std::string lineError(int line, const std::string& what) {
    return "Err(StarList::readStarParameter): (line " + std::to_string(line) + ")\n\t" + what +
           "\n";
}

}  // namespace

TEST(StarParameterFile, StandardOutputGetsTheBlockAFileAlsoTheNote) {
    ScratchDir dir;
    StarList list;
    EXPECT_EQ(blockText(list), kDefaultBlock);
    const std::string path = dir.file("written.txt");
    ASSERT_EQ(list.writeStarParameter(path.c_str()), 1);
    std::string expected = kDefaultBlock;
    expected.insert(kHeader.size() + 1,
                    "# NOTE : identifier names is important while order is not important (only "
                    "edit)\n\n\n");
    EXPECT_EQ(cattest::readFile(path), expected);
    // Only the header applies nothing.
    ReadResult r = readParameters(list, dir, "");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(blockText(list), kDefaultBlock);
}

TEST(StarParameterFile, EachKindOfBadLineHasItsMessageAndNothingIsApplied) {
    ScratchDir dir;
    const std::vector<std::pair<std::string, std::vector<std::string>>> kinds = {
        {"invalid data input",
         {"exposure = 0", "exposure = inf", "starScale = 0", "filterExp = 0", "telescopeDiam = 0",
          "filterOrder = -1", "filterType = triangle", "texParaMinFilter = GL_CUBIC",
          "texParaMagFilter = GL_LINEAR_MIPMAP_LINEAR", "pxsizeTex = -3", "texScale = big",
          "Absmag_Range_selection = maybe", "Sptype_selection = on X 1 2", "color_map = rainbow",
          "constellation_stipple = off zz", "starAtYear = soon", "LSR_KM = 1 2 nan"}},
        {"invalid data range",
         {"vmagMin = 25", "zRange_selection = on 20 10", "filterSize = 1.5", "filterRGB = 1 0.5 2",
          "Sptype_selection = on G 5 1", "color_map = bv_colormap f.txt 1 0"}},
        {"not enough input argument",
         {"texture_source = File", "exposure", "exposure=2", "constellation_stipple = off",
          "color_map = bv_colormap f.txt", "Sptype_selection = on", "filterRGB = 1 0.5",
          "Vmag_Range_selection = on 3", "constellation_colors = 1 1 1"}},
        {"invalid data line format", {"exposure 2"}},
        {"unknown identifier [Exposure]", {"Exposure = 2"}},
    };
    for (const auto& kind : kinds) {
        for (const std::string& line : kind.second) {
            SCOPED_TRACE(line);
            StarList list;
            ReadResult r = readParameters(
                list, dir, "# set the epoch first\nstarAtYear = 2000\n\n" + line + "   \n");
            EXPECT_EQ(r.status, -1);
            EXPECT_EQ(r.err, lineError(6, kind.first + " in line [" + line + "]"));
            EXPECT_EQ(list.getStarAtYear(), 1991);
        }
    }
}

TEST(StarParameterFile, AcceptedLinesAndTheirValues) {
    ScratchDir dir;
    dir.write("const.txt", "CONSTELLATION ORI Orion\n");
    StarList list;
    ReadResult r = readParameters(list, dir,
                                  "constellation_file = const.txt\n"
                                  "Sptype_selection = on G -5 12\n"
                                  "Sptype_selection = on Other 2 3\n"
                                  "Sptype_selection = off Other\n"
                                  "exposure = 0.5\n"
                                  "exposure = 0.25\n"
                                  "LSR_LB_SPEED = 90 0 20\n"
                                  "constellation_stipple = 0xff00 off\n"
                                  "constellation_colors = 0.5 0.25 1 1 0 0 1 0.5\n"
                                  "zRange_selection = on 15.5 19.25\n"
                                  "Vmag_Range_selection = on -1.5 6\n"
                                  "vmagMin = 6.5\n"
                                  "pxsizeTex = 8\n"
                                  "texture_source = FFT\n"
                                  "filterType = square\n"
                                  "filterSize = 0.25\n"
                                  "filterRGB = 1 0.5 0.25\n"
                                  "starAtYear = 2500\n",
                                  dir.path().c_str());
    ASSERT_EQ(r.status, 1) << r.err;
    // Written to a file and read back, the settings give the same block.
    const std::string written = dir.file("block.txt");
    ASSERT_EQ(list.writeStarParameter(written.c_str()), 1);
    StarList copy;
    stdoutOf([&] { EXPECT_EQ(copy.readStarParameter(written.c_str()), 1); });
    EXPECT_EQ(blockText(copy), blockText(list));
    EXPECT_NE(blockText(copy), kDefaultBlock);
    const StarParameter& p = list.getStarParameter();
    const std::string underDataDir = dir.path() + "/const.txt";
    EXPECT_STREQ(p.constellationFile, underDataDir.c_str());
    EXPECT_EQ(p.sptypeRangeOn[4], 1);
    EXPECT_FLOAT_EQ(p.sptypeRange[4][0], -1.0f);  // G from -5 to 12 is clamped
    EXPECT_FLOAT_EQ(p.sptypeRange[4][1], 10.0f);
    EXPECT_EQ(p.sptypeRangeOn[7], 0);
    EXPECT_FLOAT_EQ(p.exposure, 0.25f);
    EXPECT_NEAR(p.lsr[1], 20.0, 1e-9);
    EXPECT_EQ(p.constellationLineStipple, 0xff00);
    // A key without a value keeps the current file.
    ASSERT_EQ(readParameters(list, dir, "constellation_file = \n").status, 1);
    EXPECT_STREQ(list.getStarParameter().constellationFile, underDataDir.c_str());
    // A setter failing stops the later groups (exposure comes after the colormap), yet the
    // read succeeds.
    r = readParameters(list, dir, "exposure = 0.5\ncolor_map = sp_colormap missing.txt\n");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Err: (loadColorMapSpType) failed to load colormap [missing.txt]\n"),
              std::string::npos)
        << r.err;
    EXPECT_FLOAT_EQ(list.getStarParameter().exposure, 0.25f);
}

TEST(StarParameterFile, MissingForeignLongAndUnwritableFiles) {
    ScratchDir dir;
    StarList list;
    const std::string missing = dir.file("none.txt"), unwritable = dir.file("no/such/p.txt");
    const std::string foreign = dir.write("f.txt", "Star Parameters\n=====\nexposure = 2\n");
    const std::string binary = dir.write("b.txt", std::string("\x7f"
                                                              "ELF\x02\x01\x01\0\0\0",
                                                              10));
    const std::pair<std::function<int()>, std::string> cases[] = {
        {[&] { return list.readStarParameter(nullptr); },
         "Err: (NULL) input for readStarParameter\n"},
        {[&] { return list.readStarParameter(missing.c_str()); },
         "Err: fail to open [" + missing + "] in readStarParameter\n"},
        {[&] { return list.readStarParameter(missing.c_str(), nullptr, 1); }, ""},
        {[&] { return list.readStarParameter(foreign.c_str()); },
         "Err: invalid header in star parameter file [" + foreign + "]\n"},
        {[&] { return list.readStarParameter(binary.c_str()); },
         "Err: invalid header in star parameter file [" + binary + "]\n"},
        {[&] { return list.writeStarParameter(unwritable.c_str()); },
         "Err (writeStarParameter): error writing star parameter to [" + unwritable + "]\n"},
    };
    for (const auto& c : cases) {
        int result = 0;
        EXPECT_EQ(stderrOf([&] { result = c.first(); }), c.second);
        EXPECT_EQ(result, -1) << c.second;
    }
    ReadResult r = readParameters(list, dir, "exposure = 0.5 " + std::string(700, '#') + "\n");
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(r.err.rfind("Err(StarList::readStarParameter): (line 3)\n\tline longer than 511", 0),
              0u)
        << r.err;
    EXPECT_FLOAT_EQ(list.getStarParameter().exposure, 1.0f);
}
