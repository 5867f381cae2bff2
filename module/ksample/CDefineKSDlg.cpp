#include "module/ksample/CDefineKSDlg.h"

#include "module/ksample/RunKSamples.h"
#include "module/resources/Groups.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/SelectionChecks.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <cmath>
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
    std::vector<double> codes = state_.settings.codes;
    bool tooMany = false;
    if (codes.empty()) {
        // Values that are equal as codes are one group, so there may be more of them than groups.
        std::vector<CodeCount> found;
        const int all = Analysis().ReadDataToGetDefaultCodes(Shared().First(ListGrouping),
                                                             {.most = 16 * KsArrays::mostGroups}, found);
        if (all < 0) return Refuse(StrInvalidGroupCode, {});
        tooMany = std::cmp_greater(all, found.size());
        for (const CodeCount& code : found)
            if (codes.empty() || !CodesEqual(codes.back(), code.code)) codes.push_back(code.code);
    }
    if (tooMany || std::cmp_greater(codes.size(), KsArrays::mostGroups))
        return Refuse(StrKsTooManyGroups, std::string{Text(StrKsChooseFewerCodes)});
    for (auto code = codes.begin(); code != codes.end(); ++code) {
        if (!std::isfinite(*code)) return Refuse(StrInvalidGroupCode, {});
        if (std::any_of(codes.begin(), code, [&](double before) { return CodesEqual(before, *code); }))
            return Refuse(StrKsCodeTwice, Filled(StrKsCodeGivenTwice, {FormatExact(*code)}));
    }
    if (codes.size() < 2) return Refuse(StrKsTooFewGroups, {});
    Shared().groupCodes = std::move(codes);
    return true;
}

void CDefineKSDlg::Run() {
    if (!SelectionsAreValid()) return;
    const bool computed = RunKSamples(Analysis(), Shared(), state_, this);
    Leave(computed, StepKsResults, StepSpecifyKSamples);
}

} // namespace ozm::survival
