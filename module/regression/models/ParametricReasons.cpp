#include "module/regression/models/ParametricReasons.h"

#include "module/regression/RegressionMessages.h"
#include "module/regression/parametric/ParametricDiagnosis.h"
#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <cmath>
#include <optional>

namespace ozm::survival {

CensoredCases CasesOf(const RegressionSample& sample, std::span<const double> y) {
    const OrderedSample cases = sample.Ordered();
    return {.y = y,
            .status = cases.complete,
            .covariates = cases.covariates,
            .stride = cases.stride,
            .x = cases.x,
            .upper = {}};
}

std::string CountOfParameters(const RegressionSample& sample, std::size_t parameters) {
    return Filled(StrRegParametersDetail,
                  {FormatCount(static_cast<long long>(parameters)), FormatCount(sample.Events())});
}

std::vector<std::string> TellUnbounded(const EstimationRun& run) {
    std::vector<std::string> texts;
    for (const UnboundedByCensoring& each : FindUnboundedByCensoring(run.sample)) {
        if (each.covariates.size() > 1)
            texts.push_back(
                Filled(StrRegUnboundedCombination, {QuotedNames(run.covariates, each.covariates)}));
        else
            texts.push_back(Filled(StrRegUnboundedParametric,
                                   {Quoted(run.covariates[each.covariates[0]]), FormatExact(each.value),
                                    Whole(each.least ? StrRegSmaller : StrRegGreater)}));
    }
    return texts;
}

std::vector<std::string> TellNearlyConstant(const EstimationRun& run, double below) {
    const std::optional<std::size_t> nearly = FindNearlyConstant(run.sample, below);
    if (!nearly) return {};
    const CovariateSummary& of = run.sample.Summary(*nearly);
    // In as many digits as the deviation asks for.
    const double unit = std::pow(10.0, std::floor(std::log10(of.deviation)));
    return {
        Filled(StrRegSubtract, {Quoted(run.covariates[*nearly]),
                                FormatExact(std::round(of.mean / unit) * unit), FormatNumber(of.deviation)})};
}

std::vector<std::string> TellDependence(const EstimationRun& run) {
    Diagnosis diagnosis;
    diagnosis.dependence = FindLinearDependence(run.sample, false);
    if (diagnosis.dependence) return DescribeDiagnosis(run.covariates, false, diagnosis);
    return TellNearlyConstant(run, 0.01);
}

std::vector<std::string> TellDependenceAtStart(const EstimationRun& run) {
    const auto dependence = FindLinearDependence(run.sample, true);
    if (!dependence) return {};
    const std::string name = Quoted(run.covariates[dependence->covariate]);
    if (dependence->on.empty()) return {Filled(StrRegConstantUncensored, {name})};
    return {Filled(StrRegDependentUncensored, {name, QuotedNames(run.covariates, dependence->on)})};
}

std::string TellTooLittle(const EstimationRun& run) {
    if (run.startGiven) return Whole(StrRegTryOwnStart);
    return Filled(StrRegTooLittle, {FormatCount(static_cast<long long>(run.covariates.size()))});
}

} // namespace ozm::survival
