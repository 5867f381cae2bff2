#include "module/kaplan/CDefineKaplanDlg.h"

#include "module/resources/Kaplan.h"
#include "module/kaplan/RunProductLimit.h"
#include "module/resources/StepNumbers.h"

namespace ozm::survival {

CDefineKaplanDlg::CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : SpecificationDialog(host, kaplanTemplate, kaplanInterface, shared), state_(state) {}

void CDefineKaplanDlg::Run() {
    if (!CommonSelectionsAreValid()) return;
    const bool computed = RunProductLimit(Analysis(), Shared(), state_, this) == 0;
    Leave(computed, StepKaplanResults, StepSpecifyKaplan);
}

} // namespace ozm::survival
