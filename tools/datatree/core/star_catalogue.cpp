#include "tools/datatree/core/star_catalogue.h"

#include <algorithm>
#include <cmath>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/sky_frames.h"
#include "tools/datatree/core/spectral_type.h"
#include "tools/datatree/core/star_colour.h"
#include "tools/datatree/core/star_names.h"
#include "tools/datatree/core/text_input.h"

StarSources loadStarSources(const std::string& root) {
    auto at = [&](const char* relative) { return root + "/" + relative; };
    StarSources s;
    for (const char* file : StarSourceFiles::kZoneCatalogues)
        readZoneCatalogue(at(file), &s.zones);
    s.spectralTypes = readSpectralTypes(at(StarSourceFiles::kSpectralTypes));
    s.crossIds = readCrossIds(at(StarSourceFiles::kCrossIds));
    s.parallaxErrors = readParallaxErrors(at(StarSourceFiles::kParallaxErrors));
    s.properMotions = readProperMotions(at(StarSourceFiles::kProperMotions));
    s.designations = readHipNames(at(StarSourceFiles::kDesignations), false);
    s.properNames = readHipNames(at(StarSourceFiles::kProperNames), true);
    s.positions = readStarPositions(at(StarSourceFiles::kPositions));
    s.names = readStarNames(at(StarSourceFiles::kNames));
    s.brightStars = readBrightStars(at(StarSourceFiles::kBrightStars));
    return s;
}

int hdOfHip(const StarSources& sources, int hip) {
    auto cross = sources.crossIds.hdOfHip.find(hip);
    if (cross != sources.crossIds.hdOfHip.end()) return cross->second;
    auto named = sources.names.find(hip);
    if (named != sources.names.end()) return named->second.hd;
    return 0;
}

namespace {

// Bright-star entries are looked for among stars brighter than this.
constexpr double kBrightStarMagnitudeLimit = 7.0;

// HIP -> radial velocity for the stars of the bright-star list, matched by position (the
// Hipparcos position carried to J2000 by its proper motion) and, where given, magnitude.
std::unordered_map<int, double> matchRadialVelocities(const StarSources& s) {
    struct Candidate {
        int hip;
        Vec3 direction;
        double vmag;
    };
    std::vector<Candidate> candidates;
    for (const auto& [hip, p] : s.positions) {
        if (p.vmag > kBrightStarMagnitudeLimit) continue;
        auto pm = s.properMotions.find(hip);
        double ra, dec;
        positionAtJ2000(p, pm != s.properMotions.end() ? &pm->second : nullptr, &ra, &dec);
        candidates.push_back({hip, equatorialUnit(ra, dec), p.vmag});
    }
    std::sort(candidates.begin(), candidates.end(),
              [](const Candidate& a, const Candidate& b) { return a.hip < b.hip; });

    const double cosLimit = std::cos(kBrightStarMatchArcsec / 3600.0 * kDegree);
    std::unordered_map<int, double> velocities;
    for (const BrightStar& b : s.brightStars) {
        Vec3 d = equatorialUnit(b.raDeg, b.decDeg);
        const Candidate* best = nullptr;
        double bestCos = cosLimit;
        for (const Candidate& c : candidates) {
            double cosine = dot(d, c.direction);
            if (cosine < bestCos) continue;
            if (b.vmag != 0.0 && std::fabs(b.vmag - c.vmag) > 1.0) continue;
            best = &c;
            bestCos = cosine;
        }
        if (best) velocities.emplace(best->hip, b.radialVelocity);  // first entry wins
    }
    return velocities;
}

// Proper name, else designation, else "---".
std::string commonName(const StarSources& s, int hip) {
    std::string name;
    if (auto p = s.properNames.find(hip); p != s.properNames.end()) name = toAscii(p->second[0]);
    if (name.empty()) {
        if (auto n = s.names.find(hip); n != s.names.end()) name = toAscii(n->second.name);
    }
    if (name.empty()) {
        if (auto d = s.designations.find(hip); d != s.designations.end())
            name = designationToAscii(d->second[0]);
    }
    name = fitStarName(name);
    return name.empty() ? "---" : name;
}

double fractionalError(double sigma, double value) {
    double f = sigma / std::max(std::fabs(value), kVelocityErrorFloor);
    return std::min(f, kMaxFractionalError);
}

}  // namespace

