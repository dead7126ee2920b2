#include "tools/datatree/core/star_sources.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/json.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/text_input.h"

namespace {

constexpr std::uint32_t kZoneMagic = 0x835F040Au;
constexpr std::size_t kZoneHeaderBytes = 32;
constexpr std::size_t kZoneRecordBytes = 28;
constexpr int kMaxZoneLevel = 7;  // 20 * 4^7 zones; the real files use levels 0..2

std::uint32_t u32le(const std::string& b, std::size_t at) {
    return std::uint32_t(static_cast<unsigned char>(b[at])) |
           std::uint32_t(static_cast<unsigned char>(b[at + 1])) << 8 |
           std::uint32_t(static_cast<unsigned char>(b[at + 2])) << 16 |
           std::uint32_t(static_cast<unsigned char>(b[at + 3])) << 24;
}
std::int32_t i32le(const std::string& b, std::size_t at) {
    return static_cast<std::int32_t>(u32le(b, at));
}

bool isCommentOrBlank(std::string_view line) {
    std::string_view t = trim(line);
    return t.empty() || t[0] == '#';
}

// Digits after a catalogue prefix such as "HD 48915" or "HD\u2009183912"; 0 if none.
int catalogueNumber(const std::string& text, const char* prefix) {
    if (!startsWith(text, prefix)) return 0;
    std::size_t i = std::strlen(prefix);
    while (i < text.size() && !(text[i] >= '0' && text[i] <= '9')) {
        // skip blanks and multi-byte spaces between the prefix and the number
        if (text[i] != ' ' && static_cast<unsigned char>(text[i]) < 0x80) return 0;
        ++i;
    }
    long long n = 0;
    std::size_t digits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9' && digits < 9) {
        n = n * 10 + (text[i] - '0');
        ++i;
        ++digits;
    }
    return digits ? int(n) : 0;
}

}  // namespace

void readZoneCatalogue(const std::string& path, ZoneCatalogue* catalogue) {
    std::string b = readWholeFile(path);
    if (b.size() < kZoneHeaderBytes) {
        throw DataError(path + ": truncated: " + std::to_string(b.size()) +
                        " bytes, shorter than the 32-byte header");
    }
    if (u32le(b, 0) != kZoneMagic) {
        throw DataError(path + ": not a zone star catalogue (bad magic number)");
    }
    std::int32_t type = i32le(b, 4), level = i32le(b, 16);
    std::int32_t magMin = i32le(b, 20), magRange = i32le(b, 24), magSteps = i32le(b, 28);
    if (type != 0) {
        throw DataError(path + ": record type " + std::to_string(type) +
                        ", only type 0 (Hipparcos stars) is read");
    }
    if (level < 0 || level > kMaxZoneLevel) {
        throw DataError(path + ": zone level " + std::to_string(level) + " out of range");
    }
    if (magSteps <= 0) throw DataError(path + ": magnitude steps must be positive");
    std::size_t zones = std::size_t(20) << (2 * level);
    std::size_t tableEnd = kZoneHeaderBytes + 4 * zones;
    if (b.size() < tableEnd) {
        throw DataError(path + ": truncated inside the zone table");
    }
    std::uint64_t records = 0;
    for (std::size_t z = 0; z < zones; ++z)
        records += u32le(b, kZoneHeaderBytes + 4 * z);
    std::uint64_t expected = tableEnd + records * kZoneRecordBytes;
    if (expected != b.size()) {
        throw DataError(path + ": truncated or padded: the zone table announces " +
                        std::to_string(records) + " records (" + std::to_string(expected) +
                        " bytes) but the file holds " + std::to_string(b.size()) + " bytes");
    }
    for (std::uint64_t k = 0; k < records; ++k) {
        std::size_t at = tableEnd + std::size_t(k) * kZoneRecordBytes;
        int hip = int(u32le(b, at) & 0xFFFFFFu);
        if (hip <= 0 || catalogue->count(hip)) continue;
        ZoneStar s;
        unsigned bvIndex = static_cast<unsigned char>(b[at + 12]);
        unsigned magIndex = static_cast<unsigned char>(b[at + 13]);
        s.spectralIndex = int(static_cast<unsigned char>(b[at + 14]) |
                              static_cast<unsigned char>(b[at + 15]) << 8);
        s.parallaxMas = i32le(b, at + 24) / 100.0;
        s.vmag = (magMin + double(magIndex) * magRange / magSteps) / 1000.0;
        s.bv = (bvIndex + 0.5) / 32.0 - 0.5;
        (*catalogue)[hip] = s;
    }
}

