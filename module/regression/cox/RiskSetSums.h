#pragma once

#include "module/regression/cox/OrderedSample.h"
#include "module/regression/estimation/SquareMatrix.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace ozm::survival {

/// What the derivatives of a partial likelihood are summed from, one entry per case.
struct RiskSetTerms {
    std::span<const double> weight;   ///< w = exp(eta)
    std::span<const double> meanRoot; ///< sqrt(d)/S0 at the end of a group of d events, else 0
    std::span<const double> expected; ///< events: w times the sum of d/S0 over the groups it is at risk in
    std::span<const std::uint8_t> observed; ///< 1: an event of a group
};

/// The loops over cases and covariates, translated for vectors of one width.
struct RiskSetKernels {
    /// eta = x'b of all cases. False if one is beyond `largest` in magnitude, or not a number; the rest is
    /// then not computed.
    bool (*predict)(const OrderedSample& sample, std::span<const double> parameters, double largest,
                    std::span<double> eta);
    /// The gradient, the sum of (observed - expected) x, and the information, the sum of expected x x' over
    /// the cases less that of d (S1/S0)(S1/S0)' over the groups.
    void (*sum)(const OrderedSample& sample, const RiskSetTerms& terms, std::span<double> gradient,
                SquareMatrix& information);
};

/// Those that this processor can run, the one with the widest vectors first. Their results are the same.
std::span<const RiskSetKernels> UsableRiskSetKernels();

} // namespace ozm::survival
