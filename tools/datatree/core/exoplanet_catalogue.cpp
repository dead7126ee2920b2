#include "tools/datatree/core/exoplanet_catalogue.h"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/star_names.h"
#include "tools/datatree/core/text_input.h"

namespace {

constexpr std::size_t kMaxResourceBytes = std::size_t(64) << 20;  // plain size limit

std::uint32_t u32be(const std::string& b, std::size_t at) {
    return std::uint32_t(static_cast<unsigned char>(b[at])) << 24 |
           std::uint32_t(static_cast<unsigned char>(b[at + 1])) << 16 |
           std::uint32_t(static_cast<unsigned char>(b[at + 2])) << 8 |
           std::uint32_t(static_cast<unsigned char>(b[at + 3]));
}

// Inflates a zlib stream of known plain size; false when it is not one.
bool inflateExactly(const std::string& bytes, std::size_t at, std::size_t length,
                    std::size_t plainSize, std::string* out) {
    out->assign(plainSize, '\0');
    z_stream z{};
    if (inflateInit(&z) != Z_OK) return false;
    z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data() + at));
    z.avail_in = uInt(length);
    z.next_out = reinterpret_cast<Bytef*>(out->data());
    z.avail_out = uInt(plainSize);
    int rc = inflate(&z, Z_FINISH);
    bool ok = rc == Z_STREAM_END && z.total_out == plainSize;
    inflateEnd(&z);
    return ok;
}

}  // namespace

std::string extractCompressedResource(const std::string& binaryPath, const std::string& marker) {
    std::string b = readWholeFile(binaryPath);
    // Candidates: a zlib header (deflate, 32 KiB window, valid check bits) preceded by two
    // plausible sizes. Only candidates whose first kilobyte inflates are inflated whole.
    for (std::size_t i = 8; i + 2 <= b.size(); ++i) {
        unsigned char cmf = static_cast<unsigned char>(b[i]);
        unsigned char flg = static_cast<unsigned char>(b[i + 1]);
        if (cmf != 0x78 || ((cmf << 8) | flg) % 31 != 0) continue;
        std::uint32_t resourceSize = u32be(b, i - 8), plainSize = u32be(b, i - 4);
        if (resourceSize < 8 || resourceSize - 4 > b.size() - i) continue;
        if (plainSize < marker.size() || plainSize > kMaxResourceBytes) continue;
        std::size_t streamLength = resourceSize - 4;
        // Peek at the start of the plain text before inflating the whole stream.
        std::string head(std::min<std::size_t>(plainSize, 1024), '\0');
        z_stream z{};
        if (inflateInit(&z) != Z_OK) continue;
        z.next_in = reinterpret_cast<Bytef*>(b.data() + i);
        z.avail_in = uInt(streamLength);
        z.next_out = reinterpret_cast<Bytef*>(head.data());
        z.avail_out = uInt(head.size());
        int rc = inflate(&z, Z_SYNC_FLUSH);
        inflateEnd(&z);
        if (rc != Z_OK && rc != Z_STREAM_END) continue;
        if (head.find('{') == std::string::npos) continue;
        std::string plain;
        if (!inflateExactly(b, i, streamLength, plainSize, &plain)) continue;
        if (plain.find(marker) != std::string::npos) return plain;
    }
    throw DataError(binaryPath + ": no compressed resource containing " + marker);
}

double radialVelocityAmplitude(double massJupiter, double periodDays, double eccentricity,
                               double starMassSolar) {
    const double kGmSun = 1.32712440018e20;   // m^3 s^-2
    const double kGmJupiter = 1.26686534e17;  // m^3 s^-2
    const double kTwoPi = 6.283185307179586;
    double gmPlanet = massJupiter * kGmJupiter;
    double gmTotal = starMassSolar * kGmSun + gmPlanet;
    double period = periodDays * 86400.0;
    return std::cbrt(kTwoPi / period) * gmPlanet / std::pow(gmTotal, 2.0 / 3.0) /
           std::sqrt(1.0 - eccentricity * eccentricity);
}

namespace {

// "HD 12345", "HD 41004 A" -> 12345, 41004; 0 when the text is not of that form.
int numberAfter(const std::string& text, const char* prefix) {
    std::size_t n = std::strlen(prefix);
    if (text.compare(0, n, prefix) != 0 || text.size() <= n || text[n] != ' ') return 0;
    std::size_t i = n + 1, start = i;
    long long v = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9' && i - start < 9) {
        v = v * 10 + (text[i] - '0');
        ++i;
    }
    if (i == start) return 0;
    if (i < text.size() && text[i] != ' ') return 0;  // "HD 1234b" is not a star name
    return int(v);
}