std::vector<std::string> readSpectralTypes(const std::string& path) {
    std::string text = readWholeFile(path);
    std::vector<std::string> types;
    for (const TextLine& line : splitLines(text))
        types.emplace_back(trim(line.text));
    if (types.empty()) throw DataError(path + ": no spectral types");
    return types;
}

CrossIds readCrossIds(const std::string& path) {
    std::string text = readWholeFile(path);
    CrossIds ids;
    for (const TextLine& line : splitLines(text)) {
        if (isCommentOrBlank(line.text)) continue;
        auto f = splitFields(line.text, '\t');
        if (f.size() < 4) {
            throw DataError(where(path, line.number) +
                            ": expected tab-separated HIP, component, SAO, HD, HR columns");
        }
        int hip = int(needInt(f[0], where(path, line.number), "HIP number"));
        if (!trim(f[3]).empty()) {
            long long hd = needInt(f[3], where(path, line.number), "HD number");
            if (hd > 0 && hip > 0) ids.hdOfHip.emplace(hip, int(hd));
        }
        if (f.size() > 4 && !trim(f[4]).empty()) {
            long long hr = needInt(f[4], where(path, line.number), "HR number");
            if (hr > 0 && hip > 0) ids.hipOfHr.emplace(int(hr), hip);
        }
    }
    if (ids.hdOfHip.empty()) throw DataError(path + ": no HIP-HD pairs found");
    return ids;
}

std::unordered_map<int, double> readParallaxErrors(const std::string& path) {
    std::string text = readWholeFile(path);
    std::unordered_map<int, double> errors;
    for (const TextLine& line : splitLines(text)) {
        if (isCommentOrBlank(line.text)) continue;
        auto w = splitWords(line.text);
        if (w.size() < 2) {
            throw DataError(where(path, line.number) + ": expected HIP and parallax error");
        }
        std::string place = where(path, line.number);
        int hip = int(needInt(w[0], place, "HIP number"));
        double sigma = needDouble(w[1], place, "parallax error");
        if (sigma < 0) throw DataError(place + ": negative parallax error");
        errors.emplace(hip, sigma);
    }
    if (errors.empty()) throw DataError(path + ": no parallax errors found");
    return errors;
}

std::unordered_map<int, ProperMotion> readProperMotions(const std::string& path) {
    std::string text = readWholeFile(path);
    std::unordered_map<int, ProperMotion> motions;
    for (const TextLine& line : splitLines(text)) {
        if (isCommentOrBlank(line.text)) continue;
        auto w = splitWords(line.text);
        if (w.size() < 3) {
            throw DataError(where(path, line.number) + ": expected HIP, pmRA and pmDE");
        }
        std::string place = where(path, line.number);
        int hip = int(needInt(w[0], place, "HIP number"));
        ProperMotion pm;
        pm.ra = needDouble(w[1], place, "pmRA");
        pm.dec = needDouble(w[2], place, "pmDE");
        motions.emplace(hip, pm);
    }
    if (motions.empty()) throw DataError(path + ": no proper motions found");
    return motions;
}

