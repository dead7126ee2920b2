#pragma once
// The texts of the control panel's "Star [P]icked or To Pick" fields, made from a star record
// (or the anchor's), and the lines of the on-screen information box made from them.

#include <string>
#include <vector>

#include "catalogue/star_obj.h"
#include "scene/panel_text.h"

constexpr int kAnchorHD = -2;  // the anchor's catalogue number

struct PickedStarTexts {
    PanelText hdNumber;           // "HD number:"
    PanelText hicNumber;          // "HIC number:"
    PanelText commonName;         // "Common name:"
    PanelText constellation;      // "Constellation:"
    PanelText constellationCode;  // "Constellation Code:"
    PanelText bv;                 // "BV:"
    PanelText absVMag;            // "Abs.VMag:"
    PanelText spType;             // "SpType:"
    PanelText luminosity;         // "Luminosity:"
    PanelText position[3];        // "Position X:" .. "Position Z:"
    PanelText distError;          // "Dist % Err:"
    PanelText galacticL;          // "Galactic l:" (or "Eqn. RA:")
    PanelText galacticB;          // "Galactic b:" (or "Eqn. DEC:")
    PanelText log10Scale;         // "log10 scale (m):"
    PanelText distParsec;         // "dist(parsec):"
    PanelText distLightyear;      // "dist(lightyear):"
    PanelText velocity[3];        // space velocity w.r.t. the Sun
    PanelText peculiar[3];        // peculiar velocity w.r.t. the LSR
};

// Fills every field from the record. The anchor (HD -2) gets empty catalogue fields and the
// common name "anchor". lsr: the LSR of the star parameters (km/s). raDec: right ascension
// and declination instead of galactic longitude and latitude.
void fillPickedStarTexts(PickedStarTexts& t, const StarObj& star, const double lsr[3], bool raDec);

// Distances of a position exponent p (log10 metres).
double parsecsOf(double p);
double lightyearsOf(double p);

// The lines of the information box: "BV: %s", "Sp: %s", the two angle lines, the two
// distance lines. dirGalactic: the star's unit direction in the galactic frame.
std::vector<std::string> starInfoLines(const PickedStarTexts& t, const Vec3& dirGalactic,
                                       double exponent, bool raDec);
