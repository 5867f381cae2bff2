#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ozm {

/// A value as scripts know it: nothing, a truth value, a number, a text, or a list of values.
struct AutomationValue {
    using List = std::vector<AutomationValue>;
    std::variant<std::monostate, bool, int, double, std::string, List> value;

    AutomationValue() = default;
    AutomationValue(bool v) : value(v) {}
    AutomationValue(int v) : value(v) {}
    AutomationValue(double v) : value(v) {}
    AutomationValue(std::string v) : value(std::move(v)) {}
    AutomationValue(const char* v) : value(std::string{v}) {}
    AutomationValue(List v) : value(std::move(v)) {}

    bool operator==(const AutomationValue&) const = default;
};

} // namespace ozm