int hdOfName(const std::string& name, const HostLookup& lookup) {
    if (int hd = numberAfter(name, "HD")) return hd;
    auto hdOfHip = [&](int hip) {
        auto c = lookup.crossIds.hdOfHip.find(hip);
        if (c != lookup.crossIds.hdOfHip.end()) return c->second;
        auto n = lookup.names.find(hip);
        return n != lookup.names.end() ? n->second.hd : 0;
    };
    if (int hip = numberAfter(name, "HIP")) return hdOfHip(hip);
    if (int hr = numberAfter(name, "HR")) {
        auto h = lookup.crossIds.hipOfHr.find(hr);
        if (h != lookup.crossIds.hipOfHr.end()) return hdOfHip(h->second);
    }
    // Designations: "51 Peg", "ups And", "mu2 Sco", optionally followed by a component.
    auto words = splitWords(name);
    if (words.size() < 2 || words[1].size() != 3) return 0;
    std::string prefix(words[0]);
    static const std::map<std::string, std::string> kGreek = {
        {"alf", "α"}, {"alp", "α"}, {"bet", "β"}, {"gam", "γ"}, {"del", "δ"}, {"eps", "ε"},
        {"zet", "ζ"}, {"eta", "η"}, {"tet", "θ"}, {"the", "θ"}, {"iot", "ι"}, {"kap", "κ"},
        {"lam", "λ"}, {"mu", "μ"},  {"nu", "ν"},  {"ksi", "ξ"}, {"xi", "ξ"},  {"omi", "ο"},
        {"pi", "π"},  {"rho", "ρ"}, {"sig", "σ"}, {"tau", "τ"}, {"ups", "υ"}, {"phi", "φ"},
        {"chi", "χ"}, {"psi", "ψ"}, {"ome", "ω"}};
    std::size_t letters = 0;
    while (letters < prefix.size() && std::isalpha(static_cast<unsigned char>(prefix[letters])))
        ++letters;
    std::string key;
    if (letters == 0) {
        key = prefix;  // Flamsteed number
    } else {
        auto g = kGreek.find(prefix.substr(0, letters));
        if (g == kGreek.end()) return 0;
        key = g->second + prefix.substr(letters);
    }
    key += "_" + std::string(words[1]);
    auto d = lookup.hipOfDesignation.find(key);
    return d == lookup.hipOfDesignation.end() ? 0 : hdOfHip(d->second);
}

// "22h57m26.9s" / "-63d10m10.2s" -> degrees.
bool sexagesimal(const std::string& text, char unit, double* value) {
    double parts[3] = {0, 0, 0};
    const char marks[3] = {unit, 'm', 's'};
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    for (int k = 0; k < 3; ++k) {
        std::size_t end = text.find(marks[k], i);
        if (end == std::string::npos ||
            !toDouble(std::string_view(text).substr(i, end - i), &parts[k]))
            return false;
        i = end + 1;
    }
    double v = parts[0] + parts[1] / 60.0 + parts[2] / 3600.0;
    *value = (negative ? -v : v) * (unit == 'h' ? 15.0 : 1.0);
    return true;
}

// The Hipparcos star (with an HD number) nearest to a position, within kHostMatchArcsec.
class PositionIndex {
  public:
    explicit PositionIndex(const HostLookup& lookup) : lookup_(lookup) {
        for (const auto& [hip, p] : lookup.positions) {
            auto pm = lookup.properMotions.find(hip);
            double ra, dec;
            positionAtJ2000(p, pm != lookup.properMotions.end() ? &pm->second : nullptr, &ra, &dec);
            cells_[cell(ra, dec)].push_back({hip, equatorialUnit(ra, dec)});
        }
    }

    int hdNear(double ra, double dec) const {
        Vec3 d = equatorialUnit(ra, dec);
        double bestCos = std::cos(kHostMatchArcsec / 3600.0 * kDegree);
        int best = 0;
        int decCell = int(std::floor(dec));
        bool polar = std::fabs(dec) > 80.0;
        for (int dd = decCell - 1; dd <= decCell + 1; ++dd) {
            int raCell = int(std::floor(ra));
            for (int k = polar ? 0 : raCell - 1; k <= (polar ? 359 : raCell + 1); ++k) {
                auto it = cells_.find(std::make_pair(dd, (k + 360) % 360));
                if (it == cells_.end()) continue;
                for (const Entry& e : it->second) {
                    double c = dot(d, e.direction);
                    if (c > bestCos) {
                        bestCos = c;
                        best = e.hip;
                    }
                }
            }
        }
        if (!best) return 0;
        auto c = lookup_.crossIds.hdOfHip.find(best);
        if (c != lookup_.crossIds.hdOfHip.end()) return c->second;
        auto n = lookup_.names.find(best);
        return n != lookup_.names.end() ? n->second.hd : 0;
    }

  private:
    struct Entry {
        int hip;
        Vec3 direction;
    };
    static std::pair<int, int> cell(double ra, double dec) {
        return {int(std::floor(dec)), ((int(std::floor(ra)) % 360) + 360) % 360};
    }
    const HostLookup& lookup_;
    std::map<std::pair<int, int>, std::vector<Entry>> cells_;
};

