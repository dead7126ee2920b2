// The constellation table: its settings, lookups by name and code, line sets, and release.

#include <GL/gl.h>
#include <GL/glx.h>

#include <cstdio>
#include <cstring>

#include "catalogue/constellation_sky.h"
#include "catalogue/star_list.h"

namespace {

// Without a GL context (a program or test that has opened no window) the widths are checked
// against the range that GL implementations draw smooth lines in: from 1 pixel, the width
// every implementation supports, to 10 pixels, which all current ones reach.
constexpr float kLineWidthRangeWithoutGL[2] = {1.0f, 10.0f};

bool inUnitRange(float v) {
    return v >= 0.0f && v <= 1.0f;
}

}  // namespace

void StarList::lineWidthRange(float range[2]) {
    range[0] = kLineWidthRangeWithoutGL[0];
    range[1] = kLineWidthRangeWithoutGL[1];
    if (glXGetCurrentContext() == nullptr) return;
    GLfloat reported[2] = {-1.0f, -1.0f};
    glGetFloatv(GL_LINE_WIDTH_RANGE, reported);
    if (reported[0] >= 0.0f && reported[1] >= reported[0]) {
        range[0] = reported[0];
        range[1] = reported[1];
    }
}

void StarList::releaseConstellation(Constellation& con) {
    if (con.brightestStar != nullptr) release(con.brightestStar);
    if (con.lines != nullptr) release(con.lines);
    if (con.boundaries != nullptr) {
        for (int b = 0; b < con.numBoundaries; ++b) {
            if (con.boundaries[b] != nullptr) release(con.boundaries[b]);
        }
        release(con.boundaries);
    }
    if (con.boundaryVertexCounts != nullptr) release(con.boundaryVertexCounts);
    con.brightestStar = nullptr;
    con.brightestIndex = -1;
    con.lines = nullptr;
    con.numLines = 0;
    con.boundaries = nullptr;
    con.boundaryVertexCounts = nullptr;
    con.numBoundaries = 0;
}

void StarList::releaseConstellations() {
    if (constellations != nullptr) {
        for (int c = 0; c < numConstellations; ++c)
            releaseConstellation(constellations[c]);
        release(constellations);
    }
    constellations = nullptr;
    numConstellations = 0;
}

void StarList::resetConstellationNames() {
    for (int i = 0; i < count; ++i) {
        if (isSunRecord(i)) continue;
        std::strcpy(stars[i].constellationName, "---");
        std::strcpy(stars[i].constellationCode, "---");
    }
}

int StarList::setConstellationColors(const float lineColor[4], const float boundColor[4]) {
    param.constellationColorsGiven = true;
    if (lineColor == nullptr || boundColor == nullptr) {
        std::fprintf(stderr, "Err (setConstellationColors): NULL input parameter\n");
        return -1;
    }
    for (int i = 0; i < 4; ++i) {
        if (!inUnitRange(lineColor[i])) {
            std::fprintf(stderr,
                         "Err (setConstellationColors): the (%d)th component of inLineColor out "
                         "of range [0,1]\n",
                         i);
            return -1;
        }
        if (!inUnitRange(boundColor[i])) {
            std::fprintf(stderr,
                         "Err (setConstellationColors): the (%d)th component of inBoundColor "
                         "out of range [0,1]\n",
                         i);
            return -1;
        }
    }
    std::memcpy(param.constellationLineColor, lineColor, 4 * sizeof(float));
    std::memcpy(param.constellationBoundColor, boundColor, 4 * sizeof(float));
    return 1;
}

int StarList::setConstellationLineWidth(float lineWidth, float boundWidth) {
    param.constellationWidthsGiven = true;
    float range[2];
    lineWidthRange(range);
    if (!(lineWidth >= range[0] && lineWidth <= range[1])) {
        std::fprintf(stderr, "Err (setConstellationLineWidth): inLineWidth out of range [%f,%f]\n",
                     range[0], range[1]);
        return -1;
    }
    if (!(boundWidth >= range[0] && boundWidth <= range[1])) {
        std::fprintf(stderr, "Err (setConstellationLineWidth): inBoundWidth out of range [%f,%f]\n",
                     range[0], range[1]);
        return -1;
    }
    param.constellationLineWidth = lineWidth;
    param.constellationBoundWidth = boundWidth;
    return 1;
}

