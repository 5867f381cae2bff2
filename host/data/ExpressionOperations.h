#pragma once

#include <cstddef>

namespace korvana {

/// Something that expressions compute from one to three values, for many cases at once.
struct ExpressionOperation {
    int arguments;
    /// in[k][i] is the k-th argument for case i, out[i] the result, for each i below `cases`. What has no
    /// finite result gives NaN; sums and products may also give an infinity, which is as undefined.
    void (*run)(const double* const* in, double* out, std::size_t cases);
};

/// 0 for a finite number, else NaN.
inline double zeroIfFinite(double value) {
    return value - value; // NOLINT(misc-redundant-expression)
}

inline constexpr int mostOperationArguments = 3;

// Logic, comparisons and arithmetic.
extern const ExpressionOperation operationOr, operationAnd, operationNot;
extern const ExpressionOperation operationEqual, operationUnequal, operationLess, operationLessOrEqual,
    operationGreater, operationGreaterOrEqual;
extern const ExpressionOperation operationAdd, operationSubtract, operationMultiply, operationDivide,
    operationNegate, operationPower;

// Functions.
extern const ExpressionOperation operationAbs, operationSqrt, operationExp, operationLog, operationLog10,
    operationLog2, operationFloor, operationCeil, operationRound, operationTrunc, operationSign, operationSin,
    operationCos, operationTan, operationAsin, operationAcos, operationAtan, operationSinh, operationCosh,
    operationTanh, operationMod, operationIf, operationMin, operationMax, operationMissing;

} // namespace korvana