std::vector<StarRecord> buildStarRecords(const StarSources& s, StarStatistics* stats) {
    StarStatistics local;
    std::unordered_map<int, double> velocities = matchRadialVelocities(s);

    std::vector<int> hips;
    hips.reserve(s.positions.size());
    for (const auto& entry : s.positions)
        hips.push_back(entry.first);
    std::sort(hips.begin(), hips.end());

    std::vector<StarRecord> records;
    records.reserve(hips.size());
    for (int hip : hips) {
        int hd = hdOfHip(s, hip);
        if (hd <= 0) continue;
        ++local.withHdAndPosition;
        const StarPosition& p = s.positions.at(hip);
        auto zone = s.zones.find(hip);
        if (zone == s.zones.end() || zone->second.parallaxMas <= 0.0) {
            ++local.noParallax;
            continue;
        }
        const ZoneStar& z = zone->second;
        StarRecord r;
        r.hd = hd;
        r.hip = hip;
        r.raDeg = p.raDeg;
        r.decDeg = p.decDeg;
        r.vmag = p.vmag;
        r.bv = p.hasBv ? p.bv : z.bv;
        r.parallaxMas = z.parallaxMas;
        auto sigma = s.parallaxErrors.find(hip);
        r.parallaxSigmaMas = sigma != s.parallaxErrors.end() ? sigma->second : 0.0;
        r.distancePc = 1000.0 / r.parallaxMas;
        r.position = toGalactic(equatorialUnit(r.raDeg, r.decDeg)) * r.distancePc;
        r.distanceError = r.parallaxSigmaMas / r.parallaxMas;

        ProperMotion pm;
        if (auto m = s.properMotions.find(hip); m != s.properMotions.end()) pm = m->second;
        auto rv = velocities.find(hip);
        r.radialVelocityKnown = rv != velocities.end();
        SpaceMotion motion = spaceMotion(
            r.raDeg, r.decDeg, r.parallaxMas, r.parallaxSigmaMas, pm.ra, pm.dec,
            r.radialVelocityKnown ? rv->second : kUnknownRadialVelocity,
            r.radialVelocityKnown ? kKnownRadialVelocitySigma : kUnknownRadialVelocitySigma);
        r.velocity = motion.velocity;
        for (int i = 0; i < 3; ++i)
            r.velocityError[i] = fractionalError(motion.sigma[i], r.velocity[i]);

        // M_V = V + 5 log10(parallax in arcsec) + 5; L = 10^(-0.4 M_V).
        double absolute = r.vmag + 5.0 * std::log10(r.parallaxMas / 1000.0) + 5.0;
        r.luminosity = std::pow(10.0, -0.4 * absolute);

        Rgb c = colourFromBv(r.bv);
        r.rgba[0] = c.r;
        r.rgba[1] = c.g;
        r.rgba[2] = c.b;
        r.rgba[3] = 1.0;

        if (z.spectralIndex < 0 || std::size_t(z.spectralIndex) >= s.spectralTypes.size()) {
            throw DataError("HIP " + std::to_string(hip) + ": spectral index " +
                            std::to_string(z.spectralIndex) + " beyond the spectral-type list (" +
                            std::to_string(s.spectralTypes.size()) + " lines)");
        }
        SpectralType type = parseSpectralType(s.spectralTypes[z.spectralIndex]);
        r.spectralClass = type.spectralClass;
        r.spectralNumber = type.number;
        r.luminosityClass = type.luminosityClass;
        r.name = commonName(s, hip);

        if (r.radialVelocityKnown) ++local.withRadialVelocity;
        if (r.luminosityClass != "---") ++local.withLuminosityClass;
        records.push_back(std::move(r));
    }
    std::stable_sort(records.begin(), records.end(), [](const StarRecord& a, const StarRecord& b) {
        return a.distancePc < b.distancePc;
    });
    local.joined = int(records.size());
    if (stats) *stats = local;
    return records;
}

std::string formatStarLine(const StarRecord& r) {
    return format(
        "%.6f %.6f %.6f %.6f %.4f %.4f %.4f %.4f %.4f %.4f %.3f %.6g %.4f %.4f %.4f %.4f %s %.1f "
        "%s %d %d %s",
        r.position.x, r.position.y, r.position.z, r.distanceError, r.velocity.x, r.velocity.y,
        r.velocity.z, r.velocityError.x, r.velocityError.y, r.velocityError.z, r.bv, r.luminosity,
        r.rgba[0], r.rgba[1], r.rgba[2], r.rgba[3], r.spectralClass.c_str(), r.spectralNumber,
        r.luminosityClass.c_str(), r.hd, r.hip, r.name.c_str());
}

std::string formatStarFile(const std::vector<StarRecord>& records, const std::string& title) {
    std::string out;
    out.reserve(records.size() * 170 + 4096);
    out += format("NUM_STARS %d\n", int(records.size()));
    out += "SIZE 1 16.4894\n";
    out += "# " + title + "\n";
    out +=
        "# x y z: position in parsecs, galactic frame (+x to the galactic centre, +z to the\n"
        "#   north galactic pole), from the J2000 position (epoch 1991.25) and the parallax\n"
        "# dist.err: parallax error / parallax\n"
        "# vx vy vz: heliocentric space velocity, km/s, galactic frame\n"
        "# err vx vy vz: fractional error of each velocity component (error / |component|,\n"
        "#   taken against at least 0.1 km/s, at most 10). Where the radial velocity is\n"
        "#   unknown it is taken as 0 +- 30 km/s (the local velocity dispersion), so those\n"
        "#   errors are large along the line of sight\n"
        "# B-V; luminosity in units of an M_V = 0 star (M_V = -2.5 log10 L); RGBA from B-V\n"
        "# spectral class, subclass, luminosity class (I..V, --- if none); HD; HIP; name\n";
    for (const StarRecord& r : records) {
        out += formatStarLine(r);
        out += '\n';
    }
    return out;
}
