#pragma once

#include <memory>
#include <string>

namespace ozm {

class CAnalysisDialog;
class CAnalysisModelessDialog;
class CAnalysisModalDialog;
class ResultsRouting;

/// How a dialog hands over to the next step.
enum class ExitMode : int { End = 0, Back = 1, Forward = 2, SwitchForm = 4 };

/// Dialogs on the host's side.
class DialogService {
public:
    virtual ~DialogService() = default;

    /// Shows a modeless dialog. When true is returned the host has taken it over (the pointer is null) and
    /// destroys it after it has closed, never while one of its operations runs.
    virtual bool CreateAnalysisDialog(std::unique_ptr<CAnalysisModelessDialog>& dialog) = 0;
    /// Shows a modal dialog that the caller owns and returns its result once it is closed; below 0 when it
    /// was not shown. Where a script drives the analysis nothing is shown: the script operates the dialog, or
    /// its OK is pressed right away; a dialog that then stays open counts as not shown.
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
    /// Turns case weights off: every case counts once, from now on and for the user too.
    virtual void TurnWeightsOff() = 0;

    /// Whether the host's menus that start an analysis may be used.
    virtual void EnableStartupMenus(bool enabled) = 0;
    /// Brings results already made back into view, when a dialog lost its results or is about to close; none
    /// is closed or discarded. A host that always shows them has nothing to do.
    virtual void RestoreResultsWindows(CAnalysisDialog& dialog) = 0;

    /// Where the outputs of scripts' actions go besides; nullptr: nowhere.
    virtual ResultsRouting* Routing() { return nullptr; }
};

} // namespace ozm
