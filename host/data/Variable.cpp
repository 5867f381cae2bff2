#include "host/data/Variable.h"

#include "host/data/NameMatch.h"

namespace korvana {

const char* kindName(VariableKind kind) {
    switch (kind) {
    case VariableKind::Text:
        return "text";
    case VariableKind::Date:
        return "date";
    case VariableKind::Number:
        break;
    }
    return "number";
}

std::optional<std::string_view> Variable::labelOf(double value) const {
    // Text columns label 1..k in order: the common case needs no search.
    if (value >= 1 && value <= static_cast<double>(valueLabels.size())) {
        const ValueLabel& likely = valueLabels[static_cast<std::size_t>(value) - 1];
        if (likely.value == value) return likely.text;
    }
    for (const ValueLabel& each : valueLabels)
        if (each.value == value) return each.text;
    return std::nullopt;
}

std::optional<double> Variable::valueOf(std::string_view text) const {
    std::optional<double> found;
    bool unique = true;
    for (const ValueLabel& each : valueLabels) {
        if (each.text == text) return each.value;
        if (!equalIgnoringCase(each.text, text)) continue;
        unique = unique && !found.has_value();
        found = each.value;
    }
    return unique ? found : std::nullopt;
}

} // namespace korvana
