#include "module/kaplan/CDefineKaplanDlg.h"

#include "module/kaplan/RunProductLimit.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/survdata/SelectionChecks.h"

namespace ozm::survival {

CDefineKaplanDlg::CDefineKaplanDlg(CAnalysisSupport& host, SharedSettings& shared, KaplanState& state)
    : ModuleDialog(host, KaplanTemplate(), KaplanInterface(), shared), state_(state) {}

void CDefineKaplanDlg::OnOpen() {
    ShowSelections();
}

void CDefineKaplanDlg::OnValueChanged(int control) {
    TakeSelection(control);
}

void CDefineKaplanDlg::OnCommand(int control) {
    switch (control) {
    case ControlOk:
        Run();
        break;
    case ControlCancel:
        ExitDialog(StepStart, ExitMode::Back);
        break;
    default:
        CommonCommand(control);
    }
}

void CDefineKaplanDlg::Run() {
    if (const int message = CheckSelections(Shared()); message != 0) {
        ShowMessage(message);
        return;
    }
    if (RunProductLimit(Analysis(), Shared(), state_, this) == 0)
        ExitDialog(StepKaplanResults, ExitMode::Forward);
    else
        ExitDialog(StepSpecifyKaplan, ExitMode::Back);
}

} // namespace ozm::survival
