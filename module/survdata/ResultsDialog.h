#pragma once

#include "module/survdata/ModuleDialog.h"
#include "module/survdata/OutputResult.h"

#include <string>

namespace ozm::survival {

/// What the results dialogs have in common: one button, one output, and the message of what went wrong;
/// Cancel releases the results of the run and goes back to the specification dialog.
class ResultsDialog : public ModuleDialog {
public:
    using ModuleDialog::ModuleDialog;

protected:
    bool OnCommand(int control) final;
    /// The results were of the data before: back to the specification.
    void OnDataChanged() final { OnCommand(ControlCancel); }

    /// Makes the output of a button.
    virtual OutputResult Output(int control) = 0;
    virtual void ReleaseResults() = 0;
    /// Whether there are results to make outputs of.
    [[nodiscard]] virtual bool HasResults() const = 0;
    [[nodiscard]] virtual int SpecificationStep() const = 0;

    /// What the message of an output does not know of its cause; begins with a line break.
    [[nodiscard]] virtual std::string Reason(int /*message*/) const { return {}; }

    /// The output of a button as messages name it: its caption, and its name for programs.
    [[nodiscard]] std::string OutputName(int control) const;
};

} // namespace ozm::survival
