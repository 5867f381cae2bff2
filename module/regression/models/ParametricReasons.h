#pragma once

#include "module/regression/RegressionModels.h"
#include "module/regression/parametric/CensoredCases.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

// What the parametric models share.

/// The cases of a sample with these responses; refers to both.
CensoredCases CasesOf(const RegressionSample& sample, std::span<const double> y);

/// "There are 5 parameters and 3 uncensored cases."
std::string CountOfParameters(const RegressionSample& sample, std::size_t parameters);

/// Coefficients that grow without bound, in sentences.
std::vector<std::string> TellUnbounded(const EstimationRun& run);
/// A covariate whose standard deviation is below such a part of its mean.
std::vector<std::string> TellNearlyConstant(const EstimationRun& run, double below);
/// Why a matrix is singular: a covariate that depends on others, or that varies little for its size.
std::vector<std::string> TellDependence(const EstimationRun& run);
/// Why start values cannot be made of the uncensored cases alone.
std::vector<std::string> TellDependenceAtStart(const EstimationRun& run);
/// What can be said of a singular matrix where nothing else can.
std::string TellTooLittle(const EstimationRun& run);

} // namespace ozm::survival
