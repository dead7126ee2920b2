#pragma once
// The "Star [V]elocity" rollout: the average space velocity of the selected stars and the
// local standard of rest (LSR) entered as galactic longitude, latitude and speed.

#include <string>

#include "catalogue/star_list.h"
#include "scene/panel_text.h"

struct StarVelocityPanel {
    int totalStars = 0;  // the star list's stars (the Sun not counted), taken at creation
    double average[3] = {0.0, 0.0, 0.0};
    int averagedCount = 0;
    bool considerVMag = false;
    bool considerLogDist = false;
    bool considerSptype = false;
    double currentLSR[3] = {0.0, 0.0, 0.0};  // km/s
    double defaultLSR[3] = {0.0, 0.0, 0.0};

    PanelText averageVelocity[3];  // "Ave velX:" .. "Ave velZ:"
    std::string summary;           // "%.1fkm/s, lb(%.1f,%.1f)\n"
    std::string involved;          // "%d/%d stars involved\n"
    PanelText lsrL;                // "LSR l:"
    PanelText lsrB;                // "LSR b:"
    PanelText lsrSpeed;            // "speed:"
};

extern StarVelocityPanel velocityPanel;

// At panel creation: the star count, the first average (printed), the LSR of the star
// parameters as current and default, and every field.
void initStarVelocityPanel(const StarList& stars);

// "compute average vel.": prints "average velocity for %d/%d stars is [%f,%f,%f]\n" to
// standard output and fills the average fields and texts.
void computeAverageVelocity(const StarList& stars);
// "copy above to below": current LSR = -average, shown in the LSR fields.
void copyAverageToLSR();
// Editing "LSR l:", "LSR b:" or "speed:": current LSR = unit(l, b) x speed, shown again.
// A field that holds no number prints a message and changes nothing (returns false).
bool readEnteredLSR();
// "apply entered LSR": as readEnteredLSR, then the star list's LSR = current LSR.
void applyEnteredLSR(StarList& stars);
// "restore default LSR" and "set default LSR".
void restoreDefaultLSR();
void setDefaultLSR();
// The LSR fields from the current LSR: "%.3f", "%.3f", "%.3f km/s".
void showCurrentLSR();
