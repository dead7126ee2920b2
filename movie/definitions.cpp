#include "movie/definitions.h"

#include <cctype>
#include <cstdio>

#include "movie/script_lines.h"

namespace {

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

void printDefineFormat(const std::string& line, int lineNumber) {
    std::fprintf(stderr, "Err: (line %d) [%s]\n", lineNumber, line.c_str());
    std::fprintf(stderr, "        define format should be\n");
    std::fprintf(stderr, "               [define <definition name> <value>].\n\n");
    std::fprintf(stderr,
                 "            OR [define <definition name> <value> <operator> <operand>].\n\n");
    std::fprintf(stderr, "    where <operator> should be +, -, *, or /\n");
}

}  // namespace

int DefinitionTable::find(const std::string& name) const {
    for (int i = 0; i < count(); ++i)
        if (equalIgnoringCase(names_[i], name)) return i;
    return -1;
}

double DefinitionTable::evaluateToken(const std::string& token) const {
    int i = find(token);
    return i >= 0 ? values_[i] : leadingNumber(token);
}

int DefinitionTable::readDefinition(const std::string& line, const std::vector<std::string>& tokens,
                                    int lineNumber) {
    // A token beginning with "#" from the fourth one on starts a trailing comment.
    std::size_t used = tokens.size();
    for (std::size_t i = 3; i < tokens.size(); ++i) {
        if (tokens[i][0] == '#') {
            used = i;
            break;
        }
    }
    if (used != 3 && used != 5) {
        printDefineFormat(line, lineNumber);
        return -1;
    }

    double result = evaluateToken(tokens[2]);
    if (used == 5) {
        const std::string& op = tokens[3];
        double operand = evaluateToken(tokens[4]);
        if (op == "+") {
            result += operand;
        } else if (op == "-") {
            result -= operand;
        } else if (op == "*") {
            result *= operand;
        } else if (op == "/") {
            result /= operand;  // IEEE division: x / 0 is an infinity, never a trap
        } else {
            std::fprintf(stderr, "Err: (line %d) [define <definition name> <value>].\n\n",
                         lineNumber);
            return -1;
        }
    }

    // Stored names are compared with case: "A" after "a" is a second entry.
    const std::string& name = tokens[1];
    for (int i = 0; i < count(); ++i) {
        if (names_[i] == name) {
            values_[i] = result;
            return 1;
        }
    }
    if (count() >= kCapacity) {
        std::fprintf(stderr, "Err: (line %d) too many definitions in script file (max:%d)\n\n",
                     lineNumber, kCapacity);
        return -1;
    }
    names_.push_back(name);
    values_.push_back(result);
    return 1;
}
