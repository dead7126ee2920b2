#pragma once
// Numeric definitions of a movie script ("define <name> <value> [<operator> <operand>]").
// A definition may use earlier ones by name; keyframe fields take plain numbers only.

#include <string>
#include <vector>

class DefinitionTable {
  public:
    static constexpr int kCapacity = 1024;

    // Reads one definition line (its first token is "define"): 1, or -1 after the message.
    int readDefinition(const std::string& line, const std::vector<std::string>& tokens,
                       int lineNumber);

    int count() const { return static_cast<int>(names_.size()); }
    const std::string& name(int i) const { return names_[i]; }
    double value(int i) const { return values_[i]; }
    // First entry whose name matches without regard to case, or -1.
    int find(const std::string& name) const;
    // An earlier definition's value, or else the token's leading number (0 if none).
    double evaluateToken(const std::string& token) const;

  private:
    std::vector<std::string> names_;
    std::vector<double> values_;
};
