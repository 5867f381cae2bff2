#pragma once

#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// What the specification dialogs have in common: they show the shared selections, OK checks them and runs
/// the analysis, Cancel goes back to the startup dialog. A specification with selections of its own adds them
/// in `OnOpen` and `OnValueChanged`.
class SpecificationDialog : public ModuleDialog {
public:
    using ModuleDialog::ModuleDialog;

protected:
    void OnOpen() override;
    bool OnCommand(int control) override;
    void OnValueChanged(int control) override;
    /// Shows what is left of the selections.
    void OnDataChanged() override { OnOpen(); }

    /// OK: checks, which leave the dialog open, then the run, and the way to the step that follows.
    virtual void Run() = 0;

    /// Times, censoring variable and codes; what is wrong is shown in a message, and false answered.
    bool CommonSelectionsAreValid();

    /// Closes the dialog after a run: forward to the results, or back to the specification for other data.
    void Leave(bool computed, int resultsStep, int specificationStep);
};

} // namespace ozm::survival
