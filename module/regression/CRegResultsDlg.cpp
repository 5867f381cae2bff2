#include "module/regression/CRegResultsDlg.h"

#include "module/regression/RegressionModels.h"
#include "module/regression/results/ModelResults.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

constexpr RegressionKind kinds[] = {RegressionKind::ProportionalHazards, RegressionKind::Exponential,
                                    RegressionKind::Lognormal, RegressionKind::Normal,
                                    RegressionKind::TimeDependent};

} // namespace

CRegResultsDlg::CRegResultsDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state)
    : ResultsDialog(host, regressionResultsTemplate, regressionResultsInterface, shared), state_(state) {}

void CRegResultsDlg::OnOpen() {
    SetValue(RegLevel, state_.output.confidenceLevel);
    SetValue(RegCovariateValues, state_.output.covariateValues);
    if (!HasResults()) return;
    const ModelResults& model = ResultsOf(state_.results.kind);
    DisableOutputsOfOthers(model);
    std::string summary{Text(model.title)};
    for (const ModelOutput& output : model.outputs)
        if (output.plotTitle != 0) summary += "\n" + Filled(output.plotName, {Whole(output.plotTitle)});
    for (const std::string& line : RegSummaryLines(Report()))
        summary += "\n" + line;
    SetValue(RegSummaryBox, std::move(summary));
}

void CRegResultsDlg::DisableOutputsOfOthers(const ModelResults& model) {
    // A script has no buttons to look at: it is told.
    if (Analysis().IsOleAutomation()) return;
    for (const RegressionKind kind : kinds)
        for (const ModelOutput& output : ResultsOf(kind).outputs)
            Enable(output.control, model.Find(output.control) != nullptr);
    if (!state_.results.Stratified()) Enable(RegStratified, false);
}

void CRegResultsDlg::OnValueChanged(int control) {
    if (control == RegLevel) state_.output.confidenceLevel = ValueAs<double>(control);
    if (control == RegCovariateValues) state_.output.covariateValues = ValueAs<std::vector<double>>(control);
}

OutputResult CRegResultsDlg::Output(int control) {
    switch (control) {
    case RegSummary:
        return WriteRegSummary(Report());
    case RegCovariances:
        return WriteParameterCovariances(Report());
    case RegMeans:
        return ResultsOf(state_.results.kind).means(Report());
    default:
        break;
    }
    const ModelOutput* output = ResultsOf(state_.results.kind).Find(control);
    if (output == nullptr) {
        refused_ = control;
        return OutputResult::Failed(StrRegNotOfModel);
    }
    if (control == RegUserPlot) {
        if (state_.output.covariateValues.size() > state_.results.names.size())
            return OutputResult::Failed(StrRegTooManyValues);
        if (!AskForValues()) return OutputResult::NotMade();
    }
    return output->make(Report());
}

bool CRegResultsDlg::AskForValues() {
    if (Analysis().IsOleAutomation()) return true;
    const RegressionResults& results = state_.results;
    std::vector<double> values = state_.output.covariateValues;
    values.resize(results.names.size(), std::numeric_limits<double>::quiet_NaN());
    for (std::size_t k = 0; k < values.size(); ++k)
        if (std::isnan(values[k])) values[k] = results.sample.Summary(k).mean;
    if (!Analysis().GetStartValues(results.names, values)) return false;
    for (std::size_t k = 0; k < values.size(); ++k) // the mean stays the mean, also of other cases
        if (values[k] == results.sample.Summary(k).mean) values[k] = std::numeric_limits<double>::quiet_NaN();
    SetValue(RegCovariateValues, values);
    state_.output.covariateValues = std::move(values);
    return true;
}

std::string CRegResultsDlg::Reason(int message) const {
    const RegressionResults& results = state_.results;
    const auto count = [](std::size_t number) { return FormatCount(static_cast<long long>(number)); };
    if (message == StrRegTooManyValues)
        return "\n" + Filled(StrRegValuesFor, {count(state_.output.covariateValues.size()),
                                               count(results.names.size()), Listed(results.names, 0)});
    if (message != StrRegNotOfModel) return {};
    std::vector<std::string> models;
    for (const RegressionKind kind : kinds)
        if (ResultsOf(kind).Find(refused_) != nullptr) models.push_back(Whole(ModelOf(kind).name));
    return "\n" + Filled(StrRegOnlyOf, {Listed(models, StrAnd), Whole(ModelOf(results.kind).name)});
}

} // namespace ozm::survival
