#include "module/regression/RegressionModels.h"

#include "module/regression/cox/CoxDiagnosis.h"
#include "module/regression/cox/FitCox.h"
#include "module/resources/Regression.h"

#include <algorithm>
#include <iterator>

namespace ozm::survival {
namespace {

Diagnosis DiagnoseCox(const RegressionSample& sample, std::span<const double> parameters,
                      const NewtonEstimate& estimate, EstimationStatus status) {
    Diagnosis diagnosis;
    diagnosis.unbounded = FindUnbounded(sample);
    if (diagnosis.unbounded.empty() &&
        (status != EstimationStatus::Success || MayBeUnbounded(sample, parameters, estimate)))
        diagnosis.unboundedTogether = FindUnboundedTogether(sample);
    if (status == EstimationStatus::Singular) diagnosis.dependence = FindDependence(sample);
    return diagnosis;
}

constexpr RegressionModel models[] = {
    {RegressionKind::ProportionalHazards, StrRegCox, false, FitCox, DiagnoseCox},
};

} // namespace

const RegressionModel* FindRegressionModel(RegressionKind kind) {
    const auto* const found = std::ranges::find(models, kind, &RegressionModel::kind);
    return found != std::end(models) ? found : nullptr;
}

} // namespace ozm::survival
