// Reading the star parameter file: every line is checked into a copy of the block, and only
// a file read without error is applied, group by group, through the setters.

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "catalogue/star_list.h"
#include "catalogue/text_lines.h"
#include "catalogue/text_scan.h"
#include "image/data_file.h"

namespace {

constexpr double kDegToRad = 3.14159265358979323846 / 180.0;

enum class LineStatus { kOk, kNotEnough, kBadFormat, kBadRange, kBadInput, kUnknownKey, kTooLong };

struct FileCloser {
    std::FILE* file;
    ~FileCloser() {
        if (file != nullptr) std::fclose(file);
    }
};

struct NamedEnum {
    const char* name;
    int value;
};

const NamedEnum kMinFilters[] = {
    {"GL_LINEAR_MIPMAP_NEAREST", GL_LINEAR_MIPMAP_NEAREST},
    {"GL_LINEAR_MIPMAP_LINEAR", GL_LINEAR_MIPMAP_LINEAR},
    {"GL_NEAREST_MIPMAP_NEAREST", GL_NEAREST_MIPMAP_NEAREST},
    {"GL_NEAREST_MIPMAP_LINEAR", GL_NEAREST_MIPMAP_LINEAR},
    {"GL_NEAREST", GL_NEAREST},
    {"GL_LINEAR", GL_LINEAR},
};
const NamedEnum kMagFilters[] = {{"GL_NEAREST", GL_NEAREST}, {"GL_LINEAR", GL_LINEAR}};
const NamedEnum kFilterTypes[] = {{"square", _STAR_FILTER_SQUARE},
                                  {"circular", _STAR_FILTER_CIRCULAR},
                                  {"buttonworth", _STAR_FILTER_BUTTERWORTH}};
const NamedEnum kTextureSources[] = {{"No", kStarTextureNone},
                                     {"Airy", kStarTextureAiry},
                                     {"Gauss", kStarTextureGauss},
                                     {"FFT", kStarTextureFFT},
                                     {"File", kStarTextureFile}};

template <std::size_t N>
bool lookupName(const NamedEnum (&table)[N], std::string_view name, int& value) {
    for (const NamedEnum& e : table) {
        if (name == e.name) {
            value = e.value;
            return true;
        }
    }
    return false;
}

const char* const kKeys[] = {"constellation_file",
                             "constellation_colors",
                             "constellation_width",
                             "constellation_stipple",
                             "label_scale",
                             "extrasolar_planet_file",
                             "extrasolar_planet_orbit_scale",
                             "zRange_selection",
                             "Vmag_Range_selection",
                             "Absmag_Range_selection",
                             "Sptype_selection",
                             "color_map",
                             "pxsizeTex",
                             "texSize",
                             "texScale",
                             "texParaMinFilter",
                             "texParaMagFilter",
                             "filterSize",
                             "filterExp",
                             "filterCutoff",
                             "filterOrder",
                             "filterRGB",
                             "telescopeDiam",
                             "filterType",
                             "texture_source",
                             "exposure",
                             "tuneIntensity",
                             "starScale",
                             "vmagMin",
                             "starAtYear",
                             "datasetAtYear",
                             "LSR_KM",
                             "LSR_LB_SPEED"};

bool isKnownKey(std::string_view key) {
    for (const char* k : kKeys) {
        if (key == k) return true;
    }
    return false;
}

// One "key = value..." line, scanned word by word and number by number.
class ParameterLine {
  public:
    ParameterLine(std::string_view text, const char* dataDir) : text_(text), dataDir_(dataDir) {}

    // Scans the line again from its start: skipWords words, then numbers of the given kind.
    // Returns the number of items converted, the skipped words included.
    template <typename T>
    int scanNumbers(int skipWords, T* values, int n) {
        TextScanner scan(text_);
        std::string_view word;
        int got = 0;
        for (; got < skipWords; ++got) {
            if (!scan.scanWord(word)) return got;
        }
        for (int i = 0; i < n; ++i, ++got) {
            bool ok;
            if constexpr (sizeof(T) == sizeof(float)) {
                ok = scan.scanFloat(values[i]);
            } else {
                ok = scan.scanDouble(values[i]);
            }
            if (!ok) break;
        }
        nonFinite_ = scan.nonFinite();
        return got;
    }
    bool nonFinite() const { return nonFinite_; }

