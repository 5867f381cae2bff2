#include "module/twosample/CDefineTwoDlg.h"

#include "module/resources/Shared.h"
#include "module/resources/StepNumbers.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/SelectionChecks.h"
#include "module/twosample/RunTwoSamples.h"
#include "support/CodeComparison.h"

namespace ozm::survival {

CDefineTwoDlg::CDefineTwoDlg(CAnalysisSupport& host, SharedSettings& shared, TwoState& state)
    : SpecificationDialog(host, twoTemplate, twoInterface, shared, AnalysisType::TwoSamples), state_(state) {}

double& CDefineTwoDlg::CodeForGroup(int group) {
    return state_.settings.codes[group == 1 ? 0 : 1];
}

void CDefineTwoDlg::OnOpen() {
    SpecificationDialog::OnOpen();
    SetValue(TwoGroup1Code, CodeForGroup(1));
    SetValue(TwoGroup2Code, CodeForGroup(2));
}

void CDefineTwoDlg::OnValueChanged(int control) {
    if (control == TwoGroup1Code || control == TwoGroup2Code)
        CodeForGroup(control == TwoGroup1Code ? 1 : 2) = KeptCode(ValueAs<double>(control));
    else
        SpecificationDialog::OnValueChanged(control);
}

bool CDefineTwoDlg::SelectionsAreValid() {
    if (!CommonSelectionsAreValid()) return false;
    if (Shared().List(ListGrouping).size() != 1) {
        ShowMessage(StrNoGroupingVariable);
        return false;
    }
    if (CodesEqual(CodeForGroup(1), CodeForGroup(2))) {
        ShowMessage(StrIdenticalGroupCodes, DescribeCodes(Analysis(), Shared().First(ListGrouping)));
        return false;
    }
    if (!GroupCodesAreValid()) {
        ShowMessage(StrInvalidGroupCode, DescribeCodes(Analysis(), Shared().First(ListGrouping)));
        return false;
    }
    return true;
}

bool CDefineTwoDlg::GroupCodesAreValid() {
    return IsCodeOf(Analysis(), Shared().First(ListGrouping), CodeForGroup(1)) &&
           IsCodeOf(Analysis(), Shared().First(ListGrouping), CodeForGroup(2));
}

void CDefineTwoDlg::Run() {
    if (!SelectionsAreValid()) return;
    Shared().groupCodes.assign(state_.settings.codes.begin(), state_.settings.codes.end());
    const bool computed = RunTwoSamples(Analysis(), Shared(), state_, this);
    Leave(computed, StepTwoResults, StepSpecifyTwoSamples);
}

} // namespace ozm::survival
