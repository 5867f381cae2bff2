#include "module/regression/CDefineRegDlg.h"

#include "module/regression/RegressionModels.h"
#include "module/resources/Resources.h"
#include "module/resources/Startup.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {
namespace {

bool Contains(std::span<const int> variables, int variable) {
    return std::ranges::find(variables, variable) != variables.end();
}

} // namespace

CDefineRegDlg::CDefineRegDlg(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state)
    : RegressionSpecification(host, regressionTemplate, regressionInterface, shared, state) {}

void CDefineRegDlg::OnOpen() {
    RegressionSpecification::OnOpen();
    SetValue(RegModel, static_cast<int>(State().settings.kind));
    ShowStrata();
}

void CDefineRegDlg::ShowStrata() {
    for (const int control : {RegStrataCodes, RegDifferentBaselines})
        Enable(control, ModelOf(State().settings.kind).stratified);
}

void CDefineRegDlg::OnValueChanged(int control) {
    if (control != RegModel) {
        RegressionSpecification::OnValueChanged(control);
        return;
    }
    State().settings.kind = static_cast<RegressionKind>(ValueAs<int>(control));
    ShowStrata();
}

bool CDefineRegDlg::CovariatesAreValid() {
    const std::vector<int>& covariates = Shared().List(ListCovariates);
    if (covariates.empty()) {
        ShowMessage(StrRegNoCovariates);
        return false;
    }
    const auto refuse = [&](int variable, int other) {
        ShowMessage(StrRegCovariateTwice,
                    Filled(StrRegCovariateTwiceDetail,
                           {QuotedName(Analysis(), variable), Whole(StrRegACovariate), Whole(other)}));
        return false;
    };
    for (std::size_t k = 0; k < covariates.size(); ++k) {
        const int variable = covariates[k];
        if (Contains(std::span{covariates}.first(k), variable))
            return refuse(variable, StrRegAnotherCovariate);
        if (Contains(Shared().Times(), variable)) return refuse(variable, StrRegTheTime);
        if (Contains(Shared().List(ListCensoring), variable)) return refuse(variable, StrRegTheCensoring);
        if (Contains(Shared().List(ListStrata), variable)) return refuse(variable, StrRegTheStratification);
    }
    return true;
}

bool CDefineRegDlg::SelectionsAreValid() {
    if (!CommonSelectionsAreValid() || !CovariatesAreValid()) return false;
    const int strata = Shared().First(ListStrata);
    if (strata == 0 || ModelOf(State().settings.kind).stratified) return true;
    ShowMessage(StrRegCannotBeStratified,
                Filled(StrRegCannotBeStratifiedWay, {QuotedName(Analysis(), strata)}));
    return false;
}

void CDefineRegDlg::Run() {
    if (SelectionsAreValid()) ExitDialog(StepRegSpec, ExitMode::Forward);
}

} // namespace ozm::survival