    // The words of the line, at most max.
    int words(std::string_view* out, int max) const {
        TextScanner scan(text_);
        int n = 0;
        while (n < max && scan.scanWord(out[n]))
            ++n;
        return n;
    }

    // A file name of the line, under the data directory when one is given, cut to the
    // block's path size.
    void path(std::string_view word, char* dst) const {
        std::string p;
        if (dataDir_ != nullptr) {
            p = dataDir_;
            p += '/';
        }
        p.append(word.data(), word.size());
        std::strncpy(dst, p.c_str(), kStarParameterPathSize - 1);
        dst[kStarParameterPathSize - 1] = '\0';
    }

  private:
    std::string_view text_;
    const char* dataDir_;
    bool nonFinite_ = false;
};

bool inUnit(double v) {
    return v >= 0.0 && v <= 1.0;
}

// A number given as the third word: it must start with a finite number.
LineStatus thirdNumber(std::string_view word, double& value) {
    return wordToDouble(word, value) ? LineStatus::kOk : LineStatus::kBadInput;
}

LineStatus parseRangeSelection(ParameterLine& line, std::string_view onOff, std::int32_t& on,
                               double& lo, double& hi) {
    if (onOff == "off") {
        on = 0;
        return LineStatus::kOk;
    }
    if (onOff != "on") return LineStatus::kBadInput;
    double v[2];
    if (line.scanNumbers(3, v, 2) < 5) return LineStatus::kNotEnough;
    if (line.nonFinite()) return LineStatus::kBadInput;
    if (v[0] > v[1]) return LineStatus::kBadRange;
    on = 1;
    lo = v[0];
    hi = v[1];
    return LineStatus::kOk;
}

LineStatus parseLine(std::string_view text, StarParameter& p, const char* dataDir,
                     const char* const classNames[kNumSpectralClasses]) {
    ParameterLine line(text, dataDir);
    std::string_view w[4];
    const int n = line.words(w, 4);
    if (n < 2) return LineStatus::kNotEnough;
    if (w[1] != "=") return LineStatus::kBadFormat;
    const std::string_view key = w[0];
    if (!isKnownKey(key)) return LineStatus::kUnknownKey;
    if (n == 2) return LineStatus::kOk;  // "key =" without a value changes nothing

    if (key == "constellation_file") {
        line.path(w[2], p.constellationFile);
    } else if (key == "constellation_colors") {
        float c[8];
        if (line.scanNumbers(2, c, 8) < 10) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        p.constellationColorsGiven = true;
        std::memcpy(p.constellationLineColor, c, 4 * sizeof(float));
        std::memcpy(p.constellationBoundColor, c + 4, 4 * sizeof(float));
    } else if (key == "constellation_width") {
        float c[2];
        if (line.scanNumbers(2, c, 2) < 4) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        p.constellationWidthsGiven = true;
        p.constellationLineWidth = c[0];
        p.constellationBoundWidth = c[1];
    } else if (key == "constellation_stipple") {
        if (n < 4) return LineStatus::kNotEnough;
        std::int32_t stipple[2];
        for (int i = 0; i < 2; ++i) {
            std::string_view word = w[2 + i];
            unsigned value = 0;
            if (word == "off") {
                stipple[i] = 0;
                continue;
            }
            TextScanner scan(word);
            if (!scan.scanHex(value) || value > 0x7FFFFFFFu) return LineStatus::kBadInput;
            stipple[i] = static_cast<std::int32_t>(value);
        }
        p.constellationLineStipple = stipple[0];
        p.constellationBoundStipple = stipple[1];
    } else if (key == "label_scale" || key == "extrasolar_planet_orbit_scale") {
        float v;
        if (line.scanNumbers(2, &v, 1) < 3) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        (key == "label_scale" ? p.labelScale : p.extrasolarPlanetOrbitScale) = v;
    } else if (key == "extrasolar_planet_file") {
        line.path(w[2], p.extrasolarPlanetFile);
    } else if (key == "zRange_selection") {
        return parseRangeSelection(line, w[2], p.zRangeOn, p.zRangeMin, p.zRangeMax);
    } else if (key == "Vmag_Range_selection") {
        return parseRangeSelection(line, w[2], p.vmagRangeOn, p.vmagRangeMin, p.vmagRangeMax);
    } else if (key == "Absmag_Range_selection") {
        return parseRangeSelection(line, w[2], p.absmagRangeOn, p.absmagRangeMin, p.absmagRangeMax);
    } else if (key == "Sptype_selection") {
        if (n < 4) return LineStatus::kNotEnough;
        if (w[2] != "on" && w[2] != "off") return LineStatus::kBadInput;
        int c = -1;
        for (int i = 0; i < kNumSpectralClasses; ++i) {
            if (w[3] == classNames[i]) c = i;
        }
        if (c < 0) return LineStatus::kBadInput;
        if (w[2] == "off") {
            p.sptypeRangeOn[c] = 0;
            return LineStatus::kOk;
        }
        float v[2];
        if (line.scanNumbers(4, v, 2) < 6) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        if (v[0] > v[1]) return LineStatus::kBadRange;
        for (float& x : v)
            x = x < -1.0f ? -1.0f : (x > 10.0f ? 10.0f : x);
        p.sptypeRangeOn[c] = 1;
        p.sptypeRange[c][0] = v[0];
        p.sptypeRange[c][1] = v[1];
    } else if (key == "color_map") {
        if (w[2] == "no_colormap") {
            p.colorMapMode = _NO_COLOR_MAP;
        } else if (w[2] == "bv_colormap") {
            double v[2];
            if (n < 4 || line.scanNumbers(4, v, 2) < 6) return LineStatus::kNotEnough;
            if (line.nonFinite()) return LineStatus::kBadInput;
            if (v[0] > v[1]) return LineStatus::kBadRange;
            p.colorMapMode = _USE_BV_COLOR_MAP;
            line.path(w[3], p.bvColorMapFile);
            p.bvStart = v[0];
            p.bvEnd = v[1];
        } else if (w[2] == "sp_colormap") {
            if (n < 4) return LineStatus::kNotEnough;
            p.colorMapMode = _USE_SPECTRAL_COLOR_MAP;
            line.path(w[3], p.spColorMapFile);
        } else {
            return LineStatus::kBadInput;
        }
    } else if (key == "pxsizeTex") {
        int v = 0;
        if (!wordToInt(w[2], v) || v < 0) return LineStatus::kBadInput;
        p.pxsizeTex = v;
    } else if (key == "texSize" || key == "texScale") {
        double v = 0.0;
        if (thirdNumber(w[2], v) != LineStatus::kOk || v < 0.0) return LineStatus::kBadInput;
        (key == "texSize" ? p.texSize : p.texScale) = v;
    } else if (key == "texParaMinFilter") {
        int v = 0;
        if (!lookupName(kMinFilters, w[2], v)) return LineStatus::kBadInput;
        p.texParaMinFilter = v;
    } else if (key == "texParaMagFilter") {
        int v = 0;
        if (!lookupName(kMagFilters, w[2], v)) return LineStatus::kBadInput;
        p.texParaMagFilter = v;
    } else if (key == "filterSize" || key == "filterCutoff") {
        double v = 0.0;
        if (thirdNumber(w[2], v) != LineStatus::kOk) return LineStatus::kBadInput;
        if (!inUnit(v)) return LineStatus::kBadRange;
        (key == "filterSize" ? p.filterSize : p.filterCutoff) = static_cast<float>(v);
    } else if (key == "filterExp" || key == "telescopeDiam" || key == "exposure" ||
               key == "tuneIntensity" || key == "starScale") {
        double v = 0.0;
        if (thirdNumber(w[2], v) != LineStatus::kOk || !(v > 0.0)) return LineStatus::kBadInput;
        float f = static_cast<float>(v);
        if (key == "filterExp") p.filterExp = f;
        if (key == "telescopeDiam") p.telescopeDiam = f;
        if (key == "exposure") p.exposure = f;
        if (key == "tuneIntensity") p.tuneIntensity = f;
        if (key == "starScale") p.starScale = f;
    } else if (key == "filterOrder") {
        double v = 0.0;
        if (thirdNumber(w[2], v) != LineStatus::kOk || v < 0.0) return LineStatus::kBadInput;
        p.filterOrder = static_cast<float>(v);
    } else if (key == "filterRGB") {
        float v[3];
        if (line.scanNumbers(2, v, 3) < 5) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        for (float x : v) {
            if (!inUnit(x)) return LineStatus::kBadRange;
        }
        std::memcpy(p.filterRGB, v, sizeof v);
    } else if (key == "filterType") {
        int v = 0;
        if (!lookupName(kFilterTypes, w[2], v)) return LineStatus::kBadInput;
        p.filterType = v;
    } else if (key == "texture_source") {
        int v = 0;
        if (!lookupName(kTextureSources, w[2], v)) return LineStatus::kBadInput;
        if (v == kStarTextureFile) {
            if (n < 4) return LineStatus::kNotEnough;
            line.path(w[3], p.textureFile);
        }
        p.textureSource = v;
    } else if (key == "vmagMin") {
        double v = 0.0;
        if (thirdNumber(w[2], v) != LineStatus::kOk) return LineStatus::kBadInput;
        if (v < -10.0 || v > 20.0) return LineStatus::kBadRange;
        p.vmagMin = static_cast<float>(v);
    } else if (key == "starAtYear" || key == "datasetAtYear") {
        int v = 0;
        if (!wordToInt(w[2], v)) return LineStatus::kBadInput;
        (key == "starAtYear" ? p.starAtYear : p.datasetAtYear) = v;
    } else if (key == "LSR_KM") {
        double v[3];
        if (line.scanNumbers(2, v, 3) < 5) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        std::memcpy(p.lsr, v, sizeof v);
    } else if (key == "LSR_LB_SPEED") {
        double v[3];
        if (line.scanNumbers(2, v, 3) < 5) return LineStatus::kNotEnough;
        if (line.nonFinite()) return LineStatus::kBadInput;
        const double l = v[0] * kDegToRad, b = v[1] * kDegToRad, s = v[2];
        p.lsr[0] = s * std::cos(b) * std::cos(l);
        p.lsr[1] = s * std::cos(b) * std::sin(l);
        p.lsr[2] = s * std::sin(b);
    }
    return LineStatus::kOk;
}

void printLineError(LineStatus status, int lineNumber, std::string_view text) {
    std::string line(text);
    const char* head = "Err(StarList::readStarParameter): (line %d)\n";
    std::fprintf(stderr, head, lineNumber);
    switch (status) {
        case LineStatus::kNotEnough:
            std::fprintf(stderr, "\tnot enough input argument in line [%s]\n", line.c_str());
            break;
        case LineStatus::kBadFormat:
            std::fprintf(stderr, "\tinvalid data line format in line [%s]\n", line.c_str());
            break;
        case LineStatus::kBadRange:
            std::fprintf(stderr, "\tinvalid data range in line [%s]\n", line.c_str());
            break;
        case LineStatus::kBadInput:
            std::fprintf(stderr, "\tinvalid data input in line [%s]\n", line.c_str());
            break;
        case LineStatus::kUnknownKey: {
            TextScanner scan(text);
            std::string_view key;
            scan.scanWord(key);
            std::fprintf(stderr, "\tunknown identifier [%s] in line [%s]\n",
                         std::string(key).c_str(), line.c_str());
            break;
        }
        case LineStatus::kTooLong:
            std::fprintf(stderr, "\tline longer than %d characters in line [%s]\n", kMaxTextLine,
                         line.c_str());
            break;
        case LineStatus::kOk:
            break;
    }
}

}  // namespace

