// Writing the star parameter block as a star parameter file.

#include <GL/gl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "catalogue/star_list.h"

namespace {

constexpr double kRadToDeg = 180.0 / 3.14159265358979323846;

const char* minFilterName(int filter) {
    switch (filter) {
        case GL_LINEAR_MIPMAP_NEAREST:
            return "GL_LINEAR_MIPMAP_NEAREST";
        case GL_LINEAR_MIPMAP_LINEAR:
            return "GL_LINEAR_MIPMAP_LINEAR";
        case GL_NEAREST_MIPMAP_NEAREST:
            return "GL_NEAREST_MIPMAP_NEAREST";
        case GL_NEAREST_MIPMAP_LINEAR:
            return "GL_NEAREST_MIPMAP_LINEAR";
        case GL_NEAREST:
            return "GL_NEAREST";
        default:
            return "GL_LINEAR";
    }
}

void writeRangeSelection(std::FILE* out, const char* head, std::int32_t on, double lo, double hi) {
    if (on) {
        std::fprintf(out, "%s= on %f %f\n", head, lo, hi);
    } else {
        std::fprintf(out, "%s= off\n", head);
    }
}

}  // namespace

void StarList::writeStarParameter(std::FILE* out) const {
    if (out == nullptr) return;
    const StarParameter& p = param;
    std::fprintf(out, "Star Parameters\n");
    std::fprintf(out, "---------------\n");
    std::fprintf(out, "\n");
    if (out != stdout) {
        std::fprintf(
            out,
            "# NOTE : identifier names is important while order is not important (only edit)\n");
        std::fprintf(out, "\n");
        std::fprintf(out, "\n");
    }

    std::fprintf(out, "# constellation lines\n");
    std::fprintf(out, "# - file for the constellation information\n");
    std::fprintf(out, "# - color for constellation line and boundary:\t   <RGBA> <RGBA>\n");
    std::fprintf(out, "# - linewidth for constellation line and boundary: %%d %%d\n");
    std::fprintf(
        out,
        "# - stipple for constellation line and boundary:   off/<0x\?\?\?\?> off/<0x\?\?\?\?>\n");
    std::fprintf(out, "constellation_file    = %s\n", p.constellationFile);
    if (p.constellationColorsGiven) {
        const float* l = p.constellationLineColor;
        const float* b = p.constellationBoundColor;
        std::fprintf(out, "constellation_colors  = %f %f %f %f %f %f %f %f\n", l[0], l[1], l[2],
                     l[3], b[0], b[1], b[2], b[3]);
    } else {
        std::fprintf(out, "constellation_colors  =\n");
    }
    if (p.constellationWidthsGiven) {
        std::fprintf(out, "constellation_width   = %f %f\n", p.constellationLineWidth,
                     p.constellationBoundWidth);
    } else {
        std::fprintf(out, "constellation_width =\n");
    }
    std::fprintf(out, "constellation_stipple =");
    if (p.constellationLineStipple) {
        std::fprintf(out, " 0x%x", static_cast<unsigned>(p.constellationLineStipple));
    } else {
        std::fprintf(out, " off");
    }
    if (p.constellationBoundStipple) {
        std::fprintf(out, " 0x%x\n", static_cast<unsigned>(p.constellationBoundStipple));
    } else {
        std::fprintf(out, " off\n");
    }
    std::fprintf(out, "\n");

    std::fprintf(
        out,
        "# label scale (scale factor for text label in constellation, extrasolar planet, etc)\n");
    std::fprintf(out, "label_scale = %f\n", p.labelScale);
    std::fprintf(out, "\n");

    std::fprintf(out, "# extrasolar Planet Catalog\n");
    std::fprintf(out, "extrasolar_planet_file        = %s\n", p.extrasolarPlanetFile);
    std::fprintf(out, "extrasolar_planet_orbit_scale = %f\n", p.extrasolarPlanetOrbitScale);
    std::fprintf(out, "\n");

    std::fprintf(out, "# star selection criteria [on/off] followed by the range\n");
    writeRangeSelection(out, "zRange_selection     ", p.zRangeOn, p.zRangeMin, p.zRangeMax);
    writeRangeSelection(out, "Vmag_Range_selection ", p.vmagRangeOn, p.vmagRangeMin,
                        p.vmagRangeMax);
    writeRangeSelection(out, "Absmag_Range_selection ", p.absmagRangeOn, p.absmagRangeMin,
                        p.absmagRangeMax);
    for (int i = 0; i < kNumSpectralClasses; ++i) {
        if (p.sptypeRangeOn[i]) {
            std::fprintf(out, "Sptype_selection     = on %s %f %f\n", spectralClassNames[i],
                         p.sptypeRange[i][0], p.sptypeRange[i][1]);
        } else {
            std::fprintf(out, "Sptype_selection     = off %s\n", spectralClassNames[i]);
        }
    }
    std::fprintf(out, "\n");

    std::fprintf(out, "# color Map\n");
    std::fprintf(out, "# - [no_colormap] or\n");
    std::fprintf(out, "# - [bv_colormap <file> <bv-start> <bv-end>] or\n");
    std::fprintf(out, "# - [sp_colormap <file>]\n");
    std::fprintf(out, "color_map = ");
    if (p.colorMapMode == _USE_BV_COLOR_MAP) {
        std::fprintf(out, "bv_colormap %s %f %f\n", p.bvColorMapFile, p.bvStart, p.bvEnd);
    } else if (p.colorMapMode == _USE_SPECTRAL_COLOR_MAP) {
        std::fprintf(out, "sp_colormap %s\n", p.spColorMapFile);
    } else {
        std::fprintf(out, "no_colormap\n");
    }
    std::fprintf(out, "\n");

    std::fprintf(out, "# stars with pixel size < pxsizeTex will be rendered as AA point,\n");
    std::fprintf(out, "# else textured star\n");
    std::fprintf(out, "pxsizeTex = %d\n", p.pxsizeTex);
    std::fprintf(out, "\n");

    std::fprintf(out, "# Parameter for textured stars\n");
    std::fprintf(out, "texSize          = %f (no in use)\n", p.texSize);
    std::fprintf(out, "texScale         = %f\n", p.texScale);
    std::fprintf(out, "texParaMinFilter = %s\n", minFilterName(p.texParaMinFilter));
    std::fprintf(out, "texParaMagFilter = %s\n",
                 p.texParaMagFilter == GL_NEAREST ? "GL_NEAREST" : "GL_LINEAR");
    std::fprintf(out, "\n");

    std::fprintf(out, "# parameters to generate star texture (or profile) automatically\n");
    std::fprintf(out, "filterSize    = %f\n", p.filterSize);
    std::fprintf(out, "filterExp     = %f\n", p.filterExp);
    std::fprintf(out, "filterCutoff  = %f\n", p.filterCutoff);
    std::fprintf(out, "filterOrder   = %f\n", p.filterOrder);
    std::fprintf(out, "filterRGB     = %f %f %f\n", p.filterRGB[0], p.filterRGB[1], p.filterRGB[2]);
    std::fprintf(out, "telescopeDiam = %f\n", p.telescopeDiam);
    std::fprintf(out, "filterType    = ");
    if (p.filterType == _STAR_FILTER_SQUARE) {
        std::fprintf(out, "square \n");
    } else if (p.filterType == _STAR_FILTER_BUTTERWORTH) {
        std::fprintf(out, "buttonworth\n");
    } else {
        std::fprintf(out, "circular\n");
    }
    std::fprintf(out, "\n");

    std::fprintf(out, "# What kinds of texture for star\n");
    std::fprintf(out, "texture_source = ");
    switch (p.textureSource) {
        case kStarTextureAiry:
            std::fprintf(out, "Airy\n");
            break;
        case kStarTextureGauss:
            std::fprintf(out, "Gauss\n");
            break;
        case kStarTextureFFT:
            std::fprintf(out, "FFT\n");
            break;
        case kStarTextureFile:
            std::fprintf(out, "File %s\n", p.textureFile);
            break;
        default:
            std::fprintf(out, "No\n");
            break;
    }
    std::fprintf(out, "\n");

    std::fprintf(out, "# exposure and intensity tuning\n");
    std::fprintf(out, "exposure      = %f\n", p.exposure);
    std::fprintf(out, "tuneIntensity = %f\n", p.tuneIntensity);
    std::fprintf(out, "\n");

    std::fprintf(out, "# more parameters to tune the star size\n");
    std::fprintf(out, "starScale = %f\n", p.starScale);
    std::fprintf(out, "vmagMin   = %f\n", p.vmagMin);
    std::fprintf(out, "\n");

    std::fprintf(out, "# what time to put our stars and which year the data is taken\n");
    std::fprintf(out, "starAtYear    = %d\n", p.starAtYear);
    std::fprintf(out, "datasetAtYear = %d\n", p.datasetAtYear);
    std::fprintf(out, "\n");

    // The same vector as galactic longitude, latitude (degrees) and speed; a zero vector
    // has latitude 0.
    const double speed = std::sqrt(p.lsr[0] * p.lsr[0] + p.lsr[1] * p.lsr[1] + p.lsr[2] * p.lsr[2]);
    double l = std::atan2(p.lsr[1], p.lsr[0]) * kRadToDeg;
    if (l < 0.0) l += 360.0;
    double sinB = speed > 0.0 ? p.lsr[2] / speed : 0.0;
    sinB = sinB > 1.0 ? 1.0 : (sinB < -1.0 ? -1.0 : sinB);
    const double b = std::asin(sinB) * kRadToDeg;
    std::fprintf(out,
                 "# Local Standard of Rest (in km/s) or ((l,b)+speed) where (l,b) are degrees\n");
    std::fprintf(out, "LSR_KM       = %f %f %f\n", p.lsr[0], p.lsr[1], p.lsr[2]);
    std::fprintf(out, "LSR_LB_SPEED = %f %f %f\n", l, b, speed);
    std::fprintf(out, "\n");
}

