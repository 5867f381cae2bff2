#include "support/dialogs/CAnalysisModelessDialog.h"

namespace ozm {

bool CAnalysisModelessDialog::CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog> dialog) {
    DialogService& host = dialog->Analysis().Dialogs();
    return host.CreateAnalysisDialog(dialog);
}

} // namespace ozm