int StarList::readStarParameter(const char* fileName, const char* dataDir, int quiet) {
    if (fileName == nullptr) {
        if (!quiet) std::fprintf(stderr, "Err: (NULL) input for readStarParameter\n");
        return -1;
    }
    FileCloser in{openDataFile(fileName, "r")};
    if (in.file == nullptr) {
        if (!quiet) std::fprintf(stderr, "Err: fail to open [%s] in readStarParameter\n", fileName);
        return -1;
    }
    StarParameter next = param;
    TextLineReader reader(in.file);
    std::string_view line;
    static constexpr std::string_view kHeader1 = "Star Parameters";
    static constexpr std::string_view kHeader2 = "---------------";
    bool headerOk = reader.next(line) && line.substr(0, kHeader1.size()) == kHeader1;
    headerOk = headerOk && reader.next(line) && line.substr(0, kHeader2.size()) == kHeader2;
    if (!headerOk) {
        if (!quiet)
            std::fprintf(stderr, "Err: invalid header in star parameter file [%s]\n", fileName);
        return -1;
    }
    const char* classNames[kNumSpectralClasses];
    for (int i = 0; i < kNumSpectralClasses; ++i)
        classNames[i] = spectralClassNames[i];

    while (reader.next(line)) {
        std::string_view text = trimTrailing(line);
        LineStatus status = LineStatus::kOk;
        if (reader.lastTooLong()) {
            status = LineStatus::kTooLong;
        } else if (isCommentLine(text) || isBlankLine(text)) {
            continue;
        } else {
            status = parseLine(text, next, dataDir, classNames);
        }
        if (status != LineStatus::kOk) {
            printLineError(status, reader.lineNumber(), text);
            return -1;
        }
    }
    std::fclose(in.file);
    in.file = nullptr;
    applyStarParameter(next);
    return 1;
}

