#include "module/regression/timedependent/CovariateFaults.h"

#include "module/regression/RegressionMessages.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cstddef>

namespace ozm::survival {
namespace {

std::string CountOf(std::size_t count) {
    return FormatCount(static_cast<long long>(count));
}

/// Of the k-th; empty: none.
std::string FaultAt(std::span<const DefinedCovariate> list, std::size_t k) {
    const auto& [name, expression] = list[k];
    if (std::string fault = FaultOfName(name); !fault.empty()) return fault;
    if (FindDefined(list, name) != k) return Filled(StrTimeTwice, {Quoted(name)});
    if (expression.empty()) return Filled(StrTimeNoExpression, {Quoted(name)});
    if (const std::size_t characters = CharactersOf(expression); characters > expressionWidth)
        return Filled(StrTimeLongExpression, {Quoted(name), CountOf(characters)});
    return {};
}

/// A script that gave more of the ones than of the others sees it.
std::string CountsIfDifferent(std::span<const DefinedCovariate> list) {
    const auto given = [list](std::string DefinedCovariate::*field) {
        return list.size() - static_cast<std::size_t>(std::ranges::count(list, std::string{}, field));
    };
    const std::size_t names = given(&DefinedCovariate::name);
    const std::size_t expressions = given(&DefinedCovariate::expression);
    return names == expressions ? "" : "\n" + Filled(StrTimeCounts, {CountOf(names), CountOf(expressions)});
}

/// The bytes of the well-formed character of UTF-8 at the beginning of a text that is not empty; 0: none.
std::size_t CharacterLength(std::string_view text) {
    const auto at = [text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned first = at(0);
    if (first < 0x80) return 1;
    if (first < 0xC2 || first > 0xF4) return 0;
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    unsigned code = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0U) != 0x80) return 0;
        code = code << 6U | (at(i) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool inRange =
        length == 2 || (length == 3 ? code >= 0x800 && !surrogate : code >= 0x10000 && code <= 0x10FFFF);
    return inRange ? length : 0;
}

/// A text with bytes that are not UTF-8 as \xFF.
std::string WithEscapes(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        const unsigned byte = static_cast<unsigned char>(text.front());
        if (length > 0)
            shown += text.substr(0, length);
        else
            shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return shown;
}

} // namespace

std::string FaultOfName(const std::string& name) {
    if (name.empty()) return Whole(StrTimeNoName);
    if (const std::string shown = WithEscapes(name); shown != name)
        return Filled(StrTimeNotUtf8, {Quoted(shown)});
    if (name.find('=') != std::string::npos || name.find_first_of("[;#") == 0)
        return Filled(StrTimeBadName, {Quoted(name)});
    if (const std::size_t characters = CharactersOf(name); characters > nameWidth)
        return Filled(StrTimeLongName, {Quoted(name), CountOf(characters)});
    return {};
}

ListFault FaultOf(std::span<const DefinedCovariate> list) {
    if (list.empty()) return {StrTimeNoCovariates};
    if (list.size() > mostDefined) return {StrTimeTooMany, Filled(StrTimeGiven, {CountOf(list.size())})};
    for (std::size_t k = 0; k < list.size(); ++k)
        if (const std::string fault = FaultAt(list, k); !fault.empty())
            return {StrTimeBadCovariate, fault + CountsIfDifferent(list)};
    return {};
}

} // namespace ozm::survival
