#include "module/ksample/CDefineKSDlg.h"

#include "module/ksample/RunKSamples.h"
#include "module/resources/Groups.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ChosenCodes.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"

#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {

CDefineKSDlg::CDefineKSDlg(CAnalysisSupport& host, SharedSettings& shared, KsState& state)
    : SpecificationDialog(host, ksTemplate, ksInterface, shared, AnalysisType::MultipleSamples),
      state_(state) {}

void CDefineKSDlg::OnOpen() {
    SpecificationDialog::OnOpen();
    SetValue(KsCodes, state_.settings.codes);
}

void CDefineKSDlg::OnValueChanged(int control) {
    if (control == KsCodes)
        state_.settings.codes = ValueAs<std::vector<double>>(control);
    else
        SpecificationDialog::OnValueChanged(control);
}

bool CDefineKSDlg::Refuse(int message, const std::string& detail) {
    const std::string codes = DescribeCodes(Analysis(), Shared().First(ListGrouping));
    ShowMessage(message, detail + (detail.empty() || codes.empty() ? "" : "\n") + codes);
    return false;
}

bool CDefineKSDlg::SelectionsAreValid() {
    if (!CommonSelectionsAreValid()) return false;
    if (Shared().List(ListGrouping).size() != 1) {
        ShowMessage(StrNoGroupingVariable);
        return false;
    }
    return TakeGroups();
}

bool CDefineKSDlg::TakeGroups() {
    ChosenCodes chosen =
        ChooseCodes(Analysis(), Shared().First(ListGrouping), state_.settings.codes, KsArrays::mostGroups);
    switch (chosen.fault) {
    case ChosenCodes::Fault::Unreadable:
    case ChosenCodes::Fault::NoNumber:
        return Refuse(StrInvalidGroupCode, {});
    case ChosenCodes::Fault::TooMany:
        return Refuse(StrKsTooManyGroups, std::string{Text(StrKsChooseFewerCodes)});
    case ChosenCodes::Fault::Twice:
        return Refuse(StrKsCodeTwice, Filled(StrKsCodeGivenTwice, {FormatExact(chosen.code)}));
    case ChosenCodes::Fault::None:
        break;
    }
    if (chosen.codes.size() < 2) return Refuse(StrKsTooFewGroups, {});
    Shared().groupCodes = std::move(chosen.codes);
    return true;
}

void CDefineKSDlg::Run() {
    if (!SelectionsAreValid()) return;
    const bool computed = RunKSamples(Analysis(), Shared(), state_, this);
    Leave(computed, StepKsResults, StepSpecifyKSamples);
}

} // namespace ozm::survival
