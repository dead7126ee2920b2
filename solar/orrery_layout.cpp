#include "solar/orrery_layout.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kTrailSamplesPerLength = 50.0;  // the step is the trail length / 50
constexpr double kTrailFade = 0.5;               // the oldest sample is half as opaque
// Offsets of the chosen moment beyond a million years are held there.
constexpr double kMaxMomentOffsetSeconds = 1.0e6 * 365.25 * 86400.0;

}  // namespace

long long orreryMoment(const OrrerySettings& settings, long long nowSeconds) {
    double offset = (settings.daysFromToday + settings.hoursFromNow / 24.0) * kSecondsPerDay;
    if (std::isnan(offset)) offset = 0.0;
    offset = std::clamp(offset, -kMaxMomentOffsetSeconds, kMaxMomentOffsetSeconds);
    return nowSeconds + static_cast<long long>(offset);
}

long long orreryMomentNow(const OrrerySettings& settings) {
    return orreryMoment(settings, static_cast<long long>(std::time(nullptr)));
}

Phc phcFromMetres(const double metres[3]) {
    Phc p{metres[0], metres[1], metres[2], 0.0};
    phcNormalize(p);  // a zero-length vector stays as it is
    return p;
}

PlacedBody placeBody(const Phc& position, double currLogScale) {
    Phc p = phcNormalized(position);
    PlacedBody placed;
    placed.exponent = std::min(p.w - currLogScale, kMaxBodyExponent);
    placed.position = p.xyz() * std::pow(10.0, placed.exponent);
    return placed;
}

PlacedBody placeBody(const double metres[3], double currLogScale) {
    return placeBody(phcFromMetres(metres), currLogScale);
}

double limitedOrbitLength(double orbitLengthDays) {
    if (!(orbitLengthDays > 0.0)) return 0.0;
    return std::min(orbitLengthDays, kMaxOrbitLengthDays);
}

double trailStepDays(int planet, double orbitLengthDays) {
    double step = limitedOrbitLength(orbitLengthDays) / kTrailSamplesPerLength;
    double maxStep = planet >= 0 && planet < kPlanetCount ? kPlanets[planet].maxTrailStepDays : 1.0;
    return std::clamp(step, 1.0, maxStep);
}

int trailSampleCount(double orbitLengthDays, double stepDays) {
    double length = limitedOrbitLength(orbitLengthDays);
    if (!(stepDays >= 1.0)) stepDays = 1.0;
    return static_cast<int>(std::ceil(length / stepDays));
}

long long trailSampleSeconds(double orbitLengthDays, int samples) {
    if (samples < 1) return 0;
    return static_cast<long long>(kSecondsPerDay * limitedOrbitLength(orbitLengthDays) / samples);
}

double orreryJulianDate(long long gmtSeconds) {
    if (gmtSeconds >= 0) return julianDateFromGmt(gmtSeconds);
    return kJulianDateOfGmtZero + static_cast<double>(gmtSeconds) / kSecondsPerDay;
}

void layOutOrrery(Ephemeris& ephemeris, const OrrerySettings& settings, long long moment,
                  double currLogScale, OrreryLayout& layout) {
    const double length = limitedOrbitLength(settings.orbitLengthDays);
    const double fovScale = settings.fovy / 60.0 / 40.0 * settings.labelSize;
    for (int i = 0; i < kPlanetCount; ++i) {
        PlanetLayout& planet = layout.planets[i];
        planet.trail.clear();
        planet.placed = false;
        const int n = trailSampleCount(length, trailStepDays(i, length));
        const long long dt = trailSampleSeconds(length, n);
        const float fade = n > 0 ? static_cast<float>(kTrailFade / n) : 0.0f;
        for (int k = 0; k <= n; ++k) {
            double metres[3];
            if (ephemeris.positionAt(i, orreryJulianDate(moment - k * dt), metres) != 0) continue;
            PlacedBody body = placeBody(metres, currLogScale);
            if (k == 0) {
                planet.placed = true;
                planet.position = body.position;
                planet.labelSize = std::pow(10.0, body.exponent) * fovScale;
            }
            planet.trail.push_back({body.position, 1.0f - k * fade});
        }
    }
    double earth[3], sun[3];
    const double jd = orreryJulianDate(moment);
    layout.bodiesPlaced = ephemeris.positionAt(kEarthMoonBarycentre, jd, earth) == 0 &&
                          ephemeris.positionAt(kSun, jd, sun) == 0;
    if (layout.bodiesPlaced) {
        layout.earth = phcFromMetres(earth);
        layout.sun = phcFromMetres(sun);
    }
}

double earthSpinAngle(const UtcDate& date, const Vec3& sunDirection) {
    double hours = date.hour + date.minute / 60.0 + date.second / 3600.0;
    return 15.0 * hours - std::atan2(-sunDirection.y, sunDirection.x) * 180.0 / kPi;
}

double earthGlobeLog10Scale(double currLogScale, bool thousandfold) {
    return std::log10(1.2756) + 7.0 - currLogScale + (thousandfold ? 3.0 : 0.0);
}
