#pragma once

#include "module/regression/results/ModelResults.h"
#include "module/regression/timedependent/CovariateList.h"

#include <span>

namespace ozm::survival {

// The outputs of the proportional hazards model whose covariates expressions define.

extern const ModelResults timeDependentResults;

/// Spreadsheet of the covariates with the expressions that define them.
OutputResult WriteDefinitions(CAnalysisSupport& host, std::span<const DefinedCovariate> covariates);

} // namespace ozm::survival
