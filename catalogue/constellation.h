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
    StarObj* brightestStar;    // owned copy of the member with the smallest home magnitude
    ConstellationLine* lines;  // owned
    std::int32_t numLines;
    Phc** boundaries;                    // owned: one vertex array per boundary block
    std::int32_t* boundaryVertexCounts;  // owned
    std::int32_t numBoundaries;
};
