#include "host/data/ExpressionFunctions.h"

#include "host/data/NameMatch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <muParser.h>

namespace korvana {
namespace {

constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

// An operation without a finite result is undefined, and stays so: 1/(1/0) is not 0.
double defined(double value) {
    return std::isfinite(value) ? value : undefined;
}

bool both(double a, double b) {
    return std::isfinite(a) && std::isfinite(b);
}

double truth(bool value) {
    return value ? 1.0 : 0.0;
}

// Kleene's three-valued logic: an undefined operand matters only if the other one does not decide.
double logicalAnd(double a, double b) {
    if (a == 0 || b == 0) return 0;
    return both(a, b) ? 1 : undefined;
}
double logicalOr(double a, double b) {
    if ((std::isfinite(a) && a != 0) || (std::isfinite(b) && b != 0)) return 1;
    return both(a, b) ? 0 : undefined;
}
// An operator with an unused left operand: the formula library allows no sign after a prefix operator.
double logicalNot(double /*idle*/, double a) {
    return std::isfinite(a) ? truth(a == 0) : undefined;
}

template <typename Relation>
double compare(double a, double b, Relation relation) {
    return both(a, b) ? truth(relation(a, b)) : undefined;
}
double equal(double a, double b) {
    return compare(a, b, [](double x, double y) { return x == y; });
}
double unequal(double a, double b) {
    return compare(a, b, [](double x, double y) { return x != y; });
}
double less(double a, double b) {
    return compare(a, b, [](double x, double y) { return x < y; });
}
double lessOrEqual(double a, double b) {
    return compare(a, b, [](double x, double y) { return x <= y; });
}
double greater(double a, double b) {
    return compare(a, b, [](double x, double y) { return x > y; });
}
double greaterOrEqual(double a, double b) {
    return compare(a, b, [](double x, double y) { return x >= y; });
}

double divide(double a, double b) {
    return both(a, b) ? defined(a / b) : undefined;
}
double power(double a, double b) {
    return both(a, b) ? defined(std::pow(a, b)) : undefined; // the C function returns 1 for pow(NaN, 0)
}
double modulo(double a, double b) {
    return both(a, b) ? defined(a - b * std::floor(a / b)) : undefined;
}
double choose(double condition, double a, double b) {
    return std::isfinite(condition) ? (condition != 0 ? a : b) : undefined;
}
double isMissing(double a) {
    return truth(std::isnan(a));
}
double signOf(double a) {
    return std::isfinite(a) ? truth(a > 0) - truth(a < 0) : undefined;
}

template <double (*function)(double)>
double guarded(double a) {
    return std::isfinite(a) ? defined(function(a)) : undefined;
}

template <bool greatest>
double extreme(const double* values, int count) {
    double found = values[0];
    for (int i = 0; i < count; ++i) {
        if (!std::isfinite(values[i])) return undefined;
        found = greatest ? std::max(found, values[i]) : std::min(found, values[i]);
    }
    return found;
}

constexpr std::array<ExpressionFunction, 27> functions{{
    {"abs", "f_abs", 1, 1},
    {"sqrt", "f_sqrt", 1, 1},
    {"exp", "f_exp", 1, 1},
    {"ln", "f_ln", 1, 1},
    {"log", "f_ln", 1, 1},
    {"log10", "f_log10", 1, 1},
    {"log2", "f_log2", 1, 1},
    {"floor", "f_floor", 1, 1},
    {"ceil", "f_ceil", 1, 1},
    {"round", "f_round", 1, 1},
    {"trunc", "f_trunc", 1, 1},
    {"int", "f_trunc", 1, 1},
    {"sign", "f_sign", 1, 1},
    {"sin", "f_sin", 1, 1},
    {"cos", "f_cos", 1, 1},
    {"tan", "f_tan", 1, 1},
    {"asin", "f_asin", 1, 1},
    {"acos", "f_acos", 1, 1},
    {"atan", "f_atan", 1, 1},
    {"sinh", "f_sinh", 1, 1},
    {"cosh", "f_cosh", 1, 1},
    {"tanh", "f_tanh", 1, 1},
    {"mod", "f_mod", 2, 2},
    {"if", "f_if", 3, 3},
    {"min", "f_min", 1, manyArguments},
    {"max", "f_max", 1, manyArguments},
    {"missing", "f_missing", 1, 1},
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

void defineExpressionFunctions(mu::Parser& parser) {
    parser.ClearFun();
    parser.ClearConst();
    parser.DefineFun("f_abs", guarded<std::fabs>);
    parser.DefineFun("f_sqrt", guarded<std::sqrt>);
    parser.DefineFun("f_exp", guarded<std::exp>);
    parser.DefineFun("f_ln", guarded<std::log>);
    parser.DefineFun("f_log10", guarded<std::log10>);
    parser.DefineFun("f_log2", guarded<std::log2>);
    parser.DefineFun("f_floor", guarded<std::floor>);
    parser.DefineFun("f_ceil", guarded<std::ceil>);
    parser.DefineFun("f_round", guarded<std::round>);
    parser.DefineFun("f_trunc", guarded<std::trunc>);
    parser.DefineFun("f_sign", signOf);
    parser.DefineFun("f_sin", guarded<std::sin>);
    parser.DefineFun("f_cos", guarded<std::cos>);
    parser.DefineFun("f_tan", guarded<std::tan>);
    parser.DefineFun("f_asin", guarded<std::asin>);
    parser.DefineFun("f_acos", guarded<std::acos>);
    parser.DefineFun("f_atan", guarded<std::atan>);
    parser.DefineFun("f_sinh", guarded<std::sinh>);
    parser.DefineFun("f_cosh", guarded<std::cosh>);
    parser.DefineFun("f_tanh", guarded<std::tanh>);
    parser.DefineFun("f_mod", modulo);
    parser.DefineFun("f_if", choose);
    parser.DefineFun("f_min", extreme<false>);
    parser.DefineFun("f_max", extreme<true>);
    parser.DefineFun("f_missing", isMissing);
    parser.DefineOprt("or", logicalOr, mu::prLOR);
    parser.DefineOprt("and", logicalAnd, mu::prLAND);
    // Binds weaker than a comparison: not a = b means not (a = b). Right-associative, so that not not a
    // works.
    parser.DefineOprt("not", logicalNot, mu::prLOGIC, mu::oaRIGHT);
    parser.DefineOprt("eq", equal, mu::prCMP);
    parser.DefineOprt("ne", unequal, mu::prCMP);
    parser.DefineOprt("lt", less, mu::prCMP);
    parser.DefineOprt("le", lessOrEqual, mu::prCMP);
    parser.DefineOprt("gt", greater, mu::prCMP);
    parser.DefineOprt("ge", greaterOrEqual, mu::prCMP);
    parser.DefineOprt("div", divide, mu::prMUL_DIV);
    parser.DefineOprt("pow", power, mu::prPOW, mu::oaRIGHT);
}

} // namespace korvana