std::unordered_map<int, std::vector<std::string>> readHipNames(const std::string& path,
                                                               bool quotedNames) {
    std::string text = readWholeFile(path);
    std::unordered_map<int, std::vector<std::string>> names;
    for (const TextLine& line : splitLines(text)) {
        if (isCommentOrBlank(line.text)) continue;
        std::size_t bar = line.text.find('|');
        if (bar == std::string_view::npos) {
            throw DataError(where(path, line.number) + ": expected HIP|name");
        }
        int hip = int(needInt(line.text.substr(0, bar), where(path, line.number), "HIP number"));
        std::string_view rest = line.text.substr(bar + 1);
        std::string name;
        if (quotedNames) {
            std::size_t open = rest.find('"');
            std::size_t close = open == std::string_view::npos ? open : rest.find('"', open + 1);
            if (close == std::string_view::npos) {
                throw DataError(where(path, line.number) + ": expected a quoted name");
            }
            name = std::string(rest.substr(open + 1, close - open - 1));
        } else {
            name = std::string(trim(rest));
        }
        if (!name.empty()) names[hip].push_back(name);
    }
    return names;
}

std::unordered_map<int, StarPosition> readStarPositions(const std::string& path) {
    std::string text = readWholeFile(path);
    JsonValue root = parseJson(text, path);
    const JsonValue* features = root.find("features");
    if (!features || !features->isArray()) {
        throw DataError(path + ": no \"features\" array (not a GeoJSON star list)");
    }
    std::unordered_map<int, StarPosition> positions;
    positions.reserve(features->items().size());
    std::size_t index = 0;
    for (const JsonValue& f : features->items()) {
        std::string place = path + ": feature " + std::to_string(index++);
        const JsonValue* id = f.find("id");
        const JsonValue* props = f.find("properties");
        const JsonValue* geometry = f.find("geometry");
        const JsonValue* coords = geometry ? geometry->find("coordinates") : nullptr;
        if (!id || !id->isNumber()) throw DataError(place + ": no numeric \"id\"");
        if (!coords || !coords->isArray() || coords->items().size() < 2 ||
            !coords->items()[0].isNumber() || !coords->items()[1].isNumber()) {
            throw DataError(place + ": no [ra, dec] coordinates");
        }
        const JsonValue* mag = props ? props->find("mag") : nullptr;
        if (!mag || !mag->isNumber()) throw DataError(place + ": no numeric \"mag\"");
        StarPosition p;
        p.raDeg = coords->items()[0].number();
        if (p.raDeg < 0) p.raDeg += 360.0;
        p.decDeg = coords->items()[1].number();
        if (p.raDeg < 0 || p.raDeg > 360 || p.decDeg < -90 || p.decDeg > 90) {
            throw DataError(place + ": coordinates out of range");
        }
        p.vmag = mag->number();
        const JsonValue* bv = props->find("bv");
        if (bv && bv->isNumber()) {
            p.hasBv = true;
            p.bv = bv->number();
        } else if (bv && bv->isString()) {
            p.hasBv = toDouble(bv->string(), &p.bv);
        }
        double hip = id->number();
        if (hip >= 1 && hip < 1e7) positions.emplace(int(hip), p);
    }
    if (positions.empty()) throw DataError(path + ": no stars");
    return positions;
}

std::unordered_map<int, NamedStar> readStarNames(const std::string& path) {
    std::string text = readWholeFile(path);
    JsonValue root = parseJson(text, path);
    if (!root.isObject()) throw DataError(path + ": expected an object keyed by HIP number");
    std::unordered_map<int, NamedStar> names;
    for (const auto& member : root.members()) {
        long long hip;
        if (!toInt(member.first, &hip) || hip <= 0) continue;
        NamedStar s;
        if (const JsonValue* v = member.second.find("name"); v && v->isString())
            s.name = v->string();
        if (const JsonValue* v = member.second.find("hd"); v && v->isString())
            s.hd = catalogueNumber(v->string(), "HD");
        if (const JsonValue* v = member.second.find("c"); v && v->isString())
            s.constellation = v->string();
        names.emplace(int(hip), s);
    }
    return names;
}

