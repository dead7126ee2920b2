#include "tools/datatree/core/constellation_catalogue.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <set>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/star_names.h"
#include "tools/datatree/core/text_input.h"

std::map<std::string, std::vector<FigureSegment>> readFigures(const std::string& path) {
    std::string text = readWholeFile(path);
    std::map<std::string, std::vector<FigureSegment>> figures;
    for (const TextLine& line : splitLines(text)) {
        auto w = splitWords(line.text);
        if (w.empty() || w[0][0] == '#') continue;
        std::string place = where(path, line.number);
        if (w.size() < 2) throw DataError(place + ": expected a code and a segment count");
        long long n = needInt(w[1], place, "segment count");
        if (n < 0 || std::size_t(n) * 2 != w.size() - 2) {
            throw DataError(place + ": " + std::to_string(w.size() - 2) + " HIP numbers for " +
                            std::to_string(n) + " segments");
        }
        auto& segments = figures[std::string(w[0])];
        for (long long k = 0; k < n; ++k) {
            FigureSegment s;
            s.hip1 = int(needInt(w[2 + 2 * k], place, "HIP number"));
            s.hip2 = int(needInt(w[3 + 2 * k], place, "HIP number"));
            segments.push_back(s);
        }
    }
    if (figures.empty()) throw DataError(path + ": no constellation figures");
    return figures;
}

std::vector<std::pair<std::string, std::string>> readConstellationNames(const std::string& path) {
    std::string text = readWholeFile(path);
    std::vector<std::pair<std::string, std::string>> names;
    for (const TextLine& line : splitLines(text)) {
        std::string_view t = trim(line.text);
        if (t.empty() || t[0] == '#') continue;
        std::size_t open = t.find('"');
        std::size_t close = open == std::string_view::npos ? open : t.find('"', open + 1);
        if (close == std::string_view::npos) {
            throw DataError(where(path, line.number) + ": expected a code and a quoted name");
        }
        std::string code(trim(t.substr(0, open)));
        std::string name = toAscii(std::string(t.substr(open + 1, close - open - 1)));
        if (code.size() != 3 || name.empty()) {
            throw DataError(where(path, line.number) + ": bad code [" + code + "] or empty name");
        }
        names.emplace_back(code, name);
    }
    if (names.empty()) throw DataError(path + ": no constellation names");
    return names;
}

std::vector<BoundaryEdge> readBoundaryEdges(const std::string& path) {
    std::string text = readWholeFile(path);
    // The records run over line ends; read the file as one stream of words.
    std::vector<std::pair<std::string_view, int>> words;  // word, line
    for (const TextLine& line : splitLines(text)) {
        for (std::string_view w : splitWords(line.text))
            words.emplace_back(w, line.number);
    }
    std::vector<BoundaryEdge> edges;
    std::size_t i = 0;
    auto need = [&](std::size_t count) {
        if (i + count > words.size()) {
            throw DataError(where(path, words.empty() ? 0 : words.back().second) +
                            ": file ends inside a boundary record");
        }
    };
    while (i < words.size()) {
        std::string place = where(path, words[i].second);
        long long n = needInt(words[i].first, place, "vertex count");
        if (n < 2 || n > 100000) throw DataError(place + ": bad vertex count " + std::to_string(n));
        ++i;
        need(std::size_t(n) * 2 + 3);
        BoundaryEdge edge;
        for (long long k = 0; k < n; ++k) {
            BoundaryVertex v;
            v.raHours = needDouble(words[i].first, where(path, words[i].second), "right ascension");
            v.decDeg =
                needDouble(words[i + 1].first, where(path, words[i + 1].second), "declination");
            if (v.raHours < 0 || v.raHours > 24 || std::fabs(v.decDeg) > 90) {
                throw DataError(where(path, words[i].second) + ": vertex out of range");
            }
            edge.vertices.push_back(v);
            i += 2;
        }
        long long names = needInt(words[i].first, where(path, words[i].second), "name count");
        if (names != 2) {
            throw DataError(where(path, words[i].second) + ": expected 2 constellation codes");
        }
        edge.first = std::string(words[i + 1].first);
        edge.second = std::string(words[i + 2].first);
        i += 3;
        edges.push_back(std::move(edge));
    }
    if (edges.empty()) throw DataError(path + ": no boundary records");
    return edges;
}

