#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ozm {

/// An object as scripts see it: its type and name.
struct AutomationReference {
    std::string type; ///< "Application" or "Analysis"
    std::string name;
    bool operator==(const AutomationReference&) const = default;
};

/// A value as scripts know it: nothing, a truth value, a number, a text, a list of values, or an object.
struct AutomationValue {
    using List = std::vector<AutomationValue>;
    std::variant<std::monostate, bool, int, double, std::string, List, AutomationReference> value;

    AutomationValue() = default;
    AutomationValue(bool v) : value(v) {}
    AutomationValue(int v) : value(v) {}
    AutomationValue(double v) : value(v) {}
    AutomationValue(std::string v) : value(std::move(v)) {}
    AutomationValue(const char* v) : value(std::string{v}) {}
    AutomationValue(List v) : value(std::move(v)) {}
    AutomationValue(AutomationReference v) : value(std::move(v)) {}

    bool operator==(const AutomationValue&) const = default;
};

} // namespace ozm
