#pragma once

#include <memory>

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
    /// not shown.
    virtual int RunModal(CAnalysisModalDialog& dialog) = 0;
    /// A dialog closes and names the step that follows (0: none) and the page that its dialog opens on.
    virtual void DialogExits(CAnalysisDialog& dialog, int nextStep, ExitMode mode, int page) = 0;

    /// Whether a script drives the analysis: steps then run without showing their dialogs.
    virtual bool IsOleAutomation() = 0;

    /// The host's dialogs for opening a data file (true: one was opened), case weights and selection
    /// conditions.
    virtual bool OpenDataFile() = 0;
    virtual void DefineWeight() = 0;
    virtual void DefineSelCond() = 0;

    /// Whether the host's menus that start an analysis may be used.
    virtual void EnableStartupMenus(bool enabled) = 0;
    /// Shows again, behind a dialog, the results that its analysis has made; closes those of a dialog that
    /// ends.
    virtual void RestoreResultsWindows(CAnalysisDialog& dialog) = 0;
};

} // namespace ozm