std::vector<std::vector<ChainStep>> chainSegments(
    const std::vector<std::pair<int, int>>& segments) {
    std::map<int, std::vector<int>> touching;  // point -> segments, in segment order
    for (int s = 0; s < int(segments.size()); ++s) {
        touching[segments[s].first].push_back(s);
        if (segments[s].second != segments[s].first) touching[segments[s].second].push_back(s);
    }
    std::vector<bool> used(segments.size(), false);
    auto unusedDegree = [&](int point) {
        int d = 0;
        for (int s : touching[point])
            d += used[s] ? 0 : 1;
        return d;
    };
    std::vector<std::vector<ChainStep>> paths;
    for (;;) {
        // Start at the first point, in segment order, of odd remaining degree; else at the
        // first end of the first unused segment.
        int start = 0;
        bool found = false;
        for (int s = 0; s < int(segments.size()) && !found; ++s) {
            if (used[s]) continue;
            for (int point : {segments[s].first, segments[s].second}) {
                if (unusedDegree(point) % 2 == 1) {
                    start = point;
                    found = true;
                    break;
                }
            }
        }
        if (!found) {
            auto first = std::find(used.begin(), used.end(), false);
            if (first == used.end()) break;
            start = segments[first - used.begin()].first;
        }
        std::vector<ChainStep> path;
        int at = start;
        for (;;) {
            int next = -1;
            for (int s : touching[at]) {
                if (!used[s]) {
                    next = s;
                    break;
                }
            }
            if (next < 0) break;
            used[next] = true;
            bool reversed = segments[next].first != at;
            path.push_back({next, reversed});
            at = reversed ? segments[next].first : segments[next].second;
        }
        paths.push_back(std::move(path));
    }
    return paths;
}

FigureStarTable makeFigureStarTable(
    const ConstellationSources& sources, const std::unordered_map<int, int>& hdOfHip,
    const std::unordered_map<int, std::string>& constellationOfHip) {
    std::map<int, std::set<std::string>> figuresOfHip;
    for (const auto& [code, segments] : sources.figures) {
        for (const FigureSegment& s : segments) {
            figuresOfHip[s.hip1].insert(code);
            figuresOfHip[s.hip2].insert(code);
        }
    }
    FigureStarTable table;
    for (const auto& [hip, codes] : figuresOfHip) {
        FigureStar star;
        auto hd = hdOfHip.find(hip);
        star.hd = hd == hdOfHip.end() ? 0 : hd->second;
        star.home = *codes.begin();
        auto named = constellationOfHip.find(hip);
        if (named != constellationOfHip.end() && codes.count(named->second))
            star.home = named->second;
        table.byHip.emplace(hip, star);
    }
    return table;
}

