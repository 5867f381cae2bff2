#include "module/kaplan/CDefineKaplanDlg.h"

#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"

namespace ozm::survival {

CDefineKaplanDlg::CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : SpecificationDialog(host, KaplanTemplate(), KaplanInterface(), shared), state_(state) {}

void CDefineKaplanDlg::Run() {
    if (!CommonSelectionsAreValid()) return;
    const bool computed = RunProductLimit(Analysis(), Shared(), state_, this) == 0;
    Leave(computed, StepKaplanResults, StepSpecifyKaplan);
}

} // namespace ozm::survival
