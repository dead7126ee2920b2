#include "movie/view_block.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace {

struct ViewLine {
    const char* name;
    const char* altName;  // second accepted spelling, or null
    int count;            // numbers after "="
};

const ViewLine kViewPos{"viewPos", nullptr, 4};
const ViewLine kViewDir{"viewDir", "viewVec", 3};
const ViewLine kViewUp{"viewUp", "upVec", 3};
const ViewLine kFovy{"fovy", "viewFOV", 1};
const ViewLine kAspect{"aspect", nullptr, 1};

int readViewLine(ScriptLines& lines, const ViewLine& spec, double* values) {
    std::string line;
    LineStatus status = lines.readDataLine(line);
    if (status == LineStatus::Failed) return -1;
    if (status == LineStatus::End) {
        std::fprintf(stderr, "Err : (line %d) Encounter EOF without the data.\n",
                     lines.lineNumber());
        return -1;
    }
    const int n = lines.lineNumber();
    std::vector<std::string> tokens = tokenize(line);
    const std::string& id = tokens[0];
    if (id != spec.name && !(spec.altName && id == spec.altName)) {
        if (spec.altName)
            std::fprintf(stderr,
                         "Err : (line %d) should have identifier [%s] OR [%s] but found [%s].\n", n,
                         spec.name, spec.altName, id.c_str());
        else
            std::fprintf(stderr, "Err : (line %d) should have identifier [%s] but found [%s].\n", n,
                         spec.name, id.c_str());
        return -1;
    }
    if (tokens.size() < 2 || tokens[1] != "=") {
        if (spec.altName)
            std::fprintf(stderr, "Err : (line %d) missing [=] after [%s] OR [%s].\n", n, spec.name,
                         spec.altName);
        else
            std::fprintf(stderr, "Err : (line %d) missing [=] after [%s].\n", n, spec.name);
        return -1;
    }
    for (int i = 0; i < spec.count; ++i) {
        std::size_t t = 2 + static_cast<std::size_t>(i);
        if (t >= tokens.size() || !parseNumber(tokens[t], values[i])) {
            if (spec.altName)
                std::fprintf(stderr,
                             "Err : (line %d) missing the argument %d after [%s] or [%s].\n", n,
                             i + 1, spec.name, spec.altName);
            else
                std::fprintf(stderr, "Err : (line %d) missing the argument %d after [%s].\n", n,
                             i + 1, spec.name);
            return -1;
        }
        if (!(std::fabs(values[i]) <= kViewNumberMax)) {
            std::fprintf(stderr,
                         "Err : (line %d) the argument %d after [%s] should be a finite number "
                         "of magnitude at most %g.\n",
                         n, i + 1, id.c_str(), kViewNumberMax);
            return -1;
        }
    }
    return 1;
}

}  // namespace

int readViewBlock(ScriptLines& lines, View& view) {
    double v[4];
    if (readViewLine(lines, kViewPos, v) < 0) return -1;
    view.viewPos = {v[0], v[1], v[2], v[3]};

    if (readViewLine(lines, kViewDir, v) < 0) return -1;
    view.viewDir = normalized({v[0], v[1], v[2]});
    if (length(view.viewDir) == 0.0) {
        std::fprintf(stderr, "Err : (line %d) viewDir should be a non-zero vector.\n",
                     lines.lineNumber());
        return -1;
    }

    if (readViewLine(lines, kViewUp, v) < 0) return -1;
    view.viewUp = normalized({v[0], v[1], v[2]});
    if (length(view.viewUp) == 0.0) {
        std::fprintf(stderr, "Err : (line %d) viewUp should be a non-zero vector.\n",
                     lines.lineNumber());
        return -1;
    }

    if (readViewLine(lines, kFovy, v) < 0) return -1;
    if (!(v[0] > 0.0)) {
        std::fprintf(stderr, "Err : (line %d) fovy should be positive.\n", lines.lineNumber());
        return -1;
    }
    view.fovy = v[0];

    if (readViewLine(lines, kAspect, v) < 0) return -1;
    if (!(v[0] > 0.0)) {
        std::fprintf(stderr, "Err : (line %d) aspect ratio should be positive.\n",
                     lines.lineNumber());
        return -1;
    }
    view.aspect = v[0];
    return 1;
}
