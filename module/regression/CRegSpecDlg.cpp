#include "module/regression/CRegSpecDlg.h"

#include "module/regression/RegressionModels.h"
#include "module/regression/RunRegression.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"

#include <string>

namespace ozm::survival {
namespace {

std::string ModelInWords(CAnalysisSupport& host, const SharedSettings& shared, RegressionKind kind) {
    std::string text{Text(ModelOf(kind).name)};
    const auto line = [&](int id, const std::string& value) { text += "\n" + Filled(id, {value}); };
    line(StrRegTimesInWords, TimesName(host, shared));
    line(StrRegCensoringInWords, VariableName(host, shared.First(ListCensoring)));
    std::vector<std::string> names;
    for (const int variable : shared.List(ListCovariates))
        names.push_back(VariableName(host, variable));
    line(StrRegCovariatesInWords, Listed(names, 0));
    if (shared.First(ListStrata) != 0)
        line(StrRegStrataInWords, VariableName(host, shared.First(ListStrata)));
    return text;
}

} // namespace

CRegSpecDlg::CRegSpecDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state)
    : EstimationDialog(state, host, estimationSpecificationTemplate, estimationSpecificationInterface,
                       shared) {}

void CRegSpecDlg::OnOpen() {
    SetValue(RegModelInWords, ModelInWords(Analysis(), Shared(), State().settings.kind));
    ShowLimits();
}

void CRegSpecDlg::OnDataChanged() {
    ExitDialog(StepSpecifyRegression, ExitMode::Back);
}

bool CRegSpecDlg::OnCommand(int control) {
    switch (control) {
    case ControlOk:
        return Estimate();
    case ControlCancel:
        ExitDialog(StepSpecifyRegression, ExitMode::Back);
        return true;
    default:
        return CommonCommand(control);
    }
}

bool CRegSpecDlg::Estimate() {
    if (!TakeLimits()) return false;
    State().settings.startValues.clear();
    const bool done = PrepareRegression(Analysis(), Shared(), State(), this) &&
                      EstimateRegression(Analysis(), State(), this);
    ShowLimits(); // more iterations may have been allowed
    if (done) ExitDialog(StepRegEst, ExitMode::Forward);
    return done;
}

} // namespace ozm::survival
