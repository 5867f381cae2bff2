#pragma once

#include "host/results/ResultsBook.h"
#include "support/dialogs/CAnalysisModalDialog.h"
#include "support/dialogs/CAnalysisModelessDialog.h"
#include "support/services/MessageService.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvana {

class ActiveData;

/// What an analysis asks of a front end. The defaults here are those for a script: messages are acknowledged,
/// questions answered No, file and data dialogs cancelled. All calls come on the session's thread and may
/// wait for a user.
class FrontEnd {
public:
    virtual ~FrontEnd() = default;

    /// Shows a message over a dialog (nullptr: over the main window) and waits; returns the button pressed.
    virtual ozm::MessageButton showMessage(const ResultMessage& /*message*/,
                                           ozm::CAnalysisDialog* /*window*/) {
        return ozm::ButtonOk;
    }
    /// A yes/no question.
    virtual bool ask(const ResultMessage& /*question*/, ozm::CAnalysisDialog* /*window*/) { return false; }

    /// Shows an open modal dialog and waits until it is closed. Not called where a script drives the
    /// analysis.
    virtual void runModal(ozm::CAnalysisModalDialog& dialog) { dialog.Press(ozm::ControlOk); }

    struct FileRequest {
        std::string_view title;
        std::string_view defaultName;
        std::string_view extension;
    };
    /// A path, or nothing when cancelled.
    virtual std::optional<std::string> fileToOpen(const FileRequest& /*request*/) { return std::nullopt; }
    virtual std::optional<std::string> fileToSave(const FileRequest& /*request*/) { return std::nullopt; }

    /// Opens another data file into `data`; false when cancelled. The session informs the analysis.
    virtual bool openData(ActiveData& /*data*/) { return false; }
    virtual void defineWeights(ActiveData& /*data*/) {}
    virtual void defineSelection(ActiveData& /*data*/) {}
    /// The analysis itself changed how its data are used: it turned the case weights off.
    virtual void dataUseChanged() {}
    /// Edits values, one per name, such as those that an estimation starts from; false when cancelled.
    virtual bool editStartValues(std::span<const std::string> /*names*/, std::span<double> /*values*/) {
        return false;
    }
};

} // namespace korvana
