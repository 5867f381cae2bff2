#pragma once

#include <cstddef>
#include <span>

namespace ozm::survival {

/// Covariates whose values may change with the time. A value belongs to a covariate, a case and a time alone,
/// and is the same whenever it is computed, and whatever others are computed with it.
class TimeCovariates {
public:
    virtual ~TimeCovariates() = default;

    [[nodiscard]] virtual std::size_t Count() const = 0; ///< 1 to 40
    /// Whether a covariate (from 0) depends on the time at all.
    [[nodiscard]] virtual bool DependsOnTime(std::size_t covariate) const = 0;
    /// The values of a covariate at a time, for as many cases as there is room for: the first of them by its
    /// place (from 0) in the order of the partial likelihood, and those that follow. NaN or infinite where
    /// there is no value.
    virtual void Evaluate(std::size_t covariate, std::size_t first, double time,
                          std::span<double> values) = 0;
};

} // namespace ozm::survival
