#include "support/dialogs/CAnalysisModelessDialog.h"

namespace ozm {

bool CAnalysisModelessDialog::CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog> dialog) {
    DialogService& host = dialog->Analysis().Dialogs();
    return host.CreateAnalysisDialog(dialog);
}

void CAnalysisModelessDialog::ThrowIfClosed() const {
    if (IsClosed()) throw std::logic_error("the dialog has been closed");
}

} // namespace ozm
