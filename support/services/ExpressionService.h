#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace ozm {

/// A compiled formula, in a form known to the host alone. The caller owns it.
class CompiledExpression {
public:
    virtual ~CompiledExpression() = default;
    /// What the formula reads, ascending: numbers of variables from 1; the number of variables plus k stands
    /// for the k-th extra name given to `COMP`.
    [[nodiscard]] virtual std::span<const int> References() const = 0;
};

/// Formulas over named variables.
class ExpressionService {
public:
    virtual ~ExpressionService() = default;

    /// Compiles a formula over the data set's variables (by name, or by number as v1, v2, ...) and the extra
    /// names, which win. Returns 0; else non-zero, with the formula, what is wrong, and at which character
    /// and word in `error`.
    virtual short COMP(std::string_view text, std::span<const std::string> extraNames,
                       std::unique_ptr<CompiledExpression>& compiled, std::string& error) = 0;

    /// Evaluates a formula; values[k] is the value of References()[k]. Returns 0; non-zero when the result is
    /// not finite (`result` is then 0).
    virtual int RunSpreadsheetFormula(std::span<const double> values, const CompiledExpression& compiled,
                                      double& result) = 0;

    /// Evaluates a formula for many cases in one call. columns[k] holds the values of References()[k], one
    /// per result, or a single one for all cases: what depends on such values alone is computed once.
    /// results[i] becomes NaN where the result is not finite. Returns how many did; below 0 when the lengths
    /// of the columns do not match (no result is then written).
    virtual int RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                                       const CompiledExpression& compiled, std::span<double> results) = 0;
};

} // namespace ozm