// The block goes to a temporary file in the target's folder that replaces the target only
// once it is complete, so a failed write never leaves a truncated parameter file behind.
int StarList::writeStarParameter(const char* fileName) const {
    if (fileName == nullptr || fileName[0] == '\0') {
        std::fprintf(stderr, "Err (writeStarParameter): error writing star parameter to [%s]\n",
                     fileName != nullptr ? fileName : "");
        return -1;
    }
    std::string pattern = std::string(fileName) + ".XXXXXX";
    std::vector<char> tempName(pattern.begin(), pattern.end());
    tempName.push_back('\0');
    int fd = mkstemp(tempName.data());
    std::FILE* out = fd >= 0 ? fdopen(fd, "w") : nullptr;
    if (out == nullptr) {
        if (fd >= 0) {
            close(fd);
            std::remove(tempName.data());
        }
        std::fprintf(stderr, "Err (writeStarParameter): error writing star parameter to [%s]\n",
                     fileName);
        return -1;
    }
    mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, 0666 & ~mask);

    writeStarParameter(out);
    bool ok = std::fflush(out) == 0 && !std::ferror(out);
    ok = (std::fclose(out) == 0) && ok;
    ok = ok && std::rename(tempName.data(), fileName) == 0;
    if (!ok) {
        std::remove(tempName.data());
        std::fprintf(stderr, "Err (writeStarParameter): error writing star parameter to [%s]\n",
                     fileName);
        return -1;
    }
    return 1;
}
