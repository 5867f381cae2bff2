#pragma once

#include "module/regression/cox/OrderedSample.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ozm::survival {

/// The deaths of a stratum at one time and those at risk then, at estimates b. Predictors are x'b less the
/// constant that a `RiskSets` takes off; w is their exponential.
struct RiskSet {
    double time = 0.0;
    std::size_t block = 0;
    std::size_t first = 0;  ///< the first of the deaths, by its place in the sample
    std::size_t events = 0; ///< they stand one behind the other
    std::size_t atRisk = 0; ///< cases
    double weights = 0.0;   ///< S0, the sum of w over those at risk
};

/// All risk sets of a sample in its order, that is by block, and within a block times descending; and the
/// mean of the covariates over each, S1/S0.
class RiskSets {
public:
    /// Predictors are taken less `constant`, such as their mean: survival and hazard are then those at it.
    RiskSets(const OrderedSample& sample, std::span<const double> estimates, double constant);

    [[nodiscard]] std::size_t Count() const { return sets_.size(); }
    [[nodiscard]] const RiskSet& operator[](std::size_t i) const { return sets_[i]; }
    /// The mean of the covariates over a risk set, weighted by w.
    [[nodiscard]] std::span<const double> Mean(std::size_t i) const {
        return std::span{means_}.subspan(i * covariates_, covariates_);
    }
    /// x'b less the constant, of each case.
    [[nodiscard]] std::span<const double> Predictors() const { return predictors_; }
    /// The increase of the baseline's cumulative hazard, d/S0 (Breslow 1974).
    [[nodiscard]] double Hazard(std::size_t i) const {
        return static_cast<double>(sets_[i].events) / sets_[i].weights;
    }

private:
    std::size_t covariates_;
    std::vector<RiskSet> sets_;
    std::vector<double> means_;
    std::vector<double> predictors_;
};

} // namespace ozm::survival
