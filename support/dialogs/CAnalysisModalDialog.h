#pragma once

#include "support/Export.h"
#include "support/dialogs/CAnalysisDialog.h"

namespace ozm {

/// A dialog that its caller owns and waits for.
class KORVANA_SUPPORT CAnalysisModalDialog : public CAnalysisDialog {
public:
    using CAnalysisDialog::CAnalysisDialog;

    /// Shows the dialog and waits until it is closed. Returns the result that it closed with, below 0 when
    /// the host could not show it.
    int DoModal();
    [[nodiscard]] int Result() const { return result_; }

protected:
    void EndDialog(int result);

private:
    int result_ = -1;
};

} // namespace ozm
