#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/RegressionStatus.h"

#include <cstddef>

namespace ozm::survival {

/// A condition that the data of a regression do not meet, and the covariate that it is about.
struct DataFault {
    RegressionStatus status = RegressionStatus::Success;
    std::size_t covariate = 0;
};

/// Checks a sample that was read, in this order: uncensored cases (none, fewer than 2), covariates with fewer
/// than 2 values, covariates with one value only or beyond what can be computed with, times with one value
/// only. Models whose likelihood has parameters for the baseline count these themselves. `status` is how the
/// pass ended: where too few cases were valid because a covariate has hardly any values, that covariate is
/// the fault.
DataFault CheckRegressionData(const RegressionResults& results, RegressionStatus status);

/// The cases that would be valid if no covariate were missing.
std::int32_t ValidOtherwise(const RegressionResults& results);

} // namespace ozm::survival
