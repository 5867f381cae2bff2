#include "support/dialogs/CAnalysisModalDialog.h"

namespace ozm {

int CAnalysisModalDialog::DoModal() {
    return Analysis().Dialogs().RunModal(*this);
}

void CAnalysisModalDialog::EndDialog(int result) {
    result_ = result;
    MarkClosed();
}

} // namespace ozm