bool numberMember(const JsonValue& object, const char* name, double* value) {
    const JsonValue* v = object.find(name);
    if (!v || !v->isNumber()) return false;
    *value = v->number();
    return std::isfinite(*value);
}

}  // namespace

std::vector<Planet> selectPlanets(const JsonValue& catalogue, const HostLookup& lookup,
                                  PlanetStatistics* stats) {
    const JsonValue* hosts = catalogue.find("stars");
    if (!hosts || !hosts->isObject()) {
        throw DataError("planet catalogue: no \"stars\" object of host stars");
    }
    PositionIndex index(lookup);
    PlanetStatistics local;
    std::vector<Planet> planets;
    for (const auto& [hostName, host] : hosts->members()) {
        ++local.hosts;
        const JsonValue* list = host.find("exoplanets");
        if (!list || !list->isArray()) {
            throw DataError("planet catalogue: host [" + hostName + "] has no \"exoplanets\" list");
        }
        int hd = hdOfName(hostName, lookup);
        if (!hd) {
            if (const JsonValue* alt = host.find("starAltNames"); alt && alt->isString()) {
                for (std::string_view part : splitFields(alt->string(), ',')) {
                    hd = hdOfName(std::string(trim(part)), lookup);
                    if (hd) break;
                }
            }
        }
        if (!hd) {
            const JsonValue* ra = host.find("RA");
            const JsonValue* de = host.find("DE");
            double raDeg, decDeg;
            if (ra && de && ra->isString() && de->isString() &&
                sexagesimal(ra->string(), 'h', &raDeg) && sexagesimal(de->string(), 'd', &decDeg)) {
                hd = index.hdNear(raDeg, decDeg);
            }
        }
        if (!hd) continue;
        ++local.hostsWithHd;
        double starMass = 0.0;
        bool haveStarMass = numberMember(host, "smass", &starMass) && starMass > 0.0;
        for (const JsonValue& p : list->items()) {
            Planet planet;
            planet.hd = hd;
            planet.host = fitStarName(toAscii(hostName)).substr(0, 15);
            while (!planet.host.empty() && planet.host.back() == ' ')
                planet.host.pop_back();
            if (planet.host.empty()) planet.host = "HD" + std::to_string(hd);
            if (const JsonValue* l = p.find("planetName"); l && l->isString()) {
                planet.letter = toAscii(l->string());
            }
            if (!numberMember(p, "mass", &planet.mass) ||
                !numberMember(p, "period", &planet.period) ||
                !numberMember(p, "semiAxis", &planet.semimajorAxis) ||
                !numberMember(p, "eccentricity", &planet.eccentricity)) {
                ++local.skippedIncomplete;
                continue;
            }
            if (!haveStarMass) {
                ++local.skippedNoStarMass;
                continue;
            }
            // The limits the planet reader enforces.
            if (!(planet.mass > 0 && planet.mass < 1e7 && planet.period > 0 &&
                  planet.period < 1e7 && planet.semimajorAxis > 0 && planet.semimajorAxis < 1e7 &&
                  planet.eccentricity >= 0 && planet.eccentricity < 1)) {
                ++local.skippedOutOfRange;
                continue;
            }
            planet.k =
                radialVelocityAmplitude(planet.mass, planet.period, planet.eccentricity, starMass);
            planets.push_back(planet);
        }
    }
    std::stable_sort(planets.begin(), planets.end(), [](const Planet& a, const Planet& b) {
        return a.hd != b.hd ? a.hd < b.hd : a.letter < b.letter;
    });
    local.planets = int(planets.size());
    if (stats) *stats = local;
    return planets;
}

namespace {

// The value with as many decimals as fit in width characters (at most 6).
std::string fitNumber(double value, int width) {
    for (int decimals = 6; decimals >= 0; --decimals) {
        std::string s = format("%.*f", decimals, value);
        if (int(s.size()) <= width) return s;
    }
    return format("%.0f", value);
}

}  // namespace

std::string formatPlanetFile(const std::vector<Planet>& planets) {
    std::string out;
    out += "# Extrasolar planets of stars with an HD number. Fixed columns:\n";
    out += "#  0-7 number, 8-23 HD, 24-39 host star, 40-52 mass (Jupiter masses, m sin i for\n";
    out += "#  radial-velocity planets), 53-64 period (days), 65-77 semimajor axis (AU),\n";
    out += "#  78-89 eccentricity, 90- K (m/s, from the elements and the host's mass)\n";
    out +=
        "#number HD             host            mass         period      semimajor    "
        "eccentric.  K\n";
    int number = 0;
    for (const Planet& p : planets) {
        out += format("%7d %15d %-15.15s %12s %11s %12s %11s %.3f\n", ++number, p.hd,
                      p.host.c_str(), fitNumber(p.mass, 12).c_str(),
                      fitNumber(p.period, 11).c_str(), fitNumber(p.semimajorAxis, 12).c_str(),
                      fitNumber(p.eccentricity, 11).c_str(), p.k);
    }
    return out;
}