int StarList::setConstellationStipple(int lineStipple, int boundStipple) {
    if (lineStipple < 0 || lineStipple > 0xFFFF) {
        std::fprintf(stderr,
                     "Err (setConstellationStipple): inLineStipple out of range [0,0xFFFF]\n");
        return -1;
    }
    if (boundStipple < 0 || boundStipple > 0xFFFF) {
        std::fprintf(stderr,
                     "Err (setConstellationStipple): inBoundStipple out of range [0,0xFFFF]\n");
        return -1;
    }
    param.constellationLineStipple = lineStipple;
    param.constellationBoundStipple = boundStipple;
    return 1;
}

int StarList::setLabelScale(float labelScale) {
    if (!(labelScale >= 0.0f)) {
        std::fprintf(stderr, "Err (setLabelScale): inLabelScale should be non-negative\n");
        return -1;
    }
    param.labelScale = labelScale;
    return 1;
}

const Constellation* StarList::getConstellation(int id) const {
    if (id < 0 || id >= numConstellations) return nullptr;
    return &constellations[id];
}

const char* StarList::getConstellationName(int id) const {
    if (id < 0 || id >= numConstellations) {
        std::fprintf(stderr,
                     "Err (StarList::getConstellationName): constellationID out of range.\n");
        return nullptr;
    }
    return constellations[id].name;
}

const char* StarList::getConstellationCode(int id) const {
    if (id < 0 || id >= numConstellations) {
        std::fprintf(stderr,
                     "Err (StarList::getConstellationCode): constellationID out of range.\n");
        return nullptr;
    }
    return constellations[id].code;
}

std::int32_t* StarList::getConstellationLineSet(int id, int* lineCount) const {
    if (lineCount != nullptr) *lineCount = 0;
    if (id < 0 || id >= numConstellations) {
        std::fprintf(stderr,
                     "Err (StarList::getConstellationLineSet): constellationID out of range.\n");
        return nullptr;
    }
    const Constellation& con = constellations[id];
    const std::size_t n = static_cast<std::size_t>(con.numLines);
    auto* set = static_cast<std::int32_t*>(allocate(n > 0 ? 2 * n * sizeof(std::int32_t) : 1));
    if (set == nullptr) {
        std::fprintf(stderr,
                     "Err (StarList::getConstellationLineSet): Failed to allocate memory.\n");
        return nullptr;
    }
    for (std::size_t i = 0; i < n; ++i) {
        set[2 * i] = static_cast<std::int32_t>(con.lines[i].from - stars);
        set[2 * i + 1] = static_cast<std::int32_t>(con.lines[i].to - stars);
    }
    if (lineCount != nullptr) *lineCount = con.numLines;
    return set;
}

void StarList::releaseArray(void* array) const {
    if (array != nullptr) release(array);
}

namespace {

// The brightest member as it is now (position after star motion, planets), or its copy.
bool copyBrightest(const Constellation& con, const StarObj* stars, int count, StarObj* out) {
    if (con.brightestStar == nullptr || out == nullptr) return false;
    if (con.brightestIndex >= 0 && con.brightestIndex < count) {
        *out = stars[con.brightestIndex];
    } else {
        *out = *con.brightestStar;
    }
    return true;
}

}  // namespace

// An empty query is taken as no query: it would match the first constellation.
int StarList::findConstellationByName(StarObj* star, const char* name) const {
    if (star == nullptr || name == nullptr || name[0] == '\0') return -1;
    for (int c = 0; c < numConstellations; ++c) {
        if (constellationNameMatches(constellations[c].name, name)) {
            return copyBrightest(constellations[c], getStarArray(), count, star) ? 1 : -1;
        }
    }
    return -1;
}

int StarList::findConstellationByCode(StarObj* star, const char* code) const {
    if (star == nullptr || code == nullptr || code[0] == '\0') return -1;
    for (int c = 0; c < numConstellations; ++c) {
        if (std::strncmp(constellations[c].code, code, 3) == 0) {
            return copyBrightest(constellations[c], getStarArray(), count, star) ? 1 : -1;
        }
    }
    return -1;
}

int StarList::findConstellationOfStar(const StarObj& star) const {
    const char* name = star.constellationName;
    if (name[0] == '\0' || name[0] == '-') return -1;
    for (int c = 0; c < numConstellations; ++c) {
        if (std::strncmp(constellations[c].code, star.constellationCode, 3) == 0) return c;
    }
    return -1;
}
