#pragma once

#include "host/data/DataSet.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// An expression that cannot be understood. what() is a complete message that quotes the expression.
class ExpressionError : public std::runtime_error {
public:
    /// @param position  0-based offset of the fault in the expression, in bytes
    ExpressionError(std::string_view expression, std::size_t position, std::string_view text);

    std::size_t position() const { return position_; }

private:
    std::size_t position_;
};

/// A name that an expression may use in addition to the variables of the data.
struct NamedInput {
    std::string name;
    int reference; ///< its 1-based reference number, beyond the variables: variableCount() + 1, ...
};

/// A formula over the variables of a data set, compiled once and evaluated for given values.
///
/// Names: variables, exact or without regard to letter case; any name in backquotes (`white cells`); v1, v2,
/// ... are variables by their 1-based numbers, if no variable has that name. Numbers with a decimal point;
/// dates 1995-01-15. A text in quotes next to = or <> means the value of that label of the variable on the
/// other side; elsewhere it is the name of a variable. Operators, weakest first: or ||; and &&; not !; = ==
/// <>
/// != < <= > >=; + -; * /; sign; ^ or **. Functions: abs sqrt exp ln log (both natural) log10 log2 floor ceil
/// round trunc int (both towards zero) sign sin cos tan asin acos atan sinh cosh tanh mod(a,b) min(...)
/// max(...) if(condition,a,b) missing(variable); the constant pi.
///
/// True is 1, false is 0; any value but 0 counts as true. A missing value or an undefined operation (log of
/// 0, division by 0) makes arithmetic and comparisons undefined; and, or, not follow Kleene's three-valued
/// logic.
class Expression {
public:
    /// Compiles; throws ExpressionError. The data set is not kept.
    Expression(std::string_view text, const DataSet& data, std::span<const NamedInput> inputs = {});
    Expression(Expression&&) noexcept;
    Expression& operator=(Expression&&) noexcept;
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;
    ~Expression();

    const std::string& text() const;

    /// What the expression refers to, each once in order of appearance: 1-based variable numbers and the
    /// reference numbers of named inputs.
    const std::vector<int>& referencedVariables() const;

    /// Whether missing(x) tests the referenced variable at this place of referencedVariables().
    bool isTestedForMissing(std::size_t place) const;

    /// Whether the expression writes the referenced variable as v3 somewhere.
    bool isNamedByNumber(std::size_t place) const;

    /// Evaluates for the values of referencedVariables(), in that order; NaN = missing. Nothing when the
    /// result is not finite. One object must not be used by two threads at once.
    std::optional<double> evaluate(std::span<const double> values) const;

    /// The values of one of referencedVariables(), case by case.
    struct Input {
        const double* first = nullptr;
        std::size_t step = 1;     ///< 0: the same one for every case; else 1
        double missingCode = 0.0; ///< a value equal to it is missing; NaN, which equals nothing, for none
    };

    /// Evaluates for as many cases as there are results, without allocating; a result that is not finite
    /// becomes NaN. Returns how many did.
    int evaluate(std::span<const Input> inputs, std::span<double> results) const;

private:
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

/// Hands out the values of referencedVariables(). The data set must be the one that the expression was
/// compiled for, and must outlive this, as must the values given: named inputs take these, in the order of
/// their reference numbers from variableCount() + 1 on.
class CaseInputs {
public:
    CaseInputs(const Expression& expression, const DataSet& data, std::span<const double> inputValues = {});

    /// For the cases from one on (counted from 0), valid until the next call.
    std::span<const Expression::Input> from(std::size_t case0);

    /// Whether a case has any missing value.
    bool anyMissing(std::size_t case0) const;

private:
    std::vector<Expression::Input> columns_;
    std::vector<Expression::Input> moved_;
};

/// Evaluates for every case of the data set the expression was compiled for: one result per case, NaN where
/// it is not finite or needs a missing value. Named inputs as for CaseInputs.
std::vector<double> evaluateAll(const Expression& expression, const DataSet& data,
                                std::span<const double> inputValues = {});

} // namespace korvana
