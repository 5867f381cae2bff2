#pragma once

#include "host/session/SessionParts.h"
#include "host/session/SessionRouting.h"
#include "support/dialogs/CAnalysisDialog.h"
#include "support/services/DialogService.h"

#include <memory>
#include <optional>
#include <vector>

namespace korvana {

/// Owns the dialogs of a session. A closed dialog is kept until `release`, since one of its operations may
/// still run and a script may still hold it; its exit is stored for the session to follow.
class SessionDialogs : public ozm::DialogService, private ozm::DialogObserver {
public:
    /// How a dialog wants the analysis to go on.
    struct Exit {
        int nextStep = 0;
        ozm::ExitMode mode = ozm::ExitMode::End;
        int page = 0;
    };

    explicit SessionDialogs(SessionParts& parts) : parts_(parts) {}

    bool CreateAnalysisDialog(std::unique_ptr<ozm::CAnalysisModelessDialog>& dialog) override;
    int RunModal(ozm::CAnalysisModalDialog& dialog) override;
    void DialogExits(ozm::CAnalysisDialog& dialog, int nextStep, ozm::ExitMode mode, int page) override;
    std::string ApplicationName() override { return "Korvana"; }
    bool IsOleAutomation() override { return parts_.automation; }
    bool OpenDataFile() override;
    void DefineWeight() override;
    void DefineSelCond() override;
    void TurnWeightsOff() override;
    void EnableStartupMenus(bool enabled) override { parts_.observers.startupMenusEnabled(enabled); }
    /// Outputs are in the book, which a window always shows: nothing to restore.
    void RestoreResultsWindows(ozm::CAnalysisDialog& /*dialog*/) override {}

    ozm::ResultsRouting* Routing() override { return &routing_; }

    /// The dialog that owns the step, open or closed with its exit not followed yet; nullptr when there is
    /// none.
    [[nodiscard]] ozm::CAnalysisModelessDialog* current() const { return current_; }
    /// The dialog to operate: the modal one if one runs, else the one that owns the step if it is open;
    /// nullptr when there is none.
    [[nodiscard]] ozm::CAnalysisDialog* open() const;
    /// Other data were opened: informs the analysis, and then its open dialog.
    void dataReplaced();
    /// Takes the exit of the current dialog, which then no longer owns the step.
    std::optional<Exit> takeExit();
    /// The page on which the next dialog opens.
    void openNextOn(int page) { page_ = page; }
    /// Destroys every dialog. Not while an operation of one runs.
    void release();

private:
    void CommandBegins(ozm::CAnalysisDialog& /*dialog*/, int /*control*/) override { parts_.commandBegins(); }
    void CommandEnded(ozm::CAnalysisDialog& dialog, int control, bool succeeded) override;
    void tellAnalysis();
    void runByScript(ozm::CAnalysisModalDialog& dialog);

    SessionParts& parts_;
    SessionRouting routing_{parts_};
    std::vector<std::unique_ptr<ozm::CAnalysisModelessDialog>> dialogs_;
    ozm::CAnalysisModelessDialog* current_ = nullptr;
    std::vector<ozm::CAnalysisModalDialog*> modal_; ///< those that run, the innermost last
    std::optional<Exit> exit_;
    int page_ = 0;
};

} // namespace korvana
