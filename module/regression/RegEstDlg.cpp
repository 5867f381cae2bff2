#include "module/regression/RegEstDlg.h"

#include "module/regression/RegressionModels.h"
#include "module/regression/RunRegression.h"
#include "module/regression/results/TimeDependentOutput.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

constexpr int estimated = 0;
constexpr int cancelled = 1;

} // namespace

const DialogTemplate& RegEstDlg::TemplateFor(int timeVariables, RegressionKind kind) {
    const int k = timeVariables + (kind == RegressionKind::ProportionalHazards ? 0 : 1);
    return estimationTemplates[std::clamp(k - 3, 0, 2)];
}

RegEstDlg::RegEstDlg(CAnalysisSupport& host, const DialogTemplate& dialogTemplate, RegressionState& state)
    : EstimationDialog(state, host, dialogTemplate) {
    AttachAutomation(estimationInterface);
}

void RegEstDlg::OnOpen() {
    ShowLimits();
    SetValue(RegStartValues, State().settings.startValues);
    Enable(RegReviewExpressions, !State().results.defined.empty());
}

bool RegEstDlg::OnCommand(int control) {
    switch (control) {
    case ControlOk:
        return Estimate();
    case ControlCancel:
        EndDialog(cancelled);
        return true;
    case RegEditStartValues:
        return EditStartValues();
    case RegReviewExpressions:
        return ReviewExpressions();
    default:
        return false;
    }
}

bool RegEstDlg::EditStartValues() {
    const auto& given = ValueAs<std::vector<double>>(RegStartValues);
    const RegressionResults& results = State().results;
    std::vector<double> values = ModelOf(results.kind).start(results.sample, results.names.size());
    std::copy_n(given.begin(), std::min(given.size(), values.size()), values.begin());
    if (!Analysis().GetStartValues(results.parameterNames, values)) return false;
    SetValue(RegStartValues, std::move(values));
    return true;
}

bool RegEstDlg::ReviewExpressions() {
    const OutputResult written = WriteDefinitions(Analysis(), State().results.defined);
    if (written.message != 0) Analysis().DspMessageBox(MessageStyle::Error, this, written.message, {});
    return written.made;
}

bool RegEstDlg::StartValuesAreValid() {
    const auto& values = ValueAs<std::vector<double>>(RegStartValues);
    const RegressionResults& results = State().results;
    std::string why;
    if (!values.empty() && values.size() != results.Parameters())
        why = Filled(StrRegStartCount, {FormatCount(static_cast<long long>(values.size())),
                                        FormatCount(static_cast<long long>(results.Parameters())),
                                        Listed(results.parameterNames, 0)});
    const auto bad = std::ranges::find_if(values, [](double value) { return !std::isfinite(value); });
    if (why.empty() && bad != values.end())
        why = Filled(StrRegNoStart, {results.parameterNames[static_cast<std::size_t>(bad - values.begin())]});
    if (why.empty()) return true;
    Analysis().DspMessageBox(MessageStyle::Refusal, this, StrRegBadStart, why);
    return false;
}

bool RegEstDlg::Estimate() {
    if (!TakeLimits() || !StartValuesAreValid()) return false;
    State().settings.startValues = ValueAs<std::vector<double>>(RegStartValues);
    const bool done = EstimateRegression(Analysis(), State(), this);
    ShowLimits(); // more iterations may have been allowed
    if (done) EndDialog(estimated);
    return done;
}

} // namespace ozm::survival
