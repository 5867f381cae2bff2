#pragma once

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

struct ValueLabel {
    double value = 0;
    std::string text; ///< UTF-8
};

/// Number: plain values, also truth values with labels. Text: codes 1..k whose texts are the value labels.
/// Date: Julian day numbers.
enum class VariableKind { Number, Text, Date };

/// "number", "text" or "date"
const char* kindName(VariableKind kind);

/// What is known about a variable, without its cells.
struct Variable {
    std::string name;
    std::string label; ///< a longer description, may be empty
    VariableKind kind = VariableKind::Number;
    double missingCode = std::numeric_limits<double>::quiet_NaN(); ///< NaN = none
    std::vector<ValueLabel> valueLabels;
    std::string expression{}; ///< for a variable computed from others; empty = it was read

    /// A cell counts as missing when it is not a number or equals the missing code.
    bool isMissing(double value) const { return std::isnan(value) || value == missingCode; }

    /// The label of a value; nothing when it has none.
    std::optional<std::string_view> labelOf(double value) const;

    /// The value that a label stands for: the exact text first, then without regard to the case of ASCII
    /// letters if only one label matches.
    std::optional<double> valueOf(std::string_view text) const;
};

} // namespace korvana
