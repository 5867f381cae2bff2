#pragma once

#include "module/regression/estimation/Diagnosis.h"
#include "module/regression/timedependent/FitTimeDependentCox.h"

#include <optional>
#include <span>
#include <vector>

namespace ozm::survival {

/// Covariates of which each death has the largest value (or each the smallest) of those at risk with it,
/// while these differ: their coefficients have no finite maximum. Ends with the first deaths that say
/// otherwise of every covariate; nothing if the watch stops it.
std::vector<Diagnosis::Unbounded> FindUnbounded(TimeDependentCox& cox);

/// The same for combinations of covariates, from the parameters that an estimation ended with: where these
/// are far out, those with a considerable part in the direction in which the likelihood hardly curves, if
/// each death has (but for rounding) the largest value of that combination among those at risk with it.
/// Nothing if the watch stops it.
std::vector<std::size_t> FindUnboundedTogether(TimeDependentCox& cox, std::span<const double> parameters);

/// Covariates of such magnitudes that the determinant of the information, in which they stand squared, or the
/// information itself cannot be told from 0 or from infinity, though they vary.
std::vector<Diagnosis::Scale> FindScales(TimeDependentCox& cox);

/// The first covariate that depends linearly on those before it, among those at risk at every time of death:
/// by the information with all coefficients 0, the covariates on the scale of their largest values. None
/// where these are too large for it.
std::optional<Diagnosis::Dependence> FindDependence(TimeDependentCox& cox);

} // namespace ozm::survival
