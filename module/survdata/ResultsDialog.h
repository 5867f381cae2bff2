#pragma once

#include "module/survdata/ModuleDialog.h"
#include "module/survdata/OutputResult.h"

#include <string>

namespace ozm::survival {

/// What the results dialogs have in common: one output per button, and a message if it fails; Cancel releases
/// the results of the run and goes back to the specification dialog.
class ResultsDialog : public ModuleDialog {
public:
    using ModuleDialog::ModuleDialog;

protected:
    bool OnCommand(int control) final;
    /// The results were of the earlier data: goes back to the specification.
    void OnDataChanged() final { OnCommand(ControlCancel); }

    /// Makes the output of a button.
    virtual OutputResult Output(int control) = 0;
    virtual void ReleaseResults() = 0;
    /// Whether there are results to make outputs of.
    [[nodiscard]] virtual bool HasResults() const = 0;
    [[nodiscard]] virtual int SpecificationStep() const = 0;

    /// The details of this run for an output's message; begins with a line break.
    [[nodiscard]] virtual std::string Reason(int /*message*/) const { return {}; }

    /// The name of a button's output for messages: its caption, and its name for programs.
    [[nodiscard]] std::string OutputName(int control) const;
};

} // namespace ozm::survival
