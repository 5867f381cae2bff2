#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/DampedNewton.h"
#include "module/regression/estimation/Diagnosis.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// The coefficients of a proportional hazards model that have no maximum, as the partial likelihood is
/// monotone in them (Bryson & Johnson 1981, Technometrics 23:381-383): at every time of death the covariate
/// is largest (or smallest) in those who die of all at risk.
std::vector<Diagnosis::Unbounded> FindUnbounded(const RegressionSample& sample);

/// The same for combinations of covariates: where the iteration from zeros has run far out, and a further
/// step as wide loses nothing, those with a considerable part in that step. Fits the model once more; throws
/// std::bad_alloc without memory for a copy of the covariates.
std::vector<std::size_t> FindUnboundedTogether(const RegressionSample& sample);

/// Whether estimates that have converged give reason to look for such combinations: predictors far apart, or
/// a further Newton step that would still change them.
bool MayBeUnbounded(const RegressionSample& sample, std::span<const double> parameters,
                    const NewtonEstimate& estimate);

/// The first covariate that depends on those before it in the risk sets: in which the information with all
/// parameters 0 has no pivot left; on none of them, where it does not vary in any risk set. None where there
/// is no such covariate. Throws std::bad_alloc without memory for a copy of the covariates.
std::optional<Diagnosis::Dependence> FindDependence(const RegressionSample& sample);

/// All of these that are of use after an estimation that ended with this status at these parameters.
Diagnosis DiagnoseCox(const RegressionSample& sample, std::span<const double> parameters,
                      const NewtonEstimate& estimate, EstimationStatus status);

} // namespace ozm::survival
