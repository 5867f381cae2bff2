#pragma once

#include "host/data/Expression.h"
#include "host/data/ExpressionProgram.h"

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace korvana {

/// Computes programs, some hundred cases at a time: each operation goes over all of them before the next one,
/// and what is the same for every case is computed once.
class ExpressionRun {
public:
    /// @param tested  whether an input may be missing; one that may not leaves its cases without a result
    ExpressionRun(ExpressionProgram program, std::vector<bool> tested);

    /// See Expression::evaluate.
    int operator()(std::span<const Expression::Input> inputs, std::span<double> results);

private:
    static constexpr std::size_t most = 256; ///< cases at a time, so that results stay in the fastest memory

    /// Values case by case, or one for all of them.
    struct Values {
        const double* first;
        bool single;
    };

    Values take(std::size_t input, const Expression::Input& from, std::size_t begin, std::size_t cases);
    /// The values of the program, which may stand in `results`.
    Values compute(std::span<double> results);

    ExpressionProgram program_;
    bool strict_; ///< what is missing shows in the result
    std::vector<bool> tested_;
    std::vector<Values> inputs_;
    std::vector<std::vector<double>> cleaned_; ///< inputs with missing values, here NaN
    std::vector<std::size_t> incomplete_;      ///< of these, inputs that are not tested
    std::vector<Values> stack_;
    std::unique_ptr<double[]> slots_;
    std::array<std::array<double, most>, mostOperationArguments> spread_; ///< single values beside others
};

} // namespace korvana
