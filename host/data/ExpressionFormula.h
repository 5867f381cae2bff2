#pragma once

#include "host/data/DataSet.h"
#include "host/data/Expression.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// An expression, checked and rewritten for the formula library: variables are v0, v1, ..., constants c0, c1,
/// ..., functions and operators those of defineExpressionFunctions.
struct ExpressionFormula {
    std::string text;
    std::vector<double> constants;
    std::vector<int> references; ///< of v0, v1, ...: 1-based variable numbers or those of named inputs
    std::vector<bool> tested;    ///< whether missing(...) tests v0, v1, ...
    std::vector<bool> byNumber;  ///< whether v0, v1, ... are written as v3 somewhere
};

/// Checks and rewrites; throws ExpressionError.
ExpressionFormula translate(std::string_view expression, const DataSet& data,
                            std::span<const NamedInput> inputs);

} // namespace korvana
