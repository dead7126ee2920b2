#pragma once
// The constellation file of the data tree: the 88 constellations with their full names and
// codes, their figures as polylines through HD stars, and their boundaries as polylines of
// right ascension (hours) and declination (degrees), J2000.

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

struct BoundaryVertex {
    double raHours = 0.0, decDeg = 0.0;
};

// One boundary edge between two constellations, as the source lists it.
struct BoundaryEdge {
    std::vector<BoundaryVertex> vertices;
    std::string first, second;  // constellation codes as written in the source ("SER1")
};

struct FigureSegment {
    int hip1 = 0, hip2 = 0;
};

struct ConstellationSources {
    std::vector<std::pair<std::string, std::string>> names;     // code, full name, source order
    std::map<std::string, std::vector<FigureSegment>> figures;  // code -> segments
    std::vector<BoundaryEdge> boundaries;
};

// "Abbr N hip1 hip2 ..." lines: N segments as HIP pairs.
std::map<std::string, std::vector<FigureSegment>> readFigures(const std::string& path);
// "Abbr<TAB>"Name"..." lines.
std::vector<std::pair<std::string, std::string>> readConstellationNames(const std::string& path);
// Records "n ra1 dec1 ... ran decn 2 AB1 AB2" (RA hours, Dec degrees) spread over lines.
std::vector<BoundaryEdge> readBoundaryEdges(const std::string& path);

// How a figure star is named in the output, with where it belongs.
struct FigureStar {
    int hd = 0;        // 0 when the star has no HD number
    std::string home;  // code of the constellation whose member the star is
};

// Everything the writer needs about the stars of the figures.
struct FigureStarTable {
    std::unordered_map<int, FigureStar> byHip;
};

// Builds the table: HD numbers from hdOfHip; a star that appears in one figure is a member
// of that constellation; a star that appears in several figures belongs to the one its
// catalogue constellation names (constellationOfHip), else to the first in code order, and
// is written "SHARED" in the others.
FigureStarTable makeFigureStarTable(const ConstellationSources& sources,
                                    const std::unordered_map<int, int>& hdOfHip,
                                    const std::unordered_map<int, std::string>& constellationOfHip);

// The constellation file text: sections in the order of the full names. Throws DataError
// when a constellation lacks a figure or a boundary, or a boundary names an unknown code.
std::string formatConstellationFile(const ConstellationSources& sources,
                                    const FigureStarTable& stars);

// One step of a chained path: a segment and whether it is walked from its second end.
struct ChainStep {
    int segment = 0;
    bool reversed = false;
};

// Chains segments, given as pairs of point numbers, into polylines: each segment is used
// once; paths start at points of odd degree first, so open figures come out as few strokes
// as a greedy walk finds and closed outlines as loops.
std::vector<std::vector<ChainStep>> chainSegments(const std::vector<std::pair<int, int>>& segments);
