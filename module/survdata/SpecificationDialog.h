#pragma once

#include "module/survdata/ModuleDialog.h"

namespace ozm::survival {

/// What the specification dialogs have in common: they show the shared selections, OK checks them and runs
/// the analysis, Cancel goes back to the startup dialog. A specification with selections of its own adds them
/// in `OnOpen` and `OnValueChanged`.
class SpecificationDialog : public ModuleDialog {
public:
    SpecificationDialog(CAnalysisSupport& host, const DialogTemplate& dialogTemplate,
                        const AutomationInterface& automation, SharedSettings& shared, AnalysisType type)
        : ModuleDialog(host, dialogTemplate, automation, shared), type_(type) {}

protected:
    void OnOpen() override;
    /// Where another analysis object has acted since, its selections are in force: those that this dialog
    /// shows take their place.
    void OnUse() final;
    bool OnCommand(int control) override;
    void OnValueChanged(int control) override;
    /// Shows what is left of the selections.
    void OnDataChanged() override { OnOpen(); }

    /// Puts all that the dialog shows into the settings.
    virtual void TakeAll();

    /// OK: checks the input (and leaves the dialog open on errors), runs the analysis and goes to the next
    /// step.
    virtual void Run() = 0;

    /// Checks times, censoring variable and codes; false after a message about what is wrong.
    bool CommonSelectionsAreValid();

    /// Closes the dialog after a run: forward to the results, or back to the specification for other data.
    void Leave(bool computed, int resultsStep, int specificationStep);

private:
    AnalysisType type_;
};

} // namespace ozm::survival
