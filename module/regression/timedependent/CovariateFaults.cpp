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

} // namespace

std::string FaultOfName(const std::string& name) {
    if (name.empty()) return Whole(StrTimeNoName);
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
