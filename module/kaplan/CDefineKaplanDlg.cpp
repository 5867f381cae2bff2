#include "module/kaplan/CDefineKaplanDlg.h"

#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Kaplan.h"
#include "module/resources/StepNumbers.h"

namespace ozm::survival {

CDefineKaplanDlg::CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : SpecificationDialog(host, kaplanTemplate, kaplanInterface, shared, AnalysisType::KaplanMeier),
      state_(state) {}

void CDefineKaplanDlg::Run() {
    if (!CommonSelectionsAreValid()) return;
    const bool computed = RunProductLimit(Analysis(), Shared(), state_, this);
    Leave(computed, StepKaplanResults, StepSpecifyKaplan);
}

} // namespace ozm::survival
