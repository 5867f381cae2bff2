#pragma once

#include "module/regression/estimation/Diagnosis.h"
#include "module/regression/timedependent/FitTimeDependentCox.h"

#include <optional>
#include <vector>

namespace ozm::survival {

/// Covariates of which each death has the largest value (or each the smallest) of those at risk with it,
/// while these differ: their coefficients have no finite maximum. Ends with the first deaths that say
/// otherwise of every covariate; nothing if the watch stops it.
std::vector<Diagnosis::Unbounded> FindUnbounded(TimeDependentCox& cox);

/// The first covariate that depends linearly on those before it, among those at risk at every time of death:
/// by the information with all coefficients 0, the covariates on the scale of their largest values.
std::optional<Diagnosis::Dependence> FindDependence(TimeDependentCox& cox);

} // namespace ozm::survival
