#pragma once

#include "module/regression/RegressionModels.h"
#include "module/regression/estimation/Diagnosis.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ozm::survival {

// What proportional hazards models have in common, whether or not their covariates change.

/// Start values: zeros.
std::vector<double> StartAtZero(const RegressionSample& sample, std::size_t covariates);
/// What an estimation by Newton's method ended with.
Outcome OutcomeOf(EstimationStatus status);
/// In sentences what a diagnosis says about an outcome, or what else to try where there is no inverse.
std::vector<std::string> ExplainBy(const Diagnosis& diagnosis, const EstimationRun& run,
                                   const Outcome& outcome);

} // namespace ozm::survival
