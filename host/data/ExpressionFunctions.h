#pragma once

#include <span>
#include <string_view>

namespace mu {
class Parser;
}

namespace korvana {

/// A function that expressions may call.
struct ExpressionFunction {
    std::string_view name;   ///< as users write it, in any letter case
    std::string_view symbol; ///< its name inside the formula
    int fewest;              ///< arguments
    int most;
};

inline constexpr int manyArguments = 1000;

std::span<const ExpressionFunction> expressionFunctions();

/// What a word of expressions is, in any letter case: "a function", "a constant", "an operator"; empty when
/// it is none.
std::string_view wordOfExpressions(std::string_view name);

/// Gives a parser exactly the functions and operators of expressions, under the symbols of
/// expressionFunctions() and the operators or, and, not (between an unused operand and its own), eq ne lt le
/// gt ge, + - *, div, pow.
void defineExpressionFunctions(mu::Parser& parser);

} // namespace korvana
