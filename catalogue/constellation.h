#pragma once
// One constellation of the constellation table: names, figure lines between catalogue stars
// and boundary polylines on the sky.

#include <cstdint>

#include "catalogue/star_obj.h"
#include "common_package/math/src/phc.h"

struct ConstellationLine {
    StarObj* from;  // both point into the StarList's star array
    StarObj* to;
};

struct Constellation {
    char name[kStarNameSize];
    char code[kConstellationCodeSize];
    // Owned copy of the member with the smallest home magnitude (null when no member star
    // was found). The copy keeps no planet list: planets are looked up in the star array.
    StarObj* brightestStar;
    std::int32_t brightestIndex;  // that member's index in the star array, -1 without one
    ConstellationLine* lines;     // owned
    std::int32_t numLines;
    Phc** boundaries;                    // owned: one vertex array per boundary block
    std::int32_t* boundaryVertexCounts;  // owned
    std::int32_t numBoundaries;
};