namespace {

// Source boundary codes are upper case and Serpens comes in two parts ("SER1", "SER2").
std::string normaliseCode(const std::string& sourceCode,
                          const std::vector<std::pair<std::string, std::string>>& names) {
    std::string code = sourceCode;
    while (!code.empty() && std::isdigit(static_cast<unsigned char>(code.back())))
        code.pop_back();
    for (const auto& entry : names) {
        if (entry.first.size() != code.size()) continue;
        bool same = true;
        for (std::size_t k = 0; k < code.size(); ++k) {
            same = same && std::toupper(static_cast<unsigned char>(entry.first[k])) ==
                               std::toupper(static_cast<unsigned char>(code[k]));
        }
        if (same) return entry.first;
    }
    return "";
}

// A point key for matching edge ends (the source repeats shared vertices exactly).
int pointKey(std::map<std::pair<long long, long long>, int>& keys, const BoundaryVertex& v) {
    auto key = std::make_pair(std::llround(v.raHours * 1e5), std::llround(v.decDeg * 1e4));
    auto it = keys.find(key);
    if (it != keys.end()) return it->second;
    int id = int(keys.size());
    keys.emplace(key, id);
    return id;
}

void appendBoundaries(std::string& out, const std::vector<const BoundaryEdge*>& edges,
                      const std::vector<std::string>& neighbours) {
    std::map<std::pair<long long, long long>, int> keys;
    std::vector<std::pair<int, int>> ends;
    for (const BoundaryEdge* e : edges) {
        ends.emplace_back(pointKey(keys, e->vertices.front()), pointKey(keys, e->vertices.back()));
    }
    for (const auto& path : chainSegments(ends)) {
        out += "BOUNDARY BEGIN\n";
        bool first = true;
        for (const ChainStep& step : path) {
            const auto& v = edges[step.segment]->vertices;
            const std::string& neighbour = neighbours[step.segment];
            for (std::size_t k = first ? 0 : 1; k < v.size(); ++k) {
                const BoundaryVertex& p = step.reversed ? v[v.size() - 1 - k] : v[k];
                out += format("%.7f %.7f %s\n", p.raHours, p.decDeg, neighbour.c_str());
            }
            first = false;
        }
        out += "BOUNDARY END\n";
    }
}

void appendFigure(std::string& out, const std::string& code,
                  const std::vector<FigureSegment>& segments, const FigureStarTable& stars) {
    std::vector<std::pair<int, int>> pairs;
    for (const FigureSegment& s : segments)
        pairs.emplace_back(s.hip1, s.hip2);
    for (const auto& path : chainSegments(pairs)) {
        std::vector<int> hips;
        hips.push_back(path.front().reversed ? pairs[path.front().segment].second
                                             : pairs[path.front().segment].first);
        for (const ChainStep& step : path) {
            hips.push_back(step.reversed ? pairs[step.segment].first : pairs[step.segment].second);
        }
        // A star without an HD number cannot be named: the stroke breaks there.
        std::vector<std::string> block;
        auto flush = [&] {
            if (block.size() >= 2) {
                out += "LINE BEGIN\n";
                for (const std::string& line : block)
                    out += line;
                out += "LINE END\n";
            }
            block.clear();
        };
        for (int hip : hips) {
            const FigureStar& star = stars.byHip.at(hip);
            if (star.hd <= 0) {
                flush();
                continue;
            }
            block.push_back(format("HD%d%s\n", star.hd, star.home == code ? "" : " SHARED"));
        }
        flush();
    }
}

}  // namespace

std::string formatConstellationFile(const ConstellationSources& sources,
                                    const FigureStarTable& stars) {
    std::map<std::string, std::vector<const BoundaryEdge*>> edgesOf;
    std::map<std::string, std::vector<std::string>> neighboursOf;
    for (const BoundaryEdge& e : sources.boundaries) {
        std::string a = normaliseCode(e.first, sources.names);
        std::string b = normaliseCode(e.second, sources.names);
        if (a.empty() || b.empty()) {
            throw DataError("boundary edge between unknown constellations [" + e.first + "] and [" +
                            e.second + "]");
        }
        edgesOf[a].push_back(&e);
        neighboursOf[a].push_back(b);
        if (b != a) {
            edgesOf[b].push_back(&e);
            neighboursOf[b].push_back(a);
        }
    }
    std::vector<std::pair<std::string, std::string>> order = sources.names;
    std::sort(order.begin(), order.end(),
              [](const auto& x, const auto& y) { return x.second < y.second; });

    std::string out;
    out += "# The 88 constellations: full name and code, boundaries (right ascension in hours,\n";
    out += "# declination in degrees, J2000, and the neighbouring constellation) and figures\n";
    out += "# through HD stars (SHARED: drawn here, member of another constellation).\n";
    for (const auto& [code, name] : order) {
        auto figure = sources.figures.find(code);
        if (figure == sources.figures.end() || figure->second.empty()) {
            throw DataError("constellation " + code + " has no figure");
        }
        if (edgesOf[code].empty()) throw DataError("constellation " + code + " has no boundary");
        out += format("\nCONSTELLATION %s %s\n", code.c_str(), fitStarName(name).c_str());
        appendBoundaries(out, edgesOf[code], neighboursOf[code]);
        appendFigure(out, code, figure->second, stars);
    }
    return out;
}
