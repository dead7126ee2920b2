#include "scene/star_velocity.h"

#include <cstdio>
#include <optional>

#include "scene/sky_angles.h"
#include "scene/star_names.h"

StarVelocityPanel velocityPanel;

namespace {

// The LSR texts as last shown: fields the user has not edited since are not read back, so
// that the vector keeps its full precision.
struct ShownLSR {
    std::string l, b, speed;
} shownLSR;

void fillAverageTexts(StarVelocityPanel& v) {
    const char* const format = "%.2f km/s";
    for (int i = 0; i < 3; ++i)
        formatPanelText(v.averageVelocity[i], format, v.average[i]);
    const Vec3 a{v.average[0], v.average[1], v.average[2]};
    const SkyAngles lb = skyAnglesOf(a);
    char buffer[160];
    std::snprintf(buffer, sizeof buffer, "%.1fkm/s, lb(%.1f,%.1f)\n", length(a), lb.longitude,
                  lb.latitude);
    v.summary = buffer;
    std::snprintf(buffer, sizeof buffer, "%d/%d stars involved\n", v.averagedCount, v.totalStars);
    v.involved = buffer;
}

void takeAverage(const StarList& stars) {
    StarVelocityPanel& v = velocityPanel;
    v.averagedCount =
        stars.getAverageVelocity(v.considerVMag, v.considerLogDist, v.considerSptype, v.average);
    std::printf("average velocity for %d/%d stars is [%f,%f,%f]\n", v.averagedCount, v.totalStars,
                v.average[0], v.average[1], v.average[2]);
    std::fflush(stdout);
}

std::optional<double> fieldNumber(const PanelText& field, const char* label) {
    std::optional<double> value = parseLeadingNumber(field.c_str());
    if (!value) std::fprintf(stderr, "Err (%s) : [%s] is not a number.\n", label, field.c_str());
    return value;
}

}  // namespace

void initStarVelocityPanel(const StarList& stars) {
    StarVelocityPanel& v = velocityPanel;
    v.totalStars = stars.getNumStars();
    takeAverage(stars);
    fillAverageTexts(v);
    const double* lsr = stars.getStarParameter().lsr;
    for (int i = 0; i < 3; ++i) {
        v.currentLSR[i] = lsr[i];
        v.defaultLSR[i] = lsr[i];
    }
    showCurrentLSR();
}

void computeAverageVelocity(const StarList& stars) {
    takeAverage(stars);
    fillAverageTexts(velocityPanel);
}

void showCurrentLSR() {
    StarVelocityPanel& v = velocityPanel;
    const Vec3 lsr{v.currentLSR[0], v.currentLSR[1], v.currentLSR[2]};
    const SkyAngles lb = skyAnglesOf(lsr);
    formatPanelText(v.lsrL, "%.3f", lb.longitude);
    formatPanelText(v.lsrB, "%.3f", lb.latitude);
    formatPanelText(v.lsrSpeed, "%.3f km/s", length(lsr));
    shownLSR = {v.lsrL.str(), v.lsrB.str(), v.lsrSpeed.str()};
}

void copyAverageToLSR() {
    StarVelocityPanel& v = velocityPanel;
    for (int i = 0; i < 3; ++i)
        v.currentLSR[i] = -v.average[i];
    showCurrentLSR();
}

bool readEnteredLSR() {
    StarVelocityPanel& v = velocityPanel;
    if (v.lsrL.str() == shownLSR.l && v.lsrB.str() == shownLSR.b &&
        v.lsrSpeed.str() == shownLSR.speed) {
        return true;
    }
    const std::optional<double> l = fieldNumber(v.lsrL, "LSR l");
    const std::optional<double> b = fieldNumber(v.lsrB, "LSR b");
    const std::optional<double> speed = fieldNumber(v.lsrSpeed, "LSR speed");
    if (!l || !b || !speed) {
        showCurrentLSR();
        return false;
    }
    const Vec3 lsr = unitVectorOf(*l, *b) * *speed;
    v.currentLSR[0] = lsr.x;
    v.currentLSR[1] = lsr.y;
    v.currentLSR[2] = lsr.z;
    showCurrentLSR();
    return true;
}

void applyEnteredLSR(StarList& stars) {
    if (!readEnteredLSR()) return;
    stars.setLSR(velocityPanel.currentLSR);
}

void restoreDefaultLSR() {
    StarVelocityPanel& v = velocityPanel;
    for (int i = 0; i < 3; ++i)
        v.currentLSR[i] = v.defaultLSR[i];
    showCurrentLSR();
}

void setDefaultLSR() {
    StarVelocityPanel& v = velocityPanel;
    for (int i = 0; i < 3; ++i)
        v.defaultLSR[i] = v.currentLSR[i];
}
