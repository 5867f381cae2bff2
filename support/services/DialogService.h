#pragma once

#include <memory>
#include <string>

namespace ozm {

class CAnalysisDialog;
class CAnalysisModelessDialog;
class CAnalysisModalDialog;

/// How a dialog hands over to the next step.
enum class ExitMode : int { End = 0, Back = 1, Forward = 2, SwitchForm = 4 };

/// Dialogs on the host's side.
class DialogService {
public:
    virtual ~DialogService() = default;

    /// Shows a modeless dialog. When true is answered the host has taken it over (the pointer is null) and
    /// destroys it after it was closed, never while one of its operations runs.
    virtual bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog>& dialog) = 0;
    /// Shows a modal dialog of the caller's and answers its result once it was closed; below 0 when it was
    /// not shown. Where a script drives the analysis nothing is shown: the script sees to the dialog, or its
    /// OK is pressed as it stands; one that stays open then counts as not shown.
    virtual int RunModal(CAnalysisModalDialog& dialog) = 0;
    /// A dialog closes and names the step that follows (0: none) and the page that its dialog opens on.
    virtual void DialogExits(CAnalysisDialog& dialog, int nextStep, ExitMode mode, int page) = 0;

    /// Name of the host program.
    virtual std::string ApplicationName() = 0;

    /// Whether a script drives the analysis: steps then run without showing their dialogs.
    virtual bool IsOleAutomation() = 0;

    /// The host's dialogs for opening a data file (true: one was opened), case weights and selection
    /// conditions.
    virtual bool OpenDataFile() = 0;
    virtual void DefineWeight() = 0;
    virtual void DefineSelCond() = 0;
    /// Case weights are used no more: every case counts once, also for the user and in what follows.
    virtual void TurnWeightsOff() = 0;

    /// Whether the host's menus that start an analysis may be used.
    virtual void EnableStartupMenus(bool enabled) = 0;
    /// Brings the results that were made into view again, behind a dialog that lost them or is about to
    /// close; none is closed or forgotten. A host that shows them all the time has nothing to do.
    virtual void RestoreResultsWindows(CAnalysisDialog& dialog) = 0;
};

} // namespace ozm