namespace {

// Precesses a B1950 position to J2000 (IAU 1976 precession angles).
void precessB1950ToJ2000(double* raDeg, double* decDeg) {
    const double T = (2433282.4235 - 2451545.0) / 36525.0;  // start epoch, Julian centuries
    const double t = -T;                                    // interval to J2000
    const double arcsec = kDegree / 3600.0;
    double base = 2306.2181 + 1.39656 * T - 0.000139 * T * T;
    double zeta = (base * t + (0.30188 - 0.000344 * T) * t * t + 0.017998 * t * t * t) * arcsec;
    double z = (base * t + (1.09468 + 0.000066 * T) * t * t + 0.018203 * t * t * t) * arcsec;
    double theta = ((2004.3109 - 0.85330 * T - 0.000217 * T * T) * t -
                    (0.42665 + 0.000217 * T) * t * t - 0.041833 * t * t * t) *
                   arcsec;
    double a0 = *raDeg * kDegree, d0 = *decDeg * kDegree;
    double A = std::cos(d0) * std::sin(a0 + zeta);
    double B =
        std::cos(theta) * std::cos(d0) * std::cos(a0 + zeta) - std::sin(theta) * std::sin(d0);
    double C =
        std::sin(theta) * std::cos(d0) * std::cos(a0 + zeta) + std::cos(theta) * std::sin(d0);
    double a = (std::atan2(A, B) + z) / kDegree;
    if (a < 0) a += 360.0;
    if (a >= 360.0) a -= 360.0;
    *raDeg = a;
    *decDeg = std::asin(C > 1 ? 1 : (C < -1 ? -1 : C)) / kDegree;
}

}  // namespace

std::vector<BrightStar> readBrightStars(const std::string& path) {
    std::string text = readWholeFile(path);
    std::vector<BrightStar> stars;
    for (const TextLine& line : splitLines(text)) {
        auto w = splitWords(line.text);
        if (w.size() < 13) continue;  // separator and note lines
        double epoch;
        if (!toDouble(w[0], &epoch)) continue;
        if (epoch != 2000.0 && epoch != 1950.0) continue;  // worked examples at other epochs
        std::string place = where(path, line.number);
        double h = needDouble(w[1], place, "RA hours"), m = needDouble(w[2], place, "RA minutes"),
               s = needDouble(w[3], place, "RA seconds");
        double dd = needDouble(w[4], place, "Dec degrees"),
               dm = needDouble(w[5], place, "Dec minutes"),
               ds = needDouble(w[6], place, "Dec seconds");
        double pmRa = needDouble(w[7], place, "RA proper motion");    // s of time per century
        double pmDec = needDouble(w[8], place, "Dec proper motion");  // arcsec per century
        BrightStar star;
        star.radialVelocity = needDouble(w[9], place, "radial velocity");
        star.vmag = needDouble(w[11], place, "magnitude");
        star.name = std::string(w[12]);
        bool south = w[4].find('-') != std::string_view::npos;
        star.raDeg = (h + m / 60.0 + s / 3600.0) * 15.0;
        star.decDeg = (std::fabs(dd) + dm / 60.0 + ds / 3600.0) * (south ? -1.0 : 1.0);
        if (star.raDeg < 0 || star.raDeg >= 360 || std::fabs(star.decDeg) > 90) {
            throw DataError(place + ": position out of range");
        }
        if (epoch == 1950.0) {
            // Move along the proper motion to 2000, then precess.
            star.raDeg += pmRa * 15.0 / 3600.0 * 0.5;
            star.decDeg += pmDec / 3600.0 * 0.5;
            precessB1950ToJ2000(&star.raDeg, &star.decDeg);
        }
        stars.push_back(star);
    }
    if (stars.empty()) throw DataError(path + ": no star lines");
    return stars;
}

void positionAtJ2000(const StarPosition& p, const ProperMotion* pm, double* raDeg, double* decDeg) {
    constexpr double kYearsToJ2000 = 8.75;
    double ra = p.raDeg, dec = p.decDeg;
    if (pm) {
        double cosDec = std::cos(dec * kDegree);
        if (cosDec > 1e-6) ra += pm->ra * kYearsToJ2000 / 3.6e6 / cosDec;
        dec += pm->dec * kYearsToJ2000 / 3.6e6;
    }
    *raDeg = ra;
    *decDeg = dec;
}
