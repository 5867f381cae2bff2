#include "host/data/ExpressionNames.h"

#include "host/data/NameMatch.h"

#include <algorithm>
#include <vector>

namespace korvana {

std::optional<int> variableNumberIn(std::string_view name) {
    if (name.size() < 2 || (name[0] != 'v' && name[0] != 'V') || name[1] == '0') return std::nullopt;
    int number = 0;
    for (const char c : name.substr(1)) {
        if (c < '0' || c > '9') return std::nullopt;
        number = std::min(number * 10 + (c - '0'), maxVariables + 1);
    }
    return number;
}

std::optional<int> firstMisnumbered(const DataSet& data) {
    for (int i = 0; i < data.variableCount(); ++i)
        if (const auto number = variableNumberIn(data.variable(i).name); number && *number != i + 1) return i;
    return std::nullopt;
}

std::optional<ExpressionNames::Meaning> ExpressionNames::find(const Token& token) const {
    const auto found = data_.find(token.text);
    const auto hasName = [&](auto equal) { return found && equal(data_.variable(*found).name, token.text); };
    const bool exact = hasName(std::equal_to<>{});
    if (exact && token.kind != TokenKind::Name) return Meaning{*found + 1};
    for (const NamedInput& input : inputs_)
        if (input.name == token.text) return Meaning{input.reference};
    if (exact) return Meaning{*found + 1};
    for (const NamedInput& input : inputs_)
        if (equalIgnoringCase(input.name, token.text)) return Meaning{input.reference};
    if (hasName(equalIgnoringCase)) return Meaning{*found + 1};
    const auto number = token.kind == TokenKind::Name ? variableNumberIn(token.text) : std::nullopt;
    if (number && *number <= data_.variableCount() && !firstMisnumbered(data_)) return Meaning{*number, true};
    return std::nullopt;
}

std::optional<int> ExpressionNames::findVariable(const Token& token) const {
    const auto meaning = find(token);
    if (!meaning || meaning->reference > data_.variableCount()) return std::nullopt;
    return meaning->reference - 1;
}

std::string ExpressionNames::whyUnknown(const Token& token, bool compared) const {
    std::vector<std::string_view> names;
    bool ambiguous = false;
    for (const NamedInput& input : inputs_)
        names.emplace_back(input.name);
    for (int i = 0; i < data_.variableCount(); ++i) {
        names.emplace_back(data_.variable(i).name);
        ambiguous = ambiguous || equalIgnoringCase(names.back(), token.text);
    }
    const bool plain = token.kind == TokenKind::Name;
    std::string why = ambiguous ? "several variables differ from '" : "there is no variable '";
    why.append(token.text).append("'");
    if (ambiguous) {
        why.append(" only in capital letters; write the name as it is in the data");
    } else if (plain && variableNumberIn(token.text)) {
        why.append(whyNoNumber());
    } else {
        why.append(didYouMean(nearestOf(token.text, names, 3)))
            .append(plain && compared ? "; a text to compare with belongs in quotes ('...')" : "");
    }
    return why + data_.layoutRemarks();
}

std::string ExpressionNames::whyNoNumber() const {
    if (const auto named = firstMisnumbered(data_))
        return ", and no variable goes by its number here, as variable " + std::to_string(*named + 1) +
               " has the name '" + data_.variable(*named).name + "'; write its name";
    const int count = data_.variableCount();
    return ": the data have " + std::to_string(count) +
           (count == 1 ? " variable, v1" : " variables, v1 to v" + std::to_string(count));
}

} // namespace korvana
