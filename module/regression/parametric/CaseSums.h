#pragma once

#include "module/regression/estimation/SquareMatrix.h"
#include "module/regression/parametric/CaseBlocks.h"

#include <span>
#include <vector>

namespace ozm::survival {

/// What an iteration of a censored normal model takes from its censored cases, with z = (y - mean) / sigma
/// and h the ratio of density and upper tail there.
struct CensoredSums {
    std::vector<double> excess; ///< the sum of h times each column
    double squares = 0.0;       ///< of h^2
    double weight = 0.0;        ///< of h (h - z)
};

/// The loops over cases, translated for vectors of one width.
struct CaseKernels {
    /// The sum of each column times its coefficient, for every case.
    void (*predict)(const CaseBlocks& cases, std::span<const double> coefficients,
                    std::span<Eight> predictors);
    /// The sum over the cases of a term times each column.
    void (*sum)(const CaseBlocks& cases, std::span<const Eight> terms, std::span<double> sums);
    /// The sum over the cases of the products of two columns times the square of a root, for all pairs.
    void (*multiply)(const CaseBlocks& cases, std::span<const Eight> roots, SquareMatrix& products);
    /// The ratios h: the density with 0.39894228, over the upper tail as `NormalTailProbability` has it,
    /// apart from rounding; where that is 0, z + 1/z.
    void (*tailRatios)(std::span<const Eight> z, std::span<Eight> ratios);
    CensoredSums (*expect)(const CaseBlocks& cases, std::span<const Eight> y,
                           std::span<const double> coefficients, double sigma);
};

/// Those that this processor can run, the one with the widest vectors first. Their results are the same.
std::span<const CaseKernels> UsableCaseKernels();

} // namespace ozm::survival
