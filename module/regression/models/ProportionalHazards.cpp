#include "module/regression/models/ProportionalHazards.h"

#include "module/regression/RegressionMessages.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

namespace ozm::survival {

std::vector<double> StartAtZero(const RegressionSample& /*sample*/, std::size_t covariates) {
    return std::vector<double>(covariates, 0.0);
}

Outcome OutcomeOf(EstimationStatus status) {
    const auto code = static_cast<int>(status);
    switch (status) {
    case EstimationStatus::Success:
        return {};
    case EstimationStatus::Stopped:
        return {Ending::Stopped, code, 0, {}};
    case EstimationStatus::NotConverged:
        return {Ending::UsedUp, code, StrRegNotConverged, {}};
    case EstimationStatus::Singular:
        return {Ending::Failed, code, StrRegSingular, {}};
    case EstimationStatus::NoLikelihood:
        return {Ending::Failed, code, StrRegNoLikelihood, {}};
    case EstimationStatus::InvalidOperation:
        return {Ending::Failed, code, StrRegInvalidOperation, {}};
    }
    return {Ending::Failed, code, StrRegNoLikelihood, {}};
}

std::vector<std::string> ExplainBy(const Diagnosis& diagnosis, const EstimationRun& run,
                                   const Outcome& outcome) {
    std::vector<std::string> texts = DescribeDiagnosis(run.covariates, run.strata > 1, diagnosis);
    if (outcome.code != static_cast<int>(EstimationStatus::Singular) || !texts.empty()) return texts;
    const auto count = static_cast<long long>(run.covariates.size());
    return {run.startGiven ? Whole(StrRegTryZeros) : Filled(StrRegTooLittle, {FormatCount(count)})};
}

} // namespace ozm::survival
