#pragma once

#include "module/regression/RegressionState.h"
#include "module/regression/RegressionStatus.h"
#include "module/regression/estimation/Diagnosis.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// 'age'.
std::string Quoted(const std::string& name);
/// 'age' and 'arm', by their places among all names.
std::string QuotedNames(const std::vector<std::string>& all, std::span<const std::size_t> which);

/// The message of a status, 0 for one that has none.
int RegressionMessage(RegressionStatus status);

/// What a status's message does not know of these data; `covariate` is the one that it is about, if any.
std::string DescribeDataFault(CAnalysisSupport& host, const SharedSettings& shared,
                              const RegressionResults& results, RegressionStatus status,
                              std::size_t covariate);

/// Adds what the user should know about data that were prepared to the notes of the run.
void TellPreparation(CAnalysisSupport& host, const SharedSettings& shared, const RegressionResults& results);

/// What a diagnosis found, one sentence each, in words; `names` are those of the covariates.
std::vector<std::string> DescribeDiagnosis(const std::vector<std::string>& names, bool stratified,
                                           const Diagnosis& diagnosis);

} // namespace ozm::survival
