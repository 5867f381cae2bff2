#pragma once

#include "module/regression/estimation/SquareMatrix.h"

#include <array>
#include <cstddef>
#include <span>

namespace ozm::survival {

/// Arrays of cases are used in whole groups of so many: they go on to a multiple of it, with finite numbers.
inline constexpr std::size_t caseGroup = 8;
constexpr std::size_t InGroups(std::size_t cases) {
    return (cases + caseGroup - 1) / caseGroup * caseGroup;
}

/// The sum of a group's numbers.
inline double SumOfGroup(const double* group) {
    static_assert(caseGroup == 8);
    return ((group[0] + group[1]) + (group[2] + group[3])) + ((group[4] + group[5]) + (group[6] + group[7]));
}

/// Columns of numbers, one entry per case.
struct CaseColumns {
    const double* values = nullptr;
    std::size_t stride = 0; ///< from a column to the next
    std::size_t count = 0;

    [[nodiscard]] const double* operator[](std::size_t k) const { return values + k * stride; }
};

/// Those at risk at a time t, and their covariates then: fixed ones and such that change with the time.
struct RiskSetAt {
    std::size_t cases = 0;
    const double* predictor = nullptr; ///< x'b of the fixed covariates
    CaseColumns fixed;
    CaseColumns changing;
};

/// Sums over a risk set: of w, of w z for the changing covariates, of w x for the fixed ones.
using WeightedSums = std::array<double, 1 + mostParameters>;

/// What becomes of the covariates of a risk set in the derivatives of the likelihood: sums that go on from
/// risk set to risk set. With p = d w/S0 of a case, and z(k) less its mean m(k) over the risk set:
struct SpreadSums {
    double* share;           ///< by case: the sum of p
    double* changing;        ///< by changing covariate and case: the sum of p (z(k) - m(k))
    std::size_t stride;      ///< of `changing`
    std::span<double> pairs; ///< `caseGroup` by each k and l <= k: sum of p (z(k) - m(k)) (z(l) - m(l))
};

/// The loops over those at risk, translated for vectors of one width.
struct RiskSetPass {
    /// The largest magnitude of some values, in whole groups; NaN if one of them is not finite.
    double (*survey)(const double* values, std::size_t count);
    /// Whether all predictors eta = x'b are numbers of magnitude up to `largest`.
    bool (*within)(const RiskSetAt& set, const double* parameters, double largest);
    /// The same, and if so: w = exp(eta) of each case, 0 in the rest of the last group, and their sums.
    bool (*weigh)(const RiskSetAt& set, const double* parameters, double largest, double* weights,
                  WeightedSums& sums);
    /// Adds a risk set, where `perWeight` is d/S0, and `means` are those of the changing covariates.
    void (*spread)(const RiskSetAt& set, const double* weights, double perWeight, const double* means,
                   const SpreadSums& sums);
};

/// Those that this processor can run, the one with the widest vectors first. Their results are the same.
std::span<const RiskSetPass> UsableRiskSetPasses();

} // namespace ozm::survival
