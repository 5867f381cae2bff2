#pragma once

#include "module/regression/data/RegressionSample.h"
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

/// The same for a combination of covariates, after an iteration that did not converge: those with a
/// considerable part in x'b, where the parameters b have run far out and x'b is nearly largest in all who
/// die. `parameters` are on the scale of the data.
std::vector<std::size_t> FindUnboundedTogether(const RegressionSample& sample,
                                               std::span<const double> parameters);

/// The first covariate that depends on those before it in the risk sets: in which the information with all
/// parameters 0 has no pivot left. None where there is no such covariate. Throws std::bad_alloc without
/// memory for a copy of the covariates.
std::optional<Diagnosis::Dependence> FindDependence(const RegressionSample& sample);

} // namespace ozm::survival