int StarList::applyStarParameter(const StarParameter& n) {
    StarParameter& c = param;
    // Constellations.
    if (n.constellationFile[0] != '\0' &&
        std::strcmp(n.constellationFile, c.constellationFile) != 0) {
        if (loadConstellations(n.constellationFile) < 0) return -1;
    }
    if (n.constellationColorsGiven != c.constellationColorsGiven) {
        if (n.constellationColorsGiven) {
            if (setConstellationColors(n.constellationLineColor, n.constellationBoundColor) < 0)
                return -1;
        } else {
            c.constellationColorsGiven = false;
        }
    }
    if (n.constellationWidthsGiven != c.constellationWidthsGiven) {
        if (n.constellationWidthsGiven) {
            if (setConstellationLineWidth(n.constellationLineWidth, n.constellationBoundWidth) <
                0) {
                return -1;
            }
        } else {
            c.constellationWidthsGiven = false;
        }
    }
    if (n.constellationLineStipple != c.constellationLineStipple ||
        n.constellationBoundStipple != c.constellationBoundStipple) {
        if (setConstellationStipple(n.constellationLineStipple, n.constellationBoundStipple) < 0)
            return -1;
    }
    if (n.labelScale != c.labelScale && setLabelScale(n.labelScale) < 0) return -1;

    // Extrasolar planets.
    if (n.extrasolarPlanetFile[0] != '\0' &&
        std::strcmp(n.extrasolarPlanetFile, c.extrasolarPlanetFile) != 0) {
        if (loadExtrasolarPlanets(n.extrasolarPlanetFile) < 0) return -1;
    }
    if (n.extrasolarPlanetOrbitScale != c.extrasolarPlanetOrbitScale &&
        setExtrasolarPlanetOrbitScale(n.extrasolarPlanetOrbitScale) < 0) {
        return -1;
    }

    // Selections.
    if (n.zRangeOn != c.zRangeOn || n.zRangeMin != c.zRangeMin || n.zRangeMax != c.zRangeMax) {
        if (n.zRangeOn ? setZRangeOn(n.zRangeMin, n.zRangeMax) < 0 : setZRangeOff() < 0) return -1;
    }
    if (n.vmagRangeOn != c.vmagRangeOn || n.vmagRangeMin != c.vmagRangeMin ||
        n.vmagRangeMax != c.vmagRangeMax) {
        if (n.vmagRangeOn ? setVMagRangeOn(n.vmagRangeMin, n.vmagRangeMax) < 0
                          : setVMagRangeOff() < 0) {
            return -1;
        }
    }
    if (n.absmagRangeOn != c.absmagRangeOn || n.absmagRangeMin != c.absmagRangeMin ||
        n.absmagRangeMax != c.absmagRangeMax) {
        if (n.absmagRangeOn ? setAbsMagRangeOn(n.absmagRangeMin, n.absmagRangeMax) < 0
                            : setAbsMagRangeOff() < 0) {
            return -1;
        }
    }
    for (int i = 0; i < kNumSpectralClasses; ++i) {
        if (n.sptypeRangeOn[i] == c.sptypeRangeOn[i]) continue;
        int result = n.sptypeRangeOn[i]
                         ? setSptypeRangeOn(i, n.sptypeRange[i][0], n.sptypeRange[i][1])
                         : setSptypeRangeOff(i);
        if (result < 0) return -1;
    }

    // Colormap.
    if (n.colorMapMode == _NO_COLOR_MAP) {
        if (c.colorMapMode != _NO_COLOR_MAP && setWhichColorMap(_NO_COLOR_MAP) < 0) return -1;
    } else if (n.colorMapMode == _USE_BV_COLOR_MAP) {
        if (std::strcmp(n.bvColorMapFile, c.bvColorMapFile) == 0 && n.bvStart == c.bvStart &&
            n.bvEnd == c.bvEnd) {
            if (c.colorMapMode != _USE_BV_COLOR_MAP && setWhichColorMap(_USE_BV_COLOR_MAP) < 0) {
                return -1;
            }
        } else {
            c.colorMapMode = _USE_BV_COLOR_MAP;
            c.bvStart = n.bvStart;
            c.bvEnd = n.bvEnd;
            if (loadColorMapBV(n.bvColorMapFile, n.bvStart, n.bvEnd) < 0) return -1;
        }
    } else if (n.colorMapMode == _USE_SPECTRAL_COLOR_MAP) {
        if (std::strcmp(n.spColorMapFile, c.spColorMapFile) == 0) {
            if (c.colorMapMode != _USE_SPECTRAL_COLOR_MAP &&
                setWhichColorMap(_USE_SPECTRAL_COLOR_MAP) < 0) {
                return -1;
            }
        } else {
            c.colorMapMode = _USE_SPECTRAL_COLOR_MAP;
            if (loadColorMapSpType(n.spColorMapFile) < 0) return -1;
        }
    }

    // Texture settings.
    if (n.pxsizeTex != c.pxsizeTex && setPXsizeTex(n.pxsizeTex) < 0) return -1;
    if (n.texSize != c.texSize) c.texSize = n.texSize;
    if (n.texScale != c.texScale && setStarTextureScale(n.texScale) < 0) return -1;
    if (setStarTextureParaFilter(n.texParaMinFilter, n.texParaMagFilter) < 0) return -1;

    const bool sourceChanged = n.textureSource != c.textureSource;
    switch (n.textureSource) {
        case kStarTextureAiry:
            if (sourceChanged || n.filterSize != c.filterSize || n.filterCutoff != c.filterCutoff ||
                n.telescopeDiam != c.telescopeDiam) {
                if (setStarTextureAiry(n.filterSize, n.filterCutoff, n.telescopeDiam) < 0)
                    return -1;
            }
            break;
        case kStarTextureGauss:
            if (sourceChanged || n.filterSize != c.filterSize || n.filterCutoff != c.filterCutoff) {
                if (setStarTextureGauss(n.filterSize, n.filterCutoff) < 0) return -1;
            }
            break;
        case kStarTextureFFT:
            if (sourceChanged || n.filterSize != c.filterSize || n.filterExp != c.filterExp ||
                n.filterCutoff != c.filterCutoff || n.filterOrder != c.filterOrder ||
                n.filterRGB[0] != c.filterRGB[0] || n.filterRGB[1] != c.filterRGB[1] ||
                n.filterRGB[2] != c.filterRGB[2] || n.filterType != c.filterType) {
                if (setStarTextureFFT(n.filterSize, n.filterExp, n.filterCutoff, n.filterOrder,
                                      n.filterRGB, n.filterType) < 0) {
                    return -1;
                }
            }
            break;
        case kStarTextureFile:
            if (sourceChanged || std::strcmp(n.textureFile, c.textureFile) != 0) {
                if (setStarTextureFile(n.textureFile, c.texSize) < 0) return -1;
            }
            break;
        default:
            break;
    }

    // Brightness.
    if (n.exposure != c.exposure && setExposure(n.exposure) < 0) return -1;
    if (n.tuneIntensity != c.tuneIntensity && setTuneIntensity(n.tuneIntensity) < 0) return -1;
    if (n.starScale != c.starScale && setStarScale(n.starScale) < 0) return -1;
    if (n.vmagMin != c.vmagMin && setVMagMin(n.vmagMin) < 0) return -1;

    // Epochs and the local standard of rest.
    if (n.starAtYear != c.starAtYear && setStarAtYear(n.starAtYear) < 0) return -1;
    if (n.datasetAtYear != c.datasetAtYear && setDatasetAtYear(n.datasetAtYear) < 0) return -1;
    if (n.lsr[0] != c.lsr[0] || n.lsr[1] != c.lsr[1] || n.lsr[2] != c.lsr[2]) {
        if (setLSR(n.lsr) < 0) return -1;
    }
    return 1;
}
