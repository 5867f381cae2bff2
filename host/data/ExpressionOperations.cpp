#include "host/data/ExpressionOperations.h"

#include <cmath>

namespace korvana {
namespace {

// What is not finite is undefined: NaN. To subtract 0 changes no bit; so nothing branches where it need not,
// and the loops over many cases become vector instructions.

double where(double known, double result) {
    return result - zeroIfFinite(known);
}
double where(double known1, double known2, double result) {
    return result - (zeroIfFinite(known1) + zeroIfFinite(known2));
}

double truth(bool value) {
    return value ? 1.0 : 0.0;
}

// An operation without a finite result is undefined, and stays so: 1/(1/0) is not 0.
double defined(double value) {
    return where(value, value);
}

// Kleene's three-valued logic: an undefined operand matters only if the other one does not decide.
double logicalAnd(double a, double b) {
    const double open = where(a, b, 1.0);
    return a == 0 ? 0.0 : b == 0 ? 0.0 : open;
}
double logicalOr(double a, double b) {
    const double open = where(a, b, 0.0);
    return std::abs(defined(a)) > 0 ? 1.0 : std::abs(defined(b)) > 0 ? 1.0 : open;
}
double logicalNot(double a) {
    return where(a, truth(a == 0));
}

double equal(double a, double b) {
    return where(a, b, truth(a == b));
}
double unequal(double a, double b) {
    return where(a, b, truth(a != b));
}
double less(double a, double b) {
    return where(a, b, truth(a < b));
}
double lessOrEqual(double a, double b) {
    return where(a, b, truth(a <= b));
}
double greater(double a, double b) {
    return where(a, b, truth(a > b));
}
double greaterOrEqual(double a, double b) {
    return where(a, b, truth(a >= b));
}

double add(double a, double b) {
    return a + b;
}
double subtract(double a, double b) {
    return a - b;
}
double multiply(double a, double b) {
    return a * b;
}
double negate(double a) {
    return -a;
}
double divide(double a, double b) {
    return where(a, b, defined(a / b));
}
double power(double a, double b) {
    return where(a, b, defined(std::pow(a, b))); // the C function returns 1 for pow(NaN, 0)
}
double modulo(double a, double b) {
    return where(a, b, defined(a - b * std::floor(a / b)));
}

double choose(double condition, double a, double b) {
    return where(condition, condition != 0 ? a : b);
}
double lesser(double a, double b) {
    return where(a, b, b < a ? b : a);
}
double larger(double a, double b) {
    return where(a, b, a < b ? b : a);
}
double isMissing(double a) {
    return truth(std::isnan(a));
}
double signOf(double a) {
    return where(a, truth(a > 0) - truth(a < 0));
}

template <double (*function)(double)>
double guarded(double a) {
    return where(a, defined(function(a)));
}

template <double (*function)(double)>
void each(const double* const* in, double* out, std::size_t cases) {
    const double* a = in[0];
    for (std::size_t i = 0; i < cases; ++i)
        out[i] = function(a[i]);
}
template <double (*function)(double, double)>
void each(const double* const* in, double* out, std::size_t cases) {
    const double* a = in[0];
    const double* b = in[1];
    for (std::size_t i = 0; i < cases; ++i)
        out[i] = function(a[i], b[i]);
}
template <double (*function)(double, double, double)>
void each(const double* const* in, double* out, std::size_t cases) {
    const double* a = in[0];
    const double* b = in[1];
    const double* c = in[2];
    for (std::size_t i = 0; i < cases; ++i)
        out[i] = function(a[i], b[i], c[i]);
}

} // namespace

constexpr ExpressionOperation operationOr{2, each<logicalOr>};
constexpr ExpressionOperation operationAnd{2, each<logicalAnd>};
constexpr ExpressionOperation operationNot{1, each<logicalNot>};
constexpr ExpressionOperation operationEqual{2, each<equal>};
constexpr ExpressionOperation operationUnequal{2, each<unequal>};
constexpr ExpressionOperation operationLess{2, each<less>};
constexpr ExpressionOperation operationLessOrEqual{2, each<lessOrEqual>};
constexpr ExpressionOperation operationGreater{2, each<greater>};
constexpr ExpressionOperation operationGreaterOrEqual{2, each<greaterOrEqual>};
constexpr ExpressionOperation operationAdd{2, each<add>};
constexpr ExpressionOperation operationSubtract{2, each<subtract>};
constexpr ExpressionOperation operationMultiply{2, each<multiply>};
constexpr ExpressionOperation operationDivide{2, each<divide>};
constexpr ExpressionOperation operationNegate{1, each<negate>};
constexpr ExpressionOperation operationPower{2, each<power>};
constexpr ExpressionOperation operationAbs{1, each<guarded<std::fabs>>};
constexpr ExpressionOperation operationSqrt{1, each<guarded<std::sqrt>>};
constexpr ExpressionOperation operationExp{1, each<guarded<std::exp>>};
constexpr ExpressionOperation operationLog{1, each<guarded<std::log>>};
constexpr ExpressionOperation operationLog10{1, each<guarded<std::log10>>};
constexpr ExpressionOperation operationLog2{1, each<guarded<std::log2>>};
constexpr ExpressionOperation operationFloor{1, each<guarded<std::floor>>};
constexpr ExpressionOperation operationCeil{1, each<guarded<std::ceil>>};
constexpr ExpressionOperation operationRound{1, each<guarded<std::round>>};
constexpr ExpressionOperation operationTrunc{1, each<guarded<std::trunc>>};
constexpr ExpressionOperation operationSign{1, each<signOf>};
constexpr ExpressionOperation operationSin{1, each<guarded<std::sin>>};
constexpr ExpressionOperation operationCos{1, each<guarded<std::cos>>};
constexpr ExpressionOperation operationTan{1, each<guarded<std::tan>>};
constexpr ExpressionOperation operationAsin{1, each<guarded<std::asin>>};
constexpr ExpressionOperation operationAcos{1, each<guarded<std::acos>>};
constexpr ExpressionOperation operationAtan{1, each<guarded<std::atan>>};
constexpr ExpressionOperation operationSinh{1, each<guarded<std::sinh>>};
constexpr ExpressionOperation operationCosh{1, each<guarded<std::cosh>>};
constexpr ExpressionOperation operationTanh{1, each<guarded<std::tanh>>};
constexpr ExpressionOperation operationMod{2, each<modulo>};
constexpr ExpressionOperation operationIf{3, each<choose>};
constexpr ExpressionOperation operationMin{2, each<lesser>};
constexpr ExpressionOperation operationMax{2, each<larger>};
constexpr ExpressionOperation operationMissing{1, each<isMissing>};

} // namespace korvana
