#include "host/data/Variable.h"

#include "host/data/NameMatch.h"

namespace korvana {

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
