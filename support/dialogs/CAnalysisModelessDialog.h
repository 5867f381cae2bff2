#pragma once

#include "support/Export.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <memory>

namespace ozm {

/// A dialog that owns its step until it closes; the host owns the dialog once it has taken it over.
class KORVANA_SUPPORT CAnalysisModelessDialog : public CAnalysisDialog {
public:
    using CAnalysisDialog::CAnalysisDialog;

    /// Hands a dialog to the host, which opens it. False when the host refused it; the dialog is then
    /// destroyed.
    static bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog> dialog);
};

} // namespace ozm
