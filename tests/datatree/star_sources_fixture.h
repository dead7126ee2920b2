#pragma once
// A tiny but complete set of star sources, laid out as the unpacked packages are:
// Sirius and Vega (with their real figures), a far star, a star without an HD number and
// one without a parallax.

#include <string>

#include "tests/datatree/datatree_test_support.h"

struct ZoneRecord {
    int hip;
    int bvIndex, magIndex, spectralIndex;
    int parallaxCentiMas;
};

// The bytes of a zone catalogue of level 0 holding the records in zone 0. With
// announceExtra > 0 the zone table claims that many more records than there are.
std::string zoneCatalogue(const std::vector<ZoneRecord>& records, int announceExtra = 0);

// Writes every source file below dir.path(); returns the root to pass to the converter.
std::string writeStarSources(const ScratchDir& dir);
