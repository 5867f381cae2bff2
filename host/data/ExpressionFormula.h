#pragma once

#include "host/data/DataSet.h"
#include "host/data/Expression.h"
#include "host/data/ExpressionProgram.h"

#include <span>
#include <string_view>
#include <vector>

namespace korvana {

/// An expression, checked and translated.
struct ExpressionFormula {
    ExpressionProgram program;
    std::vector<int> references; ///< of its inputs: 1-based variable numbers or those of named inputs
    std::vector<bool> tested;    ///< whether missing(...) tests the input
    std::vector<bool> byNumber;  ///< whether the input is written as v3 somewhere
};

/// Checks and translates; throws ExpressionError.
ExpressionFormula translate(std::string_view expression, const DataSet& data,
                            std::span<const NamedInput> inputs);

} // namespace korvana
