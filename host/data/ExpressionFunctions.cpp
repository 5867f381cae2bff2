#include "host/data/ExpressionFunctions.h"

#include "host/data/NameMatch.h"

#include <algorithm>
#include <array>

namespace korvana {
namespace {

constexpr std::array<ExpressionFunction, 27> functions{{
    {"abs", &operationAbs, 1, 1},
    {"sqrt", &operationSqrt, 1, 1},
    {"exp", &operationExp, 1, 1},
    {"ln", &operationLog, 1, 1},
    {"log", &operationLog, 1, 1},
    {"log10", &operationLog10, 1, 1},
    {"log2", &operationLog2, 1, 1},
    {"floor", &operationFloor, 1, 1},
    {"ceil", &operationCeil, 1, 1},
    {"round", &operationRound, 1, 1},
    {"trunc", &operationTrunc, 1, 1},
    {"int", &operationTrunc, 1, 1},
    {"sign", &operationSign, 1, 1},
    {"sin", &operationSin, 1, 1},
    {"cos", &operationCos, 1, 1},
    {"tan", &operationTan, 1, 1},
    {"asin", &operationAsin, 1, 1},
    {"acos", &operationAcos, 1, 1},
    {"atan", &operationAtan, 1, 1},
    {"sinh", &operationSinh, 1, 1},
    {"cosh", &operationCosh, 1, 1},
    {"tanh", &operationTanh, 1, 1},
    {"mod", &operationMod, 2, 2},
    {"if", &operationIf, 3, 3},
    {"min", &operationMin, 1, manyArguments},
    {"max", &operationMax, 1, manyArguments},
    {"missing", &operationMissing, 1, 1},
}};

} // namespace

std::span<const ExpressionFunction> expressionFunctions() {
    return functions;
}

std::string_view wordOfExpressions(std::string_view name) {
    for (const std::string_view word : {"and", "or", "not"})
        if (equalIgnoringCase(name, word)) return "an operator";
    if (equalIgnoringCase(name, "pi")) return "a constant";
    const bool function = std::any_of(functions.begin(), functions.end(), [name](const auto& each) {
        return equalIgnoringCase(each.name, name);
    });
    return function ? "a function" : "";
}

} // namespace korvana
