#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/estimation/Diagnosis.h"

#include <span>

namespace ozm::survival {

/// Which coefficients of a proportional hazards model have no maximum, as the partial likelihood is monotone
/// (Bryson & Johnson 1981, Technometrics 23:381-383): those whose covariate, at every time of death, is
/// largest (or smallest) in those who die of all at risk; and where there is none, those that make the
/// predictor x'b so, nearly, at parameters b which have run far out. `parameters` are on the scale of the
/// data.
Diagnosis FindUnbounded(const RegressionSample& sample, std::span<const double> parameters);

/// The first covariate that depends on those before it in the risk sets: in which the information with all
/// parameters 0 has no pivot left. None where there is no such covariate. Throws std::bad_alloc without
/// memory for a copy of the covariates.
std::optional<Diagnosis::Dependence> FindDependence(const RegressionSample& sample);

} // namespace ozm::survival
