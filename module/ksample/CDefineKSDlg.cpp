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
    constexpr auto most = static_cast<std::size_t>(KsArrays::mostGroups);
    std::vector<double> codes = state_.settings.codes;
    std::size_t groups = codes.size();
    if (codes.empty()) {
        std::vector<CodeCount> found;
        const int all = Analysis().ReadDataToGetDefaultCodes(Shared().First(ListGrouping),
                                                             {.most = KsArrays::mostGroups}, found);
        if (all < 0) return Refuse(StrInvalidGroupCode, {});
        // Values that are equal as codes are one group.
        for (const CodeCount& code : found)
            if (codes.empty() || !CodesEqual(codes.back(), code.code)) codes.push_back(code.code);
        groups = static_cast<std::size_t>(all) - found.size() + codes.size();
    }
    if (std::ranges::any_of(codes, [](double code) { return !std::isfinite(code); }))
        return Refuse(StrInvalidGroupCode, {});
    for (std::size_t g = 1; g < std::min(groups, most); ++g)
        if (std::any_of(codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(g),
                        [&](double before) { return CodesEqual(before, codes[g]); }))
            return Refuse(StrKsCodeTwice, Filled(StrKsCodeGivenTwice, {FormatExact(codes[g])}));
    if (groups < 2) return Refuse(StrKsTooFewGroups, {});
    if (groups > most) return Refuse(StrKsTooManyGroups, std::string{Text(StrKsChooseFewerCodes)});
    Shared().groupCodes = std::move(codes);
    return true;
}

void CDefineKSDlg::Run() {
    if (!SelectionsAreValid()) return;
    const bool computed = RunKSamples(Analysis(), Shared(), state_, this);
    Leave(computed, StepKsResults, StepSpecifyKSamples);
}

} // namespace ozm::survival
