#include "module/survdata/ResultsDialog.h"

namespace ozm::survival {

void ResultsDialog::OnCommand(int control) {
    if (control == ControlCancel) {
        ReleaseResults();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(SpecificationStep(), ExitMode::Back);
    } else if (!CommonCommand(control)) {
        if (const int message = Output(control); message != 0) ShowMessage(message);
    }
}

} // namespace ozm::survival
