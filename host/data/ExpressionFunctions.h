#pragma once

#include "host/data/ExpressionOperations.h"

#include <span>
#include <string_view>

namespace korvana {

/// A function that expressions may call.
struct ExpressionFunction {
    std::string_view name; ///< as users write it, in any letter case
    const ExpressionOperation* operation;
    int fewest; ///< arguments
    int most;   ///< if more than the operation takes, it joins two at a time
};

inline constexpr int manyArguments = 1000;

std::span<const ExpressionFunction> expressionFunctions();

/// What a word of expressions is, in any letter case: "a function", "a constant", "an operator"; empty when
/// it is none.
std::string_view wordOfExpressions(std::string_view name);

} // namespace korvana
